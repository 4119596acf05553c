#ifndef DATABASE_REALTIME_DBS_DRIVERS_RT_OBJECT_DRIVER_KNX_INTERFACE_T_H
#define DATABASE_REALTIME_DBS_DRIVERS_RT_OBJECT_DRIVER_KNX_INTERFACE_T_H

#include <QList>
#include <QObject>
#include <QString>

#include "database/realtime/dbs/drivers/rt_object_driver_interface_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace objects {
namespace drivers {

/// A KNX interface that a scan of the KNX driver found.
class DATABASE_EXPORT rt_object_driver_knx_interface_t
    : public rt_object_driver_interface_t<rt_object_driver_knx_interface_t>
{
    Q_OBJECT
    Q_PROPERTY(int id MEMBER id READ getId NOTIFY idChanged)
    Q_PROPERTY(QString type MEMBER type READ getType NOTIFY typeChanged)
    Q_PROPERTY(QString address MEMBER address READ getAddress NOTIFY addressChanged)
    Q_PROPERTY(QString ip MEMBER ip READ getIp NOTIFY ipChanged)
    Q_PROPERTY(QString uniqueId MEMBER uniqueId READ getUniqueId NOTIFY uniqueIdChanged)
    Q_PROPERTY(bool isSecure MEMBER isSecure READ getIsSecure NOTIFY isSecureChanged)

public:
    Q_INVOKABLE explicit rt_object_driver_knx_interface_t(QObject* parent = nullptr);
    rt_object_driver_knx_interface_t(QString const& topic, QObject* parent);
    rt_object_driver_knx_interface_t(rt_object_driver_knx_interface_t const& other);

    QString getUniqueId() const { return uniqueId; }

    void requestSetAddressKNX(QString const& value) { requestAddress(value); }

Q_SIGNALS:
    void idChanged(int);
    void typeChanged(QString);
    void addressChanged(QString);
    void ipChanged(QString);
    void uniqueIdChanged(QString);
    void isSecureChanged(bool);

private:
    QString uniqueId;
};

} // namespace drivers
} // namespace objects

typedef QList<objects::drivers::rt_object_driver_knx_interface_t*> rt_object_driver_knx_interface_list;

} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_DRIVERS_RT_OBJECT_DRIVER_KNX_INTERFACE_T_H
