#ifndef PLATFORM_QJSONSERIALIZER_QJSONSERIALIZER_H
#define PLATFORM_QJSONSERIALIZER_QJSONSERIALIZER_H

#include <QHash>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QMap>
#include <QMetaType>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <type_traits>

#include "platform/qjsonserializer/qjsondeserializationexception.h"
#include "platform/qjsonserializer/qjsonserializer_export.h"
#include "platform/qjsonserializer/qjsonserializerexception.h"

/**
 * Converts QObject trees, Qt containers and plain values to JSON and back,
 * driven by the Qt meta-object system.
 *
 * A QObject becomes a JSON object of its stored properties (base class
 * first); a null pointer becomes null. Maps with QString keys become JSON
 * objects, lists become arrays, numbers, booleans and strings map directly,
 * enumerations are written as their integer, and any other type with
 * registered converters to and from QString is written as that string.
 *
 * Containers of object pointers must be registered (registerMapAlias(),
 * registerListAlias(), registerAlias()) so that they can be iterated and
 * filled without knowing their C++ type; object classes must be registered
 * (registerObjectType()) to be created from their "@class" name.
 *
 * Class descriptions are computed once per class and shared by all
 * serializers; a serializer may be used from several threads at once as
 * long as its settings are not changed meanwhile.
 */
class QJSONSERIALIZER_EXPORT QJsonSerializer : public QObject
{
    Q_OBJECT

public:
    /// Whether objects carry their class name under "@class".
    enum Polymorphing {
        Disabled = 0, ///< neither written nor read
        Enabled = 1,  ///< written for classes marked Q_CLASSINFO("polymorphic", "true"), read when present
        Forced = 2    ///< written for every class, and required on read
    };
    Q_ENUM(Polymorphing)

    /// How the "@class" value is written. Reading only looks at what follows the last "::".
    enum PolymorphingMode {
        QualifiedName = 0, ///< with namespaces, as the meta-object names the class
        ShortName = 1      ///< without namespaces
    };
    Q_ENUM(PolymorphingMode)

    explicit QJsonSerializer(QObject* parent = nullptr);

    void setPolymorphing(Polymorphing polymorphing);
    Polymorphing polymorphing() const;
    void setPolymorphingMode(PolymorphingMode mode);
    PolymorphingMode polymorphingMode() const;

    /// Throws QJsonSerializerException when some value has no JSON form.
    QJsonValue serializeImpl(QVariant const& data) const;
    /// The compact text of json, byte for byte as QJsonDocument writes it,
    /// when json equals one of the last objects serializeImpl(data) wrote
    /// whole on this thread, of a class of only booleans, integers and
    /// strings, and with nothing in it that Qt would write otherwise (non-ASCII
    /// or control characters, integers of 16 digits or more); empty otherwise.
    /// Whoever writes the JSON of an object just serialized need not write it
    /// again.
    static QByteArray recentText(QJsonObject const& json);

    /**
     * Asked for every map-valued property of an object, with the keys that
     * lead from the top to it (the property's name last): true when it has
     * put the property's JSON in out, which is then taken instead of reading
     * the map. Lets a caller that keeps the JSON of large maps skip them.
     */
    using MapSubstitute = std::function<bool(QObject const* owner, QStringList const& path, QJsonValue& out)>;
    /**
     * What repeated writings of one tree keep between them: the JSON of each
     * object last written through its compact text, taken again while the
     * text is the same, since parsing the text is most of such an object's
     * cost. Objects not met in a writing are forgotten after it. Its contents
     * are the serializer's own; one memo serves one tree on one thread.
     */
    struct TextMemo {
        struct Entry {
            QByteArray text;
            QJsonObject json;
        };
        QHash<QObject const*, Entry> entries; // of the last writing
        QHash<QObject const*, Entry> met;     // of the writing under way
    };

    /// serializeImpl() with substitute asked as described there, and memo,
    /// when given, remembering and lending objects' JSON as described there.
    QJsonValue serializeImpl(QVariant const& data, MapSubstitute const& substitute, TextMemo* memo = nullptr) const;

    /// Whether json is exactly what serializeImpl() gives for object, told
    /// without serializing it: known only for an object whose stored values
    /// are all text, booleans and integers under ASCII names of their own;
    /// false for any other.
    bool isSerializedForm(QObject const* object, QJsonObject const& json) const;

    /**
     * Builds a value of the given meta-type from @p json. Objects created at
     * the top level (the value itself, or the elements of a top-level
     * container) get @p parent; nested ones get the object that holds them.
     * Throws QJsonDeserializationException when the JSON does not fit; then
     * every object created so far has been deleted.
     */
    QVariant deserialize(QJsonValue const& json, int metaTypeId, QObject* parent = nullptr) const;

    template<class T>
    QJsonValue serialize(T const& data) const
    {
        return serializeImpl(QVariant::fromValue(data));
    }

    template<class T>
    T deserialize(QJsonValue const& json, QObject* parent = nullptr) const
    {
        return deserialize(json, qMetaTypeId<T>(), parent).template value<T>();
    }

    /// Makes T creatable from its "@class" name. Safe to call more than once.
    template<class T>
    static void registerObjectType()
    {
        static_assert(std::is_base_of_v<QObject, T>, "registerObjectType() takes a QObject subclass");
        qRegisterMetaType<T*>();
        registerClass(&T::staticMetaObject);
    }

    /// Registers T and QMap<QString, T*> under @p alias.
    template<class T>
    static void registerMapAlias(char const* alias)
    {
        registerObjectType<T>();
        registerAlias<QMap<QString, T*>>(alias);
        registerMapAppend(QMetaType::fromType<QMap<QString, T*>>(), &appendToMap<T>);
    }

    /// Registers T and QList<T*> under @p alias.
    template<class T>
    static void registerListAlias(char const* alias)
    {
        registerObjectType<T>();
        registerAlias<QList<T*>>(alias);
    }

    /// Registers a container type (and its iterable views) under @p alias.
    template<class Container>
    static void registerAlias(char const* alias)
    {
        qRegisterMetaType<Container>(alias);
    }

    /// Adds (key, *mapped) to a map being read, where keys come in their JSON
    /// order, which is mostly the map's own: with the end as hint, most
    /// insertions skip the search that the generic setter does twice.
    using MapAppend = void (*)(void* map, QString const& key, void const* mapped);

private:
    static void registerClass(QMetaObject const* metaObject);
    static void registerMapAppend(QMetaType map, MapAppend append);

    template<class T>
    static void appendToMap(void* map, QString const& key, void const* mapped)
    {
        auto& typed = *static_cast<QMap<QString, T*>*>(map);
        typed.insert(typed.cend(), key, *static_cast<T* const*>(mapped));
    }

    Polymorphing m_polymorphing = Enabled;
    PolymorphingMode m_polymorphingMode = QualifiedName;
};

#endif // PLATFORM_QJSONSERIALIZER_QJSONSERIALIZER_H
