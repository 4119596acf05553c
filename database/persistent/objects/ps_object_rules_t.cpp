#include "database/persistent/objects/ps_object_rules_t.h"

namespace database {
namespace persistent {
namespace objects {

ps_object_rules_t::ps_object_rules_t(QObject* parent)
    : topicbase_t(parent)
{
}

ps_object_rules_t::ps_object_rules_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
}

ps_object_rules_t::ps_object_rules_t(bool enabled, ::database::definition::type_rules_t const& type,
                                     QString const& name, QString const& when, QString const& then,
                                     QString const& _else, int permission, QObject* parent)
    : topicbase_t(parent)
    , enabled(enabled)
    , type(type.ToString())
    , name(name)
    , when_(when)
    , then_(then)
    , else_(_else)
    , permission(permission)
{
}

ps_object_rules_t::ps_object_rules_t(ps_object_rules_t const& other)
    : topicbase_t(other)
{
    copyValues(&other);
}

void ps_object_rules_t::setEnabled(bool value)
{
    assign(enabled, value, [this] { Q_EMIT enabledChanged(enabled); });
}

void ps_object_rules_t::setType(::database::definition::type_rules_t const& value)
{
    setType(value.ToString());
}

void ps_object_rules_t::setType(QString const& value)
{
    assign(type, value, [this] { Q_EMIT typeChanged(type); });
}

void ps_object_rules_t::setName(QString const& value)
{
    assign(name, value, [this] { Q_EMIT nameChanged(name); });
}

void ps_object_rules_t::setWhen(QString const& value)
{
    assign(when_, value, [this] { Q_EMIT when_Changed(when_); });
}

void ps_object_rules_t::setThen(QString const& value)
{
    assign(then_, value, [this] { Q_EMIT then_Changed(then_); });
}

void ps_object_rules_t::setElse(QString const& value)
{
    assign(else_, value, [this] { Q_EMIT else_Changed(else_); });
}

void ps_object_rules_t::setPermission(int value)
{
    assign(permission, value, [this] { Q_EMIT permissionChanged(permission); });
}

} // namespace objects
} // namespace persistent
} // namespace database
