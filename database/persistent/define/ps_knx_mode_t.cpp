#include "database/persistent/define/ps_knx_mode_t.h"

DATABASE_STRING_TYPE_DEFINE(database::persistent::definition::ps_knx_mode_t);

namespace database {
namespace persistent {
namespace definition {

const ps_knx_mode_t ps_knx_mode_t::kdrive(QStringLiteral("kdrive"));
const ps_knx_mode_t ps_knx_mode_t::baos(QStringLiteral("baos"));
const ps_knx_mode_t ps_knx_mode_t::automatic(QStringLiteral("automatic"));

} // namespace definition
} // namespace persistent
} // namespace database
