#ifndef DATABASE_DEFINITION_BAOS_TYPE_INTERFACES_BAOS_T_H
#define DATABASE_DEFINITION_BAOS_TYPE_INTERFACES_BAOS_T_H

#include <QString>

#include "database/definition/string_type_t.h"
#include "database/database_export.h"

namespace database {
namespace definition {
namespace baos {

/**
 * Kind of interface through which a BAOS bus is reached.
 */
class DATABASE_EXPORT type_interfaces_baos_t : public string_type_t<type_interfaces_baos_t>
{
public:
    using string_type_t::string_type_t;
    using string_type_t::is;

    static const type_interfaces_baos_t USB;
    static const type_interfaces_baos_t TUNNELING;
    static const type_interfaces_baos_t ROUTER;
};

} // namespace baos
} // namespace definition
} // namespace database

DATABASE_STRING_TYPE_DECLARE(database::definition::baos::type_interfaces_baos_t);

#endif // DATABASE_DEFINITION_BAOS_TYPE_INTERFACES_BAOS_T_H
