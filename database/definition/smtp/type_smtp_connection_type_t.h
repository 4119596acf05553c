#ifndef DATABASE_DEFINITION_SMTP_TYPE_SMTP_CONNECTION_TYPE_T_H
#define DATABASE_DEFINITION_SMTP_TYPE_SMTP_CONNECTION_TYPE_T_H

#include <QString>

#include "database/definition/string_type_t.h"
#include "database/database_export.h"

namespace database {
namespace definition {
namespace smtp {

/**
 * Transport security of an SMTP connection.
 */
class DATABASE_EXPORT type_smtp_connection_type_t : public string_type_t<type_smtp_connection_type_t>
{
public:
    using string_type_t::string_type_t;
    using string_type_t::is;

    static const type_smtp_connection_type_t TCP;
    static const type_smtp_connection_type_t SSL;
    static const type_smtp_connection_type_t TLS;
};

} // namespace smtp
} // namespace definition
} // namespace database

DATABASE_STRING_TYPE_DECLARE(database::definition::smtp::type_smtp_connection_type_t);

#endif // DATABASE_DEFINITION_SMTP_TYPE_SMTP_CONNECTION_TYPE_T_H
