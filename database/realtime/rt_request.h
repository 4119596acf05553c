#ifndef DATABASE_REALTIME_RT_REQUEST_H
#define DATABASE_REALTIME_RT_REQUEST_H

#include <QJsonValue>
#include <QString>

#include "database/base/literals.h"
#include "database/base/topicbase_t.h"

/// Requests of the realtime models: they only build a packet and raise it.
namespace database {
namespace realtime {

/// Asks that one field of an object change: "request/DB/realtime/", the
/// object's topic and the field's name, with the bare value as payload.
inline void requestField(base::topicbase_t* object, QString const& key, QJsonValue const& value)
{
    Q_EMIT object->onRequest(base::topicbase_t::getPacketRequest(
        literals::request_realtime + QLatin1Char('/') + object->getTopic() + QLatin1Char('/') + key, value));
}

} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_RT_REQUEST_H
