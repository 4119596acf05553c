#ifndef DATABASE_PERSISTENT_PS_REQUEST_H
#define DATABASE_PERSISTENT_PS_REQUEST_H

#include <QJsonValue>
#include <QString>

#include "database/base/literals.h"
#include "database/base/topicbase_t.h"

/// Requests of the persistent models: they only build a packet and raise it.
namespace database {
namespace persistent {

/// "request/DB/persistent/" followed by a relative topic.
inline QString requestTopic(QString const& relative)
{
    return literals::request_persistent + QLatin1Char('/') + relative;
}

/// Asks that one field of an object change: the object's topic and the field's
/// JSON key, with the bare value as payload.
inline void requestField(base::topicbase_t* object, QString const& key, QJsonValue const& value)
{
    Q_EMIT object->onRequest(base::topicbase_t::getPacketRequest(
        requestTopic(object->getTopic() + QLatin1Char('/') + key), value));
}

/// Asks that the thing at a relative topic become payload.
inline void requestAt(base::topicbase_t* emitter, QString const& relative, QJsonValue const& payload)
{
    Q_EMIT emitter->onRequest(base::topicbase_t::getPacketRequest(requestTopic(relative), payload));
}

} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_PS_REQUEST_H
