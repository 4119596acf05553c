#include "database/handler_frame_t.h"

#include <QMetaMethod>

namespace database {

bool handler_frame_t::payloadValue(QJsonObject const& packet, QJsonValue::Type type, QJsonValue& value,
                                   char const* slot) const
{
    value = packet.value(QStringLiteral("payload"));
    if (value.type() == type)
        return true;
    refusePayload(packet, slot, QStringLiteral("payload has the wrong type"));
    return false;
}

QString handler_frame_t::pathUnder(QJsonObject const& packet, QString const& section)
{
    QString const topic = packet.value(QStringLiteral("topic")).toString();
    QString const marker = QLatin1Char('/') + section + QLatin1Char('/');
    qsizetype const at = topic.indexOf(marker);
    return at < 0 ? QString() : topic.mid(at + marker.size());
}

bool handler_frame_t::isObjectTopic(QJsonObject const& packet, QString const& section, QString const& key)
{
    return packet.value(QStringLiteral("topic")).toString().endsWith(
        QLatin1Char('/') + section + QStringLiteral("/objects_list/") + key);
}

void handler_frame_t::connectByName(QObject* router, QObject* handler, QByteArray const& prefix, bool connect,
                                    QMap<QByteArray, QByteArray> const& renamed, Qt::ConnectionType type)
{
    if (!router || !handler)
        return;
    QMetaObject const* routerMeta = router->metaObject();
    QMetaObject const* handlerMeta = handler->metaObject();
    for (int i = routerMeta->methodOffset(); i < routerMeta->methodCount(); ++i) {
        QMetaMethod const signal = routerMeta->method(i);
        if (signal.methodType() != QMetaMethod::Signal || !signal.name().startsWith(prefix))
            continue;
        QByteArray signature = signal.methodSignature();
        auto const rename = renamed.constFind(signal.name());
        if (rename != renamed.constEnd())
            signature.replace(0, signal.name().size(), rename.value());
        int const slotIndex = handlerMeta->indexOfSlot(signature.constData());
        if (slotIndex < 0)
            continue; // a section without handling in this process
        QMetaMethod const slot = handlerMeta->method(slotIndex);
        if (connect)
            QObject::connect(router, signal, handler, slot, type);
        else
            QObject::disconnect(router, signal, handler, slot);
    }
}

void handler_frame_t::log(QString const& message, ::utility::logs::LogLevel level, char const* source) const
{
    CLASSLOGS_LOG(message, level, QString::fromLatin1(source));
}

void handler_frame_t::trace(char const* slot, QJsonObject const& packet) const
{
    auto* logs = ::utility::logs::classlogs::getInstance();
    if (!logs->isEnabled(::utility::logs::trace))
        return;
    logs->log_asynch(QStringLiteral("[") + name + QStringLiteral("] ") + traceWord
                         + QString::fromLatin1(slot) + QStringLiteral(" topic: ")
                         + packet.value(QStringLiteral("topic")).toString(),
                     ::utility::logs::trace, QString::fromLatin1(slot), __FILE__, __LINE__);
}

void handler_frame_t::refusePayload(QJsonObject const& packet, char const* slot, QString const& why) const
{
    log(QStringLiteral("[") + name + QStringLiteral("] ") + QStringLiteral("Payload not valid for ")
            + packet.value(QStringLiteral("topic")).toString() + QStringLiteral(": ") + why,
        ::utility::logs::error, slot);
}

void handler_frame_t::logException(char const* slot, QString const& what) const
{
    log(QStringLiteral("[") + name + QStringLiteral("] ") + QStringLiteral("Handling exception: ") + what,
        ::utility::logs::exception, slot);
}

} // namespace database
