#include "database/realtime/rt_data_t.h"

#include "database/base/literals.h"

namespace database {
namespace realtime {

rt_data_t::rt_data_t(QObject* parent)
    : data_root_t(literals::request_realtime, parent)
{
    buildSections();
}

rt_data_t::rt_data_t(rt_data_t const& other)
    : data_root_t(other)
{
    copySections(other);
}

rt_data_t::~rt_data_t()
{
    deleteSections();
}

void rt_data_t::setAstronomical(dbs::rt_astronomical_t* section, bool _notify)
{
    adoptSection(astronomical, section, &rt_data_t::astronomicalChanged, _notify);
}

void rt_data_t::setNotify(dbs::rt_notify_t* section, bool _notify)
{
    adoptSection(notify, section, &rt_data_t::notifyChanged, _notify);
}

void rt_data_t::setItems(dbs::rt_items_t* section, bool _notify)
{
    adoptSection(items, section, &rt_data_t::itemsChanged, _notify);
}

void rt_data_t::setStorage(dbs::rt_storage_t* section, bool _notify)
{
    adoptSection(storage, section, &rt_data_t::storageChanged, _notify);
}

void rt_data_t::setSchedulers(dbs::rt_scheduler_t* section, bool _notify)
{
    adoptSection(schedulers, section, &rt_data_t::schedulersChanged, _notify);
}

void rt_data_t::setScenary(dbs::rt_scenary_t* section, bool _notify)
{
    adoptSection(scenary, section, &rt_data_t::scenaryChanged, _notify);
}

void rt_data_t::setRules(dbs::rt_rules_t* section, bool _notify)
{
    adoptSection(rules, section, &rt_data_t::rulesChanged, _notify);
}

void rt_data_t::setDrivers(dbs::rt_drivers_t* section, bool _notify)
{
    adoptSection(drivers, section, &rt_data_t::driversChanged, _notify);
}

void rt_data_t::setInstalaltion(dbs::rt_installation_t* section, bool _notify)
{
    adoptSection(installation, section, &rt_data_t::installationChanged, _notify);
}

void rt_data_t::setPresencesimulation(dbs::rt_presencesimulation_t* section, bool _notify)
{
    adoptSection(presencesimulation, section, &rt_data_t::presencesimulationChanged, _notify);
}

void rt_data_t::setSmartButton(dbs::rt_smartbutton_t* section, bool _notify)
{
    adoptSection(smartbutton, section, &rt_data_t::smartbuttonChanged, _notify);
}

void rt_data_t::setThermo(dbs::rt_thermo_t* section, bool _notify)
{
    adoptSection(thermo, section, &rt_data_t::thermoChanged, _notify);
}

} // namespace realtime
} // namespace database
