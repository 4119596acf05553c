#include <QJsonArray>
#include <QPointer>
#include <QSignalSpy>
#include <QtTest>

#include <functional>

#include "database/presencesimulation/define/psi_type_state_presence_simulation_t.h"
#include "database/realtime/dbs/rt_installation_t.h"
#include "database/realtime/dbs/rt_presencesimulation_t.h"
#include "database/realtime/dbs/rt_system_t.h"
#include "database/utility/utility.h"
#include "support/log_capture.h"
#include "support/model_test.h"
#include "support/packet_recorder.h"

using database::presencesimulation::definition::psi_type_state_presence_simulation_t;
using database::realtime::rt_mqtt_devices_map;
using database::realtime::rt_object_presencesimulation_list;
using database::realtime::rt_url_map;
using database::realtime::dbs::rt_installation_t;
using database::realtime::dbs::rt_presencesimulation_t;
using database::realtime::dbs::rt_system_t;
using database::realtime::objects::rt_object_connection_t;
using database::realtime::objects::rt_object_connections_t;
using database::realtime::objects::rt_object_installation_mqtt_device_t;
using database::realtime::objects::rt_object_url_t;

namespace {

rt_object_installation_mqtt_device_t* makeDevice(QString const& serial)
{
    auto* device = new rt_object_installation_mqtt_device_t;
    device->setProperty("description", QStringLiteral("Thermostat hall"));
    device->setProperty("serial", serial);
    device->setProperty("enabled", true);
    return device;
}

// An installation with two devices, a master and a token.
void fillInstallation(rt_installation_t* installation)
{
    rt_mqtt_devices_map const devices{{"D1", makeDevice("S1")}, {"D2", makeDevice("S2")}};
    installation->update_mqtt_device(devices, false);
    qDeleteAll(devices);
    installation->setProperty("master", QStringLiteral("panel-1"));
    installation->setProperty("installation_id", QStringLiteral("I-100"));
    installation->getCloud()->setProperty("cloud_api_token", QStringLiteral("token-a"));
}

rt_object_connection_t* makeConnection(QString const& path)
{
    auto* connection = new rt_object_connection_t;
    connection->setProperty("path", path);
    connection->setProperty("connected", true);
    return connection;
}

using change_t = std::function<void(rt_installation_t*)>;

} // namespace

Q_DECLARE_METATYPE(change_t)

class tst_rt_system : public QObject
{
    Q_OBJECT

private:
    packet_recorder_t* engine = nullptr;

private Q_SLOTS:
    void initTestCase() { QVERIFY(database::utility::getInstance()); }

    void init() { engine = new packet_recorder_t; }

    void cleanup()
    {
        delete engine;
        drainEvents();
    }

    void installationChangeIgnoresTheCloudToken_data()
    {
        QTest::addColumn<change_t>("change");
        QTest::addColumn<bool>("updates");
        QTest::newRow("nothing") << change_t([](rt_installation_t*) {}) << false;
        QTest::newRow("token only") << change_t([](rt_installation_t* o) {
            o->getCloud()->setProperty("cloud_api_token", QStringLiteral("token-b"));
        }) << false;
        QTest::newRow("device content only") << change_t([](rt_installation_t* o) {
            o->list(QStringLiteral("D1"))->setProperty("serial", QStringLiteral("S9"));
        }) << false;
        QTest::newRow("device key") << change_t([](rt_installation_t* o) {
            o->update_mqtt_device(QStringLiteral("D2"), nullptr, false);
        }) << true;
        QTest::newRow("master") << change_t([](rt_installation_t* o) { o->setProperty("master", "panel-2"); })
                                << true;
        QTest::newRow("installation id") << change_t([](rt_installation_t* o) {
            o->setProperty("installation_id", "I-101");
        }) << true;
        QTest::newRow("cloud switch") << change_t([](rt_installation_t* o) { o->setProperty("cloud_enabled", true); })
                                      << true;
        QTest::newRow("description") << change_t([](rt_installation_t* o) {
            o->update_description(QStringLiteral("Villa"), false);
        }) << true;
    }

    void installationChangeIgnoresTheCloudToken()
    {
        QFETCH(change_t, change);
        QFETCH(bool, updates);
        rt_installation_t installation;
        installation.initRequestSignals(engine, true);
        fillInstallation(&installation);
        rt_installation_t other(installation);
        change(&other);

        QCOMPARE(installation.compare_whitout_cloud_token(&other), !updates);
        log_capture_t logs;
        QCOMPARE(installation.update_if_change(&other, true, false), updates);
        QCOMPARE(logs.matching("rt_installation_t change! Update it ... ", 6).size(), updates ? 1 : 0);
        if (updates) {
            QCOMPARE(logs.records.first().source, QStringLiteral("update_if_change"));
            QCOMPARE(installation.toJson(), other.toJson());
        } else {
            QCOMPARE(installation.getCloud()->getCloudApiToken(), QStringLiteral("token-a"));
        }
        drainEvents();
        QCOMPARE(engine->updated.size(), updates ? 1 : 0);
        QVERIFY(!installation.compare_whitout_cloud_token(nullptr));
    }

    void installationUpdatePublishesAsAsked_data()
    {
        QTest::addColumn<bool>("notify");
        QTest::addColumn<bool>("notifyDevices");
        QTest::addColumn<QStringList>("topics");
        QTest::newRow("silent") << false << false << QStringList();
        QTest::newRow("section") << true << false << QStringList{"installation"};
        QTest::newRow("devices") << false << true
                                 << QStringList{"installation/mqtt_devices/D1", "installation/mqtt_devices/D2"};
        QTest::newRow("both") << true << true
                              << QStringList{"installation", "installation/mqtt_devices/D1",
                                             "installation/mqtt_devices/D2"};
    }

    void installationUpdatePublishesAsAsked()
    {
        QFETCH(bool, notify);
        QFETCH(bool, notifyDevices);
        QFETCH(QStringList, topics);
        rt_installation_t installation;
        installation.initRequestSignals(engine, true);
        installation.update_mqtt_device(QStringLiteral("OLD"), QScopedPointer(makeDevice("S0")).data(), false);
        QPointer<rt_object_installation_mqtt_device_t> old = installation.list(QStringLiteral("OLD"));
        rt_installation_t other;
        fillInstallation(&other);

        installation.update(&other, notify, notifyDevices);
        QCOMPARE(installation.getMqttDevices().keys(), (QStringList{"D1", "D2"}));
        QCOMPARE(installation.list(QStringLiteral("D2"))->getTopic(), QStringLiteral("installation/mqtt_devices/D2"));
        QVERIFY(installation.list(QStringLiteral("D2")) != other.list(QStringLiteral("D2")));
        QCOMPARE(installation.getCloud()->getCloudApiToken(), QStringLiteral("token-a"));
        QCOMPARE(installation.getMaster(), QStringLiteral("panel-1"));

        drainEvents();
        QVERIFY(old.isNull());
        QStringList published;
        for (QJsonObject const& packet : std::as_const(engine->updated))
            published.append(packet.value("topic").toString());
        QCOMPARE(published, topics);
    }

    void installationRequestsAskAndChangeNothing_data()
    {
        QTest::addColumn<change_t>("ask");
        QTest::addColumn<QString>("topic");
        QTest::addColumn<QJsonValue>("payload");
        QTest::newRow("description") << change_t([](rt_installation_t* s) { s->requestSetDescription("Villa"); })
                                     << "installation/description" << QJsonValue("Villa");
        QTest::newRow("master") << change_t([](rt_installation_t* s) { s->requestSetMaster("panel-2"); })
                                << "installation/master" << QJsonValue("panel-2");
        QTest::newRow("cloud switch") << change_t([](rt_installation_t* s) { s->requestSetCloudEnabled(true); })
                                      << "installation/cloud_enabled" << QJsonValue(true);
        QTest::newRow("delete device") << change_t([](rt_installation_t* s) {
            s->requestSetDeleteMqttDevice("D1");
        }) << "installation/mqtt_devices/D1" << QJsonValue(QJsonObject());
        QTest::newRow("cloud token") << change_t([](rt_installation_t* s) {
            s->getCloud()->requestSetCloudAPIToken("token-z");
        }) << "installation/cloud/cloud_api_token" << QJsonValue("token-z");
        QTest::newRow("device description") << change_t([](rt_installation_t* s) {
            s->list("D1")->requestSetDescription("Kitchen");
        }) << "installation/mqtt_devices/D1/description" << QJsonValue("Kitchen");
        QTest::newRow("device switch") << change_t([](rt_installation_t* s) {
            s->list("D2")->requestSetEnabled(false);
        }) << "installation/mqtt_devices/D2/enabled" << QJsonValue(false);
    }

    void installationRequestsAskAndChangeNothing()
    {
        QFETCH(change_t, ask);
        QFETCH(QString, topic);
        QFETCH(QJsonValue, payload);
        rt_installation_t installation;
        installation.initRequestSignals(engine, true);
        fillInstallation(&installation);
        QJsonObject const before = installation.toJson();
        ask(&installation);
        QCOMPARE(installation.toJson(), before);
        drainEvents();
        QCOMPARE(engine->requests,
                 (QList<QJsonObject>{{{"topic", "request/DB/realtime/" + topic}, {"payload", payload}}}));
        QCOMPARE(engine->total(), 1);
    }

    void unknownDeviceOrConnectionGivesTemporary_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("topic");
        QTest::newRow("device") << "list" << "installation/mqtt_devices/Z";
        QTest::newRow("http") << "getHttp" << "system/connections/http/Z";
        QTest::newRow("mqtt") << "getMqtt" << "system/connections/mqtt/Z";
    }

    void unknownDeviceOrConnectionGivesTemporary()
    {
        QFETCH(QString, source);
        QFETCH(QString, topic);
        rt_installation_t installation;
        installation.initRequestSignals(engine, true);
        rt_system_t system;
        system.initRequestSignals(engine, true);

        log_capture_t logs;
        QPointer<QObject> temporary;
        if (source == "list")
            temporary = installation.list(QStringLiteral("Z"));
        else if (source == "getHttp")
            temporary = system.getConnections()->getHttp(QStringLiteral("Z"));
        else
            temporary = system.getConnections()->getMqtt(QStringLiteral("Z"));
        QVERIFY(temporary);
        QCOMPARE(logs.records.size(), 1);
        QCOMPARE(logs.records.first().message, QStringLiteral("New key create app : Z"));
        QCOMPARE(logs.records.first().source, source);
        QCOMPARE(int(logs.records.first().level), 6);
        drainEvents();
        QVERIFY(temporary.isNull());
        QCOMPARE(engine->notExist, (QList<QJsonObject>{{{"topic", topic}}}));
        QVERIFY(installation.getMqttDevices().isEmpty());
        QVERIFY(system.getConnections()->getHttp().isEmpty());
    }

    void clockIsKeptAsIsoTextAndPublishedAlone()
    {
        rt_system_t system;
        system.initRequestSignals(engine, true);
        system.update_datetime(QDateTime(QDate(2024, 6, 1), QTime(12, 0, 5)), true);
        QCOMPARE(system.getDatetime(), QStringLiteral("2024-06-01T12:00:05"));
        drainEvents();
        QCOMPARE(engine->updated,
                 (QList<QJsonObject>{{{"topic", "system/datetime"}, {"payload", "2024-06-01T12:00:05"}}}));
    }

    void connectionsAreReplacedAndResetByKind()
    {
        rt_system_t system;
        system.initRequestSignals(engine, true);
        rt_object_connections_t given;
        given.update_http(QStringLiteral("cloud"), QScopedPointer(makeConnection("https://cloud.example.com")).data(),
                          false);
        given.update_mqtt(QStringLiteral("broker"), QScopedPointer(makeConnection("mqtt://192.0.2.1")).data(), false);

        QPointer<rt_object_connections_t> old = system.getConnections();
        system.update_connection(&given, true);
        QVERIFY(old.isNull());
        rt_object_connections_t* connections = system.getConnections();
        QCOMPARE(connections->parent(), &system);
        QCOMPARE(connections->getHttp(QStringLiteral("cloud"))->getTopic(),
                 QStringLiteral("system/connections/http/cloud"));

        connections->update_reset_mqtt(true);
        QVERIFY(connections->getMqtt().isEmpty());
        QCOMPARE(connections->getHttp().keys(), QStringList{"cloud"});
        connections->update_http(QStringLiteral("cloud"), nullptr, true);
        QVERIFY(connections->getHttp().isEmpty());

        drainEvents();
        QStringList topics;
        for (QJsonObject const& packet : std::as_const(engine->updated))
            topics.append(packet.value("topic").toString());
        QCOMPARE(topics, QStringList(3, "system/connections"));
        QCOMPARE(engine->updated.at(1).value("payload").toObject().value("mqtt").toObject(), QJsonObject());
        QCOMPARE(engine->updated.at(1).value("payload").toObject().value("http").toObject().keys(),
                 QStringList{"cloud"});
    }

    void systemUpdateTakesConnectionsAndUrlsNotTheClock()
    {
        rt_system_t system;
        system.initRequestSignals(engine, true);
        system.update_datetime(QDateTime(QDate(2024, 1, 1), QTime(0, 0)), false);
        rt_system_t other;
        other.update_datetime(QDateTime(QDate(2030, 1, 1), QTime(0, 0)), false);
        other.getConnections()->update_http(QStringLiteral("h"), QScopedPointer(makeConnection("x")).data(), false);
        rt_url_map const urls{{"web", new rt_object_url_t}};
        urls.value("web")->setProperty("url", QStringLiteral("https://panel.example.com"));
        other.update_urls(urls, false);
        qDeleteAll(urls);

        system.update(&other, true);
        QCOMPARE(system.getDatetime(), QStringLiteral("2024-01-01T00:00:00"));
        QCOMPARE(system.getConnections()->getHttp().keys(), QStringList{"h"});
        QCOMPARE(system.getUrls().value("web")->getUrl(), QStringLiteral("https://panel.example.com"));
        QCOMPARE(system.getUrls().value("web")->getTopic(), QStringLiteral("system/urls/web"));
        QVERIFY(system.getUrls().value("web") != other.getUrls().value("web"));

        system.update_urls({}, true);
        system.update(nullptr, false);
        QVERIFY(system.getConnections()->getHttp().isEmpty());
        QVERIFY(system.getUrls().isEmpty());

        drainEvents();
        QCOMPARE(engine->updated.size(), 2);
        QCOMPARE(engine->updated.at(0).value("topic").toString(), QStringLiteral("system"));
        QCOMPARE(engine->updated.at(1), (QJsonObject{{"topic", "system/urls"}, {"payload", QJsonObject()}}));
    }

    void commandsFollowTheOrderOfTime_data()
    {
        QTest::addColumn<rt_presencesimulation_t::commands_map>("map");
        QTest::addColumn<QStringList>("expected"); // "datetime item value"
        QDateTime const early(QDate(2024, 4, 2), QTime(7, 15));
        QDateTime const late(QDate(2024, 4, 2), QTime(22, 40));
        QTest::newRow("empty") << rt_presencesimulation_t::commands_map() << QStringList();
        QTest::newRow("one moment, items by id")
            << rt_presencesimulation_t::commands_map{{early, {{"I2", "0"}, {"I1", "1"}}}}
            << QStringList{"2024-04-02T07:15:00 I1 1", "2024-04-02T07:15:00 I2 0"};
        QTest::newRow("moments by time")
            << rt_presencesimulation_t::commands_map{{late, {{"I1", "0"}}}, {early, {{"I3", "55"}}}}
            << QStringList{"2024-04-02T07:15:00 I3 55", "2024-04-02T22:40:00 I1 0"};
    }

    void commandsFollowTheOrderOfTime()
    {
        QFETCH(rt_presencesimulation_t::commands_map, map);
        QFETCH(QStringList, expected);
        rt_object_presencesimulation_list const list = rt_presencesimulation_t::getCommands(map);
        QStringList got;
        for (auto* command : list) {
            QCOMPARE(command->parent(), nullptr);
            got.append(command->getDatetime() + " " + command->getItem() + " " + command->getValue());
        }
        qDeleteAll(list);
        QCOMPARE(got, expected);
    }

    void presenceSimulationStateAndCommands_data()
    {
        QTest::addColumn<bool>("withMoment");
        QTest::addColumn<QString>("processing");
        QTest::newRow("with a moment") << true << "2024-04-02T07:15:00";
        QTest::newRow("without a moment") << false << "";
    }

    void presenceSimulationStateAndCommands()
    {
        QFETCH(bool, withMoment);
        QFETCH(QString, processing);
        rt_presencesimulation_t section;
        section.initRequestSignals(engine, true);
        QCOMPARE(section.getState(), QStringLiteral("stop"));
        QDateTime const moment(QDate(2024, 4, 2), QTime(7, 15));
        rt_presencesimulation_t::commands_map const last{{moment, {{"I1", "1"}}}};
        rt_presencesimulation_t::commands_map const next{{moment.addSecs(60), {{"I1", "0"}, {"I2", "3"}}}};

        if (withMoment)
            section.update(psi_type_state_presence_simulation_t::play, moment, last, next, true);
        else
            section.update(psi_type_state_presence_simulation_t::play, last, next, true);
        QCOMPARE(section.getState(), QStringLiteral("play"));
        QCOMPARE(section.getProcessingDatetime(), processing);
        QCOMPARE(section.getMapLastCommands().size(), 1);
        QCOMPARE(section.getMapNextCommands().size(), 2);
        QCOMPARE(section.getMapNextCommands().at(1)->getTopic(), QStringLiteral("presencesimulation/next_commands/1"));

        section.update_next_commands(rt_presencesimulation_t::commands_map(), false);
        QVERIFY(section.getMapNextCommands().isEmpty());

        drainEvents();
        QCOMPARE(engine->updated.size(), 1);
        QCOMPARE(engine->updated.first().value("topic").toString(), QStringLiteral("presencesimulation"));
        QJsonObject const payload = engine->updated.first().value("payload").toObject();
        QCOMPARE(payload.value("last_commands").toArray(),
                 (QJsonArray{QJsonObject{{"datetime", "2024-04-02T07:15:00"}, {"item", "I1"}, {"value", "1"}}}));
        QCOMPARE(payload.value("next_commands").toArray().size(), 2);
    }

    void sectionsSurviveJsonRoundTrip_data()
    {
        QTest::addColumn<QString>("section");
        QTest::newRow("installation") << "installation";
        QTest::newRow("system") << "system";
        QTest::newRow("presencesimulation") << "presencesimulation";
    }

    void sectionsSurviveJsonRoundTrip()
    {
        QFETCH(QString, section);
        QJsonObject json;
        QJsonObject back;
        if (section == "installation") {
            rt_installation_t installation;
            fillInstallation(&installation);
            json = installation.toJson();
            QCOMPARE(json.keys().size(), 6);
            QCOMPARE(json.value("cloud").toObject(), (QJsonObject{{"cloud_api_token", "token-a"}}));
            QScopedPointer<rt_installation_t> read(serializer()->deserialize<rt_installation_t*>(json));
            back = read->toJson();
            QCOMPARE(read->getMqttDevices().value("D1")->parent(), nullptr);
            QCOMPARE(read->getCloud()->parent(), read.data());
            rt_installation_t copy(installation);
            QCOMPARE(copy.toJson(), json);
            QVERIFY(!(copy == installation));
        } else if (section == "system") {
            rt_system_t system;
            system.update_datetime(QDateTime(QDate(2024, 6, 1), QTime(12, 0)), false);
            system.getConnections()->update_mqtt(QStringLiteral("m"), QScopedPointer(makeConnection("p")).data(),
                                                 false);
            rt_url_map const urls{{"web", new rt_object_url_t}};
            system.update_urls(urls, false);
            qDeleteAll(urls);
            json = system.toJson();
            QCOMPARE(json.value("connections").toObject().value("mqtt").toObject().value("m").toObject(),
                     (QJsonObject{{"datetime", ""}, {"path", "p"}, {"connected", true}}));
            QScopedPointer<rt_system_t> read(serializer()->deserialize<rt_system_t*>(json));
            back = read->toJson();
            rt_system_t copy(system);
            QCOMPARE(copy.toJson(), json);
        } else {
            rt_presencesimulation_t simulation;
            QDateTime const moment(QDate(2024, 4, 2), QTime(7, 15));
            simulation.update(psi_type_state_presence_simulation_t::rec, moment, {{moment, {{"I1", "1"}}}}, {}, false);
            json = simulation.toJson();
            QCOMPARE(json.keys().size(), 5);
            QScopedPointer<rt_presencesimulation_t> read(serializer()->deserialize<rt_presencesimulation_t*>(json));
            back = read->toJson();
            QCOMPARE(read->getMapLastCommands().first()->parent(), nullptr);
            rt_presencesimulation_t copy(simulation);
            QCOMPARE(copy.toJson(), json);
        }
        QCOMPARE(back, json);
    }
};

QTEST_GUILESS_MAIN(tst_rt_system)
#include "tst_rt_system.moc"
