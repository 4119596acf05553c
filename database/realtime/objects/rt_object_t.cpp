#include "database/realtime/objects/rt_object_t.h"

namespace database {
namespace realtime {
namespace objects {

rt_object_t::rt_object_t(QObject* parent)
    : topicbase_t(parent)
{
}

rt_object_t::rt_object_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
}

rt_object_t::rt_object_t(bool enabled, int order, int delay, ::database::definition::type_object_t const& type,
                         QString const& id, QString const& value, QObject* parent)
    : topicbase_t(parent)
    , enabled(enabled)
    , order(order)
    , delay(delay)
    , type(type.ToString())
    , id(id)
    , value(value)
{
}

void rt_object_t::setEnabled(bool _value)
{
    assign(enabled, _value, [this] { Q_EMIT enabledChanged(enabled); });
}

void rt_object_t::setOrder(int _value)
{
    assign(order, _value, [this] { Q_EMIT orderChanged(order); });
}

void rt_object_t::setDelay(int _value)
{
    assign(delay, _value, [this] { Q_EMIT delayChanged(delay); });
}

void rt_object_t::setType(QString const& _value)
{
    assign(type, _value, [this] { Q_EMIT typeChanged(type); });
}

void rt_object_t::setId(QString const& _value)
{
    assign(id, _value, [this] { Q_EMIT idChanged(id); });
}

void rt_object_t::setValue(QString const& _value)
{
    assign(value, _value, [this] { Q_EMIT valueChanged(value); });
}

} // namespace objects
} // namespace realtime
} // namespace database
