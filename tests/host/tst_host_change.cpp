// A change's texts (the line of standard output and the feed, the journal
// entry, the broker's payload) are made from pieces; they must be the bytes
// the JSON documents write, whatever the packet holds.

#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

#include "host_json_t.h"
#include "host_link_t.h"

class tst_host_change : public QObject
{
    Q_OBJECT

    /// value with every number turned into a double: equal JSON of other types.
    static QJsonValue asDoubles(QJsonValue const& value)
    {
        if (value.isDouble())
            return QJsonValue(value.toDouble());
        if (value.isArray()) {
            QJsonArray out;
            for (QJsonValue const& element : value.toArray())
                out.append(asDoubles(element));
            return out;
        }
        if (value.isObject()) {
            QJsonObject out;
            QJsonObject const object = value.toObject();
            for (auto it = object.begin(); it != object.end(); ++it)
                out.insert(it.key(), asDoubles(it.value()));
            return out;
        }
        return value;
    }

private Q_SLOTS:
    void textsAreThoseOfTheJsonDocuments_data()
    {
        QTest::addColumn<QJsonObject>("packet");
        QTest::addColumn<QString>("key");
        QJsonObject const item{{"name", "Hall \"east\" \u00e9\u4e2d\\"}, {"value", 21.5}, {"list", QJsonArray{1, "a"}},
                               {"topic", "nested keys named like the packet's"}};
        QTest::newRow("item with a key") << QJsonObject{{"topic", "items/objects_list/K1"}, {"payload", item}}
                                         << QStringLiteral("K1");
        QTest::newRow("no key") << QJsonObject{{"topic", "items"}, {"payload", item}} << QString();
        QTest::newRow("removal") << QJsonObject{{"topic", "items/objects_list/K2"}, {"payload", QJsonValue::Null}}
                                 << QStringLiteral("K2");
        QTest::newRow("array payload") << QJsonObject{{"topic", "list"}, {"payload", QJsonArray{1, 2}}} << QString();
        QTest::newRow("number payload") << QJsonObject{{"topic", "value"}, {"payload", 3}} << QString();
        QTest::newRow("quotes in topic and key")
            << QJsonObject{{"topic", "items/objects_list/a\"b\n"}, {"payload", QJsonObject{}}}
            << QStringLiteral("a\"b\n");
        QTest::newRow("more than topic and payload")
            << QJsonObject{{"topic", "t"}, {"payload", item}, {"uuid", QJsonObject{{"topic", "x"}}}} << QString();
        QTest::newRow("no payload") << QJsonObject{{"topic", "t"}} << QString();
    }

    void textsAreThoseOfTheJsonDocuments()
    {
        QFETCH(QJsonObject, packet);
        QFETCH(QString, key);
        host_link_t::change_t const change(QStringLiteral("persistent"), QStringLiteral("onPersistentChangeItem"),
                                           key, packet);
        QJsonObject line{{"event", "change"}, {"signal", "onPersistentChangeItem"}, {"packet", packet}};
        if (!key.isNull())
            line.insert("key", key);
        QCOMPARE(change.line(), QJsonDocument(line).toJson(QJsonDocument::Compact));
        QJsonObject const entry{{"topic", "status/DB/persistent/" + packet.value("topic").toString()},
                                {"payload", packet.value("payload")}};
        QCOMPARE(change.journalEntry(), QJsonDocument(entry).toJson(QJsonDocument::Compact));
        QByteArray const wrapped =
            QJsonDocument(QJsonArray{packet.value("payload")}).toJson(QJsonDocument::Compact);
        QCOMPARE(change.payloadText(), wrapped.mid(1, wrapped.size() - 2));
    }

    void memberTextGoesInItsPlace_data()
    {
        QTest::addColumn<QJsonObject>("object");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QJsonValue>("value");
        QJsonObject const packet{{"topic", "request/DB/persistent/items/objects_list/I1"},
                                 {"payload", QJsonObject{{"name", "Hall"}, {"enabled", true}}}};
        QTest::newRow("request line") << QJsonObject{{"event", "request"}} << QStringLiteral("packet")
                                      << QJsonValue(packet);
        QTest::newRow("journal record") << QJsonObject{{"id", "a1b2:17"}} << QStringLiteral("request")
                                        << QJsonValue(packet);
        QTest::newRow("alone") << QJsonObject{} << QStringLiteral("k") << QJsonValue("v");
        QTest::newRow("first") << QJsonObject{{"b", 1}, {"c", 2}} << QStringLiteral("a") << QJsonValue(0);
        QTest::newRow("between") << QJsonObject{{"a", 1}, {"c", 2}} << QStringLiteral("b") << QJsonValue(0);
        QTest::newRow("last") << QJsonObject{{"a", 1}, {"b", 2}} << QStringLiteral("c") << QJsonValue(QJsonArray{});
        QTest::newRow("in place of a member") << QJsonObject{{"a", 1}, {"b", 2}, {"c", 3}} << QStringLiteral("b")
                                              << QJsonValue(QJsonValue::Null);
        QTest::newRow("case and prefixes") << QJsonObject{{"B", 1}, {"ab", 2}, {"abc", 3}} << QStringLiteral("a")
                                           << QJsonValue("x");
        QTest::newRow("keys beyond ASCII and to escape")
            << QJsonObject{{"\u00e9", 1}, {"z\"", 2}, {"\u4e2d", 3}} << QStringLiteral("\u00ff") << QJsonValue(1.5);
    }

    void memberTextGoesInItsPlace()
    {
        QFETCH(QJsonObject, object);
        QFETCH(QString, key);
        QFETCH(QJsonValue, value);
        QByteArray const text = host_json_t::text(value);
        QJsonObject whole = object;
        whole.insert(key, value);
        QCOMPARE(host_json_t::textWith(object, key, text), QJsonDocument(whole).toJson(QJsonDocument::Compact));
    }

    void requestTextsAreThoseOfTheJsonDocuments()
    {
        QJsonObject const packet{{"topic", "request/DB/persistent/items/objects_list/I1"},
                                 {"payload", QJsonObject{{"name", "Hall \"east\""}, {"value", 21.5}}}};
        host_link_t::packet_t const request(packet);
        QCOMPARE(request.packetText(), QJsonDocument(packet).toJson(QJsonDocument::Compact));
        QCOMPARE(request.payloadText(),
                 QJsonDocument(packet.value("payload").toObject()).toJson(QJsonDocument::Compact));
        QJsonObject const withoutPayload{{"topic", "request/DB/command/reboot"}};
        QCOMPARE(host_link_t::packet_t(withoutPayload).payloadText(), QByteArray("null"));
        QCOMPARE(host_link_t::packet_t(withoutPayload).packetText(),
                 QJsonDocument(withoutPayload).toJson(QJsonDocument::Compact));
    }

    void compactTextIsRecognised_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("compact");
        QJsonObject const item{{"name", "Hall \"east\" \\ 1"}, {"flags", -42}, {"enabled", true},
                               {"list", QJsonArray{1, "a", QJsonValue::Null, QJsonObject{}, QJsonArray{}}},
                               {"nested", QJsonObject{{"b", false}, {"a", 123456789012345LL}}}};
        QTest::newRow("a document's text") << QJsonDocument(item).toJson(QJsonDocument::Compact) << true;
        QTest::newRow("keys of several lengths") << QByteArray("{\"a\":0,\"ab\":1,\"abc\":2,\"b\":3}") << true;
        QTest::newRow("bare values") << QByteArray("[\"s\",0,-5,true,false,null,{},[]]") << true;
        QTest::newRow("lone string") << QByteArray("\"on\"") << true;
        QTest::newRow("lone integer") << QByteArray("-123456789012345") << true;
        QTest::newRow("space") << QByteArray("{ \"a\":1}") << false;
        QTest::newRow("space at the end") << QByteArray("{\"a\":1} ") << false;
        QTest::newRow("keys out of order") << QByteArray("{\"b\":1,\"a\":2}") << false;
        QTest::newRow("key twice") << QByteArray("{\"a\":1,\"a\":2}") << false;
        QTest::newRow("escaped key") << QByteArray("{\"#\":1,\"\\\"\":2}") << false;
        QTest::newRow("newline escape") << QByteArray("\"a\\nb\"") << false;
        QTest::newRow("slash escape") << QByteArray("\"a\\/b\"") << false;
        QTest::newRow("unicode escape") << QByteArray("\"\\u0041\"") << false;
        QTest::newRow("raw non-ASCII") << QByteArray("\"\xc3\xa9\"") << false;
        QTest::newRow("raw control character") << QByteArray("\"a\tb\"") << false;
        QTest::newRow("delete character") << QByteArray("\"a\x7f\"") << false;
        QTest::newRow("fraction") << QByteArray("1.5") << false;
        QTest::newRow("exponent") << QByteArray("1e3") << false;
        QTest::newRow("negative zero") << QByteArray("-0") << false;
        QTest::newRow("leading zero") << QByteArray("01") << false;
        QTest::newRow("sixteen digits") << QByteArray("1000000000000000") << false;
        QTest::newRow("trailing text") << QByteArray("{}x") << false;
        QTest::newRow("cut short") << QByteArray("{\"a\":") << false;
        QTest::newRow("nothing") << QByteArray() << false;
        QTest::newRow("misspelt word") << QByteArray("tru") << false;
    }

    void compactTextIsRecognised()
    {
        QFETCH(QByteArray, text);
        QFETCH(bool, compact);
        QCOMPARE(host_json_t::isCompactText(text), compact);
        if (!compact)
            return;
        // Taken only where the value, and the value with every number a
        // double, are written as that very text.
        QJsonValue const value = QJsonDocument::fromJson("[" + text + "]").array().at(0);
        QCOMPARE(host_json_t::text(value), text);
        QCOMPARE(host_json_t::text(asDoubles(value)), text);
        QVERIFY(asDoubles(value) == value);
    }

    void jsonTextIsTheDocumentsText_data()
    {
        QTest::addColumn<QJsonValue>("value");
        QString const lone = QString(QChar(0xd800)) + QStringLiteral("x");
        QTest::newRow("plain string") << QJsonValue("status/DB/realtime/items/objects_list/I1/value");
        QTest::newRow("empty string") << QJsonValue("");
        QTest::newRow("control characters") << QJsonValue(QStringLiteral("a\tb\u0001\u001f\b\f\r"));
        QTest::newRow("delete character") << QJsonValue(QStringLiteral("a\u007fb"));
        QTest::newRow("non-ASCII and a pair") << QJsonValue(QStringLiteral("\u00e9\u4e2d\U0001F600"));
        QTest::newRow("lone surrogate") << QJsonValue(lone);
        QTest::newRow("numbers") << QJsonValue(QJsonArray{0, -7, 21.5, 1e300, 9007199254740993LL, 0.1});
        QTest::newRow("numbers at the edges")
            << QJsonValue(QJsonArray{-0.0, 1e21, -1.5e-300, 4.9e-324, 1.7976931348623157e308, 123456789012345678LL,
                                     std::numeric_limits<qint64>::min(), std::numeric_limits<qint64>::max(),
                                     qQNaN(), qInf(), -qInf(), 2.0, -3.0, 0.30000000000000004});
        QTest::newRow("a lone number") << QJsonValue(-42);
        QTest::newRow("a lone fraction") << QJsonValue(6.02e23);
        QTest::newRow("bools and null") << QJsonValue(QJsonArray{true, false, QJsonValue::Null});
        QTest::newRow("empty containers") << QJsonValue(QJsonObject{{"a", QJsonArray{}}, {"b", QJsonObject{}}});
        QTest::newRow("keys to escape and nesting")
            << QJsonValue(QJsonObject{{"k\"1", QJsonObject{{"\u00e9", QJsonArray{QJsonObject{{"x", "y\\"}}}}}},
                                      {"", 1}, {"z", QJsonArray{QJsonArray{"a"}, "b"}}});
    }

    // Strings are checked and copied several characters at a time: a
    // character to escape must be found at every length and every place.
    void stringTextIsTheDocumentsTextAtEveryPlace_data()
    {
        QTest::addColumn<int>("special");
        QTest::newRow("none") << -1;
        QTest::newRow("quote") << int('"');
        QTest::newRow("backslash") << int('\\');
        QTest::newRow("first control character") << 0x00;
        QTest::newRow("last control character") << 0x1f;
        QTest::newRow("delete") << 0x7f;
        QTest::newRow("latin-1") << 0xe9;
        QTest::newRow("above latin-1") << 0x4e2d;
        QTest::newRow("sign bit of a 16-bit unit") << 0x8000;
        QTest::newRow("lone surrogate") << 0xdc00;
        QTest::newRow("last 16-bit unit") << 0xfffd;
    }

    void stringTextIsTheDocumentsTextAtEveryPlace()
    {
        QFETCH(int, special);
        for (int length = 0; length <= 35; ++length) {
            for (int place = 0; place < qMax(length, 1); ++place) {
                QString text;
                for (int i = 0; i < length; ++i)
                    text += QChar(u' ' + char16_t((i * 7) % 95));
                if (special >= 0 && length > 0)
                    text[place] = QChar(char16_t(special));
                QByteArray const wrapped = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
                QByteArray const expected = wrapped.mid(1, wrapped.size() - 2);
                QCOMPARE(host_json_t::text(QJsonValue(text)), expected);
                // The same string split in two pieces at the character.
                QByteArray pieces("x");
                host_json_t::appendString(pieces, {QStringView(text).left(place), QStringView(text).mid(place)});
                QCOMPARE(pieces, "x" + expected);
            }
        }
    }

    void jsonTextIsTheDocumentsText()
    {
        QFETCH(QJsonValue, value);
        QByteArray const wrapped = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
        QCOMPARE(host_json_t::text(value), wrapped.mid(1, wrapped.size() - 2));
    }
};

QTEST_GUILESS_MAIN(tst_host_change)
#include "tst_host_change.moc"
