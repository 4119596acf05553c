#include "database/definition/knx/type_interfaces_knx_t.h"

DATABASE_STRING_TYPE_DEFINE(database::definition::knx::type_interfaces_knx_t);

namespace database {
namespace definition {
namespace knx {

const type_interfaces_knx_t type_interfaces_knx_t::USB(QStringLiteral("USB"));
const type_interfaces_knx_t type_interfaces_knx_t::TUNNELING(QStringLiteral("TUNNELING"));
const type_interfaces_knx_t type_interfaces_knx_t::ROUTER(QStringLiteral("ROUTER"));

} // namespace knx
} // namespace definition
} // namespace database
