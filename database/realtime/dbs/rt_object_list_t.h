#ifndef DATABASE_REALTIME_DBS_RT_OBJECT_LIST_T_H
#define DATABASE_REALTIME_DBS_RT_OBJECT_LIST_T_H

#include <QJsonValue>
#include <QList>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QVariant>

#include "database/base/topicbase_t.h"
#include "database/utility/utility.h"
#include "platform/qjsonserializer/qjsonserializer.h"

namespace database {
namespace realtime {
namespace dbs {

/**
 * A list of objects that an owner keeps in the order it was given, as the
 * interfaces a driver found or the actions of the presence simulation. The
 * objects have no QObject parent: the list owns them, and each has the topic
 * of its owner, the list key and its index.
 *
 * T has a deep copy constructor and initRequestSignals(QObject*, bool).
 */
template<class T>
class rt_object_list_t
{
public:
    using list_t = QList<T*>;

    rt_object_list_t(base::topicbase_t* owner, QString key)
        : owner(owner)
        , listKey(std::move(key))
    {
    }

    ~rt_object_list_t() { qDeleteAll(objects); }

    rt_object_list_t(rt_object_list_t const&) = delete;
    rt_object_list_t& operator=(rt_object_list_t const&) = delete;

    list_t const& get() const { return objects; }

    /// The object at index, or null outside the list.
    T* at(int index) const { return index >= 0 && index < objects.size() ? objects.at(index) : nullptr; }

    /// Deep copy of another owner's objects into this still empty list.
    void copyFrom(rt_object_list_t const& other) { objects = copies(other.objects); }

    /// Takes the pointers as they are (deserialized or handed to a
    /// constructor); the objects that are not kept are deleted.
    void adopt(list_t const& list)
    {
        QSet<T*> const kept(list.begin(), list.end());
        for (T* object : std::as_const(objects)) {
            if (!kept.contains(object))
                delete object;
        }
        objects = list;
        for (T* object : std::as_const(objects)) {
            if (object)
                object->setParent(nullptr);
        }
        retopic();
    }

    /// Copies of list's objects take the place of the present ones, which are
    /// unwired and deleted.
    void replace(list_t const& list)
    {
        // Copied first: list may hold this list's own objects.
        list_t const fresh = copies(list);
        wire(false);
        qDeleteAll(objects);
        objects = fresh;
        wire(true);
    }

    /// Gives every object its topic under the owner's present one.
    void retopic()
    {
        for (int index = 0; index < objects.size(); ++index) {
            if (objects.at(index))
                objects.at(index)->setTopic(owner->getTopic() + QLatin1Char('/') + listKey + QLatin1Char('/')
                                            + QString::number(index));
        }
    }

    void initRequestSignals(QObject* _receiver, bool connect)
    {
        if (!_receiver)
            return;
        receiver = _receiver;
        wire(connect);
    }

    QJsonValue toJson() const
    {
        return utility::getInstance()->serializer()->serializeImpl(QVariant::fromValue(objects));
    }

private:
    static list_t copies(list_t const& list)
    {
        list_t result;
        for (T* object : list)
            result.append(object ? new T(*object) : nullptr);
        return result;
    }

    void wire(bool connect)
    {
        retopic();
        for (T* object : std::as_const(objects)) {
            if (object)
                object->initRequestSignals(receiver, connect);
        }
    }

    base::topicbase_t* owner;
    QString listKey;
    QPointer<QObject> receiver;
    list_t objects;
};

} // namespace dbs
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_RT_OBJECT_LIST_T_H
