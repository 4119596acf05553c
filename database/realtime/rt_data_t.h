#ifndef DATABASE_REALTIME_RT_DATA_T_H
#define DATABASE_REALTIME_RT_DATA_T_H

#include <QJsonObject>
#include <QObject>

#include <tuple>

#include "database/base/data_root_t.h"
#include "database/realtime/dbs/rt_astronomical_t.h"
#include "database/realtime/dbs/rt_drivers_t.h"
#include "database/realtime/dbs/rt_installation_t.h"
#include "database/realtime/dbs/rt_items_t.h"
#include "database/realtime/dbs/rt_notify_t.h"
#include "database/realtime/dbs/rt_presencesimulation_t.h"
#include "database/realtime/dbs/rt_rules_t.h"
#include "database/realtime/dbs/rt_scenary_t.h"
#include "database/realtime/dbs/rt_scheduler_t.h"
#include "database/realtime/dbs/rt_smartbutton_t.h"
#include "database/realtime/dbs/rt_storage_t.h"
#include "database/realtime/dbs/rt_system_t.h"
#include "database/realtime/dbs/rt_thermo_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {

/**
 * The root of the live state. It owns the thirteen sections, whose order is
 * that of the top-level keys of the realtime file and image. The realtime
 * engine holds one, and so does the factory of the realtime defaults.
 */
class DATABASE_EXPORT rt_data_t : public base::data_root_t<rt_data_t>
{
    Q_OBJECT
    Q_PROPERTY(database::realtime::dbs::rt_astronomical_t* astronomical READ getAstronomical WRITE setAstronomical NOTIFY astronomicalChanged)
    Q_PROPERTY(database::realtime::dbs::rt_notify_t* notify READ getNotify WRITE setNotify NOTIFY notifyChanged)
    Q_PROPERTY(database::realtime::dbs::rt_items_t* items READ getItems WRITE setItems NOTIFY itemsChanged)
    Q_PROPERTY(database::realtime::dbs::rt_storage_t* storage READ getStorage WRITE setStorage NOTIFY storageChanged)
    Q_PROPERTY(database::realtime::dbs::rt_scheduler_t* schedulers READ getSchedulers WRITE setSchedulers NOTIFY schedulersChanged)
    Q_PROPERTY(database::realtime::dbs::rt_scenary_t* scenary READ getScenary WRITE setScenary NOTIFY scenaryChanged)
    Q_PROPERTY(database::realtime::dbs::rt_rules_t* rules READ getRules WRITE setRules NOTIFY rulesChanged)
    Q_PROPERTY(database::realtime::dbs::rt_drivers_t* drivers READ getDrivers WRITE setDrivers NOTIFY driversChanged)
    Q_PROPERTY(database::realtime::dbs::rt_installation_t* installation READ getInstallation WRITE setInstalaltion NOTIFY installationChanged)
    Q_PROPERTY(database::realtime::dbs::rt_presencesimulation_t* presencesimulation READ getPresencesimulation WRITE setPresencesimulation NOTIFY presencesimulationChanged)
    Q_PROPERTY(database::realtime::dbs::rt_system_t* system READ getSystem NOTIFY systemChanged)
    Q_PROPERTY(database::realtime::dbs::rt_smartbutton_t* smartbutton READ getSmartButton WRITE setSmartButton NOTIFY smartbuttonChanged)
    Q_PROPERTY(database::realtime::dbs::rt_thermo_t* thermo READ getThermo WRITE setThermo NOTIFY thermoChanged)

public:
    Q_INVOKABLE explicit rt_data_t(QObject* parent = nullptr);
    /// Deep: every section by its copy constructor; no parent, signals are left to the caller.
    rt_data_t(rt_data_t const& other);
    ~rt_data_t() override;

    dbs::rt_astronomical_t* getAstronomical() const { return astronomical; }
    dbs::rt_notify_t* getNotify() const { return notify; }
    dbs::rt_items_t* getItems() const { return items; }
    dbs::rt_storage_t* getStorage() const { return storage; }
    dbs::rt_scheduler_t* getSchedulers() const { return schedulers; }
    dbs::rt_scenary_t* getScenary() const { return scenary; }
    dbs::rt_rules_t* getRules() const { return rules; }
    dbs::rt_drivers_t* getDrivers() const { return drivers; }
    dbs::rt_installation_t* getInstallation() const { return installation; }
    dbs::rt_presencesimulation_t* getPresencesimulation() const { return presencesimulation; }
    dbs::rt_system_t* getSystem() const { return system; }
    dbs::rt_smartbutton_t* getSmartButton() const { return smartbutton; }
    dbs::rt_thermo_t* getThermo() const { return thermo; }

    /// Take over a section, deleting the one in place; null puts a default
    /// section there. _notify raises the key's Changed signal. The system
    /// section has no setter: it is never replaced from outside.
    void setAstronomical(dbs::rt_astronomical_t* section, bool _notify = true);
    void setNotify(dbs::rt_notify_t* section, bool _notify = true);
    void setItems(dbs::rt_items_t* section, bool _notify = true);
    void setStorage(dbs::rt_storage_t* section, bool _notify = true);
    void setSchedulers(dbs::rt_scheduler_t* section, bool _notify = true);
    void setScenary(dbs::rt_scenary_t* section, bool _notify = true);
    void setRules(dbs::rt_rules_t* section, bool _notify = true);
    void setDrivers(dbs::rt_drivers_t* section, bool _notify = true);
    void setInstalaltion(dbs::rt_installation_t* section, bool _notify = true);
    void setPresencesimulation(dbs::rt_presencesimulation_t* section, bool _notify = true);
    void setSmartButton(dbs::rt_smartbutton_t* section, bool _notify = true);
    void setThermo(dbs::rt_thermo_t* section, bool _notify = true);

    /// The drivers section alone, as JSON.
    QJsonObject serializeDriver() { return drivers->toJson(); }

Q_SIGNALS:
    void astronomicalChanged(database::realtime::dbs::rt_astronomical_t*);
    void notifyChanged(database::realtime::dbs::rt_notify_t*);
    void itemsChanged(database::realtime::dbs::rt_items_t*);
    void storageChanged(database::realtime::dbs::rt_storage_t*);
    void schedulersChanged(database::realtime::dbs::rt_scheduler_t*);
    void scenaryChanged(database::realtime::dbs::rt_scenary_t*);
    void rulesChanged(database::realtime::dbs::rt_rules_t*);
    void driversChanged(database::realtime::dbs::rt_drivers_t*);
    void installationChanged(database::realtime::dbs::rt_installation_t*);
    void presencesimulationChanged(database::realtime::dbs::rt_presencesimulation_t*);
    void systemChanged(database::realtime::dbs::rt_system_t*);
    void smartbuttonChanged(database::realtime::dbs::rt_smartbutton_t*);
    void thermoChanged(database::realtime::dbs::rt_thermo_t*);

private:
    friend class base::data_root_t<rt_data_t>;

    /// The sections in the order in which they are built, wired and copied.
    auto sections() { return std::tie(astronomical, notify, items, storage, schedulers, scenary, rules, drivers, installation, presencesimulation, system, smartbutton, thermo); }
    auto sections() const { return std::tie(astronomical, notify, items, storage, schedulers, scenary, rules, drivers, installation, presencesimulation, system, smartbutton, thermo); }

    dbs::rt_astronomical_t* astronomical = nullptr;
    dbs::rt_notify_t* notify = nullptr;
    dbs::rt_items_t* items = nullptr;
    dbs::rt_storage_t* storage = nullptr;
    dbs::rt_scheduler_t* schedulers = nullptr;
    dbs::rt_scenary_t* scenary = nullptr;
    dbs::rt_rules_t* rules = nullptr;
    dbs::rt_drivers_t* drivers = nullptr;
    dbs::rt_installation_t* installation = nullptr;
    dbs::rt_presencesimulation_t* presencesimulation = nullptr;
    dbs::rt_system_t* system = nullptr;
    dbs::rt_smartbutton_t* smartbutton = nullptr;
    dbs::rt_thermo_t* thermo = nullptr;
};

} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_RT_DATA_T_H
