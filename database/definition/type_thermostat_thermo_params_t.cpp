#include "database/definition/type_thermostat_thermo_params_t.h"

DATABASE_STRING_TYPE_DEFINE(database::definition::type_thermostat_thermo_params_t);

namespace database {
namespace definition {

const type_thermostat_thermo_params_t type_thermostat_thermo_params_t::idsetpoint(QStringLiteral("idsetpoint"));
const type_thermostat_thermo_params_t type_thermostat_thermo_params_t::idoutput(QStringLiteral("idoutput"));
const type_thermostat_thermo_params_t type_thermostat_thermo_params_t::idseason(QStringLiteral("idseason"));
const type_thermostat_thermo_params_t type_thermostat_thermo_params_t::idhvac(QStringLiteral("idhvac"));
const type_thermostat_thermo_params_t type_thermostat_thermo_params_t::idfan(QStringLiteral("idfan"));
const type_thermostat_thermo_params_t type_thermostat_thermo_params_t::idfan1(QStringLiteral("idfan1"));
const type_thermostat_thermo_params_t type_thermostat_thermo_params_t::idfan2(QStringLiteral("idfan2"));
const type_thermostat_thermo_params_t type_thermostat_thermo_params_t::idfan3(QStringLiteral("idfan3"));
const type_thermostat_thermo_params_t type_thermostat_thermo_params_t::idbattery(QStringLiteral("idbattery"));
const type_thermostat_thermo_params_t type_thermostat_thermo_params_t::idactual(QStringLiteral("idactual"));

} // namespace definition
} // namespace database
