#ifndef DATABASE_DEFINITION_SMTP_TYPE_SMTP_AUTH_TYPE_T_H
#define DATABASE_DEFINITION_SMTP_TYPE_SMTP_AUTH_TYPE_T_H

#include <QString>

#include "database/definition/string_type_t.h"
#include "database/database_export.h"

namespace database {
namespace definition {
namespace smtp {

/**
 * Authentication method of an SMTP account.
 */
class DATABASE_EXPORT type_smtp_auth_type_t : public string_type_t<type_smtp_auth_type_t>
{
public:
    using string_type_t::string_type_t;
    using string_type_t::is;

    static const type_smtp_auth_type_t PLAIN;
    static const type_smtp_auth_type_t LOGIN;
};

} // namespace smtp
} // namespace definition
} // namespace database

DATABASE_STRING_TYPE_DECLARE(database::definition::smtp::type_smtp_auth_type_t);

#endif // DATABASE_DEFINITION_SMTP_TYPE_SMTP_AUTH_TYPE_T_H
