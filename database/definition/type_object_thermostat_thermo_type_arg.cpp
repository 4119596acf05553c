#include "database/definition/type_object_thermostat_thermo_type_arg.h"

DATABASE_STRING_TYPE_DEFINE(database::definition::type_object_thermostat_thermo_type_arg);

namespace database {
namespace definition {

const type_object_thermostat_thermo_type_arg type_object_thermostat_thermo_type_arg::setpoint(QStringLiteral("@setpoint"));
const type_object_thermostat_thermo_type_arg type_object_thermostat_thermo_type_arg::season(QStringLiteral("@season"));
const type_object_thermostat_thermo_type_arg type_object_thermostat_thermo_type_arg::hvac(QStringLiteral("@hvac"));

} // namespace definition
} // namespace database
