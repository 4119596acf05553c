#include "database/definition/knx/type_dtp_knx_t.h"

DATABASE_STRING_TYPE_DEFINE(database::definition::knx::type_dtp_knx_t);

namespace database {
namespace definition {
namespace knx {

const type_dtp_knx_t type_dtp_knx_t::dtp_1(QStringLiteral("dtp_1"), 1);
const type_dtp_knx_t type_dtp_knx_t::dtp_2(QStringLiteral("dtp_2"), 1);
const type_dtp_knx_t type_dtp_knx_t::dtp_3(QStringLiteral("dtp_3"), 1);
const type_dtp_knx_t type_dtp_knx_t::dtp_4(QStringLiteral("dtp_4"), 1);
const type_dtp_knx_t type_dtp_knx_t::dtp_5(QStringLiteral("dtp_5"), 1);
const type_dtp_knx_t type_dtp_knx_t::dtp_6(QStringLiteral("dtp_6"), 1);
const type_dtp_knx_t type_dtp_knx_t::dtp_7(QStringLiteral("dtp_7"), 2);
const type_dtp_knx_t type_dtp_knx_t::dtp_8(QStringLiteral("dtp_8"), 2);
const type_dtp_knx_t type_dtp_knx_t::dtp_9(QStringLiteral("dtp_9"), 2);
const type_dtp_knx_t type_dtp_knx_t::dtp_10(QStringLiteral("dtp_10"), 3);
const type_dtp_knx_t type_dtp_knx_t::dtp_11(QStringLiteral("dtp_11"), 3);
const type_dtp_knx_t type_dtp_knx_t::dtp_11_knx(QStringLiteral("dtp_11_knx"), 3);
const type_dtp_knx_t type_dtp_knx_t::dtp_11_yyyy(QStringLiteral("dtp_11_yyyy"), 3);
const type_dtp_knx_t type_dtp_knx_t::dtp_12(QStringLiteral("dtp_12"), 4);
const type_dtp_knx_t type_dtp_knx_t::dtp_13(QStringLiteral("dtp_13"), 4);
const type_dtp_knx_t type_dtp_knx_t::dtp_14(QStringLiteral("dtp_14"), 4);
const type_dtp_knx_t type_dtp_knx_t::dtp_15(QStringLiteral("dtp_15"), 4);
const type_dtp_knx_t type_dtp_knx_t::dtp_16(QStringLiteral("dtp_16"), 14);
const type_dtp_knx_t type_dtp_knx_t::dtp_17(QStringLiteral("dtp_17"), 1);
const type_dtp_knx_t type_dtp_knx_t::dtp_18(QStringLiteral("dtp_18"), 1);
const type_dtp_knx_t type_dtp_knx_t::dtp_19(QStringLiteral("dtp_19"), 8);
const type_dtp_knx_t type_dtp_knx_t::dtp_20(QStringLiteral("dtp_20"), 1);
const type_dtp_knx_t type_dtp_knx_t::dtp_232(QStringLiteral("dtp_232"), 3);
const type_dtp_knx_t type_dtp_knx_t::dtp_251(QStringLiteral("dtp_251"), 6);

namespace {
type_dtp_knx_t const* const known[] = {
    &type_dtp_knx_t::dtp_1, &type_dtp_knx_t::dtp_2, &type_dtp_knx_t::dtp_3, &type_dtp_knx_t::dtp_4,
    &type_dtp_knx_t::dtp_5, &type_dtp_knx_t::dtp_6, &type_dtp_knx_t::dtp_7, &type_dtp_knx_t::dtp_8,
    &type_dtp_knx_t::dtp_9, &type_dtp_knx_t::dtp_10, &type_dtp_knx_t::dtp_11, &type_dtp_knx_t::dtp_11_knx,
    &type_dtp_knx_t::dtp_11_yyyy, &type_dtp_knx_t::dtp_12, &type_dtp_knx_t::dtp_13, &type_dtp_knx_t::dtp_14,
    &type_dtp_knx_t::dtp_15, &type_dtp_knx_t::dtp_16, &type_dtp_knx_t::dtp_17, &type_dtp_knx_t::dtp_18,
    &type_dtp_knx_t::dtp_19, &type_dtp_knx_t::dtp_20, &type_dtp_knx_t::dtp_232, &type_dtp_knx_t::dtp_251,
};
} // namespace

type_dtp_knx_t::type_dtp_knx_t(QString const& _value)
    : string_type_t(_value)
    , bytes(length(_value))
{
}

type_dtp_knx_t::type_dtp_knx_t(QString const& _value, int _length)
    : string_type_t(_value)
    , bytes(_length)
{
}

int type_dtp_knx_t::length() const
{
    return bytes;
}

int type_dtp_knx_t::length(QString const& _value)
{
    for (type_dtp_knx_t const* dtp : known) {
        if (dtp->value == _value)
            return dtp->bytes;
    }
    return 0;
}

int type_dtp_knx_t::length(type_dtp_knx_t const& dtp)
{
    return length(dtp.value);
}

} // namespace knx
} // namespace definition
} // namespace database
