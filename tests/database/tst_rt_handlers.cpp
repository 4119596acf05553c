#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QtTest>

#include "database/database_t.h"
#include "database/default/persistent/ps_default_t.h"
#include "database/default/realtime/rt_default_t.h"
#include "database/definition/service_t.h"
#include "database/definition/type_brand_t.h"
#include "database/definition/type_knx_mode_t.h"
#include "database/persistent/persistent_t.h"
#include "database/realtime/dbs/rt_drivers_t.h"
#include "database/realtime/dbs/drivers/rt_drivers_knx_t.h"
#include "database/realtime/dbs/rt_items_t.h"
#include "database/realtime/dbs/rt_notify_t.h"
#include "database/realtime/dbs/rt_system_t.h"
#include "database/realtime/dbs/rt_thermo_t.h"
#include "database/realtime/objects/rt_object_item_t.h"
#include "database/realtime/objects/rt_object_thermostat_t.h"
#include "database/realtime/realtime_t.h"
#include "database/rt_handler_request_t.h"
#include "database/rt_handler_status_t.h"
#include "database/utility/utility.h"
#include "support/log_capture.h"
#include "support/model_test.h"

using database::database_t;
using database::definition::service_t;
using database::definition::type_brand_t;
using database::realtime::realtime_t;
using database::realtime::rt_default_t;
using database::realtime::rt_handler_topic_t;
using database::realtime::objects::rt_object_item_t;
using database::realtime::objects::rt_object_thermostat_t;

namespace {

QJsonObject packet(QString const& topic, QJsonValue const& payload)
{
    return QJsonObject{{"topic", topic}, {"payload", payload}};
}

QJsonObject itemPayload(QString const& feedback)
{
    return QJsonObject{{"id_driver", "drivers/driver_knx/1"}, {"name", "Lamp"}, {"description", ""},
                       {"enabled", true}, {"status", "1/1/2"}, {"command", "1/1/1"}, {"feedback", feedback},
                       {"type", "dtp_1"}, {"typeformat", ""}, {"interpreter", ""}, {"tracking", false},
                       {"flags", 0}};
}

QJsonObject thermostatPayload(int seasonType)
{
    return QJsonDocument::fromJson(QStringLiteral(R"({"name": "t", "id_win": "", "thermo_enabled": true,
        "thermo": {"@class": "ps_object_thermo_isteresi_t", "seasontype": %1}})")
                                       .arg(seasonType)
                                       .toUtf8())
        .object();
}

} // namespace

class tst_rt_handlers : public QObject
{
    Q_OBJECT

private:
    database_t* db = nullptr;

    realtime_t* live() const { return db->getRealtime(); }
    database::realtime::dbs::rt_items_t* items() const { return live()->getData()->getItems(); }
    database::realtime::dbs::rt_thermo_t* thermo() const { return live()->getData()->getThermo(); }

    void status(QString const& relative, QJsonValue const& payload)
    {
        QVERIFY(live()->update(packet("status/DB/realtime/" + relative, payload)));
        // The slot, then the engine's reaction to what the model published.
        drainEvents();
        drainEvents();
    }

    void addItem(QString const& key, QString const& value)
    {
        rt_object_item_t item(QStringLiteral("1/1/3"), value, nullptr);
        items()->update_item(key, &item, false);
    }

    void addThermostat(QString const& key)
    {
        rt_object_thermostat_t thermostat(nullptr);
        thermo()->update(key, &thermostat, false);
    }

    QString value(QString const& key) const { return items()->getObjects().value(key)->getValue(); }

private Q_SLOTS:
    void initTestCase() { QVERIFY(database::utility::getInstance()); }

    void init() { db = new database_t(service_t::server, type_brand_t::HALDO); }

    void cleanup()
    {
        delete db;
        db = nullptr;
        drainEvents();
    }

    void liveValueReachesTheChangeSignal_data()
    {
        QTest::addColumn<QString>("role");
        QTest::newRow("server") << "server";
        QTest::newRow("client") << "client";
    }

    void liveValueReachesTheChangeSignal()
    {
        QFETCH(QString, role);
        db->setService(service_t(role));
        addItem("K", "0");
        QSignalSpy changes(live()->getHandlerTopic(), &rt_handler_topic_t::onRealtimeChangeItem);
        QVERIFY(changes.isValid());
        QVERIFY(live()->update(packet("status/DB/realtime/items/objects_list/K/value", "23.5")));
        // Delivery is queued: nothing has changed when update returns.
        QCOMPARE(value("K"), QStringLiteral("0"));
        QCOMPARE(changes.count(), 0);
        QTRY_COMPARE(changes.count(), 1);
        QList<QVariant> const arguments = changes.takeFirst();
        QCOMPARE(arguments.at(1).toString(), QStringLiteral("K"));
        QJsonObject const published = arguments.at(0).toJsonObject();
        QCOMPARE(published.value("topic").toString(), QStringLiteral("items/objects_list/K"));
        QCOMPARE(published.value("payload").toObject().value("value").toString(), QStringLiteral("23.5"));
        QCOMPARE(value("K"), QStringLiteral("23.5"));
    }

    void itemStatusTopics_data()
    {
        QTest::addColumn<QString>("tail");
        QTest::addColumn<QJsonValue>("payload");
        QTest::addColumn<bool>("exists");
        QTest::addColumn<QString>("expectedValue");
        QTest::addColumn<QString>("expectedFeedback");
        QTest::newRow("text value") << "/value" << QJsonValue("on") << true << "on" << "1/1/3";
        QTest::newRow("number value is empty text") << "/value" << QJsonValue(5) << true << "" << "1/1/3";
        QTest::newRow("feedback one step deeper") << "/feedback/x" << QJsonValue("fb") << true << "old" << "fb";
        QTest::newRow("feedback at the end replaces the item: text removes it")
            << "/feedback" << QJsonValue("fb") << false << "" << "";
        QTest::newRow("whole item") << "" << QJsonValue(QJsonObject{{"feedback", "f"}, {"value", "v"}}) << true
                                    << "v" << "f";
        QTest::newRow("empty object removes") << "" << QJsonValue(QJsonObject()) << false << "" << "";
        QTest::newRow("empty steps are no steps") << "/value//" << QJsonValue("on") << true << "on" << "1/1/3";
        QTest::newRow("feedback with empty steps around") << "//feedback//x/" << QJsonValue("fb") << true << "old"
                                                          << "fb";
        QTest::newRow("spaces around the topic") << "/value  " << QJsonValue("on") << true << "on" << "1/1/3";
    }

    void itemStatusTopics()
    {
        QFETCH(QString, tail);
        QFETCH(QJsonValue, payload);
        QFETCH(bool, exists);
        QFETCH(QString, expectedValue);
        QFETCH(QString, expectedFeedback);
        addItem("K", "old");
        status("items/objects_list/K" + tail, payload);
        QCOMPARE(items()->getObjects().contains("K"), exists);
        if (exists) {
            QCOMPARE(value("K"), expectedValue);
            QCOMPARE(items()->getObjects().value("K")->getFeedback(), expectedFeedback);
        }
    }

    void wholeItemStatusIsPublishedAsStored_data()
    {
        QTest::addColumn<bool>("own");
        QTest::addColumn<QJsonObject>("payload");
        QTest::addColumn<QString>("expectedValue");
        QTest::addColumn<int>("published");
        QTest::newRow("the stored item's own JSON") << true << QJsonObject() << "old" << 1;
        QTest::newRow("another value") << false << QJsonObject{{"feedback", "1/1/3"}, {"value", "new"}} << "new" << 1;
        QTest::newRow("a key more") << false << QJsonObject{{"feedback", "1/1/3"}, {"value", "old"}, {"x", 1}}
                                    << "old" << 1;
        QTest::newRow("the value left out") << false << QJsonObject{{"feedback", "1/1/3"}} << "" << 1;
        QTest::newRow("a number for the value is refused")
            << false << QJsonObject{{"feedback", "1/1/3"}, {"value", 5}} << "old" << 0;
    }

    /// Whether the status brings the item's own JSON or other JSON that
    /// reads as an item, the item is published once, as it is stored afterwards.
    void wholeItemStatusIsPublishedAsStored()
    {
        QFETCH(bool, own);
        QFETCH(QJsonObject, payload);
        QFETCH(QString, expectedValue);
        QFETCH(int, published);
        addItem("K", "old");
        if (own)
            payload = items()->getObjects().value("K")->toJson();
        QSignalSpy changes(live()->getHandlerTopic(), &rt_handler_topic_t::onRealtimeChangeItem);
        QVERIFY(changes.isValid());
        QCOMPARE(changes.count(), 0);
        status("items/objects_list/K", payload);
        QCOMPARE(value("K"), expectedValue);
        QCOMPARE(items()->getObjects().value("K")->getFeedback(), QStringLiteral("1/1/3"));
        drainEvents();
        QCOMPARE(changes.count(), published);
        if (!published)
            return;
        QJsonObject const packet = changes.takeFirst().at(0).toJsonObject();
        QCOMPARE(packet.value("topic").toString(), QStringLiteral("items/objects_list/K"));
        QCOMPARE(packet.value("payload").toObject(), items()->getObjects().value("K")->toJson());
    }

    void valueForUnknownItemCreatesNothing()
    {
        QSignalSpy missing(live(), &realtime_t::onRealtimeObjectNotExist);
        QVERIFY(missing.isValid());
        status("items/objects_list/NOPE/value", "1");
        QVERIFY(!items()->getObjects().contains("NOPE"));
        QCOMPARE(missing.count(), 0);
    }

    void thermostatFieldTopics_data()
    {
        QTest::addColumn<QString>("tail");
        QTest::addColumn<double>("payload");
        QTest::addColumn<QString>("field");
        QTest::addColumn<double>("expected");
        QTest::newRow("negative setpoint ignored") << "thermo/setpoint" << -1.0 << "setpoint" << 20.0;
        QTest::newRow("zero setpoint taken") << "thermo/setpoint" << 0.0 << "setpoint" << 0.0;
        QTest::newRow("mode cut to integer") << "thermo/mode" << 3.9 << "mode" << 3.0;
        QTest::newRow("forceFan sets the mode") << "thermo/forceFan" << 2.0 << "mode" << 2.0;
        QTest::newRow("season") << "thermo/season" << 1.0 << "season" << 1.0;
        QTest::newRow("actual has no entry") << "thermo/actual" << 30.0 << "actual" << 0.0;
        QTest::newRow("hydro setpoint is set") << "hydro/setpoint" << 40.0 << "hydro.set" << 40.0;
        QTest::newRow("hydro forceFan sets its mode") << "hydro/forceFan" << 1.0 << "hydro.mode" << 1.0;
        QTest::newRow("hydro fan") << "hydro/fan" << 3.0 << "hydro.fan" << 3.0;
    }

    void thermostatFieldTopics()
    {
        QFETCH(QString, tail);
        QFETCH(double, payload);
        QFETCH(QString, field);
        QFETCH(double, expected);
        addThermostat("T");
        thermo()->list("T")->getThermo()->update_setpoint(20, false);
        status("thermo/objects_list/T/" + tail, payload);
        rt_object_thermostat_t* thermostat = thermo()->getObjects().value("T");
        QObject* half = field.startsWith("hydro.") ? static_cast<QObject*>(thermostat->getHydro())
                                                  : static_cast<QObject*>(thermostat->getThermo());
        QString const name = field.section('.', -1);
        QCOMPARE(half->property(name.toLatin1()).toDouble(), expected);
    }

    void thermostatHalvesAndWhole()
    {
        // A half for an unknown key creates the thermostat.
        status("thermo/objects_list/T/thermo", QJsonObject{{"setpoint", 21.5}, {"mode", 2}});
        QVERIFY(thermo()->getObjects().contains("T"));
        QCOMPARE(thermo()->getObjects().value("T")->getThermo()->getSetpoint(), 21.5f);
        // An empty half makes that half a new one (mode 4), the other stays.
        status("thermo/objects_list/T/hydro", QJsonObject{{"set", 45}});
        status("thermo/objects_list/T/thermo", QJsonObject());
        QCOMPARE(thermo()->getObjects().value("T")->getThermo()->getOperationMode(), 4);
        QCOMPARE(thermo()->getObjects().value("T")->getThermo()->getSetpoint(), 0.0f);
        QCOMPARE(thermo()->getObjects().value("T")->getHydro()->getSetpoint(), 45.0f);
        // The whole thermostat with an empty payload goes.
        status("thermo/objects_list/T", QJsonObject());
        QVERIFY(!thermo()->getObjects().contains("T"));
    }

    void knxModeStatusTakesOnlyArrays_data()
    {
        QTest::addColumn<QJsonValue>("payload");
        QTest::addColumn<QStringList>("expected");
        QString const fallback = database::persistent::ps_default_t::getInstance()->getDefaultKnxMode().ToString();
        QTest::newRow("array") << QJsonValue(QJsonArray{"kdrive", "baos"}) << QStringList{"kdrive", "baos"};
        QTest::newRow("empty array") << QJsonValue(QJsonArray()) << QStringList();
        QTest::newRow("text resets to the default") << QJsonValue("baos") << QStringList{fallback};
        QTest::newRow("object resets to the default") << QJsonValue(QJsonObject{{"0", "baos"}})
                                                       << QStringList{fallback};
    }

    void knxModeStatusTakesOnlyArrays()
    {
        QFETCH(QJsonValue, payload);
        QFETCH(QStringList, expected);
        live()->getData()->getDrivers()->update_knxmode({"x", "y", "z"}, false);
        status("drivers/knx_mode", payload);
        QCOMPARE(live()->getData()->getDrivers()->getKnxMode(), expected);
    }

    void userNotificationReadOnlyByABoolean_data()
    {
        QTest::addColumn<QJsonValue>("payload");
        QTest::addColumn<bool>("read");
        QTest::newRow("boolean true") << QJsonValue(true) << true;
        QTest::newRow("text true") << QJsonValue("true") << false;
        QTest::newRow("number 1") << QJsonValue(1) << false;
    }

    void userNotificationReadOnlyByABoolean()
    {
        QFETCH(QJsonValue, payload);
        QFETCH(bool, read);
        status("notify/user_list/1", QJsonObject{{"name", "door"}, {"verbosity", "info"}, {"message", "open"}});
        QVERIFY(live()->getData()->getNotify()->getUserNotify().contains("1"));
        status("notify/user_list/1/read", payload);
        QCOMPARE(live()->getData()->getNotify()->getUserNotify().value("1")->getRead(), read);
        // The read flag of an unknown notification creates nothing.
        status("notify/user_list/2/read", true);
        QVERIFY(!live()->getData()->getNotify()->getUserNotify().contains("2"));
    }

    void systemNotificationArrivesAndGoes()
    {
        QSignalSpy changes(live()->getHandlerTopic(), &rt_handler_topic_t::onRealtimeChangeSystemNotifyObjects);
        QVERIFY(changes.isValid());
        status("notify/sys_list/7", QJsonObject{{"name", "bus"}, {"verbosity", "error"}, {"message", "lost"}});
        QCOMPARE(live()->getData()->getNotify()->getSysNotify().value("7")->getMessage(), QStringLiteral("lost"));
        QTRY_COMPARE(changes.count(), 1);
        QCOMPARE(changes.takeFirst().at(1).toString(), QStringLiteral("7"));
        status("notify/sys_list/7", QJsonObject());
        QVERIFY(!live()->getData()->getNotify()->getSysNotify().contains("7"));
    }

    void clockTakesOnlyValidDates_data()
    {
        QTest::addColumn<QJsonValue>("payload");
        QTest::addColumn<bool>("taken");
        QTest::newRow("ISO date and time") << QJsonValue("2026-11-23T10:15:00") << true;
        QTest::newRow("not a date") << QJsonValue("yesterday") << false;
        QTest::newRow("number") << QJsonValue(1700000000) << false;
    }

    void clockTakesOnlyValidDates()
    {
        QFETCH(QJsonValue, payload);
        QFETCH(bool, taken);
        QString const before = live()->getData()->getSystem()->getDatetime();
        status("system/datetime", payload);
        QString const after = live()->getData()->getSystem()->getDatetime();
        QCOMPARE(after != before, taken);
        if (taken)
            QVERIFY(after.startsWith("2026-11-23T10:15:00"));
    }

    void driverStatusDetailAndInterfaces()
    {
        auto* knx = live()->getData()->getDrivers()->getKnx();
        status("drivers/driver_knx/status/bus1", QJsonObject{{"loop_execution", true}});
        QVERIFY(knx->getStatus().contains("bus1"));
        QCOMPARE(knx->getStatus().value("bus1")->getLoopExecution(), true);
        status("drivers/driver_knx/status/bus1/info", QJsonObject{{"busDisconnected", "yes"}});
        QCOMPARE(knx->getStatus().value("bus1")->getInfo()->getBusDisconnected(), QStringLiteral("yes"));
        // Any other tail has no route.
        QVERIFY(!live()->update(packet("status/DB/realtime/drivers/driver_knx/status/bus1/other", QJsonObject())));
        status("drivers/driver_knx/interfaces",
               QJsonArray{QJsonObject{{"id", 1}, {"type", "USB"}}, QJsonObject{{"id", 2}, {"type", "IP"}}});
        QCOMPARE(knx->getInterfaces().size(), 2);
        QCOMPARE(knx->getInterfaces().at(1)->getType(), QStringLiteral("IP"));
        // An array of the wrong shape changes nothing.
        status("drivers/driver_knx/interfaces", QJsonArray{1, 2, 3});
        QCOMPARE(knx->getInterfaces().size(), 2);
        status("drivers/driver_knx/status/bus1", QJsonObject());
        QVERIFY(!knx->getStatus().contains("bus1"));
    }

    void sectionsTakeTheirWholeStatus_data()
    {
        QTest::addColumn<QString>("section");
        QTest::addColumn<QJsonObject>("payload");
        QTest::addColumn<QString>("path");
        QTest::addColumn<QJsonValue>("expected");
        QTest::newRow("sun times") << "astronomical" << QJsonObject{{"sunset", "17:01"}, {"sunrice", "07:22"}}
                                   << "astronomical/sunrice" << QJsonValue("07:22");
        QTest::newRow("scheduler counters")
            << "schedulers/objects_list/evening"
            << QJsonObject{{"cron_list", QJsonObject{{"c1", QJsonObject{{"executed", "19:00"}, {"counter", 3}}}}}}
            << "schedulers/objects_list/evening/cron_list/c1/counter" << QJsonValue(3);
        QTest::newRow("rule value") << "rules/objects_list/r1" << QJsonObject{{"value", "1"}}
                                    << "rules/objects_list/r1/value" << QJsonValue("1");
        QTest::newRow("scenario running") << "scenary/objects_list/s1" << QJsonObject{{"execution", true}}
                                          << "scenary/objects_list/s1/execution" << QJsonValue(true);
    }

    void sectionsTakeTheirWholeStatus()
    {
        QFETCH(QString, section);
        QFETCH(QJsonObject, payload);
        QFETCH(QString, path);
        QFETCH(QJsonValue, expected);
        status(section, payload);
        QCOMPARE(database::utility::getJsonValue(QJsonDocument(live()->getJdata()), path), expected);
    }

    void itemTwinFollowsTheConfiguration()
    {
        auto* configured = db->getPersistent();
        configured->update(packet("request/DB/persistent/items/objects_list/L1", itemPayload("1/1/3")));
        QTRY_VERIFY(items()->getObjects().contains("L1"));
        QCOMPARE(items()->getObjects().value("L1")->getFeedback(), QStringLiteral("1/1/3"));
        QCOMPARE(value("L1"), QString());

        status("items/objects_list/L1/value", "on");
        QCOMPARE(value("L1"), QStringLiteral("on"));
        // A change of configuration keeps the live value.
        configured->update(packet("request/DB/persistent/items/objects_list/L1", itemPayload("2/2/2")));
        QTRY_COMPARE(items()->getObjects().value("L1")->getFeedback(), QStringLiteral("2/2/2"));
        QCOMPARE(value("L1"), QStringLiteral("on"));

        configured->update(packet("request/DB/persistent/items/objects_list/L1", QJsonObject()));
        QTRY_VERIFY(!items()->getObjects().contains("L1"));
    }

    void itemTwinsFollowAStatusOfTheWholeList()
    {
        addItem("OLD", "x");
        db->getPersistent()->update(packet("status/DB/persistent/items/objects_list",
                                           QJsonObject{{"A", itemPayload("1/0/1")}, {"B", itemPayload("1/0/2")}}));
        QTRY_COMPARE(items()->getObjects().keys(), (QStringList{"A", "B"}));
        QCOMPARE(items()->getObjects().value("B")->getFeedback(), QStringLiteral("1/0/2"));
    }

    void thermostatTwinTakesTheSeasonOfItsType_data()
    {
        QTest::addColumn<int>("seasonType");
        QTest::addColumn<int>("liveSeason");
        QTest::addColumn<int>("expected");
        QTest::newRow("heating only, new twin") << 1 << -1 << 1;
        QTest::newRow("cooling only, new twin") << 2 << -1 << 0;
        QTest::newRow("both, new twin") << 0 << -1 << 0;
        QTest::newRow("heating only, twin in cooling") << 1 << 0 << 1;
        QTest::newRow("cooling only, twin in heating") << 2 << 1 << 0;
        QTest::newRow("both, twin keeps its season") << 0 << 1 << 1;
    }

    void thermostatTwinTakesTheSeasonOfItsType()
    {
        QFETCH(int, seasonType);
        QFETCH(int, liveSeason);
        QFETCH(int, expected);
        if (liveSeason >= 0) {
            addThermostat("T1");
            thermo()->list("T1")->getThermo()->update_season(liveSeason, false);
        }
        db->getPersistent()->update(packet("request/DB/persistent/thermo/objects_list/T1", thermostatPayload(seasonType)));
        QTRY_VERIFY(db->getPersistent()->getData()->getThermo()->getObjects().contains("T1"));
        drainEvents();
        QVERIFY(thermo()->getObjects().contains("T1"));
        QCOMPARE(thermo()->getObjects().value("T1")->getThermo()->getSeason(), expected);

        db->getPersistent()->update(packet("request/DB/persistent/thermo/objects_list/T1", QJsonObject()));
        QTRY_VERIFY(!thermo()->getObjects().contains("T1"));
    }

    void offlineRequestComesBackAsStatus()
    {
        database_t offline{service_t::offline, type_brand_t::HALDO};
        auto* engine = offline.getRealtime();
        QSignalSpy statuses(engine->getHandlerTopic(), &rt_handler_topic_t::onRealtimeStatusItem);
        QVERIFY(statuses.isValid());
        QMetaObject::invokeMethod(engine, "_onRequest",
                                  Q_ARG(QJsonObject, packet("request/DB/realtime/items/objects_list/K",
                                                            QJsonObject{{"value", "1"}})));
        QTRY_COMPARE(statuses.count(), 1);
        QCOMPARE(statuses.takeFirst().at(0).toJsonObject().value("topic").toString(),
                 QStringLiteral("status/DB/realtime/items/objects_list/K"));
        QTRY_VERIFY(engine->getData()->getItems()->getObjects().contains("K"));
    }

    void knxModeRequestInForceDoesNotReset()
    {
        database_t offline{service_t::offline, type_brand_t::HALDO};
        QString const mode = offline.getPersistent()->getData()->getDrivers()->getKnxMode();
        log_capture_t logs;
        QSignalSpy resets(offline.getPersistent()->getHandlerTopic(),
                          &database::persistent::ps_handler_topic_t::onPersistentChangeDatabase);
        QVERIFY(resets.isValid());
        QMetaObject::invokeMethod(offline.getRealtime(), "_onRequest",
                                  Q_ARG(QJsonObject, packet("request/DB/realtime/drivers/knx_mode",
                                                            QJsonObject{{"mode", mode}})));
        QTRY_VERIFY(logs.contains("Already setted knx mode ", 3));
        drainEvents();
        QCOMPARE(resets.count(), 0);

        logs.clear();
        QMetaObject::invokeMethod(offline.getRealtime(), "_onRequest",
                                  Q_ARG(QJsonObject, packet("request/DB/realtime/drivers/knx_mode", "baos")));
        QTRY_VERIFY(logs.contains("Unknown knxmode ", 2));
    }

    void offlineHandlerExistsOnlyOffline()
    {
        QVERIFY(!db->getRtHandlerRequest());
        QVERIFY(db->getRtHandlerStatus());
        db->setService(service_t::offline);
        QVERIFY(db->getRtHandlerRequest());
        db->setService(service_t::client);
        QVERIFY(!db->getRtHandlerRequest());
        database_t offline{service_t::offline, type_brand_t::HALDO};
        QVERIFY(offline.getRtHandlerRequest());
    }

    void nameReachesBothEngines()
    {
        db->setName("x");
        QCOMPARE(db->getPersistent()->getName(), QStringLiteral("x"));
        QCOMPARE(live()->getName(), QStringLiteral("x"));
    }

    void rollbackRepeatsTheLiveState()
    {
        addItem("K", "present");
        live()->serialize(true);
        QSignalSpy changes(live()->getHandlerTopic(), &rt_handler_topic_t::onRealtimeChangeItem);
        QSignalSpy something(live()->getHandlerTopic(), &rt_handler_topic_t::onRealtimeUpdatedSomething);
        QVERIFY(changes.isValid() && something.isValid());
        db->roolbackPacket(packet("request/DB/realtime/items/objects_list/K", QJsonObject{{"value", "wished"}}));
        db->roolbackPacket(packet("request/DB/realtime/items/objects_list/NONE", QJsonObject()));
        QCOMPARE(changes.count(), 2);
        QCOMPARE(changes.at(0).at(0).toJsonObject().value("payload").toObject().value("value").toString(),
                 QStringLiteral("present"));
        QVERIFY(changes.at(1).at(0).toJsonObject().value("payload").isNull()
                || changes.at(1).at(0).toJsonObject().value("payload").isUndefined());
        QCOMPARE(something.count(), 0);
    }

    void supportedKnxModes_data()
    {
        QTest::addColumn<QString>("brand");
        QTest::addColumn<QString>("role");
        QTest::addColumn<bool>("secure");
        QTest::addColumn<bool>("all");
        QTest::newRow("VESTRA offline secure: default only") << "VESTRA" << "offline" << true << false;
        QTest::newRow("HALDO client: default only") << "HALDO" << "client" << false << false;
        QTest::newRow("HALDO client secure: all") << "HALDO" << "client" << true << true;
        QTest::newRow("HALDO offline: all") << "HALDO" << "offline" << false << true;
    }

    void supportedKnxModes()
    {
        QFETCH(QString, brand);
        QFETCH(QString, role);
        QFETCH(bool, secure);
        QFETCH(bool, all);
        rt_default_t* defaults = rt_default_t::getInstance();
        type_brand_t const before = defaults->getBrand();
        type_brand_t const chosen = type_brand_t::getType(brand);
        defaults->setBrand(chosen);
        auto const modes = defaults->getKnxSupportedMode(service_t(role), secure);
        auto const expected = all ? database::definition::type_knx_mode_t::knx_mode(chosen)
                                  : decltype(modes){database::definition::type_knx_mode_t::knx_default_mode(chosen)};
        QCOMPARE(modes, expected);
        // The one-argument form answers as the last call said.
        QCOMPARE(defaults->getKnxSupportedMode(service_t(role)), expected);
        QCOMPARE(defaults->getJData(service_t(role)).value("drivers").toObject().value("knx_mode").toArray().size(),
                 expected.size());
        defaults->set_knx_secure_enable(false);
        defaults->setBrand(before);
    }
};

QTEST_GUILESS_MAIN(tst_rt_handlers)
#include "tst_rt_handlers.moc"
