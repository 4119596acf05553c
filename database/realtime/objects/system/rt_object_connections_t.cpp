#include "database/realtime/objects/system/rt_object_connections_t.h"

#include "database/realtime/rt_request.h"

namespace database {
namespace realtime {
namespace objects {

rt_object_connections_t::rt_object_connections_t(QObject* parent)
    : rt_object_connections_t(QString(), parent)
{
}

rt_object_connections_t::rt_object_connections_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
    realtimeMap(http, QStringLiteral("getHttp"));
    realtimeMap(mqtt, QStringLiteral("getMqtt"));
}

rt_object_connections_t::rt_object_connections_t(rt_object_connections_t const& other)
    : topicbase_t(other)
{
    realtimeMap(http, QStringLiteral("getHttp"));
    realtimeMap(mqtt, QStringLiteral("getMqtt"));
    http.copyFrom(other.http);
    mqtt.copyFrom(other.mqtt);
}

void rt_object_connections_t::setHttp(rt_connection_map const& map)
{
    http.adopt(map);
    Q_EMIT httpChanged(http.get());
}

void rt_object_connections_t::setMqtt(rt_connection_map const& map)
{
    mqtt.adopt(map);
    Q_EMIT mqttChanged(mqtt.get());
}

void rt_object_connections_t::setTopic(QString const& value)
{
    topicbase_t::setTopic(value);
    http.retopic();
    mqtt.retopic();
}

// The routers know the connections only as a whole, so that is what goes out.
void rt_object_connections_t::updateConnection(map_t& map, QString const& key, rt_object_connection_t* object,
                                               bool _notify)
{
    map.update(key, object, false);
    if (_notify)
        send_update();
}

void rt_object_connections_t::update_http(QString const& key, rt_object_connection_t* object, bool _notify)
{
    updateConnection(http, key, object, _notify);
}

void rt_object_connections_t::update_mqtt(QString const& key, rt_object_connection_t* object, bool _notify)
{
    updateConnection(mqtt, key, object, _notify);
}

void rt_object_connections_t::reset(map_t& map, bool _notify)
{
    map.clear();
    if (_notify)
        send_update();
}

void rt_object_connections_t::update_reset_http(bool _notify)
{
    reset(http, _notify);
}

void rt_object_connections_t::update_reset_mqtt(bool _notify)
{
    reset(mqtt, _notify);
}

void rt_object_connections_t::initRequestSignals(QObject* receiver, bool connect)
{
    if (!receiver)
        return;
    http.initRequestSignals(receiver, connect);
    // The second map shares the object's wiring, done just above.
    mqtt.setReceiver(receiver);
    mqtt.wireObjects(connect);
}

bool rt_object_connections_t::operator==(rt_object_connections_t const& other) const
{
    return http.get() == other.http.get() && mqtt.get() == other.mqtt.get();
}

} // namespace objects
} // namespace realtime
} // namespace database
