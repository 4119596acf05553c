#include "database/realtime/dbs/drivers/rt_object_driver_knx_status_t.h"

namespace database {
namespace realtime {
namespace objects {
namespace drivers {

rt_object_driver_knx_status_t::rt_object_driver_knx_status_t(QObject* parent)
    : rt_object_driver_status_t(QString(), parent)
{
}

rt_object_driver_knx_status_t::rt_object_driver_knx_status_t(QString const& topic, QObject* parent)
    : rt_object_driver_status_t(topic, parent)
{
}

rt_object_driver_knx_status_t::rt_object_driver_knx_status_t(rt_object_driver_knx_status_t const& other)
    : rt_object_driver_status_t(other)
{
}

} // namespace drivers
} // namespace objects
} // namespace realtime
} // namespace database
