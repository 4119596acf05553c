#ifndef DATABASE_PRESENCESIMULATION_DEFINE_PSI_TYPE_STATE_PRESENCE_SIMULATION_T_H
#define DATABASE_PRESENCESIMULATION_DEFINE_PSI_TYPE_STATE_PRESENCE_SIMULATION_T_H

#include <QString>

#include "database/definition/string_type_t.h"
#include "database/database_export.h"

namespace database {
namespace presencesimulation {
namespace definition {

/**
 * What the presence simulation is doing: nothing, recording the installation's
 * activity, or playing it back. A new one is stopped.
 */
class DATABASE_EXPORT psi_type_state_presence_simulation_t
    : public ::database::definition::string_type_t<psi_type_state_presence_simulation_t>
{
public:
    using string_type_t::string_type_t;
    /// Equals stop.
    psi_type_state_presence_simulation_t();

    static const psi_type_state_presence_simulation_t stop;
    static const psi_type_state_presence_simulation_t rec;
    static const psi_type_state_presence_simulation_t play;
};

} // namespace definition
} // namespace presencesimulation
} // namespace database

DATABASE_STRING_TYPE_DECLARE(database::presencesimulation::definition::psi_type_state_presence_simulation_t);

#endif // DATABASE_PRESENCESIMULATION_DEFINE_PSI_TYPE_STATE_PRESENCE_SIMULATION_T_H
