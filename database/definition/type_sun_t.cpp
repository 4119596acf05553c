#include "database/definition/type_sun_t.h"

DATABASE_STRING_TYPE_DEFINE(database::definition::type_sun_t);

namespace database {
namespace definition {

const type_sun_t type_sun_t::sunset(QStringLiteral("sunset"));
const type_sun_t type_sun_t::sunrise(QStringLiteral("sunrise"));

} // namespace definition
} // namespace database
