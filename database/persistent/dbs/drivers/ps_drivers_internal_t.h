#ifndef DATABASE_PERSISTENT_DBS_DRIVERS_PS_DRIVERS_INTERNAL_T_H
#define DATABASE_PERSISTENT_DBS_DRIVERS_PS_DRIVERS_INTERNAL_T_H

#include <QObject>
#include <QString>
#include <QStringList>

#include "database/base/sensor_driver_t.h"
#include "database/persistent/dbs/drivers/ps_object_driver_internal_sensors_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {
namespace drivers {

/**
 * The driver of the panel's own sensors. It has nothing of its own but the
 * sensors, so updates and publications go straight to them.
 */
class DATABASE_EXPORT ps_drivers_internal_t
    : public base::sensor_driver_t<ps_drivers_internal_t, ps_object_driver_internal_sensors_t>
{
    Q_OBJECT
    Q_PROPERTY(database::persistent::objects::drivers::ps_object_driver_internal_sensors_t* sensors READ getSensors
                   WRITE setSensors NOTIFY sensorsChanged)

public:
    Q_INVOKABLE explicit ps_drivers_internal_t(QObject* parent = nullptr);
    ps_drivers_internal_t(QString const& topic, QObject* parent);
    /// Deep: the sensors are copied too; no parent.
    ps_drivers_internal_t(ps_drivers_internal_t const& other);

    /// The ids by which items name a sensor: the sensors' topics.
    QStringList getDriverIds() const { return getSensors()->getSensorTopics(); }

Q_SIGNALS:
    void sensorsChanged(database::persistent::objects::drivers::ps_object_driver_internal_sensors_t*);
};

} // namespace drivers
} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_DRIVERS_PS_DRIVERS_INTERNAL_T_H
