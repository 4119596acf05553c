#ifndef DATABASE_REALTIME_DBS_RT_SCHEDULER_T_H
#define DATABASE_REALTIME_DBS_RT_SCHEDULER_T_H

#include <QObject>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace dbs {

/// The running state of the schedules: when each entry last fired, how often.
class DATABASE_EXPORT rt_scheduler_t : public base::topicbase_t
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit rt_scheduler_t(QObject* parent = nullptr);
    rt_scheduler_t(rt_scheduler_t const& other) = default;

    /// Takes other's fields; null is refused with onObjectError.
    void update(rt_scheduler_t const* other, bool _notify) { updateValues(other, _notify); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }
    bool operator==(rt_scheduler_t const& other) const { return sameValues(&other); }
};

} // namespace dbs
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_RT_SCHEDULER_T_H
