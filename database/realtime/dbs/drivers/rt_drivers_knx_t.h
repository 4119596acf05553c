#ifndef DATABASE_REALTIME_DBS_DRIVERS_RT_DRIVERS_KNX_T_H
#define DATABASE_REALTIME_DBS_DRIVERS_RT_DRIVERS_KNX_T_H

#include <QMap>
#include <QObject>
#include <QString>

#include "database/realtime/dbs/drivers/rt_drivers_bus_t.h"
#include "database/realtime/dbs/drivers/rt_object_driver_knx_interface_t.h"
#include "database/realtime/dbs/drivers/rt_object_driver_knx_status_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace objects {
namespace drivers {

/// What the KNX driver reports: the interfaces it found and the status of its buses.
class DATABASE_EXPORT rt_drivers_knx_t
    : public rt_drivers_bus_t<rt_drivers_knx_t, rt_object_driver_knx_interface_t, rt_object_driver_knx_status_t>
{
    Q_OBJECT
    Q_PROPERTY(database::realtime::rt_object_driver_knx_interface_list interfaces READ getInterfaces WRITE
                   setInterfaces NOTIFY interfacesChanged)
    Q_PROPERTY(database::realtime::rt_object_driver_knx_map status READ getStatus WRITE setStatus NOTIFY statusChanged)

public:
    Q_INVOKABLE explicit rt_drivers_knx_t(QObject* parent = nullptr);
    rt_drivers_knx_t(QString const& topic, QObject* parent);
    /// Deep: every interface and status copied, no parent, no receiver.
    rt_drivers_knx_t(rt_drivers_knx_t const& other);

Q_SIGNALS:
    void interfacesChanged(database::realtime::rt_object_driver_knx_interface_list);
    void statusChanged(database::realtime::rt_object_driver_knx_map);
};

} // namespace drivers
} // namespace objects

typedef QMap<QString, objects::drivers::rt_drivers_knx_t*> rt_drivers_knx_map;

} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_DRIVERS_RT_DRIVERS_KNX_T_H
