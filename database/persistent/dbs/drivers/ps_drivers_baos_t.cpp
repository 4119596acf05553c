#include "database/persistent/dbs/drivers/ps_drivers_baos_t.h"

namespace database {
namespace persistent {
namespace objects {
namespace drivers {

ps_drivers_baos_t::ps_drivers_baos_t(QObject* parent)
    : ps_drivers_bus_owner_t(QString(), parent)
{
}

ps_drivers_baos_t::ps_drivers_baos_t(QString const& topic, QObject* parent)
    : ps_drivers_bus_owner_t(topic, parent)
{
}

ps_drivers_baos_t::ps_drivers_baos_t(ps_drivers_baos_t const& other)
    : ps_drivers_bus_owner_t(other)
{
}

void ps_drivers_baos_t::update_bus(QString const& id, ps_object_drivers_baos_bus_t* bus, bool _notify)
{
    updateBus(id, bus, _notify);
}

} // namespace drivers
} // namespace objects
} // namespace persistent
} // namespace database
