#include "platform/qjsonserializer/qjsonserializer.h"

#include <QAssociativeIterable>
#include <QCborValue>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMetaProperty>
#include <QMultiHash>
#include <QReadWriteLock>
#include <QSequentialIterable>
#include <QSet>
#include <QVarLengthArray>
#include <QStringList>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

namespace {

// A property pointing back up the tree would otherwise recurse until the
// stack runs out; real data is nowhere near this deep.
constexpr int maxDepth = 256;

QString const classKey = QStringLiteral("@class");

enum class Kind : quint8 {
    Unsupported,
    Null,
    Bool,
    Signed,   // any signed integer or enumeration, `size` bytes
    Unsigned, // likewise unsigned
    Double,
    Float,
    String,
    Convertible, // has converters to and from QString
    Object,      // pointer to a QObject subclass
    Map,         // associative container with QString keys
    List,        // sequential container
    Variant,
    JsonValue,
    JsonObject,
    JsonArray,
};

/// How values of one meta-type are read and written; computed once per type.
struct TypeInfo {
    QMetaType type;
    Kind kind = Kind::Unsupported;
    int size = 0;
    QMetaObject const* metaObject = nullptr;
    QMetaAssociation association;
    QMetaSequence sequence;
    TypeInfo const* element = nullptr; // mapped type of a Map, value type of a List
    QJsonSerializer::MapAppend append = nullptr; // of a registered map of objects
    QString problem;                   // why the type has no JSON form
};

struct PropertyInfo {
    QMetaProperty property;
    QString name;
    QLatin1StringView latin1Name; // the meta-object's own text, which lives as long as it
    TypeInfo const* type;
    bool writable;
    bool asciiName; // then latin1Name is the name; a UTF-8 one is searched as name
    bool scalar;    // text, a boolean or an integer: written into an object's text (Writer::textObject)
    int index;      // the property's index in its meta-object, for meta-calls
};

/// The stored properties of one class, computed once per meta-object.
struct ClassInfo {
    QString qualifiedName;
    QString shortName;
    bool polymorphic = false; // Q_CLASSINFO("polymorphic", "true"), here or in a base class
    int constructor = -1;     // of Class(QObject*), found once instead of at every instance
    std::vector<PropertyInfo> properties;
    // Every name is ASCII and its own: such an object is written as compact
    // text and parsed, other values put in afterwards (Writer::textObject).
    bool textual = false;
    // Textual, and every value is a scalar: nothing is put in after the text.
    bool flat = false;
    // The properties by index in the order QJsonObject keeps their keys,
    // -1 standing for the class key in the second.
    std::vector<int> keyOrder;
    std::vector<int> classKeyOrder;
};

bool isAscii(char const* text)
{
    for (; *text; ++text) {
        if (static_cast<unsigned char>(*text) >= 0x80)
            return false;
    }
    return true;
}

QStringView afterLastColons(QStringView name)
{
    qsizetype const cut = name.lastIndexOf(u"::");
    return cut < 0 ? name : name.mid(cut + 2);
}

/**
 * Process-wide caches. Entries are never removed while the process runs, so
 * the pointers handed out stay valid without holding the lock.
 */
class Registry
{
public:
    ~Registry()
    {
        qDeleteAll(m_types);
        qDeleteAll(m_retired);
        qDeleteAll(m_classes);
    }

    TypeInfo const* type(QMetaType type);
    ClassInfo const* classInfo(QMetaObject const* metaObject);
    void addClass(QMetaObject const* metaObject);
    void addMapAppend(QMetaType map, QJsonSerializer::MapAppend append);
    QMetaObject const* findClass(QString const& name, QMetaObject const* declared);

private:
    TypeInfo describe(QMetaType type);

    QReadWriteLock m_lock;
    QHash<int, TypeInfo*> m_types;
    std::vector<TypeInfo*> m_retired; // superseded Unsupported entries, still referenced
    QHash<QMetaObject const*, ClassInfo*> m_classes;
    QHash<int, QJsonSerializer::MapAppend> m_appends;
    QMultiHash<QString, QMetaObject const*> m_shortNames;
};

Q_GLOBAL_STATIC(Registry, registry)

TypeInfo const* Registry::type(QMetaType type)
{
    // id() also runs the container's legacy registration, which installs its iterable views.
    int const id = type.id();
    {
        QReadLocker locker(&m_lock);
        TypeInfo const* found = m_types.value(id);
        if (found && found->kind != Kind::Unsupported)
            return found;
    }
    // An Unsupported answer is asked again: the container may have been
    // registered since. Described outside the lock because describing a
    // container describes its element type too.
    auto described = std::make_unique<TypeInfo>(describe(type));
    QWriteLocker locker(&m_lock);
    TypeInfo*& slot = m_types[id];
    if (slot) {
        if (slot->kind != Kind::Unsupported || described->kind == Kind::Unsupported)
            return slot;
        m_retired.push_back(slot);
    }
    slot = described.release();
    return slot;
}

TypeInfo Registry::describe(QMetaType type)
{
    TypeInfo info;
    info.type = type;
    info.size = int(type.sizeOf());
    switch (type.id()) {
    case QMetaType::Bool: info.kind = Kind::Bool; return info;
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::Short:
    case QMetaType::Int:
    case QMetaType::Long:
    case QMetaType::LongLong: info.kind = Kind::Signed; return info;
    case QMetaType::UChar:
    case QMetaType::UShort:
    case QMetaType::UInt:
    case QMetaType::ULong:
    case QMetaType::ULongLong: info.kind = Kind::Unsigned; return info;
    case QMetaType::Double: info.kind = Kind::Double; return info;
    case QMetaType::Float: info.kind = Kind::Float; return info;
    case QMetaType::QString: info.kind = Kind::String; return info;
    // Offers a sequential view too, but JSON readers expect text, not an array of bytes.
    case QMetaType::QByteArray: info.kind = Kind::Convertible; return info;
    case QMetaType::QVariant: info.kind = Kind::Variant; return info;
    case QMetaType::QJsonValue: info.kind = Kind::JsonValue; return info;
    case QMetaType::QJsonObject: info.kind = Kind::JsonObject; return info;
    case QMetaType::QJsonArray: info.kind = Kind::JsonArray; return info;
    case QMetaType::Nullptr: info.kind = Kind::Null; return info;
    case QMetaType::UnknownType: info.problem = QStringLiteral("unknown type"); return info;
    default: break;
    }

    QMetaType::TypeFlags const flags = type.flags();
    if (flags & QMetaType::PointerToQObject) {
        info.metaObject = type.metaObject();
        if (info.metaObject)
            info.kind = Kind::Object;
        else
            info.problem = QStringLiteral("no meta-object for %1").arg(QLatin1StringView(type.name()));
        return info;
    }
    if (flags & QMetaType::IsEnumeration) {
        if (info.size == 1 || info.size == 2 || info.size == 4 || info.size == 8)
            info.kind = flags & QMetaType::IsUnsignedEnumeration ? Kind::Unsigned : Kind::Signed;
        else
            info.problem = QStringLiteral("enumeration %1 has an unusual size").arg(QLatin1StringView(type.name()));
        return info;
    }

    // Containers before string conversion: QStringList also converts to QString.
    // The views need an instance; a default-constructed one serves.
    QMetaType const associative = QMetaType::fromType<QAssociativeIterable>();
    QMetaType const sequential = QMetaType::fromType<QSequentialIterable>();
    if (QMetaType::canView(type, associative)) {
        QVariant sample(type);
        QAssociativeIterable view;
        if (QMetaType::view(type, sample.data(), associative, &view)) {
            info.association = view.metaContainer();
            QMetaAssociation const& a = info.association;
            if (a.keyMetaType() != QMetaType::fromType<QString>()) {
                info.problem = QStringLiteral("%1: only maps with QString keys have a JSON form")
                                   .arg(QLatin1StringView(type.name()));
            } else if (!a.mappedMetaType().isValid() || !a.canGetKeyAtConstIterator()
                       || !a.canGetMappedAtConstIterator() || !a.canSetMappedAtKey() || !a.canClear()) {
                info.problem = QStringLiteral("%1 has no mapped values to write and read")
                                   .arg(QLatin1StringView(type.name()));
            } else {
                info.kind = Kind::Map;
                info.element = this->type(a.mappedMetaType());
                QReadLocker locker(&m_lock);
                info.append = m_appends.value(type.id());
            }
            return info;
        }
    }
    if (QMetaType::canView(type, sequential)) {
        QVariant sample(type);
        QSequentialIterable view;
        if (QMetaType::view(type, sample.data(), sequential, &view)) {
            info.sequence = view.metaContainer();
            QMetaSequence const& s = info.sequence;
            if (!s.canGetValueAtConstIterator() || !s.canAddValue() || !s.canClear()) {
                info.problem = QStringLiteral("%1 cannot be filled element by element")
                                   .arg(QLatin1StringView(type.name()));
            } else {
                info.kind = Kind::List;
                info.element = this->type(s.valueMetaType());
            }
            return info;
        }
    }

    QMetaType const string = QMetaType::fromType<QString>();
    if (QMetaType::canConvert(type, string) && QMetaType::canConvert(string, type)) {
        info.kind = Kind::Convertible;
        return info;
    }

    info.problem = QStringLiteral("no JSON form for type %1 (register the container, "
                                  "or converters to and from QString)")
                       .arg(QLatin1StringView(type.name()));
    return info;
}

ClassInfo const* Registry::classInfo(QMetaObject const* metaObject)
{
    {
        QReadLocker locker(&m_lock);
        if (ClassInfo const* found = m_classes.value(metaObject))
            return found;
    }
    auto info = std::make_unique<ClassInfo>();
    info->qualifiedName = QString::fromUtf8(metaObject->className());
    info->shortName = afterLastColons(info->qualifiedName).toString();
    int const marker = metaObject->indexOfClassInfo("polymorphic");
    info->polymorphic = marker >= 0 && qstrcmp(metaObject->classInfo(marker).value(), "true") == 0;
    info->constructor = metaObject->indexOfConstructor(
        QMetaObject::normalizedSignature((info->shortName + QStringLiteral("(QObject*)")).toUtf8().constData()));
    // Starting past QObject's own properties leaves objectName out.
    for (int i = QObject::staticMetaObject.propertyCount(); i < metaObject->propertyCount(); ++i) {
        QMetaProperty const property = metaObject->property(i);
        if (!property.isStored() || !property.isReadable())
            continue;
        info->properties.push_back(PropertyInfo{property, QString::fromUtf8(property.name()),
                                                QLatin1StringView(property.name()), type(property.metaType()),
                                                property.isWritable(), isAscii(property.name()), false,
                                                property.propertyIndex()});
        Kind const kind = info->properties.back().type->kind;
        info->properties.back().scalar = kind == Kind::Bool || kind == Kind::Signed || kind == Kind::String;
    }
    QSet<QString> names;
    info->textual = std::all_of(info->properties.begin(), info->properties.end(), [&names](PropertyInfo const& p) {
        bool const fresh = !names.contains(p.name);
        names.insert(p.name);
        return fresh && p.asciiName;
    });
    info->flat = info->textual && std::all_of(info->properties.begin(), info->properties.end(),
                                              [](PropertyInfo const& p) { return p.scalar; });
    // ASCII keys are kept in the order of their bytes.
    auto const keyOf = [&info](int index) {
        return index < 0 ? QLatin1StringView("@class") : info->properties[std::size_t(index)].latin1Name;
    };
    for (int i = 0; i < int(info->properties.size()); ++i)
        info->keyOrder.push_back(i);
    std::sort(info->keyOrder.begin(), info->keyOrder.end(), [&keyOf](int a, int b) { return keyOf(a) < keyOf(b); });
    info->classKeyOrder = info->keyOrder;
    info->classKeyOrder.insert(std::lower_bound(info->classKeyOrder.begin(), info->classKeyOrder.end(), -1,
                                                [&keyOf](int a, int b) { return keyOf(a) < keyOf(b); }),
                               -1);
    QWriteLocker locker(&m_lock);
    ClassInfo*& slot = m_classes[metaObject];
    if (!slot)
        slot = info.release();
    return slot;
}

void Registry::addClass(QMetaObject const* metaObject)
{
    QString const shortName = afterLastColons(QString::fromUtf8(metaObject->className())).toString();
    QWriteLocker locker(&m_lock);
    if (!m_shortNames.contains(shortName, metaObject))
        m_shortNames.insert(shortName, metaObject);
}

void Registry::addMapAppend(QMetaType map, QJsonSerializer::MapAppend append)
{
    int const id = map.id();
    QWriteLocker locker(&m_lock);
    m_appends.insert(id, append);
    // A map described before its registration learns it now.
    if (TypeInfo* described = m_types.value(id))
        described->append = append;
}

QMetaObject const* Registry::findClass(QString const& name, QMetaObject const* declared)
{
    QString const shortName = afterLastColons(name).toString();
    QMetaObject const* candidate = nullptr;
    QReadLocker locker(&m_lock);
    for (auto it = m_shortNames.constFind(shortName); it != m_shortNames.cend() && it.key() == shortName; ++it) {
        QMetaObject const* metaObject = it.value();
        if (!metaObject->inherits(declared))
            continue;
        // Two registered classes may share a short name; a qualified name settles it.
        if (name == QLatin1StringView(metaObject->className()))
            return metaObject;
        if (!candidate)
            candidate = metaObject;
    }
    return candidate ? candidate : declared;
}

/// Thrown inside the engine; each level on the way out adds its key to the path.
struct Failure {
    QString reason;
    QStringList path;

    QString message() const
    {
        return path.isEmpty() ? reason : path.join(QLatin1Char('/')) + QLatin1String(": ") + reason;
    }
};

[[noreturn]] void fail(QString reason)
{
    throw Failure{std::move(reason), {}};
}

TypeInfo const* usable(TypeInfo const* type)
{
    if (Q_LIKELY(type->kind != Kind::Unsupported))
        return type;
    type = registry()->type(type->type);
    if (type->kind == Kind::Unsupported)
        fail(type->problem);
    return type;
}

// Keeps a container's iterators released whatever happens while iterating.
class ConstIterators
{
public:
    ConstIterators(QMetaContainer const& container, void const* data)
        : m_container(container)
        , m_it(container.constBegin(data))
        , m_end(container.constEnd(data))
    {
    }
    ~ConstIterators()
    {
        m_container.destroyConstIterator(m_it);
        m_container.destroyConstIterator(m_end);
    }
    ConstIterators(ConstIterators const&) = delete;
    ConstIterators& operator=(ConstIterators const&) = delete;

    bool atEnd() const { return m_container.compareConstIterator(m_it, m_end); }
    void next() { m_container.advanceConstIterator(m_it, 1); }
    void const* current() const { return m_it; }

private:
    QMetaContainer const& m_container;
    void* m_it;
    void* m_end;
};

qint64 loadSigned(void const* data, int size)
{
    switch (size) {
    case 1: return *static_cast<qint8 const*>(data);
    case 2: return *static_cast<qint16 const*>(data);
    case 4: return *static_cast<qint32 const*>(data);
    default: return *static_cast<qint64 const*>(data);
    }
}

quint64 loadUnsigned(void const* data, int size)
{
    switch (size) {
    case 1: return *static_cast<quint8 const*>(data);
    case 2: return *static_cast<quint16 const*>(data);
    case 4: return *static_cast<quint32 const*>(data);
    default: return *static_cast<quint64 const*>(data);
    }
}

template<class Integer>
void store(void* target, int size, Integer value)
{
    switch (size) {
    case 1: *static_cast<quint8*>(target) = quint8(value); break;
    case 2: *static_cast<quint16*>(target) = quint16(value); break;
    case 4: *static_cast<quint32*>(target) = quint32(value); break;
    default: *static_cast<quint64*>(target) = quint64(value); break;
    }
}

class Writer
{
public:
    Writer(QJsonSerializer::Polymorphing polymorphing, QJsonSerializer::PolymorphingMode mode,
           QJsonSerializer::MapSubstitute const* substitute = nullptr, QJsonSerializer::TextMemo* memo = nullptr)
        : m_polymorphing(polymorphing)
        , m_shortNames(mode == QJsonSerializer::ShortName)
        , m_substitute(substitute && *substitute ? substitute : nullptr)
        , m_memo(memo)
    {
    }

    /// The compact text of the object written at the top, when it is the one
    /// its JSON is written as (see QJsonSerializer::recentText()); else empty.
    QByteArray topText;

    QJsonValue value(void const* data, TypeInfo const* type, int depth)
    {
        type = usable(type);
        switch (type->kind) {
        case Kind::Bool: return *static_cast<bool const*>(data);
        case Kind::Signed: return loadSigned(data, type->size);
        case Kind::Unsigned: {
            quint64 const v = loadUnsigned(data, type->size);
            if (v <= quint64(std::numeric_limits<qint64>::max()))
                return qint64(v);
            return double(v);
        }
        case Kind::Double: return *static_cast<double const*>(data);
        case Kind::Float: return double(*static_cast<float const*>(data));
        case Kind::String: return *static_cast<QString const*>(data);
        case Kind::Convertible: {
            QString text;
            if (!QMetaType::convert(type->type, data, QMetaType::fromType<QString>(), &text))
                fail(QStringLiteral("cannot convert a %1 to a string").arg(QLatin1StringView(type->type.name())));
            return text;
        }
        case Kind::Object: {
            QObject const* object = *static_cast<QObject* const*>(data);
            return object ? QJsonValue(this->object(object, depth)) : QJsonValue(QJsonValue::Null);
        }
        case Kind::Map: return map(data, type, depth);
        case Kind::List: return list(data, type, depth);
        case Kind::Variant: return variant(*static_cast<QVariant const*>(data), depth);
        case Kind::JsonValue: return *static_cast<QJsonValue const*>(data);
        case Kind::JsonObject: return *static_cast<QJsonObject const*>(data);
        case Kind::JsonArray: return *static_cast<QJsonArray const*>(data);
        case Kind::Null:
        case Kind::Unsupported: break;
        }
        return QJsonValue::Null;
    }

    /// Whether an object of this class carries the class key.
    bool writesClass(ClassInfo const* info) const
    {
        return m_polymorphing == QJsonSerializer::Forced
            || (m_polymorphing == QJsonSerializer::Enabled && info->polymorphic);
    }

    /// See QJsonSerializer::isSerializedForm().
    bool isSerializedForm(QObject const* object, QJsonObject const& json)
    {
        ClassInfo const* info = registry()->classInfo(object->metaObject());
        if (!info->flat)
            return false;
        bool const classKeyed = writesClass(info);
        // With every property's key found, equal sizes leave no other key.
        if (json.size() != qsizetype(info->properties.size()) + (classKeyed ? 1 : 0))
            return false;
        // The keys in step with the object's own: no search for any of them.
        std::vector<int> const& order = classKeyed ? info->classKeyOrder : info->keyOrder;
        QString string;
        auto it = json.constBegin();
        for (int const index : order) {
            QJsonValue const value = it.value();
            if (index < 0) {
                if (it.key() != QLatin1StringView("@class")
                    || value.toString() != (m_shortNames ? info->shortName : info->qualifiedName) || !value.isString())
                    return false;
                ++it;
                continue;
            }
            PropertyInfo const& property = info->properties[std::size_t(index)];
            if (it.key() != property.latin1Name)
                return false;
            ++it;
            switch (property.type->kind) {
            case Kind::Bool: {
                bool stored = false;
                readFlat(object, property, &stored);
                if (!value.isBool() || value.toBool() != stored)
                    return false;
                break;
            }
            case Kind::Signed: {
                qint64 stored = 0;
                readFlat(object, property, &stored);
                // An integer, as the text's number is parsed; 1.0 would be written otherwise.
                QCborValue const number = QCborValue::fromJsonValue(value);
                if (!number.isInteger() || number.toInteger() != loadSigned(&stored, property.type->size))
                    return false;
                break;
            }
            default:
                readFlat(object, property, &string);
                if (!value.isString() || value.toString() != string)
                    return false;
                break;
            }
        }
        return true;
    }

    QJsonValue variant(QVariant const& data, int depth)
    {
        if (!data.isValid())
            return QJsonValue::Null;
        return value(data.constData(), registry()->type(data.metaType()), depth);
    }

private:
    QJsonObject object(QObject const* object, int depth)
    {
        if (depth > maxDepth)
            fail(QStringLiteral("objects nested more than %1 deep; does a property point back up the tree?")
                     .arg(maxDepth));
        // Consecutive objects are usually of one class: skip the locked lookup then.
        QMetaObject const* metaObject = object->metaObject();
        if (metaObject != m_lastMetaObject) {
            m_lastClass = registry()->classInfo(metaObject);
            m_lastMetaObject = metaObject;
        }
        ClassInfo const* info = m_lastClass;

        QJsonObject out;
        bool const classKeyed = writesClass(info);
        if (textObject(object, info, classKeyed, out, depth == 0 ? &topText : nullptr)) {
            // Each key is in place: an insert only replaces its null.
            for (PropertyInfo const& property : info->properties) {
                if (!property.scalar)
                    insert(out, property, propertyValue(object, property, depth));
            }
            return out;
        }
        if (classKeyed)
            out.insert(QLatin1StringView("@class"), m_shortNames ? info->shortName : info->qualifiedName);
        for (PropertyInfo const& property : info->properties)
            insert(out, property, propertyValue(object, property, depth));
        return out;
    }

    /// One property's JSON, or its map's from the substitute; a failure gets the property's name on its path.
    QJsonValue propertyValue(QObject const* object, PropertyInfo const& property, int depth)
    {
        try {
            if (m_substitute) {
                // The path is only kept for a substitute, which needs it to find its map.
                PathStep const step(m_path, property.name);
                QJsonValue substituted;
                if (usable(property.type)->kind == Kind::Map && (*m_substitute)(object, m_path, substituted))
                    return substituted;
                return read(object, property, depth);
            }
            return read(object, property, depth);
        } catch (Failure& failure) {
            failure.path.prepend(property.name);
            throw;
        }
    }

    /// The compact text of an object, written straight into a buffer.
    class FlatText
    {
    public:
        void add(char c) { m_text.append(c); }
        void add(char const* bytes, qsizetype size) { m_text.append(bytes, size); }
        QByteArray bytes() const { return QByteArray::fromRawData(m_text.constData(), m_text.size()); }
        /// Whether the text is byte for byte the one Qt writes for its JSON,
        /// and for any JSON equal to that: no \\u escape (Qt writes such
        /// characters as they are), no integer whose double would be written
        /// in another form.
        bool exact() const { return m_exact; }

        /// Appends text as a JSON string with only ASCII inside; false, having
        /// appended part of it, when it holds a surrogate, whose unpaired half
        /// would not come back from the parser as it went in.
        bool addString(QStringView text)
        {
            static char const hex[] = "0123456789abcdef";
            // At worst every character takes six bytes, as \uXXXX.
            qsizetype const start = m_text.size();
            m_text.resize(start + 6 * text.size() + 2);
            char* out = m_text.data() + start;
            *out++ = '"';
            for (QChar const c : text) {
                char16_t const u = c.unicode();
                if (u >= 0x20 && u < 0x7f && u != '"' && u != '\\') {
                    *out++ = char(u);
                } else if (u == '"' || u == '\\') {
                    *out++ = '\\';
                    *out++ = char(u);
                } else if (QChar::isSurrogate(u)) {
                    m_text.resize(out - m_text.data());
                    return false;
                } else {
                    m_exact = false;
                    char const escaped[] = {'\\', 'u', hex[u >> 12], hex[(u >> 8) & 15], hex[(u >> 4) & 15], hex[u & 15]};
                    std::memcpy(out, escaped, sizeof escaped);
                    out += sizeof escaped;
                }
            }
            *out++ = '"';
            m_text.resize(out - m_text.data());
            return true;
        }

        void addInteger(qint64 value)
        {
            // A double of more digits is written with an exponent.
            if (value <= -1000000000000000LL || value >= 1000000000000000LL)
                m_exact = false;
            char digits[24];
            auto const [end, error] = std::to_chars(digits, digits + sizeof digits, value);
            add(digits, end - digits);
        }

    private:
        QVarLengthArray<char, 512> m_text;
        bool m_exact = true;
    };

    /// Reads a property of type Bool, Signed or String into
    /// value, which holds one of them: the meta-call writes in place where
    /// QMetaProperty::read would wrap a QVariant around every value.
    static void readFlat(QObject const* object, PropertyInfo const& property, void* value)
    {
        int status = -1;
        void* argv[] = {value, nullptr, &status};
        QMetaObject::metacall(const_cast<QObject*>(object), QMetaObject::ReadProperty, property.index,
                              argv);
    }

    /// The object of a textual class (ClassInfo::textual) through its compact
    /// text, which builds the QJsonObject in one pass where inserting member
    /// by member costs several times as much (each new key is made a value of
    /// its own and searched for). The scalar values are written in; every
    /// other property has null in its place, for the caller to replace, so
    /// no substitute is missed. False, with out untouched, for any other
    /// class or a value the text can't carry.
    bool textObject(QObject const* object, ClassInfo const* info, bool classKeyed, QJsonObject& out,
                    QByteArray* exactText = nullptr)
    {
        if (!info->textual)
            return false;
        FlatText text;
        text.add('{');
        // The keys in the order a JSON object keeps them: the text is then
        // the one Qt writes for it, and its parse has nothing to sort.
        bool first = true;
        QString string;
        for (int const index : classKeyed ? info->classKeyOrder : info->keyOrder) {
            if (!first)
                text.add(',');
            first = false;
            if (index < 0) {
                text.add("\"@class\":", 9);
                if (!text.addString(m_shortNames ? info->shortName : info->qualifiedName))
                    return false;
                continue;
            }
            PropertyInfo const& property = info->properties[std::size_t(index)];
            text.add('"');
            text.add(property.latin1Name.data(), property.latin1Name.size());
            text.add("\":", 2);
            if (!property.scalar) {
                text.add("null", 4);
                continue;
            }
            switch (property.type->kind) {
            case Kind::Bool: {
                bool value = false;
                readFlat(object, property, &value);
                if (value)
                    text.add("true", 4);
                else
                    text.add("false", 5);
                break;
            }
            case Kind::Signed: {
                // Wide enough for any size; only the first size bytes are written and read.
                qint64 value = 0;
                readFlat(object, property, &value);
                text.addInteger(loadSigned(&value, property.type->size));
                break;
            }
            default:
                readFlat(object, property, &string);
                if (!text.addString(string))
                    return false;
                break;
            }
        }
        text.add('}');
        QByteArray const bytes = text.bytes();
        // Without null in place of other values, the text is the JSON's own.
        if (exactText && info->flat && text.exact())
            *exactText = QByteArray(bytes.constData(), bytes.size());
        if (m_memo) {
            // The same text parses to the same JSON, whichever object wrote it.
            auto const known = m_memo->entries.constFind(object);
            if (known != m_memo->entries.constEnd() && known->text == bytes) {
                out = known->json;
                m_memo->met.insert(object, *known);
                return true;
            }
        }
        QJsonParseError error;
        QJsonDocument const document = QJsonDocument::fromJson(bytes, &error);
        if (error.error != QJsonParseError::NoError || !document.isObject())
            return false;
        out = document.object();
        if (m_memo)
            m_memo->met.insert(object, {QByteArray(bytes.constData(), bytes.size()), out});
        return true;
    }

    /// A Latin-1 key is stored as it is; a QString one is narrowed first.
    static void insert(QJsonObject& out, PropertyInfo const& property, QJsonValue const& value)
    {
        if (property.asciiName)
            out.insert(property.latin1Name, value);
        else
            out.insert(property.name, value);
    }

    QJsonValue read(QObject const* object, PropertyInfo const& property, int depth)
    {
        QVariant const v = property.property.read(object);
        return v.isValid() ? value(v.constData(), property.type, depth + 1) : QJsonValue(QJsonValue::Null);
    }

    /// Appends a key to the path for the lifetime of the step.
    class PathStep
    {
    public:
        PathStep(QStringList& path, QString const& key)
            : m_path(path)
        {
            m_path.append(key);
        }
        ~PathStep() { m_path.removeLast(); }
        PathStep(PathStep const&) = delete;
        PathStep& operator=(PathStep const&) = delete;

    private:
        QStringList& m_path;
    };

    QJsonObject map(void const* data, TypeInfo const* type, int depth)
    {
        QMetaAssociation const& association = type->association;
        QString key;
        QVariant mapped(association.mappedMetaType()); // one buffer, reused for each element
        QJsonObject out;
        for (ConstIterators it(association, data); !it.atEnd(); it.next()) {
            association.keyAtConstIterator(it.current(), &key);
            association.mappedAtConstIterator(it.current(), mapped.data());
            try {
                if (m_substitute) {
                    PathStep const step(m_path, key);
                    out.insert(key, value(mapped.constData(), type->element, depth + 1));
                    continue;
                }
                out.insert(key, value(mapped.constData(), type->element, depth + 1));
            } catch (Failure& failure) {
                failure.path.prepend(key);
                throw;
            }
        }
        return out;
    }

    QJsonArray list(void const* data, TypeInfo const* type, int depth)
    {
        QMetaSequence const& sequence = type->sequence;
        QVariant element(sequence.valueMetaType());
        QJsonArray out;
        qsizetype index = 0;
        for (ConstIterators it(sequence, data); !it.atEnd(); it.next(), ++index) {
            sequence.valueAtConstIterator(it.current(), element.data());
            try {
                if (m_substitute) {
                    PathStep const step(m_path, QString::number(index));
                    out.append(value(element.constData(), type->element, depth + 1));
                    continue;
                }
                out.append(value(element.constData(), type->element, depth + 1));
            } catch (Failure& failure) {
                failure.path.prepend(QString::number(index));
                throw;
            }
        }
        return out;
    }

    QJsonSerializer::Polymorphing m_polymorphing;
    bool m_shortNames;
    QJsonSerializer::MapSubstitute const* m_substitute;
    QJsonSerializer::TextMemo* m_memo;
    QStringList m_path;
    QMetaObject const* m_lastMetaObject = nullptr;
    ClassInfo const* m_lastClass = nullptr;
};

QString describeJson(QJsonValue const& json)
{
    switch (json.type()) {
    case QJsonValue::Null: return QStringLiteral("null");
    case QJsonValue::Bool: return QStringLiteral("a boolean");
    case QJsonValue::Double: return QStringLiteral("a number");
    case QJsonValue::String: return QStringLiteral("a string");
    case QJsonValue::Array: return QStringLiteral("an array");
    case QJsonValue::Object: return QStringLiteral("an object");
    case QJsonValue::Undefined: break;
    }
    return QStringLiteral("nothing");
}

[[noreturn]] void mismatch(char const* expected, QJsonValue const& json)
{
    fail(QStringLiteral("expected %1, got %2").arg(QLatin1StringView(expected), describeJson(json)));
}

[[noreturn]] void outOfRange(QJsonValue const& json, TypeInfo const* type)
{
    QString const text = json.isString() ? json.toString() : QString::number(json.toDouble(), 'g', 17);
    fail(QStringLiteral("%1 is out of range for %2").arg(text, QLatin1StringView(type->type.name())));
}

class Reader
{
public:
    Reader(QJsonSerializer::Polymorphing polymorphing, QObject* topParent)
        : m_polymorphing(polymorphing)
        , m_topParent(topParent)
    {
    }

    /// Deletes what was built so far; objects below the top level go with their parent.
    void discard()
    {
        for (auto it = m_created.rbegin(); it != m_created.rend(); ++it)
            delete *it;
        m_created.clear();
    }

    /// Reads @p json into @p target, an existing value of @p type.
    void into(QJsonValue const& json, TypeInfo const* type, void* target, QObject* parent, int depth)
    {
        type = usable(type);
        if (json.isNull() || json.isUndefined()) {
            reset(type->type, target);
            return;
        }
        switch (type->kind) {
        case Kind::Bool:
            if (!json.isBool())
                mismatch("a boolean", json);
            *static_cast<bool*>(target) = json.toBool();
            return;
        case Kind::Signed: store(target, type->size, signedValue(json, type)); return;
        case Kind::Unsigned: store(target, type->size, unsignedValue(json, type)); return;
        case Kind::Double: *static_cast<double*>(target) = number(json); return;
        case Kind::Float: *static_cast<float*>(target) = float(number(json)); return;
        case Kind::String:
            if (!json.isString())
                mismatch("a string", json);
            *static_cast<QString*>(target) = json.toString();
            return;
        case Kind::Convertible: {
            if (!json.isString())
                mismatch("a string", json);
            QString const text = json.toString();
            if (!QMetaType::convert(QMetaType::fromType<QString>(), &text, type->type, target))
                fail(QStringLiteral("\"%1\" is not a valid %2").arg(text, QLatin1StringView(type->type.name())));
            return;
        }
        case Kind::Object:
            *static_cast<QObject**>(target) = object(json, type->metaObject, parent, depth);
            return;
        case Kind::Map: map(json, type, target, parent, depth); return;
        case Kind::List: list(json, type, target, parent, depth); return;
        case Kind::Variant: *static_cast<QVariant*>(target) = json.toVariant(); return;
        case Kind::JsonValue: *static_cast<QJsonValue*>(target) = json; return;
        case Kind::JsonObject:
            if (!json.isObject())
                mismatch("an object", json);
            *static_cast<QJsonObject*>(target) = json.toObject();
            return;
        case Kind::JsonArray:
            if (!json.isArray())
                mismatch("an array", json);
            *static_cast<QJsonArray*>(target) = json.toArray();
            return;
        case Kind::Null:
        case Kind::Unsupported: break;
        }
        fail(QStringLiteral("expected null, got %1").arg(describeJson(json)));
    }

private:
    static void reset(QMetaType type, void* target)
    {
        type.destruct(target);
        // Types whose default is all zero bits have no constructor to call.
        if (!type.construct(target))
            std::memset(target, 0, size_t(type.sizeOf()));
    }

    static double number(QJsonValue const& json)
    {
        if (json.isDouble())
            return json.toDouble();
        if (json.isString()) {
            bool ok = false;
            double const value = json.toString().toDouble(&ok);
            if (ok)
                return value;
        }
        mismatch("a number", json);
    }

    // Integers also come as decimal strings: other producers quote the ones a double cannot hold.
    static qint64 signedValue(QJsonValue const& json, TypeInfo const* type)
    {
        qint64 value = 0;
        if (json.isDouble()) {
            double const d = json.toDouble();
            value = json.toInteger(std::numeric_limits<qint64>::min());
            if (value == std::numeric_limits<qint64>::min() && d != -0x1p63) {
                if (d == std::trunc(d))
                    outOfRange(json, type);
                fail(QStringLiteral("expected an integer, got %1").arg(d, 0, 'g', 17));
            }
        } else if (json.isString()) {
            bool ok = false;
            value = json.toString().toLongLong(&ok);
            if (!ok)
                fail(QStringLiteral("expected an integer, got \"%1\"").arg(json.toString()));
        } else {
            mismatch("an integer", json);
        }
        if (type->size < 8) {
            qint64 const limit = qint64(1) << (type->size * 8 - 1);
            if (value < -limit || value >= limit)
                outOfRange(json, type);
        }
        return value;
    }

    static quint64 unsignedValue(QJsonValue const& json, TypeInfo const* type)
    {
        quint64 value = 0;
        if (json.isDouble()) {
            double const d = json.toDouble();
            if (d != std::trunc(d))
                fail(QStringLiteral("expected an integer, got %1").arg(d, 0, 'g', 17));
            if (d < 0 || d >= 0x1p64)
                outOfRange(json, type);
            // Beyond qint64 the value can only be held as a double.
            value = d >= 0x1p63 ? quint64(d) : quint64(json.toInteger());
        } else if (json.isString()) {
            bool ok = false;
            value = json.toString().toULongLong(&ok);
            if (!ok) {
                json.toString().toLongLong(&ok);
                if (ok)
                    outOfRange(json, type);
                fail(QStringLiteral("expected an integer, got \"%1\"").arg(json.toString()));
            }
        } else {
            mismatch("an integer", json);
        }
        if (type->size < 8 && value >> (type->size * 8) != 0)
            outOfRange(json, type);
        return value;
    }

    QMetaObject const* chooseClass(QJsonObject const& json, QMetaObject const* declared) const
    {
        if (m_polymorphing == QJsonSerializer::Disabled)
            return declared;
        auto const it = json.constFind(QLatin1StringView("@class"));
        if (it == json.constEnd()) {
            if (m_polymorphing == QJsonSerializer::Forced)
                fail(QStringLiteral("missing \"%1\"").arg(classKey));
            return declared;
        }
        if (!it->isString()) {
            Failure failure{QStringLiteral("expected a string, got %1").arg(describeJson(*it)), {classKey}};
            throw failure;
        }
        return registry()->findClass(it->toString(), declared);
    }

    QObject* object(QJsonValue const& json, QMetaObject const* declared, QObject* parent, int depth)
    {
        if (!json.isObject())
            mismatch("an object", json);
        if (depth > maxDepth)
            fail(QStringLiteral("objects nested more than %1 deep").arg(maxDepth));
        QJsonObject const fields = json.toObject();
        QMetaObject const* metaObject = chooseClass(fields, declared);
        // Consecutive objects are usually of one class: skip the locked lookup then.
        if (metaObject != m_lastMetaObject) {
            m_lastClass = registry()->classInfo(metaObject);
            m_lastMetaObject = metaObject;
        }
        ClassInfo const* info = m_lastClass;

        // What newInstance() does, without looking the constructor up by its signature each time.
        QObject* instance = nullptr;
        if (info->constructor >= 0) {
            void* arguments[] = {&instance, &parent};
            if (metaObject->static_metacall(QMetaObject::CreateInstance, info->constructor, arguments) >= 0)
                instance = nullptr;
        }
        if (!instance)
            fail(QStringLiteral("cannot create a %1: it needs a Q_INVOKABLE constructor taking a QObject* parent")
                     .arg(QLatin1StringView(metaObject->className())));
        // Objects with one of ours as parent are deleted through it.
        if (parent == m_topParent)
            m_created.push_back(instance);

        QVarLengthArray<QJsonObject::const_iterator, 32> fieldOf;
        bool const inStep = fieldsInStep(fields, info, fieldOf);
        for (std::size_t i = 0; i < info->properties.size(); ++i) {
            PropertyInfo const& property = info->properties[i];
            if (!property.writable)
                continue;
            // A Latin-1 key compares with the object's stored keys without widening either.
            auto const field = inStep              ? fieldOf[qsizetype(i)]
                               : property.asciiName ? fields.constFind(property.latin1Name)
                                                    : fields.constFind(property.name);
            if (field == fields.constEnd())
                continue;
            try {
                QVariant value(property.type->type);
                into(*field, property.type, value.data(), instance, depth + 1);
                if (!write(instance, property, value))
                    fail(QStringLiteral("%1 refused the value").arg(QLatin1StringView(metaObject->className())));
            } catch (Failure& failure) {
                failure.path.prepend(property.name);
                throw;
            }
        }
        return instance;
    }

    /// The field of each property when the keys are exactly the class's own, as
    /// in every whole object it wrote: one walk beside its key order instead
    /// of a search per key. False when they are not.
    static bool fieldsInStep(QJsonObject const& fields, ClassInfo const* info,
                             QVarLengthArray<QJsonObject::const_iterator, 32>& fieldOf)
    {
        if (!info->textual)
            return false;
        qsizetype const count = qsizetype(info->properties.size());
        std::vector<int> const* order = fields.size() == count       ? &info->keyOrder
                                        : fields.size() == count + 1 ? &info->classKeyOrder
                                                                     : nullptr;
        if (!order)
            return false;
        fieldOf.resize(count);
        auto it = fields.constBegin();
        for (int const index : *order) {
            QString const key = it.key();
            if (index < 0) {
                if (key != QLatin1StringView("@class"))
                    return false;
            } else {
                if (key != info->properties[std::size_t(index)].latin1Name)
                    return false;
                fieldOf[index] = it;
            }
            ++it;
        }
        return true;
    }

    /// QMetaProperty::write() for a value of exactly the property's type, which
    /// is what the reader makes: no conversion to try, so the setter is called directly.
    static bool write(QObject* instance, PropertyInfo const& property, QVariant& value)
    {
        if (value.metaType() != property.property.metaType() || property.type->kind == Kind::Variant)
            return property.property.write(instance, value);
        int status = -1;
        int flags = 0;
        void* arguments[] = {value.data(), &value, &status, &flags};
        QMetaObject::metacall(instance, QMetaObject::WriteProperty, property.index, arguments);
        return status != 0;
    }

    void map(QJsonValue const& json, TypeInfo const* type, void* target, QObject* parent, int depth)
    {
        if (!json.isObject())
            mismatch("an object", json);
        QMetaAssociation const& association = type->association;
        QJsonObject const fields = json.toObject();
        association.clear(target);
        QVariant mapped(association.mappedMetaType()); // one buffer, reused for each element
        for (auto it = fields.constBegin(); it != fields.constEnd(); ++it) {
            QString const key = it.key();
            try {
                into(it.value(), type->element, mapped.data(), parent, depth + 1);
            } catch (Failure& failure) {
                failure.path.prepend(key);
                throw;
            }
            if (type->append)
                type->append(target, key, mapped.constData());
            else
                association.setMappedAtKey(target, &key, mapped.constData());
        }
    }

    void list(QJsonValue const& json, TypeInfo const* type, void* target, QObject* parent, int depth)
    {
        if (!json.isArray())
            mismatch("an array", json);
        QMetaSequence const& sequence = type->sequence;
        QJsonArray const elements = json.toArray();
        sequence.clear(target);
        QVariant element(sequence.valueMetaType());
        for (qsizetype i = 0; i < elements.size(); ++i) {
            try {
                into(elements.at(i), type->element, element.data(), parent, depth + 1);
            } catch (Failure& failure) {
                failure.path.prepend(QString::number(i));
                throw;
            }
            sequence.addValue(target, element.constData());
        }
    }

    QJsonSerializer::Polymorphing m_polymorphing;
    QObject* m_topParent;
    std::vector<QObject*> m_created; // objects without one of ours as parent
    QMetaObject const* m_lastMetaObject = nullptr;
    ClassInfo const* m_lastClass = nullptr;
};

} // namespace

QJsonSerializer::QJsonSerializer(QObject* parent)
    : QObject(parent)
{
}

void QJsonSerializer::setPolymorphing(Polymorphing polymorphing)
{
    m_polymorphing = polymorphing;
}

QJsonSerializer::Polymorphing QJsonSerializer::polymorphing() const
{
    return m_polymorphing;
}

void QJsonSerializer::setPolymorphingMode(PolymorphingMode mode)
{
    m_polymorphingMode = mode;
}

QJsonSerializer::PolymorphingMode QJsonSerializer::polymorphingMode() const
{
    return m_polymorphingMode;
}

namespace {

/// The last objects written whole with their texts, on this thread (see
/// QJsonSerializer::recentText()).
struct RecentTexts {
    static constexpr std::size_t size = 4;
    std::array<std::pair<QJsonObject, QByteArray>, size> entries;
    std::size_t next = 0;
};

RecentTexts& recentTexts()
{
    thread_local RecentTexts texts;
    return texts;
}

} // namespace

QJsonValue QJsonSerializer::serializeImpl(QVariant const& data) const
{
    Writer writer(m_polymorphing, m_polymorphingMode);
    try {
        QJsonValue json = writer.variant(data, 0);
        if (!writer.topText.isEmpty()) {
            RecentTexts& recent = recentTexts();
            recent.entries[recent.next] = {json.toObject(), std::move(writer.topText)};
            recent.next = (recent.next + 1) % RecentTexts::size;
        }
        return json;
    } catch (Failure const& failure) {
        throw QJsonSerializerException(failure.message());
    }
}

QByteArray QJsonSerializer::recentText(QJsonObject const& json)
{
    RecentTexts const& recent = recentTexts();
    // Newest first; the JSON handed out by the writing is the same object,
    // which compares at once.
    for (std::size_t i = 1; i <= RecentTexts::size; ++i) {
        auto const& slot = recent.entries[(recent.next + RecentTexts::size - i) % RecentTexts::size];
        if (!slot.second.isEmpty() && slot.first.size() == json.size() && slot.first == json)
            return slot.second;
    }
    return QByteArray();
}

bool QJsonSerializer::isSerializedForm(QObject const* object, QJsonObject const& json) const
{
    return object && Writer(m_polymorphing, m_polymorphingMode).isSerializedForm(object, json);
}

QJsonValue QJsonSerializer::serializeImpl(QVariant const& data, MapSubstitute const& substitute, TextMemo* memo) const
{
    Writer writer(m_polymorphing, m_polymorphingMode, &substitute, memo);
    if (memo) {
        memo->met.clear();
        memo->met.reserve(memo->entries.size());
    }
    // What this writing met is all that is kept, also after a failure.
    auto const keepMet = [memo] {
        if (memo) {
            memo->entries = std::move(memo->met);
            memo->met = {};
        }
    };
    try {
        QJsonValue json = writer.variant(data, 0);
        keepMet();
        return json;
    } catch (Failure const& failure) {
        keepMet();
        throw QJsonSerializerException(failure.message());
    }
}

QVariant QJsonSerializer::deserialize(QJsonValue const& json, int metaTypeId, QObject* parent) const
{
    if (!QMetaType::isRegistered(metaTypeId))
        throw QJsonDeserializationException(QStringLiteral("unknown meta-type id %1").arg(metaTypeId));
    QMetaType const type(metaTypeId);
    Reader reader(m_polymorphing, parent);
    QVariant result(type);
    try {
        reader.into(json, registry()->type(type), result.data(), parent, 0);
    } catch (Failure const& failure) {
        reader.discard();
        throw QJsonDeserializationException(failure.message());
    } catch (...) {
        reader.discard();
        throw;
    }
    return result;
}

void QJsonSerializer::registerClass(QMetaObject const* metaObject)
{
    registry()->addClass(metaObject);
}

void QJsonSerializer::registerMapAppend(QMetaType map, MapAppend append)
{
    registry()->addMapAppend(map, append);
}
