#ifndef DATABASE_REALTIME_DBS_DRIVERS_RT_OBJECT_DRIVER_STATUS_DETAIL_T_H
#define DATABASE_REALTIME_DBS_DRIVERS_RT_OBJECT_DRIVER_STATUS_DETAIL_T_H

#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"

namespace database {
namespace realtime {
namespace objects {
namespace drivers {

/**
 * What the status details of a KNX and of a BAOS bus share: the last event of
 * each kind as text, the interface in use, and the packet counters, which live
 * in memory only. Derived declares the properties, in its own JSON order, and
 * their signals; each update_* writes one through the property system.
 */
template<class Derived>
class rt_object_driver_status_detail_t : public base::topicbase_t
{
public:
    QString getAccessPortError() const { return accessPortError; }
    QString getAccessPortClose() const { return accessPortClose; }
    QString getAccessPortTeminate() const { return accessPortTeminate; }
    QString getBusDisconnected() const { return busDisconnected; }
    QString getDeviceNotFound() const { return deviceNotFound; }
    int getInterfaceId() const { return interfaceId; }
    int getPacketTX() const { return packetTX; }
    int getPacketRX() const { return packetRX; }

    void update_access_port_error(QString const& value, bool _notify)
    {
        updateField("accessPortError", value, _notify);
    }
    void update_access_port_close(QString const& value, bool _notify)
    {
        updateField("accessPortClose", value, _notify);
    }
    void update_access_port_teminate(QString const& value, bool _notify)
    {
        updateField("accessPortTeminate", value, _notify);
    }
    void update_bus_disconnected(QString const& value, bool _notify)
    {
        updateField("busDisconnected", value, _notify);
    }
    void update_device_not_found(QString const& value, bool _notify)
    {
        updateField("deviceNotFound", value, _notify);
    }
    void update_interface_id(int value, bool _notify) { updateField("interfaceId", value, _notify); }
    void update_packet_tx(int value, bool _notify) { updateField("packetTX", value, _notify); }
    void update_packet_rx(int value, bool _notify) { updateField("packetRX", value, _notify); }

    /// Empties the five event texts; the interface and the counters stay.
    void update_reset_info(bool _notify)
    {
        for (char const* key :
             {"accessPortError", "accessPortClose", "accessPortTeminate", "busDisconnected", "deviceNotFound"})
            setProperty(key, QString());
        if (_notify)
            send_update();
    }

    /// Takes every field of other, the counters too; null is refused with
    /// "Not permitted nullptr".
    void update(Derived const* other, bool _notify)
    {
        if (!other) {
            refuseNull();
            return;
        }
        copyValues(other);
        update_packet_tx(other->packetTX, false);
        update_packet_rx(other->packetRX, false);
        if (_notify)
            send_update();
    }

    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }

    /// Same stored values; the topic and the counters don't count.
    bool operator==(Derived const& other) const { return sameValues(&other); }

protected:
    using topicbase_t::topicbase_t;

    /// Copies the counters, which the stored values leave out.
    rt_object_driver_status_detail_t(rt_object_driver_status_detail_t const& other)
        : topicbase_t(other)
        , packetTX(other.packetTX)
        , packetRX(other.packetRX)
    {
    }

    QString accessPortError;
    QString accessPortClose;
    QString accessPortTeminate;
    QString busDisconnected;
    QString deviceNotFound;
    int interfaceId = 0;
    int packetTX = 0;
    int packetRX = 0;
};

} // namespace drivers
} // namespace objects
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_DRIVERS_RT_OBJECT_DRIVER_STATUS_DETAIL_T_H
