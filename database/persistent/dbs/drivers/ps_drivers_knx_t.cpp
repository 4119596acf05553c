#include "database/persistent/dbs/drivers/ps_drivers_knx_t.h"

namespace database {
namespace persistent {
namespace objects {
namespace drivers {

ps_drivers_knx_t::ps_drivers_knx_t(QObject* parent)
    : ps_drivers_bus_owner_t(QString(), parent)
{
}

ps_drivers_knx_t::ps_drivers_knx_t(QString const& topic, QObject* parent)
    : ps_drivers_bus_owner_t(topic, parent)
{
}

ps_drivers_knx_t::ps_drivers_knx_t(ps_drivers_knx_t const& other)
    : ps_drivers_bus_owner_t(other)
{
}

void ps_drivers_knx_t::update_driver(QString const& id, ps_object_drivers_knx_bus_t* bus, bool _notify)
{
    updateBus(id, bus, _notify);
}

} // namespace drivers
} // namespace objects
} // namespace persistent
} // namespace database
