#ifndef DATABASE_REALTIME_OBJECTS_SCHEDULERS_RT_OBJECT_SCHEDULE_ENTRY_T_H
#define DATABASE_REALTIME_OBJECTS_SCHEDULERS_RT_OBJECT_SCHEDULE_ENTRY_T_H

#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace objects {

/**
 * How one entry of a schedule went: when it last ran and how often. The clock
 * entries and the sun entries of a realtime schedule are both of this shape.
 */
class DATABASE_EXPORT rt_object_schedule_entry_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QString executed MEMBER executed READ getExecuted NOTIFY executedChanged)
    Q_PROPERTY(int counter MEMBER counter READ getCounter NOTIFY counterChanged)

public:
    QString getExecuted() const { return executed; }
    int getCounter() const { return counter; }

    /// Takes both fields of other; null is refused with "Not permitted nullptr".
    void update(rt_object_schedule_entry_t const* other, bool _notify) { updateValues(other, _notify); }
    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }

    /// Same values; the topic doesn't count.
    bool operator==(rt_object_schedule_entry_t const& other) const { return sameValues(&other); }

Q_SIGNALS:
    void executedChanged(QString);
    void counterChanged(int);

protected:
    rt_object_schedule_entry_t(QString const& topic, QString const& executed, int counter, QObject* parent);
    rt_object_schedule_entry_t(rt_object_schedule_entry_t const& other);

private:
    QString executed;
    int counter = 0;
};

} // namespace objects
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_OBJECTS_SCHEDULERS_RT_OBJECT_SCHEDULE_ENTRY_T_H
