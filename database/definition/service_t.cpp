#include "database/definition/service_t.h"

DATABASE_STRING_TYPE_DEFINE(database::definition::service_t);

namespace database {
namespace definition {

const service_t service_t::server(QStringLiteral("server"));
const service_t service_t::client(QStringLiteral("client"));
const service_t service_t::offline(QStringLiteral("offline"));

} // namespace definition
} // namespace database
