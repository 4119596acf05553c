#include "database/realtime/dbs/rt_items_t.h"

#include "database/base/literals.h"

namespace database {
namespace realtime {
namespace dbs {

rt_items_t::rt_items_t(QObject* parent)
    : rt_map_section_t(literals::key_items, parent)
{
}

rt_items_t::rt_items_t(rt_items_map const& map, QObject* parent)
    : rt_map_section_t(literals::key_items, parent)
{
    objects.adopt(map);
}

} // namespace dbs
} // namespace realtime
} // namespace database
