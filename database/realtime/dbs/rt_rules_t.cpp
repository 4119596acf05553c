#include "database/realtime/dbs/rt_rules_t.h"

#include "database/base/literals.h"

namespace database {
namespace realtime {
namespace dbs {

rt_rules_t::rt_rules_t(QObject* parent)
    : rt_map_section_t(literals::key_rules, parent)
{
}

rt_rules_t::rt_rules_t(rt_rules_map const& objects, QObject* parent)
    : rt_map_section_t(literals::key_rules, parent)
{
    setObjects(objects);
}

rt_rules_t::rt_rules_t(rt_rules_t const& other)
    : rt_map_section_t(other)
{
}

} // namespace dbs
} // namespace realtime
} // namespace database
