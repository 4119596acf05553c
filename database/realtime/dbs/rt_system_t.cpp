#include "database/realtime/dbs/rt_system_t.h"

#include "database/base/literals.h"

namespace database {
namespace realtime {
namespace dbs {

rt_system_t::rt_system_t(QObject* parent)
    : topicbase_t(literals::key_system, parent)
{
}

} // namespace dbs
} // namespace realtime
} // namespace database
