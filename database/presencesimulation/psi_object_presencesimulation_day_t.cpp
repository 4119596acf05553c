#include "database/presencesimulation/psi_object_presencesimulation_day_t.h"

namespace database {
namespace presencesimulation {

psi_object_presencesimulation_day_t::psi_object_presencesimulation_day_t(QObject* parent)
    : topicbase_t(parent)
{
}

psi_object_presencesimulation_day_t::psi_object_presencesimulation_day_t(
    psi_object_presencesimulation_day_t const& other)
    : topicbase_t(other)
{
    hours.copyFrom(other.hours);
}

bool psi_object_presencesimulation_day_t::isValid(int hour)
{
    return unsigned(hour) < 25u;
}

void psi_object_presencesimulation_day_t::setHours(presencesimulation_hour_map const& map)
{
    hours.adopt(map);
    Q_EMIT hoursChanged(hours.get());
}

void psi_object_presencesimulation_day_t::retopic(QString const& _topic)
{
    setTopic(_topic);
    hours.retopic();
}

} // namespace presencesimulation
} // namespace database
