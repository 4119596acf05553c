#ifndef DATABASE_REALTIME_DBS_DRIVERS_RT_DRIVERS_INTERNAL_T_H
#define DATABASE_REALTIME_DBS_DRIVERS_RT_DRIVERS_INTERNAL_T_H

#include <QMap>
#include <QObject>
#include <QString>

#include "database/base/sensor_driver_t.h"
#include "database/realtime/dbs/drivers/rt_object_driver_internal_sensors_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace objects {
namespace drivers {

/**
 * What the driver of the panel's own sensors reports: their readings. It has
 * nothing of its own but the sensors, so updates and publications go straight
 * to them.
 */
class DATABASE_EXPORT rt_drivers_internal_t
    : public base::sensor_driver_t<rt_drivers_internal_t, rt_object_driver_internal_sensors_t>
{
    Q_OBJECT
    Q_PROPERTY(database::realtime::objects::drivers::rt_object_driver_internal_sensors_t* sensors READ getSensors
                   WRITE setSensors NOTIFY sensorsChanged)

public:
    Q_INVOKABLE explicit rt_drivers_internal_t(QObject* parent = nullptr);
    rt_drivers_internal_t(QString const& topic, QObject* parent);
    /// Deep: the sensors are copied too; no parent.
    rt_drivers_internal_t(rt_drivers_internal_t const& other);

Q_SIGNALS:
    void sensorsChanged(database::realtime::objects::drivers::rt_object_driver_internal_sensors_t*);
};

} // namespace drivers
} // namespace objects

typedef QMap<QString, objects::drivers::rt_drivers_internal_t*> rt_drivers_internal_map;

} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_DRIVERS_RT_DRIVERS_INTERNAL_T_H
