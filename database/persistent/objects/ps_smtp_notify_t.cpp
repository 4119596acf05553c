#include "database/persistent/objects/ps_smtp_notify_t.h"

namespace database {
namespace persistent {
namespace objects {

ps_smtp_notify_t::ps_smtp_notify_t(QObject* parent)
    : topicbase_t(parent)
{
}

ps_smtp_notify_t::ps_smtp_notify_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
}

ps_smtp_notify_t::ps_smtp_notify_t(QString const& description, QString const& server, int port,
                                   ::database::definition::smtp::type_smtp_connection_type_t const& connType,
                                   ::database::definition::smtp::type_smtp_auth_type_t const& authType,
                                   QString const& username, QString const& password, QObject* parent)
    : topicbase_t(parent)
    , description(description)
    , server(server)
    , port(port)
    , connType(connType.ToString())
    , authType(authType.ToString())
    , username(username)
    , password(password)
{
}

ps_smtp_notify_t::ps_smtp_notify_t(ps_smtp_notify_t const& other)
    : topicbase_t(other)
{
    copyValues(&other);
}

ps_smtp_notify_t& ps_smtp_notify_t::operator=(ps_smtp_notify_t const& other)
{
    copyValues(&other);
    return *this;
}

void ps_smtp_notify_t::setDescription(QString const& value)
{
    assign(description, value, [this] { Q_EMIT descriptionChanged(description); });
}

void ps_smtp_notify_t::setServer(QString const& value)
{
    assign(server, value, [this] { Q_EMIT serverChanged(server); });
}

void ps_smtp_notify_t::setPort(int value)
{
    assign(port, value, [this] { Q_EMIT portChanged(port); });
}

void ps_smtp_notify_t::setConnType(::database::definition::smtp::type_smtp_connection_type_t const& value)
{
    setConnType(value.ToString());
}

void ps_smtp_notify_t::setConnType(QString const& value)
{
    assign(connType, value, [this] { Q_EMIT connTypeChanged(connType); });
}

void ps_smtp_notify_t::setAuthType(::database::definition::smtp::type_smtp_auth_type_t const& value)
{
    setAuthType(value.ToString());
}

void ps_smtp_notify_t::setAuthType(QString const& value)
{
    assign(authType, value, [this] { Q_EMIT authTypeChanged(authType); });
}

void ps_smtp_notify_t::setUsername(QString const& value)
{
    assign(username, value, [this] { Q_EMIT usernameChanged(username); });
}

void ps_smtp_notify_t::setPassword(QString const& value)
{
    assign(password, value, [this] { Q_EMIT passwordChanged(password); });
}

} // namespace objects
} // namespace persistent
} // namespace database
