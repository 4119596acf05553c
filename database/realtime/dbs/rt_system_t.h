#ifndef DATABASE_REALTIME_DBS_RT_SYSTEM_T_H
#define DATABASE_REALTIME_DBS_RT_SYSTEM_T_H

#include <QDateTime>
#include <QObject>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace dbs {

/// The clock and state of the system; it is never replaced from outside.
class DATABASE_EXPORT rt_system_t : public base::topicbase_t
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit rt_system_t(QObject* parent = nullptr);
    rt_system_t(rt_system_t const& other) = default;

    /// Takes other's fields; null is refused with onObjectError.
    void update(rt_system_t const* other, bool _notify) { updateValues(other, _notify); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }
    bool operator==(rt_system_t const& other) const { return sameValues(&other); }
    void update_datetime(QDateTime const&, bool) {}
};

} // namespace dbs
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_RT_SYSTEM_T_H
