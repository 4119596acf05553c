#include "database/realtime/dbs/drivers/rt_object_driver_internal_sensors_t.h"

namespace database {
namespace realtime {
namespace objects {
namespace drivers {

rt_object_driver_internal_sensors_t::rt_object_driver_internal_sensors_t(QObject* parent)
    : sensor_set_t(QString(), parent)
{
}

rt_object_driver_internal_sensors_t::rt_object_driver_internal_sensors_t(QString const& topic, QObject* parent)
    : sensor_set_t(topic, parent)
{
}

rt_object_driver_internal_sensors_t::rt_object_driver_internal_sensors_t(
    rt_object_driver_internal_sensors_t const& other)
    : sensor_set_t(other)
{
}

} // namespace drivers
} // namespace objects
} // namespace realtime
} // namespace database
