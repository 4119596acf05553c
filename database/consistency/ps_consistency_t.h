#ifndef DATABASE_CONSISTENCY_PS_CONSISTENCY_T_H
#define DATABASE_CONSISTENCY_PS_CONSISTENCY_T_H

#include <QObject>
#include <QString>
#include <QStringList>

#include <atomic>
#include <functional>

#include "database/definition/type_object_t.h"
#include "database/persistent/dbs/ps_elements_t.h"
#include "database/persistent/objects/ps_object_t.h"
#include "platform/logs/classlogs.h"

#include "database/database_export.h"

namespace database {

class database_t;
namespace persistent {
class ps_data_t;
}

/**
 * Walks the live persistent tree and removes or repairs every reference
 * between sections that leads nowhere: elements, rooms and page stack, items,
 * smart button, presence simulation, scenarios, thermostats, schedules, rules,
 * users, the clock driver and notifications. Repairs go through the sections'
 * own update operations, so each one leaves as an ordinary change.
 *
 * It runs on the caller's thread, a pool thread when the check is
 * asynchronous, and holds the persistent engine's access mutex while it walks,
 * so that requests wait for it.
 */
class DATABASE_EXPORT ps_consistency_t : public QObject
{
    Q_OBJECT
public:
    explicit ps_consistency_t(database_t* database, QObject* parent = nullptr);

    bool isInRun() const { return inRun; }

Q_SIGNALS:
    void onPersistentConsistencyStep(int _step, int _numberstep, QString _field, QString _message);
    void onPersistentConsistencyInRun(bool _inRun);

public Q_SLOTS:
    /// Runs every check whatever _howCheck holds: the list only names the run
    /// in the log. With _realtime the realtime twins follow before the run ends.
    void check(QStringList _howCheck, bool _realtime);
    void check(QStringList _howCheck);

private:
    /// The tables of one run: built by the check of the elements, read by the
    /// checks after it.
    struct tables_t {
        /// Room element id, its element list.
        persistent::map_stringlist _rooms;
        /// Every element that is neither room nor page.
        QStringList _elements;
        /// Element id, the items of its function map; and the other way round.
        persistent::map_stringlist tmp_elemet_to_item;
        persistent::map_stringlist tmp_item_to_element;
        /// Scenario id, its scenario elements; thermostat id, its thermo-logic elements.
        persistent::map_stringlist _scenary_to_element;
        persistent::map_stringlist _thermo_to_element;
    };

private Q_SLOTS:
    void check_elements(tables_t& tables);
    void check_elements_page_stack(persistent::map_stringlist& _rooms);
    void check_elements_rooms_floor(persistent::map_stringlist& _rooms);
    void check_elements_elements_elements_room(tables_t& tables);
    void check_elements_elements_room_elements(persistent::map_stringlist& _rooms);
    void check_elements_items(persistent::map_stringlist& tmp_item_to_element);
    void check_elements_smart_button();
    void check_elements_presence_simualtion();
    void check_scenary_objects(persistent::map_stringlist& tmp_item_to_element,
                               persistent::map_stringlist& _scenary_to_element);
    void check_thermo_objects(persistent::map_stringlist& _thermo_to_element);
    void check_scheduler_objects(persistent::map_stringlist& tmp_item_to_element);
    void check_rules_objects(persistent::map_stringlist& tmp_item_to_element);
    void check_rules_object(::database::definition::type_object_t const& type,
                            persistent::map_stringlist& tmp_item_to_element);
    void check_users();
    void check_driver_clock();
    void check_notification();

private:
    /// What an action of a scenario or a schedule is found to be: an ending of
    /// its log line and that line's level; an empty ending for a sound action.
    struct verdict_t {
        QString ending;
        ::utility::logs::LogLevel level = ::utility::logs::warning;
    };
    using judge_t = std::function<verdict_t(persistent::objects::ps_object_t const*)>;

    /// The keys of the actions that judge finds faulty, each logged as
    /// prefix, " object ", key and its ending.
    QStringList faultyActions(persistent::ps_objects_map const& actions, QString const& prefix, judge_t const& judge,
                              char const* source) const;
    /// The judge of the actions of a schedule of element elementId.
    judge_t schedulerJudge(persistent::map_stringlist const& tmp_item_to_element, QString const& elementId) const;
    /// Whether an item reference is set and names no item; clears nothing.
    bool danglingItem(QString const& id) const;
    /// Steps 0 to 11: the tables, then every check in its order, each with its report.
    void run();
    /// Emits the report of the present step; advance moves on to the next one.
    void report(QString const& field, QString const& message, bool advance);
    void log(QString const& message, ::utility::logs::LogLevel level, char const* source) const;
    /// The database's name, which starts the lines that name it.
    QString name() const;

    std::atomic<bool> inRun{false};
    int numberstep = 11;
    int step = 0;
    database_t* database = nullptr;
    // The tree of the run in progress, walked under the engine's mutex.
    persistent::ps_data_t* data = nullptr;
};

} // namespace database

#endif // DATABASE_CONSISTENCY_PS_CONSISTENCY_T_H
