#ifndef DATABASE_PERSISTENT_DBS_DRIVERS_PS_OBJECT_DRIVER_INTERNAL_SENSORS_DETAIL_T_H
#define DATABASE_PERSISTENT_DBS_DRIVERS_PS_OBJECT_DRIVER_INTERNAL_SENSORS_DETAIL_T_H

#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {
namespace drivers {

/// One sensor of the panel itself (temperature, humidity, ...): whether it is read.
class DATABASE_EXPORT ps_object_driver_internal_sensors_detail_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(bool enabled READ getEnabled WRITE setEnabled NOTIFY enabledChanged)

public:
    Q_INVOKABLE explicit ps_object_driver_internal_sensors_detail_t(QObject* parent = nullptr);
    ps_object_driver_internal_sensors_detail_t(QString const& topic, QObject* parent);
    ps_object_driver_internal_sensors_detail_t(ps_object_driver_internal_sensors_detail_t const& other);

    bool getEnabled() const { return enabled; }
    void setEnabled(bool value);

    void requestSetEnabled(bool value);
    /// Takes the switch of other; the topic stays.
    void update(ps_object_driver_internal_sensors_detail_t const* other, bool _notify);
    void send_update();
    void initRequestSignals(QObject* receiver, bool connect);

Q_SIGNALS:
    void enabledChanged(bool);

private:
    bool enabled = false;
};

} // namespace drivers
} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_DRIVERS_PS_OBJECT_DRIVER_INTERNAL_SENSORS_DETAIL_T_H
