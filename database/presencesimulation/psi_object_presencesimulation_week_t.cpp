#include "database/presencesimulation/psi_object_presencesimulation_week_t.h"

namespace database {
namespace presencesimulation {

psi_object_presencesimulation_week_t::psi_object_presencesimulation_week_t(QObject* parent)
    : topicbase_t(parent)
{
}

psi_object_presencesimulation_week_t::psi_object_presencesimulation_week_t(
    psi_object_presencesimulation_week_t const& other)
    : topicbase_t(other)
{
    days.copyFrom(other.days);
}

bool psi_object_presencesimulation_week_t::isValid(int day)
{
    return unsigned(day) < 8u;
}

void psi_object_presencesimulation_week_t::setDays(presencesimulation_days_map const& map)
{
    days.adopt(map);
    Q_EMIT daysChanged(days.get());
}

void psi_object_presencesimulation_week_t::retopic(QString const& _topic)
{
    setTopic(_topic);
    days.retopic();
}

} // namespace presencesimulation
} // namespace database
