#ifndef DATABASE_PERSISTENT_DEFINE_PS_KNX_MODE_T_H
#define DATABASE_PERSISTENT_DEFINE_PS_KNX_MODE_T_H

#include <QString>

#include "database/definition/string_type_t.h"
#include "database/database_export.h"

namespace database {
namespace persistent {
namespace definition {

/**
 * How the installation reaches the KNX bus. `automatic` stands for the brand's
 * default mode and is resolved when it is set.
 */
class DATABASE_EXPORT ps_knx_mode_t : public ::database::definition::string_type_t<ps_knx_mode_t>
{
public:
    using string_type_t::string_type_t;

    static const ps_knx_mode_t kdrive;
    static const ps_knx_mode_t baos;
    static const ps_knx_mode_t automatic;
};

} // namespace definition
} // namespace persistent
} // namespace database

DATABASE_STRING_TYPE_DECLARE(database::persistent::definition::ps_knx_mode_t);

#endif // DATABASE_PERSISTENT_DEFINE_PS_KNX_MODE_T_H
