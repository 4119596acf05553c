#include "database/persistent/dbs/drivers/ps_object_driver_internal_sensors_t.h"

namespace database {
namespace persistent {
namespace objects {
namespace drivers {

QList<ps_object_driver_internal_sensors_t::field_t> const& ps_object_driver_internal_sensors_t::fields()
{
    static QList<field_t> const table{
        {&ps_object_driver_internal_sensors_t::temperature, QStringLiteral("temperature")},
        {&ps_object_driver_internal_sensors_t::humidity, QStringLiteral("humidity")},
        {&ps_object_driver_internal_sensors_t::lux, QStringLiteral("lux")},
        {&ps_object_driver_internal_sensors_t::proximity, QStringLiteral("proximity")},
    };
    return table;
}

ps_object_driver_internal_sensors_t::ps_object_driver_internal_sensors_t(QObject* parent)
    : ps_object_driver_internal_sensors_t(QString(), parent)
{
}

ps_object_driver_internal_sensors_t::ps_object_driver_internal_sensors_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
    for (field_t const& field : fields())
        this->*field.sensor = new detail_t(sensorTopic(field.key), this);
}

ps_object_driver_internal_sensors_t::ps_object_driver_internal_sensors_t(
    ps_object_driver_internal_sensors_t const& other)
    : topicbase_t(other)
{
    for (field_t const& field : fields()) {
        detail_t* copy = new detail_t(*(other.*field.sensor));
        copy->setParent(this);
        this->*field.sensor = copy;
    }
}

QString ps_object_driver_internal_sensors_t::sensorTopic(QString const& key) const
{
    return topic + QLatin1Char('/') + key;
}

bool ps_object_driver_internal_sensors_t::place(detail_t*& slot, detail_t* value, QString const& key)
{
    if (value == slot && value)
        return false;
    detail_t* old = slot;
    slot = value ? value : new detail_t(this);
    slot->setParent(this);
    slot->setTopic(sensorTopic(key));
    delete old;
    return true;
}

void ps_object_driver_internal_sensors_t::setTemperature(detail_t* value)
{
    if (place(temperature, value, QStringLiteral("temperature")))
        Q_EMIT temperatureChanged(temperature);
}

void ps_object_driver_internal_sensors_t::setHumidity(detail_t* value)
{
    if (place(humidity, value, QStringLiteral("humidity")))
        Q_EMIT humidityChanged(humidity);
}

void ps_object_driver_internal_sensors_t::setLux(detail_t* value)
{
    if (place(lux, value, QStringLiteral("lux")))
        Q_EMIT luxChanged(lux);
}

void ps_object_driver_internal_sensors_t::setProximity(detail_t* value)
{
    if (place(proximity, value, QStringLiteral("proximity")))
        Q_EMIT proximityChanged(proximity);
}

void ps_object_driver_internal_sensors_t::setTopic(QString const& value)
{
    topicbase_t::setTopic(value);
    for (field_t const& field : fields())
        (this->*field.sensor)->setTopic(sensorTopic(field.key));
}

QStringList ps_object_driver_internal_sensors_t::getSensorTopics() const
{
    QStringList topics;
    for (field_t const& field : fields())
        topics.append((this->*field.sensor)->getTopic());
    return topics;
}

void ps_object_driver_internal_sensors_t::update(ps_object_driver_internal_sensors_t const* other, bool _notify)
{
    if (!other) {
        refuseNull();
        return;
    }
    for (field_t const& field : fields())
        (this->*field.sensor)->update(other->*field.sensor, false);
    if (_notify)
        send_update();
}

void ps_object_driver_internal_sensors_t::send_update()
{
    publishSelf();
}

void ps_object_driver_internal_sensors_t::initRequestSignals(QObject* receiver, bool connect)
{
    connectRequestSignals(receiver, connect);
    for (field_t const& field : fields()) {
        detail_t* sensor = this->*field.sensor;
        sensor->setTopic(sensorTopic(field.key));
        sensor->initRequestSignals(receiver, connect);
    }
}

} // namespace drivers
} // namespace objects
} // namespace persistent
} // namespace database
