#include "database/realtime/objects/rt_object_rules_t.h"

namespace database {
namespace realtime {
namespace objects {

rt_object_rules_t::rt_object_rules_t(QObject* parent)
    : topicbase_t(parent)
{
}

rt_object_rules_t::rt_object_rules_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
}

rt_object_rules_t::rt_object_rules_t(rt_object_rules_t const& other)
    : topicbase_t(other)
    , value(other.value)
{
}

} // namespace objects
} // namespace realtime
} // namespace database
