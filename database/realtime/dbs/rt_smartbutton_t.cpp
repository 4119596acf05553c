#include "database/realtime/dbs/rt_smartbutton_t.h"

#include "database/base/literals.h"

namespace database {
namespace realtime {
namespace dbs {

rt_smartbutton_t::rt_smartbutton_t(QObject* parent)
    : topicbase_t(literals::key_smartbutton, parent)
{
}

} // namespace dbs
} // namespace realtime
} // namespace database
