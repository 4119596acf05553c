#include "database/realtime/dbs/rt_storage_t.h"

#include "database/base/literals.h"

namespace database {
namespace realtime {
namespace dbs {

rt_storage_t::rt_storage_t(QObject* parent)
    : topicbase_t(literals::key_storage, parent)
{
}

} // namespace dbs
} // namespace realtime
} // namespace database
