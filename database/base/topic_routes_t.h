#ifndef DATABASE_BASE_TOPIC_ROUTES_T_H
#define DATABASE_BASE_TOPIC_ROUTES_T_H

#include <QJsonObject>
#include <QRecursiveMutex>
#include <QRegExp>
#include <QString>
#include <QStringList>

#include <functional>

#include "database/base/topic_table_t.h"

#include "database/database_export.h"

namespace database {
namespace base {

/**
 * One form of a topic router's routes (change, status, request ...): a gate on
 * the topic's prefix, a table of section patterns and a table of object
 * patterns whose first capture is the object's key.
 *
 * Used by the persistent and realtime routers. A dispatch tries the sections
 * first, so a topic that matches both is served as a section; at most one
 * callback runs per packet.
 */
class DATABASE_EXPORT topic_routes_t
{
public:
    using callback_t = std::function<void(QJsonObject)>;
    using callback_key_t = std::function<void(QJsonObject, QString)>;
    /// Runs at a match, before the route's own callback, even when that one is not called.
    using on_match_t = std::function<void(QJsonObject const&)>;

    /// With an empty prefix the topics are relative and pass no gate;
    /// otherwise only "prefix/word..." topics are tried.
    explicit topic_routes_t(QString const& prefix = QString());

    topic_routes_t(topic_routes_t const&) = delete;
    topic_routes_t& operator=(topic_routes_t const&) = delete;

    QString const& prefix() const { return m_prefix; }

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

    QStringList patterns() const { return sections.patterns(); }
    QStringList keyPatterns() const { return objects.patterns(); }

    /**
     * Finds the route of packet's topic. With callRoute false it only tells
     * whether there is one. Exceptions of the callbacks are logged under
     * source and give false.
     */
    bool dispatch(char const* source, QJsonObject const& packet, bool callRoute,
                  on_match_t const& onMatch = on_match_t());

private:
    QString m_prefix;
    QRegExp gate;
    topic_table_t<callback_t> sections;
    topic_table_t<callback_key_t> objects;
    // The compiled patterns hold the captures of the last match; recursive
    // because a directly connected slot may route another packet.
    QRecursiveMutex mutex;
};

} // namespace base
} // namespace database

#endif // DATABASE_BASE_TOPIC_ROUTES_T_H
