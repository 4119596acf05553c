#include "database/realtime/objects/system/rt_object_url_t.h"

namespace database {
namespace realtime {
namespace objects {

rt_object_url_t::rt_object_url_t(QObject* parent)
    : topicbase_t(parent)
{
}

rt_object_url_t::rt_object_url_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
}

rt_object_url_t::rt_object_url_t(rt_object_url_t const& other)
    : topicbase_t(other)
{
    copyValues(&other);
}

} // namespace objects
} // namespace realtime
} // namespace database
