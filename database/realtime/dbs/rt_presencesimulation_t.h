#ifndef DATABASE_REALTIME_DBS_RT_PRESENCESIMULATION_T_H
#define DATABASE_REALTIME_DBS_RT_PRESENCESIMULATION_T_H

#include <QDateTime>
#include <QMap>
#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"
#include "database/presencesimulation/define/psi_type_state_presence_simulation_t.h"
#include "database/realtime/dbs/rt_object_list_t.h"
#include "database/realtime/objects/system/rt_object_presencesimulation_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace dbs {

/**
 * What the presence simulation is doing now: its state, the moment it is
 * processing, and the actions it has just played and is about to play.
 */
class DATABASE_EXPORT rt_presencesimulation_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QString state MEMBER state READ getState NOTIFY stateChanged)
    Q_PROPERTY(QString processing_datetime MEMBER processing_datetime READ getProcessingDatetime NOTIFY
                   processing_datetimeChanged)
    Q_PROPERTY(QString updated MEMBER updated READ getUpdated NOTIFY updatedChanged)
    Q_PROPERTY(database::realtime::rt_object_presencesimulation_list last_commands READ getMapLastCommands WRITE
                   setLastCommands NOTIFY last_commandsChanged)
    Q_PROPERTY(database::realtime::rt_object_presencesimulation_list next_commands READ getMapNextCommands WRITE
                   setNextCommands NOTIFY next_commandsChanged)

public:
    /// Actions by moment, each a map from item id to value.
    using commands_map = QMap<QDateTime, QMap<QString, QString>>;

    Q_INVOKABLE explicit rt_presencesimulation_t(QObject* parent = nullptr);
    /// Deep: every action copied, no parent, no receiver.
    rt_presencesimulation_t(rt_presencesimulation_t const& other);

    QString getState() const { return state; }
    QString getProcessingDatetime() const { return processing_datetime; }
    QString getUpdated() const { return updated; }
    rt_object_presencesimulation_list getMapLastCommands() const { return lastCommands.get(); }
    rt_object_presencesimulation_list getMapNextCommands() const { return nextCommands.get(); }
    /// Take the list's pointers as they are.
    void setLastCommands(rt_object_presencesimulation_list const& list);
    void setNextCommands(rt_object_presencesimulation_list const& list);

    /// One action for each item of actions, all at moment; the caller owns them.
    static rt_object_presencesimulation_list getCommands(QDateTime const& moment,
                                                         QMap<QString, QString> const& actions);
    /// The actions of every moment, in the order of the moments.
    static rt_object_presencesimulation_list getCommands(commands_map const& map);

    /// Copies of list's actions replace the present ones.
    void update_last_commands(rt_object_presencesimulation_list const& list, bool _notify);
    void update_next_commands(rt_object_presencesimulation_list const& list, bool _notify);
    void update_next_commands(commands_map const& map, bool _notify);
    /// Takes every field of other; null is refused with "Not permitted nullptr".
    void update(rt_presencesimulation_t const* other, bool _notify);
    /// The state, the moment being processed and both lists of actions.
    void update(presencesimulation::definition::psi_type_state_presence_simulation_t const& _state,
                QDateTime const& moment, commands_map const& last, commands_map const& next, bool _notify);
    /// The same with no moment being processed.
    void update(presencesimulation::definition::psi_type_state_presence_simulation_t const& _state,
                commands_map const& last, commands_map const& next, bool _notify);

    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect);

    /// Same values and action objects.
    bool operator==(rt_presencesimulation_t const& other) const;

Q_SIGNALS:
    void stateChanged(QString);
    void processing_datetimeChanged(QString);
    void updatedChanged(QString);
    void last_commandsChanged(database::realtime::rt_object_presencesimulation_list);
    void next_commandsChanged(database::realtime::rt_object_presencesimulation_list);

private:
    /// Replaces one list by copies of list, then frees list itself.
    void takeCommands(rt_object_list_t<objects::rt_object_presencesimulation_t>& target,
                      rt_object_presencesimulation_list const& list);

    QString state = presencesimulation::definition::psi_type_state_presence_simulation_t::stop.ToString();
    QString processing_datetime;
    QString updated;
    rt_object_list_t<objects::rt_object_presencesimulation_t> lastCommands{this, QStringLiteral("last_commands")};
    rt_object_list_t<objects::rt_object_presencesimulation_t> nextCommands{this, QStringLiteral("next_commands")};
};

} // namespace dbs
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_RT_PRESENCESIMULATION_T_H
