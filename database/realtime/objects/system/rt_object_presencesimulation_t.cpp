#include "database/realtime/objects/system/rt_object_presencesimulation_t.h"

namespace database {
namespace realtime {
namespace objects {

rt_object_presencesimulation_t::rt_object_presencesimulation_t(QObject* parent)
    : topicbase_t(parent)
{
}

rt_object_presencesimulation_t::rt_object_presencesimulation_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
}

rt_object_presencesimulation_t::rt_object_presencesimulation_t(QString const& datetime, QString const& item,
                                                               QString const& value, QObject* parent)
    : topicbase_t(parent)
    , datetime(datetime)
    , item(item)
    , value(value)
{
}

rt_object_presencesimulation_t::rt_object_presencesimulation_t(rt_object_presencesimulation_t const& other)
    : topicbase_t(other)
{
    copyValues(&other);
}

} // namespace objects
} // namespace realtime
} // namespace database
