#ifndef DATABASE_PERSISTENT_DEFINE_PS_TYPE_DATABASE_FIELD_T_H
#define DATABASE_PERSISTENT_DEFINE_PS_TYPE_DATABASE_FIELD_T_H

#include <QString>

#include "database/definition/string_type_t.h"
#include "database/database_export.h"

namespace database {
namespace persistent {
namespace definition {

/**
 * Sections of the persistent database; each string is the section's key in
 * the document.
 */
class DATABASE_EXPORT ps_type_database_field_t : public ::database::definition::string_type_t<ps_type_database_field_t>
{
public:
    using string_type_t::string_type_t;

    static const ps_type_database_field_t general;
    static const ps_type_database_field_t items;
    static const ps_type_database_field_t notify;
    static const ps_type_database_field_t elements;
    static const ps_type_database_field_t storage;
    static const ps_type_database_field_t schedulers;
    static const ps_type_database_field_t scenary;
    static const ps_type_database_field_t rules;
    static const ps_type_database_field_t drivers;
    static const ps_type_database_field_t information;
    static const ps_type_database_field_t versions;
    static const ps_type_database_field_t presencesimulation;
    static const ps_type_database_field_t smartbutton;
    static const ps_type_database_field_t users;
    static const ps_type_database_field_t thermo;
};

} // namespace definition
} // namespace persistent
} // namespace database

DATABASE_STRING_TYPE_DECLARE(database::persistent::definition::ps_type_database_field_t);

#endif // DATABASE_PERSISTENT_DEFINE_PS_TYPE_DATABASE_FIELD_T_H
