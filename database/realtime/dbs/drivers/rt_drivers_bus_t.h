#ifndef DATABASE_REALTIME_DBS_DRIVERS_RT_DRIVERS_BUS_T_H
#define DATABASE_REALTIME_DBS_DRIVERS_RT_DRIVERS_BUS_T_H

#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"
#include "database/persistent/dbs/ps_object_map_t.h"
#include "database/realtime/dbs/rt_object_list_t.h"
#include "database/realtime/rt_request.h"

namespace database {
namespace realtime {
namespace objects {
namespace drivers {

/**
 * What the KNX and the BAOS driver report alike: the interfaces their last
 * scan found, in the order found, and the status of each bus loop by bus key.
 * The two drivers derive from it and only declare their properties and
 * signals (interfacesChanged, statusChanged), which moc has to see in the
 * class itself.
 */
template<class Derived, class Interface, class Status>
class rt_drivers_bus_t : public base::topicbase_t
{
public:
    using interface_list = QList<Interface*>;
    using status_map = QMap<QString, Status*>;

    interface_list getInterfaces() const { return interfaces.get(); }
    /// Null for an index outside the list.
    Interface* getInterfaces(int index) const { return interfaces.at(index); }
    /// Takes the list's pointers as they are.
    void setInterfaces(interface_list const& list)
    {
        interfaces.adopt(list);
        Q_EMIT self()->interfacesChanged(interfaces.get());
    }

    status_map getStatus() const { return status.get(); }
    /// Never null; see ps_object_map_t::list.
    Status* getStatus(QString const& key) { return status.list(key); }
    /// Takes the map's pointers as they are.
    void setStatus(status_map const& map)
    {
        status.adopt(map);
        Q_EMIT self()->statusChanged(status.get());
    }

    /// Also moves the interfaces and the status objects along.
    void setTopic(QString const& value)
    {
        topicbase_t::setTopic(value);
        interfaces.retopic();
        status.retopic();
    }

    void requestSetScanInterfaces() { requestSuffix(this, QStringLiteral("/interfaces/scan")); }

    /// Copies of list's interfaces replace the present ones; published as the
    /// list on the driver's topic and "/interfaces".
    void update_interface(interface_list const& list, bool _notify)
    {
        interfaces.replace(list);
        if (_notify)
            publishField(QStringLiteral("interfaces"), interfaces.toJson());
    }
    /// The whole status map replaced by copies; published with the whole driver.
    void update_status(status_map const& map, bool _notify)
    {
        status.updateAll(map, false,
                         [this](QObject* receiver, bool connect) { self()->initRequestSignals(receiver, connect); });
        if (_notify)
            send_update();
    }
    /// Content into the status of that key, a copy for a new key, removal for null.
    void update_status(QString const& key, Status* object, bool _notify) { status.update(key, object, _notify); }

    void send_update() { publishSelf(); }

    void initRequestSignals(QObject* receiver, bool connect)
    {
        if (!receiver)
            return;
        status.initRequestSignals(receiver, connect);
        interfaces.initRequestSignals(receiver, connect);
    }

    /// Same interface and status objects.
    bool operator==(Derived const& other) const
    {
        return interfaces.get() == other.interfaces.get() && status.get() == other.status.get();
    }

protected:
    rt_drivers_bus_t(QString const& topic, QObject* parent)
        : topicbase_t(topic, parent)
    {
        realtimeMap(status, QStringLiteral("getStatus"));
    }

    /// Deep: every interface and status copied, no parent, no receiver.
    rt_drivers_bus_t(rt_drivers_bus_t const& other)
        : topicbase_t(other)
    {
        realtimeMap(status, QStringLiteral("getStatus"));
        interfaces.copyFrom(other.interfaces);
        status.copyFrom(other.status);
    }

private:
    Derived* self() { return static_cast<Derived*>(this); }

    dbs::rt_object_list_t<Interface> interfaces{this, QStringLiteral("interfaces")};
    persistent::dbs::ps_object_map_t<Status> status{this, QStringLiteral("status")};
};

} // namespace drivers
} // namespace objects
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_DRIVERS_RT_DRIVERS_BUS_T_H
