#ifndef DATABASE_DEFINITION_BAOS_TYPE_DTP_BAOS_T_H
#define DATABASE_DEFINITION_BAOS_TYPE_DTP_BAOS_T_H

#include <QString>

#include "database/definition/string_type_t.h"
#include "database/database_export.h"

namespace database {
namespace definition {
namespace baos {

/**
 * Datapoint type of a BAOS datapoint.
 */
class DATABASE_EXPORT type_dtp_baos_t : public string_type_t<type_dtp_baos_t>
{
public:
    using string_type_t::string_type_t;
    using string_type_t::is;

    static const type_dtp_baos_t dtp_1;
    static const type_dtp_baos_t dtp_2;
    static const type_dtp_baos_t dtp_3;
    static const type_dtp_baos_t dtp_4;
    static const type_dtp_baos_t dtp_5;
    static const type_dtp_baos_t dtp_6;
    static const type_dtp_baos_t dtp_7;
    static const type_dtp_baos_t dtp_8;
    static const type_dtp_baos_t dtp_9;
    static const type_dtp_baos_t dtp_10;
    static const type_dtp_baos_t dtp_11;
    static const type_dtp_baos_t dtp_11_baos;
    static const type_dtp_baos_t dtp_11_yyyy;
    static const type_dtp_baos_t dtp_12;
    static const type_dtp_baos_t dtp_13;
    static const type_dtp_baos_t dtp_14;
    static const type_dtp_baos_t dtp_15;
    static const type_dtp_baos_t dtp_16;
};

} // namespace baos
} // namespace definition
} // namespace database

DATABASE_STRING_TYPE_DECLARE(database::definition::baos::type_dtp_baos_t);

#endif // DATABASE_DEFINITION_BAOS_TYPE_DTP_BAOS_T_H
