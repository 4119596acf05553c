#include "database/presencesimulation/psi_object_presencesimulation_minute_t.h"

namespace database {
namespace presencesimulation {

psi_object_presencesimulation_minute_t::psi_object_presencesimulation_minute_t(QObject* parent)
    : topicbase_t(parent)
{
}

psi_object_presencesimulation_minute_t::psi_object_presencesimulation_minute_t(
    psi_object_presencesimulation_minute_t const& other)
    : topicbase_t(other)
    , actions(other.actions)
{
}

void psi_object_presencesimulation_minute_t::setActions(map_string const& value)
{
    assign(actions, value, [this] { Q_EMIT actionsChanged(actions); });
}

void psi_object_presencesimulation_minute_t::add(QString const& item, QString const& value)
{
    map_string changed = actions;
    changed.insert(item, value);
    setActions(changed);
}

int psi_object_presencesimulation_minute_t::remove(QString const& item)
{
    if (!actions.contains(item))
        return 0;
    map_string changed = actions;
    int const removed = int(changed.remove(item));
    setActions(changed);
    return removed;
}

void psi_object_presencesimulation_minute_t::clear()
{
    setActions(map_string());
}

} // namespace presencesimulation
} // namespace database
