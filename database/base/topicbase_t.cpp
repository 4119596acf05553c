#include "database/base/topicbase_t.h"

namespace database {
namespace base {

topicbase_t::topicbase_t(QObject* parent)
    : QObject(parent)
{
}

topicbase_t::topicbase_t(QString const& topic, QObject* parent)
    : QObject(parent)
    , topic(topic)
{
}

topicbase_t::topicbase_t(topicbase_t const& other)
    : QObject(nullptr)
    , topic(other.topic)
{
}

QString topicbase_t::getTopic() const
{
    return topic;
}

void topicbase_t::setTopic(QString const& _topic)
{
    topic = _topic;
}

QJsonObject topicbase_t::getPacketUpdated(QString const& _topic, QJsonValue const& payload)
{
    return QJsonObject{{QStringLiteral("topic"), _topic}, {QStringLiteral("payload"), payload}};
}

QJsonObject topicbase_t::getPacketRequest(QString const& _topic, QJsonValue const& payload)
{
    return getPacketUpdated(_topic, payload);
}

} // namespace base
} // namespace database
