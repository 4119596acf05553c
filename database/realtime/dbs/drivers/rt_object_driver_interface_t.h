#ifndef DATABASE_REALTIME_DBS_DRIVERS_RT_OBJECT_DRIVER_INTERFACE_T_H
#define DATABASE_REALTIME_DBS_DRIVERS_RT_OBJECT_DRIVER_INTERFACE_T_H

#include <QJsonObject>
#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"
#include "database/realtime/rt_request.h"

namespace database {
namespace realtime {
namespace objects {
namespace drivers {

/**
 * What the KNX and the BAOS interfaces that a bus scan finds share: their
 * index, kind, bus address, IP address and whether they are secure. Derived
 * declares the properties, in its own JSON order, and their signals; the
 * fields live here so that both read them the same way.
 */
template<class Derived>
class rt_object_driver_interface_t : public base::topicbase_t
{
public:
    int getId() const { return id; }
    QString getType() const { return type; }
    QString getAddress() const { return address; }
    QString getIp() const { return ip; }
    bool getIsSecure() const { return isSecure; }

    /// Takes every field of other; null is refused with "Not permitted nullptr".
    void update(Derived const* other, bool _notify) { updateValues(other, _notify); }
    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }

    /// Same values; the topic doesn't count.
    bool operator==(Derived const& other) const { return sameValues(&other); }

protected:
    using topicbase_t::topicbase_t;

    rt_object_driver_interface_t(rt_object_driver_interface_t const& other)
        : topicbase_t(other)
    {
    }

    /// Asks the driver to give the interface a new bus address.
    void requestAddress(QString const& value)
    {
        requestSuffix(this, QStringLiteral("/address"), QJsonObject{{QStringLiteral("newvalue"), value}});
    }

    int id = 0;
    QString type;
    QString address;
    QString ip;
    bool isSecure = false;
};

} // namespace drivers
} // namespace objects
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_DRIVERS_RT_OBJECT_DRIVER_INTERFACE_T_H
