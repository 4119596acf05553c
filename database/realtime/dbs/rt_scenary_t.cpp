#include "database/realtime/dbs/rt_scenary_t.h"

#include "database/base/literals.h"

namespace database {
namespace realtime {
namespace dbs {

rt_scenary_t::rt_scenary_t(QObject* parent)
    : rt_map_section_t(literals::key_scenary, parent)
{
}

rt_scenary_t::rt_scenary_t(rt_scenary_map const& objects, QObject* parent)
    : rt_map_section_t(literals::key_scenary, parent)
{
    setObjects(objects);
}

rt_scenary_t::rt_scenary_t(rt_scenary_t const& other)
    : rt_map_section_t(other)
{
}

} // namespace dbs
} // namespace realtime
} // namespace database
