#ifndef DATABASE_PRESENCESIMULATION_DEFINE_PSI_TYPE_DATABASE_FIELD_T_H
#define DATABASE_PRESENCESIMULATION_DEFINE_PSI_TYPE_DATABASE_FIELD_T_H

#include <QString>

#include "database/definition/string_type_t.h"
#include "database/database_export.h"

namespace database {
namespace presencesimulation {
namespace definition {

/**
 * The fields of the presence simulation database. Its one value is the base
 * topic of the database, which is also the topic of the week tree's root.
 */
class DATABASE_EXPORT psi_type_database_field_t
    : public ::database::definition::string_type_t<psi_type_database_field_t>
{
public:
    using string_type_t::string_type_t;

    static const psi_type_database_field_t presencesimulation;
};

} // namespace definition
} // namespace presencesimulation
} // namespace database

DATABASE_STRING_TYPE_DECLARE(database::presencesimulation::definition::psi_type_database_field_t);

#endif // DATABASE_PRESENCESIMULATION_DEFINE_PSI_TYPE_DATABASE_FIELD_T_H
