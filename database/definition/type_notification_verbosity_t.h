#ifndef DATABASE_DEFINITION_TYPE_NOTIFICATION_VERBOSITY_T_H
#define DATABASE_DEFINITION_TYPE_NOTIFICATION_VERBOSITY_T_H

#include <QString>

#include "database/definition/string_type_t.h"
#include "database/database_export.h"

namespace database {
namespace definition {

/**
 * Severity of a notification.
 */
class DATABASE_EXPORT type_notification_verbosity_t : public string_type_t<type_notification_verbosity_t>
{
public:
    using string_type_t::string_type_t;

    static const type_notification_verbosity_t info;
    static const type_notification_verbosity_t warning;
    static const type_notification_verbosity_t alarm;
};

} // namespace definition
} // namespace database

DATABASE_STRING_TYPE_DECLARE(database::definition::type_notification_verbosity_t);

#endif // DATABASE_DEFINITION_TYPE_NOTIFICATION_VERBOSITY_T_H
