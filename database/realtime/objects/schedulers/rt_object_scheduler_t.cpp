#include "database/realtime/objects/schedulers/rt_object_scheduler_t.h"

#include "database/realtime/rt_request.h"

namespace database {
namespace realtime {
namespace objects {

rt_object_scheduler_t::rt_object_scheduler_t(QObject* parent)
    : rt_object_scheduler_t(QString(), parent)
{
}

rt_object_scheduler_t::rt_object_scheduler_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
    realtimeMap(crons);
    realtimeMap(astros);
}

rt_object_scheduler_t::rt_object_scheduler_t(rt_cron_map const& cronMap, rt_astro_map const& astroMap,
                                             QObject* parent)
    : rt_object_scheduler_t(QString(), parent)
{
    crons.adopt(cronMap);
    astros.adopt(astroMap);
}

rt_object_scheduler_t::rt_object_scheduler_t(rt_object_scheduler_t const& other)
    : topicbase_t(other)
{
    realtimeMap(crons);
    realtimeMap(astros);
    crons.copyFrom(other.crons);
    astros.copyFrom(other.astros);
}

void rt_object_scheduler_t::setCrons(rt_cron_map const& map)
{
    crons.adopt(map);
    Q_EMIT cron_listChanged(crons.get());
}

void rt_object_scheduler_t::setAstros(rt_astro_map const& map)
{
    astros.adopt(map);
    Q_EMIT astro_listChanged(astros.get());
}

void rt_object_scheduler_t::update(rt_object_scheduler_t const* other, bool _notify)
{
    // Only the entries change hands: the schedule itself stays wired.
    crons.updateAll(other ? other->crons.get() : rt_cron_map(), false,
                    [this](QObject*, bool connect) { crons.wireObjects(connect); });
    astros.updateAll(other ? other->astros.get() : rt_astro_map(), false,
                     [this](QObject*, bool connect) { astros.wireObjects(connect); });
    if (_notify)
        send_update();
}

void rt_object_scheduler_t::initRequestSignals(QObject* receiver, bool connect)
{
    if (!receiver)
        return;
    crons.initRequestSignals(receiver, connect);
    astros.setReceiver(receiver);
    astros.wireObjects(connect);
}

bool rt_object_scheduler_t::operator==(rt_object_scheduler_t const& other) const
{
    return crons.get() == other.crons.get() && astros.get() == other.astros.get();
}

} // namespace objects
} // namespace realtime
} // namespace database
