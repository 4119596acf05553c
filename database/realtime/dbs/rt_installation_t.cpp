#include "database/realtime/dbs/rt_installation_t.h"

#include "database/base/literals.h"

namespace database {
namespace realtime {
namespace dbs {

rt_installation_t::rt_installation_t(QObject* parent)
    : topicbase_t(literals::key_installation, parent)
{
}

} // namespace dbs
} // namespace realtime
} // namespace database
