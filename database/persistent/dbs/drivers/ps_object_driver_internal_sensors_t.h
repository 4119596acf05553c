#ifndef DATABASE_PERSISTENT_DBS_DRIVERS_PS_OBJECT_DRIVER_INTERNAL_SENSORS_T_H
#define DATABASE_PERSISTENT_DBS_DRIVERS_PS_OBJECT_DRIVER_INTERNAL_SENSORS_T_H

#include <QObject>
#include <QString>
#include <QStringList>

#include "database/base/topicbase_t.h"
#include "database/persistent/dbs/drivers/ps_object_driver_internal_sensors_detail_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {
namespace drivers {

/**
 * The four sensors of the panel itself. Each is a child at this object's
 * topic and its key ("/temperature", ...), and is never replaced by an
 * update, so whoever holds one keeps a valid pointer.
 */
class DATABASE_EXPORT ps_object_driver_internal_sensors_t : public base::topicbase_t
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
    using detail_t = ps_object_driver_internal_sensors_detail_t;

    Q_INVOKABLE explicit ps_object_driver_internal_sensors_t(QObject* parent = nullptr);
    ps_object_driver_internal_sensors_t(QString const& topic, QObject* parent);
    /// Deep: the four sensors are copied too; no parent.
    ps_object_driver_internal_sensors_t(ps_object_driver_internal_sensors_t const& other);

    detail_t* getTemperature() const { return temperature; }
    detail_t* getHumidity() const { return humidity; }
    detail_t* getLux() const { return lux; }
    detail_t* getProximity() const { return proximity; }

    /// Each adopts value in place of the present sensor, which is deleted; null
    /// stands for a default sensor. Meant for deserialization, before wiring.
    void setTemperature(detail_t* value);
    void setHumidity(detail_t* value);
    void setLux(detail_t* value);
    void setProximity(detail_t* value);

    /// Also moves the four sensors along.
    void setTopic(QString const& value);

    /// The topics of the four sensors, in property order.
    QStringList getSensorTopics() const;

    /// Takes the content of other's sensors into the present ones.
    void update(ps_object_driver_internal_sensors_t const* other, bool _notify);
    void send_update();
    void initRequestSignals(QObject* receiver, bool connect);

Q_SIGNALS:
    void temperatureChanged(database::persistent::objects::drivers::ps_object_driver_internal_sensors_detail_t*);
    void humidityChanged(database::persistent::objects::drivers::ps_object_driver_internal_sensors_detail_t*);
    void luxChanged(database::persistent::objects::drivers::ps_object_driver_internal_sensors_detail_t*);
    void proximityChanged(database::persistent::objects::drivers::ps_object_driver_internal_sensors_detail_t*);

private:
    struct field_t {
        detail_t* ps_object_driver_internal_sensors_t::*sensor;
        QString key;
    };
    /// The four sensors with their keys, in property order.
    static QList<field_t> const& fields();

    QString sensorTopic(QString const& key) const;
    /// False when value is already in place.
    bool place(detail_t*& slot, detail_t* value, QString const& key);

    detail_t* temperature = nullptr;
    detail_t* humidity = nullptr;
    detail_t* lux = nullptr;
    detail_t* proximity = nullptr;
};

} // namespace drivers
} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_DRIVERS_PS_OBJECT_DRIVER_INTERNAL_SENSORS_T_H
