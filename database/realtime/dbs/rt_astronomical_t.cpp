#include "database/realtime/dbs/rt_astronomical_t.h"

#include "database/base/literals.h"

namespace database {
namespace realtime {
namespace dbs {

rt_astronomical_t::rt_astronomical_t(QObject* parent)
    : topicbase_t(literals::key_astronomical, parent)
{
}

} // namespace dbs
} // namespace realtime
} // namespace database
