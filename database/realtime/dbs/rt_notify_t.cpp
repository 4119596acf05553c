#include "database/realtime/dbs/rt_notify_t.h"

#include "database/base/literals.h"

namespace database {
namespace realtime {
namespace dbs {

rt_notify_t::rt_notify_t(QObject* parent)
    : topicbase_t(literals::key_notify, parent)
{
}

} // namespace dbs
} // namespace realtime
} // namespace database
