#include "database/realtime/dbs/drivers/rt_drivers_baos_t.h"

namespace database {
namespace realtime {
namespace objects {
namespace drivers {

rt_drivers_baos_t::rt_drivers_baos_t(QObject* parent)
    : rt_drivers_bus_t(QString(), parent)
{
}

rt_drivers_baos_t::rt_drivers_baos_t(QString const& topic, QObject* parent)
    : rt_drivers_bus_t(topic, parent)
{
}

rt_drivers_baos_t::rt_drivers_baos_t(rt_drivers_baos_t const& other)
    : rt_drivers_bus_t(other)
{
}

} // namespace drivers
} // namespace objects
} // namespace realtime
} // namespace database
