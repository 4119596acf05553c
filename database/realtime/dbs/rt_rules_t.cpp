#include "database/realtime/dbs/rt_rules_t.h"

#include "database/base/literals.h"

namespace database {
namespace realtime {
namespace dbs {

rt_rules_t::rt_rules_t(QObject* parent)
    : topicbase_t(literals::key_rules, parent)
{
}

} // namespace dbs
} // namespace realtime
} // namespace database
