#include "database/realtime/dbs/rt_installation_t.h"

#include "database/base/literals.h"
#include "database/realtime/rt_request.h"
#include "platform/logs/classlogs.h"

namespace database {
namespace realtime {
namespace dbs {

using objects::rt_object_installation_cloud_t;

rt_installation_t::rt_installation_t(QObject* parent)
    : topicbase_t(literals::key_installation, parent)
{
    realtimeMap(devices);
    cloud = new rt_object_installation_cloud_t(cloudTopic(), this);
}

rt_installation_t::rt_installation_t(rt_installation_t const& other)
    : topicbase_t(other)
    , cloud(new rt_object_installation_cloud_t(*other.cloud))
{
    realtimeMap(devices);
    devices.copyFrom(other.devices);
    cloud->setParent(this);
    copyValues(&other);
}

QString rt_installation_t::cloudTopic() const
{
    return topic + QStringLiteral("/cloud");
}

void rt_installation_t::setMqttDevices(rt_mqtt_devices_map const& map)
{
    devices.adopt(map);
    Q_EMIT mqtt_devicesChanged(devices.get());
}

void rt_installation_t::setCloud(rt_object_installation_cloud_t* value)
{
    if (placeChild(cloud, value, cloudTopic(), receiver))
        Q_EMIT cloudChanged(cloud);
}

void rt_installation_t::requestSetDescription(QString const& value)
{
    requestField(this, QStringLiteral("description"), value);
}

void rt_installation_t::requestSetMaster(QString const& value)
{
    requestField(this, QStringLiteral("master"), value);
}

void rt_installation_t::requestSetCloudEnabled(bool value)
{
    requestField(this, QStringLiteral("cloud_enabled"), value);
}

void rt_installation_t::requestSetDeleteMqttDevice(QString const& key)
{
    requestField(this, devices.key() + QLatin1Char('/') + key, QJsonObject());
}

// The routers know no topic of the device map as a whole: the section goes out.
void rt_installation_t::update_mqtt_device(rt_mqtt_devices_map const& map, bool _notify)
{
    devices.updateAll(map, false, [this](QObject* _receiver, bool connect) { initRequestSignals(_receiver, connect); });
    if (_notify)
        send_update();
}

void rt_installation_t::update_description(QString const& value, bool _notify)
{
    updateField("description", value, _notify);
}

void rt_installation_t::update(rt_installation_t const* other, bool _notify, bool _notify_devices)
{
    if (!other) {
        refuseNull();
        return;
    }
    update_mqtt_device(other->devices.get(), false);
    cloud->update(other->cloud, false);
    copyValues(other);
    if (_notify)
        send_update();
    if (_notify_devices) {
        for (QString const& key : devices.get().keys())
            devices.sendUpdateObject(key);
    }
}

bool rt_installation_t::update_if_change(rt_installation_t const* other, bool _notify, bool _notify_devices)
{
    if (compare_whitout_cloud_token(other))
        return false;
    CLASSLOGS_LOG(QStringLiteral("rt_installation_t change! Update it ... "), ::utility::logs::trace,
                  QStringLiteral("update_if_change"));
    update(other, _notify, _notify_devices);
    return true;
}

bool rt_installation_t::compare_whitout_cloud_token(rt_installation_t const* other) const
{
    if (!other)
        return false;
    rt_mqtt_devices_map const& mine = devices.get();
    rt_mqtt_devices_map const& theirs = other->devices.get();
    return mine.size() == theirs.size() && mine.keys() == theirs.keys() && sameValues(other);
}

void rt_installation_t::initRequestSignals(QObject* _receiver, bool connect)
{
    if (!_receiver)
        return;
    receiver = _receiver;
    devices.initRequestSignals(_receiver, connect);
    wireChild(cloud, cloudTopic(), _receiver, connect);
}

bool rt_installation_t::operator==(rt_installation_t const& other) const
{
    return devices.get() == other.devices.get() && cloud == other.cloud && sameValues(&other);
}

} // namespace dbs
} // namespace realtime
} // namespace database
