#include "database/realtime/objects/rt_object_hydro_t.h"

#include "database/realtime/rt_request.h"

namespace database {
namespace realtime {
namespace objects {

rt_object_hydro_t::rt_object_hydro_t(QObject* parent)
    : topicbase_t(parent)
{
}

rt_object_hydro_t::rt_object_hydro_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
}

void rt_object_hydro_t::setActual(float value)
{
    assign(actual, value, [this] { Q_EMIT actual_Changed(actual); });
}

void rt_object_hydro_t::setSetpoint(float value)
{
    assign(set, value, [this] { Q_EMIT setpoint_Changed(set); });
}

void rt_object_hydro_t::setSetpointCalculate(float value)
{
    assign(set_calc, value, [this] { Q_EMIT setpointCal_Changed(set_calc); });
}

void rt_object_hydro_t::setOperationMode(int value)
{
    assign(mode, value, [this] { Q_EMIT mode_Changed(mode); });
}

void rt_object_hydro_t::setOutput(float value)
{
    assign(output, value, [this] { Q_EMIT outputChanged(output); });
}

void rt_object_hydro_t::setError(int value)
{
    assign(error, value, [this] { Q_EMIT errorChanged(error); });
}

void rt_object_hydro_t::setFan(int value)
{
    assign(fan, value, [this] { Q_EMIT fan_Changed(fan); });
}

void rt_object_hydro_t::setForceFan(int value)
{
    assign(forceFan, value, [this] { Q_EMIT forceFan_Changed(forceFan); });
}

void rt_object_hydro_t::update(rt_object_hydro_t const* other, bool _notify)
{
    rt_object_hydro_t const defaults;
    copyValues(other ? other : &defaults);
    publishSelfIf(_notify);
}

void rt_object_hydro_t::requestSetOperationMode(int value)
{
    requestField(this, QStringLiteral("mode"), value);
}

void rt_object_hydro_t::requestSetFan(int value)
{
    requestField(this, QStringLiteral("fan"), value);
}

void rt_object_hydro_t::requestSetFanForce(int value)
{
    requestField(this, QStringLiteral("forceFan"), value);
}

void rt_object_hydro_t::requestSetSetPoint(float const& value)
{
    requestField(this, QStringLiteral("setpoint"), value);
}

} // namespace objects
} // namespace realtime
} // namespace database
