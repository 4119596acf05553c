#ifndef DATABASE_PERSISTENT_DBS_DRIVERS_PS_DRIVERS_BAOS_T_H
#define DATABASE_PERSISTENT_DBS_DRIVERS_PS_DRIVERS_BAOS_T_H

#include <QObject>
#include <QString>

#include "database/persistent/dbs/drivers/ps_drivers_knx_t.h"
#include "database/persistent/dbs/drivers/ps_object_drivers_baos_bus_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {
namespace drivers {

/// The BAOS driver: its buses and whether it is in use; it behaves as the KNX
/// driver (see ps_drivers_bus_owner_t).
class DATABASE_EXPORT ps_drivers_baos_t
    : public ps_drivers_bus_owner_t<ps_drivers_baos_t, ps_object_drivers_baos_bus_t>
{
    Q_OBJECT
    Q_PROPERTY(database::persistent::ps_drivers_baos_bus_map bus READ getBus WRITE setBus NOTIFY busChanged)
    Q_PROPERTY(bool enabled READ getEnabled WRITE setEnabled NOTIFY enabledChanged)

public:
    Q_INVOKABLE explicit ps_drivers_baos_t(QObject* parent = nullptr);
    ps_drivers_baos_t(QString const& topic, QObject* parent);
    /// Deep: every bus copied, no parent, no receiver.
    ps_drivers_baos_t(ps_drivers_baos_t const& other);

    /// Content into the bus of that id, a copy for a new id, removal for null.
    void update_bus(QString const& id, ps_object_drivers_baos_bus_t* bus, bool _notify);

Q_SIGNALS:
    void busChanged(database::persistent::ps_drivers_baos_bus_map);
    void enabledChanged(bool);
};

} // namespace drivers
} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_DRIVERS_PS_DRIVERS_BAOS_T_H
