#include "database/definition/baos/type_dtp_baos_t.h"

DATABASE_STRING_TYPE_DEFINE(database::definition::baos::type_dtp_baos_t);

namespace database {
namespace definition {
namespace baos {

const type_dtp_baos_t type_dtp_baos_t::dtp_1(QStringLiteral("dtp_1"));
const type_dtp_baos_t type_dtp_baos_t::dtp_2(QStringLiteral("dtp_2"));
const type_dtp_baos_t type_dtp_baos_t::dtp_3(QStringLiteral("dtp_3"));
const type_dtp_baos_t type_dtp_baos_t::dtp_4(QStringLiteral("dtp_4"));
const type_dtp_baos_t type_dtp_baos_t::dtp_5(QStringLiteral("dtp_5"));
const type_dtp_baos_t type_dtp_baos_t::dtp_6(QStringLiteral("dtp_6"));
const type_dtp_baos_t type_dtp_baos_t::dtp_7(QStringLiteral("dtp_7"));
const type_dtp_baos_t type_dtp_baos_t::dtp_8(QStringLiteral("dtp_8"));
const type_dtp_baos_t type_dtp_baos_t::dtp_9(QStringLiteral("dtp_9"));
const type_dtp_baos_t type_dtp_baos_t::dtp_10(QStringLiteral("dtp_10"));
const type_dtp_baos_t type_dtp_baos_t::dtp_11(QStringLiteral("dtp_11"));
const type_dtp_baos_t type_dtp_baos_t::dtp_11_baos(QStringLiteral("dtp_11_baos"));
const type_dtp_baos_t type_dtp_baos_t::dtp_11_yyyy(QStringLiteral("dtp_11_yyyy"));
const type_dtp_baos_t type_dtp_baos_t::dtp_12(QStringLiteral("dtp_12"));
const type_dtp_baos_t type_dtp_baos_t::dtp_13(QStringLiteral("dtp_13"));
const type_dtp_baos_t type_dtp_baos_t::dtp_14(QStringLiteral("dtp_14"));
const type_dtp_baos_t type_dtp_baos_t::dtp_15(QStringLiteral("dtp_15"));
const type_dtp_baos_t type_dtp_baos_t::dtp_16(QStringLiteral("dtp_16"));

} // namespace baos
} // namespace definition
} // namespace database
