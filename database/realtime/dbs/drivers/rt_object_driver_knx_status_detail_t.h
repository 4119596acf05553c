#ifndef DATABASE_REALTIME_DBS_DRIVERS_RT_OBJECT_DRIVER_KNX_STATUS_DETAIL_T_H
#define DATABASE_REALTIME_DBS_DRIVERS_RT_OBJECT_DRIVER_KNX_STATUS_DETAIL_T_H

#include <QObject>
#include <QString>

#include "database/realtime/dbs/drivers/rt_object_driver_status_detail_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace objects {
namespace drivers {

/// What the KNX driver last reported of one bus: events, interface, counters.
class DATABASE_EXPORT rt_object_driver_knx_status_detail_t
    : public rt_object_driver_status_detail_t<rt_object_driver_knx_status_detail_t>
{
    Q_OBJECT
    Q_PROPERTY(QString accessPortError MEMBER accessPortError READ getAccessPortError NOTIFY accessPortErrorChanged)
    Q_PROPERTY(QString accessPortClose MEMBER accessPortClose READ getAccessPortClose NOTIFY accessPortCloseChanged)
    Q_PROPERTY(QString accessPortTeminate MEMBER accessPortTeminate READ getAccessPortTeminate NOTIFY
                   accessPortTeminateChanged)
    Q_PROPERTY(QString busDisconnected MEMBER busDisconnected READ getBusDisconnected NOTIFY busDisconnectedChanged)
    Q_PROPERTY(QString deviceNotFound MEMBER deviceNotFound READ getDeviceNotFound NOTIFY deviceNotFoundChanged)
    Q_PROPERTY(int interfaceId MEMBER interfaceId READ getInterfaceId NOTIFY interfaceIdChanged)
    Q_PROPERTY(int packetTX MEMBER packetTX READ getPacketTX NOTIFY packetTXChanged STORED false)
    Q_PROPERTY(int packetRX MEMBER packetRX READ getPacketRX NOTIFY packetRXChanged STORED false)

public:
    Q_INVOKABLE explicit rt_object_driver_knx_status_detail_t(QObject* parent = nullptr);
    rt_object_driver_knx_status_detail_t(QString const& topic, QObject* parent);
    rt_object_driver_knx_status_detail_t(rt_object_driver_knx_status_detail_t const& other);

Q_SIGNALS:
    void accessPortErrorChanged(QString);
    void accessPortCloseChanged(QString);
    void accessPortTeminateChanged(QString);
    void busDisconnectedChanged(QString);
    void deviceNotFoundChanged(QString);
    void interfaceIdChanged(int);
    void packetTXChanged(int);
    void packetRXChanged(int);
};

} // namespace drivers
} // namespace objects
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_DRIVERS_RT_OBJECT_DRIVER_KNX_STATUS_DETAIL_T_H
