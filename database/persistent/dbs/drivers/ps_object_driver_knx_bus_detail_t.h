#ifndef DATABASE_PERSISTENT_DBS_DRIVERS_PS_OBJECT_DRIVER_KNX_BUS_DETAIL_T_H
#define DATABASE_PERSISTENT_DBS_DRIVERS_PS_OBJECT_DRIVER_KNX_BUS_DETAIL_T_H

#include <QObject>
#include <QString>

#include "database/persistent/dbs/drivers/ps_object_driver_bus_detail_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {
namespace drivers {

/// The "params" of a KNX bus: its own class so that each bus names its detail type.
class DATABASE_EXPORT ps_object_driver_knx_bus_detail_t : public ps_object_driver_bus_detail_t
{
    Q_OBJECT
public:
    Q_INVOKABLE explicit ps_object_driver_knx_bus_detail_t(QObject* parent = nullptr)
        : ps_object_driver_bus_detail_t(parent)
    {
    }
    ps_object_driver_knx_bus_detail_t(QString const& topic, QObject* parent)
        : ps_object_driver_bus_detail_t(topic, parent)
    {
    }
    ps_object_driver_knx_bus_detail_t(ps_object_driver_knx_bus_detail_t const& other) = default;
};

} // namespace drivers
} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_DRIVERS_PS_OBJECT_DRIVER_KNX_BUS_DETAIL_T_H
