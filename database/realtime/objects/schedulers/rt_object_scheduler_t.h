#ifndef DATABASE_REALTIME_OBJECTS_SCHEDULERS_RT_OBJECT_SCHEDULER_T_H
#define DATABASE_REALTIME_OBJECTS_SCHEDULERS_RT_OBJECT_SCHEDULER_T_H

#include <QMap>
#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"
#include "database/persistent/dbs/ps_object_map_t.h"
#include "database/realtime/objects/schedulers/rt_object_astro_t.h"
#include "database/realtime/objects/schedulers/rt_object_cron_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace objects {

/**
 * How a schedule went: the state of each of its clock entries and sun
 * entries, by the entry keys of the persistent schedule.
 */
class DATABASE_EXPORT rt_object_scheduler_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(database::realtime::rt_cron_map cron_list READ getCrons WRITE setCrons NOTIFY cron_listChanged)
    Q_PROPERTY(database::realtime::rt_astro_map astro_list READ getAstros WRITE setAstros NOTIFY astro_listChanged)

public:
    Q_INVOKABLE explicit rt_object_scheduler_t(QObject* parent = nullptr);
    rt_object_scheduler_t(QString const& topic, QObject* parent);
    /// The maps' pointers are taken as they are.
    rt_object_scheduler_t(rt_cron_map const& crons, rt_astro_map const& astros, QObject* parent);
    /// Deep: every entry copied, no parent, no receiver.
    rt_object_scheduler_t(rt_object_scheduler_t const& other);

    rt_cron_map getCrons() const { return crons.get(); }
    rt_astro_map getAstros() const { return astros.get(); }
    /// Take the map's pointers as they are.
    void setCrons(rt_cron_map const& map);
    void setAstros(rt_astro_map const& map);

    /// Never null; see ps_object_map_t::list.
    rt_object_cron_t* cron(QString const& key) { return crons.list(key); }
    rt_object_astro_t* astro(QString const& key) { return astros.list(key); }

    /// Both lists replaced whole by copies of other's, counters included; null
    /// leaves them empty.
    void update(rt_object_scheduler_t const* other, bool _notify);

    void send_update() { publishSelf(); }
    /// Wires itself, then every clock and sun entry.
    void initRequestSignals(QObject* receiver, bool connect);

    /// Same entry objects.
    bool operator==(rt_object_scheduler_t const& other) const;

Q_SIGNALS:
    void cron_listChanged(database::realtime::rt_cron_map);
    void astro_listChanged(database::realtime::rt_astro_map);

private:
    persistent::dbs::ps_object_map_t<rt_object_cron_t> crons{this, QStringLiteral("cron_list")};
    persistent::dbs::ps_object_map_t<rt_object_astro_t> astros{this, QStringLiteral("astro_list")};
};

} // namespace objects

typedef QMap<QString, objects::rt_object_scheduler_t*> rt_schedulers_map;

} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_OBJECTS_SCHEDULERS_RT_OBJECT_SCHEDULER_T_H
