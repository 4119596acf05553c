#include "database/persistent/objects/ps_object_t.h"

namespace database {
namespace persistent {
namespace objects {

ps_object_t::ps_object_t(QObject* parent)
    : topicbase_t(parent)
{
}

ps_object_t::ps_object_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
}

ps_object_t::ps_object_t(bool enabled, int order, int delay, ::database::definition::type_object_t const& type,
                         QString const& id, QString const& value, QString const& args, QObject* parent)
    : topicbase_t(parent)
    , enabled(enabled)
    , order(order)
    , delay(delay)
    , type(type.ToString())
    , id(id)
    , value(value)
    , args(args)
{
}

ps_object_t::ps_object_t(ps_object_t const& other)
    : topicbase_t(other)
    , enabled(other.enabled)
    , order(other.order)
    , delay(other.delay)
    , type(other.type)
    , id(other.id)
    , value(other.value)
    , args(other.args)
{
}

void ps_object_t::setEnabled(bool _value)
{
    assign(enabled, _value, [this] { Q_EMIT enabledChanged(enabled); });
}

void ps_object_t::setOrder(int _value)
{
    assign(order, _value, [this] { Q_EMIT orderChanged(order); });
}

void ps_object_t::setDelay(int _value)
{
    assign(delay, _value, [this] { Q_EMIT delayChanged(delay); });
}

void ps_object_t::setType(::database::definition::type_object_t const& _value)
{
    setType(_value.ToString());
}

void ps_object_t::setType(QString const& _value)
{
    assign(type, _value, [this] { Q_EMIT typeChanged(type); });
}

void ps_object_t::setId(QString const& _value)
{
    assign(id, _value, [this] { Q_EMIT idChanged(id); });
}

void ps_object_t::setValue(QString const& _value)
{
    assign(value, _value, [this] { Q_EMIT valueChanged(value); });
}

void ps_object_t::setArgs(QString const& _value)
{
    assign(args, _value, [this] { Q_EMIT argsChanged(args); });
}

void ps_object_t::update(ps_object_t const* other, bool _notify)
{
    if (!other) {
        refuseNull();
        return;
    }
    setEnabled(other->enabled);
    setOrder(other->order);
    setDelay(other->delay);
    setType(other->type);
    setId(other->id);
    setValue(other->value);
    setArgs(other->args);
    if (_notify)
        send_update();
}

bool ps_object_t::compare(ps_object_t const* other) const
{
    return other && enabled == other->enabled && order == other->order && delay == other->delay
        && type == other->type && id == other->id && args == other->args && value == other->value;
}

bool ps_object_t::operator==(ps_object_t const& other) const
{
    return compare(&other);
}

void ps_object_t::send_update()
{
    publishSelf();
}

void ps_object_t::initRequestSignals(QObject* receiver, bool connect)
{
    connectRequestSignals(receiver, connect);
}

} // namespace objects
} // namespace persistent
} // namespace database
