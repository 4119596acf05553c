#include "database/realtime/dbs/rt_scenary_t.h"

#include "database/base/literals.h"

namespace database {
namespace realtime {
namespace dbs {

rt_scenary_t::rt_scenary_t(QObject* parent)
    : topicbase_t(literals::key_scenary, parent)
{
}

} // namespace dbs
} // namespace realtime
} // namespace database
