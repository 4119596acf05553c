#ifndef DATABASE_BASE_TOPIC_ROUTES_T_H
#define DATABASE_BASE_TOPIC_ROUTES_T_H

#include <QJsonObject>
#include <QRecursiveMutex>
#include <QRegExp>
#include <QString>
#include <QStringList>

#include <functional>
#include <type_traits>
#include <utility>

#include "database/base/topic_table_t.h"

#include "database/database_export.h"

namespace database {
namespace base {

/**
 * One form of a topic router's routes (change, status, request ...): a gate on
 * the topic's prefix, a table of section patterns, a table of object
 * patterns whose first capture is the object's key, and a table of patterns
 * whose captures all become arguments.
 *
 * Used by the persistent, realtime and presence simulation routers. A
 * dispatch tries the tables in that order, so a topic that matches a section
 * is served as a section; at most one callback runs per packet.
 */
class DATABASE_EXPORT topic_routes_t
{
public:
    using callback_t = std::function<void(QJsonObject)>;
    using callback_key_t = std::function<void(QJsonObject, QString)>;
    /// Receives every capture of the match, index 0 being the whole topic.
    using callback_captures_t = std::function<void(QJsonObject, QStringList)>;
    /// Runs at a match, before the route's own callback, even when that one is not called.
    using on_match_t = std::function<void(QJsonObject const&)>;

    /// With an empty prefix the topics are relative and pass no gate;
    /// otherwise only "prefix/word..." topics are tried.
    explicit topic_routes_t(QString const& prefix = QString());

    topic_routes_t(topic_routes_t const&) = delete;
    topic_routes_t& operator=(topic_routes_t const&) = delete;

    QString const& prefix() const { return m_prefix; }

    /// Whether topic passes the gate: "prefix/" and a word character, anything after it.
    bool passesGate(QString const& topic);

    void insert(QString const& pattern, callback_t callback) { sections.insert(pattern, std::move(callback)); }
    void insert(QString const& pattern, callback_key_t callback) { objects.insert(pattern, std::move(callback)); }

    /// A route that emits signal of router, with the key for an object route.
    template<class Router>
    void insert(QString const& pattern, Router* router, void (Router::*signal)(QJsonObject))
    {
        insert(pattern, callback_t([router, signal](QJsonObject packet) { (router->*signal)(packet); }));
    }
    template<class Router>
    void insert(QString const& pattern, Router* router, void (Router::*signal)(QJsonObject, QString))
    {
        insert(pattern, callback_key_t([router, signal](QJsonObject packet, QString key) {
                   (router->*signal)(packet, key);
               }));
    }

    void insertCaptures(QString const& pattern, callback_captures_t callback)
    {
        captured.insert(pattern, std::move(callback));
    }

    /// A route that emits signal of router with the captures as its arguments
    /// after the packet, in their order: an int argument takes the capture
    /// read as a decimal number, a QString one the capture itself.
    template<class Router, class... Args>
    void insertCaptures(QString const& pattern, Router* router, void (Router::*signal)(QJsonObject, Args...))
    {
        insertCaptures(pattern, callback_captures_t([router, signal](QJsonObject packet, QStringList captures) {
                           emitCaptured(router, signal, packet, captures, std::index_sequence_for<Args...>());
                       }));
    }

    QStringList patterns() const { return sections.patterns(); }
    QStringList keyPatterns() const { return objects.patterns(); }
    QStringList capturePatterns() const { return captured.patterns(); }

    /**
     * Finds the route of packet's topic. With callRoute false it only tells
     * whether there is one. Exceptions of the callbacks are logged under
     * source and give false.
     */
    bool dispatch(char const* source, QJsonObject const& packet, bool callRoute,
                  on_match_t const& onMatch = on_match_t());

private:
    template<class T>
    static T capture(QStringList const& captures, qsizetype index)
    {
        if constexpr (std::is_same_v<T, int>)
            return captures.value(index).toInt(nullptr, 10);
        else
            return captures.value(index);
    }

    template<class Router, class... Args, std::size_t... Index>
    static void emitCaptured(Router* router, void (Router::*signal)(QJsonObject, Args...), QJsonObject const& packet,
                             QStringList const& captures, std::index_sequence<Index...>)
    {
        (router->*signal)(packet, capture<Args>(captures, qsizetype(Index) + 1)...);
    }

    QString m_prefix;
    QRegExp gate;
    // The gate's test without the pattern, when the prefix is plain text.
    bool literalGate = false;
    topic_table_t<callback_t> sections;
    topic_table_t<callback_key_t> objects;
    topic_table_t<callback_captures_t> captured;
    // The compiled patterns hold the captures of the last match; recursive
    // because a directly connected slot may route another packet.
    QRecursiveMutex mutex;
};

} // namespace base
} // namespace database

#endif // DATABASE_BASE_TOPIC_ROUTES_T_H
