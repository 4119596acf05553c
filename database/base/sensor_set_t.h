#ifndef DATABASE_BASE_SENSOR_SET_T_H
#define DATABASE_BASE_SENSOR_SET_T_H

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include "database/base/topicbase_t.h"

namespace database {
namespace base {

/**
 * The four sensors of the panel itself, in the persistent and in the realtime
 * database alike. Each is a child at this object's topic and its key
 * ("/temperature", ...), and is never replaced by an update, so whoever holds
 * one keeps a valid pointer. Derived declares the properties and their signals
 * (temperatureChanged, ...), which moc has to see in the class itself; Detail
 * is the class of one sensor.
 */
template<class Derived, class Detail>
class sensor_set_t : public topicbase_t
{
public:
    using detail_t = Detail;

    Detail* getTemperature() const { return temperature; }
    Detail* getHumidity() const { return humidity; }
    Detail* getLux() const { return lux; }
    Detail* getProximity() const { return proximity; }

    /// Each adopts value in place of the present sensor, which is deleted; null
    /// stands for a default sensor. Meant for deserialization, before wiring.
    void setTemperature(Detail* value)
    {
        if (placeChild(temperature, value, sensorTopic(QStringLiteral("temperature")), nullptr))
            Q_EMIT self()->temperatureChanged(temperature);
    }
    void setHumidity(Detail* value)
    {
        if (placeChild(humidity, value, sensorTopic(QStringLiteral("humidity")), nullptr))
            Q_EMIT self()->humidityChanged(humidity);
    }
    void setLux(Detail* value)
    {
        if (placeChild(lux, value, sensorTopic(QStringLiteral("lux")), nullptr))
            Q_EMIT self()->luxChanged(lux);
    }
    void setProximity(Detail* value)
    {
        if (placeChild(proximity, value, sensorTopic(QStringLiteral("proximity")), nullptr))
            Q_EMIT self()->proximityChanged(proximity);
    }

    /// Also moves the four sensors along.
    void setTopic(QString const& value)
    {
        topicbase_t::setTopic(value);
        for (field_t const& field : fields())
            (this->*field.sensor)->setTopic(sensorTopic(field.key));
    }

    /// The topics of the four sensors, in property order.
    QStringList getSensorTopics() const
    {
        QStringList topics;
        for (field_t const& field : fields())
            topics.append((this->*field.sensor)->getTopic());
        return topics;
    }

    /// Takes the content of other's sensors into the present ones.
    void update(Derived const* other, bool _notify)
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

    void send_update() { publishSelf(); }

    void initRequestSignals(QObject* receiver, bool connect)
    {
        connectRequestSignals(receiver, connect);
        for (field_t const& field : fields())
            wireChild(this->*field.sensor, sensorTopic(field.key), receiver, connect);
    }

protected:
    sensor_set_t(QString const& topic, QObject* parent)
        : topicbase_t(topic, parent)
    {
        for (field_t const& field : fields())
            this->*field.sensor = new Detail(sensorTopic(field.key), this);
    }

    /// Deep: the four sensors are copied too; no parent.
    sensor_set_t(sensor_set_t const& other)
        : topicbase_t(other)
    {
        for (field_t const& field : fields()) {
            Detail* copy = new Detail(*(other.*field.sensor));
            copy->setParent(this);
            this->*field.sensor = copy;
        }
    }

private:
    struct field_t {
        Detail* sensor_set_t::*sensor;
        QString key;
    };

    /// The four sensors with their keys, in property order.
    static QList<field_t> const& fields()
    {
        static QList<field_t> const table{
            {&sensor_set_t::temperature, QStringLiteral("temperature")},
            {&sensor_set_t::humidity, QStringLiteral("humidity")},
            {&sensor_set_t::lux, QStringLiteral("lux")},
            {&sensor_set_t::proximity, QStringLiteral("proximity")},
        };
        return table;
    }

    Derived* self() { return static_cast<Derived*>(this); }

    QString sensorTopic(QString const& key) const { return topic + QLatin1Char('/') + key; }

    Detail* temperature = nullptr;
    Detail* humidity = nullptr;
    Detail* lux = nullptr;
    Detail* proximity = nullptr;
};

} // namespace base
} // namespace database

#endif // DATABASE_BASE_SENSOR_SET_T_H
