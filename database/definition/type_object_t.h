#ifndef DATABASE_DEFINITION_TYPE_OBJECT_T_H
#define DATABASE_DEFINITION_TYPE_OBJECT_T_H

#include <QString>

#include "database/definition/string_type_t.h"
#include "database/database_export.h"

namespace database {
namespace definition {

/**
 * Kind of object that a step of a scenario, rule or schedule refers to. The
 * strings are the markers written into rule texts; `unknown` is the empty string.
 */
class DATABASE_EXPORT type_object_t : public string_type_t<type_object_t>
{
public:
    using string_type_t::string_type_t;

    static const type_object_t item;
    static const type_object_t scenary;
    static const type_object_t rules;
    static const type_object_t notify;
    static const type_object_t thermo;
    static const type_object_t unknown;
};

} // namespace definition
} // namespace database

DATABASE_STRING_TYPE_DECLARE(database::definition::type_object_t);

#endif // DATABASE_DEFINITION_TYPE_OBJECT_T_H
