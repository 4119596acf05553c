#include "database/persistent/objects/thermo/ps_object_thermo_pi_t.h"

namespace database {
namespace persistent {
namespace objects {

ps_object_thermo_pi_t::ps_object_thermo_pi_t(QObject* parent)
    : ps_object_thermo_pwm_t(parent)
{
}

ps_object_thermo_pi_t::ps_object_thermo_pi_t(QString const& topic, QObject* parent)
    : ps_object_thermo_pwm_t(topic, parent)
{
}

ps_object_thermo_pi_t::ps_object_thermo_pi_t(ps_object_thermo_pi_t const& other)
    : ps_object_thermo_pwm_t(other)
{
}

} // namespace objects
} // namespace persistent
} // namespace database
