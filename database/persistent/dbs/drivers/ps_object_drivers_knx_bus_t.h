#ifndef DATABASE_PERSISTENT_DBS_DRIVERS_PS_OBJECT_DRIVERS_KNX_BUS_T_H
#define DATABASE_PERSISTENT_DBS_DRIVERS_PS_OBJECT_DRIVERS_KNX_BUS_T_H

#include <QJsonValue>
#include <QMap>
#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"
#include "database/definition/knx/type_interfaces_knx_t.h"
#include "database/persistent/dbs/drivers/ps_object_driver_knx_bus_detail_t.h"
#include "database/persistent/ps_request.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {
namespace drivers {

/**
 * What every bus of a bus driver has: a switch, a loop interval, the kind of
 * interface and the interface's parameters. The KNX and the BAOS bus derive
 * from it and only declare their properties and signals, which moc has to see
 * in the class itself; Derived is that class, Detail its parameter record and
 * Type the string type of its interfaces.
 *
 * params is a child that is never replaced by an update, so whoever holds it
 * keeps a valid pointer.
 */
template<class Derived, class Detail, class Type>
class ps_object_drivers_bus_base_t : public base::topicbase_t
{
public:
    bool getEnabled() const { return enabled; }
    int getInitLoopInterval() const { return init_loop_interval; }
    QString getType() const { return type; }
    Detail* getParams() const { return params; }

    void setEnabled(bool value)
    {
        assign(enabled, value, [this] { Q_EMIT self()->enabledChanged(enabled); });
    }
    void setInitLoopInterval(int value)
    {
        assign(init_loop_interval, value, [this] { Q_EMIT self()->init_loop_intervalChanged(init_loop_interval); });
    }
    void setType(QString const& value)
    {
        assign(type, value, [this] { Q_EMIT self()->typeChanged(type); });
    }
    void setType(Type const& value) { setType(value.ToString()); }
    /// Adopts value in place of the present parameters, which are deleted; null
    /// stands for default parameters. Meant for deserialization, before wiring.
    void setParams(Detail* value)
    {
        if (value == params && value)
            return;
        Detail* old = params;
        params = value ? value : new Detail(this);
        params->setParent(this);
        params->setTopic(paramsTopic());
        delete old;
        Q_EMIT self()->paramsChanged(params);
    }

    /// Also moves the parameters along, to the new topic and "/params".
    void setTopic(QString const& value)
    {
        topicbase_t::setTopic(value);
        params->setTopic(paramsTopic());
    }

    void requestSetEnabled(bool value) { requestField(this, QStringLiteral("enabled"), value); }
    void requestSetInitLoopInterval(int value) { requestField(this, QStringLiteral("init_loop_interval"), value); }
    void requestSetType(Type const& value) { requestField(this, QStringLiteral("type"), value.ToString()); }
    void requestSetParams(Detail* value)
    {
        if (value)
            value->setTopic(paramsTopic());
        requestField(this, QStringLiteral("params"), value ? QJsonValue(value->toJson()) : QJsonValue());
    }

    /// Takes the values of other and the content of its parameters into the
    /// present ones; other is first given this bus's topic.
    void update(Derived* other, bool _notify)
    {
        if (!other) {
            refuseNull();
            return;
        }
        other->setTopic(topic);
        copyValues(other);
        params->update(other->getParams(), false);
        if (_notify)
            send_update();
    }

    void send_update() { publishSelf(); }

    void initRequestSignals(QObject* receiver, bool connect)
    {
        connectRequestSignals(receiver, connect);
        params->setTopic(paramsTopic());
        params->initRequestSignals(receiver, connect);
    }

protected:
    ps_object_drivers_bus_base_t(QString const& topic, QObject* parent)
        : topicbase_t(topic, parent)
        , params(new Detail(paramsTopic(), this))
    {
    }

    ps_object_drivers_bus_base_t(ps_object_drivers_bus_base_t const& other)
        : topicbase_t(other)
        , enabled(other.enabled)
        , init_loop_interval(other.init_loop_interval)
        , type(other.type)
        , params(new Detail(*other.params))
    {
        params->setParent(this);
    }

private:
    Derived* self() { return static_cast<Derived*>(this); }
    QString paramsTopic() const { return topic + QStringLiteral("/params"); }

    bool enabled = false;
    int init_loop_interval = 0;
    QString type = Type::USB.ToString();
    Detail* params = nullptr;
};

/// One KNX bus of the KNX driver, by its key in the driver's "bus" map.
class DATABASE_EXPORT ps_object_drivers_knx_bus_t
    : public ps_object_drivers_bus_base_t<ps_object_drivers_knx_bus_t, ps_object_driver_knx_bus_detail_t,
                                          ::database::definition::knx::type_interfaces_knx_t>
{
    Q_OBJECT
    Q_PROPERTY(bool enabled READ getEnabled WRITE setEnabled NOTIFY enabledChanged)
    Q_PROPERTY(
        int init_loop_interval READ getInitLoopInterval WRITE setInitLoopInterval NOTIFY init_loop_intervalChanged)
    Q_PROPERTY(QString type READ getType WRITE setType NOTIFY typeChanged)
    Q_PROPERTY(database::persistent::objects::drivers::ps_object_driver_knx_bus_detail_t* params READ getParams WRITE
                   setParams NOTIFY paramsChanged)

public:
    Q_INVOKABLE explicit ps_object_drivers_knx_bus_t(QObject* parent = nullptr);
    ps_object_drivers_knx_bus_t(QString const& topic, QObject* parent);
    /// Deep: the parameters are copied too; no parent.
    ps_object_drivers_knx_bus_t(ps_object_drivers_knx_bus_t const& other);

Q_SIGNALS:
    void enabledChanged(bool);
    void init_loop_intervalChanged(int);
    void typeChanged(QString);
    void paramsChanged(database::persistent::objects::drivers::ps_object_driver_knx_bus_detail_t*);
};

} // namespace drivers
} // namespace objects

typedef QMap<QString, objects::drivers::ps_object_drivers_knx_bus_t*> ps_drivers_knx_bus_map;

} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_DRIVERS_PS_OBJECT_DRIVERS_KNX_BUS_T_H
