#include "database/realtime/objects/system/rt_object_installation_mqtt_device_t.h"

#include "database/realtime/rt_request.h"

namespace database {
namespace realtime {
namespace objects {

rt_object_installation_mqtt_device_t::rt_object_installation_mqtt_device_t(QObject* parent)
    : topicbase_t(parent)
{
}

rt_object_installation_mqtt_device_t::rt_object_installation_mqtt_device_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
}

rt_object_installation_mqtt_device_t::rt_object_installation_mqtt_device_t(
    rt_object_installation_mqtt_device_t const& other)
    : topicbase_t(other)
{
    copyValues(&other);
}

void rt_object_installation_mqtt_device_t::requestSetDescription(QString const& value)
{
    requestField(this, QStringLiteral("description"), value);
}

void rt_object_installation_mqtt_device_t::requestSetEnabled(bool value)
{
    requestField(this, QStringLiteral("enabled"), value);
}

} // namespace objects
} // namespace realtime
} // namespace database
