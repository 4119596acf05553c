#ifndef DATABASE_PERSISTENT_DBS_DRIVERS_PS_OBJECT_DRIVERS_BAOS_BUS_T_H
#define DATABASE_PERSISTENT_DBS_DRIVERS_PS_OBJECT_DRIVERS_BAOS_BUS_T_H

#include <QMap>
#include <QObject>
#include <QString>

#include "database/definition/baos/type_interfaces_baos_t.h"
#include "database/persistent/dbs/drivers/ps_object_driver_baos_bus_detail_t.h"
#include "database/persistent/dbs/drivers/ps_object_drivers_knx_bus_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {
namespace drivers {

/// One bus of the BAOS driver, by its key in the driver's "bus" map; it
/// behaves as a KNX bus (see ps_object_drivers_bus_base_t).
class DATABASE_EXPORT ps_object_drivers_baos_bus_t
    : public ps_object_drivers_bus_base_t<ps_object_drivers_baos_bus_t, ps_object_driver_baos_bus_detail_t,
                                          ::database::definition::baos::type_interfaces_baos_t>
{
    Q_OBJECT
    Q_PROPERTY(bool enabled READ getEnabled WRITE setEnabled NOTIFY enabledChanged)
    Q_PROPERTY(
        int init_loop_interval READ getInitLoopInterval WRITE setInitLoopInterval NOTIFY init_loop_intervalChanged)
    Q_PROPERTY(QString type READ getType WRITE setType NOTIFY typeChanged)
    Q_PROPERTY(database::persistent::objects::drivers::ps_object_driver_baos_bus_detail_t* params READ getParams WRITE
                   setParams NOTIFY paramsChanged)

public:
    Q_INVOKABLE explicit ps_object_drivers_baos_bus_t(QObject* parent = nullptr);
    ps_object_drivers_baos_bus_t(QString const& topic, QObject* parent);
    /// Deep: the parameters are copied too; no parent.
    ps_object_drivers_baos_bus_t(ps_object_drivers_baos_bus_t const& other);

Q_SIGNALS:
    void enabledChanged(bool);
    void init_loop_intervalChanged(int);
    void typeChanged(QString);
    void paramsChanged(database::persistent::objects::drivers::ps_object_driver_baos_bus_detail_t*);
};

} // namespace drivers
} // namespace objects

typedef QMap<QString, objects::drivers::ps_object_drivers_baos_bus_t*> ps_drivers_baos_bus_map;

} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_DRIVERS_PS_OBJECT_DRIVERS_BAOS_BUS_T_H
