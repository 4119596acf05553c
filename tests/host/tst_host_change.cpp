// A change's texts (the line of standard output and the feed, the journal
// entry, the broker's payload) are made from pieces; they must be the bytes
// the JSON documents write, whatever the packet holds.

#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

#include "host_link_t.h"

class tst_host_change : public QObject
{
    Q_OBJECT

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
};

QTEST_GUILESS_MAIN(tst_host_change)
#include "tst_host_change.moc"
