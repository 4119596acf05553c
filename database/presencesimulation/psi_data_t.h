#ifndef DATABASE_PRESENCESIMULATION_PSI_DATA_T_H
#define DATABASE_PRESENCESIMULATION_PSI_DATA_T_H

#include <QDateTime>
#include <QJsonValue>
#include <QMap>
#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"
#include "database/presencesimulation/psi_object_presencesimulation_week_t.h"

#include "database/database_export.h"

namespace database {
namespace presencesimulation {

/**
 * The root of the presence simulation database: one recorded week, in which
 * each minute holds the value each item took. The host records into it by
 * requestSetAction while the house is lived in, and plays it back from
 * getActions or getNextActions while it is empty. presencesimulation_t holds
 * one; the handlers change it through the update_* operations.
 */
class DATABASE_EXPORT psi_data_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(database::presencesimulation::psi_object_presencesimulation_week_t* week READ getWeek WRITE setWeek
                   NOTIFY weekChanged)

public:
    using week_t = psi_object_presencesimulation_week_t;
    using day_t = psi_object_presencesimulation_day_t;
    using hour_t = psi_object_presencesimulation_hour_t;
    using minute_t = psi_object_presencesimulation_minute_t;

    Q_INVOKABLE explicit psi_data_t(QObject* parent = nullptr);
    /// Deep; the copy has no parent and no connections.
    psi_data_t(psi_data_t const& other);

    /// Never null.
    week_t* getWeek() const { return week; }
    /// Takes week over; null puts an empty week in place.
    void setWeek(week_t* week);
    day_t* getDay(int day) const;
    hour_t* getHour(int day, int hour) const;
    minute_t* getMinute(int day, int hour, int minute) const;

    /**
     * The actions recorded at the weekday, hour and minute of when. A day or
     * an hour never recorded is taken from the same clock time of the latest
     * recorded day before it, at most six days back: then result is 0 and
     * found the moment read. A recorded hour without that minute gives nothing
     * and leaves result and found alone; seven misses give result -1.
     */
    map_string getActions(QDateTime const& when, int& result, QDateTime& found) const;
    /// The actions from from backwards, minute by minute, by moment; see getActions.
    QMap<QDateTime, map_string> getNextActions(QDateTime const& from, int count) const;

    // Requests only ask: the tree changes when the owner applies them.
    void requestSetAction(int day, int hour, int minute, QString const& item, QString const& value);
    void requestDeleteAction(int day, int hour, int minute, QString const& item);
    void requestDeleteMinute(int day, int hour, int minute);
    void requestDeleteHour(int day, int hour);
    void requestDeleteDay(int day);
    void requestDelete();
    void requestgetData();

    /// Sets one action, or removes it when value is blank.
    void update_action(int day, int hour, int minute, QString const& item, QString const& value, bool notify);
    /// Puts a copy of object at its place, or removes the node for null.
    void update_minute(int day, int hour, int minute, minute_t* object, bool notify);
    void update_hour(int day, int hour, hour_t* object, bool notify);
    void update_day(int day, day_t* object, bool notify);
    /// Replaces the week by a copy of object; null empties it.
    void update(week_t* object, bool notify);
    void update_remove_item(QString const& item, bool notify);

    /// Removes the empty nodes of the whole week.
    void clean(bool notify);
    /// Removes the empty nodes from the given position upward; a negative
    /// hour or minute starts above it.
    void clean(int day, int hour, bool notify);
    void clean(int day, int hour, int minute, bool notify);

    void send_update();
    void send_update_day(int day);
    void send_update_hour(int day, int hour);
    void send_update_minute(int day, int hour, int minute);
    void send_update_action(int day, int hour, int minute, QString const& item);

    void initRequestSignals(QObject* target, bool connect);

Q_SIGNALS:
    void weekChanged(database::presencesimulation::psi_object_presencesimulation_week_t*);

private:
    day_t* ensureDay(int day);
    hour_t* ensureHour(int day, int hour);
    minute_t* ensureMinute(int day, int hour, int minute);
    /// The request, or its refusal with message when out of range.
    void request(QString const& relative, QJsonValue const& payload, bool inRange, QString const& message);
    void refuseInsert(QString const& position);
    template<class Parent, class Node, class Find, class Ensure, class Publish, class Clean>
    void updateNode(Node* object, int number, bool valid, QString const& position, char const* source,
                    char const* added, bool notify, Find find, Ensure ensure, Publish publish, Clean cleanUp);

    week_t* week = nullptr;
};

} // namespace presencesimulation
} // namespace database

#endif // DATABASE_PRESENCESIMULATION_PSI_DATA_T_H
