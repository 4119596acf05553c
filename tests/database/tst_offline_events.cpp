#include <QSignalSpy>
#include <QtTest>

#include "database/database_t.h"
#include "database/definition/service_t.h"
#include "database/definition/type_brand_t.h"
#include "database/persistent/objects/ps_object_item_t.h"
#include "database/persistent/persistent_t.h"
#include "database/presencesimulation/presencesimulation_t.h"
#include "database/presencesimulation/psi_data_t.h"
#include "database/realtime/dbs/rt_items_t.h"
#include "database/realtime/realtime_t.h"
#include "database/utility/utility.h"
#include "support/log_capture.h"

using database::database_t;
using database::definition::service_t;
using database::definition::type_brand_t;

/// An offline process has no server: each database's requests come back to it
/// as the server would have answered them.
class tst_offline_events : public QObject
{
    Q_OBJECT

private:
    /// Raises a request on the model of database, as a user interface would.
    static void request(database_t& db, QString const& database)
    {
        if (database == QLatin1String("persistent")) {
            database::persistent::objects::ps_object_item_t item;
            item.setName(QStringLiteral("Lamp"));
            db.getPersistent()->getData()->getItems()->requestSetItem(QStringLiteral("L1"), &item);
        } else if (database == QLatin1String("realtime")) {
            QMetaObject::invokeMethod(db.getRealtime(), "_onRequest",
                                      Q_ARG(QJsonObject, (QJsonObject{{"topic", "request/DB/realtime/items/objects_list/L1"},
                                                                      {"payload", QJsonObject{{"value", "on"}}}})));
        } else {
            db.getPresenceSimulation()->getData()->requestSetAction(1, 8, 30, QStringLiteral("L1"), QStringLiteral("on"));
        }
    }

    /// What the request asked for, read back from the database.
    static QString applied(database_t& db, QString const& database)
    {
        if (database == QLatin1String("persistent"))
            return db.getPersistent()->getJsonValue("items/objects_list/L1/name").toString();
        if (database == QLatin1String("realtime")) {
            auto const items = db.getRealtime()->getData()->getItems()->getObjects();
            return items.contains("L1") ? items.value("L1")->getValue() : QString();
        }
        return database::utility::getJsonValue(QJsonDocument(db.getPresenceSimulation()->getJdata()),
                                               "week/days/1/hours/8/minutes/30/actions/L1")
            .toString();
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(database::utility::getInstance()); }

    void requestOfEachDatabaseIsAnsweredLocally_data()
    {
        QTest::addColumn<QString>("database");
        QTest::addColumn<QString>("role");
        QTest::addColumn<QString>("expected");
        for (QString const database : {"persistent", "realtime", "presencesimulation"}) {
            QString const value = database == QLatin1String("persistent") ? "Lamp" : "on";
            QTest::newRow(qPrintable(database + ", offline")) << database << "offline" << value;
            QTest::newRow(qPrintable(database + ", server")) << database << "server" << "";
        }
    }

    void requestOfEachDatabaseIsAnsweredLocally()
    {
        QFETCH(QString, database);
        QFETCH(QString, role);
        QFETCH(QString, expected);
        database_t db(service_t(role), type_brand_t::HALDO);
        log_capture_t logs;
        request(db, database);
        if (expected.isEmpty()) {
            QTest::qWait(50);
            QCOMPARE(applied(db, database), QString());
            return;
        }
        QTRY_COMPARE(applied(db, database), expected);
        QVERIFY(logs.contains("Offline update request/DB/" + database + "/", 3));
    }

    void rollbackOfEachDatabase_data()
    {
        QTest::addColumn<QString>("topic");
        QTest::addColumn<int>("persistentChanges");
        QTest::addColumn<int>("realtimeChanges");
        QTest::newRow("persistent") << "request/DB/persistent/items/objects_list/K" << 1 << 0;
        QTest::newRow("realtime") << "request/DB/realtime/items/objects_list/K" << 0 << 1;
        QTest::newRow("presence simulation has none") << "request/DB/presencesimulation/week/days/1" << 0 << 0;
        QTest::newRow("unknown database") << "request/DB/elsewhere/items" << 0 << 0;
    }

    void rollbackOfEachDatabase()
    {
        QFETCH(QString, topic);
        QFETCH(int, persistentChanges);
        QFETCH(int, realtimeChanges);
        database_t db(service_t::client, type_brand_t::HALDO);
        QSignalSpy persistent(db.getPersistent()->getHandlerTopic(),
                              &database::persistent::ps_handler_topic_t::onPersistentChangeItem);
        QSignalSpy realtime(db.getRealtime()->getHandlerTopic(),
                            &database::realtime::rt_handler_topic_t::onRealtimeChangeItem);
        QVERIFY(persistent.isValid() && realtime.isValid());
        db.roolbackPacket(QJsonObject{{"topic", topic}, {"payload", "asked"}});
        QCOMPARE(persistent.count(), persistentChanges);
        QCOMPARE(realtime.count(), realtimeChanges);
    }
};

QTEST_GUILESS_MAIN(tst_offline_events)
#include "tst_offline_events.moc"
