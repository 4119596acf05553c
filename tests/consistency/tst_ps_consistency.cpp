#include <QSignalSpy>
#include <QtTest>

#include "database/consistency/consistency_t.h"
#include "database/consistency/ps_consistency_t.h"
#include "database/database_t.h"
#include "database/default/persistent/ps_default_t.h"
#include "database/definition/service_t.h"
#include "database/definition/type_brand_t.h"
#include "database/persistent/persistent_t.h"
#include "database/utility/utility.h"
#include "support/log_capture.h"
#include "support/ps_document.h"

using database::database_t;
using database::definition::service_t;
using database::definition::type_brand_t;
using database::persistent::persistent_t;
using database::persistent::ps_handler_topic_t;

class tst_ps_consistency : public QObject
{
    Q_OBJECT

private:
    database_t* db = nullptr;

    persistent_t* engine() const { return db->getPersistent(); }

    void addRows(char const* name, char const* changes, char const* expected, QStringList const& lines,
                 QStringList const& published)
    {
        for (bool asRequest : {false, true}) {
            QTest::addRow("%s, %s", name, asRequest ? "after a request" : "after a load")
                << asRequest << jsonObject(changes) << jsonObject(expected) << lines << published;
        }
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(database::utility::getInstance()); }

    void init() { db = new database_t(service_t::server, type_brand_t::HALDO); }

    void cleanup()
    {
        delete db;
        db = nullptr;
    }

    void consistentDocumentPassesUntouched()
    {
        log_capture_t logs;
        QJsonObject document = consistentDocument();
        QJsonObject loaded;
        int result = 0;
        QVERIFY(checkedAfter(logs, [&] {
            engine()->loadFromJson(document, result);
            loaded = engine()->getJdata();
            return true;
        }));
        QCOMPARE(engine()->getJdata(), loaded);
        QVERIFY(logs.matching(QString(), 3).isEmpty());
    }

    void danglingReferenceIsRepaired_data()
    {
        QTest::addColumn<bool>("asRequest");
        QTest::addColumn<QJsonObject>("changes");
        QTest::addColumn<QJsonObject>("expected");
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<QStringList>("published");

        // The room's new element list goes out under the missing element's topic.
        addRows("rooms and the page stack", R"({"elements/page_stack/1": ["R1", "R9"],
                    "elements/objects_list/R1/rooms": ["2"], "elements/objects_list/R1/auth": {"0": 1, "7": 1},
                    "elements/objects_list/R1/element_list": ["E2", "SC1", "SC2", "T1", "E9"],
                    "elements/objects_list/E1/rooms": ["R1", "R9"],
                    "elements/objects_list/E1/auth": {"0": 1, "7": 1}})",
                R"({"elements/page_stack": {"1": ["R1"], "2": ["R1"]}, "elements/objects_list/R1/rooms": ["2", "1"],
                    "elements/objects_list/R1/element_list": ["E2", "SC1", "SC2", "T1", "E1"],
                    "elements/objects_list/R1/auth": {"0": 1}, "elements/objects_list/E1/rooms": ["R1"],
                    "elements/objects_list/E1/auth": {"0": 1}})",
                {"3 Remove to page stack in floor 1 room R9", "3 Append to room id R1 floor 1", "3 update page stack",
                 "3 Added to page stack in floor 2 room R1", "3 Remove from element id E1 room R9",
                 "3 Add to room id R1 room E1", "3 Remove auth 7 from element E1", "3 Remove from room  R1 element E9",
                 "3 Remove auth 7 from room R1"},
                {"elements/page_stack", "elements/objects_list/E9", "elements/objects_list/R1",
                 "elements/objects_list/E1"});
        addRows("items and what names them", R"({"items/objects_list/L3": null, "items/objects_list/L2": null,
                    "items/objects_list/L1/id_driver": "drivers/driver_knx/9", "items/objects_list/L4/flags": 7,
                    "smartbutton/id_item_rgb": "L9", "smartbutton/id_item_listen_index": "L8",
                    "presencesimulation/idItem": "L9", "drivers/driver_clock/id_item_time": " L9 "})",
                R"({"elements/objects_list/E2/function_map": {}, "rules/objects_list/RU2": null,
                    "rules/objects_list/RU1/name": "r1", "items/objects_list/L1/id_driver": "",
                    "items/objects_list/L4/flags": 4, "smartbutton/id_item_rgb": "",
                    "smartbutton/id_item_listen_index": "", "presencesimulation/idItem": "",
                    "drivers/driver_clock/id_item_time": "", "drivers/driver_clock/id_item_date": "",
                    "thermo/objects_list/TH1/id_win": "", "thermo/objects_list/TH1/thermo/idactual": "",
                    "thermo/objects_list/TH1/thermo/items": {}})",
                {"3 Delete rules RU2 because is orphan",
                 "3 Reset driver to item L1 because driver drivers/driver_knx/9 not exist",
                 "3 Reset presence simulation flags of item L4 because it has no associated elements",
                 "3 Reset smart button because id rgm L9 not exist",
                 "3 Reset smart button because id listen L8 not exist",
                 "3 Reset presence simulation because id item L9 not exist"},
                {"items/objects_list/L1", "items/objects_list/L4", "smartbutton", "presencesimulation",
                 "drivers/driver_clock", "thermo/objects_list/TH1", "rules/objects_list/RU2"});
        addRows("thermostats without element or thermostat",
                R"({"thermo/objects_list/TH1": null, "thermo/objects_list/TH9": {"id_win": "L4"}})",
                R"({"elements/objects_list/T1": null, "schedulers/objects_list/SCH2": null,
                    "thermo/objects_list/TH9": null, "items/objects_list/L4/name": "spare"})",
                {"3 Remove thermo element T1because thermo not exist", "3 Remove from room  R1 element T1",
                 "3 Delete schedulers SCH2 because not found element T1"},
                {"elements/objects_list/T1", "schedulers/objects_list/SCH2", "thermo/objects_list/TH9"});
        addRows("baos thermostat without element takes its items",
                R"({"drivers/knx_mode": "baos", "thermo/objects_list/TH9": {"id_win": "L4"}})",
                R"({"thermo/objects_list/TH9": null, "items/objects_list/L4": null})", {}, {"items/objects_list/L4"});
        addRows("scenario gone, and what names it", R"({"scenary/objects_list/S1": null})",
                R"({"elements/objects_list/SC1": null, "elements/objects_list/SC2/name": "bus scene",
                    "schedulers/objects_list/SCH3": null, "rules/objects_list/RU1": null,
                    "rules/objects_list/RU2": null})",
                {"3 Remove scenary element SC1because scenary not exist",
                 "3 Delete schedulers SCH3 because not found element SC1", "3 Delete rules RU1 because is orphan",
                 "3 Delete rules RU2 because is orphan"},
                {"elements/objects_list/SC1", "rules/objects_list/RU2"});
        addRows("actions that lead nowhere", R"({
                    "scenary/objects_list/S1/objects_list/x": {"type": "@item", "id": "L9"},
                    "scenary/objects_list/S1/objects_list/y": {"type": "@item", "id": "L4"},
                    "scenary/objects_list/S1/objects_list/z": {"type": "@rules", "id": "RU9"},
                    "scenary/objects_list/S1/objects_list/w": {"type": "@bogus", "id": "1"},
                    "scenary/objects_list/S9": {"name": "no element"},
                    "schedulers/objects_list/SCH3/cron_list/c1/objects_list/b": {"type": "@scenary", "id": "S9"},
                    "schedulers/objects_list/SCH1/cron_list/c1/objects_list/b": {"type": "@item", "id": "L9"},
                    "schedulers/objects_list/SCH1/cron_list/c1/objects_list/c": {"type": "@item", "id": "L4"},
                    "schedulers/objects_list/SCH1/cron_list/c1/objects_list/d": {"type": "@scenary", "id": "S1"},
                    "schedulers/objects_list/SCH1/cron_list/c1/objects_list/e": {"type": "@rules", "id": "RU9"},
                    "schedulers/objects_list/SCH1/cron_list/c1/objects_list/f": {"type": "@notify", "id": "N9"},
                    "schedulers/objects_list/SCH1/cron_list/c1/objects_list/g": {"type": "@thermo", "id": "TH9"},
                    "schedulers/objects_list/SCH1/cron_list/c1/objects_list/h": {"type": "@bogus", "id": "1"},
                    "schedulers/objects_list/SCH1/astro_list/a1/objects_list/b": {"type": "@item", "id": "L9"}})",
                R"({"scenary/objects_list/S1/objects_list/a/id": "L1", "scenary/objects_list/S1/objects_list/x": null,
                    "scenary/objects_list/S1/objects_list/w": null, "scenary/objects_list/S9": null,
                    "schedulers/objects_list/SCH3/cron_list/c1/objects_list/b": null,
                    "schedulers/objects_list/SCH1/cron_list/c1/objects_list/a/id": "L1",
                    "schedulers/objects_list/SCH1/cron_list/c1/objects_list/h": null,
                    "schedulers/objects_list/SCH1/astro_list/a1/objects_list/b": null})",
                {"3 In scenary S1 object x is item orphan",
                 "3 In scenary S1 object y is element orphan no element linked",
                 "4 In scenary S1 object z is scenary orphan", "4 In scenary S1 object w not valid object type",
                 "4 In schedulers SCH3 in cron c1 object b is scenary orphan",
                 "4 In schedulers SCH1 in cron c1 object b is item orphan",
                 "4 In schedulers SCH1 in cron c1 object c is item not in function map of element E1",
                 "4 In schedulers SCH1 in cron c1 object d is scenary element is not a scenary",
                 "4 In schedulers SCH1 in cron c1 object e is rule orphan",
                 "4 In schedulers SCH1 in cron c1 object f is notify orphan",
                 "4 In schedulers SCH1 in cron c1 object g is thermo orphan",
                 "4 In schedulers SCH1 in cron c1 object h wrong type: @bogus",
                 "4 In schedulers SCH1 in astro a1 object b is item orphan"},
                {"scenary/objects_list/S1", "scenary/objects_list/S9", "schedulers/objects_list/SCH1",
                 "schedulers/objects_list/SCH3"});
        addRows("schedule without element, astronomical watch off",
                R"({"schedulers/objects_list/SCH3/element_id": "E9", "general/enable_astro": false})",
                R"({"schedulers/objects_list/SCH3": null, "schedulers/objects_list/SCH1/astro_list": {}})",
                {"3 Delete schedulers SCH3 because not found element E9",
                 "3 In schedulers SCH1 delete astro a1 because astronomical watch is disabled!"},
                {"schedulers/objects_list/SCH3", "schedulers/objects_list/SCH1"});
        addRows("rules on what doesn't exist", R"({"rules/objects_list/RU3": {"when_": "@item[L9] == 1"},
                    "rules/objects_list/RU4": {"when_": "@item[L4] == 1"},
                    "rules/objects_list/RU5": {"then_": "@scenary[S9]"},
                    "rules/objects_list/RU6": {"else_": "@rules[RU9]"},
                    "rules/objects_list/RU7": {"then_": "@notify[N9]"}})",
                R"({"rules/objects_list/RU3": null, "rules/objects_list/RU4": null, "rules/objects_list/RU5": null,
                    "rules/objects_list/RU6": null, "rules/objects_list/RU7": null,
                    "rules/objects_list/RU2/name": "r2"})",
                {"3 Delete rules RU3 because is orphan", "3 Delete rules RU4 because is orphan",
                 "3 Delete rules RU5 because is orphan", "3 Delete rules RU6 because is orphan",
                 "3 Delete rules RU7 because is orphan"},
                {"rules/objects_list/RU7"});
        // Users come last: the rights on a lost user are gone before the user comes back.
        addRows("users and addresses lost", R"({"users/objects_list/0": null, "users/objects_list/99": null,
                                               "notify/objects_list/N1/emaildst": ["M1", "M9"]})",
                R"({"users/objects_list/0": {"name": "user", "perm": 95, "pin": ""}, "users/objects_list/99/perm": -1,
                    "elements/objects_list/E1/auth": {}, "notify/objects_list/N1/emaildst": ["M1"]})",
                {"3 Remove auth 0 from element E1", "3 Remove auth 0 from room R1"},
                {"users/objects_list/0", "users/objects_list/99", "notify/objects_list/N1"});
        addRows("administrator without PIN", R"({"users/objects_list/99/pin": ""})",
                R"({"users/objects_list/99/name": "admin"})", {}, {"users/objects_list/99"});
    }

    void danglingReferenceIsRepaired()
    {
        QFETCH(bool, asRequest);
        QFETCH(QJsonObject, changes);
        QFETCH(QJsonObject, expected);
        QFETCH(QStringList, lines);
        QFETCH(QStringList, published);
        QSignalSpy changed(engine()->getHandlerTopic(), &ps_handler_topic_t::onPersistentUpdatedSomething);
        QVERIFY(changed.isValid());
        QJsonObject document = consistentDocument();
        applyChanges(document, changes);
        log_capture_t logs;
        int result = 0;
        // A burst of requests: the whole database, and a user twice over.
        QJsonObject const user{{"topic", "request/DB/persistent/users/objects_list/U1"},
                               {"payload", QJsonObject{{"perm", 1}}}};
        QVERIFY(checkedAfter(logs, [&] {
            if (!asRequest)
                return !engine()->loadFromJson(document, result).isEmpty();
            return engine()->update(QJsonObject{{"topic", "request/DB/persistent/DB"}, {"payload", document}})
                && engine()->update(user) && engine()->update(user);
        }));
        QString const difference = firstDifference(engine()->getJdata(), expected);
        QVERIFY2(difference.isEmpty(), qPrintable(difference));
        QVERIFY2(logs.missing(lines).isEmpty(), qPrintable(logs.missing(lines)));
        QStringList topics;
        for (QList<QVariant> const& arguments : changed)
            topics.append(arguments.at(0).toJsonObject().value("topic").toString());
        for (QString const& topic : published)
            QVERIFY2(topics.contains(topic), qPrintable(topic));
        // Other processes take a schedule's status only whole: a repaired entry goes out as its schedule.
        for (QString const& topic : topics) {
            if (topic.startsWith("schedulers/objects_list/"))
                QVERIFY2(topic.count('/') == 2, qPrintable(topic));
        }
        // The administrator never stays without the factory PIN.
        QCOMPARE(engine()->getJsonValue("users/objects_list/99/pin").toString(),
                 database::persistent::ps_default_t::getInstance()->getAdminPin(type_brand_t::HALDO));
        if (asRequest) {
            QTest::qWait(300);
            QCOMPARE(logs.matching("Start async consistency ... ").size(), 1);
        }
    }

    void stepsAreReportedInTheirOrder_data()
    {
        QTest::addColumn<bool>("client");
        QTest::addColumn<QStringList>("howCheck");
        QTest::addColumn<QStringList>("reports");
        QStringList const all{"0/11 CONSISTENCY: START",
                              "1/11 ELEMENTS: Checked page stack",
                              "1/11 ELEMENTS: Checked rooms",
                              "1/11 ELEMENTS: Checked elements in rooms",
                              "1/11 ELEMENTS: Checked rooms in elements",
                              "1/11 ELEMENTS: Checked",
                              "2/11 ITEMS: Checked",
                              "3/11 SMARTBUTTON: Checked",
                              "4/11 PRESENCE SIMULATION: Checked",
                              "5/11 SCENARY: Checked object",
                              "6/11 THERMO: Checked object",
                              "7/11 SCHEDULERS: Checked",
                              "8/11 RULES: Checked items in rules",
                              "8/11 RULES: Checked scenarios in rules",
                              "8/11 RULES: Checked rules in rules",
                              "8/11 RULES: Checked notify in rules",
                              "8/11 RULES: Checked",
                              "9/11 USERS: Checked",
                              "10/11 CLOCK: Checked",
                              "11/11 NOTIFICATION: Checked"};
        QTest::newRow("all") << false << QStringList{"ALL"} << all;
        // The list only names the run: every check runs anyway.
        QTest::newRow("items only") << false << QStringList{"ITEMS"} << all;
        QTest::newRow("a client repairs nothing") << true << QStringList{"ALL"} << QStringList();
    }

    void stepsAreReportedInTheirOrder()
    {
        QFETCH(bool, client);
        QFETCH(QStringList, howCheck);
        QFETCH(QStringList, reports);
        if (client)
            db->setService(service_t::client);
        database::ps_consistency_t* checker = db->getConsistency()->getPersistentConsistency();
        QSignalSpy steps(checker, &database::ps_consistency_t::onPersistentConsistencyStep);
        QSignalSpy inRun(checker, &database::ps_consistency_t::onPersistentConsistencyInRun);
        QVERIFY(steps.isValid() && inRun.isValid());
        QJsonObject document = consistentDocument();
        applyChanges(document, jsonObject(R"({"schedulers/objects_list/SCH1/element_id": "E9"})"));
        engine()->deserialize(document);
        log_capture_t logs;
        checker->check(howCheck, true);
        QCoreApplication::processEvents();
        QStringList seen;
        for (QList<QVariant> const& report : steps)
            seen << QStringLiteral("%1/%2 %3: %4")
                        .arg(report.at(0).toInt())
                        .arg(report.at(1).toInt())
                        .arg(report.at(2).toString(), report.at(3).toString());
        QCOMPARE(seen, reports);
        QCOMPARE(absent(engine()->getJsonValue("schedulers/objects_list/SCH1")), !client);
        if (client) {
            QCOMPARE(logs.messages(), QStringList{"Start check consistency for persistent part "});
            QCOMPARE(inRun.count(), 0);
            return;
        }
        QCOMPARE(inRun.count(), 2);
        QVERIFY(inRun.at(0).at(0).toBool() && !inRun.at(1).at(0).toBool());
        QStringList const lines{"6 Start consistency check " + howCheck.join(" - "),
                                "4 Consistency persistent check time: 0 second",
                                // With _realtime the twins follow before the run ends.
                                "6 Start check consistency for realtime part "};
        QVERIFY2(logs.missing(lines).isEmpty(), qPrintable(logs.missing(lines)));
        // The driver logs every report as it arrives.
        QTRY_VERIFY(logs.contains("Persistent consynstecy check step 11/11 NOTIFICATION: Checked ", 6));
    }
};

QTEST_GUILESS_MAIN(tst_ps_consistency)
#include "tst_ps_consistency.moc"
