#include "database/persistent/dbs/ps_presencesimulation_t.h"

#include <iterator>

#include "database/base/literals.h"
#include "database/persistent/ps_request.h"

namespace database {
namespace persistent {
namespace dbs {

ps_presencesimulation_t::ps_presencesimulation_t(QObject* parent)
    : topicbase_t(literals::key_presencesimulation, parent)
{
}

ps_presencesimulation_t::ps_presencesimulation_t(ps_presencesimulation_t const& other)
    : topicbase_t(other)
{
    copyValues(&other);
}

ps_presencesimulation_t::state_t ps_presencesimulation_t::getState() const
{
    // In the type's order, so that the last one is also the fallback.
    state_t const states[] = {state_t::stop, state_t::rec, state_t::play};
    QString const text = state.trimmed();
    for (state_t const& candidate : states) {
        if (candidate.ToString() == text)
            return candidate;
    }
    return states[std::size(states) - 1];
}

void ps_presencesimulation_t::setState(QString const& value)
{
    assign(state, value, [this] { Q_EMIT stateChanged(state); });
}

void ps_presencesimulation_t::setIdItem(QString const& value)
{
    assign(idItem, value, [this] { Q_EMIT idItemChanged(idItem); });
}

void ps_presencesimulation_t::requestSetIdItem(QString const& value)
{
    requestField(this, QStringLiteral("idItem"), value);
}

void ps_presencesimulation_t::requestSetState(state_t const& value)
{
    requestField(this, QStringLiteral("state"), value.ToString());
}

void ps_presencesimulation_t::requestSetPresenceSimulation(state_t const& _state, QString const& _idItem)
{
    ps_presencesimulation_t copy(*this);
    copy.setState(_state.ToString());
    copy.setIdItem(_idItem);
    requestAt(this, topic, copy.toJson());
}

void ps_presencesimulation_t::update_state(state_t const& value, bool _notify)
{
    setState(value.ToString());
    if (_notify)
        send_update();
}

void ps_presencesimulation_t::update_id_item(QString const& value, bool _notify)
{
    setIdItem(value);
    if (_notify)
        send_update();
}

} // namespace dbs
} // namespace persistent
} // namespace database
