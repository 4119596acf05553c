#ifndef DATABASE_REALTIME_DBS_RT_STORAGE_T_H
#define DATABASE_REALTIME_DBS_RT_STORAGE_T_H

#include <QObject>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace dbs {

/// Free live data that the hosts keep in the realtime database.
class DATABASE_EXPORT rt_storage_t : public base::topicbase_t
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit rt_storage_t(QObject* parent = nullptr);
    rt_storage_t(rt_storage_t const& other) = default;

    /// Takes other's fields; null is refused with onObjectError.
    void update(rt_storage_t const* other, bool _notify) { updateValues(other, _notify); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }
    bool operator==(rt_storage_t const& other) const { return sameValues(&other); }
};

} // namespace dbs
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_RT_STORAGE_T_H
