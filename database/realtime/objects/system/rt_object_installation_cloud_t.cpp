#include "database/realtime/objects/system/rt_object_installation_cloud_t.h"

#include "database/realtime/rt_request.h"

namespace database {
namespace realtime {
namespace objects {

rt_object_installation_cloud_t::rt_object_installation_cloud_t(QObject* parent)
    : topicbase_t(parent)
{
}

rt_object_installation_cloud_t::rt_object_installation_cloud_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
}

rt_object_installation_cloud_t::rt_object_installation_cloud_t(rt_object_installation_cloud_t const& other)
    : topicbase_t(other)
{
    copyValues(&other);
}

void rt_object_installation_cloud_t::requestSetCloudAPIToken(QString const& value)
{
    requestField(this, QStringLiteral("cloud_api_token"), value);
}

} // namespace objects
} // namespace realtime
} // namespace database
