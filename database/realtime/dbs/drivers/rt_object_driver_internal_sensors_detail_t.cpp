#include "database/realtime/dbs/drivers/rt_object_driver_internal_sensors_detail_t.h"

namespace database {
namespace realtime {
namespace objects {
namespace drivers {

rt_object_driver_internal_sensors_detail_t::rt_object_driver_internal_sensors_detail_t(QObject* parent)
    : topicbase_t(parent)
{
}

rt_object_driver_internal_sensors_detail_t::rt_object_driver_internal_sensors_detail_t(QString const& topic,
                                                                                       QObject* parent)
    : topicbase_t(topic, parent)
{
}

rt_object_driver_internal_sensors_detail_t::rt_object_driver_internal_sensors_detail_t(
    rt_object_driver_internal_sensors_detail_t const& other)
    : topicbase_t(other)
    , value(other.value)
{
}

} // namespace drivers
} // namespace objects
} // namespace realtime
} // namespace database
