#include "database/persistent/dbs/drivers/ps_drivers_internal_t.h"

namespace database {
namespace persistent {
namespace objects {
namespace drivers {

ps_drivers_internal_t::ps_drivers_internal_t(QObject* parent)
    : sensor_driver_t(QString(), parent)
{
}

ps_drivers_internal_t::ps_drivers_internal_t(QString const& topic, QObject* parent)
    : sensor_driver_t(topic, parent)
{
}

ps_drivers_internal_t::ps_drivers_internal_t(ps_drivers_internal_t const& other)
    : sensor_driver_t(other)
{
}

} // namespace drivers
} // namespace objects
} // namespace persistent
} // namespace database
