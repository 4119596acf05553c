#include "database/realtime/define/rt_type_database_field_t.h"

DATABASE_STRING_TYPE_DEFINE(database::realtime::definition::rt_type_database_field_t);

namespace database {
namespace realtime {
namespace definition {

const rt_type_database_field_t rt_type_database_field_t::drivers(QStringLiteral("drivers"));
const rt_type_database_field_t rt_type_database_field_t::general(QStringLiteral("general"));
const rt_type_database_field_t rt_type_database_field_t::items(QStringLiteral("items"));
const rt_type_database_field_t rt_type_database_field_t::notify(QStringLiteral("notify"));
const rt_type_database_field_t rt_type_database_field_t::rules(QStringLiteral("rules"));
const rt_type_database_field_t rt_type_database_field_t::scenary(QStringLiteral("scenary"));
const rt_type_database_field_t rt_type_database_field_t::schedulers(QStringLiteral("schedulers"));
const rt_type_database_field_t rt_type_database_field_t::storage(QStringLiteral("storage"));
const rt_type_database_field_t rt_type_database_field_t::installation(QStringLiteral("installation"));
const rt_type_database_field_t rt_type_database_field_t::smartbutton(QStringLiteral("smartbutton"));
const rt_type_database_field_t rt_type_database_field_t::thermo(QStringLiteral("thermo"));

} // namespace definition
} // namespace realtime
} // namespace database
