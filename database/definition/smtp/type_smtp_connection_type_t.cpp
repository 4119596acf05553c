#include "database/definition/smtp/type_smtp_connection_type_t.h"

DATABASE_STRING_TYPE_DEFINE(database::definition::smtp::type_smtp_connection_type_t);

namespace database {
namespace definition {
namespace smtp {

const type_smtp_connection_type_t type_smtp_connection_type_t::TCP(QStringLiteral("TCP"));
const type_smtp_connection_type_t type_smtp_connection_type_t::SSL(QStringLiteral("SSL"));
const type_smtp_connection_type_t type_smtp_connection_type_t::TLS(QStringLiteral("TLS"));

} // namespace smtp
} // namespace definition
} // namespace database
