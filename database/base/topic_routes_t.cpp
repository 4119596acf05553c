#include "database/base/topic_routes_t.h"

#include <QException>
#include <QMutexLocker>

#include "platform/logs/classlogs.h"

namespace database {
namespace base {

namespace {

void logException(char const* source, QString const& text)
{
    ::utility::logs::classlogs::getInstance()->log_asynch(
        QStringLiteral("Handling exception: ") + text, ::utility::logs::exception,
        QString::fromLatin1(source), __FILE__, __LINE__);
}

} // namespace

topic_routes_t::topic_routes_t(QString const& prefix)
    : m_prefix(prefix)
    , gate(QStringLiteral("^") + prefix + QStringLiteral(R"(/((\w+)/?.*)$)"), Qt::CaseSensitive, QRegExp::RegExp)
    , literalGate(literalPrefix(prefix) == prefix)
{
}

bool topic_routes_t::passesGate(QString const& topic)
{
    if (!literalGate)
        return gate.exactMatch(topic);
    // What the pattern asks, as QRegExp reads \w; "/?.*" takes any rest.
    qsizetype const word = m_prefix.size() + 1;
    if (topic.size() <= word || !topic.startsWith(m_prefix) || topic.at(word - 1) != QLatin1Char('/'))
        return false;
    QChar const c = topic.at(word);
    return c.isLetterOrNumber() || c.isMark() || c == QLatin1Char('_');
}

bool topic_routes_t::dispatch(char const* source, QJsonObject const& packet, bool callRoute,
                              on_match_t const& onMatch)
{
    try {
        QMutexLocker lock(&mutex);
        QString const topic = packet.value(QStringLiteral("topic")).toString();
        if (!m_prefix.isEmpty() && !passesGate(topic))
            return false;

        auto const matched = [&](auto const& route) {
            if (onMatch)
                onMatch(packet);
            if (callRoute)
                route();
            return true;
        };
        if (callback_t const* callback = sections.match(topic))
            return matched([&] { (*callback)(packet); });
        QString key;
        if (callback_key_t const* callback = objects.match(topic, &key))
            return matched([&] { (*callback)(packet, key); });
        QStringList captures;
        if (callback_captures_t const* callback = captured.match(topic, captures))
            return matched([&] { (*callback)(packet, captures); });
    } catch (QException const& e) {
        logException(source, QString::fromUtf8(e.what()));
    } catch (QString const& e) {
        logException(source, e);
    }
    return false;
}

} // namespace base
} // namespace database
