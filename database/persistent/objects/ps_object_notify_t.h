#ifndef DATABASE_PERSISTENT_OBJECTS_PS_OBJECT_NOTIFY_T_H
#define DATABASE_PERSISTENT_OBJECTS_PS_OBJECT_NOTIFY_T_H

#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>

#include "database/base/topicbase_t.h"
#include "database/definition/type_notification_verbosity_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/**
 * A notification template: the message that is raised, how loud it is, and
 * where it goes (push destinations, and e-mail destinations named by the ids
 * of the section's address book).
 */
class DATABASE_EXPORT ps_object_notify_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QString name READ getName WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(QString verbosity READ getVerbosity WRITE setVerbosity NOTIFY verbosityChanged)
    Q_PROPERTY(QString message READ getMessage WRITE setMessage NOTIFY messageChanged)
    Q_PROPERTY(bool enabled READ getEnabled WRITE setEnabled NOTIFY enabledChanged)
    Q_PROPERTY(QStringList pushdst READ getPushDst WRITE setPushDst NOTIFY pushdstChanged)
    Q_PROPERTY(QStringList args READ getArgs WRITE setArgs NOTIFY argsChanged)
    Q_PROPERTY(int params READ getParams WRITE setParams NOTIFY paramsChanged)
    Q_PROPERTY(int permission READ getPermission WRITE setPermission NOTIFY permissionChanged)
    Q_PROPERTY(QStringList emaildst READ getEmailDst WRITE setEmailDst NOTIFY emaildstChanged)

public:
    Q_INVOKABLE explicit ps_object_notify_t(QObject* parent = nullptr);
    ps_object_notify_t(QString const& topic, QObject* parent);
    ps_object_notify_t(bool enabled, int permission, QStringList const& pushdst, QStringList const& emaildst,
                       QStringList const& args, ::database::definition::type_notification_verbosity_t const& verbosity,
                       QString const& name, QString const& message, int params, QObject* parent);
    ps_object_notify_t(ps_object_notify_t const& other);

    QString getName() const { return name; }
    QString getVerbosity() const { return verbosity; }
    QString getMessage() const { return message; }
    bool getEnabled() const { return enabled; }
    QStringList getPushDst() const { return pushdst; }
    QStringList getArgs() const { return args; }
    int getParams() const { return params; }
    int getPermission() const { return permission; }
    QStringList getEmailDst() const { return emaildst; }

    void setName(QString const& value);
    void setVerbosity(::database::definition::type_notification_verbosity_t const& value);
    void setVerbosity(QString const& value);
    void setMessage(QString const& value);
    void setEnabled(bool value);
    void setPushDst(QStringList const& value);
    void setArgs(QStringList const& value);
    void setParams(int value);
    void setPermission(int value);
    void setEmailDst(QStringList const& value);

    /// Takes all nine properties of other, not the topic.
    void update(ps_object_notify_t const* other, bool _notify) { updateValues(other, _notify); }
    void update_email_dest(QStringList const& value, bool _notify);
    void update_push_dest(QStringList const& value, bool _notify);
    /// Same values; the topic doesn't count.
    bool operator==(ps_object_notify_t const& other) const { return sameValues(&other); }

    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }

Q_SIGNALS:
    void nameChanged(QString);
    void verbosityChanged(QString);
    void messageChanged(QString);
    void enabledChanged(bool);
    void pushdstChanged(QStringList);
    void argsChanged(QStringList);
    void paramsChanged(int);
    void permissionChanged(int);
    void emaildstChanged(QStringList);

private:
    QString name;
    QString verbosity = ::database::definition::type_notification_verbosity_t::info.ToString();
    QString message;
    bool enabled = true;
    QStringList pushdst;
    QStringList args;
    int params = 0;
    int permission = 0;
    QStringList emaildst;
};

} // namespace objects

typedef QMap<QString, objects::ps_object_notify_t*> ps_notify_map;

} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_PS_OBJECT_NOTIFY_T_H
