#ifndef DATABASE_REALTIME_OBJECTS_SYSTEM_RT_OBJECT_CONNECTION_T_H
#define DATABASE_REALTIME_OBJECTS_SYSTEM_RT_OBJECT_CONNECTION_T_H

#include <QMap>
#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace objects {

/// One network connection of the installation: what it reaches, whether it is up, and since when.
class DATABASE_EXPORT rt_object_connection_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QString datetime MEMBER datetime READ getDatetime NOTIFY datetimeChanged)
    Q_PROPERTY(QString path MEMBER path READ getPath NOTIFY pathChanged)
    Q_PROPERTY(bool connected MEMBER connected READ getConnected NOTIFY connectedChanged)

public:
    Q_INVOKABLE explicit rt_object_connection_t(QObject* parent = nullptr);
    rt_object_connection_t(QString const& topic, QObject* parent);
    rt_object_connection_t(rt_object_connection_t const& other);

    QString getDatetime() const { return datetime; }
    QString getPath() const { return path; }
    bool getConnected() const { return connected; }

    /// Takes every field of other; null is refused with "Not permitted nullptr".
    void update(rt_object_connection_t const* other, bool _notify) { updateValues(other, _notify); }
    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }

    /// Same values; the topic doesn't count.
    bool operator==(rt_object_connection_t const& other) const { return sameValues(&other); }

Q_SIGNALS:
    void datetimeChanged(QString);
    void pathChanged(QString);
    void connectedChanged(bool);

private:
    QString datetime;
    QString path;
    bool connected = false;
};

} // namespace objects

typedef QMap<QString, objects::rt_object_connection_t*> rt_connection_map;

} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_OBJECTS_SYSTEM_RT_OBJECT_CONNECTION_T_H
