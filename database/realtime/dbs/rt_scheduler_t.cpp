#include "database/realtime/dbs/rt_scheduler_t.h"

#include "database/base/literals.h"

namespace database {
namespace realtime {
namespace dbs {

rt_scheduler_t::rt_scheduler_t(QObject* parent)
    : topicbase_t(literals::key_schedulers, parent)
{
}

} // namespace dbs
} // namespace realtime
} // namespace database
