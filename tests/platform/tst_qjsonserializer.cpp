#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <memory>
#include <vector>

#include "platform/qjsonserializer/qjsonserializer.h"

/// A value type that travels as its name.
struct colour {
    QString name;
    bool operator==(colour const& other) const { return name == other.name; }
    bool operator!=(colour const& other) const { return !(*this == other); }
};
Q_DECLARE_METATYPE(colour)

struct opaque {
    int bits = 0;
};
Q_DECLARE_METATYPE(opaque)

namespace shapes {

class base_item : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("polymorphic", "true")
    Q_PROPERTY(QString label MEMBER m_label)
    Q_PROPERTY(int weight MEMBER m_weight)
    Q_PROPERTY(quint8 small MEMBER m_small)
    Q_PROPERTY(Shade shade MEMBER m_shade)
    Q_PROPERTY(QString summary READ summary STORED false)

public:
    enum Shade { Pale = 1, Deep = 2 };
    Q_ENUM(Shade)

    Q_INVOKABLE explicit base_item(QObject* parent = nullptr) : QObject(parent) { ++alive; }
    ~base_item() override { --alive; }
    QString summary() const { return m_label + QLatin1Char('!'); }

    static inline int alive = 0; // lets tests see leaks
    QString m_label;
    int m_weight = 7;
    quint8 m_small = 0;
    Shade m_shade = Pale;
};

class derived_item : public base_item
{
    Q_OBJECT
    Q_PROPERTY(double ratio MEMBER m_ratio)
    Q_PROPERTY(bool enabled MEMBER m_enabled)
    Q_PROPERTY(colour tint MEMBER m_tint)
    Q_PROPERTY(shapes::base_item* child MEMBER m_child)

public:
    Q_INVOKABLE explicit derived_item(QObject* parent = nullptr) : base_item(parent) {}

    double m_ratio = 0;
    bool m_enabled = false;
    colour m_tint;
    base_item* m_child = nullptr;
};

using map_items = QMap<QString, base_item*>;
using list_items = QList<base_item*>;
using map_string = QMap<QString, QString>;
using map_stringlist = QMap<QString, QStringList>;

class catalogue : public QObject
{
    Q_OBJECT
    Q_PROPERTY(shapes::map_items items MEMBER m_items)
    Q_PROPERTY(shapes::list_items sequence MEMBER m_sequence)
    Q_PROPERTY(QStringList tags MEMBER m_tags)
    Q_PROPERTY(shapes::map_string labels MEMBER m_labels)
    Q_PROPERTY(shapes::map_stringlist groups MEMBER m_groups)

public:
    Q_INVOKABLE explicit catalogue(QObject* parent = nullptr) : QObject(parent) {}

    map_items m_items;
    list_items m_sequence;
    QStringList m_tags;
    map_string m_labels;
    map_stringlist m_groups;
};

/// No invokable constructor: cannot be built from JSON.
class fixed_item : public QObject
{
    Q_OBJECT
};

class loop_item : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QObject* next MEMBER m_next)

public:
    QObject* m_next = this;
};

/// Only text, booleans and integers: the kind of class written through compact text.
class flat_item : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("polymorphic", "true")
    Q_PROPERTY(QString label MEMBER m_label)
    Q_PROPERTY(bool on MEMBER m_on)
    Q_PROPERTY(qint64 big MEMBER m_big)
    Q_PROPERTY(shapes::base_item::Shade shade MEMBER m_shade)

public:
    Q_INVOKABLE explicit flat_item(QObject* parent = nullptr) : QObject(parent) {}

    QString m_label;
    bool m_on = false;
    qint64 m_big = 0;
    base_item::Shade m_shade = base_item::Pale;
};

/// Only text, booleans and signed integers: a record whose JSON can be told without serializing it.
class record_item : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("polymorphic", "true")
    Q_PROPERTY(QString label MEMBER m_label)
    Q_PROPERTY(bool on MEMBER m_on)
    Q_PROPERTY(qint64 big MEMBER m_big)
    Q_PROPERTY(int count MEMBER m_count)

public:
    Q_INVOKABLE explicit record_item(QObject* parent = nullptr) : QObject(parent) {}

    QString m_label;
    bool m_on = false;
    qint64 m_big = 0;
    int m_count = 0;
};

/// Text and integers beside values the compact text leaves to be put in afterwards.
class mixed_item : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString label MEMBER m_label)
    Q_PROPERTY(QJsonValue extra MEMBER m_extra)
    Q_PROPERTY(shapes::base_item* child MEMBER m_child)
    Q_PROPERTY(double ratio MEMBER m_ratio)
    Q_PROPERTY(int count MEMBER m_count)
    Q_PROPERTY(QStringList tags MEMBER m_tags)

public:
    Q_INVOKABLE explicit mixed_item(QObject* parent = nullptr) : QObject(parent) {}

    QString m_label;
    QJsonValue m_extra;
    base_item* m_child = nullptr;
    double m_ratio = 0;
    int m_count = 0;
    QStringList m_tags;
};

} // namespace shapes

using namespace shapes;

namespace {

/// Parses any JSON value, scalars included.
QJsonValue parse(QByteArray const& text)
{
    QJsonParseError error;
    QJsonDocument const document = QJsonDocument::fromJson('[' + text + ']', &error);
    if (error.error != QJsonParseError::NoError)
        qFatal("bad JSON in the test: %s", text.constData());
    return document.array().at(0);
}

QByteArray text(QJsonValue const& value)
{
    QByteArray const wrapped = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return wrapped.mid(1, wrapped.size() - 2);
}

QJsonSerializer* makeSerializer(QJsonSerializer::Polymorphing polymorphing,
                                QJsonSerializer::PolymorphingMode mode = QJsonSerializer::ShortName)
{
    auto* serializer = new QJsonSerializer;
    serializer->setPolymorphing(polymorphing);
    serializer->setPolymorphingMode(mode);
    return serializer;
}

} // namespace

class tst_qjsonserializer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // Twice on purpose: the library registers from several places.
        for (int i = 0; i < 2; ++i) {
            QJsonSerializer::registerMapAlias<base_item>("map_items");
            QJsonSerializer::registerListAlias<base_item>("list_items");
            QJsonSerializer::registerObjectType<derived_item>();
            QJsonSerializer::registerObjectType<catalogue>();
            QJsonSerializer::registerAlias<map_string>("map_string");
            QJsonSerializer::registerAlias<map_stringlist>("map_stringlist");
        }
        QMetaType::registerConverter<colour, QString>([](colour const& c) { return c.name; });
        QMetaType::registerConverter<QString, colour>([](QString const& s) { return colour{s}; });
    }

    void polymorphicTreeRoundTrips()
    {
        catalogue source;
        auto* a = new derived_item(&source);
        a->m_label = QStringLiteral("alpha");
        a->m_weight = -3;
        a->m_shade = base_item::Deep;
        a->m_ratio = 0.25;
        a->m_enabled = true;
        a->m_tint = colour{QStringLiteral("teal")};
        a->m_child = new base_item(a);
        a->m_child->m_label = QStringLiteral("inner");
        auto* b = new base_item(&source);
        b->m_label = QStringLiteral("beta");
        source.m_items = {{QStringLiteral("a"), a}, {QStringLiteral("b"), b}};
        source.m_sequence = {b, nullptr, a};
        source.m_tags = {QStringLiteral("x"), QStringLiteral("y")};
        source.m_labels = {{QStringLiteral("k"), QStringLiteral("v")}};
        source.m_groups = {{QStringLiteral("g"), {QStringLiteral("1"), QStringLiteral("2")}}};

        std::unique_ptr<QJsonSerializer> serializer(makeSerializer(QJsonSerializer::Enabled));
        QJsonValue const json = serializer->serialize(&source);
        QJsonObject const jsonA = json[QLatin1String("items")][QLatin1String("a")].toObject();
        QCOMPARE(jsonA.value(QLatin1String("@class")).toString(), QStringLiteral("derived_item"));
        QCOMPARE(jsonA.value(QLatin1String("tint")), QJsonValue(QStringLiteral("teal")));
        QCOMPARE(jsonA.value(QLatin1String("shade")), QJsonValue(2));
        QVERIFY(!jsonA.contains(QLatin1String("summary")));
        QVERIFY(!jsonA.contains(QLatin1String("objectName")));
        QCOMPARE(json[QLatin1String("sequence")][1], QJsonValue(QJsonValue::Null));

        std::unique_ptr<catalogue> copy(serializer->deserialize<catalogue*>(json));
        QVERIFY(copy);
        auto* copiedA = qobject_cast<derived_item*>(copy->m_items.value(QStringLiteral("a")));
        QVERIFY2(copiedA, "the derived class did not survive the base-typed map");
        QCOMPARE(copiedA->parent(), copy.get());
        QVERIFY(copiedA->m_child);
        QCOMPARE(copiedA->m_child->parent(), copiedA);
        QCOMPARE(copiedA->m_tint.name, QStringLiteral("teal"));
        QCOMPARE(copy->m_sequence.size(), 3);
        QCOMPARE(copy->m_sequence.at(1), nullptr);
        QCOMPARE(copy->m_groups, source.m_groups);
        QCOMPARE(serializer->serializeImpl(QVariant::fromValue(copy.get())), json);
    }

    void classNameWritten_data()
    {
        QTest::addColumn<QJsonSerializer::Polymorphing>("polymorphing");
        QTest::addColumn<QJsonSerializer::PolymorphingMode>("mode");
        QTest::addColumn<bool>("marked");
        QTest::addColumn<QJsonValue>("expected");
        QTest::newRow("short name drops the namespace") << QJsonSerializer::Enabled << QJsonSerializer::ShortName
                                                        << true << QJsonValue(QStringLiteral("derived_item"));
        QTest::newRow("qualified name keeps it") << QJsonSerializer::Forced << QJsonSerializer::QualifiedName
                                                 << true << QJsonValue(QStringLiteral("shapes::derived_item"));
        QTest::newRow("disabled writes none") << QJsonSerializer::Disabled << QJsonSerializer::ShortName << true
                                              << QJsonValue(QJsonValue::Undefined);
        QTest::newRow("unmarked class writes none") << QJsonSerializer::Enabled << QJsonSerializer::ShortName
                                                    << false << QJsonValue(QJsonValue::Undefined);
        QTest::newRow("forced writes unmarked class") << QJsonSerializer::Forced << QJsonSerializer::ShortName
                                                      << false << QJsonValue(QStringLiteral("catalogue"));
    }

    void classNameWritten()
    {
        QFETCH(QJsonSerializer::Polymorphing, polymorphing);
        QFETCH(QJsonSerializer::PolymorphingMode, mode);
        QFETCH(bool, marked);
        QFETCH(QJsonValue, expected);
        std::unique_ptr<QJsonSerializer> serializer(makeSerializer(polymorphing, mode));
        derived_item item;
        catalogue unmarked;
        QObject* object = marked ? static_cast<QObject*>(&item) : &unmarked;
        QCOMPARE(serializer->serialize(object)[QLatin1String("@class")], expected);
    }

    void classNameRead_data()
    {
        QTest::addColumn<QJsonSerializer::Polymorphing>("polymorphing");
        QTest::addColumn<QString>("className"); // empty: no "@class" key
        QTest::addColumn<QString>("expected");
        auto const enabled = QJsonSerializer::Enabled;
        QString const base = QStringLiteral("shapes::base_item");
        QString const derived = QStringLiteral("shapes::derived_item");
        QTest::newRow("short name") << enabled << QStringLiteral("derived_item") << derived;
        QTest::newRow("qualified name") << enabled << derived << derived;
        QTest::newRow("foreign namespace: only the class name counts")
            << enabled << QStringLiteral("elsewhere::inner::derived_item") << derived;
        QTest::newRow("unknown class falls back") << enabled << QStringLiteral("mystery_item") << base;
        QTest::newRow("registered but not derived falls back") << enabled << QStringLiteral("catalogue") << base;
        QTest::newRow("absent") << enabled << QString() << base;
        QTest::newRow("disabled ignores it") << QJsonSerializer::Disabled << QStringLiteral("derived_item") << base;
        QTest::newRow("forced and present") << QJsonSerializer::Forced << QStringLiteral("derived_item") << derived;
    }

    void classNameRead()
    {
        QFETCH(QJsonSerializer::Polymorphing, polymorphing);
        QFETCH(QString, className);
        QFETCH(QString, expected);
        QJsonObject json{{QStringLiteral("label"), QStringLiteral("l")}};
        if (!className.isEmpty())
            json.insert(QStringLiteral("@class"), className);
        std::unique_ptr<QJsonSerializer> serializer(makeSerializer(polymorphing));
        std::unique_ptr<base_item> item(serializer->deserialize<base_item*>(json));
        QVERIFY(item);
        QCOMPARE(QString::fromLatin1(item->metaObject()->className()), expected);
        QCOMPARE(item->m_label, QStringLiteral("l"));
    }

    void forcedPolymorphingRequiresClassName()
    {
        std::unique_ptr<QJsonSerializer> serializer(makeSerializer(QJsonSerializer::Forced));
        int const before = base_item::alive;
        QVERIFY_THROWS_EXCEPTION(QJsonDeserializationException,
                                 serializer->deserialize<base_item*>(parse(R"({"label": "l"})")));
        QCOMPARE(base_item::alive, before);
    }

    void nullAndAbsentFields_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<int>("weight");
        QTest::addColumn<QString>("label");
        QTest::newRow("absent keys keep the constructor's value") << QByteArray("{}") << 7 << QString();
        QTest::newRow("null gives the type's default") << QByteArray(R"({"weight": null, "label": null})") << 0
                                                       << QString();
        QTest::newRow("numeric string for an int") << QByteArray(R"({"weight": "-12"})") << -12 << QString();
        QTest::newRow("unknown keys are ignored") << QByteArray(R"({"colour": 1, "label": "x"})") << 7
                                                  << QStringLiteral("x");
    }

    void nullAndAbsentFields()
    {
        QFETCH(QByteArray, json);
        QFETCH(int, weight);
        QFETCH(QString, label);
        QJsonSerializer serializer;
        std::unique_ptr<base_item> item(serializer.deserialize<base_item*>(parse(json)));
        QCOMPARE(item->m_weight, weight);
        QCOMPARE(item->m_label, label);
    }

    void valuesRoundTrip_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QByteArray>("json");
        QTest::newRow("int") << QVariant(-5) << QByteArray("-5");
        QTest::newRow("qint64 beyond a double's precision")
            << QVariant::fromValue(std::numeric_limits<qint64>::max()) << QByteArray("9223372036854775807");
        QTest::newRow("uint beyond int") << QVariant(4000000000u) << QByteArray("4000000000");
        QTest::newRow("double") << QVariant(0.25) << QByteArray("0.25");
        QTest::newRow("bool") << QVariant(true) << QByteArray("true");
        QTest::newRow("string") << QVariant(QStringLiteral("h\u00e9")) << QByteArray("\"h\xc3\xa9\"");
        QTest::newRow("byte array as text") << QVariant(QByteArray("abc")) << QByteArray(R"("abc")");
        QTest::newRow("enumeration as integer") << QVariant::fromValue(base_item::Deep) << QByteArray("2");
        QTest::newRow("string converter") << QVariant::fromValue(colour{QStringLiteral("teal")})
                                          << QByteArray(R"("teal")");
        QTest::newRow("string list") << QVariant(QStringList{QStringLiteral("a"), QStringLiteral("b")})
                                     << QByteArray(R"(["a","b"])");
        QTest::newRow("map_string") << QVariant::fromValue(map_string{{QStringLiteral("k"), QStringLiteral("v")}})
                                    << QByteArray(R"({"k":"v"})");
        QTest::newRow("map_stringlist")
            << QVariant::fromValue(map_stringlist{{QStringLiteral("k"), {QStringLiteral("1")}},
                                                  {QStringLiteral("e"), {}}})
            << QByteArray(R"({"e":[],"k":["1"]})");
        QTest::newRow("variant map") << QVariant(QVariantMap{{QStringLiteral("s"), QStringLiteral("x")}})
                                     << QByteArray(R"({"s":"x"})");
        QTest::newRow("null object pointer") << QVariant::fromValue(static_cast<base_item*>(nullptr))
                                             << QByteArray("null");
    }

    void valuesRoundTrip()
    {
        QFETCH(QVariant, value);
        QFETCH(QByteArray, json);
        QJsonSerializer serializer;
        QCOMPARE(text(serializer.serializeImpl(value)), json);
        QCOMPARE(serializer.deserialize(parse(json), value.metaType().id()), value);
    }

    void flatObjectAsMemberByMember_data()
    {
        QTest::addColumn<QString>("label");
        QTest::addColumn<qint64>("big");
        QTest::addColumn<bool>("on");
        QTest::newRow("plain") << QStringLiteral("item 7") << qint64(7) << true;
        QTest::newRow("empty, zero") << QString() << qint64(0) << false;
        QTest::newRow("quote, backslash, slash") << QStringLiteral("a\"b\\c/d") << qint64(-1) << true;
        QTest::newRow("control characters") << QStringLiteral("\n\t\u0001\u001f\u007f") << qint64(1) << false;
        QTest::newRow("NUL inside") << QString(QStringLiteral("a%1b").arg(QChar(0))) << qint64(2) << true;
        QTest::newRow("beyond ASCII") << QStringLiteral("h\u00e9 \u20ac \u00df \uffff") << qint64(3) << true;
        QTest::newRow("surrogate pair") << QString(QStringLiteral("x") + QChar(0xD83D) + QChar(0xDE00)) << qint64(4)
                                        << false;
        QTest::newRow("unpaired high surrogate") << QString(QChar(0xD83D)) << qint64(5) << true;
        QTest::newRow("unpaired low surrogate") << QString(QChar(0xDE00)) << qint64(6) << true;
        QTest::newRow("qint64 extremes, low") << QStringLiteral("min") << std::numeric_limits<qint64>::min() << true;
        QTest::newRow("qint64 extremes, high") << QStringLiteral("max") << std::numeric_limits<qint64>::max()
                                               << false;
    }

    void flatObjectAsMemberByMember()
    {
        QFETCH(QString, label);
        QFETCH(qint64, big);
        QFETCH(bool, on);
        flat_item item;
        item.m_label = label;
        item.m_big = big;
        item.m_on = on;
        item.m_shade = base_item::Deep;
        QJsonObject expected;
        expected.insert(QStringLiteral("@class"), QStringLiteral("flat_item"));
        expected.insert(QStringLiteral("label"), label);
        expected.insert(QStringLiteral("on"), on);
        expected.insert(QStringLiteral("big"), big);
        expected.insert(QStringLiteral("shade"), 2);
        std::unique_ptr<QJsonSerializer> serializer(makeSerializer(QJsonSerializer::Enabled));
        QJsonValue const json = serializer->serializeImpl(QVariant::fromValue(&item));
        QCOMPARE(json.toObject(), expected);
        // The digests are taken over this text.
        QCOMPARE(QJsonDocument(json.toObject()).toJson(QJsonDocument::Compact),
                 QJsonDocument(expected).toJson(QJsonDocument::Compact));
        std::unique_ptr<flat_item> back(serializer->deserialize<flat_item*>(json));
        QCOMPARE(back->m_label, label);
        QCOMPARE(back->m_big, big);
    }

    void mixedObjectAsMemberByMember_data()
    {
        QTest::addColumn<QString>("label");
        QTest::addColumn<QJsonValue>("extra");
        QTest::addColumn<bool>("child");
        QTest::newRow("undefined extra leaves no key") << QStringLiteral("a") << QJsonValue(QJsonValue::Undefined)
                                                        << true;
        QTest::newRow("null extra, no child") << QStringLiteral("b") << QJsonValue(QJsonValue::Null) << false;
        QTest::newRow("object extra") << QStringLiteral("c") << QJsonValue(QJsonObject{{"k", 1}}) << true;
        QTest::newRow("array extra") << QString() << QJsonValue(QJsonArray{1, "two"}) << false;
        QTest::newRow("text the compact form can't carry")
            << QString(QChar(0xD83D)) << QJsonValue(QStringLiteral("x")) << true;
    }

    void mixedObjectAsMemberByMember()
    {
        QFETCH(QString, label);
        QFETCH(QJsonValue, extra);
        QFETCH(bool, child);
        mixed_item item;
        item.m_label = label;
        item.m_extra = extra;
        item.m_ratio = 0.5;
        item.m_count = -4;
        item.m_tags = {QStringLiteral("t")};
        if (child) {
            item.m_child = new base_item(&item);
            item.m_child->m_label = QStringLiteral("inner");
        }
        std::unique_ptr<QJsonSerializer> serializer(makeSerializer(QJsonSerializer::Disabled));
        QJsonObject expected;
        expected.insert(QStringLiteral("label"), label);
        expected.insert(QStringLiteral("extra"), extra);
        expected.insert(QStringLiteral("child"), child ? serializer->serializeImpl(QVariant::fromValue(item.m_child))
                                                       : QJsonValue(QJsonValue::Null));
        expected.insert(QStringLiteral("ratio"), 0.5);
        expected.insert(QStringLiteral("count"), -4);
        expected.insert(QStringLiteral("tags"), QJsonArray{QStringLiteral("t")});
        QJsonObject const json = serializer->serializeImpl(QVariant::fromValue(&item)).toObject();
        QCOMPARE(json, expected);
        QCOMPARE(json.contains(QLatin1String("extra")), !extra.isUndefined());
        QCOMPARE(QJsonDocument(json).toJson(QJsonDocument::Compact), QJsonDocument(expected).toJson(QJsonDocument::Compact));
    }

    void serializedFormTold_data()
    {
        QTest::addColumn<int>("polymorphing");
        QTest::addColumn<QString>("change");
        QTest::addColumn<bool>("told");
        int const enabled = int(QJsonSerializer::Enabled);
        int const disabled = int(QJsonSerializer::Disabled);
        QTest::newRow("its own JSON") << enabled << QString() << true;
        QTest::newRow("its own JSON without the class") << disabled << QString() << true;
        QTest::newRow("class missing") << enabled << QStringLiteral("drop @class") << false;
        QTest::newRow("class where none is written") << disabled << QStringLiteral("add @class") << false;
        QTest::newRow("another class") << enabled << QStringLiteral("other @class") << false;
        QTest::newRow("a key missing") << enabled << QStringLiteral("drop label") << false;
        QTest::newRow("a key more") << enabled << QStringLiteral("add extra") << false;
        QTest::newRow("other text") << enabled << QStringLiteral("other label") << false;
        // JSON has one kind of number: a whole 1.0 is the same JSON as 1.
        QTest::newRow("integer as a whole double") << enabled << QStringLiteral("double big") << true;
        QTest::newRow("integer with a fraction") << enabled << QStringLiteral("fraction big") << false;
        QTest::newRow("integer as text") << enabled << QStringLiteral("text big") << false;
        QTest::newRow("boolean as a number") << enabled << QStringLiteral("number on") << false;
        QTest::newRow("other small integer") << enabled << QStringLiteral("other count") << false;
    }

    void serializedFormTold()
    {
        QFETCH(int, polymorphing);
        QFETCH(QString, change);
        QFETCH(bool, told);
        record_item item;
        item.m_label = QStringLiteral("h\u00e9");
        item.m_on = true;
        item.m_big = 1;
        item.m_count = -2;
        std::unique_ptr<QJsonSerializer> serializer(makeSerializer(QJsonSerializer::Polymorphing(polymorphing)));
        QJsonObject json = serializer->serializeImpl(QVariant::fromValue(&item)).toObject();
        QString const key = change.section(QLatin1Char(' '), 1);
        if (change.startsWith(QLatin1String("drop")))
            json.remove(key);
        else if (change.startsWith(QLatin1String("add")))
            json.insert(key, QStringLiteral("record_item"));
        else if (change == QLatin1String("other @class"))
            json.insert(key, QStringLiteral("base_item"));
        else if (change == QLatin1String("other label"))
            json.insert(key, QStringLiteral("he"));
        else if (change.startsWith(QLatin1String("double")))
            json.insert(key, 1.0);
        else if (change.startsWith(QLatin1String("fraction")))
            json.insert(key, 1.5);
        else if (change.startsWith(QLatin1String("text")))
            json.insert(key, QStringLiteral("1"));
        else if (change.startsWith(QLatin1String("number")))
            json.insert(key, 1);
        else if (change == QLatin1String("other count"))
            json.insert(key, 2);
        QCOMPARE(serializer->isSerializedForm(&item, json), told);
        QJsonObject const own = serializer->serializeImpl(QVariant::fromValue(&item)).toObject();
        QCOMPARE(own == json, told);
        QCOMPARE(QJsonDocument(own).toJson(QJsonDocument::Compact) == QJsonDocument(json).toJson(QJsonDocument::Compact), told);
    }

    void serializedFormNotToldForOtherObjects()
    {
        // An enumeration (here an unsigned one), a double, a converted value, a child.
        derived_item item;
        std::unique_ptr<QJsonSerializer> serializer(makeSerializer(QJsonSerializer::Enabled));
        QJsonObject const json = serializer->serializeImpl(QVariant::fromValue(&item)).toObject();
        QVERIFY(!serializer->isSerializedForm(&item, json));
        QVERIFY(!serializer->isSerializedForm(nullptr, json));
    }

    void objectReadWhateverItsKeys_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("label");
        QTest::addColumn<bool>("on");
        QTest::addColumn<qint64>("big");
        QTest::addColumn<int>("count");
        QTest::newRow("every key") << QByteArray(R"({"big":5,"count":-3,"label":"x","on":true})")
                                   << QStringLiteral("x") << true << qint64(5) << -3;
        QTest::newRow("every key and the class")
            << QByteArray(R"({"@class":"record_item","big":5,"count":-3,"label":"x","on":true})")
            << QStringLiteral("x") << true << qint64(5) << -3;
        QTest::newRow("a key missing") << QByteArray(R"({"big":5,"label":"x","on":true})") << QStringLiteral("x")
                                       << true << qint64(5) << 0;
        QTest::newRow("an unknown key in place of one") << QByteArray(R"({"big":5,"cost":-3,"label":"x","on":true})")
                                                        << QStringLiteral("x") << true << qint64(5) << 0;
        QTest::newRow("an unknown key in place of the class")
            << QByteArray(R"({"a":1,"big":5,"count":-3,"label":"x","on":true})") << QStringLiteral("x") << true
            << qint64(5) << -3;
        QTest::newRow("an unknown key beside every key")
            << QByteArray(R"({"big":5,"count":-3,"label":"x","on":true,"zz":0})") << QStringLiteral("x") << true
            << qint64(5) << -3;
        QTest::newRow("no key") << QByteArray("{}") << QString() << false << qint64(0) << 0;
    }

    void objectReadWhateverItsKeys()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, label);
        QFETCH(bool, on);
        QFETCH(qint64, big);
        QFETCH(int, count);
        std::unique_ptr<QJsonSerializer> serializer(makeSerializer(QJsonSerializer::Enabled));
        std::unique_ptr<record_item> item(serializer->deserialize<record_item*>(parse(json), nullptr));
        QVERIFY(item);
        QCOMPARE(item->m_label, label);
        QCOMPARE(item->m_on, on);
        QCOMPARE(item->m_big, big);
        QCOMPARE(item->m_count, count);
    }

    void recentTextIsTheDocumentsText_data()
    {
        QTest::addColumn<QString>("label");
        QTest::addColumn<qint64>("big");
        QTest::addColumn<bool>("known");
        QTest::newRow("plain") << QStringLiteral("Hall") << qint64(42) << true;
        QTest::newRow("quote and backslash") << QStringLiteral("a\"b\\c") << qint64(-7) << true;
        QTest::newRow("fifteen digits") << QStringLiteral("x") << qint64(999999999999999) << true;
        QTest::newRow("sixteen digits") << QStringLiteral("x") << qint64(1000000000000000) << false;
        QTest::newRow("sixteen digits below zero") << QStringLiteral("x") << qint64(-1000000000000000) << false;
        QTest::newRow("non-ASCII") << QStringLiteral("caf\u00e9") << qint64(1) << false;
        QTest::newRow("control character") << QStringLiteral("a\nb") << qint64(1) << false;
    }

    void recentTextIsTheDocumentsText()
    {
        QFETCH(QString, label);
        QFETCH(qint64, big);
        QFETCH(bool, known);
        QJsonSerializer serializer;
        record_item item;
        item.m_label = label;
        item.m_big = big;
        item.m_on = true;
        item.m_count = -3;
        QJsonObject const json = serializer.serializeImpl(QVariant::fromValue(&item)).toObject();
        QByteArray const text = QJsonSerializer::recentText(json);
        if (!known) {
            QVERIFY(text.isEmpty());
            return;
        }
        QCOMPARE(text, QJsonDocument(json).toJson(QJsonDocument::Compact));
        // Equal JSON made otherwise, its numbers doubles, has that text too.
        QJsonObject equal;
        for (auto it = json.begin(); it != json.end(); ++it)
            equal.insert(it.key(), it.value().isDouble() ? QJsonValue(it.value().toDouble()) : it.value());
        QCOMPARE(QJsonSerializer::recentText(equal), text);
        QCOMPARE(QJsonDocument(equal).toJson(QJsonDocument::Compact), text);
    }

    void recentTextKeepsOnlyTheLastWholeWritings()
    {
        QJsonSerializer serializer;
        std::vector<std::unique_ptr<record_item>> items;
        QList<QJsonObject> written;
        for (int i = 0; i < 5; ++i) {
            items.push_back(std::make_unique<record_item>());
            items.back()->m_count = i;
            written.append(serializer.serializeImpl(QVariant::fromValue(items.back().get())).toObject());
        }
        QVERIFY(QJsonSerializer::recentText(written.first()).isEmpty());
        for (int i = 1; i < 5; ++i)
            QCOMPARE(QJsonSerializer::recentText(written[i]), QJsonDocument(written[i]).toJson(QJsonDocument::Compact));
        // A class with more than booleans, integers and strings, a writing of
        // something that holds objects, and other JSON: no text.
        base_item other;
        QVERIFY(QJsonSerializer::recentText(serializer.serializeImpl(QVariant::fromValue(&other)).toObject()).isEmpty());
        QVERIFY(QJsonSerializer::recentText(QJsonObject{{"count", 9}}).isEmpty());
    }

    void memoLendsJsonOnlyWhileTextIsSame_data()
    {
        QTest::addColumn<QString>("change");
        QTest::addColumn<bool>("sameJson");
        QTest::addColumn<int>("remembered");
        QTest::newRow("nothing") << QString() << true << 3;
        QTest::newRow("a text of the top") << QStringLiteral("label") << false << 3;
        QTest::newRow("a value written after the text") << QStringLiteral("extra") << false << 3;
        QTest::newRow("a value of a child") << QStringLiteral("child weight") << false << 3;
        QTest::newRow("a child of the same text in place of another") << QStringLiteral("child same") << true << 3;
        QTest::newRow("a child of other text in place of another") << QStringLiteral("child other") << false << 3;
        QTest::newRow("a child gone") << QStringLiteral("child gone") << false << 2;
        QTest::newRow("a record's key order unchanged, its text not") << QStringLiteral("record") << false << 3;
    }

    void memoLendsJsonOnlyWhileTextIsSame()
    {
        QFETCH(QString, change);
        QFETCH(bool, sameJson);
        QFETCH(int, remembered);
        QObject owner;
        auto* top = new mixed_item(&owner);
        top->m_label = QStringLiteral("top");
        top->m_extra = QJsonObject{{"k", 1}};
        top->m_child = new base_item(top);
        top->m_child->m_label = QStringLiteral("inner");
        auto* record = new record_item(&owner);
        record->m_label = QStringLiteral("r");
        QVariantList const root{QVariant::fromValue(top), QVariant::fromValue(record)};
        std::unique_ptr<QJsonSerializer> serializer(makeSerializer(QJsonSerializer::Enabled));
        QJsonSerializer::MapSubstitute const none;
        QJsonSerializer::TextMemo memo;
        QJsonValue const before = serializer->serializeImpl(QVariant(root), none, &memo);
        QCOMPARE(before, serializer->serializeImpl(QVariant(root)));
        if (change == QLatin1String("label")) {
            top->m_label = QStringLiteral("moved");
        } else if (change == QLatin1String("extra")) {
            top->m_extra = QJsonArray{2};
        } else if (change == QLatin1String("child weight")) {
            top->m_child->m_weight = 8;
        } else if (change.startsWith(QLatin1String("child "))) {
            base_item* const old = top->m_child;
            top->m_child = nullptr;
            if (change != QLatin1String("child gone")) {
                top->m_child = new base_item(top);
                top->m_child->m_label = change == QLatin1String("child same") ? old->m_label : QStringLiteral("new");
            }
            delete old;
        } else if (change == QLatin1String("record")) {
            record->m_count = 10;
        }
        QJsonValue const after = serializer->serializeImpl(QVariant(root), none, &memo);
        QJsonValue const plain = serializer->serializeImpl(QVariant(root));
        QCOMPARE(after, plain);
        QCOMPARE(QJsonDocument(after.toArray()).toJson(QJsonDocument::Compact),
                 QJsonDocument(plain.toArray()).toJson(QJsonDocument::Compact));
        QCOMPARE(after == before, sameJson);
        // Only the objects of the last writing are remembered.
        QCOMPARE(memo.entries.size(), remembered);
        // A writing that fails forgets what it did not reach; the next one is whole again.
        QVariantList failing{QVariant::fromValue(top), QVariant::fromValue(opaque{})};
        QVERIFY_THROWS_EXCEPTION(QJsonSerializerException,
                                 serializer->serializeImpl(QVariant(failing), none, &memo));
        QCOMPARE(memo.entries.size(), remembered - 1);
        QCOMPARE(serializer->serializeImpl(QVariant(root), none, &memo), plain);
        QCOMPARE(memo.entries.size(), remembered);
    }

    void mapKeysKeepTheirOrder()
    {
        map_string const map{{QStringLiteral("b"), {}}, {QStringLiteral("Z"), {}}, {QStringLiteral("10"), {}},
                             {QStringLiteral("9"), {}}, {QStringLiteral("a"), {}}};
        QJsonSerializer serializer;
        QJsonValue const json = serializer.serialize(map);
        QCOMPARE(json.toObject().keys(), map.keys());
        QCOMPARE(text(json), QByteArray(R"({"10":"","9":"","Z":"","a":"","b":""})"));
        QCOMPARE(serializer.deserialize<map_string>(parse(R"({"b":"","a":"","9":""})")).keys(),
                 QStringList({QStringLiteral("9"), QStringLiteral("a"), QStringLiteral("b")}));
    }

    void wrongJsonThrowsWithPathAndLeaksNothing_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("message");
        int const cat = qMetaTypeId<catalogue*>();
        int const list = qMetaTypeId<list_items>();
        auto row = [](char const* name, int type, char const* json, char const* message) {
            QTest::newRow(name) << type << QByteArray(json) << QString::fromUtf8(message);
        };
        row("string for a map", cat, R"({"items": "x"})", "items: expected an object, got a string");
        row("array for a string in a map element", cat,
            R"({"items": {"K0": {"label": "ok"}, "K1": {"label": []}}})",
            "items/K1/label: expected a string, got an array");
        row("object for a list", cat, R"({"sequence": {}})", "sequence: expected an array, got an object");
        row("non-numeric string for an int", cat, R"({"sequence": [{}, {"weight": "heavy"}]})",
            "sequence/1/weight: expected an integer, got \"heavy\"");
        row("fraction for an int", cat, R"({"sequence": [{"weight": 1.5}]})",
            "sequence/0/weight: expected an integer, got 1.5");
        row("out of range for a quint8", cat, R"({"sequence": [{"small": 256}]})",
            "sequence/0/small: 256 is out of range for uchar");
        row("string for a bool", cat, R"({"items": {"a": {"@class": "derived_item", "enabled": "yes"}}})",
            "items/a/enabled: expected a boolean, got a string");
        row("number for a converted string", cat, R"({"items": {"a": {"@class": "derived_item", "tint": 5}}})",
            "items/a/tint: expected a string, got a number");
        row("deep in a child", cat,
            R"({"items": {"a": {"@class": "derived_item", "child": {"@class": "derived_item",
                "child": {"label": 1}}}, "b": {}}})",
            "items/a/child/child/label: expected a string, got a number");
        row("number for @class", cat, R"({"items": {"a": {"@class": 5}}})",
            "items/a/@class: expected a string, got a number");
        row("number in a string list", cat, R"({"tags": ["a", 1]})", "tags/1: expected a string, got a number");
        row("string for a list in map_stringlist", cat, R"({"groups": {"g": "x"}})",
            "groups/g: expected an array, got a string");
        row("array for an object", cat, "[]", "expected an object, got an array");
        row("third element of a top-level list", list, R"([{}, {"@class": "derived_item"}, "x"])",
            "2: expected an object, got a string");
        row("class without invokable constructor", qMetaTypeId<fixed_item*>(), "{}",
            "cannot create a shapes::fixed_item: it needs a Q_INVOKABLE constructor taking a QObject* parent");
    }

    void wrongJsonThrowsWithPathAndLeaksNothing()
    {
        QFETCH(int, type);
        QFETCH(QByteArray, json);
        QFETCH(QString, message);
        QJsonSerializer serializer;
        for (QObject* parent : {static_cast<QObject*>(nullptr), new QObject}) {
            std::unique_ptr<QObject> owner(parent);
            int const before = base_item::alive;
            QString caught;
            try {
                serializer.deserialize(parse(json), type, parent);
            } catch (QJsonDeserializationException const& e) {
                caught = e.message();
            }
            QCOMPARE(caught, message);
            QCOMPARE(base_item::alive, before);
            if (parent)
                QVERIFY(parent->children().isEmpty());
        }
    }

    void serializationFailuresThrow_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("type without a JSON form") << QVariant::fromValue(opaque{});
        QTest::newRow("map holding one") << QVariant(QVariantMap{{QStringLiteral("k"), QVariant::fromValue(opaque{})}});
        QTest::newRow("object pointing to itself") << QVariant::fromValue(new loop_item);
    }

    void serializationFailuresThrow()
    {
        QFETCH(QVariant, value);
        QJsonSerializer serializer;
        QVERIFY_THROWS_EXCEPTION(QJsonSerializerException, serializer.serializeImpl(value));
        delete value.value<loop_item*>();
    }

    void unknownMetaTypeThrows()
    {
        QJsonSerializer serializer;
        QVERIFY_THROWS_EXCEPTION(QJsonDeserializationException, serializer.deserialize(QJsonValue(1), 987654));
    }

    void exceptionsCloneAndRaiseTheirOwnType()
    {
        QJsonDeserializationException const original(QStringLiteral("h\u00e9"));
        std::unique_ptr<QJsonSerializerException> copy(original.clone());
        QCOMPARE(copy->message(), original.message());
        QCOMPARE(QByteArray(copy->what()), QByteArray("h\xc3\xa9"));
        QVERIFY_THROWS_EXCEPTION(QJsonDeserializationException, copy->raise());
    }
};

QTEST_GUILESS_MAIN(tst_qjsonserializer)
#include "tst_qjsonserializer.moc"
