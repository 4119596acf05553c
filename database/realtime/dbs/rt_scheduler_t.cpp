#include "database/realtime/dbs/rt_scheduler_t.h"

#include "database/base/literals.h"

namespace database {
namespace realtime {
namespace dbs {

rt_scheduler_t::rt_scheduler_t(QObject* parent)
    : rt_map_section_t(literals::key_schedulers, parent)
{
}

rt_scheduler_t::rt_scheduler_t(bool enabled, rt_schedulers_map const& objects, QObject* parent)
    : rt_map_section_t(literals::key_schedulers, parent)
    , enabled(enabled)
{
    setObjects(objects);
}

rt_scheduler_t::rt_scheduler_t(rt_scheduler_t const& other)
    : rt_map_section_t(other)
    , enabled(other.enabled)
{
}

} // namespace dbs
} // namespace realtime
} // namespace database
