#include <QCryptographicHash>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include "database/database_t.h"
#include "database/definition/service_t.h"
#include "database/definition/type_brand_t.h"
#include "database/realtime/dbs/rt_items_t.h"
#include "database/realtime/objects/rt_object_item_t.h"
#include "database/realtime/realtime_t.h"
#include "database/realtime/rt_data_t.h"
#include "database/utility/utility.h"
#include "support/log_capture.h"
#include "support/model_test.h"

using database::database_t;
using database::definition::service_t;
using database::definition::type_brand_t;
using database::realtime::realtime_t;
using database::realtime::rt_handler_topic_t;
using database::realtime::definition::rt_type_database_field_t;
using database::realtime::objects::rt_object_item_t;

namespace {

QJsonObject packet(QString const& topic, QJsonValue const& payload)
{
    return QJsonObject{{"topic", topic}, {"payload", payload}};
}

QString sha1(QJsonObject const& object)
{
    return QString::fromLatin1(
        QCryptographicHash::hash(QJsonDocument(object).toJson(QJsonDocument::Compact), QCryptographicHash::Sha1)
            .toHex());
}

QByteArray writeFile(QTemporaryDir const& dir, QString const& name, QByteArray const& bytes)
{
    QFile file(dir.filePath(name));
    file.open(QIODevice::WriteOnly);
    file.write(bytes);
    return QFile::encodeName(file.fileName());
}

} // namespace

class tst_realtime : public QObject
{
    Q_OBJECT

private:
    database_t* db = nullptr;

    realtime_t* engine() const { return db->getRealtime(); }

    /// An item K with a value, put straight into the tree.
    void addItem(QString const& key, QString const& value)
    {
        rt_object_item_t item(QStringLiteral("1/1/3"), value, nullptr);
        engine()->getData()->getItems()->update_item(key, &item, false);
        engine()->serialize(true);
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(database::utility::getInstance()); }

    void init() { db = new database_t(service_t::server, type_brand_t::HALDO); }

    void cleanup()
    {
        delete db;
        db = nullptr;
        drainEvents();
    }

    void imageHasThirteenSectionsEachHashed()
    {
        QJsonObject const image = engine()->getJdata();
        QStringList const keys{"astronomical", "drivers", "installation", "items", "notify", "presencesimulation",
                               "rules", "scenary", "schedulers", "smartbutton", "storage", "system", "thermo"};
        QCOMPARE(image.keys(), keys);
        QMap<QString, QString> const hashes = engine()->getHashList(true);
        QCOMPARE(hashes.keys(), keys);
        for (QString const& key : keys)
            QCOMPARE(hashes.value(key), sha1(image.value(key).toObject()));
        QCOMPARE(engine()->getHash(), sha1(image));
        QCOMPARE(engine()->getJdata(rt_type_database_field_t::general), QJsonObject());
        QCOMPARE(engine()->getJdata(rt_type_database_field_t::items), image.value("items").toObject());
    }

    void twentyFirstUpdateRebuildsAtOnce()
    {
        addItem("K", "0");
        QSignalSpy saves(engine(), &realtime_t::onSaveRequest);
        QVERIFY(saves.isValid());
        for (int n = 1; n <= 20; ++n)
            QVERIFY(engine()->update(packet("status/DB/realtime/items/objects_list/K/value", QString::number(n))));
        QTRY_COMPARE(engine()->getUpdateCount(), 20);
        QVERIFY(!engine()->isJdataValid());
        QCOMPARE(saves.count(), 0);
        engine()->update(packet("status/DB/realtime/items/objects_list/K/value", "21"));
        QTRY_COMPARE(engine()->getUpdateCount(), 0);
        QVERIFY(engine()->isJdataValid());
        QCOMPARE(saves.count(), 1);
        QCOMPARE(database::utility::getJsonValue(QJsonDocument(engine()->getJdata()), "items/objects_list/K/value")
                     .toString(),
                 QStringLiteral("21"));
    }

    void quietTimeRebuildsTheImage()
    {
        addItem("K", "0");
        QSignalSpy saves(engine(), &realtime_t::onSaveRequest);
        QVERIFY(saves.isValid());
        engine()->update(packet("status/DB/realtime/items/objects_list/K/value", "5"));
        QTRY_COMPARE(engine()->getUpdateCount(), 1);
        QCOMPARE(saves.count(), 0);
        QTRY_COMPARE_WITH_TIMEOUT(saves.count(), 1, 15000);
        QVERIFY(engine()->isJdataValid());
    }

    void updateRefusesWhatNoRouteTakes_data()
    {
        QTest::addColumn<QString>("topic");
        QTest::newRow("prefix passed, router refuses") << "status/DB/realtimeX/items";
        QTest::newRow("request form") << "request/DB/realtime/items/objects_list/K";
        QTest::newRow("persistent topic") << "status/DB/persistent/items";
        QTest::newRow("no topic") << "";
    }

    void updateRefusesWhatNoRouteTakes()
    {
        QFETCH(QString, topic);
        log_capture_t logs;
        QJsonObject const before = engine()->getJdata();
        QVERIFY(!engine()->update(topic.isEmpty() ? QJsonObject{{"payload", 1}} : packet(topic, 1)));
        QVERIFY(logs.contains("Database path or packet not valid: " + topic + " no update", 2));
        drainEvents();
        QCOMPARE(engine()->getJdata(), before);
    }

    void emptyDatabaseReplacementReportsWhatWent()
    {
        addItem("K", "1");
        QSignalSpy changes(engine()->getHandlerTopic(), &rt_handler_topic_t::onRealtimeChangeDatabase);
        QVERIFY(changes.isValid());
        engine()->update_database(QJsonObject(), true);
        QCOMPARE(engine()->getData()->getItems()->getObjects().size(), 0);
        QCOMPARE(changes.count(), 1);
        QJsonObject const published = changes.takeFirst().at(0).toJsonObject();
        QCOMPARE(published.value("topic").toString(), QStringLiteral("DB"));
        QVERIFY(published.value("change_list").toArray().contains(QJsonValue("items")));
    }

    void checkHashAnswersAndReplays_data()
    {
        QTest::addColumn<QString>("section");
        QTest::addColumn<bool>("sameHash");
        QTest::addColumn<int>("answer");
        QTest::addColumn<int>("replayed");
        QTest::newRow("unknown section") << "general" << false << -1 << 0;
        QTest::newRow("same hash") << "items" << true << 0 << 0;
        QTest::newRow("other hash") << "items" << false << 1 << 1;
    }

    void checkHashAnswersAndReplays()
    {
        QFETCH(QString, section);
        QFETCH(bool, sameHash);
        QFETCH(int, answer);
        QFETCH(int, replayed);
        addItem("K", "7");
        QSignalSpy replays(engine()->getHandlerTopic(), &rt_handler_topic_t::onRealtimeStatusItems);
        QVERIFY(replays.isValid());
        QString const hash = sameHash ? engine()->getHashList(true).value(section) : QStringLiteral("0");
        QCOMPARE(engine()->checkHash(section, hash), answer);
        QCOMPARE(replays.count(), replayed);
        if (replayed) {
            QJsonObject const sent = replays.takeFirst().at(0).toJsonObject();
            QCOMPARE(sent.value("topic").toString(), QStringLiteral("status/DB/realtime/items"));
            QCOMPARE(sent.value("payload").toObject(), engine()->getJdata().value("items").toObject());
        }
    }

    void statusDatabasePacketHasItsFourKeys()
    {
        QJsonObject const sent = engine()->getStatusDatabasePacket();
        QCOMPARE(sent.keys(), (QStringList{"destination", "payload", "sender", "topic"}));
        QCOMPARE(sent.value("topic").toString(), QStringLiteral("status/DB/realtime/DB"));
        QCOMPARE(sent.value("payload").toObject(), engine()->getJdata());
    }

    void requestsLeaveByRole_data()
    {
        QTest::addColumn<QString>("role");
        QTest::addColumn<QString>("topic");
        QTest::addColumn<int>("forwarded");
        QTest::addColumn<int>("offline");
        QTest::newRow("server keeps it") << "server" << "request/DB/realtime/items/objects_list/K" << 0 << 0;
        QTest::newRow("client forwards") << "client" << "request/DB/realtime/items/objects_list/K" << 1 << 0;
        QTest::newRow("offline answers") << "offline" << "request/DB/realtime/items/objects_list/K" << 0 << 1;
        QTest::newRow("offline knx mode") << "offline" << "request/DB/realtime/drivers/knx_mode" << 0 << 0;
    }

    void requestsLeaveByRole()
    {
        QFETCH(QString, role);
        QFETCH(QString, topic);
        QFETCH(int, forwarded);
        QFETCH(int, offline);
        realtime_t engine{service_t(role)};
        QSignalSpy requests(&engine, &realtime_t::onRealtimeRequest);
        QSignalSpy offlineEvents(&engine, &realtime_t::eventOfflineRequest);
        QVERIFY(requests.isValid() && offlineEvents.isValid());
        QMetaObject::invokeMethod(&engine, "_onRequest", Q_ARG(QJsonObject, packet(topic, QJsonObject())));
        QCOMPARE(requests.count(), forwarded);
        QCOMPARE(offlineEvents.count(), offline);
    }

    void saveAndLoadRoundTrip()
    {
        addItem("K", "on");
        QTemporaryDir dir;
        QString const path = dir.filePath("realtime.json");
        log_capture_t logs;
        QVERIFY(engine()->saveToFile(path, false));
        QVERIFY(logs.contains("File not foud write " + path, 3));
        QVERIFY(logs.contains("Save to file " + path, 6));

        realtime_t other{service_t::client};
        int result = 0;
        QVERIFY(!other.loadFromFile(path, 4, result).isEmpty());
        QCOMPARE(result, 0);
        QCOMPARE(other.getJdata(), engine()->getJdata());
        QCOMPARE(other.getHash(), engine()->getHash());
    }

    void wholeDocumentSurvivesSaveAndLoad()
    {
        QList<QPair<QString, QJsonValue>> const statuses{
            {"items/objects_list/K", QJsonObject{{"feedback", "1/1/3"}, {"value", "on"}}},
            {"thermo/objects_list/T/thermo", QJsonObject{{"setpoint", 21.5}, {"season", 1}}},
            {"notify/user_list/1", QJsonObject{{"name", "door"}, {"message", "open"}}},
            {"notify/sys_list/2", QJsonObject{{"name", "bus"}, {"message", "lost"}}},
            {"astronomical", QJsonObject{{"sunset", "17:01"}, {"sunrice", "07:22"}}},
            {"schedulers/objects_list/S", QJsonObject{{"cron_list", QJsonObject{{"c", QJsonObject{{"counter", 2}}}}}}},
            {"scenary/objects_list/C", QJsonObject{{"execution", true}}},
            {"rules/objects_list/R", QJsonObject{{"value", "1"}}},
            {"drivers/driver_knx/status/B", QJsonObject{{"loop_execution", true}}},
            {"drivers/driver_knx/interfaces", QJsonArray{QJsonObject{{"id", 1}, {"type", "USB"}}}},
            {"drivers/knx_mode", QJsonArray{"kdrive"}},
            {"installation/mqtt_devices/D", QJsonObject{{"name", "plug"}}},
            {"system/datetime", "2026-11-23T10:15:00"},
            {"smartbutton", QJsonObject{{"state", "stop"}}},
        };
        for (auto const& status : statuses)
            QVERIFY2(engine()->update(packet("status/DB/realtime/" + status.first, status.second)),
                     qPrintable(status.first));
        for (int round = 0; round < 4; ++round)
            drainEvents();
        QJsonObject const image = engine()->serialize(true);
        QCOMPARE(image.value("items").toObject().value("objects_list").toObject().size(), 1);
        QCOMPARE(image.value("notify").toObject().value("sys_list").toObject().size(), 1);

        QScopedPointer<database::realtime::rt_data_t> back(
            serializer()->deserialize<database::realtime::rt_data_t*>(image, nullptr));
        QVERIFY(back);
        // The system section is never replaced from outside, a file included:
        // it is the one section that doesn't come back.
        QCOMPARE(database::utility::compareJdata(back->toJson(), image), QList<QString>{"system"});

        QTemporaryDir dir;
        QVERIFY(engine()->saveToFile(dir.filePath("realtime.json"), false));
        realtime_t other{service_t::offline};
        int result = 0;
        QVERIFY(!other.loadFromFile(dir.filePath("realtime.json"), 4, result).isEmpty());
        QJsonObject loaded = other.getJdata();
        QCOMPARE(loaded.value("system").toObject().value("datetime").toString(), QString());
        loaded.remove("system");
        QJsonObject expected = image;
        expected.remove("system");
        QCOMPARE(loaded, expected);
    }

    void badFilesLeaveTheTree_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("line");
        QTest::addColumn<bool>("emptied");
        QTest::newRow("missing") << QByteArray() << "File not exist ... " << false;
        QTest::newRow("not JSON") << QByteArray("{\"items\": ") << "Error parsing file" << false;
        QTest::newRow("bad items section") << QByteArray(R"({"items": {"objects_list": {"K": 5}}})")
                                           << "Error to deserialize realtime: " << true;
    }

    void badFilesLeaveTheTree()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, line);
        QFETCH(bool, emptied);
        addItem("K", "kept");
        QTemporaryDir dir;
        QString const path = content.isEmpty() ? dir.filePath("none.json")
                                               : QString::fromLocal8Bit(writeFile(dir, "realtime.json", content));
        log_capture_t logs;
        int result = 0;
        engine()->loadFromFile(path, 4, result);
        QVERIFY2(logs.contains(line, 2), qPrintable(logs.messages().join('\n')));
        // A document that doesn't fit gives a whole empty tree, not one without items.
        QCOMPARE(engine()->getData()->getItems()->getObjects().contains("K"), !emptied);
        if (emptied) {
            realtime_t fresh{service_t::server};
            QCOMPARE(engine()->getJdata(), fresh.getJdata());
        }
    }

    void updateDateTimeStampsThePath()
    {
        QJsonDocument doc(QJsonObject{{"items", QJsonObject()}});
        QVERIFY(!engine()->updateDateTime(doc, QString()));
        QVERIFY(engine()->updateDateTime(doc, "items"));
        QVERIFY(!doc.object().value("items").toObject().value("updated").toString().isEmpty());
    }

    void copyHoldsTheSameImage()
    {
        addItem("K", "copied");
        realtime_t copy(*engine());
        QCOMPARE(copy.getJdata(), engine()->getJdata());
        QVERIFY(copy.getData() != engine()->getData());
    }
};

QTEST_GUILESS_MAIN(tst_realtime)
#include "tst_realtime.moc"
