#include "database/definition/smtp/type_smtp_auth_type_t.h"

DATABASE_STRING_TYPE_DEFINE(database::definition::smtp::type_smtp_auth_type_t);

namespace database {
namespace definition {
namespace smtp {

const type_smtp_auth_type_t type_smtp_auth_type_t::PLAIN(QStringLiteral("PLAIN"));
const type_smtp_auth_type_t type_smtp_auth_type_t::LOGIN(QStringLiteral("LOGIN"));

} // namespace smtp
} // namespace definition
} // namespace database
