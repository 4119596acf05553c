#include "database/definition/type_cron_t.h"

DATABASE_STRING_TYPE_DEFINE(database::definition::type_cron_t);

namespace database {
namespace definition {

const type_cron_t type_cron_t::dayofweek(QStringLiteral("dayofweek"));
const type_cron_t type_cron_t::month(QStringLiteral("month"));
const type_cron_t type_cron_t::day(QStringLiteral("day"));
const type_cron_t type_cron_t::hour(QStringLiteral("hour"));
const type_cron_t type_cron_t::minute(QStringLiteral("minute"));
const type_cron_t type_cron_t::year(QStringLiteral("year"));
const type_cron_t type_cron_t::from(QStringLiteral("from"));
const type_cron_t type_cron_t::to(QStringLiteral("to"));

} // namespace definition
} // namespace database
