#include "database/realtime/dbs/rt_system_t.h"

#include "database/base/literals.h"
#include "database/realtime/rt_request.h"

namespace database {
namespace realtime {
namespace dbs {

using objects::rt_object_connections_t;

rt_system_t::rt_system_t(QObject* parent)
    : topicbase_t(literals::key_system, parent)
{
    connections = new rt_object_connections_t(connectionsTopic(), this);
    realtimeMap(urls);
}

rt_system_t::rt_system_t(rt_system_t const& other)
    : topicbase_t(other)
    , datetime(other.datetime)
    , connections(new rt_object_connections_t(*other.connections))
{
    connections->setParent(this);
    realtimeMap(urls);
    urls.copyFrom(other.urls);
}

QString rt_system_t::connectionsTopic() const
{
    return topic + QLatin1Char('/') + literals::key_connections;
}

void rt_system_t::setConnections(rt_object_connections_t* value)
{
    if (placeChild(connections, value, connectionsTopic(), receiver))
        Q_EMIT connectionsChanged(connections);
}

void rt_system_t::setUrls(rt_url_map const& map)
{
    urls.adopt(map);
    Q_EMIT urlsChanged(urls.get());
}

void rt_system_t::update_datetime(QDateTime const& value, bool _notify)
{
    assign(datetime, value.toString(Qt::ISODate), [this] { Q_EMIT datetimeChanged(datetime); });
    if (_notify)
        send_update_datetime();
}

void rt_system_t::update_connection(rt_object_connections_t const* object, bool _notify)
{
    setConnections(object ? new rt_object_connections_t(*object) : nullptr);
    if (_notify)
        connections->send_update();
}

void rt_system_t::update_urls(rt_url_map const& map, bool _notify)
{
    copy_map_urls(map);
    if (_notify)
        send_update_urls();
}

void rt_system_t::update(rt_system_t const* other, bool _notify)
{
    if (other) {
        update_connection(other->connections, false);
        copy_map_urls(other->urls.get());
    } else {
        update_connection(nullptr, false);
        clean_map_urls();
    }
    if (_notify)
        send_update();
}

void rt_system_t::copy_map_urls(rt_url_map const& map)
{
    urls.updateAll(map, false, [this](QObject*, bool connect) { urls.wireObjects(connect); });
}

void rt_system_t::clean_map_urls()
{
    urls.clear();
}

void rt_system_t::send_update_datetime()
{
    publishField(QStringLiteral("datetime"), datetime);
}

void rt_system_t::initRequestSignals(QObject* _receiver, bool connect)
{
    if (!_receiver)
        return;
    receiver = _receiver;
    urls.initRequestSignals(_receiver, connect);
    wireChild(connections, connectionsTopic(), _receiver, connect);
}

bool rt_system_t::operator==(rt_system_t const& other) const
{
    return datetime == other.datetime && connections == other.connections && urls.get() == other.urls.get();
}

} // namespace dbs
} // namespace realtime
} // namespace database
