#include "database/persistent/dbs/drivers/ps_object_driver_internal_sensors_t.h"

namespace database {
namespace persistent {
namespace objects {
namespace drivers {

ps_object_driver_internal_sensors_t::ps_object_driver_internal_sensors_t(QObject* parent)
    : sensor_set_t(QString(), parent)
{
}

ps_object_driver_internal_sensors_t::ps_object_driver_internal_sensors_t(QString const& topic, QObject* parent)
    : sensor_set_t(topic, parent)
{
}

ps_object_driver_internal_sensors_t::ps_object_driver_internal_sensors_t(
    ps_object_driver_internal_sensors_t const& other)
    : sensor_set_t(other)
{
}

} // namespace drivers
} // namespace objects
} // namespace persistent
} // namespace database
