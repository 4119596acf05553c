#ifndef DATABASE_REALTIME_OBJECTS_SYSTEM_RT_OBJECT_CONNECTIONS_T_H
#define DATABASE_REALTIME_OBJECTS_SYSTEM_RT_OBJECT_CONNECTIONS_T_H

#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"
#include "database/persistent/dbs/ps_object_map_t.h"
#include "database/realtime/objects/system/rt_object_connection_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace objects {

/**
 * The network connections of the installation, one map per kind: HTTP and
 * MQTT. Every change is published as the whole object, the one form of it
 * that other processes follow.
 */
class DATABASE_EXPORT rt_object_connections_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(database::realtime::rt_connection_map http READ getHttp WRITE setHttp NOTIFY httpChanged)
    Q_PROPERTY(database::realtime::rt_connection_map mqtt READ getMqtt WRITE setMqtt NOTIFY mqttChanged)

public:
    Q_INVOKABLE explicit rt_object_connections_t(QObject* parent = nullptr);
    rt_object_connections_t(QString const& topic, QObject* parent);
    /// Deep: every connection copied, no parent, no receiver.
    rt_object_connections_t(rt_object_connections_t const& other);

    rt_connection_map getHttp() const { return http.get(); }
    rt_connection_map getMqtt() const { return mqtt.get(); }
    /// Take the map's pointers as they are.
    void setHttp(rt_connection_map const& map);
    void setMqtt(rt_connection_map const& map);

    /// Never null; see ps_object_map_t::list.
    rt_object_connection_t* getHttp(QString const& key) { return http.list(key); }
    rt_object_connection_t* getMqtt(QString const& key) { return mqtt.list(key); }

    /// Also moves every connection along.
    void setTopic(QString const& value);

    /// Content into the connection of that key, a copy for a new key, removal for null.
    void update_http(QString const& key, rt_object_connection_t* object, bool _notify);
    void update_mqtt(QString const& key, rt_object_connection_t* object, bool _notify);
    /// Drops every connection of that kind.
    void update_reset_http(bool _notify);
    void update_reset_mqtt(bool _notify);

    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect);

    /// Same connection objects.
    bool operator==(rt_object_connections_t const& other) const;

Q_SIGNALS:
    void httpChanged(database::realtime::rt_connection_map);
    void mqttChanged(database::realtime::rt_connection_map);

private:
    using map_t = persistent::dbs::ps_object_map_t<rt_object_connection_t>;

    void updateConnection(map_t& map, QString const& key, rt_object_connection_t* object, bool _notify);
    void reset(map_t& map, bool _notify);

    map_t http{this, QStringLiteral("http")};
    map_t mqtt{this, QStringLiteral("mqtt")};
};

} // namespace objects
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_OBJECTS_SYSTEM_RT_OBJECT_CONNECTIONS_T_H
