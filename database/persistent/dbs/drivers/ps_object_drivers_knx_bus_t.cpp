#include "database/persistent/dbs/drivers/ps_object_drivers_knx_bus_t.h"

namespace database {
namespace persistent {
namespace objects {
namespace drivers {

ps_object_drivers_knx_bus_t::ps_object_drivers_knx_bus_t(QObject* parent)
    : ps_object_drivers_bus_base_t(QString(), parent)
{
}

ps_object_drivers_knx_bus_t::ps_object_drivers_knx_bus_t(QString const& topic, QObject* parent)
    : ps_object_drivers_bus_base_t(topic, parent)
{
}

ps_object_drivers_knx_bus_t::ps_object_drivers_knx_bus_t(ps_object_drivers_knx_bus_t const& other)
    : ps_object_drivers_bus_base_t(other)
{
}

} // namespace drivers
} // namespace objects
} // namespace persistent
} // namespace database
