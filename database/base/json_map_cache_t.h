#ifndef DATABASE_BASE_JSON_MAP_CACHE_T_H
#define DATABASE_BASE_JSON_MAP_CACHE_T_H

#include <QHash>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QPair>
#include <QSet>
#include <QString>
#include <QStringList>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace base {

/**
 * The bookkeeping that lets the JSON image keep the text of a large map of
 * objects and patch it, instead of serializing every object at each rebuild:
 * which keys and which objects changed since the image last took the map.
 *
 * The map that derives from it reports its own insertions and removals
 * (keyChanged), replacements of the whole (invalidate) and the objects it
 * lets go (forget); its objects report their own changes as its observer.
 * Only objects whose every stored value goes through assign() may be kept
 * this way: a change made behind assign() would never reach the image.
 */
class DATABASE_EXPORT json_cached_map_t : public json_observer_t
{
public:
    using entries_t = QList<QPair<QString, QJsonValue>>;

    /// Whether the image's JSON of this map, at path and as of the image's
    /// rebuild serial, is still this map's and can be patched.
    bool patchable(void const* image, quint64 serial, QStringList const& path) const
    {
        return !whole && image == stampImage && serial == stampSerial && path == stampPath;
    }

    /// What the patch puts in: the JSON of each changed key, Undefined for a
    /// key that is gone. Throws as the serializer does.
    virtual entries_t changedEntries() = 0;

    /// From now on the image's JSON at path, as of serial, is this map's.
    void stamp(void const* image, quint64 serial, QStringList const& path)
    {
        stampImage = image;
        stampSerial = serial;
        stampPath = path;
        whole = false;
        staleKeys.clear();
        staleObjects.clear();
        // The image holds the JSON now; keeping it here too would only cost memory.
        kept.clear();
        keepsJson = true;
    }

    /// The JSON of one of the map's objects. A changed object is published and
    /// then patched into the image, and both want the same JSON: once the image
    /// keeps this map by object, it is serialized once per change and kept
    /// until the object changes again or the next rebuild.
    QJsonObject objectJson(topicbase_t* object) override
    {
        if (!keepsJson)
            return serialized(object);
        auto const found = kept.constFind(object);
        if (found != kept.constEnd())
            return found.value();
        QJsonObject json = serialized(object);
        kept.insert(object, json);
        return json;
    }

    /// The JSON an update about to be applied came as: until withdrawn,
    /// objectJson() takes it instead of serializing an object whose own JSON
    /// it is exactly (topicbase_t::isOwnJson).
    void offerJson(QJsonObject const& json) { offered = json; }
    void withdrawJson() { offered = QJsonObject(); }

    void storedChanged(topicbase_t* object) override
    {
        kept.remove(object);
        if (!whole)
            staleObjects.insert(object);
    }
    void observerLeft(topicbase_t*) override { invalidate(); }

protected:
    json_cached_map_t() = default;
    json_cached_map_t(json_cached_map_t const&) = delete;
    json_cached_map_t& operator=(json_cached_map_t const&) = delete;
    ~json_cached_map_t() = default;

    void keyChanged(QString const& key)
    {
        if (!whole)
            staleKeys.insert(key);
    }
    /// The next rebuild serializes the whole map again.
    void invalidate()
    {
        whole = true;
        staleKeys.clear();
        staleObjects.clear();
        kept.clear();
    }
    /// object leaves the map: it is no longer asked for.
    void forget(topicbase_t* object)
    {
        staleObjects.remove(object);
        kept.remove(object);
    }

    QSet<QString> staleKeys;
    QSet<topicbase_t*> staleObjects;

private:
    QJsonObject serialized(topicbase_t* object) const
    {
        return !offered.isEmpty() && object->isOwnJson(offered) ? offered : object->toJson();
    }

    QJsonObject offered;
    // By object, not key: an object keeps its JSON wherever its key is.
    QHash<topicbase_t const*, QJsonObject> kept;
    bool keepsJson = false;
    bool whole = true;
    void const* stampImage = nullptr;
    quint64 stampSerial = 0;
    QStringList stampPath;
};

} // namespace base
} // namespace database

#endif // DATABASE_BASE_JSON_MAP_CACHE_T_H
