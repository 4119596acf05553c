#include "database/realtime/dbs/drivers/rt_drivers_internal_t.h"

namespace database {
namespace realtime {
namespace objects {
namespace drivers {

rt_drivers_internal_t::rt_drivers_internal_t(QObject* parent)
    : sensor_driver_t(QString(), parent)
{
}

rt_drivers_internal_t::rt_drivers_internal_t(QString const& topic, QObject* parent)
    : sensor_driver_t(topic, parent)
{
}

rt_drivers_internal_t::rt_drivers_internal_t(rt_drivers_internal_t const& other)
    : sensor_driver_t(other)
{
}

} // namespace drivers
} // namespace objects
} // namespace realtime
} // namespace database
