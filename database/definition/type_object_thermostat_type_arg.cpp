#include "database/definition/type_object_thermostat_type_arg.h"

DATABASE_STRING_TYPE_DEFINE(database::definition::type_object_thermostat_type_arg);

namespace database {
namespace definition {

const type_object_thermostat_type_arg type_object_thermostat_type_arg::thermo(QStringLiteral("@thermo"));
const type_object_thermostat_type_arg type_object_thermostat_type_arg::hydro(QStringLiteral("@hydro"));

} // namespace definition
} // namespace database
