#include <QSignalSpy>
#include <QtTest>

#include "database/database_t.h"
#include "database/definition/service_t.h"
#include "database/definition/type_brand_t.h"
#include "database/persistent/persistent_t.h"
#include "database/utility/utility.h"
#include "support/log_capture.h"

using database::database_t;
using database::definition::service_t;
using database::definition::type_brand_t;
using database::persistent::ps_handler_topic_t;
using database::persistent::objects::ps_object_item_t;

class tst_database : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(database::utility::getInstance()); }

    void roleAndNameReachTheEngine()
    {
        log_capture_t logs;
        database_t db(service_t::server, type_brand_t::HALDO);
        QVERIFY(logs.contains("Starting database engine ... for brand:HALDO", 4));
        QCOMPARE(database_t::getVersion(), QStringLiteral("4.0.0"));
        QCOMPARE(db.getService(), service_t::server);
        QCOMPARE(db.getPersistent()->getService(), service_t::server);
        db.setService(service_t::offline);
        QCOMPARE(db.getPersistent()->getService(), service_t::offline);
        db.setName(QStringLiteral("x"));
        QCOMPARE(db.getName(), QStringLiteral("x"));
        QCOMPARE(db.getPersistent()->getName(), QStringLiteral("x"));
        QVERIFY(db.getHandlerRequest());
        QVERIFY(db.getHandlerStatus());
    }

    void offlineProcessAnswersItsOwnRequests()
    {
        database_t db(service_t::offline, type_brand_t::HALDO);
        QSignalSpy forwarded(db.getPersistent(), &database::persistent::persistent_t::onPersistentRequest);
        QSignalSpy changes(db.getPersistent()->getHandlerTopic(), &ps_handler_topic_t::onPersistentChangeItem);
        ps_object_item_t item;
        item.setName(QStringLiteral("Lamp"));
        log_capture_t logs;
        db.getPersistent()->getData()->getItems()->requestSetItem(QStringLiteral("L1"), &item);
        QTRY_COMPARE(changes.count(), 1);
        QCOMPARE(forwarded.count(), 0);
        QCOMPARE(db.getPersistent()->getJsonValue("items/objects_list/L1/name").toString(), QStringLiteral("Lamp"));
        QVERIFY(logs.contains("Offline update request/DB/persistent/items/objects_list/L1", 3));
    }

    void serverForwardsRequestsToItsHost()
    {
        database_t db(service_t::server, type_brand_t::HALDO);
        QSignalSpy forwarded(db.getPersistent(), &database::persistent::persistent_t::onPersistentRequest);
        ps_object_item_t item;
        db.getPersistent()->getData()->getItems()->requestSetItem(QStringLiteral("L1"), &item);
        QTRY_COMPARE(forwarded.count(), 1);
        QTest::qWait(20);
        QVERIFY(!db.getPersistent()->getData()->getItems()->getObjects().contains("L1"));
    }

    void rollbackRepeatsThePresentState_data()
    {
        QTest::addColumn<QString>("topic");
        QTest::addColumn<int>("changes");
        QTest::addColumn<QJsonValue>("payload");
        QTest::newRow("missing item gives null") << "request/DB/persistent/items/objects_list/K" << 1 << QJsonValue();
        QTest::newRow("section gives its content") << "request/DB/persistent/general/enable_img_upd" << 1
                                                   << QJsonValue(true);
        QTest::newRow("presence simulation has no rollback") << "request/DB/presencesimulation/week" << 0
                                                             << QJsonValue();
        QTest::newRow("nothing after the prefix") << "request/DB/persistent/" << 0 << QJsonValue();
    }

    void rollbackRepeatsThePresentState()
    {
        QFETCH(QString, topic);
        QFETCH(int, changes);
        QFETCH(QJsonValue, payload);
        database_t db(service_t::server, type_brand_t::HALDO);
        QSignalSpy something(db.getPersistent()->getHandlerTopic(), &ps_handler_topic_t::onPersistentUpdatedSomething);
        QSignalSpy items(db.getPersistent()->getHandlerTopic(), &ps_handler_topic_t::onPersistentChangeItem);
        QSignalSpy general(db.getPersistent()->getHandlerTopic(), &ps_handler_topic_t::onPersistentChangeGeneralParam);
        db.roolbackPacket(QJsonObject{{"topic", topic}, {"payload", "asked"}});
        QCOMPARE(items.count() + general.count(), changes);
        QCOMPARE(something.count(), 0);
        if (changes) {
            QJsonObject const packet = (items.count() ? items : general).first().at(0).toJsonObject();
            QCOMPARE(packet.value("payload"), payload);
            QVERIFY(!packet.value("topic").toString().startsWith("request/"));
        }
    }

    void serverIgnoresOfflineEvents()
    {
        database_t db(service_t::server, type_brand_t::HALDO);
        QSignalSpy changes(db.getPersistent()->getHandlerTopic(), &ps_handler_topic_t::onPersistentChangeItem);
        QMetaObject::invokeMethod(&db, "eventOfflineRequest",
                                  Q_ARG(QJsonObject, (QJsonObject{{"topic", "request/DB/persistent/items/objects_list/K"},
                                                                  {"payload", QJsonObject{{"name", "x"}}}})));
        QTest::qWait(20);
        QCOMPARE(changes.count(), 0);
    }

    void resetPutsBackTheFactoryDatabase()
    {
        database_t db(service_t::offline, type_brand_t::HALDO);
        QJsonObject const factory = db.getPersistent()->getJdata();
        db.getPersistent()->getData()->getGeneral()->update_param(QStringLiteral("enable_img_upd"), false, true);
        QTRY_VERIFY(db.getPersistent()->getJdata() != factory);
        QSignalSpy database(db.getPersistent()->getHandlerTopic(), &ps_handler_topic_t::onPersistentChangeDatabase);
        db.resetDatabase();
        QTRY_COMPARE(database.count(), 1);
        QCOMPARE(db.getPersistent()->getJdata(), factory);
    }

    void glueConstructorAndCopy()
    {
        database_t first(service_t::server, type_brand_t::HALDO);
        first.setName(QStringLiteral("main"));
        QVERIFY(first.get_rr(QStringLiteral("image_update_service")));
        QVERIFY(!first.get_rr(QStringLiteral("other")));
        {
            database_t glue(nullptr);
            QCOMPARE(glue.getService(), service_t::client);
            QVERIFY(glue.getPersistent());
            QVERIFY(!glue.get_rr(QStringLiteral("image_update_service")));
            QVERIFY(glue.get_rr_map().isEmpty());
        }
        database_t copy(first);
        QCOMPARE(copy.getName(), QStringLiteral("main"));
        QCOMPARE(copy.getPersistent()->getName(), QStringLiteral("main"));
        QCOMPARE(copy.getService(), service_t::server);
        QVERIFY(copy.getPersistent() != first.getPersistent());
        QCOMPARE(copy.getPersistent()->getJdata(), first.getPersistent()->getJdata());
        QVERIFY(copy.get_rr_map().isEmpty()); // peers are not copied
        first.initrr(false);
        QVERIFY(first.get_rr_map().isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_database)
#include "tst_database.moc"
