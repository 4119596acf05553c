#include "database/realtime/dbs/drivers/rt_object_driver_baos_status_detail_t.h"

namespace database {
namespace realtime {
namespace objects {
namespace drivers {

rt_object_driver_baos_status_detail_t::rt_object_driver_baos_status_detail_t(QObject* parent)
    : rt_object_driver_status_detail_t(parent)
{
}

rt_object_driver_baos_status_detail_t::rt_object_driver_baos_status_detail_t(QString const& topic, QObject* parent)
    : rt_object_driver_status_detail_t(topic, parent)
{
}

rt_object_driver_baos_status_detail_t::rt_object_driver_baos_status_detail_t(
    rt_object_driver_baos_status_detail_t const& other)
    : rt_object_driver_status_detail_t(other)
{
    copyValues(&other);
}

} // namespace drivers
} // namespace objects
} // namespace realtime
} // namespace database
