#ifndef DATABASE_PERSISTENT_DBS_PS_PRESENCESIMULATION_T_H
#define DATABASE_PERSISTENT_DBS_PS_PRESENCESIMULATION_T_H

#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"
#include "database/presencesimulation/define/psi_type_state_presence_simulation_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace dbs {

/// Whether the presence simulation stops, records or plays, and the item that switches it.
class DATABASE_EXPORT ps_presencesimulation_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QString state READ getStateText WRITE setState NOTIFY stateChanged)
    Q_PROPERTY(QString idItem READ getIdItem WRITE setIdItem NOTIFY idItemChanged)

public:
    using state_t = presencesimulation::definition::psi_type_state_presence_simulation_t;

    Q_INVOKABLE explicit ps_presencesimulation_t(QObject* parent = nullptr);
    ps_presencesimulation_t(ps_presencesimulation_t const& other);

    /// The state whose text matches the stored one, trimmed; an unknown text gives play.
    state_t getState() const;
    /// The stored text as it is.
    QString getStateText() const { return state; }
    QString getIdItem() const { return idItem; }

    void setState(QString const& value);
    void setIdItem(QString const& value);

    void requestSetIdItem(QString const& value);
    void requestSetState(state_t const& value);
    /// Asks for the whole record with these values.
    void requestSetPresenceSimulation(state_t const& _state, QString const& _idItem);

    void update_state(state_t const& value, bool _notify);
    void update_id_item(QString const& value, bool _notify);
    void update(ps_presencesimulation_t const* other, bool _notify) { updateValues(other, _notify); }
    /// Same values; the topic doesn't count.
    bool compare(ps_presencesimulation_t const* other) const { return sameValues(other); }
    bool operator==(ps_presencesimulation_t const& other) const { return sameValues(&other); }

    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }

Q_SIGNALS:
    void stateChanged(QString);
    void idItemChanged(QString);

private:
    QString state = state_t().ToString();
    QString idItem;
};

} // namespace dbs
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_PS_PRESENCESIMULATION_T_H
