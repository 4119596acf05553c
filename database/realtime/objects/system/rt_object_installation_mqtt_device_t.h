#ifndef DATABASE_REALTIME_OBJECTS_SYSTEM_RT_OBJECT_INSTALLATION_MQTT_DEVICE_T_H
#define DATABASE_REALTIME_OBJECTS_SYSTEM_RT_OBJECT_INSTALLATION_MQTT_DEVICE_T_H

#include <QMap>
#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace objects {

/// An MQTT device paired with the installation.
class DATABASE_EXPORT rt_object_installation_mqtt_device_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QString description MEMBER description READ getDescription NOTIFY descriptionChanged)
    Q_PROPERTY(QString username MEMBER username READ getUsername NOTIFY usernameChanged)
    Q_PROPERTY(bool enabled MEMBER enabled READ getEnabled NOTIFY enabledChanged)
    Q_PROPERTY(QString serial MEMBER serial READ getSerial NOTIFY serialChanged)
    Q_PROPERTY(QString type MEMBER type READ getType NOTIFY typeChanged)

public:
    Q_INVOKABLE explicit rt_object_installation_mqtt_device_t(QObject* parent = nullptr);
    rt_object_installation_mqtt_device_t(QString const& topic, QObject* parent);
    rt_object_installation_mqtt_device_t(rt_object_installation_mqtt_device_t const& other);

    QString getDescription() const { return description; }
    QString getUsername() const { return username; }
    bool getEnabled() const { return enabled; }
    QString getSerial() const { return serial; }
    QString getType() const { return type; }

    void requestSetDescription(QString const& value);
    void requestSetEnabled(bool value);

    /// Takes every field of other; null is refused with "Not permitted nullptr".
    void update(rt_object_installation_mqtt_device_t const* other, bool _notify) { updateValues(other, _notify); }
    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }

    /// Same values; the topic doesn't count.
    bool operator==(rt_object_installation_mqtt_device_t const& other) const { return sameValues(&other); }

Q_SIGNALS:
    void descriptionChanged(QString);
    void usernameChanged(QString);
    void enabledChanged(bool);
    void serialChanged(QString);
    void typeChanged(QString);

private:
    QString description;
    QString username;
    bool enabled = false;
    QString serial;
    QString type;
};

} // namespace objects

typedef QMap<QString, objects::rt_object_installation_mqtt_device_t*> rt_mqtt_devices_map;

} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_OBJECTS_SYSTEM_RT_OBJECT_INSTALLATION_MQTT_DEVICE_T_H
