#include "database/rt_twin_t.h"

#include "database/database_t.h"
#include "database/persistent/objects/thermo/ps_object_thermo_base_t.h"
#include "database/persistent/objects/thermo/ps_object_thermostat_t.h"
#include "database/persistent/persistent_t.h"
#include "database/realtime/dbs/rt_items_t.h"
#include "database/realtime/dbs/rt_thermo_t.h"
#include "database/realtime/objects/rt_object_item_t.h"
#include "database/realtime/objects/rt_object_thermostat_t.h"
#include "database/realtime/realtime_t.h"

namespace database {

using persistent::objects::ps_object_thermo_base_t;
using realtime::objects::rt_object_item_t;
using realtime::objects::rt_object_thermo_t;
using realtime::objects::rt_object_thermostat_t;

namespace {

/// The season a thermostat may be in: heating only forces 1, cooling only 0.
/// True when the season had to change.
bool fitSeason(rt_object_thermo_t* live, uint seasonType, bool _notify)
{
    if (seasonType == ps_object_thermo_base_t::ONLY_HEATING && live->getSeason() != 1)
        live->update_season(1, _notify);
    else if (seasonType == ps_object_thermo_base_t::ONLY_COOLING && live->getSeason() != 0)
        live->update_season(0, _notify);
    else
        return false;
    return true;
}

} // namespace

rt_twin_t::rt_twin_t(database_t* database)
    : configured(database ? database->getPersistent() : nullptr)
    , live(database ? database->getRealtime() : nullptr)
{
}

rt_twin_t::rt_twin_t(persistent::persistent_t* _configured, realtime::realtime_t* _live)
    : configured(_configured)
    , live(_live)
{
}

QMutex* rt_twin_t::mutex() const
{
    return live ? live->getAccessMutex() : nullptr;
}

void rt_twin_t::item(QString const& id) const
{
    persistent::ps_data_t* configuration = configured ? configured->getData() : nullptr;
    realtime::rt_data_t* tree = live ? live->getData() : nullptr;
    if (!configuration || !tree)
        return;
    realtime::dbs::rt_items_t* twins = tree->getItems();
    persistent::objects::ps_object_item_t* item = configuration->getItems()->getObjects().value(id);
    if (!item) {
        twins->update_item(id, nullptr, true);
        return;
    }
    QString const value = twins->getObjects().contains(id) ? twins->getObjects().value(id)->getValue() : QString();
    // Copied by the section: the stand-in lives on this thread's stack only.
    rt_object_item_t twin(item->getFeedback(), value, nullptr);
    twins->update_item(id, &twin, true);
}

void rt_twin_t::items(persistent::ps_items_map const& map) const
{
    realtime::rt_data_t* tree = live ? live->getData() : nullptr;
    if (!tree)
        return;
    realtime::rt_items_map twins;
    for (auto it = map.begin(); it != map.end(); ++it) {
        if (!it.value())
            continue;
        auto* twin = new rt_object_item_t(it.value()->getFeedback(), QString(), nullptr);
        twin->deleteLater();
        twins.insert(it.key(), twin);
    }
    tree->getItems()->update_item(twins, true);
}

bool rt_twin_t::thermostat(QString const& id) const
{
    persistent::ps_data_t* configuration = configured ? configured->getData() : nullptr;
    realtime::rt_data_t* tree = live ? live->getData() : nullptr;
    if (!configuration || !tree)
        return false;
    realtime::dbs::rt_thermo_t* twins = tree->getThermo();
    persistent::objects::ps_object_thermostat_t* thermostat = configuration->getThermo()->getObjects().value(id);
    bool const present = twins->getObjects().contains(id);
    if (!thermostat) {
        twins->update(id, nullptr, true);
        return present;
    }
    uint const seasonType = thermostat->getThermo() ? thermostat->getThermo()->getSeasonType() : 0;
    if (rt_object_thermostat_t* existing = twins->getObjects().value(id))
        return fitSeason(existing->getThermo(), seasonType, true);
    // Copied by the section: the stand-in lives on this thread's stack only.
    rt_object_thermostat_t twin(nullptr);
    fitSeason(twin.getThermo(), seasonType, false);
    twins->update(id, &twin, true);
    return true;
}

} // namespace database
