#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include "database/database_t.h"
#include "database/default/persistent/ps_default_t.h"
#include "database/definition/service_t.h"
#include "database/definition/type_brand_t.h"
#include "database/persistent/dbs/ps_versions_t.h"
#include "database/persistent/persistent_t.h"
#include "database/ps_handler_request_t.h"
#include "database/ps_handler_status_t.h"
#include "database/utility/utility.h"
#include "support/log_capture.h"

using database::database_t;
using database::definition::service_t;
using database::definition::type_brand_t;
using database::persistent::persistent_t;
using database::persistent::ps_default_t;
using database::persistent::ps_handler_topic_t;

namespace {

QJsonObject itemPayload(QString const& driver, QString const& name = QStringLiteral("Lamp"))
{
    return QJsonObject{{"id_driver", driver}, {"name", name}, {"description", ""}, {"enabled", true},
                       {"status", "1/1/2"}, {"command", "1/1/1"}, {"feedback", "1/1/3"}, {"type", "dtp_1"},
                       {"typeformat", ""}, {"interpreter", ""}, {"tracking", false}, {"flags", 0}};
}

QJsonObject packet(QString const& topic, QJsonValue const& payload)
{
    return QJsonObject{{"topic", topic}, {"payload", payload}};
}

} // namespace

class tst_ps_handlers : public QObject
{
    Q_OBJECT

private:
    database_t* db = nullptr;

    persistent_t* engine() const { return db->getPersistent(); }

    bool hasItem(QString const& id) const { return engine()->getData()->getItems()->getObjects().contains(id); }

    void request(QString const& relative, QJsonValue const& payload)
    {
        QVERIFY(engine()->update(packet("request/DB/persistent/" + relative, payload)));
    }

    void status(QString const& relative, QJsonValue const& payload)
    {
        QVERIFY(engine()->update(packet("status/DB/persistent/" + relative, payload)));
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(database::utility::getInstance()); }

    void init() { db = new database_t(service_t::server, type_brand_t::HALDO); }

    void cleanup()
    {
        delete db;
        db = nullptr;
    }

    void requestRoadEndsInChangeSignal()
    {
        QSignalSpy changes(engine()->getHandlerTopic(), &ps_handler_topic_t::onPersistentChangeItem);
        QVERIFY(changes.isValid());
        request("items/objects_list/L1", itemPayload("drivers/driver_knx/1"));
        // Delivery is queued: nothing has changed when update returns.
        QVERIFY(!hasItem("L1"));
        QCOMPARE(changes.count(), 0);
        QTRY_COMPARE(changes.count(), 1);
        QList<QVariant> const arguments = changes.takeFirst();
        QCOMPARE(arguments.at(1).toString(), QStringLiteral("L1"));
        QJsonObject const published = arguments.at(0).toJsonObject();
        QCOMPARE(published.value("topic").toString(), QStringLiteral("items/objects_list/L1"));
        QCOMPARE(published.value("payload").toObject().value("name").toString(), QStringLiteral("Lamp"));
        QCOMPARE(engine()->getJsonValue("items/objects_list/L1/id_driver").toString(),
                 QStringLiteral("drivers/driver_knx/1"));
    }

    void unknownDriverClearedOnRequestKeptOnStatus_data()
    {
        QTest::addColumn<bool>("asStatus");
        QTest::addColumn<QString>("driver");
        QTest::addColumn<QString>("stored");
        QTest::newRow("request, unknown driver") << false << "drivers/driver_knx/9" << "";
        QTest::newRow("request, known driver") << false << "drivers/driver_knx/1" << "drivers/driver_knx/1";
        QTest::newRow("request, blank driver") << false << "  " << "  ";
        QTest::newRow("status, unknown driver") << true << "drivers/driver_knx/9" << "drivers/driver_knx/9";
    }

    void unknownDriverClearedOnRequestKeptOnStatus()
    {
        QFETCH(bool, asStatus);
        QFETCH(QString, driver);
        QFETCH(QString, stored);
        if (asStatus)
            status("items/objects_list/L1", itemPayload(driver));
        else
            request("items/objects_list/L1", itemPayload(driver));
        QTRY_VERIFY(hasItem("L1"));
        QCOMPARE(engine()->getData()->getItems()->list("L1")->getIdDriver(), stored);
    }

    void removalFiresConsistencyChangeDoesNot()
    {
        QSignalSpy checks(db->getHandlerRequest(), &database::ps_handler_request_t::consistency_check_async);
        QVERIFY(checks.isValid());
        request("items/objects_list/L1", itemPayload("drivers/driver_knx/1"));
        QTRY_VERIFY(hasItem("L1"));
        QCOMPARE(checks.count(), 0);
        request("items/objects_list/L1", QJsonObject());
        QTRY_VERIFY(!hasItem("L1"));
        QCOMPARE(checks.count(), 1);
        QCOMPARE(checks.first().at(0).toStringList(), QStringList{"ALL"});
    }

    void statusRunsNoConsistencyCheck()
    {
        QSignalSpy checks(db->getHandlerRequest(), &database::ps_handler_request_t::consistency_check_async);
        status("items/objects_list/L1", itemPayload("x"));
        QTRY_VERIFY(hasItem("L1"));
        status("items/objects_list/L1", QJsonObject());
        QTRY_VERIFY(!hasItem("L1"));
        status("DB", QJsonObject());
        QTest::qWait(50);
        QCOMPARE(checks.count(), 0);
    }

    void busDriversExcludeEachOther_data()
    {
        QTest::addColumn<bool>("asStatus");
        QTest::addColumn<QString>("driver");
        QTest::addColumn<bool>("value");
        QTest::addColumn<bool>("knxAfter");
        QTest::addColumn<bool>("baosAfter");
        // The factory state of this brand: KNX on, BAOS off.
        QTest::newRow("request baos on turns knx off") << false << "driver_baos" << true << false << true;
        QTest::newRow("request knx on turns baos off") << false << "driver_knx" << true << true << false;
        QTest::newRow("request knx off touches nothing else") << false << "driver_knx" << false << false << false;
        QTest::newRow("request baos off touches nothing else") << false << "driver_baos" << false << true << false;
        QTest::newRow("status baos on turns knx off") << true << "driver_baos" << true << false << true;
    }

    void busDriversExcludeEachOther()
    {
        QFETCH(bool, asStatus);
        QFETCH(QString, driver);
        QFETCH(bool, value);
        QFETCH(bool, knxAfter);
        QFETCH(bool, baosAfter);
        auto* drivers = engine()->getData()->getDrivers();
        if (driver == QLatin1String("driver_knx") && value) {
            // Start from BAOS on, so that the exclusion has something to do.
            drivers->getKnx()->update_enabled(false, false);
            drivers->getBaos()->update_enabled(true, false);
        }
        QSignalSpy changes(engine()->getHandlerTopic(),
                           driver == QLatin1String("driver_knx") ? &ps_handler_topic_t::onPersistentChangeDriversKnxEnabled
                                                                 : &ps_handler_topic_t::onPersistentChangeDriversBaosEnabled);
        if (asStatus)
            status("drivers/" + driver + "/enabled", value);
        else
            request("drivers/" + driver + "/enabled", value);
        QTRY_COMPARE(changes.count(), 1);
        QCOMPARE(drivers->getKnx()->getEnabled(), knxAfter);
        QCOMPARE(drivers->getBaos()->getEnabled(), baosAfter);
    }

    void wholeDatabaseRequestWithEmptyPayloadPutsBackDefaults()
    {
        QSignalSpy checks(db->getHandlerRequest(), &database::ps_handler_request_t::consistency_check_async);
        QSignalSpy database(engine()->getHandlerTopic(), &ps_handler_topic_t::onPersistentChangeDatabase);
        request("items/objects_list/L1", itemPayload(""));
        QTRY_VERIFY(hasItem("L1"));
        request("DB", QJsonObject());
        QTRY_COMPARE(database.count(), 1);
        QVERIFY(!hasItem("L1"));
        QCOMPARE(engine()->getJdata(), ps_default_t::getInstance()->getJData());
        QCOMPARE(engine()->getJdata().value("versions").toObject(), ps_default_t::getInstance()->getVersions()->toJson());
        QCOMPARE(checks.count(), 1);
    }

    void generalRequestWatchesTheAstroFlag()
    {
        QSignalSpy checks(db->getHandlerRequest(), &database::ps_handler_request_t::consistency_check_async);
        QJsonObject general = engine()->getJdata().value("general").toObject();
        general.insert("enable_astro", true);
        request("general", general);
        QTRY_VERIFY(engine()->getData()->getGeneral()->getEnableAstro());
        QCOMPARE(checks.count(), 0);
        log_capture_t logs;
        general.insert("enable_astro", false);
        request("general", general);
        QTRY_COMPARE(checks.count(), 1);
        QVERIFY(logs.contains("[ps_handler_request] Astronomical watch has been disabled! Run consistency!", 3));
    }

    void referencesToMissingItemsAreCleared_data()
    {
        QTest::addColumn<QString>("section");
        QTest::addColumn<QJsonObject>("payload");
        QTest::addColumn<QStringList>("cleared");
        QTest::addColumn<QStringList>("kept");
        QTest::newRow("presence simulation") << "presencesimulation"
                                             << QJsonObject{{"state", "stop"}, {"idItem", "ghost"}}
                                             << QStringList{"idItem"} << QStringList{};
        QTest::newRow("smart button")
            << "smartbutton"
            << QJsonObject{{"id_item_listen_index", "L1"}, {"value_item_rgb", "FF;00;00;"}, {"id_item_rgb", "ghost"},
                           {"timeout", 60}, {"enabled", true}}
            << QStringList{"id_item_rgb"} << QStringList{"id_item_listen_index"};
    }

    void referencesToMissingItemsAreCleared()
    {
        QFETCH(QString, section);
        QFETCH(QJsonObject, payload);
        QFETCH(QStringList, cleared);
        QFETCH(QStringList, kept);
        request("items/objects_list/L1", itemPayload(""));
        QTRY_VERIFY(hasItem("L1"));
        QSignalSpy changes(engine()->getHandlerTopic(), section == QLatin1String("smartbutton")
                                                            ? &ps_handler_topic_t::onPersistentChangeSmartButton
                                                            : &ps_handler_topic_t::onPersistentChangePresenceSimulation);
        request(section, payload);
        QTRY_VERIFY(changes.count() >= 1);
        for (QString const& key : cleared)
            QCOMPARE(engine()->getJsonValue(section + "/" + key).toString(), QString());
        for (QString const& key : kept)
            QCOMPARE(engine()->getJsonValue(section + "/" + key), payload.value(key));
    }

    void usersRequestFiresCheckStatusDoesNot()
    {
        QSignalSpy checks(db->getHandlerRequest(), &database::ps_handler_request_t::consistency_check_async);
        QJsonObject const user{{"name", "guest"}, {"perm", 1}, {"pin", ""}};
        status("users/objects_list/5", user);
        QTRY_COMPARE(engine()->getJsonValue("users/objects_list/5/name").toString(), QStringLiteral("guest"));
        QCOMPARE(checks.count(), 0);
        request("users/objects_list/6", user);
        // The check is asked for while the request is handled; the image learns
        // of the change only when its queued update arrives after that.
        QTRY_COMPARE(engine()->getJsonValue("users/objects_list/6/name").toString(), QStringLiteral("guest"));
        QCOMPARE(checks.count(), 1);
    }

    void storageRequestWritesUnderItsPath()
    {
        request("storage/objects_list/panel", QJsonObject{{"theme", "dark"}});
        QTRY_COMPARE(engine()->getJsonValue("storage/objects_list/panel/theme").toString(), QStringLiteral("dark"));
    }

    void scenarioElementOwnsItsScene()
    {
        auto* scenary = engine()->getData()->getScenary();
        QJsonObject element{{"@class", "psoe_scenario"}, {"name", "Evening"}, {"scenario_id", "S1"}};
        request("elements/objects_list/E1", element);
        QTRY_VERIFY(scenary->getObjects().contains("S1"));
        QCOMPARE(scenary->getObjects().value("S1")->getName(), QStringLiteral("Evening"));

        element.insert("name", "Night");
        request("elements/objects_list/E1", element);
        QTRY_COMPARE(scenary->getObjects().value("S1")->getName(), QStringLiteral("Night"));

        request("elements/objects_list/E1", QJsonObject());
        QTRY_VERIFY(!scenary->getObjects().contains("S1"));
        QVERIFY(!engine()->getData()->getElements()->getObjects().contains("E1"));
    }

    void knxScenarioElementLeavesScenesAlone()
    {
        QJsonObject const element{{"@class", "psoe_scenario"}, {"name", "Bus scene"}, {"scenario_id", "S2"},
                                  {"flags", int(0x80000000)}};
        request("elements/objects_list/E2", element);
        QTRY_VERIFY(engine()->getData()->getElements()->getObjects().contains("E2"));
        QVERIFY(!engine()->getData()->getScenary()->getObjects().contains("S2"));
    }

    void statusRemovingScenarioElementKeepsTheScene()
    {
        auto* scenary = engine()->getData()->getScenary();
        request("elements/objects_list/E1", QJsonObject{{"@class", "psoe_scenario"}, {"name", "Evening"},
                                                        {"scenario_id", "S1"}});
        QTRY_VERIFY(scenary->getObjects().contains("S1"));
        status("elements/objects_list/E1", QJsonObject());
        QTRY_VERIFY(!engine()->getData()->getElements()->getObjects().contains("E1"));
        QTest::qWait(20);
        QVERIFY(scenary->getObjects().contains("S1"));
    }

    void thermostatElementOwnsItsThermostat()
    {
        auto* thermo = engine()->getData()->getThermo();
        request("elements/objects_list/T1", QJsonObject{{"@class", "psoe_thermo_logic"}, {"name", "Living"},
                                                        {"thermo_id", "TH1"}});
        QTRY_VERIFY(thermo->getObjects().contains("TH1"));
        QCOMPARE(thermo->getObjects().value("TH1")->getName(), QStringLiteral("Living"));
        request("elements/objects_list/T1", QJsonObject());
        QTRY_VERIFY(!thermo->getObjects().contains("TH1"));
    }

    void elementFunctionsKeepOnlyExistingItems()
    {
        request("items/objects_list/L1", itemPayload(""));
        QTRY_VERIFY(hasItem("L1"));
        request("elements/objects_list/E3", QJsonObject{{"@class", "psoe_onoff"}, {"name", "Lamp"},
                                                        {"function_map", QJsonObject{{"onoff", "L1"}, {"status", "ghost"}}}});
        QTRY_VERIFY(engine()->getData()->getElements()->getObjects().contains("E3"));
        QCOMPARE(engine()->getData()->getElements()->getObjects().value("E3")->getFunction_map().keys(),
                 QStringList{"onoff"});
    }

    void sectionSwitchesAndLists_data()
    {
        QTest::addColumn<QString>("relative");
        QTest::addColumn<QJsonValue>("payload");
        QTest::addColumn<QString>("path");
        QTest::newRow("scenarios off") << "scenary/enabled" << QJsonValue(false) << "scenary/enabled";
        QTest::newRow("rules off") << "rules/enabled" << QJsonValue(false) << "rules/enabled";
        QTest::newRow("schedules off") << "schedulers/enabled" << QJsonValue(false) << "schedulers/enabled";
        QTest::newRow("notifications on") << "notify/enabled" << QJsonValue(true) << "notify/enabled";
        QTest::newRow("page stack") << "elements/page_stack" << QJsonValue(QJsonObject{{"P1", QJsonArray{"R1"}}})
                                    << "elements/page_stack";
    }

    void sectionSwitchesAndLists()
    {
        QFETCH(QString, relative);
        QFETCH(QJsonValue, payload);
        QFETCH(QString, path);
        request(relative, payload);
        QTRY_COMPARE(engine()->getJsonValue(path), payload);
    }

    void wholeDefaultDocumentSurvivesSaveAndLoad()
    {
        QTemporaryDir dir;
        QString const path = dir.filePath("db.json");
        QJsonObject const before = engine()->getJdata();
        QCOMPARE(before.keys().size(), 15);
        QVERIFY(engine()->saveToFile(path, true));
        int result = 0;
        QVERIFY(!engine()->loadFromFile(path, result).isEmpty());
        QCOMPARE(engine()->getJdata(), before);
    }

    void payloadOfWrongTypeChangesNothing_data()
    {
        QTest::addColumn<QString>("relative");
        QTest::addColumn<QJsonValue>("payload");
        QTest::newRow("item as string") << "items/objects_list/L1" << QJsonValue("lamp");
        QTest::newRow("item with array field") << "items/objects_list/L1" << QJsonValue(QJsonObject{{"name", QJsonArray{1}}});
        QTest::newRow("enabled as string") << "drivers/driver_baos/enabled" << QJsonValue("yes");
        QTest::newRow("database as array") << "DB" << QJsonValue(QJsonArray{1, 2});
        QTest::newRow("users as number") << "users" << QJsonValue(3);
    }

    void payloadOfWrongTypeChangesNothing()
    {
        QFETCH(QString, relative);
        QFETCH(QJsonValue, payload);
        QJsonObject const before = engine()->getJdata();
        log_capture_t logs;
        request(relative, payload);
        QTRY_VERIFY(logs.contains("Payload not valid for request/DB/persistent/" + relative, 2));
        QTest::qWait(20);
        QCOMPARE(engine()->getJdata(), before);
    }
};

QTEST_GUILESS_MAIN(tst_ps_handlers)
#include "tst_ps_handlers.moc"
