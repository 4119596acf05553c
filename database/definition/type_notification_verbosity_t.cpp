#include "database/definition/type_notification_verbosity_t.h"

DATABASE_STRING_TYPE_DEFINE(database::definition::type_notification_verbosity_t);

namespace database {
namespace definition {

const type_notification_verbosity_t type_notification_verbosity_t::info(QStringLiteral("info"));
const type_notification_verbosity_t type_notification_verbosity_t::warning(QStringLiteral("warning"));
const type_notification_verbosity_t type_notification_verbosity_t::alarm(QStringLiteral("alarm"));

} // namespace definition
} // namespace database
