#include "database/realtime/objects/schedulers/rt_object_schedule_entry_t.h"

namespace database {
namespace realtime {
namespace objects {

rt_object_schedule_entry_t::rt_object_schedule_entry_t(QString const& topic, QString const& executed, int counter,
                                                       QObject* parent)
    : topicbase_t(topic, parent)
    , executed(executed)
    , counter(counter)
{
}

rt_object_schedule_entry_t::rt_object_schedule_entry_t(rt_object_schedule_entry_t const& other)
    : topicbase_t(other)
    , executed(other.executed)
    , counter(other.counter)
{
}

} // namespace objects
} // namespace realtime
} // namespace database
