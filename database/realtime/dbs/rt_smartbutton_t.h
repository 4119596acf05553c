#ifndef DATABASE_REALTIME_DBS_RT_SMARTBUTTON_T_H
#define DATABASE_REALTIME_DBS_RT_SMARTBUTTON_T_H

#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"
#include "database/definition/type_smartbutton_state_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace dbs {

/**
 * What the smart button is doing: stopped, or recording the scenario whose
 * key it holds. A recording never stands without its scenario.
 */
class DATABASE_EXPORT rt_smartbutton_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QString state MEMBER state READ getState NOTIFY stateChanged)
    Q_PROPERTY(QString recScena MEMBER recScena READ getRecScena NOTIFY recScenaChanged)

public:
    Q_INVOKABLE explicit rt_smartbutton_t(QObject* parent = nullptr);
    rt_smartbutton_t(rt_smartbutton_t const& other);

    QString getState() const { return state; }
    QString getRecScena() const { return recScena; }

    /// Takes both fields of other as they are; null stops.
    void update(rt_smartbutton_t const* other, bool _notify);
    /// "stop" forgets the scenario; "recindex" needs one already set, and
    /// without it ends in "stop". Any other state changes nothing.
    void update(::database::definition::type_smartbutton_state_t const& _state, bool _notify);
    /// Sets the scenario first, then the state as above.
    void update(::database::definition::type_smartbutton_state_t const& _state, QString const& _recScena, bool _notify);
    void update_set_stop(bool _notify);

    /// Sends nothing: a stop is not asked of other processes.
    void requestSetStop() {}

    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }

    /// Same values; the topic doesn't count.
    bool operator==(rt_smartbutton_t const& other) const { return sameValues(&other); }

Q_SIGNALS:
    void stateChanged(QString);
    void recScenaChanged(QString);

private:
    void setState(QString const& value);
    void setRecScena(QString const& value);

    QString state = ::database::definition::type_smartbutton_state_t::stop.ToString();
    QString recScena;
};

} // namespace dbs
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_RT_SMARTBUTTON_T_H
