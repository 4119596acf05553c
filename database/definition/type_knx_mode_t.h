#ifndef DATABASE_DEFINITION_TYPE_KNX_MODE_T_H
#define DATABASE_DEFINITION_TYPE_KNX_MODE_T_H

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include "database/definition/type_brand_t.h"
#include "database/persistent/define/ps_knx_mode_t.h"
#include "database/database_export.h"

namespace database {
namespace definition {

/**
 * The KNX access modes that each brand permits, in order of preference; the
 * first is the brand's default. ps_knx_mode_t::automatic is in no list.
 */
class DATABASE_EXPORT type_knx_mode_t
{
public:
    using ps_knx_mode_t = persistent::definition::ps_knx_mode_t;

    type_knx_mode_t() = delete;

    /// Fills the map anew.
    static void init();
    /// Brand string to permitted modes, filled on first use.
    static QMap<QString, QList<ps_knx_mode_t>> knx_mode_permitted();
    /// Empty for a brand not in the map.
    static QList<ps_knx_mode_t> knx_mode(type_brand_t const& brand);
    static QStringList knx_mode_string_list(type_brand_t const& brand);
    /// A mode with an empty value for a brand not in the map.
    static ps_knx_mode_t knx_default_mode(type_brand_t const& brand);

private:
    static void fill();

    static QMap<QString, QList<ps_knx_mode_t>> knx_mode_permitted_map;
};

} // namespace definition
} // namespace database

#endif // DATABASE_DEFINITION_TYPE_KNX_MODE_T_H
