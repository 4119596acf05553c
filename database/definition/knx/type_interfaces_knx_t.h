#ifndef DATABASE_DEFINITION_KNX_TYPE_INTERFACES_KNX_T_H
#define DATABASE_DEFINITION_KNX_TYPE_INTERFACES_KNX_T_H

#include <QString>

#include "database/definition/string_type_t.h"
#include "database/database_export.h"

namespace database {
namespace definition {
namespace knx {

/**
 * Kind of interface through which a KNX bus is reached.
 */
class DATABASE_EXPORT type_interfaces_knx_t : public string_type_t<type_interfaces_knx_t>
{
public:
    using string_type_t::string_type_t;
    using string_type_t::is;

    static const type_interfaces_knx_t USB;
    static const type_interfaces_knx_t TUNNELING;
    static const type_interfaces_knx_t ROUTER;
};

} // namespace knx
} // namespace definition
} // namespace database

DATABASE_STRING_TYPE_DECLARE(database::definition::knx::type_interfaces_knx_t);

#endif // DATABASE_DEFINITION_KNX_TYPE_INTERFACES_KNX_T_H
