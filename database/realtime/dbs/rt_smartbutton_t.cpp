#include "database/realtime/dbs/rt_smartbutton_t.h"

#include "database/base/literals.h"
#include "platform/logs/classlogs.h"

namespace database {
namespace realtime {
namespace dbs {

using ::database::definition::type_smartbutton_state_t;

rt_smartbutton_t::rt_smartbutton_t(QObject* parent)
    : topicbase_t(literals::key_smartbutton, parent)
{
}

rt_smartbutton_t::rt_smartbutton_t(rt_smartbutton_t const& other)
    : topicbase_t(other)
    , state(other.state)
    , recScena(other.recScena)
{
}

void rt_smartbutton_t::setState(QString const& value)
{
    assign(state, value, [this] { Q_EMIT stateChanged(state); });
}

void rt_smartbutton_t::setRecScena(QString const& value)
{
    assign(recScena, value, [this] { Q_EMIT recScenaChanged(recScena); });
}

void rt_smartbutton_t::update(rt_smartbutton_t const* other, bool _notify)
{
    if (!other) {
        update_set_stop(_notify);
        return;
    }
    copyValues(other);
    if (_notify)
        send_update();
}

void rt_smartbutton_t::update(type_smartbutton_state_t const& _state, bool _notify)
{
    if (_state == type_smartbutton_state_t::stop) {
        setState(_state.ToString());
        setRecScena(QString());
    } else if (_state == type_smartbutton_state_t::recindex) {
        if (recScena.isEmpty()) {
            CLASSLOGS_LOG(QStringLiteral("Try to set smartbutton in rec but rec scena is empty! Set state to stop!"),
                          ::utility::logs::error, QStringLiteral("update"));
            setState(type_smartbutton_state_t::stop.ToString());
        } else {
            setState(_state.ToString());
        }
    }
    if (_notify)
        send_update();
}

void rt_smartbutton_t::update(type_smartbutton_state_t const& _state, QString const& _recScena, bool _notify)
{
    setRecScena(_recScena);
    update(_state, _notify);
}

void rt_smartbutton_t::update_set_stop(bool _notify)
{
    setState(type_smartbutton_state_t::stop.ToString());
    setRecScena(QString());
    if (_notify)
        send_update();
}

} // namespace dbs
} // namespace realtime
} // namespace database
