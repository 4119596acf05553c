#include "database/realtime/objects/rt_object_thermo_t.h"

#include "database/realtime/rt_request.h"

namespace database {
namespace realtime {
namespace objects {

rt_object_thermo_t::rt_object_thermo_t(QObject* parent)
    : topicbase_t(parent)
{
}

rt_object_thermo_t::rt_object_thermo_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
}

void rt_object_thermo_t::setActualTemp(float value)
{
    assign(actual, value, [this] { Q_EMIT actual_Changed(actual); });
}

void rt_object_thermo_t::setSetpoint(float value)
{
    assign(setpoint, value, [this] { Q_EMIT setpoint_Changed(setpoint); });
}

void rt_object_thermo_t::setSetpointCalculate(float value)
{
    assign(set_calc, value, [this] { Q_EMIT setpointCal_Changed(set_calc); });
}

void rt_object_thermo_t::setSeason(int value)
{
    assign(season, value, [this] { Q_EMIT season_Changed(season); });
}

void rt_object_thermo_t::setOperationMode(int value)
{
    assign(mode, value, [this] { Q_EMIT mode_Changed(mode); });
}

void rt_object_thermo_t::setFan(int value)
{
    assign(fan, value, [this] { Q_EMIT fan_Changed(fan); });
}

void rt_object_thermo_t::setForceFan(int value)
{
    assign(forceFan, value, [this] { Q_EMIT forceFan_Changed(forceFan); });
}

void rt_object_thermo_t::setOutputTemp(float value)
{
    assign(output, value, [this] { Q_EMIT outputChanged(output); });
}

void rt_object_thermo_t::setOutputStTemp(float value)
{
    assign(out_st, value, [this] { Q_EMIT out_stChanged(out_st); });
}

void rt_object_thermo_t::setError(int value)
{
    assign(error, value, [this] { Q_EMIT errorChanged(error); });
}

void rt_object_thermo_t::setBattery(bool value)
{
    assign(battery, value, [this] { Q_EMIT batteryChanged(battery); });
}

void rt_object_thermo_t::update(rt_object_thermo_t const* other, bool _notify)
{
    if (other) {
        copyValues(other, all_values);
    } else {
        // A cleared room control is switched to mode 1, unlike a new one.
        rt_object_thermo_t cleared;
        cleared.mode = mode_cleared;
        copyValues(&cleared, all_values);
    }
    publishSelfIf(_notify);
}

void rt_object_thermo_t::requestSetSeason(int value)
{
    requestField(this, QStringLiteral("season"), value);
}

void rt_object_thermo_t::requestSetOperationMode(int value)
{
    requestField(this, QStringLiteral("mode"), value);
}

void rt_object_thermo_t::requestSetFan(int value)
{
    requestField(this, QStringLiteral("fan"), value);
}

void rt_object_thermo_t::requestSetFanForce(int value)
{
    requestField(this, QStringLiteral("forceFan"), value);
}

void rt_object_thermo_t::requestSetSetPoint(float const& value)
{
    requestField(this, QStringLiteral("setpoint"), value);
}

} // namespace objects
} // namespace realtime
} // namespace database
