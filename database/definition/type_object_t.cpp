#include "database/definition/type_object_t.h"

DATABASE_STRING_TYPE_DEFINE(database::definition::type_object_t);

namespace database {
namespace definition {

const type_object_t type_object_t::item(QStringLiteral("@item"));
const type_object_t type_object_t::scenary(QStringLiteral("@scenary"));
const type_object_t type_object_t::rules(QStringLiteral("@rules"));
const type_object_t type_object_t::notify(QStringLiteral("@notify"));
const type_object_t type_object_t::thermo(QStringLiteral("@thermo"));
const type_object_t type_object_t::unknown{QString()};

} // namespace definition
} // namespace database
