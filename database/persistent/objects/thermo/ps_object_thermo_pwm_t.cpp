#include "database/persistent/objects/thermo/ps_object_thermo_pwm_t.h"

namespace database {
namespace persistent {
namespace objects {

ps_object_thermo_pwm_t::ps_object_thermo_pwm_t(QObject* parent)
    : ps_object_thermo_base_t(parent)
{
}

ps_object_thermo_pwm_t::ps_object_thermo_pwm_t(QString const& topic, QObject* parent)
    : ps_object_thermo_base_t(topic, parent)
{
}

ps_object_thermo_pwm_t::ps_object_thermo_pwm_t(ps_object_thermo_pwm_t const& other)
    : ps_object_thermo_base_t(other)
    , heat_sys(other.heat_sys)
    , cool_sys(other.cool_sys)
    , calc_time(other.calc_time)
{
}

int ps_object_thermo_pwm_t::getType() const
{
    return THERMO_PWM;
}

void ps_object_thermo_pwm_t::setHeatSys(QString const& value)
{
    assign(heat_sys, value, [this] { Q_EMIT heat_sysChanged(heat_sys); });
}

void ps_object_thermo_pwm_t::setCoolSys(QString const& value)
{
    assign(cool_sys, value, [this] { Q_EMIT cool_sysChanged(cool_sys); });
}

void ps_object_thermo_pwm_t::setCalcTime(int value)
{
    assign(calc_time, value, [this] { Q_EMIT calc_timeChanged(calc_time); });
}

void ps_object_thermo_pwm_t::update(ps_object_thermo_pwm_t const* other, bool _notify)
{
    ps_object_thermo_base_t::update(other, false);
    if (!other)
        return;
    setHeatSys(other->heat_sys);
    setCoolSys(other->cool_sys);
    setCalcTime(other->calc_time);
    if (_notify)
        send_update();
}

bool ps_object_thermo_pwm_t::compare(ps_object_thermo_pwm_t const* other) const
{
    return ps_object_thermo_base_t::compare(other) && heat_sys == other->heat_sys && cool_sys == other->cool_sys
        && calc_time == other->calc_time;
}

} // namespace objects
} // namespace persistent
} // namespace database
