#include "database/definition/type_knx_mode_t.h"

#include <QMutex>

namespace database {
namespace definition {

namespace {
// Consistency checks ask from the thread pool while the façade may ask from
// its own thread. QBasicMutex is constant-initialised, so it is usable from
// any static initialiser.
QBasicMutex mapMutex;
} // namespace

// Filled lazily rather than here: the ps_knx_mode_t statics live in another
// file and may not be built yet while this one is initialised.
QMap<QString, QList<type_knx_mode_t::ps_knx_mode_t>> type_knx_mode_t::knx_mode_permitted_map;

void type_knx_mode_t::fill()
{
    knx_mode_permitted_map.clear();
    knx_mode_permitted_map.insert(type_brand_t::HALDO.ToString(), {ps_knx_mode_t::kdrive, ps_knx_mode_t::baos});
    knx_mode_permitted_map.insert(type_brand_t::TOLVER.ToString(), {ps_knx_mode_t::baos});
    knx_mode_permitted_map.insert(type_brand_t::VESTRA.ToString(), {ps_knx_mode_t::baos});
    knx_mode_permitted_map.insert(type_brand_t::ARDENWALL.ToString(), {ps_knx_mode_t::baos});
}

void type_knx_mode_t::init()
{
    QMutexLocker locker(&mapMutex);
    fill();
}

QMap<QString, QList<type_knx_mode_t::ps_knx_mode_t>> type_knx_mode_t::knx_mode_permitted()
{
    QMutexLocker locker(&mapMutex);
    if (knx_mode_permitted_map.isEmpty())
        fill();
    return knx_mode_permitted_map;
}

QList<type_knx_mode_t::ps_knx_mode_t> type_knx_mode_t::knx_mode(type_brand_t const& brand)
{
    return knx_mode_permitted().value(brand.ToString());
}

QStringList type_knx_mode_t::knx_mode_string_list(type_brand_t const& brand)
{
    QStringList modes;
    for (ps_knx_mode_t const& mode : knx_mode(brand))
        modes.append(mode.ToString());
    return modes;
}

type_knx_mode_t::ps_knx_mode_t type_knx_mode_t::knx_default_mode(type_brand_t const& brand)
{
    QList<ps_knx_mode_t> const modes = knx_mode(brand);
    return modes.isEmpty() ? ps_knx_mode_t() : modes.first();
}

} // namespace definition
} // namespace database
