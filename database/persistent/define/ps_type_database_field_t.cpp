#include "database/persistent/define/ps_type_database_field_t.h"

DATABASE_STRING_TYPE_DEFINE(database::persistent::definition::ps_type_database_field_t);

namespace database {
namespace persistent {
namespace definition {

const ps_type_database_field_t ps_type_database_field_t::general(QStringLiteral("general"));
const ps_type_database_field_t ps_type_database_field_t::items(QStringLiteral("items"));
const ps_type_database_field_t ps_type_database_field_t::notify(QStringLiteral("notify"));
const ps_type_database_field_t ps_type_database_field_t::elements(QStringLiteral("elements"));
const ps_type_database_field_t ps_type_database_field_t::storage(QStringLiteral("storage"));
const ps_type_database_field_t ps_type_database_field_t::schedulers(QStringLiteral("schedulers"));
const ps_type_database_field_t ps_type_database_field_t::scenary(QStringLiteral("scenary"));
const ps_type_database_field_t ps_type_database_field_t::rules(QStringLiteral("rules"));
const ps_type_database_field_t ps_type_database_field_t::drivers(QStringLiteral("drivers"));
const ps_type_database_field_t ps_type_database_field_t::information(QStringLiteral("information"));
const ps_type_database_field_t ps_type_database_field_t::versions(QStringLiteral("versions"));
const ps_type_database_field_t ps_type_database_field_t::presencesimulation(QStringLiteral("presencesimulation"));
const ps_type_database_field_t ps_type_database_field_t::smartbutton(QStringLiteral("smartbutton"));
const ps_type_database_field_t ps_type_database_field_t::users(QStringLiteral("users"));
const ps_type_database_field_t ps_type_database_field_t::thermo(QStringLiteral("thermo"));

} // namespace definition
} // namespace persistent
} // namespace database
