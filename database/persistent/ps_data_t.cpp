#include "database/persistent/ps_data_t.h"

#include <memory>

#include "database/base/literals.h"

namespace database {
namespace persistent {

ps_data_t::ps_data_t(QObject* parent)
    : data_root_t(literals::request_persistent, parent)
{
    buildSections();
}

ps_data_t::ps_data_t(ps_data_t const& other)
    : data_root_t(other)
{
    copySections(other);
}

ps_data_t::~ps_data_t()
{
    deleteSections();
}

void ps_data_t::setGeneral(dbs::ps_general_t* section)
{
    adoptSection(general, section, &ps_data_t::generalChanged);
}

void ps_data_t::setNotify(dbs::ps_notify_t* section)
{
    adoptSection(notify, section, &ps_data_t::notifyChanged);
}

void ps_data_t::setItems(dbs::ps_items_t* section)
{
    adoptSection(items, section, &ps_data_t::itemsChanged);
}

void ps_data_t::setElements(dbs::ps_elements_t* section)
{
    adoptSection(elements, section, &ps_data_t::elementsChanged);
}

void ps_data_t::setStorage(dbs::ps_storage_t* section)
{
    adoptSection(storage, section, &ps_data_t::storageChanged);
}

void ps_data_t::setSchedulers(dbs::ps_scheduler_t* section)
{
    adoptSection(schedulers, section, &ps_data_t::schedulersChanged);
}

void ps_data_t::setScenary(dbs::ps_scenary_t* section)
{
    adoptSection(scenary, section, &ps_data_t::scenaryChanged);
}

void ps_data_t::setRules(dbs::ps_rules_t* section)
{
    adoptSection(rules, section, &ps_data_t::rulesChanged);
}

void ps_data_t::setDrivers(dbs::ps_drivers_t* section)
{
    adoptSection(drivers, section, &ps_data_t::driversChanged);
}

void ps_data_t::setInformation(dbs::ps_information_t* section)
{
    adoptSection(information, section, &ps_data_t::informationChanged);
}

void ps_data_t::setVersions(dbs::ps_versions_t* section)
{
    adoptSection(versions, section, &ps_data_t::versionsChanged);
}

void ps_data_t::setPresenceSimulation(dbs::ps_presencesimulation_t* section)
{
    adoptSection(presencesimulation, section, &ps_data_t::presencesimulationChanged);
}

void ps_data_t::setSmartButton(dbs::ps_smartbutton_t* section)
{
    adoptSection(smartbutton, section, &ps_data_t::smartbuttonChanged);
}

void ps_data_t::setUsers(dbs::ps_users_t* section)
{
    adoptSection(users, section, &ps_data_t::usersChanged);
}

void ps_data_t::setThermo(dbs::ps_thermo_t* section)
{
    adoptSection(thermo, section, &ps_data_t::thermoChanged);
}

QJsonObject ps_data_t::serializeDriver()
{
    return drivers->toJson();
}

template<class Section, class Prepare>
void ps_data_t::requestSection(Section* section, QString const& key, Prepare prepare)
{
    QString const topic = getTopic() + QLatin1Char('/') + key;
    // An empty stand-in for a null argument lives only as long as the request.
    std::unique_ptr<Section> empty;
    if (!section) {
        empty.reset(new Section(nullptr));
        if constexpr (!std::is_same_v<Prepare, std::nullptr_t>)
            prepare(empty.get());
        section = empty.get();
    }
    section->setTopic(topic);
    Q_EMIT onRequest(getPacketRequest(topic, section->toJson()));
}

void ps_data_t::requestSetGeneral(dbs::ps_general_t* section)
{
    requestSection(section, literals::key_general, nullptr);
}

void ps_data_t::requestSetNotify(dbs::ps_notify_t* section)
{
    requestSection(section, literals::key_notify, nullptr);
}

void ps_data_t::requestSetItems(dbs::ps_items_t* section)
{
    requestSection(section, literals::key_items, nullptr);
}

void ps_data_t::requestSetElements(dbs::ps_elements_t* section)
{
    requestSection(section, literals::key_elements, nullptr);
}

void ps_data_t::requestSetStorage(dbs::ps_storage_t* section)
{
    requestSection(section, literals::key_storage, [](dbs::ps_storage_t* empty) { empty->setProperty("objects_list", QJsonObject{{QString(), QJsonValue()}}); });
}

void ps_data_t::requestSetSchedulers(dbs::ps_scheduler_t* section)
{
    requestSection(section, literals::key_schedulers, nullptr);
}

void ps_data_t::requestSetScenary(dbs::ps_scenary_t* section)
{
    requestSection(section, literals::key_scenary, nullptr);
}

void ps_data_t::requestSetRules(dbs::ps_rules_t* section)
{
    requestSection(section, literals::key_rules, nullptr);
}

void ps_data_t::requestSetDrivers(dbs::ps_drivers_t* section)
{
    requestSection(section, literals::key_drivers, nullptr);
}

void ps_data_t::requestSetInformation(dbs::ps_information_t* section)
{
    requestSection(section, literals::key_information, nullptr);
}

void ps_data_t::requestSetVersions(dbs::ps_versions_t* section)
{
    requestSection(section, literals::key_versions, nullptr);
}

void ps_data_t::requestSetPresenceSimulation(dbs::ps_presencesimulation_t* section)
{
    requestSection(section, literals::key_presencesimulation, nullptr);
}

void ps_data_t::requestSetSmartButton(dbs::ps_smartbutton_t* section)
{
    requestSection(section, literals::key_smartbutton, nullptr);
}

void ps_data_t::requestSetUSers(dbs::ps_users_t* section)
{
    requestSection(section, literals::key_users, nullptr);
}

void ps_data_t::requestSetThermo(dbs::ps_thermo_t* section)
{
    requestSection(section, literals::key_thermo, nullptr);
}

} // namespace persistent
} // namespace database
