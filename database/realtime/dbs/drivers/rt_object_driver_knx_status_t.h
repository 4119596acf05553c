#ifndef DATABASE_REALTIME_DBS_DRIVERS_RT_OBJECT_DRIVER_KNX_STATUS_T_H
#define DATABASE_REALTIME_DBS_DRIVERS_RT_OBJECT_DRIVER_KNX_STATUS_T_H

#include <QMap>
#include <QObject>
#include <QString>

#include "database/realtime/dbs/drivers/rt_object_driver_knx_status_detail_t.h"
#include "database/realtime/dbs/drivers/rt_object_driver_status_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace objects {
namespace drivers {

/// The status of one KNX bus loop, by the key of the persistent bus.
class DATABASE_EXPORT rt_object_driver_knx_status_t
    : public rt_object_driver_status_t<rt_object_driver_knx_status_t, rt_object_driver_knx_status_detail_t>
{
    Q_OBJECT
    Q_PROPERTY(bool loop_execution MEMBER loop_execution READ getLoopExecution NOTIFY loop_executionChanged)
    Q_PROPERTY(database::realtime::objects::drivers::rt_object_driver_knx_status_detail_t* info READ getInfo WRITE
                   setInfo NOTIFY infoChanged)

public:
    Q_INVOKABLE explicit rt_object_driver_knx_status_t(QObject* parent = nullptr);
    rt_object_driver_knx_status_t(QString const& topic, QObject* parent);
    /// Deep: the details are copied too; no parent, no receiver.
    rt_object_driver_knx_status_t(rt_object_driver_knx_status_t const& other);

Q_SIGNALS:
    void loop_executionChanged(bool);
    void infoChanged(database::realtime::objects::drivers::rt_object_driver_knx_status_detail_t*);
};

} // namespace drivers
} // namespace objects

typedef QMap<QString, objects::drivers::rt_object_driver_knx_status_t*> rt_object_driver_knx_map;

} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_DRIVERS_RT_OBJECT_DRIVER_KNX_STATUS_T_H
