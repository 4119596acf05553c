#ifndef DATABASE_REALTIME_DBS_DRIVERS_RT_OBJECT_DRIVER_INTERNAL_SENSORS_T_H
#define DATABASE_REALTIME_DBS_DRIVERS_RT_OBJECT_DRIVER_INTERNAL_SENSORS_T_H

#include <QObject>
#include <QString>

#include "database/base/sensor_set_t.h"
#include "database/realtime/dbs/drivers/rt_object_driver_internal_sensors_detail_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace objects {
namespace drivers {

/**
 * The last readings of the four sensors of the panel itself; see
 * base::sensor_set_t for how they are held.
 */
class DATABASE_EXPORT rt_object_driver_internal_sensors_t
    : public base::sensor_set_t<rt_object_driver_internal_sensors_t, rt_object_driver_internal_sensors_detail_t>
{
    Q_OBJECT
    Q_PROPERTY(database::realtime::objects::drivers::rt_object_driver_internal_sensors_detail_t* temperature READ
                   getTemperature WRITE setTemperature NOTIFY temperatureChanged)
    Q_PROPERTY(database::realtime::objects::drivers::rt_object_driver_internal_sensors_detail_t* humidity READ
                   getHumidity WRITE setHumidity NOTIFY humidityChanged)
    Q_PROPERTY(database::realtime::objects::drivers::rt_object_driver_internal_sensors_detail_t* lux READ getLux
                   WRITE setLux NOTIFY luxChanged)
    Q_PROPERTY(database::realtime::objects::drivers::rt_object_driver_internal_sensors_detail_t* proximity READ
                   getProximity WRITE setProximity NOTIFY proximityChanged)

public:
    Q_INVOKABLE explicit rt_object_driver_internal_sensors_t(QObject* parent = nullptr);
    rt_object_driver_internal_sensors_t(QString const& topic, QObject* parent);
    /// Deep: the four sensors are copied too; no parent.
    rt_object_driver_internal_sensors_t(rt_object_driver_internal_sensors_t const& other);

Q_SIGNALS:
    void temperatureChanged(database::realtime::objects::drivers::rt_object_driver_internal_sensors_detail_t*);
    void humidityChanged(database::realtime::objects::drivers::rt_object_driver_internal_sensors_detail_t*);
    void luxChanged(database::realtime::objects::drivers::rt_object_driver_internal_sensors_detail_t*);
    void proximityChanged(database::realtime::objects::drivers::rt_object_driver_internal_sensors_detail_t*);
};

} // namespace drivers
} // namespace objects
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_DRIVERS_RT_OBJECT_DRIVER_INTERNAL_SENSORS_T_H
