#include "database/persistent/objects/ps_object_user_t.h"

namespace database {
namespace persistent {
namespace objects {

ps_object_user_t::ps_object_user_t(QObject* parent)
    : topicbase_t(parent)
{
}

ps_object_user_t::ps_object_user_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
}

ps_object_user_t::ps_object_user_t(QString const& name, int perm, QString const& pin, QObject* parent)
    : topicbase_t(parent)
    , name(name)
    , perm(perm)
    , pin(pin)
{
}

ps_object_user_t::ps_object_user_t(ps_object_user_t const& other)
    : topicbase_t(other)
{
    copyValues(&other);
}

void ps_object_user_t::setName(QString const& value)
{
    assign(name, value, [this] { Q_EMIT nameChanged(name); });
}

void ps_object_user_t::setPerm(int value)
{
    assign(perm, value, [this] { Q_EMIT permChanged(perm); });
}

void ps_object_user_t::setPin(QString const& value)
{
    assign(pin, value, [this] { Q_EMIT pinChanged(pin); });
}

bool ps_object_user_t::getPermissionFlag(int _permissionFlag) const
{
    return int(_permissionFlag & perm) > 0;
}

void ps_object_user_t::update_pin(QString const& value, bool _notify)
{
    setPin(value);
    if (_notify)
        send_update();
}

void ps_object_user_t::update(ps_object_user_t const* other, bool _notify)
{
    updateValues(other, _notify);
}

bool ps_object_user_t::operator==(ps_object_user_t const& other) const
{
    return sameValues(&other);
}

void ps_object_user_t::send_update()
{
    publishSelf();
}

void ps_object_user_t::initRequestSignals(QObject* receiver, bool connect)
{
    connectRequestSignals(receiver, connect);
}

} // namespace objects
} // namespace persistent
} // namespace database
