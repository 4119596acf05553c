#ifndef DATABASE_DEFINITION_TYPE_THERMOSTAT_THERMO_PARAMS_T_H
#define DATABASE_DEFINITION_TYPE_THERMOSTAT_THERMO_PARAMS_T_H

#include <QString>

#include "database/definition/string_type_t.h"
#include "database/database_export.h"

namespace database {
namespace definition {

/**
 * Keys of the item references of an air thermostat.
 */
class DATABASE_EXPORT type_thermostat_thermo_params_t : public string_type_t<type_thermostat_thermo_params_t>
{
public:
    using string_type_t::string_type_t;

    static const type_thermostat_thermo_params_t idsetpoint;
    static const type_thermostat_thermo_params_t idoutput;
    static const type_thermostat_thermo_params_t idseason;
    static const type_thermostat_thermo_params_t idhvac;
    static const type_thermostat_thermo_params_t idfan;
    static const type_thermostat_thermo_params_t idfan1;
    static const type_thermostat_thermo_params_t idfan2;
    static const type_thermostat_thermo_params_t idfan3;
    static const type_thermostat_thermo_params_t idbattery;
    static const type_thermostat_thermo_params_t idactual;
};

} // namespace definition
} // namespace database

DATABASE_STRING_TYPE_DECLARE(database::definition::type_thermostat_thermo_params_t);

#endif // DATABASE_DEFINITION_TYPE_THERMOSTAT_THERMO_PARAMS_T_H
