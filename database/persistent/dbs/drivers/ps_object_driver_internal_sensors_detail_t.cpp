#include "database/persistent/dbs/drivers/ps_object_driver_internal_sensors_detail_t.h"

#include "database/persistent/ps_request.h"

namespace database {
namespace persistent {
namespace objects {
namespace drivers {

ps_object_driver_internal_sensors_detail_t::ps_object_driver_internal_sensors_detail_t(QObject* parent)
    : topicbase_t(parent)
{
}

ps_object_driver_internal_sensors_detail_t::ps_object_driver_internal_sensors_detail_t(QString const& topic,
                                                                                       QObject* parent)
    : topicbase_t(topic, parent)
{
}

ps_object_driver_internal_sensors_detail_t::ps_object_driver_internal_sensors_detail_t(
    ps_object_driver_internal_sensors_detail_t const& other)
    : topicbase_t(other)
    , enabled(other.enabled)
{
}

void ps_object_driver_internal_sensors_detail_t::setEnabled(bool value)
{
    assign(enabled, value, [this] { Q_EMIT enabledChanged(enabled); });
}

void ps_object_driver_internal_sensors_detail_t::requestSetEnabled(bool value)
{
    requestField(this, QStringLiteral("enabled"), value);
}

void ps_object_driver_internal_sensors_detail_t::update(ps_object_driver_internal_sensors_detail_t const* other,
                                                        bool _notify)
{
    updateValues(other, _notify);
}

void ps_object_driver_internal_sensors_detail_t::send_update()
{
    publishSelf();
}

void ps_object_driver_internal_sensors_detail_t::initRequestSignals(QObject* receiver, bool connect)
{
    connectRequestSignals(receiver, connect);
}

} // namespace drivers
} // namespace objects
} // namespace persistent
} // namespace database
