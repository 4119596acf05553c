#ifndef DATABASE_RT_TWIN_T_H
#define DATABASE_RT_TWIN_T_H

#include <QMutex>
#include <QString>

#include "database/persistent/objects/ps_object_item_t.h"

namespace database {

class database_t;
namespace persistent {
class persistent_t;
}
namespace realtime {
class realtime_t;
}

/**
 * Keeps the realtime twin of a configured item or thermostat in step with its
 * configuration: created with the configuration, kept (with its live value)
 * across a change of it, removed with it. The persistent request and status
 * handlers share it.
 */
class rt_twin_t
{
public:
    explicit rt_twin_t(database_t* database);
    /// For callers that already hold the engines' locks, which the façade's accessors take.
    rt_twin_t(persistent::persistent_t* configured, realtime::realtime_t* live);

    /// The realtime engine's access mutex, taken after the persistent one.
    QMutex* mutex() const;

    /// The twin of item id: feedback address from the configuration, the live
    /// value kept; removed when the configuration has no such item.
    void item(QString const& id) const;
    /// Every twin replaced by one per item of map, with its feedback address.
    void items(persistent::ps_items_map const& map) const;
    /// The twin of thermostat id, with the season its season type allows;
    /// true when the twin was created, changed or removed.
    bool thermostat(QString const& id) const;

private:
    // Taken once: the façade's accessors take the engines' locks, which the callers hold.
    persistent::persistent_t* configured = nullptr;
    realtime::realtime_t* live = nullptr;
};

} // namespace database

#endif // DATABASE_RT_TWIN_T_H
