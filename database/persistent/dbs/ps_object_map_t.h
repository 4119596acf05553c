#ifndef DATABASE_PERSISTENT_DBS_PS_OBJECT_MAP_T_H
#define DATABASE_PERSISTENT_DBS_PS_OBJECT_MAP_T_H

#include <QJsonObject>
#include <QJsonValue>
#include <QMap>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QThread>
#include <QVariant>

#include "database/base/json_map_cache_t.h"
#include "database/base/topicbase_t.h"
#include "database/persistent/ps_request.h"
#include "database/utility/utility.h"
#include "platform/logs/classlogs.h"
#include "platform/qjsonserializer/qjsonserializer.h"

namespace database {
namespace persistent {
namespace dbs {

/**
 * The map of objects that a section owns, with the operations every such map
 * has: never-null look-up, requests, updates with publication, and wiring to
 * the engine. A section holds one per list and forwards its named operations
 * (update_items, requestSetUser, ...) here, so the behaviour is written once.
 *
 * T is an object class with T(QString topic, QObject* parent), a deep copy
 * constructor, update(T const*, bool) and initRequestSignals(QObject*, bool).
 * Objects in the map have no QObject parent: the map owns them.
 */
template<class T>
class ps_object_map_t : public base::json_cached_map_t
{
public:
    using map_t = QMap<QString, T*>;

    ps_object_map_t(base::topicbase_t* section, QString listKey)
        : section(section)
        , listKey(std::move(listKey))
    {
    }

    ~ps_object_map_t() { qDeleteAll(objects); }

    ps_object_map_t(ps_object_map_t const&) = delete;
    ps_object_map_t& operator=(ps_object_map_t const&) = delete;

    /// Deep copy of another section's objects into this still empty map.
    void copyFrom(ps_object_map_t const& other)
    {
        invalidate();
        for (auto it = other.objects.begin(); it != other.objects.end(); ++it)
            objects.insert(it.key(), it.value() ? observed(new T(*it.value())) : nullptr);
    }

    map_t const& get() const { return objects; }
    QString const& key() const { return listKey; }
    QObject* getReceiver() const { return receiver; }

    /// Takes the pointers as they are (deserialized or handed to a constructor);
    /// the objects that are not kept are deleted.
    void adopt(map_t const& map)
    {
        QList<T*> const kept = map.values();
        QSet<T*> const keptSet(kept.begin(), kept.end());
        for (T* object : std::as_const(objects)) {
            if (!keptSet.contains(object))
                delete object;
        }
        objects = map;
        invalidate();
        for (T* object : std::as_const(objects)) {
            if (object) {
                object->setParent(nullptr);
                observed(object);
            }
        }
    }

    /// "section/list key/id".
    QString objectTopic(QString const& id) const
    {
        return section->getTopic() + QLatin1Char('/') + listKey + QLatin1Char('/') + id;
    }

    /// Gives each object of map the topic it would have in this list.
    void giveTopics(map_t const& map) const
    {
        for (auto it = map.begin(); it != map.end(); ++it) {
            if (it.value())
                it.value()->setTopic(objectTopic(it.key()));
        }
    }

    /// Logs this line with the id whenever list() misses, under source.
    void setMissLog(QString const& text, QString const& source = QStringLiteral("list"))
    {
        missLog = text;
        missSource = source;
    }

    /// The absolute prefix of the requests: "request/DB/persistent" unless the
    /// owner lives in another database.
    void setRequestBase(QString const& base) { requestBase = base; }

    /// Whether update() passes over an empty id. Live state takes keys as the
    /// drivers send them, so the realtime sections store an empty one too.
    void setSkipEmptyId(bool skip) { skipEmptyId = skip; }

    /// Never null: an unknown id gives a default object that is already
    /// scheduled for deletion, and raises onObjectNotExist.
    T* list(QString const& id)
    {
        auto const found = objects.constFind(id);
        if (found != objects.constEnd())
            return found.value();
        if (!missLog.isEmpty())
            CLASSLOGS_LOG(missLog + id, ::utility::logs::trace, missSource);
        QString const topic = objectTopic(id);
        T* temporary = new T(topic, section);
        temporary->deleteLater();
        Q_EMIT section->onObjectNotExist(QJsonObject{{QStringLiteral("topic"), topic}});
        return temporary;
    }

    /// Asks for one object; a null object asks for its removal.
    void requestSet(QString const& id, T* object)
    {
        QString topic = requestOf(objectTopic(id));
        QJsonValue payload = QJsonObject();
        if (object) {
            object->setTopic(objectTopic(id));
            topic = requestOf(object->getTopic());
            payload = object->toJson();
        }
        Q_EMIT section->onRequest(base::topicbase_t::getPacketRequest(topic, payload));
    }

    /// Asks for the whole list.
    void requestSetAll(map_t const& map)
    {
        giveTopics(map);
        Q_EMIT section->onRequest(base::topicbase_t::getPacketRequest(
            requestOf(section->getTopic() + QLatin1Char('/') + listKey), toJson(map)));
    }

    /// Changes one object: content into the existing one, a copy for a new id,
    /// removal for null. An empty id changes and publishes nothing, unless
    /// setSkipEmptyId(false).
    void update(QString const& id, T* object, bool _notify)
    {
        if (skipEmptyId && id.isEmpty())
            return;
        auto const found = objects.find(id);
        // One topic for the stand-in and the packet, one lookup for both.
        QString const topic = objectTopic(id);
        T* stored = nullptr;
        if (object) {
            object->setTopic(topic);
            if (found != objects.end() && found.value()) {
                stored = found.value();
                stored->update(object, false);
            } else {
                stored = new T(*object);
                insertCopy(id, stored);
            }
        } else if (found != objects.end()) {
            release(found);
        }
        if (_notify)
            publishObject(topic, stored);
    }

    /// Stores object itself under id, without a copy: the map owns it from now
    /// on, and gives it its topic and wiring.
    void insert(QString const& id, T* object)
    {
        object->setParent(nullptr);
        object->setTopic(objectTopic(id));
        insertCopy(id, object);
    }

    /// Unwires every object, schedules it for deletion and empties the map,
    /// publishing nothing.
    void clear()
    {
        while (!objects.isEmpty())
            release(objects.begin());
    }

    /// Unwires the object of id, schedules it for deletion and drops the key,
    /// publishing nothing. False when id isn't there.
    bool remove(QString const& id)
    {
        auto const found = objects.find(id);
        if (found == objects.end())
            return false;
        release(found);
        return true;
    }

    /// For objects that are never merged: a copy of object takes the place of
    /// whatever the id held, whose old object is unwired and released. Null
    /// removes the id; an empty id changes and publishes nothing.
    void replace(QString const& id, T* object, bool _notify)
    {
        if (id.isEmpty())
            return;
        T* copy = nullptr;
        if (object) {
            object->setTopic(objectTopic(id));
            // Copied before the old one goes: object may be that very one.
            copy = new T(*object);
        }
        auto const found = objects.find(id);
        if (found != objects.end())
            release(found);
        if (copy)
            insertCopy(id, copy);
        if (_notify)
            sendUpdateObject(id);
    }

    /// Replaces the whole list by copies of map's objects. wire is the
    /// section's own initRequestSignals, which may reach further than the map.
    template<class Wire>
    void updateAll(map_t const& map, bool _notify, Wire wire)
    {
        wire(receiver, false);
        // Copies are made before the old objects go, so a map that shares
        // objects with this one is still safe to read.
        map_t copies;
        for (auto it = map.begin(); it != map.end(); ++it) {
            T* copy = it.value() ? observed(new T(*it.value())) : nullptr;
            if (copy)
                adoptThread(copy);
            copies.insert(it.key(), copy);
        }
        qDeleteAll(objects);
        objects = copies;
        invalidate();
        wire(receiver, true);
        if (_notify)
            sendUpdate();
    }

    /// Publishes the whole map on "section/list key".
    void sendUpdate()
    {
        Q_EMIT section->onUpdated(base::topicbase_t::getPacketUpdated(
            section->getTopic() + QLatin1Char('/') + listKey, toJson(objects)));
    }

    /// Publishes one object, or null when it isn't there.
    void sendUpdateObject(QString const& id) { publishObject(objectTopic(id), objects.value(id)); }

    /// Remembers the receiver, wires the section and gives every object its topic and wiring.
    void initRequestSignals(QObject* _receiver, bool connect)
    {
        if (!_receiver)
            return;
        receiver = _receiver;
        section->connectRequestSignals(_receiver, connect);
        wireObjects(connect);
    }

    /// The objects' half of initRequestSignals, for sections with more than one map.
    void wireObjects(bool connect)
    {
        retopic();
        for (T* object : std::as_const(objects)) {
            if (object)
                object->initRequestSignals(receiver, connect);
        }
    }

    /// Gives every object its topic under the owner's present one: owners
    /// that move call it, since wiring alone needs a receiver.
    void retopic()
    {
        for (auto it = objects.begin(); it != objects.end(); ++it) {
            if (it.value())
                it.value()->setTopic(objectTopic(it.key()));
        }
    }

    void setReceiver(QObject* _receiver) { receiver = _receiver; }

    /// Same keys and objects of equal content, by T::compare(T const*).
    static bool sameContent(map_t const& mine, map_t const& theirs)
    {
        if (mine.keys() != theirs.keys())
            return false;
        for (auto it = mine.begin(); it != mine.end(); ++it) {
            T const* their = theirs.value(it.key());
            if (it.value() ? !it.value()->compare(their) : their != nullptr)
                return false;
        }
        return true;
    }

    static QJsonValue toJson(map_t const& map)
    {
        return utility::getInstance()->serializer()->serializeImpl(QVariant::fromValue(map));
    }

    entries_t changedEntries() override
    {
        QSet<QString> keys = staleKeys;
        QList<T*> unresolved;
        QString const prefix = objectTopic(QString());
        for (base::topicbase_t* changed : std::as_const(staleObjects)) {
            T* object = static_cast<T*>(changed);
            QString const topic = object->getTopic();
            // The topic names the key unless someone gave the object another one.
            if (topic.startsWith(prefix)) {
                QString const key = topic.mid(prefix.size());
                auto const found = objects.constFind(key);
                if (found != objects.constEnd() && found.value() == object) {
                    keys.insert(key);
                    continue;
                }
            }
            unresolved.append(object);
        }
        if (!unresolved.isEmpty()) {
            for (auto it = objects.constBegin(); it != objects.constEnd(); ++it) {
                if (it.value() && unresolved.contains(it.value()))
                    keys.insert(it.key());
            }
        }
        entries_t entries;
        entries.reserve(keys.size());
        for (QString const& key : std::as_const(keys)) {
            auto const found = objects.constFind(key);
            if (found == objects.constEnd())
                entries.append({key, QJsonValue(QJsonValue::Undefined)});
            else if (!found.value())
                entries.append({key, QJsonValue(QJsonValue::Null)});
            else
                entries.append({key, objectJson(found.value())});
        }
        return entries;
    }

private:
    T* observed(T* object)
    {
        object->setJsonObserver(this);
        return object;
    }

    QString requestOf(QString const& relative) const { return requestBase + QLatin1Char('/') + relative; }

    /// The packet of one object under topic, null when there is none.
    void publishObject(QString const& topic, T* object)
    {
        Q_EMIT section->onUpdated(base::topicbase_t::getPacketUpdated(
            topic, object ? QJsonValue(objectJson(object)) : QJsonValue()));
    }

    /// The map owns copy from here on, wired like every other object.
    void insertCopy(QString const& id, T* copy)
    {
        observed(copy);
        keyChanged(id);
        adoptThread(copy);
        objects.insert(id, copy);
        copy->initRequestSignals(receiver, true);
    }

    /// An object made on another thread (a consistency check runs on the
    /// pool) joins the section's, whose event loop will delete it one day.
    void adoptThread(T* object) const
    {
        if (object->thread() != section->thread() && object->thread() == QThread::currentThread())
            object->moveToThread(section->thread());
    }

    /// Unwires the object, leaves its deletion to the event loop (a caller
    /// may still hold it) and drops the key.
    void release(typename map_t::iterator found)
    {
        keyChanged(found.key());
        if (T* existing = found.value()) {
            forget(existing);
            existing->setJsonObserver(nullptr);
            existing->initRequestSignals(receiver, false);
            existing->deleteLater();
        }
        objects.erase(found);
    }

    base::topicbase_t* section;
    QString listKey;
    QString missLog;
    bool skipEmptyId = true;
    QString missSource;
    QString requestBase = literals::request_persistent;
    QPointer<QObject> receiver;
    map_t objects;
};

} // namespace dbs
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_PS_OBJECT_MAP_T_H
