#ifndef DATABASE_COMMAND_DEFINE_CMD_TYPE_DATABASE_RESET_T_H
#define DATABASE_COMMAND_DEFINE_CMD_TYPE_DATABASE_RESET_T_H

#include <QString>

#include "database/definition/string_type_t.h"
#include "database/database_export.h"

namespace database {
namespace command {
namespace definition {

/**
 * What a reset order puts back to its defaults: every database, or the
 * presence simulation week alone. The text is the last step of the topic
 * "request/DB/command/reset/...".
 */
class DATABASE_EXPORT cmd_type_database_reset_t
    : public ::database::definition::string_type_t<cmd_type_database_reset_t>
{
public:
    using string_type_t::string_type_t;

    static const cmd_type_database_reset_t all;
    static const cmd_type_database_reset_t presencesimulation;
};

} // namespace definition
} // namespace command
} // namespace database

DATABASE_STRING_TYPE_DECLARE(database::command::definition::cmd_type_database_reset_t);

#endif // DATABASE_COMMAND_DEFINE_CMD_TYPE_DATABASE_RESET_T_H
