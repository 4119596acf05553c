#ifndef DATABASE_DEFINITION_TYPE_BRAND_T_H
#define DATABASE_DEFINITION_TYPE_BRAND_T_H

#include <QString>

#include "database/definition/string_type_t.h"
#include "database/database_export.h"

namespace database {
namespace definition {

/**
 * Brand of an installation: it decides the factory defaults and which KNX
 * modes are permitted.
 */
class DATABASE_EXPORT type_brand_t : public string_type_t<type_brand_t>
{
public:
    using string_type_t::string_type_t;

    /// The brand of that string; an unknown one falls back to HALDO with a warning.
    static type_brand_t getType(QString const& brand);

    static const type_brand_t HALDO;
    static const type_brand_t TOLVER;
    static const type_brand_t ARDENWALL;
    static const type_brand_t VESTRA;
};

} // namespace definition
} // namespace database

DATABASE_STRING_TYPE_DECLARE(database::definition::type_brand_t);

#endif // DATABASE_DEFINITION_TYPE_BRAND_T_H
