#include "database/command/define/cmd_type_database_reset_t.h"

DATABASE_STRING_TYPE_DEFINE(database::command::definition::cmd_type_database_reset_t);

namespace database {
namespace command {
namespace definition {

const cmd_type_database_reset_t cmd_type_database_reset_t::all(QStringLiteral("all"));
const cmd_type_database_reset_t cmd_type_database_reset_t::presencesimulation(QStringLiteral("presencesimulation"));

} // namespace definition
} // namespace command
} // namespace database
