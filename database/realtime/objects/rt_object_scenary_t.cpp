#include "database/realtime/objects/rt_object_scenary_t.h"

namespace database {
namespace realtime {
namespace objects {

rt_object_scenary_t::rt_object_scenary_t(QObject* parent)
    : topicbase_t(parent)
{
}

rt_object_scenary_t::rt_object_scenary_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
}

rt_object_scenary_t::rt_object_scenary_t(rt_object_scenary_t const& other)
    : topicbase_t(other)
    , execution(other.execution)
{
}

void rt_object_scenary_t::update(rt_object_scenary_t const* other, bool _notify)
{
    update_execution(other && other->execution, _notify);
}

void rt_object_scenary_t::update_execution(bool value, bool _notify)
{
    updateField("execution", value, _notify);
}

} // namespace objects
} // namespace realtime
} // namespace database
