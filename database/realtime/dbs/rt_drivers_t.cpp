#include "database/realtime/dbs/rt_drivers_t.h"

#include "database/base/literals.h"

namespace database {
namespace realtime {
namespace dbs {

rt_drivers_t::rt_drivers_t(QObject* parent)
    : topicbase_t(literals::key_drivers, parent)
{
}

} // namespace dbs
} // namespace realtime
} // namespace database
