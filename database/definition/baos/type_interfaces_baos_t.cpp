#include "database/definition/baos/type_interfaces_baos_t.h"

DATABASE_STRING_TYPE_DEFINE(database::definition::baos::type_interfaces_baos_t);

namespace database {
namespace definition {
namespace baos {

const type_interfaces_baos_t type_interfaces_baos_t::USB(QStringLiteral("USB"));
const type_interfaces_baos_t type_interfaces_baos_t::TUNNELING(QStringLiteral("TUNNELING"));
const type_interfaces_baos_t type_interfaces_baos_t::ROUTER(QStringLiteral("ROUTER"));

} // namespace baos
} // namespace definition
} // namespace database
