#include "database/realtime/dbs/rt_presencesimulation_t.h"

#include "database/base/literals.h"

namespace database {
namespace realtime {
namespace dbs {

rt_presencesimulation_t::rt_presencesimulation_t(QObject* parent)
    : topicbase_t(literals::key_presencesimulation, parent)
{
}

} // namespace dbs
} // namespace realtime
} // namespace database
