#include "database/command/define/cmd_status_pairing_t.h"

DATABASE_STRING_TYPE_DEFINE(database::command::definition::cmd_status_pairing_t);

namespace database {
namespace command {
namespace definition {

const cmd_status_pairing_t cmd_status_pairing_t::init(QStringLiteral("init"));
const cmd_status_pairing_t cmd_status_pairing_t::fail(QStringLiteral("fail"));
const cmd_status_pairing_t cmd_status_pairing_t::success(QStringLiteral("success"));
const cmd_status_pairing_t cmd_status_pairing_t::timeout(QStringLiteral("timeout"));
const cmd_status_pairing_t cmd_status_pairing_t::start(QStringLiteral("start"));
const cmd_status_pairing_t cmd_status_pairing_t::stop(QStringLiteral("stop"));
const cmd_status_pairing_t cmd_status_pairing_t::wait(QStringLiteral("wait"));

} // namespace definition
} // namespace command
} // namespace database
