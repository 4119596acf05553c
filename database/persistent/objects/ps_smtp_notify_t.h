#ifndef DATABASE_PERSISTENT_OBJECTS_PS_SMTP_NOTIFY_T_H
#define DATABASE_PERSISTENT_OBJECTS_PS_SMTP_NOTIFY_T_H

#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"
#include "database/definition/smtp/type_smtp_auth_type_t.h"
#include "database/definition/smtp/type_smtp_connection_type_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/**
 * The outgoing mail server of the notifications. The password is kept in the
 * clear, as the mail service has to hand it to the server.
 */
class DATABASE_EXPORT ps_smtp_notify_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QString description READ getDescription WRITE setDescription NOTIFY descriptionChanged)
    Q_PROPERTY(QString server READ getServer WRITE setServer NOTIFY serverChanged)
    Q_PROPERTY(int port READ getPort WRITE setPort NOTIFY portChanged)
    Q_PROPERTY(QString connType READ getConnType WRITE setConnType NOTIFY connTypeChanged)
    Q_PROPERTY(QString authType READ getAuthType WRITE setAuthType NOTIFY authTypeChanged)
    Q_PROPERTY(QString username READ getUsername WRITE setUsername NOTIFY usernameChanged)
    Q_PROPERTY(QString password READ getPassword WRITE setPassword NOTIFY passwordChanged)

public:
    static constexpr int defaultPort = 587;

    Q_INVOKABLE explicit ps_smtp_notify_t(QObject* parent = nullptr);
    ps_smtp_notify_t(QString const& topic, QObject* parent);
    ps_smtp_notify_t(QString const& description, QString const& server, int port,
                     ::database::definition::smtp::type_smtp_connection_type_t const& connType,
                     ::database::definition::smtp::type_smtp_auth_type_t const& authType, QString const& username,
                     QString const& password, QObject* parent);
    ps_smtp_notify_t(ps_smtp_notify_t const& other);
    /// Takes the seven properties; topic and parent stay.
    ps_smtp_notify_t& operator=(ps_smtp_notify_t const& other);

    QString getDescription() const { return description; }
    QString getServer() const { return server; }
    int getPort() const { return port; }
    QString getConnType() const { return connType; }
    QString getAuthType() const { return authType; }
    QString getUsername() const { return username; }
    QString getPassword() const { return password; }

    void setDescription(QString const& value);
    void setServer(QString const& value);
    void setPort(int value);
    void setConnType(::database::definition::smtp::type_smtp_connection_type_t const& value);
    void setConnType(QString const& value);
    void setAuthType(::database::definition::smtp::type_smtp_auth_type_t const& value);
    void setAuthType(QString const& value);
    void setUsername(QString const& value);
    void setPassword(QString const& value);

    /// Takes the seven properties of other, not the topic.
    void update(ps_smtp_notify_t const* other, bool _notify) { updateValues(other, _notify); }
    /// Same values; the topic doesn't count.
    bool operator==(ps_smtp_notify_t const& other) const { return sameValues(&other); }

    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }

Q_SIGNALS:
    void descriptionChanged(QString);
    void serverChanged(QString);
    void portChanged(int);
    void connTypeChanged(QString);
    void authTypeChanged(QString);
    void usernameChanged(QString);
    void passwordChanged(QString);

private:
    QString description;
    QString server;
    int port = defaultPort;
    QString connType;
    QString authType;
    QString username;
    QString password;
};

} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_PS_SMTP_NOTIFY_T_H
