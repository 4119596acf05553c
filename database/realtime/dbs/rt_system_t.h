#ifndef DATABASE_REALTIME_DBS_RT_SYSTEM_T_H
#define DATABASE_REALTIME_DBS_RT_SYSTEM_T_H

#include <QDateTime>
#include <QObject>
#include <QPointer>
#include <QString>

#include "database/base/topicbase_t.h"
#include "database/persistent/dbs/ps_object_map_t.h"
#include "database/realtime/objects/system/rt_object_connections_t.h"
#include "database/realtime/objects/system/rt_object_url_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace dbs {

/**
 * The installation's machine as the others see it: its clock, its network
 * connections as a child at "system/connections", and the addresses it offers
 * by key.
 */
class DATABASE_EXPORT rt_system_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QString datetime MEMBER datetime READ getDatetime NOTIFY datetimeChanged)
    Q_PROPERTY(database::realtime::objects::rt_object_connections_t* connections READ getConnections WRITE
                   setConnections NOTIFY connectionsChanged)
    Q_PROPERTY(database::realtime::rt_url_map urls READ getUrls WRITE setUrls NOTIFY urlsChanged)

public:
    Q_INVOKABLE explicit rt_system_t(QObject* parent = nullptr);
    /// Deep: connections and addresses copied, no parent, no receiver.
    rt_system_t(rt_system_t const& other);

    QString getDatetime() const { return datetime; }
    objects::rt_object_connections_t* getConnections() const { return connections; }
    rt_url_map getUrls() const { return urls.get(); }

    /// Adopts value in place of the present connections, which are deleted;
    /// null stands for no connections.
    void setConnections(objects::rt_object_connections_t* value);
    /// Takes the map's pointers as they are.
    void setUrls(rt_url_map const& map);

    /// The clock, kept as ISO text and published alone on "/datetime".
    void update_datetime(QDateTime const& value, bool _notify);
    /// A copy of object replaces the connections; null leaves none. Published
    /// on "/connections".
    void update_connection(objects::rt_object_connections_t const* object, bool _notify);
    /// The addresses replaced by copies of map's, published on "/urls".
    void update_urls(rt_url_map const& map, bool _notify);
    /// Takes the connections and the addresses of other, not the clock; null
    /// empties both.
    void update(rt_system_t const* other, bool _notify);
    /// The same as update: the name the consistency check knows it by.
    void update_database(rt_system_t const* other, bool _notify) { update(other, _notify); }

    /// Copies of map's addresses, each at "system/urls/" and its key, replace the present ones.
    void copy_map_urls(rt_url_map const& map);
    void clean_map_urls();

    void send_update() { publishSelf(); }
    void send_update_datetime();
    void send_update_urls() { urls.sendUpdate(); }
    void initRequestSignals(QObject* receiver, bool connect);

    /// Same clock, connections object and address objects.
    bool operator==(rt_system_t const& other) const;

Q_SIGNALS:
    void datetimeChanged(QString);
    void connectionsChanged(database::realtime::objects::rt_object_connections_t*);
    void urlsChanged(database::realtime::rt_url_map);

private:
    QString connectionsTopic() const;

    QString datetime;
    objects::rt_object_connections_t* connections = nullptr;
    persistent::dbs::ps_object_map_t<objects::rt_object_url_t> urls{this, QStringLiteral("urls")};
    QPointer<QObject> receiver;
};

} // namespace dbs
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_RT_SYSTEM_T_H
