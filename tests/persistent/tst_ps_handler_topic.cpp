#include <QException>
#include <QMetaMethod>
#include <QSignalSpy>
#include <QtTest>

#include "database/persistent/ps_handler_topic_t.h"
#include "platform/logs/classlogs.h"
#include "support/signal_log.h"

using database::persistent::ps_handler_topic_t;

namespace {

QJsonObject packet(QString const& topic)
{
    return QJsonObject{{"topic", topic}, {"payload", QJsonObject()}};
}

} // namespace

class tst_ps_handler_topic : public QObject
{
    Q_OBJECT

private:
    enum family_t { Request, Status, Change };

    static bool routeBy(ps_handler_topic_t& router, int family, QJsonObject const& p, bool emitSignal)
    {
        switch (family) {
        case Request: return router.whoIsRequest(p, emitSignal);
        case Status: return router.whoIsStatus(p, emitSignal);
        default: return router.whoIsChange(p, emitSignal, false);
        }
    }

private Q_SLOTS:
    void cleanup()
    {
        ::utility::logs::classlogs::getInstance()->setCapture({});
    }

    void constructionIsTraced()
    {
        QList<::utility::logs::logrecord> records;
        ::utility::logs::classlogs::getInstance()->setCapture(
            [&records](::utility::logs::logrecord const& r) { records.append(r); });
        ps_handler_topic_t router;
        QCOMPARE(records.size(), 1);
        QCOMPARE(records.first().level, ::utility::logs::trace);
        QCOMPARE(records.first().source, QStringLiteral("ps_handler_topic_t"));
        QCOMPARE(records.first().message, QStringLiteral("Starting persistent topic handler engine ..."));
    }

    void hasEverySignal()
    {
        ps_handler_topic_t router;
        int signalCount = 0;
        QMetaObject const* meta = router.metaObject();
        for (int i = meta->methodOffset(); i < meta->methodCount(); ++i)
            signalCount += meta->method(i).methodType() == QMetaMethod::Signal;
        QCOMPARE(signalCount, 133);
        QCOMPARE(meta->method(meta->methodOffset()).name(), QByteArray("onPersistentUpdatedSomething"));
    }

    void routes_data()
    {
        QTest::addColumn<int>("family");
        QTest::addColumn<QString>("topic");
        QTest::addColumn<QString>("signal");
        QTest::addColumn<QString>("key");

        QTest::newRow("request database") << int(Request) << "request/DB/persistent/DB" << "onPersistentRequestDatabase" << "";
        QTest::newRow("status database") << int(Status) << "status/DB/persistent/DB" << "onPersistentStatusDatabase" << "";
        QTest::newRow("change database") << int(Change) << "DB" << "onPersistentChangeDatabase" << "";
        QTest::newRow("bare prefix refused by gate") << int(Request) << "request/DB/persistent" << "" << "";
        QTest::newRow("status topic is no request") << int(Request) << "status/DB/persistent/DB" << "" << "";
        QTest::newRow("unknown section") << int(Request) << "request/DB/persistent/unknown" << "" << "";
        QTest::newRow("unknown change") << int(Change) << "foo" << "" << "";
        QTest::newRow("item property") << int(Request) << "request/DB/persistent/items/objects_list/K1/label"
                                       << "onPersistentRequestItem" << "K1";
        QTest::newRow("items section") << int(Request) << "request/DB/persistent/items/objects_list"
                                       << "onPersistentRequestItems" << "";
        QTest::newRow("letter class, not word") << int(Request) << "request/DB/persistent/item/jet"
                                                << "onPersistentRequestItems" << "";
        QTest::newRow("key made of class letters") << int(Change) << "items/objects_list/lot" << "onPersistentChangeItem" << "lot";
        QTest::newRow("general section") << int(Request) << "request/DB/persistent/general" << "onPersistentRequestGeneral" << "";
        QTest::newRow("general before param") << int(Status) << "status/DB/persistent/general" << "onPersistentStatusGeneral" << "";
        QTest::newRow("general param") << int(Request) << "request/DB/persistent/general/enable_img_upd"
                                       << "onPersistentRequestGeneralParam" << "";
        QTest::newRow("general param loose tail") << int(Request) << "request/DB/persistent/generalx"
                                                  << "onPersistentRequestGeneralParam" << "";
        QTest::newRow("general change") << int(Change) << "general" << "onPersistentChangeGeneral" << "";
        QTest::newRow("general param change") << int(Change) << "general/enable_img_upd" << "onPersistentChangeGeneralParam" << "";
        QTest::newRow("smtp") << int(Change) << "notify/smtp" << "onPersistentChangeNotifySMTP" << "";
        QTest::newRow("email") << int(Change) << "notify/email_list/K" << "onPersistentChangeNotifyEmail" << "K";
        QTest::newRow("notify objects") << int(Status) << "status/DB/persistent/notify/objects_list/N1"
                                        << "onPersistentStatusNotifyObjects" << "N1";
        QTest::newRow("notify section") << int(Change) << "notify/email_list" << "onPersistentChangeNotify" << "";
        QTest::newRow("sound length") << int(Request) << "request/DB/persistent/notify/soundLoop"
                                      << "onPersistentRequestNotifySoundLen" << "";
        QTest::newRow("thermostat") << int(Change) << "thermo/objects_list/T1" << "onPersistentChangeThermo" << "T1";
        QTest::newRow("thermostats") << int(Change) << "thermo" << "onPersistentChangeThermos" << "";
        QTest::newRow("last letter optional") << int(Change) << "therm" << "onPersistentChangeThermos" << "";
        QTest::newRow("knx bus") << int(Status) << "status/DB/persistent/drivers/driver_knx/bus/B1/params"
                                 << "onPersistentStatusDriverKnxBus" << "B1";
        QTest::newRow("baos enabled") << int(Request) << "request/DB/persistent/drivers/driver_baos/enabled"
                                      << "onPersistentRequestDriversBaosEnabled" << "";
        QTest::newRow("internal sensors") << int(Change) << "drivers/driver_internal/sensors/S1"
                                          << "onPersistentChangeDriversInternalSensors" << "";
        QTest::newRow("drivers") << int(Change) << "drivers" << "onPersistentChangeDrivers" << "";
        QTest::newRow("page stack") << int(Change) << "elements/page_stack/3" << "onPersistentChangePageStack" << "";
        QTest::newRow("element") << int(Request) << "request/DB/persistent/elements/objects_list/E1"
                                 << "onPersistentRequestElement" << "E1";
        QTest::newRow("user") << int(Status) << "status/DB/persistent/users/objects_list/99"
                              << "onPersistentStatusUser" << "99";
        QTest::newRow("scheduler") << int(Change) << "schedulers/objects_list/S1/cron" << "onPersistentChangeScheduler" << "S1";
        QTest::newRow("schedulers enabled") << int(Change) << "schedulers/enabled" << "onPersistentChangeSchedulersEnabled" << "";
        QTest::newRow("storage path") << int(Change) << "storage/a/b" << "onPersistentChangeStorage" << "";
        QTest::newRow("presence with blank") << int(Request) << "request/DB/persistent/presencesimulation/week day"
                                             << "onPersistentRequestPresenceSimulation" << "";
        QTest::newRow("smart button") << int(Change) << "smartbutton" << "onPersistentChangeSmartButton" << "";
        QTest::newRow("versions") << int(Status) << "status/DB/persistent/versions" << "onPersistentStatusVersions" << "";
        QTest::newRow("scenary object") << int(Request) << "request/DB/persistent/scenary/objects_list/S1"
                                        << "onPersistentRequestScenaryObjects" << "S1";
        QTest::newRow("rules enabled") << int(Change) << "rules/enabled" << "onPersistentChangeRulesEnabled" << "";
    }

    void routes()
    {
        QFETCH(int, family);
        QFETCH(QString, topic);
        QFETCH(QString, signal);
        QFETCH(QString, key);

        ps_handler_topic_t router;
        signal_log_t log(&router);

        // Asking first must not emit anything and must give the same answer.
        bool const routable = routeBy(router, family, packet(topic), false);
        QVERIFY(log.signalNames.isEmpty());
        QCOMPARE(routable, !signal.isEmpty());

        QCOMPARE(routeBy(router, family, packet(topic), true), !signal.isEmpty());
        QCOMPARE(log.signalNames, signal.isEmpty() ? QStringList() : QStringList{signal});
        if (!signal.isEmpty())
            QCOMPARE(log.keys.first(), key);
    }

    void changeRaisesSomethingFirst()
    {
        ps_handler_topic_t router;
        signal_log_t log(&router);
        QVERIFY(router.whoIsChange(packet("items/objects_list/K"), true, true));
        QCOMPARE(log.signalNames, (QStringList{"onPersistentUpdatedSomething", "onPersistentChangeItem"}));

        log.signalNames.clear();
        QVERIFY(router.whoIsChange(packet("items"), false, true));
        QCOMPARE(log.signalNames, QStringList{"onPersistentUpdatedSomething"});

        log.signalNames.clear();
        QVERIFY(!router.whoIsChange(packet("nothing"), true, true));
        QVERIFY(log.signalNames.isEmpty());
    }

    void packetReachesSignalUnchanged()
    {
        ps_handler_topic_t router;
        QSignalSpy spy(&router, &ps_handler_topic_t::onPersistentRequestItem);
        QVERIFY(spy.isValid());
        QCOMPARE(spy.count(), 0);
        QJsonObject const p{{"topic", "request/DB/persistent/items/objects_list/K9"}, {"payload", 42}};
        QVERIFY(router.whoIsRequest(p));
        QCOMPARE(spy.count(), 1);
        QList<QVariant> const arguments = spy.takeFirst();
        QCOMPARE(arguments.at(0).toJsonObject(), p);
        QCOMPARE(arguments.at(1).toString(), QStringLiteral("K9"));
    }

    void packetWithoutTopicIsRefused()
    {
        ps_handler_topic_t router;
        signal_log_t log(&router);
        QJsonObject const noTopic{{"payload", 1}};
        QVERIFY(!router.whoIsRequest(noTopic));
        QVERIFY(!router.whoIsStatus(noTopic));
        QVERIFY(!router.whoIsChange(noTopic));
        QJsonObject const numericTopic{{"topic", 5}, {"payload", 1}};
        QVERIFY(!router.whoIsChange(numericTopic));
        QVERIFY(log.signalNames.isEmpty());
    }

    void exceptionInHandlerIsLoggedAndRefused_data()
    {
        QTest::addColumn<bool>("qexception");
        QTest::newRow("QException") << true;
        QTest::newRow("QString") << false;
    }

    void exceptionInHandlerIsLoggedAndRefused()
    {
        QFETCH(bool, qexception);
        ps_handler_topic_t router;
        connect(&router, &ps_handler_topic_t::onPersistentStatusGeneral, this, [qexception](QJsonObject) {
            if (qexception)
                throw QException();
            throw QStringLiteral("boom");
        });
        QList<::utility::logs::logrecord> records;
        ::utility::logs::classlogs::getInstance()->setCapture(
            [&records](::utility::logs::logrecord const& r) { records.append(r); });
        QVERIFY(!router.whoIsStatus(packet("status/DB/persistent/general")));
        QCOMPARE(records.size(), 1);
        QCOMPARE(records.first().level, ::utility::logs::exception);
        QCOMPARE(records.first().source, QStringLiteral("whoIsStatus"));
        QVERIFY(records.first().message.startsWith(QStringLiteral("Handling exception: ")));
        if (!qexception)
            QCOMPARE(records.first().message, QStringLiteral("Handling exception: boom"));

        // The router stays usable after the failure.
        QVERIFY(router.whoIsStatus(packet("status/DB/persistent/general"), false));
    }
};

QTEST_GUILESS_MAIN(tst_ps_handler_topic)
#include "tst_ps_handler_topic.moc"
