#include "database/realtime/dbs/rt_presencesimulation_t.h"

#include "database/base/literals.h"

namespace database {
namespace realtime {
namespace dbs {

using objects::rt_object_presencesimulation_t;
using presencesimulation::definition::psi_type_state_presence_simulation_t;

rt_presencesimulation_t::rt_presencesimulation_t(QObject* parent)
    : topicbase_t(literals::key_presencesimulation, parent)
{
}

rt_presencesimulation_t::rt_presencesimulation_t(rt_presencesimulation_t const& other)
    : topicbase_t(other)
{
    copyValues(&other);
    lastCommands.copyFrom(other.lastCommands);
    nextCommands.copyFrom(other.nextCommands);
}

void rt_presencesimulation_t::setLastCommands(rt_object_presencesimulation_list const& list)
{
    lastCommands.adopt(list);
    Q_EMIT last_commandsChanged(lastCommands.get());
}

void rt_presencesimulation_t::setNextCommands(rt_object_presencesimulation_list const& list)
{
    nextCommands.adopt(list);
    Q_EMIT next_commandsChanged(nextCommands.get());
}

rt_object_presencesimulation_list rt_presencesimulation_t::getCommands(QDateTime const& moment,
                                                                       QMap<QString, QString> const& actions)
{
    QString const when = moment.toString(Qt::ISODate);
    rt_object_presencesimulation_list list;
    for (auto it = actions.begin(); it != actions.end(); ++it)
        list.append(new rt_object_presencesimulation_t(when, it.key(), it.value(), nullptr));
    return list;
}

rt_object_presencesimulation_list rt_presencesimulation_t::getCommands(commands_map const& map)
{
    rt_object_presencesimulation_list list;
    for (auto it = map.begin(); it != map.end(); ++it)
        list.append(getCommands(it.key(), it.value()));
    return list;
}

void rt_presencesimulation_t::update_last_commands(rt_object_presencesimulation_list const& list, bool _notify)
{
    lastCommands.replace(list);
    if (_notify)
        send_update();
}

void rt_presencesimulation_t::update_next_commands(rt_object_presencesimulation_list const& list, bool _notify)
{
    nextCommands.replace(list);
    if (_notify)
        send_update();
}

void rt_presencesimulation_t::takeCommands(rt_object_list_t<rt_object_presencesimulation_t>& target,
                                           rt_object_presencesimulation_list const& list)
{
    target.replace(list);
    qDeleteAll(list);
}

void rt_presencesimulation_t::update_next_commands(commands_map const& map, bool _notify)
{
    takeCommands(nextCommands, getCommands(map));
    if (_notify)
        send_update();
}

void rt_presencesimulation_t::update(rt_presencesimulation_t const* other, bool _notify)
{
    if (!other) {
        refuseNull();
        return;
    }
    copyValues(other);
    lastCommands.replace(other->lastCommands.get());
    nextCommands.replace(other->nextCommands.get());
    if (_notify)
        send_update();
}

void rt_presencesimulation_t::update(psi_type_state_presence_simulation_t const& _state, QDateTime const& moment,
                                     commands_map const& last, commands_map const& next, bool _notify)
{
    setProperty("state", _state.ToString());
    // A null moment gives the empty text.
    setProperty("processing_datetime", moment.toString(Qt::ISODate));
    takeCommands(lastCommands, getCommands(last));
    takeCommands(nextCommands, getCommands(next));
    if (_notify)
        send_update();
}

void rt_presencesimulation_t::update(psi_type_state_presence_simulation_t const& _state, commands_map const& last,
                                     commands_map const& next, bool _notify)
{
    update(_state, QDateTime(), last, next, _notify);
}

void rt_presencesimulation_t::initRequestSignals(QObject* receiver, bool connect)
{
    if (!receiver)
        return;
    connectRequestSignals(receiver, connect);
    lastCommands.initRequestSignals(receiver, connect);
    nextCommands.initRequestSignals(receiver, connect);
}

bool rt_presencesimulation_t::operator==(rt_presencesimulation_t const& other) const
{
    return sameValues(&other) && lastCommands.get() == other.lastCommands.get()
        && nextCommands.get() == other.nextCommands.get();
}

} // namespace dbs
} // namespace realtime
} // namespace database
