#ifndef DATABASE_REALTIME_OBJECTS_RT_OBJECT_NOTIFY_T_H
#define DATABASE_REALTIME_OBJECTS_RT_OBJECT_NOTIFY_T_H

#include <QDateTime>
#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace objects {

/**
 * One notification raised for the user or the system, as the panels show it:
 * its text with the parameters to fill in, when it came, and whether the user
 * has read it. The notify section keeps them by key.
 */
class DATABASE_EXPORT rt_object_notify_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QString name MEMBER name READ getName NOTIFY nameChanged)
    Q_PROPERTY(QString verbosity MEMBER verbosity READ getVerbosity NOTIFY verbosityChanged)
    Q_PROPERTY(QString message MEMBER message READ getMessage NOTIFY messageChanged)
    Q_PROPERTY(QString datetime MEMBER datetime READ getDatetime NOTIFY datetimeChanged)
    Q_PROPERTY(int params MEMBER params READ getParams NOTIFY paramsChanged)
    Q_PROPERTY(bool read MEMBER read READ getRead NOTIFY readChanged)
    Q_PROPERTY(QStringList args MEMBER args READ getArgs NOTIFY argsChanged)

public:
    Q_INVOKABLE explicit rt_object_notify_t(QObject* parent = nullptr);
    rt_object_notify_t(QString const& topic, QObject* parent);
    /// The moment is kept as ISO text.
    rt_object_notify_t(QDateTime const& datetime, int params, QString const& name, QString const& verbosity,
                       QString const& message, QStringList const& args, QObject* parent);
    rt_object_notify_t(rt_object_notify_t const& other);

    QString getMessage() const { return message; }
    QString getVerbosity() const { return verbosity; }
    QString getName() const { return name; }
    QString getDatetime() const { return datetime; }
    int getParams() const { return params; }
    QStringList getArgs() const { return args; }
    bool getRead() const { return read; }

    /// Takes the seven fields of other; null is refused with "Not permitted nullptr".
    void update(rt_object_notify_t const* other, bool _notify) { updateValues(other, _notify); }
    void update_read(bool value, bool _notify);
    void requestSetRead(bool value);

    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }

    /// Same values; the topic doesn't count.
    bool operator==(rt_object_notify_t const& other) const { return sameValues(&other); }

Q_SIGNALS:
    void messageChanged(QString);
    void verbosityChanged(QString);
    void nameChanged(QString);
    void datetimeChanged(QString);
    void paramsChanged(int);
    void readChanged(bool);
    void argsChanged(QStringList);

private:
    QString name;
    QString verbosity;
    QString message;
    QString datetime;
    int params = 0;
    bool read = false;
    QStringList args;
};

} // namespace objects

typedef QMap<QString, objects::rt_object_notify_t*> rt_notify_map;

} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_OBJECTS_RT_OBJECT_NOTIFY_T_H
