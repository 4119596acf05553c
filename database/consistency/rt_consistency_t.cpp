#include "database/consistency/rt_consistency_t.h"

#include <QElapsedTimer>
#include <QMutexLocker>
#include <QStringList>

#include "database/database_t.h"
#include "database/persistent/persistent_t.h"
#include "database/realtime/dbs/drivers/rt_drivers_baos_t.h"
#include "database/realtime/dbs/drivers/rt_drivers_internal_t.h"
#include "database/realtime/dbs/drivers/rt_drivers_knx_t.h"
#include "database/realtime/dbs/rt_astronomical_t.h"
#include "database/realtime/dbs/rt_drivers_t.h"
#include "database/realtime/dbs/rt_items_t.h"
#include "database/realtime/dbs/rt_notify_t.h"
#include "database/realtime/dbs/rt_scenary_t.h"
#include "database/realtime/dbs/rt_system_t.h"
#include "database/realtime/dbs/rt_thermo_t.h"
#include "database/realtime/realtime_t.h"
#include "database/rt_twin_t.h"

namespace database {

using ::database::definition::service_t;
using namespace realtime::objects;
using namespace realtime::objects::drivers;

namespace {

/// Brings the keys of a live map in line with the configured ones: first the
/// live keys without configuration go, then the configured keys without twin
/// come. True when a key went or came.
template<class Remove, class Add>
bool syncKeys(QStringList const& configured, QStringList const& live, Remove remove, Add add)
{
    bool changed = false;
    for (QString const& key : live) {
        if (!configured.contains(key)) {
            remove(key);
            changed = true;
        }
    }
    for (QString const& key : configured) {
        if (!live.contains(key)) {
            add(key);
            changed = true;
        }
    }
    return changed;
}

/// syncKeys for the status records of a bus driver.
template<class Status, class Driver>
bool syncBusStatus(QStringList const& buses, Driver* driver)
{
    return syncKeys(
        buses, driver->getStatus().keys(), [&](QString const& key) { driver->update_status(key, nullptr, true); },
        [&](QString const& key) {
            Status status(nullptr);
            driver->update_status(key, &status, true);
        });
}

} // namespace

rt_consistency_t::rt_consistency_t(database_t* _database, QObject* parent)
    : QObject(parent)
    , database(_database)
{
    log(QStringLiteral("Starting database realtime consistency engine ..."), ::utility::logs::trace,
        "rt_consistency_t");
}

void rt_consistency_t::check(bool softreset, bool _save)
{
    log(QStringLiteral("Start check consistency for realtime part "), ::utility::logs::trace, "check");
    QElapsedTimer clock;
    clock.start();
    // Taken before the locks: the façade's accessors lock for the moment of the read.
    persistent::persistent_t* configuration = database ? database->getPersistent() : nullptr;
    realtime::realtime_t* realtime = database ? database->getRealtime() : nullptr;
    if (!configuration || !realtime)
        return;
    rt_twin_t const keeper(configuration, realtime);
    bool changed = false;
    {
        QMutexLocker configurationLocker(configuration->getAccessMutex());
        QMutexLocker realtimeLocker(realtime->getAccessMutex());
        configured = configuration->getData();
        engine = realtime;
        live = realtime->getData();
        twin = &keeper;
        if (configured && live) {
            // Each check runs, whatever the ones before it found.
            changed = check_item(false) | changed;
            changed = check_thermo(softreset) | changed;
            changed = check_astronomical(softreset) | changed;
            changed = check_driver_knx(softreset, false) | changed;
            changed = check_driver_baos(softreset, false) | changed;
            changed = check_driver_internal(softreset, false) | changed;
            changed = check_notify() | changed;
            changed = check_rules(softreset, false) | changed;
            changed = check_scenary(softreset, false) | changed;
            changed = check_schedulers(softreset, false) | changed;
            changed = check_system(softreset, false) | changed;
        }
        configured = nullptr;
        engine = nullptr;
        live = nullptr;
        twin = nullptr;
    }
    if (changed && _save)
        Q_EMIT realtime->onSaveRequest();
    log(QStringLiteral("Consistency realtime check time: ") + QString::number(clock.elapsed() / 1000)
            + QStringLiteral(" second"),
        ::utility::logs::info, "check");
}

bool rt_consistency_t::check_item(bool softreset)
{
    Q_UNUSED(softreset);
    char const* source = "check_item";
    log(QStringLiteral("Sync item realtime .... "), ::utility::logs::trace, source);
    persistent::ps_items_map const items = configured->getItems()->getObjects();
    realtime::rt_items_map const twins = live->getItems()->getObjects();
    bool changed = items.keys() != twins.keys();
    // The twin keeper keeps the live value across a change of the feedback address.
    for (auto it = items.begin(); it != items.end(); ++it) {
        rt_object_item_t const* existing = twins.value(it.key());
        if (!existing) {
            log(QStringLiteral("Add key ") + it.key(), ::utility::logs::trace, source);
            twin->item(it.key());
            changed = true;
            continue;
        }
        log(QStringLiteral("Already contains key ") + it.key(), ::utility::logs::trace, source);
        if (it.value() && existing->getFeedback() != it.value()->getFeedback()) {
            log(QStringLiteral("Update key ") + it.key(), ::utility::logs::trace, source);
            twin->item(it.key());
        } else {
            log(QStringLiteral("Already contains key ") + it.key() + QStringLiteral(" same"), ::utility::logs::trace,
                source);
        }
    }
    for (QString const& key : twins.keys()) {
        if (items.contains(key))
            continue;
        log(QStringLiteral("Remove key ") + key, ::utility::logs::trace, source);
        twin->item(key);
        changed = true;
    }
    if (changed)
        live->getItems()->send_update();
    return changed;
}

bool rt_consistency_t::check_thermo(bool softreset)
{
    log(QStringLiteral("Sync thermo realtime .... "), ::utility::logs::trace, "check_thermo");
    bool changed = false;
    if (softreset) {
        live->getThermo()->update(realtime::rt_thermostat_map(), true);
        changed = true;
    }
    // The keeper creates, fits the season of, or removes the twin of each id.
    QStringList ids = configured->getThermo()->getObjects().keys();
    for (QString const& key : live->getThermo()->keys()) {
        if (!ids.contains(key))
            ids.append(key);
    }
    for (QString const& id : std::as_const(ids))
        changed = twin->thermostat(id) | changed;
    return changed;
}

bool rt_consistency_t::check_astronomical(bool softreset)
{
    log(QStringLiteral("Sync astronomical .. "), ::utility::logs::trace, "check_astronomical");
    if (!softreset || engine->getService() != service_t::offline)
        return false;
    live->getAstronomical()->update_reset(true);
    requestSave();
    return true;
}

bool rt_consistency_t::check_driver_knx(bool softreset, bool save)
{
    Q_UNUSED(softreset);
    log(QStringLiteral("Sync drivers knx .. "), ::utility::logs::trace, "check_driver_knx");
    return saveIf(save,
                  syncBusStatus<rt_object_driver_knx_status_t>(configured->getDrivers()->getKnx()->getBus().keys(),
                                                               live->getDrivers()->getKnx()));
}

bool rt_consistency_t::check_driver_baos(bool softreset, bool save)
{
    Q_UNUSED(softreset);
    log(QStringLiteral("Sync drivers baos .. "), ::utility::logs::trace, "check_driver_baos");
    return saveIf(save,
                  syncBusStatus<rt_object_driver_baos_status_t>(configured->getDrivers()->getBaos()->getBus().keys(),
                                                                live->getDrivers()->getBaos()));
}

bool rt_consistency_t::check_driver_internal(bool softreset, bool save)
{
    Q_UNUSED(save);
    log(QStringLiteral("Sync drivers internal .. "), ::utility::logs::trace, "check_driver_internal");
    if (!softreset)
        return false;
    rt_object_driver_internal_sensors_t fresh(nullptr);
    live->getDrivers()->getInternal()->update(&fresh, true);
    return true;
}

bool rt_consistency_t::check_notify()
{
    char const* source = "check_notify";
    log(QStringLiteral("Sync notify ..."), ::utility::logs::trace, source);
    realtime::dbs::rt_notify_t* notify = live->getNotify();
    persistent::dbs::ps_notify_t const* limits = configured->getNotify();
    bool changed = false;
    auto fit = [&](QString const& kind, auto size, int maximum, void (realtime::dbs::rt_notify_t::*resize)(int)) {
        log(QStringLiteral("Check size ") + kind + QStringLiteral(" notification"), ::utility::logs::trace, source);
        if (size() <= maximum)
            return;
        (notify->*resize)(maximum);
        changed = true;
        if (size() > maximum)
            log(QStringLiteral("Error to resize ") + kind + QStringLiteral(" notification"), ::utility::logs::error,
                source);
    };
    fit(
        QStringLiteral("user"), [&] { return notify->getUserNotify().size(); }, limits->getMaxUserNotification(),
        &realtime::dbs::rt_notify_t::resizeUserNotification);
    fit(
        QStringLiteral("system"), [&] { return notify->getSysNotify().size(); }, limits->getMaxSysNotification(),
        &realtime::dbs::rt_notify_t::resizeSysNotification);
    return changed;
}

bool rt_consistency_t::check_rules(bool softreset, bool save)
{
    Q_UNUSED(softreset);
    Q_UNUSED(save);
    // Kept in the sequence for the generation that gives rules a live state of their own.
    log(QStringLiteral("Sync rules .. not implemented"), ::utility::logs::trace, "check_rules");
    return false;
}

bool rt_consistency_t::check_scenary(bool softreset, bool save)
{
    log(QStringLiteral("Sync scenary .. "), ::utility::logs::trace, "check_scenary");
    realtime::dbs::rt_scenary_t* scenary = live->getScenary();
    if (softreset)
        scenary->update(realtime::rt_scenary_map(), true);
    return saveIf(save,
                  syncKeys(
                      configured->getScenary()->getObjects().keys(), scenary->getObjects().keys(),
                      [&](QString const& key) { scenary->update_scenary(key, nullptr, true); },
                      [&](QString const& key) {
                          rt_object_scenary_t fresh(nullptr);
                          scenary->update_scenary(key, &fresh, true);
                      }));
}

bool rt_consistency_t::check_schedulers(bool softreset, bool save)
{
    Q_UNUSED(softreset);
    Q_UNUSED(save);
    log(QStringLiteral("Sync scheduler .. not implemented"), ::utility::logs::trace, "check_schedulers");
    return false;
}

bool rt_consistency_t::check_system(bool softreset, bool save)
{
    Q_UNUSED(save);
    log(QStringLiteral("Sync system ... "), ::utility::logs::trace, "check_system");
    if (!softreset)
        return false;
    realtime::dbs::rt_system_t fresh(nullptr);
    live->getSystem()->update_database(&fresh, true);
    return true;
}

void rt_consistency_t::requestSave() const
{
    Q_EMIT engine->onSaveRequest();
}

bool rt_consistency_t::saveIf(bool save, bool changed) const
{
    if (changed && save)
        requestSave();
    return changed;
}

void rt_consistency_t::log(QString const& message, ::utility::logs::LogLevel level, char const* source) const
{
    CLASSLOGS_LOG(message, level, QString::fromLatin1(source));
}

} // namespace database
