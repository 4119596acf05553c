#include "database/base/topicbase_t.h"

#include <QAssociativeIterable>
#include <QHash>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QMutex>
#include <QMutexLocker>
#include <QPair>
#include <QSequentialIterable>
#include <QVector>

#include <array>

#include "database/utility/utility.h"
#include "platform/qjsonserializer/qjsonserializer.h"

namespace database {
namespace base {

namespace {

// Maps and lists of objects are structure the owner holds, not values.
bool holdsObjects(QMetaType type)
{
    QVariant sample(type);
    if (QMetaType::canView(type, QMetaType::fromType<QAssociativeIterable>()))
        return sample.view<QAssociativeIterable>().metaContainer().mappedMetaType().flags().testFlag(
            QMetaType::PointerToQObject);
    if (QMetaType::canView(type, QMetaType::fromType<QSequentialIterable>()))
        return sample.view<QSequentialIterable>().metaContainer().valueMetaType().flags().testFlag(
            QMetaType::PointerToQObject);
    return false;
}

// The writable, non-object properties of a class in a scope, computed once per class and scope.
QVector<QMetaProperty> const& valueProperties(QMetaObject const* meta, topicbase_t::value_scope_t scope)
{
    static QMutex mutex;
    static QHash<QPair<QMetaObject const*, int>, QVector<QMetaProperty>> cache;
    QMutexLocker locker(&mutex);
    QPair<QMetaObject const*, int> const key(meta, scope);
    auto found = cache.constFind(key);
    if (found != cache.constEnd())
        return found.value();
    QVector<QMetaProperty> properties;
    // Index 0 is QObject's objectName.
    for (int i = 1; i < meta->propertyCount(); ++i) {
        QMetaProperty const property = meta->property(i);
        if (!property.isWritable() || (scope == topicbase_t::stored_values && !property.isStored()))
            continue;
        if (property.metaType().flags().testFlag(QMetaType::PointerToQObject) || holdsObjects(property.metaType()))
            continue;
        properties.append(property);
    }
    return cache.insert(key, properties).value();
}

} // namespace

topicbase_t::topicbase_t(QObject* parent)
    : QObject(parent)
{
}

topicbase_t::topicbase_t(QString const& topic, QObject* parent)
    : QObject(parent)
    , topic(topic)
{
}

topicbase_t::topicbase_t(topicbase_t const& other)
    : QObject(nullptr)
    , topic(other.topic)
{
}

json_cached_map_t* topicbase_t::jsonCache(QString const&)
{
    return nullptr;
}

QString topicbase_t::getTopic() const
{
    return topic;
}

void topicbase_t::setTopic(QString const& _topic)
{
    topic = _topic;
}

QJsonObject topicbase_t::getPacketUpdated(QString const& _topic, QJsonValue const& payload)
{
    // An undefined payload leaves its key out, as an insert would.
    if (payload.isUndefined())
        return QJsonObject{{QStringLiteral("topic"), _topic}};
    // Every packet copies one ready pair of keys instead of making both anew:
    // half the work of building it by inserts. Keys are kept sorted, so
    // "payload" comes first.
    static QJsonObject const blank{{QStringLiteral("payload"), QJsonValue::Null},
                                   {QStringLiteral("topic"), QJsonValue::Null}};
    QJsonObject packet = blank;
    auto it = packet.begin();
    it.value() = payload;
    (++it).value() = _topic;
    return packet;
}

QJsonObject topicbase_t::getPacketRequest(QString const& _topic, QJsonValue const& payload)
{
    return getPacketUpdated(_topic, payload);
}

namespace {

/// The four signals of the models and the engine's slot of each, looked up
/// once per receiver class: tens of thousands of objects are wired at a load,
/// and a connection by name parses and searches both signatures every time.
using wiring_t = std::array<QPair<QMetaMethod, QMetaMethod>, 4>;

wiring_t wiringFor(QMetaObject const* receiverClass)
{
    static QMutex mutex;
    static QHash<QMetaObject const*, wiring_t> known;
    QMutexLocker lock(&mutex);
    auto it = known.find(receiverClass);
    if (it != known.end())
        return *it;
    static char const* const pairs[][2] = {
        {"onUpdated(QJsonObject)", "_onUpdated(QJsonObject)"},
        {"onRequest(QJsonObject)", "_onRequest(QJsonObject)"},
        {"onObjectNotExist(QJsonObject)", "_onObjectNotExist(QJsonObject)"},
        {"onObjectError(QJsonObject,QString)", "_onObjectError(QJsonObject,QString)"},
    };
    wiring_t wiring;
    QMetaObject const& models = topicbase_t::staticMetaObject;
    for (std::size_t i = 0; i < wiring.size(); ++i)
        wiring[i] = qMakePair(models.method(models.indexOfSignal(pairs[i][0])),
                              receiverClass->method(receiverClass->indexOfSlot(pairs[i][1])));
    known.insert(receiverClass, wiring);
    return wiring;
}

} // namespace

void topicbase_t::connectRequestSignals(QObject* receiver, bool connect)
{
    if (!receiver)
        return;
    // The receiver is an engine whose type the models don't know: its slots are found by name.
    wiring_t const wiring = wiringFor(receiver->metaObject());
    for (auto const& [signal, slot] : wiring) {
        if (!slot.isValid())
            continue;
        // By index: the slots were found by the signals' own signatures, so the
        // argument check and signature texts of a connection by method would
        // only repeat, for every object, what is known for the class.
        if (connect)
            QMetaObject::connect(this, signal.methodIndex(), receiver, slot.methodIndex(),
                                 Qt::QueuedConnection | Qt::UniqueConnection);
        else
            QMetaObject::disconnect(this, signal.methodIndex(), receiver, slot.methodIndex());
    }
}

QJsonObject topicbase_t::toJson() const
{
    return utility::getInstance()->serializer()->serializeImpl(
        QVariant::fromValue(const_cast<QObject*>(static_cast<QObject const*>(this)))).toObject();
}

bool topicbase_t::isOwnJson(QJsonObject const& json) const
{
    return utility::getInstance()->serializer()->isSerializedForm(this, json);
}

void topicbase_t::publishSelf()
{
    // The image wants the same JSON at its next rebuild: an observer keeps it.
    Q_EMIT onUpdated(getPacketUpdated(topic, observer ? observer->objectJson(this) : toJson()));
}

void topicbase_t::publishField(QString const& key, QJsonValue const& value)
{
    Q_EMIT onUpdated(getPacketUpdated(topic + QLatin1Char('/') + key, value));
}

void topicbase_t::refuseNull()
{
    Q_EMIT onObjectError(getPacketUpdated(topic, QJsonValue()), QStringLiteral("Not permitted nullptr"));
}

void topicbase_t::copyValues(topicbase_t const* other, value_scope_t scope)
{
    if (!other || other == this)
        return;
    for (QMetaProperty const& property : valueProperties(metaObject(), scope))
        property.write(this, property.read(other));
}

bool topicbase_t::sameValues(topicbase_t const* other, value_scope_t scope) const
{
    if (!other)
        return false;
    for (QMetaProperty const& property : valueProperties(metaObject(), scope)) {
        if (property.read(this) != property.read(other))
            return false;
    }
    return true;
}

bool topicbase_t::updateValues(topicbase_t const* other, bool _notify)
{
    if (!other) {
        refuseNull();
        return false;
    }
    copyValues(other);
    if (_notify)
        publishSelf();
    return true;
}

void topicbase_t::updateField(char const* key, QVariant const& value, bool _notify)
{
    Q_ASSERT_X(metaObject()->indexOfProperty(key) >= 0, "updateField", key);
    setProperty(key, value);
    if (_notify)
        publishSelf();
}

} // namespace base
} // namespace database
