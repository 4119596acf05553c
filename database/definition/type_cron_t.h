#ifndef DATABASE_DEFINITION_TYPE_CRON_T_H
#define DATABASE_DEFINITION_TYPE_CRON_T_H

#include <QString>

#include "database/definition/string_type_t.h"
#include "database/database_export.h"

namespace database {
namespace definition {

/**
 * Names of the fields of a schedule pattern and of its validity dates.
 */
class DATABASE_EXPORT type_cron_t : public string_type_t<type_cron_t>
{
public:
    using string_type_t::string_type_t;

    static const type_cron_t dayofweek;
    static const type_cron_t month;
    static const type_cron_t day;
    static const type_cron_t hour;
    static const type_cron_t minute;
    static const type_cron_t year;
    static const type_cron_t from;
    static const type_cron_t to;
};

} // namespace definition
} // namespace database

DATABASE_STRING_TYPE_DECLARE(database::definition::type_cron_t);

#endif // DATABASE_DEFINITION_TYPE_CRON_T_H
