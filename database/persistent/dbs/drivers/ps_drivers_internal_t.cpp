#include "database/persistent/dbs/drivers/ps_drivers_internal_t.h"

namespace database {
namespace persistent {
namespace objects {
namespace drivers {

ps_drivers_internal_t::ps_drivers_internal_t(QObject* parent)
    : ps_drivers_internal_t(QString(), parent)
{
}

ps_drivers_internal_t::ps_drivers_internal_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
    , sensors(new ps_object_driver_internal_sensors_t(sensorsTopic(), this))
{
}

ps_drivers_internal_t::ps_drivers_internal_t(ps_drivers_internal_t const& other)
    : topicbase_t(other)
    , sensors(new ps_object_driver_internal_sensors_t(*other.sensors))
{
    sensors->setParent(this);
}

QString ps_drivers_internal_t::sensorsTopic() const
{
    return topic + QStringLiteral("/sensors");
}

void ps_drivers_internal_t::setSensors(ps_object_driver_internal_sensors_t* value)
{
    if (value == sensors && value)
        return;
    ps_object_driver_internal_sensors_t* old = sensors;
    sensors = value ? value : new ps_object_driver_internal_sensors_t(this);
    sensors->setParent(this);
    sensors->setTopic(sensorsTopic());
    delete old;
    Q_EMIT sensorsChanged(sensors);
}

void ps_drivers_internal_t::setTopic(QString const& value)
{
    topicbase_t::setTopic(value);
    sensors->setTopic(sensorsTopic());
}

void ps_drivers_internal_t::initRequestSignals(QObject* receiver, bool connect)
{
    connectRequestSignals(receiver, connect);
    sensors->setTopic(sensorsTopic());
    sensors->initRequestSignals(receiver, connect);
}

} // namespace drivers
} // namespace objects
} // namespace persistent
} // namespace database
