#include "database/realtime/dbs/rt_drivers_t.h"

#include <QJsonArray>

#include "database/base/literals.h"
#include "database/realtime/rt_request.h"
#include "platform/logs/classlogs.h"

namespace database {
namespace realtime {
namespace dbs {

using objects::drivers::rt_drivers_baos_t;
using objects::drivers::rt_drivers_internal_t;
using objects::drivers::rt_drivers_knx_t;

namespace {

QString const key_internal = QStringLiteral("driver_internal");
QString const key_knx = QStringLiteral("driver_knx");
QString const key_baos = QStringLiteral("driver_baos");
QString const key_knx_mode = QStringLiteral("knx_mode");

template<class T>
T* copyOf(T const* object)
{
    return object ? new T(*object) : nullptr;
}

} // namespace

rt_drivers_t::rt_drivers_t(QObject* parent)
    : topicbase_t(literals::key_drivers, parent)
{
    internal = new rt_drivers_internal_t(driverTopic(key_internal), this);
    knx = new rt_drivers_knx_t(driverTopic(key_knx), this);
    baos = new rt_drivers_baos_t(driverTopic(key_baos), this);
}

rt_drivers_t::rt_drivers_t(rt_drivers_t const& other)
    : topicbase_t(other)
    , internal(new rt_drivers_internal_t(*other.internal))
    , knx(new rt_drivers_knx_t(*other.knx))
    , baos(new rt_drivers_baos_t(*other.baos))
    , updated(other.updated)
    , knx_mode(other.knx_mode)
{
    internal->setParent(this);
    knx->setParent(this);
    baos->setParent(this);
}

QString rt_drivers_t::driverTopic(QString const& key) const
{
    return topic + QLatin1Char('/') + key;
}

void rt_drivers_t::setInternal(rt_drivers_internal_t* value)
{
    if (placeChild(internal, value, driverTopic(key_internal), receiver))
        Q_EMIT driver_internalChanged(internal);
}

void rt_drivers_t::setKnx(rt_drivers_knx_t* value)
{
    if (placeChild(knx, value, driverTopic(key_knx), receiver))
        Q_EMIT driver_knxChanged(knx);
}

void rt_drivers_t::setBaos(rt_drivers_baos_t* value)
{
    if (placeChild(baos, value, driverTopic(key_baos), receiver))
        Q_EMIT driver_baosChanged(baos);
}

void rt_drivers_t::requestSetKnxMode(persistent::definition::ps_knx_mode_t const& mode)
{
    if (!knx_mode.contains(mode.ToString())) {
        CLASSLOGS_LOG(QStringLiteral("Not possible change knx mode ... not compatible ... ") + mode.ToString(),
                      ::utility::logs::error, QStringLiteral("requestSetKnxMode"));
        return;
    }
    requestSuffix(this, QLatin1Char('/') + key_knx_mode, QJsonObject{{QStringLiteral("mode"), mode.ToString()}});
}

void rt_drivers_t::update_internal(rt_drivers_internal_t const* object, bool _notify)
{
    setInternal(copyOf(object));
    if (_notify)
        internal->send_update();
}

void rt_drivers_t::update_knx(rt_drivers_knx_t const* object, bool _notify)
{
    setKnx(copyOf(object));
    if (_notify)
        knx->send_update();
}

void rt_drivers_t::update_baos(rt_drivers_baos_t const* object, bool _notify)
{
    setBaos(copyOf(object));
    if (_notify)
        baos->send_update();
}

void rt_drivers_t::update_knxmode(QList<QString> const& modes, bool _notify)
{
    assign(knx_mode, QStringList(modes), [this] { Q_EMIT knx_modeChanged(knx_mode); });
    if (_notify)
        send_update_knx_mode();
}

void rt_drivers_t::update(rt_drivers_t* other, bool _notify)
{
    if (!other) {
        refuseNull();
        return;
    }
    other->setTopic(topic);
    update_internal(other->internal, false);
    update_knx(other->knx, false);
    update_baos(other->baos, false);
    if (_notify)
        send_update();
}

void rt_drivers_t::send_update_knx_mode()
{
    publishField(key_knx_mode, QJsonArray::fromStringList(knx_mode));
}

void rt_drivers_t::initRequestSignals(QObject* _receiver, bool connect)
{
    if (!_receiver)
        return;
    receiver = _receiver;
    connectRequestSignals(_receiver, connect);
    wireChild(internal, driverTopic(key_internal), _receiver, connect);
    wireChild(knx, driverTopic(key_knx), _receiver, connect);
    wireChild(baos, driverTopic(key_baos), _receiver, connect);
}

bool rt_drivers_t::operator==(rt_drivers_t const& other) const
{
    return internal == other.internal && knx == other.knx && baos == other.baos && updated == other.updated
        && knx_mode == other.knx_mode;
}

} // namespace dbs
} // namespace realtime
} // namespace database
