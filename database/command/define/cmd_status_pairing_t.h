#ifndef DATABASE_COMMAND_DEFINE_CMD_STATUS_PAIRING_T_H
#define DATABASE_COMMAND_DEFINE_CMD_STATUS_PAIRING_T_H

#include <QString>

#include "database/definition/string_type_t.h"
#include "database/database_export.h"

namespace database {
namespace command {
namespace definition {

/**
 * The states of a pairing, named for the hosts that run it; the library
 * itself carries pairing packets without looking at them.
 */
class DATABASE_EXPORT cmd_status_pairing_t : public ::database::definition::string_type_t<cmd_status_pairing_t>
{
public:
    using string_type_t::string_type_t;

    static const cmd_status_pairing_t init;
    static const cmd_status_pairing_t fail;
    static const cmd_status_pairing_t success;
    static const cmd_status_pairing_t timeout;
    static const cmd_status_pairing_t start;
    static const cmd_status_pairing_t stop;
    static const cmd_status_pairing_t wait;
};

} // namespace definition
} // namespace command
} // namespace database

DATABASE_STRING_TYPE_DECLARE(database::command::definition::cmd_status_pairing_t);

#endif // DATABASE_COMMAND_DEFINE_CMD_STATUS_PAIRING_T_H
