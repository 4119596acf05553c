#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include "database/default/persistent/ps_default_t.h"
#include "database/definition/service_t.h"
#include "database/definition/type_brand_t.h"
#include "database/migration/migration_t.h"
#include "database/persistent/dbs/ps_versions_t.h"
#include "database/persistent/persistent_t.h"
#include "database/utility/utility.h"
#include "support/log_capture.h"

using database::definition::service_t;
using database::definition::type_brand_t;
using database::persistent::persistent_t;
using database::persistent::ps_data_t;
using database::persistent::ps_default_t;
using database::persistent::objects::ps_object_item_t;

namespace {

void writeFile(QString const& path, QByteArray const& bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

} // namespace

class tst_persistent : public QObject
{
    Q_OBJECT

private:
    persistent_t* engine = nullptr;

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(database::utility::getInstance());
        ps_default_t::createInstance(type_brand_t::HALDO, QStringLiteral("4.0.0"));
        database::migration::migration_t::createInstance(type_brand_t::HALDO);
    }

    void init() { engine = new persistent_t(service_t::server); }

    void cleanup()
    {
        delete engine;
        engine = nullptr;
    }

    void freshEngineHoldsHashedDefaults()
    {
        QVERIFY(engine->isJdataValid());
        QVERIFY(engine->getData());
        QMap<QString, QString> const hashes = engine->getHashList();
        QCOMPARE(hashes.keys(), engine->getJdata().keys());
        QRegularExpression const sha1(QStringLiteral("^[0-9a-f]{40}$"));
        QVERIFY(sha1.match(engine->getHash()).hasMatch());
        for (QString const& hash : hashes)
            QVERIFY(sha1.match(hash).hasMatch());
        // Digests depend on content only: a second engine agrees.
        persistent_t other(service_t::client);
        QCOMPARE(other.getHashList(), hashes);
        QCOMPARE(engine->getJdata(), ps_default_t::getInstance()->getJData());
    }

    void checkHashOutcomes_data()
    {
        QTest::addColumn<QString>("section");
        QTest::addColumn<bool>("localHash");
        QTest::addColumn<int>("expected");
        QTest::newRow("same digest") << "general" << true << 0;
        QTest::newRow("other digest") << "general" << false << 1;
        QTest::newRow("unknown section") << "nothing" << false << -1;
    }

    void checkHashOutcomes()
    {
        QFETCH(QString, section);
        QFETCH(bool, localHash);
        QFETCH(int, expected);
        QString const hash = localHash ? engine->getHashList().value(section) : QStringLiteral("abc");
        QSignalSpy replay(engine->getHandlerTopic(), &database::persistent::ps_handler_topic_t::onPersistentStatusGeneral);
        QVERIFY(replay.isValid());
        log_capture_t logs;
        QCOMPARE(engine->checkHash(section, hash, true), expected);
        QCOMPARE(replay.count(), expected == 1 ? 1 : 0);
        if (expected == 1) {
            QJsonObject const packet = replay.takeFirst().at(0).toJsonObject();
            QCOMPARE(packet.value("topic").toString(), QStringLiteral("status/DB/persistent/general"));
            QCOMPARE(packet.value("payload").toObject(), engine->getJdata().value("general").toObject());
            QVERIFY(logs.contains("In DB general change", 3));
            QVERIFY(logs.contains("Old hash abc", 3));
        } else if (expected == 0) {
            QVERIFY(logs.contains("In DB general not change ", 3));
        }
    }

    void checkHashWithoutSendReplaysNothing()
    {
        QSignalSpy replay(engine->getHandlerTopic(), &database::persistent::ps_handler_topic_t::onPersistentStatusGeneral);
        QCOMPARE(engine->checkHash("general", "abc", false), 1);
        QCOMPARE(replay.count(), 0);
    }

    void burstOfUpdatesForcesOneSerializationAtTheTwentyFirst()
    {
        QSignalSpy saves(engine, &persistent_t::onSaveRequest);
        QVERIFY(saves.isValid());
        auto* items = engine->getData()->getItems();
        for (int i = 0; i < 20; ++i)
            items->send_update();
        QTRY_COMPARE(engine->getUpdateCount(), 20);
        QCOMPARE(saves.count(), 0);
        QVERIFY(!engine->isJdataValid());
        items->send_update();
        QTRY_COMPARE(saves.count(), 1);
        QCOMPARE(engine->getUpdateCount(), 0);
        QVERIFY(engine->isJdataValid());
    }

    void quietPeriodRebuildsTheImageOnce()
    {
        QSignalSpy saves(engine, &persistent_t::onSaveRequest);
        QSignalSpy changes(engine->getHandlerTopic(), &database::persistent::ps_handler_topic_t::onPersistentChangeItems);
        engine->getData()->getItems()->send_update();
        QTRY_COMPARE(changes.count(), 1);
        QCOMPARE(saves.count(), 0);
        QTRY_COMPARE_WITH_TIMEOUT(saves.count(), 1, 15000);
        QVERIFY(engine->isJdataValid());
    }

    void updateRoutesOnlyPersistentTopics_data()
    {
        QTest::addColumn<QString>("topic");
        QTest::addColumn<bool>("routed");
        QTest::newRow("request") << "request/DB/persistent/general" << true;
        QTest::newRow("status") << "status/DB/persistent/items/objects_list/K" << true;
        QTest::newRow("realtime status") << "status/DB/realtime/items" << false;
        QTest::newRow("no route") << "request/DB/persistent/nothing" << false;
        QTest::newRow("no topic") << "" << false;
    }

    void updateRoutesOnlyPersistentTopics()
    {
        QFETCH(QString, topic);
        QFETCH(bool, routed);
        log_capture_t logs;
        QJsonObject packet{{"payload", QJsonObject()}};
        if (!topic.isEmpty())
            packet.insert("topic", topic);
        QCOMPARE(engine->update(packet), routed);
        if (routed)
            QVERIFY(logs.contains("Found database path: " + topic + " update it", 6));
        else
            QVERIFY(logs.contains("Database path or packet not valid: " + topic + " no update", 2));
    }

    void updateDatabaseWithEmptyInputRestoresDefaults()
    {
        engine->getData()->getGeneral()->update_param(QStringLiteral("enable_img_upd"), false, false);
        engine->serialize(true);
        QSignalSpy database(engine->getHandlerTopic(), &database::persistent::ps_handler_topic_t::onPersistentChangeDatabase);
        QVERIFY(database.isValid());
        engine->update_database(QJsonObject(), true);
        QCOMPARE(engine->getJdata(), ps_default_t::getInstance()->getJData());
        QTRY_COMPARE(database.count(), 1);
        QJsonObject const packet = database.takeFirst().at(0).toJsonObject();
        QCOMPARE(packet.value("topic").toString(), QStringLiteral("DB"));
        QCOMPARE(packet.value("payload").toObject(), engine->getJdata());
        QVERIFY(packet.value("change_list").isArray());
    }

    void updateDatabaseReportsChangedSectionsAndKeepsOwnVersions()
    {
        QJsonObject incoming = engine->getJdata();
        QJsonObject general = incoming.value("general").toObject();
        general.insert("description", "elsewhere");
        incoming.insert("general", general);
        incoming.insert("versions", QJsonObject{{"database", "0.0.1"}, {"general", "x"}});
        QSignalSpy database(engine->getHandlerTopic(), &database::persistent::ps_handler_topic_t::onPersistentChangeDatabase);
        engine->update_database(incoming, true);
        QTRY_COMPARE(database.count(), 1);
        QStringList changes;
        for (QJsonValue const& key : database.takeFirst().at(0).toJsonObject().value("change_list").toArray())
            changes.append(key.toString());
        QVERIFY(changes.contains("general"));
        QVERIFY(changes.contains("versions"));
        QVERIFY(!changes.contains("items"));
        QCOMPARE(engine->getJdata().value("general").toObject().value("description").toString(),
                 QStringLiteral("elsewhere"));
        QCOMPARE(engine->getJdata().value("versions").toObject(), ps_default_t::getInstance()->getVersions()->toJson());
    }

    void statusPacketOfTheDatabase()
    {
        QJsonObject const packet = engine->getStatusDatabasePacket();
        QCOMPARE(packet.value("topic").toString(), QStringLiteral("status/DB/persistent/DB"));
        QCOMPARE(packet.value("payload").toObject(), engine->getJdata());
        QCOMPARE(packet.value("sender").toString(), QString());
        QCOMPARE(packet.value("destination").toString(), QString());
        QVERIFY(packet.value("sender").isString());
    }

    void requestsLeaveByRole_data()
    {
        QTest::addColumn<QString>("role");
        QTest::addColumn<int>("forwarded");
        QTest::addColumn<int>("offline");
        QTest::newRow("server forwards") << "server" << 1 << 0;
        QTest::newRow("client forwards") << "client" << 1 << 0;
        QTest::newRow("offline answers itself") << "offline" << 0 << 1;
    }

    void requestsLeaveByRole()
    {
        QFETCH(QString, role);
        QFETCH(int, forwarded);
        QFETCH(int, offline);
        engine->setService(service_t(role));
        QSignalSpy requests(engine, &persistent_t::onPersistentRequest);
        QSignalSpy offlineRequests(engine, &persistent_t::eventOfflineRequest);
        engine->getData()->getItems()->requestSetItem(QStringLiteral("K"), nullptr);
        QTRY_COMPARE(requests.count() + offlineRequests.count(), 1);
        QCOMPARE(requests.count(), forwarded);
        QCOMPARE(offlineRequests.count(), offline);
        QJsonObject const packet = (forwarded ? requests : offlineRequests).takeFirst().at(0).toJsonObject();
        QCOMPARE(packet.value("topic").toString(), QStringLiteral("request/DB/persistent/items/objects_list/K"));
        QVERIFY(!packet.contains("counter"));
    }

    void requestSetDBGoesThroughTheRouter()
    {
        QSignalSpy database(engine->getHandlerTopic(), &database::persistent::ps_handler_topic_t::onPersistentRequestDatabase);
        ps_data_t replacement;
        engine->requestSetDB(&replacement);
        engine->requestSetDB(nullptr);
        QTRY_COMPARE(database.count(), 2);
        QCOMPARE(replacement.getTopic(), QStringLiteral("DB"));
        QCOMPARE(database.at(0).at(0).toJsonObject().value("payload").toObject(), replacement.toJson());
        QCOMPARE(database.at(1).at(0).toJsonObject().value("payload").toObject(), QJsonObject());
    }

    void objectRefusalsAreLoggedAndForwarded()
    {
        QSignalSpy notExist(engine, &persistent_t::onPersistentObjectNotExist);
        QSignalSpy errors(engine, &persistent_t::onPersistentObjectError);
        log_capture_t logs;
        engine->getData()->getItems()->list(QStringLiteral("missing"));
        engine->getData()->getGeneral()->update(nullptr, true);
        QTRY_COMPARE(notExist.count(), 1);
        QTRY_COMPARE(errors.count(), 1);
        QCOMPARE(errors.first().at(1).toString(), QStringLiteral("Not permitted nullptr"));
        QVERIFY(logs.contains("Receive event: No update db, object not exist: items/objects_list/missing", 2));
        QVERIFY(logs.contains("Receive event: Error to update general msg: Not permitted nullptr", 2));
    }

    void loadAndSave()
    {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        QString const path = dir.filePath("persistent.json");
        log_capture_t logs;
        QSignalSpy checks(engine, &persistent_t::consistency_check_sync);

        int result = 0;
        QJsonObject const defaults = engine->getJdata();
        QVERIFY(engine->loadFromFile(path, result).isEmpty());
        QVERIFY(logs.contains("File not exist ... " + path, 2));
        QCOMPARE(engine->getJdata(), defaults);

        QVERIFY(engine->saveToFile(path, false));
        QVERIFY(logs.contains("File not foud write " + path, 3));
        QCOMPARE(engine->readFromFile(path), defaults);

        // A saved document with an older stamp comes back migrated and stamped.
        QJsonObject old = defaults;
        QJsonObject general = old.value("general").toObject();
        general.insert("description", "from file");
        old.insert("general", general);
        old.insert("versions", QJsonObject{{"database", "3.0.0"}});
        writeFile(path, QJsonDocument(old).toJson());
        QJsonObject const loaded = engine->loadFromFile(path, result);
        QCOMPARE(loaded.value("versions").toObject().value("database").toString(), QStringLiteral("4.0.0"));
        QCOMPARE(engine->getJdata().value("general").toObject().value("description").toString(),
                 QStringLiteral("from file"));
        QTRY_COMPARE(checks.count(), 1);
        QCOMPARE(checks.first().at(0).toStringList(), QStringList{"ALL"});
    }

    void corruptFileIsLeftAlone_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("truncated") << QByteArray("{\"general\": {\"latitude\": 4");
        QTest::newRow("not json") << QByteArray("hello");
    }

    void corruptFileIsLeftAlone()
    {
        QFETCH(QByteArray, content);
        QTemporaryDir dir;
        QString const path = dir.filePath("persistent.json");
        writeFile(path, content);
        QJsonObject const before = engine->getJdata();
        log_capture_t logs;
        int result = 0;
        QVERIFY(engine->loadFromFile(path, result).isEmpty());
        QVERIFY(logs.contains("Error parsing file", 2));
        QCOMPARE(engine->getJdata(), before);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), content);
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{"persistent.json"});
    }

    void saveToUnwritablePathFails()
    {
        log_capture_t logs;
        QVERIFY(!engine->saveToFile(QStringLiteral("/nonexistent-folder/x.json"), true));
        QVERIFY(logs.contains("Unable to open file: /nonexistent-folder/x.json", 2));
    }

    void deserializeOfWrongShapeLeavesNoTreeAndNoThrow()
    {
        log_capture_t logs;
        engine->deserialize(QJsonObject{{"items", "not an object"}});
        QVERIFY(logs.contains("Error to deserialize peristent: ", 2));
        QVERIFY(!engine->getData());
        engine->initSerializer();
        QVERIFY(engine->getData());
    }

    void copiedEngineHoldsTheSameImage()
    {
        engine->getData()->getGeneral()->update_param(QStringLiteral("enable_img_upd"), false, false);
        engine->serialize(true);
        persistent_t copy(*engine);
        QCOMPARE(copy.getJdata(), engine->getJdata());
        QCOMPARE(copy.getHash(), engine->getHash());
        QVERIFY(copy.getData() != engine->getData());
    }
};

QTEST_GUILESS_MAIN(tst_persistent)
#include "tst_persistent.moc"
