#ifndef DATABASE_DEFINITION_SERVICE_T_H
#define DATABASE_DEFINITION_SERVICE_T_H

#include <QString>

#include "database/definition/string_type_t.h"
#include "database/database_export.h"

namespace database {
namespace definition {

/**
 * Role of a process in an installation: `server` owns the state, `client`
 * follows it, `offline` has no server and answers its own requests.
 */
class DATABASE_EXPORT service_t : public string_type_t<service_t>
{
public:
    using string_type_t::string_type_t;

    static const service_t server;
    static const service_t client;
    static const service_t offline;
};

} // namespace definition
} // namespace database

DATABASE_STRING_TYPE_DECLARE(database::definition::service_t);

#endif // DATABASE_DEFINITION_SERVICE_T_H
