#ifndef DATABASE_REALTIME_RT_REQUEST_H
#define DATABASE_REALTIME_RT_REQUEST_H

#include <QJsonObject>
#include <QJsonValue>
#include <QString>

#include "database/base/literals.h"
#include "database/base/topicbase_t.h"

/// Requests of the realtime models: they only build a packet and raise it.
namespace database {
namespace realtime {

/// "request/DB/realtime/" followed by a relative topic.
inline QString requestTopic(QString const& relative)
{
    return literals::request_realtime + QLatin1Char('/') + relative;
}

/// Asks that the thing at the emitter's topic and suffix become payload.
inline void requestSuffix(base::topicbase_t* emitter, QString const& suffix,
                          QJsonValue const& payload = QJsonObject())
{
    Q_EMIT emitter->onRequest(base::topicbase_t::getPacketRequest(requestTopic(emitter->getTopic() + suffix), payload));
}

/// Asks that one field change: the emitter's topic and the field's JSON key,
/// with the bare value as payload.
inline void requestField(base::topicbase_t* emitter, QString const& key, QJsonValue const& value)
{
    requestSuffix(emitter, QLatin1Char('/') + key, value);
}

/// Makes a map of objects speak realtime: its requests go to the realtime
/// database, and a missed look-up logs "New key create app : " and the key
/// under source.
template<class Map>
void realtimeMap(Map& map, QString const& source = QStringLiteral("list"))
{
    map.setRequestBase(literals::request_realtime);
    map.setMissLog(QStringLiteral("New key create app : "), source);
}

} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_RT_REQUEST_H
