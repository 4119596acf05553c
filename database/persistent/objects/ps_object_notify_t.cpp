#include "database/persistent/objects/ps_object_notify_t.h"

namespace database {
namespace persistent {
namespace objects {

ps_object_notify_t::ps_object_notify_t(QObject* parent)
    : topicbase_t(parent)
{
}

ps_object_notify_t::ps_object_notify_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
}

ps_object_notify_t::ps_object_notify_t(bool enabled, int permission, QStringList const& pushdst,
                                       QStringList const& emaildst, QStringList const& args,
                                       ::database::definition::type_notification_verbosity_t const& verbosity,
                                       QString const& name, QString const& message, int params, QObject* parent)
    : topicbase_t(parent)
    , name(name)
    , verbosity(verbosity.ToString())
    , message(message)
    , enabled(enabled)
    , pushdst(pushdst)
    , args(args)
    , params(params)
    , permission(permission)
    , emaildst(emaildst)
{
}

ps_object_notify_t::ps_object_notify_t(ps_object_notify_t const& other)
    : topicbase_t(other)
{
    copyValues(&other);
}

void ps_object_notify_t::setName(QString const& value)
{
    assign(name, value, [this] { Q_EMIT nameChanged(name); });
}

void ps_object_notify_t::setVerbosity(::database::definition::type_notification_verbosity_t const& value)
{
    setVerbosity(value.ToString());
}

void ps_object_notify_t::setVerbosity(QString const& value)
{
    assign(verbosity, value, [this] { Q_EMIT verbosityChanged(verbosity); });
}

void ps_object_notify_t::setMessage(QString const& value)
{
    assign(message, value, [this] { Q_EMIT messageChanged(message); });
}

void ps_object_notify_t::setEnabled(bool value)
{
    assign(enabled, value, [this] { Q_EMIT enabledChanged(enabled); });
}

void ps_object_notify_t::setPushDst(QStringList const& value)
{
    assign(pushdst, value, [this] { Q_EMIT pushdstChanged(pushdst); });
}

void ps_object_notify_t::setArgs(QStringList const& value)
{
    assign(args, value, [this] { Q_EMIT argsChanged(args); });
}

void ps_object_notify_t::setParams(int value)
{
    assign(params, value, [this] { Q_EMIT paramsChanged(params); });
}

void ps_object_notify_t::setPermission(int value)
{
    assign(permission, value, [this] { Q_EMIT permissionChanged(permission); });
}

void ps_object_notify_t::setEmailDst(QStringList const& value)
{
    assign(emaildst, value, [this] { Q_EMIT emaildstChanged(emaildst); });
}

void ps_object_notify_t::update_email_dest(QStringList const& value, bool _notify)
{
    setEmailDst(value);
    if (_notify)
        send_update();
}

void ps_object_notify_t::update_push_dest(QStringList const& value, bool _notify)
{
    setPushDst(value);
    if (_notify)
        send_update();
}

} // namespace objects
} // namespace persistent
} // namespace database
