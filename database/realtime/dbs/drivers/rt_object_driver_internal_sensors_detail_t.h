#ifndef DATABASE_REALTIME_DBS_DRIVERS_RT_OBJECT_DRIVER_INTERNAL_SENSORS_DETAIL_T_H
#define DATABASE_REALTIME_DBS_DRIVERS_RT_OBJECT_DRIVER_INTERNAL_SENSORS_DETAIL_T_H

#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace objects {
namespace drivers {

/// The last reading of one sensor of the panel itself, as text.
class DATABASE_EXPORT rt_object_driver_internal_sensors_detail_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QString value MEMBER value READ getValue NOTIFY valueChanged)

public:
    Q_INVOKABLE explicit rt_object_driver_internal_sensors_detail_t(QObject* parent = nullptr);
    rt_object_driver_internal_sensors_detail_t(QString const& topic, QObject* parent);
    rt_object_driver_internal_sensors_detail_t(rt_object_driver_internal_sensors_detail_t const& other);

    QString getValue() const { return value; }

    /// Takes the reading of other; null is refused with "Not permitted nullptr".
    void update(rt_object_driver_internal_sensors_detail_t const* other, bool _notify)
    {
        updateValues(other, _notify);
    }
    void update_value(QString const& _value, bool _notify) { updateField("value", _value, _notify); }
    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }

Q_SIGNALS:
    void valueChanged(QString);

private:
    QString value;
};

} // namespace drivers
} // namespace objects
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_DRIVERS_RT_OBJECT_DRIVER_INTERNAL_SENSORS_DETAIL_T_H
