#ifndef DATABASE_BASE_SENSOR_DRIVER_T_H
#define DATABASE_BASE_SENSOR_DRIVER_T_H

#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"

namespace database {
namespace base {

/**
 * The driver of the panel's own sensors, in either database. It has nothing of
 * its own but the sensors at its topic and "/sensors", so updates and
 * publications go straight to them. Derived declares the property sensors and
 * its signal sensorsChanged.
 */
template<class Derived, class Sensors>
class sensor_driver_t : public topicbase_t
{
public:
    Sensors* getSensors() const { return sensors; }
    /// Adopts value in place of the present sensors, which are deleted; null
    /// stands for default sensors. Meant for deserialization, before wiring.
    void setSensors(Sensors* value)
    {
        if (placeChild(sensors, value, sensorsTopic(), nullptr))
            Q_EMIT static_cast<Derived*>(this)->sensorsChanged(sensors);
    }

    /// Also moves the sensors along, to the new topic and "/sensors".
    void setTopic(QString const& value)
    {
        topicbase_t::setTopic(value);
        sensors->setTopic(sensorsTopic());
    }

    void update(Sensors const* other, bool _notify) { sensors->update(other, _notify); }
    void send_update() { sensors->send_update(); }

    void initRequestSignals(QObject* receiver, bool connect)
    {
        connectRequestSignals(receiver, connect);
        wireChild(sensors, sensorsTopic(), receiver, connect);
    }

protected:
    sensor_driver_t(QString const& topic, QObject* parent)
        : topicbase_t(topic, parent)
    {
        sensors = new Sensors(sensorsTopic(), this);
    }

    /// Deep: the sensors are copied too; no parent.
    sensor_driver_t(sensor_driver_t const& other)
        : topicbase_t(other)
        , sensors(new Sensors(*other.sensors))
    {
        sensors->setParent(this);
    }

private:
    QString sensorsTopic() const { return topic + QStringLiteral("/sensors"); }

    Sensors* sensors = nullptr;
};

} // namespace base
} // namespace database

#endif // DATABASE_BASE_SENSOR_DRIVER_T_H
