#include "database/presencesimulation/psi_object_presencesimulation_hour_t.h"

namespace database {
namespace presencesimulation {

psi_object_presencesimulation_hour_t::psi_object_presencesimulation_hour_t(QObject* parent)
    : topicbase_t(parent)
{
}

psi_object_presencesimulation_hour_t::psi_object_presencesimulation_hour_t(
    psi_object_presencesimulation_hour_t const& other)
    : topicbase_t(other)
{
    minutes.copyFrom(other.minutes);
}

bool psi_object_presencesimulation_hour_t::isValid(int minute)
{
    return unsigned(minute) < 60u;
}

void psi_object_presencesimulation_hour_t::setMinutes(presencesimulation_minute_map const& map)
{
    minutes.adopt(map);
    Q_EMIT minutesChanged(minutes.get());
}

int psi_object_presencesimulation_hour_t::add(int minute, QString const& item, QString const& value)
{
    if (!isValid(minute))
        return 0;
    psi_object_presencesimulation_minute_t* child = getMinute(minute);
    if (!child) {
        child = new psi_object_presencesimulation_minute_t;
        add(minute, child);
    }
    child->add(item, value);
    return 1;
}

void psi_object_presencesimulation_hour_t::retopic(QString const& _topic)
{
    setTopic(_topic);
    minutes.retopic();
}

} // namespace presencesimulation
} // namespace database
