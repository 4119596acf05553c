#ifndef DATABASE_DEFINITION_TYPE_RULES_T_H
#define DATABASE_DEFINITION_TYPE_RULES_T_H

#include <QString>

#include "database/definition/string_type_t.h"
#include "database/database_export.h"

namespace database {
namespace definition {

/**
 * When a rule is evaluated: on demand, on its trigger, or on a change.
 */
class DATABASE_EXPORT type_rules_t : public string_type_t<type_rules_t>
{
public:
    using string_type_t::string_type_t;

    static const type_rules_t ondemand;
    static const type_rules_t ontrigger;
    static const type_rules_t onchange;
};

} // namespace definition
} // namespace database

DATABASE_STRING_TYPE_DECLARE(database::definition::type_rules_t);

#endif // DATABASE_DEFINITION_TYPE_RULES_T_H
