#ifndef DATABASE_PERSISTENT_DBS_DRIVERS_PS_DRIVERS_KNX_T_H
#define DATABASE_PERSISTENT_DBS_DRIVERS_PS_DRIVERS_KNX_T_H

#include <QJsonObject>
#include <QObject>
#include <QString>
#include <QStringList>

#include "database/base/topicbase_t.h"
#include "database/persistent/dbs/drivers/ps_object_drivers_knx_bus_t.h"
#include "database/persistent/dbs/ps_object_map_t.h"
#include "database/persistent/ps_request.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {
namespace drivers {

/**
 * What the KNX and the BAOS driver share: their buses by id under the key
 * "bus", and a switch. The two drivers derive from it and only declare their
 * properties and signals, which moc has to see in the class itself; Derived is
 * that class and Bus its bus class.
 */
template<class Derived, class Bus>
class ps_drivers_bus_owner_t : public base::topicbase_t
{
public:
    using bus_map = QMap<QString, Bus*>;

    bus_map getBus() const { return buses.get(); }
    /// Takes the map's pointers as they are.
    void setBus(bus_map const& map)
    {
        buses.adopt(map);
        Q_EMIT self()->busChanged(buses.get());
    }
    bool getEnabled() const { return enabled; }
    void setEnabled(bool value)
    {
        assign(enabled, value, [this] { Q_EMIT self()->enabledChanged(enabled); });
    }

    /// Also moves every bus along, to the new topic, "/bus/" and its id.
    void setTopic(QString const& value)
    {
        topicbase_t::setTopic(value);
        buses.retopic();
    }

    void requestSetEnabled(bool value) { requestField(this, QStringLiteral("enabled"), value); }
    void update_enabled(bool value, bool _notify)
    {
        setEnabled(value);
        if (_notify)
            // The routers have a change route of its own for the flag.
            this->publishField(QStringLiteral("enabled"), value);
    }

    /// Never null; see ps_object_map_t::list.
    Bus* list_bus(QString const& id) { return buses.list(id); }
    QString key_bus() const { return buses.key(); }
    QJsonObject getJsonObjectBus() const { return dbs::ps_object_map_t<Bus>::toJson(buses.get()).toObject(); }
    void requestSetBus(QString const& id, Bus* bus) { buses.requestSet(id, bus); }

    /// The ids by which items name a bus of this driver: topic, "/", bus id.
    QStringList getDriverIds() const
    {
        QStringList ids;
        for (QString const& id : buses.get().keys())
            ids.append(topic + QLatin1Char('/') + id);
        return ids;
    }

    void send_update_driver(QString const& id) { buses.sendUpdateObject(id); }
    /// Publishes the whole driver, switch and buses, on its own topic.
    void send_update() { publishSelf(); }

    void initRequestSignals(QObject* receiver, bool connect) { buses.initRequestSignals(receiver, connect); }

protected:
    ps_drivers_bus_owner_t(QString const& topic, QObject* parent)
        : topicbase_t(topic, parent)
    {
        buses.setMissLog(QStringLiteral("New key create app : "));
    }

    ps_drivers_bus_owner_t(ps_drivers_bus_owner_t const& other)
        : topicbase_t(other)
        , enabled(other.enabled)
    {
        buses.setMissLog(QStringLiteral("New key create app : "));
        buses.copyFrom(other.buses);
    }

    /// The body of update_driver and update_bus: see ps_object_map_t::update.
    void updateBus(QString const& id, Bus* bus, bool _notify) { buses.update(id, bus, _notify); }

private:
    Derived* self() { return static_cast<Derived*>(this); }

    dbs::ps_object_map_t<Bus> buses{this, QStringLiteral("bus")};
    bool enabled = false;
};

/// The KNX driver: its buses and whether it is in use.
class DATABASE_EXPORT ps_drivers_knx_t
    : public ps_drivers_bus_owner_t<ps_drivers_knx_t, ps_object_drivers_knx_bus_t>
{
    Q_OBJECT
    Q_PROPERTY(database::persistent::ps_drivers_knx_bus_map bus READ getBus WRITE setBus NOTIFY busChanged)
    Q_PROPERTY(bool enabled READ getEnabled WRITE setEnabled NOTIFY enabledChanged)

public:
    Q_INVOKABLE explicit ps_drivers_knx_t(QObject* parent = nullptr);
    ps_drivers_knx_t(QString const& topic, QObject* parent);
    /// Deep: every bus copied, no parent, no receiver.
    ps_drivers_knx_t(ps_drivers_knx_t const& other);

    /// Content into the bus of that id, a copy for a new id, removal for null.
    void update_driver(QString const& id, ps_object_drivers_knx_bus_t* bus, bool _notify);

Q_SIGNALS:
    void busChanged(database::persistent::ps_drivers_knx_bus_map);
    void enabledChanged(bool);
};

} // namespace drivers
} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_DRIVERS_PS_DRIVERS_KNX_T_H
