#include "database/realtime/dbs/drivers/rt_object_driver_knx_interface_t.h"

namespace database {
namespace realtime {
namespace objects {
namespace drivers {

rt_object_driver_knx_interface_t::rt_object_driver_knx_interface_t(QObject* parent)
    : rt_object_driver_interface_t(parent)
{
}

rt_object_driver_knx_interface_t::rt_object_driver_knx_interface_t(QString const& topic, QObject* parent)
    : rt_object_driver_interface_t(topic, parent)
{
}

rt_object_driver_knx_interface_t::rt_object_driver_knx_interface_t(rt_object_driver_knx_interface_t const& other)
    : rt_object_driver_interface_t(other)
{
    copyValues(&other);
}

} // namespace drivers
} // namespace objects
} // namespace realtime
} // namespace database
