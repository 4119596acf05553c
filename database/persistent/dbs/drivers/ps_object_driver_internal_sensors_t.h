#ifndef DATABASE_PERSISTENT_DBS_DRIVERS_PS_OBJECT_DRIVER_INTERNAL_SENSORS_T_H
#define DATABASE_PERSISTENT_DBS_DRIVERS_PS_OBJECT_DRIVER_INTERNAL_SENSORS_T_H

#include <QObject>
#include <QString>

#include "database/base/sensor_set_t.h"
#include "database/persistent/dbs/drivers/ps_object_driver_internal_sensors_detail_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {
namespace drivers {

/**
 * The four sensors of the panel itself, each with its switch; see
 * base::sensor_set_t for how they are held.
 */
class DATABASE_EXPORT ps_object_driver_internal_sensors_t
    : public base::sensor_set_t<ps_object_driver_internal_sensors_t, ps_object_driver_internal_sensors_detail_t>
{
    Q_OBJECT
    Q_PROPERTY(database::persistent::objects::drivers::ps_object_driver_internal_sensors_detail_t* temperature READ
                   getTemperature WRITE setTemperature NOTIFY temperatureChanged)
    Q_PROPERTY(database::persistent::objects::drivers::ps_object_driver_internal_sensors_detail_t* humidity READ
                   getHumidity WRITE setHumidity NOTIFY humidityChanged)
    Q_PROPERTY(database::persistent::objects::drivers::ps_object_driver_internal_sensors_detail_t* lux READ getLux
                   WRITE setLux NOTIFY luxChanged)
    Q_PROPERTY(database::persistent::objects::drivers::ps_object_driver_internal_sensors_detail_t* proximity READ
                   getProximity WRITE setProximity NOTIFY proximityChanged)

public:
    Q_INVOKABLE explicit ps_object_driver_internal_sensors_t(QObject* parent = nullptr);
    ps_object_driver_internal_sensors_t(QString const& topic, QObject* parent);
    /// Deep: the four sensors are copied too; no parent.
    ps_object_driver_internal_sensors_t(ps_object_driver_internal_sensors_t const& other);

Q_SIGNALS:
    void temperatureChanged(database::persistent::objects::drivers::ps_object_driver_internal_sensors_detail_t*);
    void humidityChanged(database::persistent::objects::drivers::ps_object_driver_internal_sensors_detail_t*);
    void luxChanged(database::persistent::objects::drivers::ps_object_driver_internal_sensors_detail_t*);
    void proximityChanged(database::persistent::objects::drivers::ps_object_driver_internal_sensors_detail_t*);
};

} // namespace drivers
} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_DRIVERS_PS_OBJECT_DRIVER_INTERNAL_SENSORS_T_H
