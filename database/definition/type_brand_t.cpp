#include "database/definition/type_brand_t.h"

DATABASE_STRING_TYPE_DEFINE(database::definition::type_brand_t);

namespace database {
namespace definition {

const type_brand_t type_brand_t::HALDO(QStringLiteral("HALDO"));
const type_brand_t type_brand_t::TOLVER(QStringLiteral("TOLVER"));
const type_brand_t type_brand_t::ARDENWALL(QStringLiteral("ARDENWALL"));
const type_brand_t type_brand_t::VESTRA(QStringLiteral("VESTRA"));

type_brand_t type_brand_t::getType(QString const& brand)
{
    // Unlike the other types, a brand must be one of the known ones: it selects
    // factory data that exists only for them.
    for (type_brand_t const* known : {&TOLVER, &ARDENWALL, &VESTRA, &HALDO}) {
        if (known->value == brand)
            return *known;
    }
    qErrnoWarning("Unknown brand apply Haldo ... ");
    return HALDO;
}

} // namespace definition
} // namespace database
