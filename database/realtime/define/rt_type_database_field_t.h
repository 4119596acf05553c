#ifndef DATABASE_REALTIME_DEFINE_RT_TYPE_DATABASE_FIELD_T_H
#define DATABASE_REALTIME_DEFINE_RT_TYPE_DATABASE_FIELD_T_H

#include <QString>

#include "database/definition/string_type_t.h"
#include "database/database_export.h"

namespace database {
namespace realtime {
namespace definition {

/**
 * Sections of the realtime database, by their key in the document; the
 * realtime engine gives out one section of its image by it. "general" names
 * no realtime section and is kept for the peers that still ask for it.
 */
class DATABASE_EXPORT rt_type_database_field_t : public ::database::definition::string_type_t<rt_type_database_field_t>
{
public:
    using string_type_t::string_type_t;

    static const rt_type_database_field_t drivers;
    static const rt_type_database_field_t general;
    static const rt_type_database_field_t items;
    static const rt_type_database_field_t notify;
    static const rt_type_database_field_t rules;
    static const rt_type_database_field_t scenary;
    static const rt_type_database_field_t schedulers;
    static const rt_type_database_field_t storage;
    static const rt_type_database_field_t installation;
    static const rt_type_database_field_t smartbutton;
    static const rt_type_database_field_t thermo;
};

} // namespace definition
} // namespace realtime
} // namespace database

DATABASE_STRING_TYPE_DECLARE(database::realtime::definition::rt_type_database_field_t);

#endif // DATABASE_REALTIME_DEFINE_RT_TYPE_DATABASE_FIELD_T_H
