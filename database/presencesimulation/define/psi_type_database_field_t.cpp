#include "database/presencesimulation/define/psi_type_database_field_t.h"

DATABASE_STRING_TYPE_DEFINE(database::presencesimulation::definition::psi_type_database_field_t);

namespace database {
namespace presencesimulation {
namespace definition {

const psi_type_database_field_t psi_type_database_field_t::presencesimulation(QStringLiteral("DB/presencesimulation"));

} // namespace definition
} // namespace presencesimulation
} // namespace database
