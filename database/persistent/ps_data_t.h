#ifndef DATABASE_PERSISTENT_PS_DATA_T_H
#define DATABASE_PERSISTENT_PS_DATA_T_H

#include <QJsonObject>
#include <QObject>
#include <QString>

#include <tuple>

#include "database/base/data_root_t.h"
#include "database/persistent/dbs/ps_drivers_t.h"
#include "database/persistent/dbs/ps_elements_t.h"
#include "database/persistent/dbs/ps_general_t.h"
#include "database/persistent/dbs/ps_information_t.h"
#include "database/persistent/dbs/ps_items_t.h"
#include "database/persistent/dbs/ps_notify_t.h"
#include "database/persistent/dbs/ps_presencesimulation_t.h"
#include "database/persistent/dbs/ps_rules_t.h"
#include "database/persistent/dbs/ps_scenary_t.h"
#include "database/persistent/dbs/ps_scheduler_t.h"
#include "database/persistent/dbs/ps_smartbutton_t.h"
#include "database/persistent/dbs/ps_storage_t.h"
#include "database/persistent/dbs/ps_thermo_t.h"
#include "database/persistent/dbs/ps_users_t.h"
#include "database/persistent/dbs/ps_versions_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {

/**
 * The root of the configuration tree. It owns the sections, and its
 * properties, in their order, are the top-level keys of the database file and
 * of every topic. The persistent engine holds one, and so does the factory of
 * the brand's defaults.
 */
class DATABASE_EXPORT ps_data_t : public base::data_root_t<ps_data_t>
{
    Q_OBJECT
    Q_PROPERTY(database::persistent::dbs::ps_general_t* general READ getGeneral WRITE setGeneral NOTIFY generalChanged)
    Q_PROPERTY(database::persistent::dbs::ps_notify_t* notify READ getNotify WRITE setNotify NOTIFY notifyChanged)
    Q_PROPERTY(database::persistent::dbs::ps_items_t* items READ getItems WRITE setItems NOTIFY itemsChanged)
    Q_PROPERTY(database::persistent::dbs::ps_elements_t* elements READ getElements WRITE setElements NOTIFY elementsChanged)
    Q_PROPERTY(database::persistent::dbs::ps_storage_t* storage READ getStorage WRITE setStorage NOTIFY storageChanged)
    Q_PROPERTY(database::persistent::dbs::ps_scheduler_t* schedulers READ getSchedulers WRITE setSchedulers NOTIFY schedulersChanged)
    Q_PROPERTY(database::persistent::dbs::ps_scenary_t* scenary READ getScenary WRITE setScenary NOTIFY scenaryChanged)
    Q_PROPERTY(database::persistent::dbs::ps_rules_t* rules READ getRules WRITE setRules NOTIFY rulesChanged)
    Q_PROPERTY(database::persistent::dbs::ps_drivers_t* drivers READ getDrivers WRITE setDrivers NOTIFY driversChanged)
    Q_PROPERTY(database::persistent::dbs::ps_information_t* information READ getInformation WRITE setInformation NOTIFY informationChanged)
    Q_PROPERTY(database::persistent::dbs::ps_versions_t* versions READ getVersions WRITE setVersions NOTIFY versionsChanged)
    Q_PROPERTY(database::persistent::dbs::ps_presencesimulation_t* presencesimulation READ getPresenceSimulation WRITE setPresenceSimulation NOTIFY presencesimulationChanged)
    Q_PROPERTY(database::persistent::dbs::ps_smartbutton_t* smartbutton READ getSmartButton WRITE setSmartButton NOTIFY smartbuttonChanged)
    Q_PROPERTY(database::persistent::dbs::ps_users_t* users READ getUsers WRITE setUsers NOTIFY usersChanged)
    Q_PROPERTY(database::persistent::dbs::ps_thermo_t* thermo READ getThermo WRITE setThermo NOTIFY thermoChanged)

public:
    Q_INVOKABLE explicit ps_data_t(QObject* parent = nullptr);
    /// Deep: every section by its copy constructor; signals are left to the caller.
    ps_data_t(ps_data_t const& other);
    ~ps_data_t() override;

    dbs::ps_general_t* getGeneral() const { return general; }
    dbs::ps_notify_t* getNotify() const { return notify; }
    dbs::ps_items_t* getItems() const { return items; }
    dbs::ps_elements_t* getElements() const { return elements; }
    dbs::ps_storage_t* getStorage() const { return storage; }
    dbs::ps_scheduler_t* getSchedulers() const { return schedulers; }
    dbs::ps_scenary_t* getScenary() const { return scenary; }
    dbs::ps_rules_t* getRules() const { return rules; }
    dbs::ps_drivers_t* getDrivers() const { return drivers; }
    dbs::ps_information_t* getInformation() const { return information; }
    dbs::ps_versions_t* getVersions() const { return versions; }
    dbs::ps_presencesimulation_t* getPresenceSimulation() const { return presencesimulation; }
    dbs::ps_smartbutton_t* getSmartButton() const { return smartbutton; }
    dbs::ps_users_t* getUsers() const { return users; }
    dbs::ps_thermo_t* getThermo() const { return thermo; }

    /// Take over a section, deleting the one in place; null puts a default section there.
    void setGeneral(dbs::ps_general_t* section);
    void setNotify(dbs::ps_notify_t* section);
    void setItems(dbs::ps_items_t* section);
    void setElements(dbs::ps_elements_t* section);
    void setStorage(dbs::ps_storage_t* section);
    void setSchedulers(dbs::ps_scheduler_t* section);
    void setScenary(dbs::ps_scenary_t* section);
    void setRules(dbs::ps_rules_t* section);
    void setDrivers(dbs::ps_drivers_t* section);
    void setInformation(dbs::ps_information_t* section);
    void setVersions(dbs::ps_versions_t* section);
    void setPresenceSimulation(dbs::ps_presencesimulation_t* section);
    void setSmartButton(dbs::ps_smartbutton_t* section);
    void setUsers(dbs::ps_users_t* section);
    void setThermo(dbs::ps_thermo_t* section);

    QJsonObject serializeDriver();

    /// Ask that a section be replaced as a whole; null asks that it be emptied.
    void requestSetGeneral(dbs::ps_general_t* section);
    void requestSetNotify(dbs::ps_notify_t* section);
    void requestSetItems(dbs::ps_items_t* section);
    void requestSetElements(dbs::ps_elements_t* section);
    void requestSetStorage(dbs::ps_storage_t* section);
    void requestSetSchedulers(dbs::ps_scheduler_t* section);
    void requestSetScenary(dbs::ps_scenary_t* section);
    void requestSetRules(dbs::ps_rules_t* section);
    void requestSetDrivers(dbs::ps_drivers_t* section);
    void requestSetInformation(dbs::ps_information_t* section);
    void requestSetVersions(dbs::ps_versions_t* section);
    void requestSetPresenceSimulation(dbs::ps_presencesimulation_t* section);
    void requestSetSmartButton(dbs::ps_smartbutton_t* section);
    void requestSetUSers(dbs::ps_users_t* section);
    void requestSetThermo(dbs::ps_thermo_t* section);

Q_SIGNALS:
    void generalChanged(database::persistent::dbs::ps_general_t*);
    void notifyChanged(database::persistent::dbs::ps_notify_t*);
    void itemsChanged(database::persistent::dbs::ps_items_t*);
    void elementsChanged(database::persistent::dbs::ps_elements_t*);
    void storageChanged(database::persistent::dbs::ps_storage_t*);
    void schedulersChanged(database::persistent::dbs::ps_scheduler_t*);
    void scenaryChanged(database::persistent::dbs::ps_scenary_t*);
    void rulesChanged(database::persistent::dbs::ps_rules_t*);
    void driversChanged(database::persistent::dbs::ps_drivers_t*);
    void informationChanged(database::persistent::dbs::ps_information_t*);
    void versionsChanged(database::persistent::dbs::ps_versions_t*);
    void presencesimulationChanged(database::persistent::dbs::ps_presencesimulation_t*);
    void smartbuttonChanged(database::persistent::dbs::ps_smartbutton_t*);
    void usersChanged(database::persistent::dbs::ps_users_t*);
    void thermoChanged(database::persistent::dbs::ps_thermo_t*);

private:
    friend class base::data_root_t<ps_data_t>;

    /// The sections in the order in which they are built, wired and copied.
    auto sections() { return std::tie(general, notify, items, elements, storage, schedulers, scenary, rules, drivers, information, versions, presencesimulation, smartbutton, users, thermo); }
    auto sections() const { return std::tie(general, notify, items, elements, storage, schedulers, scenary, rules, drivers, information, versions, presencesimulation, smartbutton, users, thermo); }

    template<class Section, class Prepare>
    void requestSection(Section* section, QString const& key, Prepare prepare);

    dbs::ps_general_t* general = nullptr;
    dbs::ps_items_t* items = nullptr;
    dbs::ps_notify_t* notify = nullptr;
    dbs::ps_elements_t* elements = nullptr;
    dbs::ps_storage_t* storage = nullptr;
    dbs::ps_scheduler_t* schedulers = nullptr;
    dbs::ps_scenary_t* scenary = nullptr;
    dbs::ps_rules_t* rules = nullptr;
    dbs::ps_drivers_t* drivers = nullptr;
    dbs::ps_information_t* information = nullptr;
    dbs::ps_versions_t* versions = nullptr;
    dbs::ps_presencesimulation_t* presencesimulation = nullptr;
    dbs::ps_smartbutton_t* smartbutton = nullptr;
    dbs::ps_users_t* users = nullptr;
    dbs::ps_thermo_t* thermo = nullptr;
};

} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_PS_DATA_T_H
