#include "database/persistent/dbs/ps_drivers_t.h"

#include "database/base/literals.h"
#include "database/default/persistent/ps_default_t.h"
#include "database/persistent/define/ps_knx_mode_t.h"
#include "database/persistent/ps_request.h"

namespace database {
namespace persistent {
namespace dbs {

using objects::drivers::ps_drivers_baos_t;
using objects::drivers::ps_drivers_clock_t;
using objects::drivers::ps_drivers_internal_t;
using objects::drivers::ps_drivers_knx_t;

namespace {

QString const key_internal = QStringLiteral("driver_internal");
QString const key_knx = QStringLiteral("driver_knx");
QString const key_baos = QStringLiteral("driver_baos");
QString const key_clock = QStringLiteral("driver_clock");

// The defaults may not exist yet (a section built before the façade, or in a test).
QString defaultKnxMode()
{
    ps_default_t const* defaults = ps_default_t::getInstance();
    return defaults ? defaults->getDefaultKnxMode().ToString() : definition::ps_knx_mode_t().ToString();
}

} // namespace

ps_drivers_t::ps_drivers_t(QObject* parent)
    : topicbase_t(literals::key_drivers, parent)
    , internal(new ps_drivers_internal_t(driverTopic(key_internal), this))
    , knx(new ps_drivers_knx_t(driverTopic(key_knx), this))
    , baos(new ps_drivers_baos_t(driverTopic(key_baos), this))
    , clock(new ps_drivers_clock_t(driverTopic(key_clock), this))
    , knx_mode(defaultKnxMode())
{
}

ps_drivers_t::ps_drivers_t(ps_drivers_t const& other)
    : topicbase_t(other)
    , internal(new ps_drivers_internal_t(*other.internal))
    , knx(new ps_drivers_knx_t(*other.knx))
    , baos(new ps_drivers_baos_t(*other.baos))
    , clock(new ps_drivers_clock_t(*other.clock))
    , knx_mode(other.knx_mode)
{
    internal->setParent(this);
    knx->setParent(this);
    baos->setParent(this);
    clock->setParent(this);
}

QString ps_drivers_t::driverTopic(QString const& key) const
{
    return topic + QLatin1Char('/') + key;
}

template<class T>
bool ps_drivers_t::place(T*& slot, T* value, QString const& key)
{
    return placeChild(slot, value, driverTopic(key), receiver);
}

void ps_drivers_t::setKnx(ps_drivers_knx_t* value)
{
    if (place(knx, value, key_knx))
        Q_EMIT driver_knxChanged(knx);
}

void ps_drivers_t::setBaos(ps_drivers_baos_t* value)
{
    if (place(baos, value, key_baos))
        Q_EMIT driver_baosChanged(baos);
}

void ps_drivers_t::setClock(ps_drivers_clock_t* value)
{
    if (place(clock, value, key_clock))
        Q_EMIT driver_clockChanged(clock);
}

void ps_drivers_t::setInternal(ps_drivers_internal_t* value)
{
    if (place(internal, value, key_internal))
        Q_EMIT driver_internalChanged(internal);
}

void ps_drivers_t::setKnxMode(QString const& value)
{
    assign(knx_mode, value, [this] { Q_EMIT knx_modeChanged(knx_mode); });
}

QStringList ps_drivers_t::getDriverId() const
{
    return knx->getDriverIds() + baos->getDriverIds() + clock->getDriverIds() + internal->getDriverIds();
}

template<class T>
void ps_drivers_t::requestDriver(T* object, QString const& key)
{
    QJsonValue payload = QJsonObject();
    if (object) {
        object->setTopic(driverTopic(key));
        payload = object->toJson();
    }
    requestAt(this, driverTopic(key), payload);
}

void ps_drivers_t::requestSetKnx(ps_drivers_knx_t* object)
{
    requestDriver(object, key_knx);
}

void ps_drivers_t::requestSetBaos(ps_drivers_baos_t* object)
{
    requestDriver(object, key_baos);
}

void ps_drivers_t::requestSetInternal(ps_drivers_internal_t* object)
{
    requestDriver(object, key_internal);
}

void ps_drivers_t::requestSetClock(ps_drivers_clock_t* object)
{
    requestDriver(object, key_clock);
}

void ps_drivers_t::update_knx(ps_drivers_knx_t* object, bool _notify)
{
    if (object)
        object->setTopic(driverTopic(key_knx));
    setKnx(object ? new ps_drivers_knx_t(*object) : nullptr);
    if (_notify)
        knx->send_update();
}

void ps_drivers_t::update_baos(ps_drivers_baos_t* object, bool _notify)
{
    if (object)
        object->setTopic(driverTopic(key_baos));
    setBaos(object ? new ps_drivers_baos_t(*object) : nullptr);
    if (_notify)
        baos->send_update();
}

void ps_drivers_t::update_internal(ps_drivers_internal_t* object, bool _notify)
{
    if (object)
        object->setTopic(driverTopic(key_internal));
    setInternal(object ? new ps_drivers_internal_t(*object) : nullptr);
    if (_notify)
        internal->send_update();
}

void ps_drivers_t::update_clock(ps_drivers_clock_t* object, bool _notify)
{
    if (object)
        object->setTopic(clock->getTopic());
    clock->update(object, _notify);
}

void ps_drivers_t::update(ps_drivers_t* other)
{
    if (!other) {
        refuseNull();
        return;
    }
    update_internal(other->internal, false);
    update_knx(other->knx, false);
    update_baos(other->baos, false);
    update_clock(other->clock, false);
    setKnxMode(other->knx_mode);
}

void ps_drivers_t::send_update()
{
    publishSelf();
}

void ps_drivers_t::initRequestSignals(QObject* _receiver, bool connect)
{
    if (!_receiver)
        return;
    receiver = _receiver;
    connectRequestSignals(_receiver, connect);
    wireChild(internal, driverTopic(key_internal), _receiver, connect);
    wireChild(knx, driverTopic(key_knx), _receiver, connect);
    wireChild(baos, driverTopic(key_baos), _receiver, connect);
    wireChild(clock, driverTopic(key_clock), _receiver, connect);
}

bool ps_drivers_t::operator==(ps_drivers_t const& other) const
{
    return internal == other.internal && knx == other.knx && baos == other.baos && clock == other.clock
        && knx_mode == other.knx_mode;
}

} // namespace dbs
} // namespace persistent
} // namespace database
