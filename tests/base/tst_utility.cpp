#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QtTest>

#include "database/base/literals.h"
#include "database/base/topicbase_t.h"
#include "database/utility/utility.h"
#include "platform/logs/classlogs.h"
#include "platform/qjsonserializer/qjsonserializer.h"



namespace {

QJsonObject object(char const* json)
{
    return QJsonDocument::fromJson(QByteArray(json)).object();
}

QJsonValue value(char const* json)
{
    // Wrapped so that scalars parse too.
    return QJsonDocument::fromJson(QByteArray("[") + json + "]").array().at(0);
}

} // namespace

class tst_utility : public QObject
{
    Q_OBJECT

private:
    QList<::utility::logs::logrecord> records;

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(database::utility::getInstance());
        ::utility::logs::classlogs::getInstance()->setCapture(
            [this](::utility::logs::logrecord const& r) { records.append(r); });
    }

    void cleanup()
    {
        records.clear();
    }

    void singletonOwnsConfiguredSerializer()
    {
        QCOMPARE(database::utility::getInstance(), database::utility::getInstance());
        QJsonSerializer* serializer = database::utility::getInstance()->serializer();
        QVERIFY(serializer);
        QCOMPARE(int(serializer->polymorphing()), 1);
        QCOMPARE(int(serializer->polymorphingMode()), 1);
    }

    void genericAliasesAreRegistered_data()
    {
        QTest::addColumn<QByteArray>("alias");
        QTest::addColumn<int>("type");
        QTest::newRow("map_stringlist") << QByteArray("map_stringlist") << qMetaTypeId<QMap<QString, QStringList>>();
        QTest::newRow("map_string") << QByteArray("map_string") << qMetaTypeId<QMap<QString, QString>>();
        QTest::newRow("QStringList") << QByteArray("QStringList") << qMetaTypeId<QStringList>();
    }

    void genericAliasesAreRegistered()
    {
        QFETCH(QByteArray, alias);
        QFETCH(int, type);
        QCOMPARE(QMetaType::fromName(alias).id(), type);
    }

    void sharedLiteralsHaveProtocolValues()
    {
        using namespace database::literals;
        QCOMPARE(topic_driver_knx, QStringLiteral("drivers/driver_knx"));
        QCOMPARE(request_persistent, QStringLiteral("request/DB/persistent"));
        QCOMPARE(status_presencesimulation, QStringLiteral("status/DB/presencesimulation"));
        QCOMPARE(request_command, QStringLiteral("request/DB/command"));
        QCOMPARE(forward_bridge_local, QStringLiteral("forward-bridge/local"));
    }

    void packetsOfTopicbase_data()
    {
        QTest::addColumn<QJsonValue>("payload");
        QTest::addColumn<QJsonObject>("expected");
        QTest::newRow("null") << QJsonValue(QJsonValue::Null) << object(R"({"topic":"x/y","payload":null})");
        QTest::newRow("object") << QJsonValue(object(R"({"b":1,"a":"t"})"))
                                << object(R"({"topic":"x/y","payload":{"a":"t","b":1}})");
        QTest::newRow("text") << QJsonValue(QStringLiteral("on")) << object(R"({"topic":"x/y","payload":"on"})");
        QTest::newRow("number") << QJsonValue(2.5) << object(R"({"topic":"x/y","payload":2.5})");
        QTest::newRow("array") << QJsonValue(QJsonArray{1, "a"}) << object(R"({"topic":"x/y","payload":[1,"a"]})");
        QTest::newRow("undefined leaves the key out") << QJsonValue(QJsonValue::Undefined)
                                                      << object(R"({"topic":"x/y"})");
    }

    void packetsOfTopicbase()
    {
        QFETCH(QJsonValue, payload);
        QFETCH(QJsonObject, expected);
        database::base::topicbase_t parent(QStringLiteral("items"), nullptr);
        database::base::topicbase_t child(QStringLiteral("items/objects_list/K"), &parent);
        database::base::topicbase_t copy(child);
        QCOMPARE(copy.getTopic(), QStringLiteral("items/objects_list/K"));
        QCOMPARE(copy.parent(), nullptr);
        QJsonObject const request = child.getPacketRequest(QStringLiteral("x/y"), payload);
        QCOMPARE(request, expected);
        QCOMPARE(QJsonDocument(request).toJson(QJsonDocument::Compact),
                 QJsonDocument(expected).toJson(QJsonDocument::Compact));
        // Packets built one after the other share nothing that one could change in another.
        QJsonObject updated = child.getPacketUpdated(QStringLiteral("x/y"), payload);
        updated.insert(QStringLiteral("topic"), QStringLiteral("changed"));
        QCOMPARE(child.getPacketUpdated(QStringLiteral("x/y"), payload), expected);
        QCOMPARE(child.getPacketUpdated(QStringLiteral("z"), QJsonValue::Null),
                 object(R"({"topic":"z","payload":null})"));
    }

    void requestAndStatusSwapEveryOccurrence_data()
    {
        QTest::addColumn<QJsonObject>("packet");
        QTest::addColumn<bool>("toStatus");
        QTest::addColumn<QJsonObject>("expected");
        QTest::newRow("request prefix") << object(R"({"topic":"request/DB/persistent/items","payload":1,"x":2})")
                                        << true << object(R"({"topic":"status/DB/persistent/items","payload":1,"x":2})");
        QTest::newRow("every occurrence") << object(R"({"topic":"request/x/request","payload":null})")
                                          << true << object(R"({"topic":"status/x/status","payload":null})");
        QTest::newRow("case sensitive") << object(R"({"topic":"Request/x","payload":1})")
                                        << true << object(R"({"topic":"Request/x","payload":1})");
        QTest::newRow("no payload") << object(R"({"topic":"request/x"})") << true << QJsonObject();
        QTest::newRow("no topic") << object(R"({"payload":1})") << false << QJsonObject();
        QTest::newRow("status back") << object(R"({"topic":"status/DB/persistent/DB","payload":{}})")
                                     << false << object(R"({"topic":"request/DB/persistent/DB","payload":{}})");
    }

    void requestAndStatusSwapEveryOccurrence()
    {
        QFETCH(QJsonObject, packet);
        QFETCH(bool, toStatus);
        QFETCH(QJsonObject, expected);
        QCOMPARE(toStatus ? database::utility::request2status(packet) : database::utility::status2request(packet), expected);
    }

    void readByPath_data()
    {
        QTest::addColumn<QJsonObject>("document");
        QTest::addColumn<QString>("path");
        QTest::addColumn<QJsonValue>("expected");
        QJsonObject const nested = object(R"({"a":{"b":1}})");
        QJsonObject const array = object(R"({"a":[10,20]})");
        QJsonObject const deep = object(R"({"a":[{"x":1},{"x":2}]})");
        QTest::newRow("nested member") << nested << "a/b" << QJsonValue(1);
        QTest::newRow("scalar ends the walk") << nested << "a/b/c" << QJsonValue(1);
        QTest::newRow("absent member is null") << nested << "z" << QJsonValue();
        QTest::newRow("slash index") << array << "a/1" << QJsonValue(20);
        QTest::newRow("bracket step index") << array << "a/[1]" << QJsonValue(20);
        QTest::newRow("index too large is false") << array << "a/5" << QJsonValue(false);
        QTest::newRow("name[n] last step is whole array") << array << "a[1]" << QJsonValue(array.value("a"));
        QTest::newRow("non-numeric index is false") << array << "a/x" << QJsonValue(false);
        QTest::newRow("into element by slash") << deep << "a/1/x" << QJsonValue(2);
        QTest::newRow("into element by bracket step") << deep << "a/[1]/x" << QJsonValue(2);
        QTest::newRow("name[n]/x reads x as index") << deep << "a[1]/x" << QJsonValue(false);
    }

    void readByPath()
    {
        QFETCH(QJsonObject, document);
        QFETCH(QString, path);
        QFETCH(QJsonValue, expected);
        QCOMPARE(database::utility::getJsonValue(QJsonDocument(document), path), expected);
    }

    void writeByPath_data()
    {
        QTest::addColumn<QJsonObject>("document");
        QTest::addColumn<QString>("path");
        QTest::addColumn<QJsonValue>("newValue");
        QTest::addColumn<bool>("changed");
        QTest::addColumn<QJsonObject>("expected");
        QTest::addColumn<QString>("operation");
        QTest::newRow("creates missing objects") << QJsonObject() << "a/b/c" << QJsonValue(1) << true
                                                 << object(R"({"a":{"b":{"c":1}}})") << "add";
        QTest::newRow("updates a member") << object(R"({"a":{"b":1}})") << "a/b" << QJsonValue(2) << true
                                          << object(R"({"a":{"b":2}})") << "update";
        QTest::newRow("null removes a member") << object(R"({"a":{"b":1}})") << "a/b" << QJsonValue() << true
                                               << object(R"({"a":{}})") << "remove";
        QTest::newRow("null on absent member refused") << object(R"({"a":{"b":1}})") << "a/c" << QJsonValue()
                                                       << false << object(R"({"a":{"b":1}})") << "";
        QTest::newRow("index at end appends") << object(R"({"a":[1]})") << "a/1" << QJsonValue(5) << true
                                              << object(R"({"a":[1,5]})") << "add";
        QTest::newRow("index past end refused") << object(R"({"a":[1]})") << "a/2" << QJsonValue(5) << false
                                                << object(R"({"a":[1]})") << "";
        QTest::newRow("null at end of array refused") << object(R"({"a":[1]})") << "a/1" << QJsonValue()
                                                      << false << object(R"({"a":[1]})") << "";
        QTest::newRow("null removes an element") << object(R"({"a":[1,2,3]})") << "a/1" << QJsonValue() << true
                                                 << object(R"({"a":[1,3]})") << "remove";
        QTest::newRow("replaces an element") << object(R"({"a":[1,2]})") << "a/[0]" << QJsonValue(7) << true
                                             << object(R"({"a":[7,2]})") << "update";
        QTest::newRow("writes inside an element") << object(R"({"a":[{"x":1}]})") << "a/0/x" << QJsonValue(9)
                                                  << true << object(R"({"a":[{"x":9}]})") << "update";
        QTest::newRow("non-numeric index refused") << object(R"({"a":[1]})") << "a/x" << QJsonValue(5) << false
                                                   << object(R"({"a":[1]})") << "";
        QTest::newRow("scalar mid-path replaced whole") << object(R"({"a":1})") << "a/b" << QJsonValue(2) << true
                                                        << object(R"({"a":2})") << "update";
        QTest::newRow("null member counts as absent") << object(R"({"a":null})") << "a" << QJsonValue(3) << true
                                                      << object(R"({"a":3})") << "add";
    }

    void writeByPath()
    {
        QFETCH(QJsonObject, document);
        QFETCH(QString, path);
        QFETCH(QJsonValue, newValue);
        QFETCH(bool, changed);
        QFETCH(QJsonObject, expected);
        QFETCH(QString, operation);
        QJsonDocument doc(document);
        QString op;
        if (!changed && newValue.isNull() && path == QLatin1String("a/c"))
            QTest::ignoreMessage(QtInfoMsg, "No updatable because: c not exist");
        QCOMPARE(database::utility::updateJsonValue(doc, path, newValue, op), changed);
        QCOMPARE(doc.object(), expected);
        QCOMPARE(op, operation);
    }

    void writeKeepsFirstOperation()
    {
        QJsonDocument doc(object(R"({"a":{"b":1}})"));
        QString op = QStringLiteral("preset");
        QVERIFY(database::utility::updateJsonValue(doc, QStringLiteral("a/b"), 2, op));
        QCOMPARE(op, QStringLiteral("preset"));
    }

    void writeIntoTopLevelArray()
    {
        QJsonDocument doc(QJsonArray{1, 2});
        QString op;
        QVERIFY(database::utility::updateJsonValue(doc, QStringLiteral("1"), 5, op));
        QCOMPARE(doc.array(), (QJsonArray{1, 5}));
        QCOMPARE(op, QStringLiteral("update"));
    }

    void rebuildingWriter_data()
    {
        QTest::addColumn<QJsonObject>("document");
        QTest::addColumn<QString>("path");
        QTest::addColumn<QJsonValue>("newValue");
        QTest::addColumn<QJsonObject>("expected");
        QTest::newRow("replaces a scalar") << object(R"({"a":1,"b":2})") << "b" << QJsonValue(3)
                                           << object(R"({"a":1,"b":3})");
        QTest::newRow("root marker dropped") << object(R"({"a":{"b":1}})") << "[root]/a/b" << QJsonValue(4)
                                             << object(R"({"a":{"b":4}})");
        QTest::newRow("null drops the member") << object(R"({"a":{"b":1,"c":2}})") << "a/b" << QJsonValue()
                                               << object(R"({"a":{"c":2}})");
        QTest::newRow("empty objects are lost") << object(R"({"a":{},"b":1})") << "b" << QJsonValue(2)
                                                << object(R"({"b":2})");
        QTest::newRow("scalar in place of object loses it") << object(R"({"a":{"b":1}})") << "a" << QJsonValue(5)
                                                            << QJsonObject();
        QTest::newRow("every element alike") << object(R"({"a":[{"x":1},{"x":2}]})") << "a/[7]/x" << QJsonValue(0)
                                             << object(R"({"a":[{"x":0},{"x":0}]})");
        QTest::newRow("path consumed across members") << object(R"({"a":1,"b":2})") << "a/b" << QJsonValue(9)
                                                      << object(R"({"a":1,"b":9})");
    }

    void rebuildingWriter()
    {
        QFETCH(QJsonObject, document);
        QFETCH(QString, path);
        QFETCH(QJsonValue, newValue);
        QFETCH(QJsonObject, expected);
        database::utility::modifyJsonValue(document, path, newValue);
        QCOMPARE(document, expected);
    }

    void compareListsDifferingSections_data()
    {
        QTest::addColumn<QJsonObject>("first");
        QTest::addColumn<QJsonObject>("second");
        QTest::addColumn<QStringList>("expected");
        QJsonObject const base = object(R"({"general":{"a":1},"items":{"objects_list":{"K":{"v":1}}}})");
        QTest::newRow("equal") << base << base << QStringList();
        QTest::newRow("only in first") << base << object(R"({"general":{"a":1}})") << QStringList{"items"};
        QTest::newRow("only in second") << object(R"({"general":{"a":1}})") << base << QStringList{"items"};
        QTest::newRow("nested change")
            << base << object(R"({"general":{"a":1},"items":{"objects_list":{"K":{"v":2}}}})") << QStringList{"items"};
        QTest::newRow("groups in order")
            << object(R"({"a":{},"b":{"x":1},"c":{}})") << object(R"({"b":{"x":2},"c":{"y":1},"d":{}})")
            << QStringList{"a", "d", "b", "c"};
    }

    void compareListsDifferingSections()
    {
        QFETCH(QJsonObject, first);
        QFETCH(QJsonObject, second);
        QFETCH(QStringList, expected);
        QCOMPARE(database::utility::compareJdata(first, second), expected);
    }

    void hashIsSha1OfCompactSection()
    {
        QJsonObject const root = object(R"({"general":{"b":[1,2],"a":"x"},"flag":true})");
        QMap<QString, QString> const hashes = database::utility::calcolateHash(root);
        QCOMPARE(hashes.keys(), (QStringList{"flag", "general"}));
        auto sha1 = [](QByteArray const& text) {
            return QString::fromLatin1(QCryptographicHash::hash(text, QCryptographicHash::Sha1).toHex());
        };
        QCOMPARE(hashes.value("general"), sha1(R"({"a":"x","b":[1,2]})"));
        QCOMPARE(hashes.value("flag"), sha1("{}")); // a scalar counts as the empty object
        QCOMPARE(hashes.value("general").size(), 40);
    }

    void compareVariantMaps_data()
    {
        QTest::addColumn<QVariantMap>("first");
        QTest::addColumn<QVariantMap>("second");
        QTest::addColumn<bool>("equal");
        QTest::newRow("equal") << QVariantMap{{"a", 1}} << QVariantMap{{"a", 1}} << true;
        QTest::newRow("size") << QVariantMap{{"a", 1}} << QVariantMap{{"a", 1}, {"b", 2}} << false;
        QTest::newRow("keys") << QVariantMap{{"a", 1}} << QVariantMap{{"b", 1}} << false;
        QTest::newRow("values") << QVariantMap{{"a", 1}} << QVariantMap{{"a", 2}} << false;
    }

    void compareVariantMaps()
    {
        QFETCH(QVariantMap, first);
        QFETCH(QVariantMap, second);
        QFETCH(bool, equal);
        QCOMPARE(database::utility::compareVariantMap(first, second), equal);
    }

    void stringHashKeepsLossyDecoding()
    {
        // Stored PIN hashes have this form; a clean Base64 of the digest differs.
        QString const hash = database::utility::createStringHash(QStringLiteral("58316"));
        QCOMPARE(hash, QStringLiteral("ZO+/vcmg77+977+9VzsGdFdX77+977+9ZzvWg1Xvv70="));
        QCOMPARE(database::utility::createStringHash(QStringLiteral("58316")), hash);
        QVERIFY(hash != QString::fromLatin1(
                    QCryptographicHash::hash("58316", QCryptographicHash::Sha1).toBase64()));
    }

    void jsonTextIsSortedAndFormatted()
    {
        QJsonObject const o{{"b", 1}, {"a", 2}};
        QCOMPARE(database::utility::JsonToString(o, QJsonDocument::Compact), QStringLiteral(R"({"a":2,"b":1})"));
        QVERIFY(database::utility::JsonToString(o, QJsonDocument::Indented).contains(QLatin1Char('\n')));
    }

    void validAddresses_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<bool>("valid");
        QTest::newRow("ipv4") << "192.168.1.10" << true;
        QTest::newRow("ipv6 loopback") << "::1" << true;
        QTest::newRow("word") << "gateway" << false;
        QTest::newRow("empty") << "" << false;
    }

    void validAddresses()
    {
        QFETCH(QString, address);
        QFETCH(bool, valid);
        QCOMPARE(database::utility::isValidIP(address), valid);
    }

    void degreesToDecimal()
    {
        QCOMPARE(database::utility::ConvertDegreeAngleToDouble(46, 30, 0), 46.5);
        QCOMPARE(database::utility::ConvertDegreeAngleToDouble(-10, 30, 0), -9.5); // signs are not treated apart
    }

    void uuidKeysAreBase64OfHexText()
    {
        QString const a = database::utility::generateUUId();
        QString const b = database::utility::generateUUId();
        QVERIFY(a != b);
        QCOMPARE(a.size(), 44);
        QByteArray const hex = QByteArray::fromBase64(a.toLatin1());
        QCOMPARE(hex.size(), 32);
        QVERIFY(QRegularExpression(QStringLiteral("^[0-9a-f]{32}$")).match(QString::fromLatin1(hex)).hasMatch());
    }

    void matchRegexGroupsInOrder_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("two groups") << "a=1;b=2" << R"((\w)=(\d))" << QStringList{"a", "b", "1", "2"};
        QTest::newRow("no group gives matches") << "x1 y22" << R"(\d+)" << QStringList{"1", "22"};
        QTest::newRow("empty captures skipped") << "ab" << "(x?)(b)" << QStringList{"b"};
        QTest::newRow("no match") << "abc" << R"(\d)" << QStringList();
    }

    void matchRegexGroupsInOrder()
    {
        QFETCH(QString, text);
        QFETCH(QString, pattern);
        QFETCH(QStringList, expected);
        QCOMPARE(database::utility::getMatchRegex(text, pattern), expected);
    }

    void invalidRegexLogsAndGivesNothing()
    {
        QVERIFY(database::utility::getMatchRegex(QStringLiteral("abc"), QStringLiteral("(")).isEmpty());
        QCOMPARE(records.size(), 1);
        QCOMPARE(records.first().level, ::utility::logs::error);
        QCOMPARE(records.first().source, QStringLiteral("getMatchRegex"));
        QCOMPARE(records.first().message, QStringLiteral("Invalid regex pattern: ("));
    }

    void sleepServesEvents()
    {
        bool fired = false;
        QTimer::singleShot(10, this, [&fired] { fired = true; });
        database::utility::amSleep(200);
        QVERIFY(fired);
        QVERIFY(!records.isEmpty());
        QCOMPARE(records.first().message, QStringLiteral("Wait 200 millisec...."));
        QCOMPARE(records.first().source, QStringLiteral("amSleep"));
    }
};

QTEST_GUILESS_MAIN(tst_utility)
#include "tst_utility.moc"
