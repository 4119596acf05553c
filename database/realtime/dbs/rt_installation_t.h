#ifndef DATABASE_REALTIME_DBS_RT_INSTALLATION_T_H
#define DATABASE_REALTIME_DBS_RT_INSTALLATION_T_H

#include <QObject>
#include <QPointer>
#include <QString>

#include "database/base/topicbase_t.h"
#include "database/persistent/dbs/ps_object_map_t.h"
#include "database/realtime/objects/system/rt_object_installation_cloud_t.h"
#include "database/realtime/objects/system/rt_object_installation_mqtt_device_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace dbs {

/**
 * Who this installation is: its id, its master, its description, its cloud
 * link as a child at "installation/cloud", and the MQTT devices paired with
 * it by key. The host fills it by status packets.
 */
class DATABASE_EXPORT rt_installation_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(database::realtime::rt_mqtt_devices_map mqtt_devices READ getMqttDevices WRITE setMqttDevices NOTIFY
                   mqtt_devicesChanged)
    Q_PROPERTY(database::realtime::objects::rt_object_installation_cloud_t* cloud READ getCloud WRITE setCloud NOTIFY
                   cloudChanged)
    Q_PROPERTY(QString master MEMBER master READ getMaster NOTIFY masterChanged)
    Q_PROPERTY(QString installation_id MEMBER installation_id READ getInstallationId NOTIFY installation_idChanged)
    Q_PROPERTY(bool cloud_enabled MEMBER cloud_enabled READ getCloudEnabled NOTIFY cloud_enabledChanged)
    Q_PROPERTY(QString description MEMBER description READ getDescription NOTIFY descriptionChanged)

public:
    Q_INVOKABLE explicit rt_installation_t(QObject* parent = nullptr);
    /// Deep: devices and cloud link copied, no parent, no receiver.
    rt_installation_t(rt_installation_t const& other);

    rt_mqtt_devices_map getMqttDevices() const { return devices.get(); }
    objects::rt_object_installation_cloud_t* getCloud() const { return cloud; }
    QString getMaster() const { return master; }
    QString getInstallationId() const { return installation_id; }
    bool getCloudEnabled() const { return cloud_enabled; }
    QString getDescription() const { return description; }

    /// Takes the map's pointers as they are.
    void setMqttDevices(rt_mqtt_devices_map const& map);
    /// Adopts value in place of the present link, which is deleted; null
    /// stands for an empty one.
    void setCloud(objects::rt_object_installation_cloud_t* value);

    /// Never null; see ps_object_map_t::list.
    objects::rt_object_installation_mqtt_device_t* list(QString const& key) { return devices.list(key); }

    void requestSetDescription(QString const& value);
    void requestSetMaster(QString const& value);
    void requestSetCloudEnabled(bool value);
    void requestSetDeleteMqttDevice(QString const& key);

    /// The devices replaced by copies of map's; published with the whole section.
    void update_mqtt_device(rt_mqtt_devices_map const& map, bool _notify);
    /// Content into the device of that key, a copy for a new key, removal for null.
    void update_mqtt_device(QString const& key, objects::rt_object_installation_mqtt_device_t* object, bool _notify)
    {
        devices.update(key, object, _notify);
    }
    void update_description(QString const& value, bool _notify);
    /// Takes everything of other, devices and cloud link included. _notify
    /// publishes the section, _notify_devices each device on its own topic.
    /// Null is refused with "Not permitted nullptr".
    void update(rt_installation_t const* other, bool _notify, bool _notify_devices = false);
    /// update, unless other differs at most in its cloud token; true when it updated.
    bool update_if_change(rt_installation_t const* other, bool _notify, bool _notify_devices = false);
    /// Same device keys and the same own fields; the devices' contents and the
    /// cloud link are left out on purpose, so a new token alone is no change.
    bool compare_whitout_cloud_token(rt_installation_t const* other) const;

    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect);

    /// Same device objects, cloud object and fields.
    bool operator==(rt_installation_t const& other) const;

Q_SIGNALS:
    void mqtt_devicesChanged(database::realtime::rt_mqtt_devices_map);
    void cloudChanged(database::realtime::objects::rt_object_installation_cloud_t*);
    void masterChanged(QString);
    void installation_idChanged(QString);
    void cloud_enabledChanged(bool);
    void descriptionChanged(QString);

private:
    QString cloudTopic() const;

    persistent::dbs::ps_object_map_t<objects::rt_object_installation_mqtt_device_t> devices{
        this, QStringLiteral("mqtt_devices")};
    objects::rt_object_installation_cloud_t* cloud = nullptr;
    QString master;
    QString installation_id;
    bool cloud_enabled = false;
    QString description;
    QPointer<QObject> receiver;
};

} // namespace dbs
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_RT_INSTALLATION_T_H
