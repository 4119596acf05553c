#ifndef DATABASE_DEFINITION_TYPE_SUN_T_H
#define DATABASE_DEFINITION_TYPE_SUN_T_H

#include <QString>

#include "database/definition/string_type_t.h"
#include "database/database_export.h"

namespace database {
namespace definition {

/**
 * Sun event that an astronomical schedule follows.
 */
class DATABASE_EXPORT type_sun_t : public string_type_t<type_sun_t>
{
public:
    using string_type_t::string_type_t;

    static const type_sun_t sunset;
    static const type_sun_t sunrise;
};

} // namespace definition
} // namespace database

DATABASE_STRING_TYPE_DECLARE(database::definition::type_sun_t);

#endif // DATABASE_DEFINITION_TYPE_SUN_T_H
