#include "database/definition/type_rules_t.h"

DATABASE_STRING_TYPE_DEFINE(database::definition::type_rules_t);

namespace database {
namespace definition {

const type_rules_t type_rules_t::ondemand(QStringLiteral("ondemand"));
const type_rules_t type_rules_t::ontrigger(QStringLiteral("ontrigger"));
const type_rules_t type_rules_t::onchange(QStringLiteral("onchange"));

} // namespace definition
} // namespace database
