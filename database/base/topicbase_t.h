#ifndef DATABASE_BASE_TOPICBASE_T_H
#define DATABASE_BASE_TOPICBASE_T_H

#include <QJsonObject>
#include <QJsonValue>
#include <QObject>
#include <QString>
#include <QVariant>

#include "database/database_export.h"

namespace database {
namespace base {

class topicbase_t;

/**
 * Hears of every change of an object's stored values made through
 * topicbase_t::assign() or placeChild(): the JSON image keeps the text of
 * large maps by object and rebuilds only the objects it hears of.
 */
class DATABASE_EXPORT json_observer_t
{
public:
    virtual void storedChanged(topicbase_t* object) = 0;
    /// object now reports to another observer.
    virtual void observerLeft(topicbase_t* object) = 0;
    /// The JSON of object, which the observer may have kept since its last change.
    virtual QJsonObject objectJson(topicbase_t* object) = 0;

protected:
    ~json_observer_t() = default;
};

class json_cached_map_t;

/**
 * Base of every data root, section and model object of the databases.
 *
 * It holds the object's own relative topic and the four signals through which
 * a model talks to its engine: requests leave by onRequest, changes by
 * onUpdated, refusals by onObjectNotExist and onObjectError.
 */
class DATABASE_EXPORT topicbase_t : public QObject
{
    Q_OBJECT
public:
    explicit topicbase_t(QObject* parent = nullptr);
    topicbase_t(QString const& topic, QObject* parent);
    /// A copy has no parent: the copy's owner adopts it.
    topicbase_t(topicbase_t const& other);

    QString getTopic() const;
    void setTopic(QString const& topic);

    /// {"topic": topic, "payload": payload}; the caller composes the whole topic.
    static QJsonObject getPacketUpdated(QString const& topic, QJsonValue const& payload);
    static QJsonObject getPacketRequest(QString const& topic, QJsonValue const& payload);

    /// Connects, or disconnects, the four signals of this object to the
    /// receiver's slots of the same names with a leading underscore, queued.
    /// A null receiver changes nothing.
    void connectRequestSignals(QObject* receiver, bool connect);

    /// This object as JSON, through the shared serializer.
    QJsonObject toJson() const;
    /// Whether json is exactly toJson(), told without serializing; false
    /// also when only serializing could tell.
    bool isOwnJson(QJsonObject const& json) const;

    /// Raises onUpdated with this object itself on its own topic.
    void publishSelf();
    /// publishSelf() when _notify: the tail of the updates of one field.
    void publishSelfIf(bool _notify)
    {
        if (_notify)
            publishSelf();
    }

    /// Raises onUpdated with a bare value on this object's topic, "/" and key.
    void publishField(QString const& key, QJsonValue const& value);

    /// Raises onObjectError for a null argument given to an update.
    void refuseNull();

    /// Which value properties copyValues and sameValues walk.
    enum value_scope_t {
        stored_values, ///< those that reach the JSON
        all_values     ///< the ones kept in memory only too
    };

    /// Takes every property of other in scope that is a value (not an object
    /// pointer, nor a map or list of them) through the setters; objectName and
    /// the topic stay. other must
    /// be of this object's class.
    void copyValues(topicbase_t const* other, value_scope_t scope = stored_values);
    /// True when every value property in scope equals other's.
    bool sameValues(topicbase_t const* other, value_scope_t scope = stored_values) const;
    /// The update of a flat record: null is refused with "Not permitted
    /// nullptr", otherwise the values are taken and, with _notify, the record
    /// is published on its own topic. False for null.
    bool updateValues(topicbase_t const* other, bool _notify);

    /// Who hears of this object's changes; a copy starts without one.
    json_observer_t* jsonObserver() const { return observer; }
    /// Null lets the object go quietly; another observer takes it from the present one.
    void setJsonObserver(json_observer_t* _observer)
    {
        if (observer && _observer && observer != _observer)
            observer->observerLeft(this);
        observer = _observer;
    }
    /// The map behind property, when this object keeps its JSON by object; null otherwise.
    virtual json_cached_map_t* jsonCache(QString const& property);

    /// The update of one field: writes the property of that JSON key through
    /// the property system, which raises its change signal, and with _notify
    /// publishes the whole object on its own topic.
    void updateField(char const* key, QVariant const& value, bool _notify);

Q_SIGNALS:
    void onRequest(QString _topic, QJsonObject _obj);
    void onRequest(QJsonObject _packet);
    void onUpdated(QJsonObject _packet);
    void onObjectNotExist(QJsonObject _packet);
    void onObjectError(QJsonObject _packet, QString message);

protected:
    /// Stores value in field and calls changed() when it differs: the body of every setter.
    template<class Field, class Changed>
    bool assign(Field& field, Field const& value, Changed changed)
    {
        if (field == value)
            return false;
        field = value;
        storedChanged();
        changed();
        return true;
    }

    void storedChanged()
    {
        if (observer)
            observer->storedChanged(this);
    }

    /// Gives a child its topic and wires it to receiver, or unwires it.
    template<class T>
    static void wireChild(T* child, QString const& childTopic, QObject* receiver, bool connect)
    {
        child->setTopic(childTopic);
        child->initRequestSignals(receiver, connect);
    }

    /// Puts value, or a new default T for null, in slot as this object's child
    /// at childTopic. The old child loses its wiring to receiver and is deleted
    /// at once, so nobody reaches it through this object any more; the new one
    /// is wired. False when value is already in place.
    template<class T>
    bool placeChild(T*& slot, T* value, QString const& childTopic, QObject* receiver)
    {
        if (value == slot && value)
            return false;
        T* old = slot;
        slot = value ? value : new T(this);
        slot->setParent(this);
        storedChanged();
        slot->setTopic(childTopic);
        if (old) {
            old->initRequestSignals(receiver, false);
            delete old;
        }
        slot->initRequestSignals(receiver, true);
        return true;
    }

    QString topic;

private:
    json_observer_t* observer = nullptr;
};

} // namespace base
} // namespace database

#endif // DATABASE_BASE_TOPICBASE_T_H
