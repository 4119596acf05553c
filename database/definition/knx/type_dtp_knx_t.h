#ifndef DATABASE_DEFINITION_KNX_TYPE_DTP_KNX_T_H
#define DATABASE_DEFINITION_KNX_TYPE_DTP_KNX_T_H

#include <QString>

#include "database/definition/string_type_t.h"
#include "database/database_export.h"

namespace database {
namespace definition {
namespace knx {

/**
 * KNX datapoint type, with the length in bytes of its value on the bus.
 */
class DATABASE_EXPORT type_dtp_knx_t : public string_type_t<type_dtp_knx_t>
{
public:
    type_dtp_knx_t() = default;
    /// The length is that of the static with this string, 0 for an unknown one.
    type_dtp_knx_t(QString const& value);
    type_dtp_knx_t(QString const& value, int length);
    using string_type_t::is;

    int length() const;
    /// Length of the static with this string; 0 for an unknown string.
    static int length(QString const& value);
    static int length(type_dtp_knx_t const& dtp);

    static const type_dtp_knx_t dtp_1;
    static const type_dtp_knx_t dtp_2;
    static const type_dtp_knx_t dtp_3;
    static const type_dtp_knx_t dtp_4;
    static const type_dtp_knx_t dtp_5;
    static const type_dtp_knx_t dtp_6;
    static const type_dtp_knx_t dtp_7;
    static const type_dtp_knx_t dtp_8;
    static const type_dtp_knx_t dtp_9;
    static const type_dtp_knx_t dtp_10;
    static const type_dtp_knx_t dtp_11;
    static const type_dtp_knx_t dtp_11_knx;
    static const type_dtp_knx_t dtp_11_yyyy;
    static const type_dtp_knx_t dtp_12;
    static const type_dtp_knx_t dtp_13;
    static const type_dtp_knx_t dtp_14;
    static const type_dtp_knx_t dtp_15;
    static const type_dtp_knx_t dtp_16;
    static const type_dtp_knx_t dtp_17;
    static const type_dtp_knx_t dtp_18;
    static const type_dtp_knx_t dtp_19;
    static const type_dtp_knx_t dtp_20;
    static const type_dtp_knx_t dtp_232;
    static const type_dtp_knx_t dtp_251;

private:
    int bytes = 0;
};

} // namespace knx
} // namespace definition
} // namespace database

DATABASE_STRING_TYPE_DECLARE(database::definition::knx::type_dtp_knx_t);

#endif // DATABASE_DEFINITION_KNX_TYPE_DTP_KNX_T_H
