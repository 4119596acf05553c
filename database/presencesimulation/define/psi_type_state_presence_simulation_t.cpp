#include "database/presencesimulation/define/psi_type_state_presence_simulation_t.h"

DATABASE_STRING_TYPE_DEFINE(database::presencesimulation::definition::psi_type_state_presence_simulation_t);

namespace database {
namespace presencesimulation {
namespace definition {

namespace {
// Taken from a literal rather than from stop, which a default construction in
// another file's static initialisation could see before it is built.
QString stopText()
{
    return QStringLiteral("stop");
}
} // namespace

const psi_type_state_presence_simulation_t psi_type_state_presence_simulation_t::stop(stopText());
const psi_type_state_presence_simulation_t psi_type_state_presence_simulation_t::rec(QStringLiteral("rec"));
const psi_type_state_presence_simulation_t psi_type_state_presence_simulation_t::play(QStringLiteral("play"));

psi_type_state_presence_simulation_t::psi_type_state_presence_simulation_t()
    : string_type_t(stopText())
{
}

} // namespace definition
} // namespace presencesimulation
} // namespace database
