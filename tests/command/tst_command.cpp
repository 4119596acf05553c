#include <QSignalSpy>
#include <QtTest>

#include <functional>
#include <memory>

#include "database/command/cmd_data_t.h"
#include "database/command/cmd_handler_topic_t.h"
#include "database/command/command_t.h"
#include "database/command/define/cmd_type_database_reset_t.h"
#include "database/database_t.h"
#include "database/default/persistent/ps_default_t.h"
#include "database/default/realtime/rt_default_t.h"
#include "database/persistent/objects/ps_smtp_notify_t.h"
#include "database/persistent/persistent_t.h"
#include "database/presencesimulation/presencesimulation_t.h"
#include "database/realtime/objects/rt_object_item_t.h"
#include "database/realtime/realtime_t.h"
#include "support/log_capture.h"
#include "support/model_test.h"
#include "support/packet_recorder.h"
#include "support/signal_log.h"

using database::database_t;
using database::command::cmd_data_t;
using database::command::cmd_handler_topic_t;
using database::command::command_t;
using database::command::definition::cmd_type_database_reset_t;
using database::definition::service_t;
using database::definition::type_brand_t;
using database::persistent::ps_data_t;
using database::persistent::ps_default_t;
using database::persistent::ps_handler_topic_t;
using database::persistent::objects::ps_object_item_t;
using database::presencesimulation::psi_data_t;
using database::realtime::rt_default_t;
using database::realtime::objects::rt_object_item_t;

/// One call on the command data, as a table cell.
using order_t = std::function<void(cmd_data_t&)>;
Q_DECLARE_METATYPE(order_t)

namespace {

QString const base = QStringLiteral("request/DB/command");

QJsonObject packet(QString const& topic, QJsonValue const& payload = QJsonObject())
{
    return QJsonObject{{"topic", topic}, {"payload", payload}};
}

/// The three images, rebuilt now.
struct images_t {
    explicit images_t(database_t& db)
        : persistent(db.getPersistent()->serialize(true))
        , realtime(db.getRealtime()->serialize(true))
        , presencesimulation(db.getPresenceSimulation()->serialize(true))
    {
    }

    bool operator==(images_t const& other) const
    {
        return persistent == other.persistent && realtime == other.realtime
               && presencesimulation == other.presencesimulation;
    }

    QJsonObject persistent;
    QJsonObject realtime;
    QJsonObject presencesimulation;
};

/// Puts item L1 in the configuration and live state, and one action of it in the week.
void useDatabases(database_t& db)
{
    ps_object_item_t item;
    item.setName(QStringLiteral("Lamp"));
    db.getPersistent()->getData()->getItems()->update_items(QStringLiteral("L1"), &item, false);
    rt_object_item_t live(QStringLiteral("1/1/3"), QStringLiteral("1"), nullptr);
    db.getRealtime()->getData()->getItems()->update_item(QStringLiteral("L1"), &live, false);
    db.getPresenceSimulation()->getData()->update_action(1, 8, 30, QStringLiteral("L1"), QStringLiteral("1"), false);
}

/// The lines that start the order's steps, in their order.
QStringList steps(log_capture_t const& logs)
{
    QStringList found;
    for (QString const& message : logs.messages()) {
        if (message.endsWith(QStringLiteral(" ....")))
            found.append(message);
    }
    return found;
}

QStringList const resetAll{"Reset presence simulation ....", "Reset realtime ....", "Reset persistent ...."};

/// Each operation of the command data, with the way its packet leaves
/// ("request", "updated", or "error" for a refusal) and the packet.
struct order_row_t {
    char const* name;
    order_t order;
    QString way;
    QJsonObject packet;
};

QList<order_row_t> orders()
{
    auto tree = std::make_shared<ps_data_t>();
    auto week = std::make_shared<psi_data_t>();
    week->update_action(2, 9, 0, QStringLiteral("L1"), QStringLiteral("0"), false);
    auto smtp = std::make_shared<database::persistent::objects::ps_smtp_notify_t>();
    smtp->setServer(QStringLiteral("mail.example.com"));
    QJsonObject code = packet("status/DB/command/pairing/command", QJsonObject{{"pin", "2841"}});
    code.insert("command", "show");
    QJsonObject coded = code;
    coded.insert("destination", "panel-2");
    return {
        {"reset all", [](cmd_data_t& d) { d.requestResetDatabase(cmd_type_database_reset_t::all); }, "request",
         packet(base + "/reset/all")},
        {"reset presence simulation",
         [](cmd_data_t& d) { d.requestResetDatabase(cmd_type_database_reset_t::presencesimulation); }, "request",
         packet(base + "/reset/presencesimulation")},
        {"load persistent", [tree](cmd_data_t& d) { d.requestPersistentLoadDatabase(tree.get()); }, "request",
         packet(base + "/persistent/load/database", tree->toJson())},
        {"load presence simulation", [week](cmd_data_t& d) { d.requestPresenceSimulationLoadDatabase(week.get()); },
         "request", packet(base + "/presencesimulation/load/database", week->toJson())},
        {"smtp test", [smtp](cmd_data_t& d) { d.requestSetSMTP(smtp.get()); }, "request",
         packet(base + "/smtp/test", smtp->toJson())},
        {"pairing start", [](cmd_data_t& d) { d.requestStartPairing(true, "hall panel"); }, "request",
         packet(base + "/pairing/start", QJsonObject{{"start", true}, {"name", "hall panel"}})},
        {"pairing code, blank destination",
         [](cmd_data_t& d) { d.updateCodePairing("show", QJsonObject{{"pin", "2841"}}, " \t"); }, "updated", code},
        {"pairing code to a destination",
         [](cmd_data_t& d) { d.updateCodePairing("show", QJsonObject{{"pin", "2841"}}, "panel-2"); }, "updated",
         coded},
        {"load of no tree", [](cmd_data_t& d) { d.requestPersistentLoadDatabase(nullptr); }, "error",
         packet(base + "/persistent/load/database", QJsonValue())},
    };
}

} // namespace

class tst_command : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(database::utility::getInstance()); }

    void cleanup() { drainEvents(); }

    void routerRaisesOneSignalPerTopic_data()
    {
        QTest::addColumn<QString>("topic");
        QTest::addColumn<bool>("routed");
        QTest::addColumn<QString>("signal");
        QTest::addColumn<QString>("key");

        QTest::newRow("load persistent") << base + "/persistent/load/database" << true
                                         << "onCommandRequestPersistentLoadDatabase" << "";
        QTest::newRow("load presence simulation") << base + "/presencesimulation/load/database" << true
                                                  << "onCommandRequestPresencesimulationLoadDatabase" << "";
        QTest::newRow("smtp test") << base + "/smtp/test" << true << "onCommandRequestSMTPTest" << "";
        QTest::newRow("pairing start") << base + "/pairing/start" << true << "onCommandRequestPairing" << "";
        QTest::newRow("reset all") << base + "/reset/all" << true << "onCommandRequestResetDatabase" << "all";
        QTest::newRow("reset presence simulation") << base + "/reset/presencesimulation" << true
                                                   << "onCommandRequestResetDatabase" << "presencesimulation";
        QTest::newRow("reset of an unknown kind still routes") << base + "/reset/xyz" << true
                                                               << "onCommandRequestResetDatabase" << "xyz";
        QTest::newRow("status of pairing stops at the gate") << "status/DB/command/pairing/command" << false << ""
                                                             << "";
        QTest::newRow("reset without kind") << base + "/reset/" << false << "" << "";
        QTest::newRow("load of another database") << base + "/realtime/load/database" << false << "" << "";
        QTest::newRow("persistent request") << "request/DB/persistent/DB" << false << "" << "";
        QTest::newRow("relative change form") << "pairing/command" << false << "" << "";
    }

    void routerRaisesOneSignalPerTopic()
    {
        QFETCH(QString, topic);
        QFETCH(bool, routed);
        QFETCH(QString, signal);
        QFETCH(QString, key);
        cmd_handler_topic_t router(nullptr);
        signal_log_t log(&router);
        QJsonObject const request = packet(topic);

        QCOMPARE(router.whoIsRequest(request, false), routed);
        QCOMPARE(log.signalNames, QStringList());
        QCOMPARE(router.whoIsRequest(request, true), routed);
        QCOMPARE(log.signalNames, routed ? QStringList{signal} : QStringList());
        QCOMPARE(log.keys, routed ? QStringList{key} : QStringList());
        // Nothing of the channel changes, whatever the topic.
        log.clear();
        QVERIFY(!router.whoIsChange(request, true));
        QCOMPARE(log.signalNames, QStringList());
    }

    void dataBuildsThePackets_data()
    {
        QTest::addColumn<order_t>("order");
        QTest::addColumn<QString>("way");
        QTest::addColumn<QJsonObject>("expected");
        for (order_row_t const& row : orders())
            QTest::newRow(row.name) << row.order << row.way << row.packet;
    }

    void dataBuildsThePackets()
    {
        QFETCH(order_t, order);
        QFETCH(QString, way);
        QFETCH(QJsonObject, expected);
        cmd_data_t data;
        packet_recorder_t engine;
        data.initRequestSignals(&engine, true);
        QCOMPARE(data.getTopic(), base);

        order(data);
        drainEvents();

        QCOMPARE(engine.total(), 1);
        if (way == "request")
            QCOMPARE(engine.requests.value(0), expected);
        else if (way == "updated")
            QCOMPARE(engine.updated.value(0), expected);
        else
            QCOMPARE(engine.errors.value(0), qMakePair(expected, QStringLiteral("Not permitted nullptr")));
    }

    void clientAndServerForwardEveryCommand_data()
    {
        QTest::addColumn<QString>("role");
        QTest::addColumn<order_t>("order");
        QTest::addColumn<QJsonObject>("expected");
        for (QString const role : {"client", "server"}) {
            for (order_row_t const& row : orders()) {
                if (row.way == "request")
                    QTest::addRow("%s, %s", qPrintable(role), row.name) << role << row.order << row.packet;
            }
        }
    }

    void clientAndServerForwardEveryCommand()
    {
        QFETCH(QString, role);
        QFETCH(order_t, order);
        QFETCH(QJsonObject, expected);
        database_t db(service_t(role), type_brand_t::HALDO);
        useDatabases(db);
        images_t const before(db);
        command_t* command = db.getCommand();
        QSignalSpy forwarded(command, &command_t::onCommandRequest);
        QVERIFY(forwarded.isValid());
        QCOMPARE(forwarded.count(), 0);
        log_capture_t logs;

        order(*command->getData());

        QTRY_COMPARE(forwarded.count(), 1);
        QCOMPARE(forwarded.first().at(0).toJsonObject(), expected);
        drainEvents();
        drainEvents();
        QCOMPARE(steps(logs), QStringList());
        QVERIFY(images_t(db) == before);
    }

    void offlineCarriesOutTheReset_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<bool>("configuration");
        QTest::addColumn<bool>("live");
        QTest::addColumn<bool>("week");

        QTest::newRow("all: every database, week first") << "all" << resetAll << true << true << true;
        QTest::newRow("presence simulation: the week alone")
            << "presencesimulation" << QStringList{"Reset presence simulation ...."} << false << false << true;
        QTest::newRow("unknown kind: nothing") << "xyz" << QStringList() << false << false << false;
    }

    void offlineCarriesOutTheReset()
    {
        QFETCH(QString, kind);
        QFETCH(QStringList, lines);
        QFETCH(bool, configuration);
        QFETCH(bool, live);
        QFETCH(bool, week);
        database_t db(service_t::offline, type_brand_t::HALDO);
        images_t const factory(db);
        useDatabases(db);
        images_t const used(db);
        QSignalSpy forwarded(db.getCommand(), &command_t::onCommandRequest);
        QSignalSpy databases(db.getPersistent()->getHandlerTopic(), &ps_handler_topic_t::onPersistentChangeDatabase);
        QVERIFY(forwarded.isValid() && databases.isValid());
        QCOMPARE(forwarded.count() + databases.count(), 0);
        log_capture_t logs;

        db.getCommand()->getData()->requestResetDatabase(cmd_type_database_reset_t(kind));

        QTRY_COMPARE(steps(logs), lines);
        for (QString const& line : lines)
            QVERIFY(logs.contains(line, 3));
        drainEvents();
        drainEvents();
        QCOMPARE(forwarded.count(), 0);
        QCOMPARE(databases.count(), configuration ? 1 : 0);
        images_t const after(db);
        QCOMPARE(after.persistent, configuration ? factory.persistent : used.persistent);
        QCOMPARE(after.realtime, live ? rt_default_t::getInstance()->getJData(service_t::offline) : used.realtime);
        QCOMPARE(after.presencesimulation, week ? factory.presencesimulation : used.presencesimulation);
    }

    void facadeResetGoesThroughTheChannelInAnyRole_data()
    {
        QTest::addColumn<QString>("role");
        QTest::addColumn<QStringList>("modes");

        QTest::newRow("client: the brand's default mode") << "client" << QStringList{"kdrive"};
        QTest::newRow("offline: every mode of the brand") << "offline" << QStringList{"kdrive", "baos"};
    }

    void facadeResetGoesThroughTheChannelInAnyRole()
    {
        QFETCH(QString, role);
        QFETCH(QStringList, modes);
        database_t db(service_t(role), type_brand_t::HALDO);
        images_t const factory(db);
        useDatabases(db);
        QSignalSpy forwarded(db.getCommand(), &command_t::onCommandRequest);
        QVERIFY(forwarded.isValid());
        QCOMPARE(forwarded.count(), 0);
        log_capture_t logs;

        db.resetDatabase();

        // Carried out at once, not asked of a server.
        QCOMPARE(steps(logs), resetAll);
        images_t const after(db);
        QCOMPARE(after.persistent, factory.persistent);
        QCOMPARE(after.presencesimulation, factory.presencesimulation);
        QVERIFY(db.getRealtime()->getData()->getItems()->getObjects().isEmpty());
        QCOMPARE(after.realtime.value("drivers").toObject().value("knx_mode").toVariant().toStringList(), modes);
        drainEvents();
        QCOMPARE(forwarded.count(), 0);
    }

    void loadOfAConfigurationReplacesTheDatabase()
    {
        database_t db(service_t::offline, type_brand_t::HALDO);
        images_t const factory(db);
        useDatabases(db);
        ps_data_t tree(*db.getPersistent()->getData());
        ps_object_item_t item;
        item.setName(QStringLiteral("Fan"));
        tree.getItems()->update_items(QStringLiteral("F7"), &item, false);
        tree.getItems()->update_items(QStringLiteral("L1"), nullptr, false);
        QSignalSpy databases(db.getPersistent()->getHandlerTopic(), &ps_handler_topic_t::onPersistentChangeDatabase);
        QVERIFY(databases.isValid());
        QCOMPARE(databases.count(), 0);
        log_capture_t logs;

        db.getCommand()->getData()->requestPersistentLoadDatabase(&tree);

        QTRY_COMPARE(databases.count(), 1);
        QCOMPARE(steps(logs),
                 (QStringList{"Reset realtime ....", "Reset presence simulation ....", "Load persistent ...."}));
        QCOMPARE(db.getPersistent()->getData()->getItems()->getObjects().keys(), QStringList{"F7"});
        QCOMPARE(db.getPersistent()->getJsonValue("items/objects_list/F7/name").toString(), QStringLiteral("Fan"));
        QCOMPARE(db.getPersistent()->getJsonValue("versions/database").toString(), QStringLiteral("4.0.0"));
        // Live state and week of the old configuration are gone.
        QVERIFY(db.getRealtime()->getData()->getItems()->getObjects().isEmpty());
        QCOMPARE(images_t(db).presencesimulation, factory.presencesimulation);
    }

    void loadOfABadDocumentChangesNothing_data()
    {
        QTest::addColumn<QJsonValue>("payload");
        QTest::addColumn<QString>("message");

        QJsonObject newer = ps_default_t::getInstance()->getJData();
        newer.insert("versions", QJsonObject{{"database", "5.0.0"}});
        QTest::newRow("not JSON but text") << QJsonValue("{items: ") << "is not a JSON object";
        QTest::newRow("an array") << QJsonValue(QJsonArray{1, 2}) << "is not a JSON object";
        QTest::newRow("an empty object") << QJsonValue(QJsonObject()) << "holds no section of the configuration";
        QTest::newRow("no section of ours") << QJsonValue(QJsonObject{{"week", QJsonObject()}})
                                            << "holds no section of the configuration";
        QTest::newRow("a newer generation") << QJsonValue(newer) << "is of a newer version";
        QTest::newRow("a section of the wrong type") << QJsonValue(QJsonObject{{"items", 5}})
                                                     << "does not fit the configuration: items";
        QTest::newRow("an item of the wrong shape")
            << QJsonValue(QJsonObject{
                   {"items", QJsonObject{{"objects_list", QJsonObject{{"a", QJsonObject{{"name", 5}}}}}}}})
            << "does not fit the configuration: items/objects_list/a/name";
    }

    void loadOfABadDocumentChangesNothing()
    {
        QFETCH(QJsonValue, payload);
        QFETCH(QString, message);
        database_t db(service_t::offline, type_brand_t::HALDO);
        useDatabases(db);
        images_t const used(db);
        QSignalSpy refused(db.getCommand(), &command_t::onCommandObjectError);
        QVERIFY(refused.isValid());
        QCOMPARE(refused.count(), 0);
        log_capture_t logs;
        QJsonObject const request = packet(base + "/persistent/load/database", payload);

        QVERIFY(db.getCommand()->getHandlerTopic()->whoIsRequest(request));

        QTRY_COMPARE(refused.count(), 1);
        QCOMPARE(refused.first().at(0).toJsonObject(), request);
        QVERIFY2(refused.first().at(1).toString().contains(message), qPrintable(refused.first().at(1).toString()));
        QVERIFY(logs.contains("Receive event: Error to update " + base + "/persistent/load/database msg: ", 2));
        drainEvents();
        drainEvents();
        QCOMPARE(steps(logs), QStringList());
        QVERIFY(images_t(db) == used);
        if (QTest::currentDataTag() == QByteArray("a newer generation"))
            QVERIFY(logs.contains("higher than supported version", 3));
    }

    void loadOfAWeekEmptiesTheWeek()
    {
        database_t db(service_t::offline, type_brand_t::HALDO);
        images_t const factory(db);
        useDatabases(db);
        images_t const used(db);
        psi_data_t sent;
        sent.update_action(3, 12, 0, QStringLiteral("L2"), QStringLiteral("0"), false);

        db.getCommand()->getData()->requestPresenceSimulationLoadDatabase(&sent);

        QTRY_COMPARE(images_t(db).presencesimulation, factory.presencesimulation);
        QCOMPARE(images_t(db).persistent, used.persistent);
        QCOMPARE(images_t(db).realtime, used.realtime);
    }

    void offlineLeavesSmtpAndPairingToTheHost()
    {
        database_t db(service_t::offline, type_brand_t::HALDO);
        cmd_handler_topic_t* router = db.getCommand()->getHandlerTopic();
        QSignalSpy smtp(router, &cmd_handler_topic_t::onCommandRequestSMTPTest);
        QSignalSpy pairing(router, &cmd_handler_topic_t::onCommandRequestPairing);
        QSignalSpy something(router, &cmd_handler_topic_t::onCommandUpdatedSomething);
        QSignalSpy forwarded(db.getCommand(), &command_t::onCommandRequest);
        QVERIFY(smtp.isValid() && pairing.isValid() && something.isValid() && forwarded.isValid());
        QCOMPARE(smtp.count() + pairing.count(), 0);
        images_t const before(db);
        database::persistent::objects::ps_smtp_notify_t settings;

        db.getCommand()->getData()->requestSetSMTP(&settings);
        db.getCommand()->getData()->requestStartPairing(true, QStringLiteral("hall"));
        db.getCommand()->getData()->updateCodePairing(QStringLiteral("show"), QJsonObject(), QString());

        QTRY_COMPARE(pairing.count(), 1);
        QCOMPARE(smtp.count(), 1);
        drainEvents();
        QCOMPARE(something.count(), 0);
        QCOMPARE(forwarded.count(), 0);
        QVERIFY(images_t(db) == before);
    }

    void roleChangeDecidesWhoCarriesOrdersOut()
    {
        database_t db(service_t::server, type_brand_t::HALDO);
        useDatabases(db);
        cmd_data_t* data = db.getCommand()->getData();
        QSignalSpy forwarded(db.getCommand(), &command_t::onCommandRequest);
        QVERIFY(forwarded.isValid());
        QCOMPARE(forwarded.count(), 0);

        db.setService(service_t::offline);
        data->requestResetDatabase(cmd_type_database_reset_t::presencesimulation);
        QTRY_VERIFY(!db.getPresenceSimulation()->getData()->getDay(1));
        QCOMPARE(forwarded.count(), 0);

        db.setService(service_t::client);
        data->requestResetDatabase(cmd_type_database_reset_t::all);
        QTRY_COMPARE(forwarded.count(), 1);
        drainEvents();
        QVERIFY(db.getPersistent()->getData()->getItems()->getObjects().contains("L1"));
    }

    void copiedFacadeResetsItsOwnDatabases()
    {
        database_t first(service_t::offline, type_brand_t::HALDO);
        useDatabases(first);
        images_t const used(first);
        database_t copy(first);
        QVERIFY(copy.getCommand() && copy.getCommand() != first.getCommand());
        QCOMPARE(copy.getCommand()->getService(), service_t::offline);

        copy.resetDatabase();

        QVERIFY(copy.getPersistent()->getData()->getItems()->getObjects().isEmpty());
        QVERIFY(images_t(first) == used);
    }

    void offlineKnxModeRequestResetsWhenTheModeDiffers_data()
    {
        QTest::addColumn<QString>("mode");
        QTest::addColumn<bool>("reset");

        QTest::newRow("other mode: rebuilt for it") << "baos" << true;
        QTest::newRow("mode in force: kept") << "kdrive" << false;
    }

    void offlineKnxModeRequestResetsWhenTheModeDiffers()
    {
        QFETCH(QString, mode);
        QFETCH(bool, reset);
        database_t db(service_t::offline, type_brand_t::HALDO);
        // The mode is the process's: the next test starts from the one in force now.
        auto const restore = qScopeGuard([inForce = ps_default_t::getInstance()->getSettedtKnxMode()] {
            ps_default_t::getInstance()->setKnx_mode(inForce);
        });
        QCOMPARE(db.getPersistent()->getData()->getDrivers()->getKnxMode(), QStringLiteral("kdrive"));
        useDatabases(db);
        log_capture_t logs;

        QMetaObject::invokeMethod(db.getRealtime(), "_onRequest",
                                  Q_ARG(QJsonObject, packet("request/DB/realtime/drivers/knx_mode",
                                                            QJsonObject{{"mode", mode}})));

        QTRY_VERIFY(logs.contains(reset ? "Reset persistent ...." : "Already setted knx mode "));
        drainEvents();
        QCOMPARE(steps(logs), reset ? resetAll : QStringList());
        QCOMPARE(db.getPersistent()->getData()->getDrivers()->getKnxMode(), mode);
        QCOMPARE(db.getPersistent()->getData()->getItems()->getObjects().isEmpty(), reset);
        QCOMPARE(db.getPresenceSimulation()->getData()->getDay(1) == nullptr, reset);
    }
};

QTEST_GUILESS_MAIN(tst_command)
#include "tst_command.moc"
