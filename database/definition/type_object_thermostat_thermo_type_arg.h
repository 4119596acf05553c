#ifndef DATABASE_DEFINITION_TYPE_OBJECT_THERMOSTAT_THERMO_TYPE_ARG_H
#define DATABASE_DEFINITION_TYPE_OBJECT_THERMOSTAT_THERMO_TYPE_ARG_H

#include <QString>

#include "database/definition/string_type_t.h"
#include "database/database_export.h"

namespace database {
namespace definition {

/**
 * Markers of the arguments of a thermostat: setpoint, season and HVAC mode.
 */
class DATABASE_EXPORT type_object_thermostat_thermo_type_arg : public string_type_t<type_object_thermostat_thermo_type_arg>
{
public:
    using string_type_t::string_type_t;

    static const type_object_thermostat_thermo_type_arg setpoint;
    static const type_object_thermostat_thermo_type_arg season;
    static const type_object_thermostat_thermo_type_arg hvac;
};

} // namespace definition
} // namespace database

DATABASE_STRING_TYPE_DECLARE(database::definition::type_object_thermostat_thermo_type_arg);

#endif // DATABASE_DEFINITION_TYPE_OBJECT_THERMOSTAT_THERMO_TYPE_ARG_H
