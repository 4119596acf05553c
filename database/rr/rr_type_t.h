#ifndef DATABASE_RR_RR_TYPE_T_H
#define DATABASE_RR_RR_TYPE_T_H

#include <QString>

#include "database/definition/string_type_t.h"
#include "database/database_export.h"

namespace database {
namespace rr {

/**
 * Kind of an outside service, as a string. No kinds are fixed here: each
 * service brings its own.
 */
class DATABASE_EXPORT rr_type_t : public ::database::definition::string_type_t<rr_type_t>
{
public:
    using string_type_t::string_type_t;
};

} // namespace rr
} // namespace database

DATABASE_STRING_TYPE_DECLARE(database::rr::rr_type_t);

#endif // DATABASE_RR_RR_TYPE_T_H
