#include <QException>
#include <QMetaMethod>
#include <QSignalSpy>
#include <QtTest>

#include "database/realtime/rt_handler_topic_t.h"
#include "platform/logs/classlogs.h"
#include "support/log_capture.h"
#include "support/signal_log.h"

using database::realtime::rt_handler_topic_t;

namespace {

QJsonObject packet(QString const& topic)
{
    return QJsonObject{{"topic", topic}, {"payload", QJsonObject()}};
}

/// One route: a relative topic that reaches it, the key it yields, and
/// whether a request form exists.
struct route_t {
    char const* name;
    char const* topic;
    char const* key;
    bool request;
};

route_t const everyRoute[] = {
    {"Database", "DB", "", true},
    {"SystemDateTime", "system/datetime", "", false},
    {"SystemConnections", "system/connections", "", false},
    {"SystemUrls", "system/urls", "", false},
    {"PresenceSimulation", "presencesimulation/week day", "", true},
    {"SmartButton", "smartbutton", "", true},
    {"Astronomical", "astronomical/sunrise", "", false},
    {"Items", "items", "", false},
    {"Installation", "installation/network/address", "", true},
    {"Notify", "notify", "", false},
    {"UserNotify", "notify/user_list", "", true},
    {"SystemNotify", "notify/sys_list", "", true},
    {"Storage", "storage/a/b", "", false},
    {"Scenary", "scenary", "", false},
    {"Rules", "rules/objects_list", "", false},
    {"Drivers", "drivers", "", true},
    {"DriversKnxMode", "drivers/knx_mode", "", true},
    {"Schedulers", "schedulers", "", false},
    {"DriversInternal", "drivers/driver_internal", "", false},
    {"DriversInternalSensors", "drivers/driver_internal/sensors/S1", "", false},
    {"DriversKnx", "drivers/driver_knx", "", false},
    {"DriversBaos", "drivers/driver_baos", "", false},
    {"DriverInterfacesKnx", "drivers/driver_knx/interfaces/I1", "", true},
    {"DriverInterfacesBaos", "drivers/driver_baos/interfaces", "", true},
    {"Thermos", "thermo", "", false},
    {"Item", "items/objects_list/I1/value", "I1", true},
    {"InstallationMqttDevice", "installation/mqtt_devices/M1", "M1", true},
    {"UserNotifyObjects", "notify/user_list/U1/read", "U1", true},
    {"SystemNotifyObjects", "notify/sys_list/S1", "S1", true},
    {"ScenaryObjects", "scenary/objects_list/SC1/run", "SC1", true},
    {"RulesObjects", "rules/objects_list/R1", "R1", false},
    {"Scheduler", "schedulers/objects_list/SH1/counter", "SH1", false},
    {"DriverStatusKnx", "drivers/driver_knx/status/B1", "B1", false},
    {"DriverStatusInfoKnx", "drivers/driver_knx/status/B1/info", "B1", false},
    {"DriverStatusBaos", "drivers/driver_baos/status/B2", "B2", false},
    {"DriverStatusInfoBaos", "drivers/driver_baos/status/B2/info", "B2", false},
    {"Thermo", "thermo/objects_list/T1/setpoint", "T1", true},
};

} // namespace

class tst_rt_handler_topic : public QObject
{
    Q_OBJECT

private:
    enum family_t { Request, Offline, Status, Change };

    static bool routeBy(rt_handler_topic_t& router, int family, QJsonObject const& p, bool emitSignal)
    {
        switch (family) {
        case Request: return router.whoIsRequest(p, emitSignal);
        case Offline: return router.whoIsRequestOffline(p, emitSignal);
        case Status: return router.whoIsStatus(p, emitSignal);
        default: return router.whoIsChange(p, emitSignal, false);
        }
    }

    static void addRouteColumns()
    {
        QTest::addColumn<int>("family");
        QTest::addColumn<QString>("topic");
        QTest::addColumn<QString>("signal");
        QTest::addColumn<QString>("key");
    }

    static void checkRoute()
    {
        QFETCH(int, family);
        QFETCH(QString, topic);
        QFETCH(QString, signal);
        QFETCH(QString, key);

        rt_handler_topic_t router;
        signal_log_t log(&router);

        // Asking first emits nothing and gives the same answer.
        QCOMPARE(routeBy(router, family, packet(topic), false), !signal.isEmpty());
        QVERIFY(log.signalNames.isEmpty());

        QCOMPARE(routeBy(router, family, packet(topic), true), !signal.isEmpty());
        QCOMPARE(log.signalNames, signal.isEmpty() ? QStringList() : QStringList{signal});
        QCOMPARE(log.keys, signal.isEmpty() ? QStringList() : QStringList{key});
    }

private Q_SLOTS:
    void constructionIsTraced()
    {
        log_capture_t capture;
        rt_handler_topic_t router;
        QCOMPARE(capture.records.size(), 1);
        QCOMPARE(capture.records.first().level, ::utility::logs::trace);
        QCOMPARE(capture.records.first().source, QStringLiteral("rt_handler_topic_t"));
        QCOMPARE(capture.records.first().message, QStringLiteral("Starting realtime topic handler engine ..."));
    }

    void declaresSomethingFirstAndOneSignalPerForm()
    {
        rt_handler_topic_t router;
        QMetaObject const* meta = router.metaObject();
        int signalCount = 0;
        for (int i = meta->methodOffset(); i < meta->methodCount(); ++i)
            signalCount += meta->method(i).methodType() == QMetaMethod::Signal;
        QCOMPARE(signalCount, 91);
        QCOMPARE(meta->method(meta->methodOffset()).methodSignature(),
                 QByteArray("onRealtimeUpdatedSomething(QJsonObject)"));
        QCOMPARE(meta->indexOfSignal("onRealtimeRequestItem(QJsonObject,QString)") >= 0, true);
        QCOMPARE(meta->indexOfSignal("onRealtimeRequestRulesObjects(QJsonObject,QString)"), -1);
    }

    void tablesHaveTheirSizes_data()
    {
        QTest::addColumn<int>("form");
        QTest::addColumn<int>("sections");
        QTest::addColumn<int>("objects");
        QTest::newRow("change") << int(rt_handler_topic_t::Change) << 25 << 12;
        QTest::newRow("status") << int(rt_handler_topic_t::Status) << 25 << 12;
        QTest::newRow("request") << int(rt_handler_topic_t::Request) << 10 << 6;
        QTest::newRow("offline") << int(rt_handler_topic_t::Offline) << 1 << 0;
    }

    void tablesHaveTheirSizes()
    {
        QFETCH(int, form);
        QFETCH(int, sections);
        QFETCH(int, objects);
        rt_handler_topic_t router;
        auto const& routes = router.routes(rt_handler_topic_t::form_t(form));
        QCOMPARE(routes.patterns().size(), sections);
        QCOMPARE(routes.keyPatterns().size(), objects);
    }

    void everyRouteInEachForm_data()
    {
        addRouteColumns();
        for (route_t const& route : everyRoute) {
            QString const name = QString::fromLatin1(route.name);
            QString const topic = QString::fromLatin1(route.topic);
            QString const key = QString::fromLatin1(route.key);
            QTest::addRow("%s change", route.name) << int(Change) << topic << "onRealtimeChange" + name << key;
            QTest::addRow("%s status", route.name)
                << int(Status) << "status/DB/realtime/" + topic << "onRealtimeStatus" + name << key;
            QTest::addRow("%s request", route.name) << int(Request) << "request/DB/realtime/" + topic
                                                    << (route.request ? "onRealtimeRequest" + name : QString()) << key;
        }
    }

    void everyRouteInEachForm() { checkRoute(); }

    void edgeCases_data()
    {
        addRouteColumns();
        QTest::newRow("bare status prefix fails the filter") << int(Status) << "status/DB/realtime" << "" << "";
        QTest::newRow("status prefix with slash only") << int(Status) << "status/DB/realtime/" << "" << "";
        QTest::newRow("status topic is no request") << int(Request) << "status/DB/realtime/DB" << "" << "";
        QTest::newRow("persistent topic is no realtime status") << int(Status) << "status/DB/persistent/DB" << "" << "";
        QTest::newRow("unknown section") << int(Status) << "status/DB/realtime/unknown" << "" << "";
        QTest::newRow("unknown change") << int(Change) << "foo" << "" << "";
        QTest::newRow("absolute topic is no change") << int(Change) << "status/DB/realtime/DB" << "" << "";
        QTest::newRow("item value status") << int(Status) << "status/DB/realtime/items/objects_list/abc/value"
                                           << "onRealtimeStatusItem" << "abc";
        QTest::newRow("notify/ goes to the sorted-first system list") << int(Change) << "notify/"
                                                                       << "onRealtimeChangeSystemNotify" << "";
        QTest::newRow("notify/ request") << int(Request) << "request/DB/realtime/notify/"
                                         << "onRealtimeRequestSystemNotify" << "";
        QTest::newRow("notify's last letter optional") << int(Change) << "notif/" << "onRealtimeChangeSystemNotify" << "";
        QTest::newRow("items section") << int(Change) << "items" << "onRealtimeChangeItems" << "";
        QTest::newRow("items list is a section") << int(Change) << "items/objects_list" << "onRealtimeChangeItems" << "";
        QTest::newRow("item under the list") << int(Change) << "items/objects_list/K" << "onRealtimeChangeItem" << "K";
        QTest::newRow("last letter optional") << int(Change) << "item" << "onRealtimeChangeItems" << "";
        QTest::newRow("mqtt device by the look-ahead") << int(Change) << "installation/mqtt_devices/K"
                                                       << "onRealtimeChangeInstallationMqttDevice" << "K";
        QTest::newRow("mqtt device request") << int(Request) << "request/DB/realtime/installation/mqtt_devices/K/state"
                                             << "onRealtimeRequestInstallationMqttDevice" << "K";
        QTest::newRow("device list without key is the installation")
            << int(Change) << "installation/mqtt_devices" << "onRealtimeChangeInstallation" << "";
        QTest::newRow("installation section") << int(Status) << "status/DB/realtime/installation"
                                              << "onRealtimeStatusInstallation" << "";
        QTest::newRow("knx driver status") << int(Status) << "status/DB/realtime/drivers/driver_knx/status/abc"
                                           << "onRealtimeStatusDriverStatusKnx" << "abc";
        QTest::newRow("knx driver status info") << int(Status) << "status/DB/realtime/drivers/driver_knx/status/abc/info"
                                                << "onRealtimeStatusDriverStatusInfoKnx" << "abc";
        QTest::newRow("knx driver status other tail")
            << int(Status) << "status/DB/realtime/drivers/driver_knx/status/abc/other" << "" << "";
        QTest::newRow("baos driver status other tail")
            << int(Status) << "status/DB/realtime/drivers/driver_baos/status/abc/info/x" << "" << "";
        QTest::newRow("baos interfaces tail as request")
            << int(Request) << "request/DB/realtime/drivers/driver_baos/interfaces/x"
            << "onRealtimeRequestDriverInterfacesBaos" << "";
        QTest::newRow("baos interfaces tail as status")
            << int(Status) << "status/DB/realtime/drivers/driver_baos/interfaces/x" << "" << "";
        QTest::newRow("baos interfaces tail as change") << int(Change) << "drivers/driver_baos/interfaces/x" << "" << "";
        QTest::newRow("knx interfaces tail as status") << int(Status) << "status/DB/realtime/drivers/driver_knx/interfaces/x"
                                                       << "onRealtimeStatusDriverInterfacesKnx" << "";
        QTest::newRow("offline knx mode") << int(Offline) << "request/DB/realtime/drivers/knx_mode"
                                          << "onRealtimeRequestDriversKnxMode" << "";
        QTest::newRow("offline database") << int(Offline) << "request/DB/realtime/DB" << "" << "";
        QTest::newRow("offline item") << int(Offline) << "request/DB/realtime/items/objects_list/K" << "" << "";
        QTest::newRow("offline drivers") << int(Offline) << "request/DB/realtime/drivers" << "" << "";
        QTest::newRow("offline knx mode as status") << int(Offline) << "status/DB/realtime/drivers/knx_mode" << "" << "";
    }

    void edgeCases() { checkRoute(); }

    void changeRaisesSomethingBeforeItsSignal_data()
    {
        QTest::addColumn<QString>("topic");
        QTest::addColumn<bool>("emitSignal");
        QTest::addColumn<bool>("emitSomething");
        QTest::addColumn<bool>("routed");
        QTest::addColumn<QStringList>("signalNames");
        QTest::newRow("both") << "items/objects_list/K" << true << true << true
                              << QStringList{"onRealtimeUpdatedSomething", "onRealtimeChangeItem"};
        QTest::newRow("something only") << "items/objects_list/K" << false << true << true
                                        << QStringList{"onRealtimeUpdatedSomething"};
        QTest::newRow("route only") << "drivers" << true << false << true << QStringList{"onRealtimeChangeDrivers"};
        QTest::newRow("neither") << "drivers" << false << false << true << QStringList();
        QTest::newRow("unknown topic emits nothing") << "nothing" << true << true << false << QStringList();
    }

    void changeRaisesSomethingBeforeItsSignal()
    {
        QFETCH(QString, topic);
        QFETCH(bool, emitSignal);
        QFETCH(bool, emitSomething);
        QFETCH(bool, routed);
        QFETCH(QStringList, signalNames);
        rt_handler_topic_t router;
        signal_log_t log(&router);
        QCOMPARE(router.whoIsChange(packet(topic), emitSignal, emitSomething), routed);
        QCOMPARE(log.signalNames, signalNames);
    }

    void packetReachesSignalUnchanged()
    {
        rt_handler_topic_t router;
        QSignalSpy spy(&router, &rt_handler_topic_t::onRealtimeStatusItem);
        QVERIFY(spy.isValid());
        QCOMPARE(spy.count(), 0);
        QJsonObject const p{{"topic", "status/DB/realtime/items/objects_list/K9/value"}, {"payload", 42}};
        QVERIFY(router.whoIsStatus(p, true));
        QCOMPARE(spy.count(), 1);
        QList<QVariant> const arguments = spy.takeFirst();
        QCOMPARE(arguments.at(0).toJsonObject(), p);
        QCOMPARE(arguments.at(1).toString(), QStringLiteral("K9"));
    }

    void packetWithoutTopicIsRefused()
    {
        rt_handler_topic_t router;
        signal_log_t log(&router);
        QJsonObject const noTopic{{"payload", 1}};
        QVERIFY(!router.whoIsRequest(noTopic));
        QVERIFY(!router.whoIsRequestOffline(noTopic));
        QVERIFY(!router.whoIsStatus(noTopic));
        QVERIFY(!router.whoIsChange(noTopic));
        QVERIFY(log.signalNames.isEmpty());
    }

    void sectionPatternWinsOverObjectPattern()
    {
        // No two realtime routes overlap that way, so the shared dispatch is
        // checked on a table of its own.
        database::base::topic_routes_t routes(QStringLiteral("status/DB/realtime"));
        QStringList calls;
        routes.insert(QStringLiteral(R"(^status/DB/realtime/zone/(\w+)$)"),
                      database::base::topic_routes_t::callback_key_t(
                          [&calls](QJsonObject, QString key) { calls.append("object " + key); }));
        routes.insert(QStringLiteral(R"(^status/DB/realtime/zone/?[\w]*$)"),
                      database::base::topic_routes_t::callback_t([&calls](QJsonObject) { calls.append("section"); }));
        QVERIFY(routes.dispatch("test", packet("status/DB/realtime/zone/z1"), true));
        QCOMPARE(calls, QStringList{"section"});
    }

    void exceptionIsLoggedAndRefused_data()
    {
        QTest::addColumn<int>("family");
        QTest::addColumn<QString>("topic");
        QTest::addColumn<QString>("source");
        QTest::addColumn<bool>("qexception");
        QTest::newRow("request, QException") << int(Request) << "request/DB/realtime/drivers/knx_mode"
                                             << "whoIsRequest" << true;
        QTest::newRow("offline, QString") << int(Offline) << "request/DB/realtime/drivers/knx_mode"
                                          << "whoIsRequestOffline" << false;
        QTest::newRow("status, QString") << int(Status) << "status/DB/realtime/drivers/knx_mode" << "whoIsStatus" << false;
        QTest::newRow("change, QException") << int(Change) << "drivers/knx_mode" << "whoIsChange" << true;
    }

    void exceptionIsLoggedAndRefused()
    {
        QFETCH(int, family);
        QFETCH(QString, topic);
        QFETCH(QString, source);
        QFETCH(bool, qexception);
        rt_handler_topic_t router;
        auto const thrower = [qexception](QJsonObject) {
            if (qexception)
                throw QException();
            throw QStringLiteral("boom");
        };
        connect(&router, &rt_handler_topic_t::onRealtimeRequestDriversKnxMode, this, thrower);
        connect(&router, &rt_handler_topic_t::onRealtimeStatusDriversKnxMode, this, thrower);
        connect(&router, &rt_handler_topic_t::onRealtimeChangeDriversKnxMode, this, thrower);

        log_capture_t capture;
        QVERIFY(!routeBy(router, family, packet(topic), true));
        QCOMPARE(capture.records.size(), 1);
        QCOMPARE(capture.records.first().level, ::utility::logs::exception);
        QCOMPARE(capture.records.first().source, source);
        QVERIFY(capture.records.first().message.startsWith(QStringLiteral("Handling exception: ")));
        if (!qexception)
            QCOMPARE(capture.records.first().message, QStringLiteral("Handling exception: boom"));

        // The router stays usable after the failure.
        QVERIFY(routeBy(router, family, packet(topic), false));
    }
};

QTEST_GUILESS_MAIN(tst_rt_handler_topic)
#include "tst_rt_handler_topic.moc"
