#include <QJsonArray>
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

namespace {

QString const kRunEnd = QStringLiteral("Consistency check time: ");

/// Lines written "<level> <text>".
void verifyLines(log_capture_t const& logs, QStringList const& lines)
{
    for (QString const& line : lines) {
        QString const text = line.section(QLatin1Char(' '), 1);
        int const level = line.section(QLatin1Char(' '), 0, 0).toInt();
        QVERIFY2(logs.contains(text, level), qPrintable(line + "\nnot in:\n" + logs.messages().join('\n')));
    }
}

bool absent(QJsonValue const& value)
{
    return value.isUndefined() || value.isNull();
}

/// The topics of the changes a spy on onPersistentUpdatedSomething saw.
QStringList publishedTopics(QSignalSpy const& spy)
{
    QStringList topics;
    for (QList<QVariant> const& arguments : spy)
        topics.append(arguments.at(0).toJsonObject().value("topic").toString());
    return topics;
}

} // namespace

class tst_ps_consistency : public QObject
{
    Q_OBJECT

private:
    database_t* db = nullptr;

    persistent_t* engine() const { return db->getPersistent(); }

    /// Loads document and waits for the check that the load asks for.
    void load(QJsonObject document, log_capture_t const& logs)
    {
        int const runs = logs.matching(kRunEnd).size();
        int result = 0;
        QVERIFY(!engine()->loadFromJson(document, result).isEmpty());
        QTRY_COMPARE(logs.matching(kRunEnd).size(), runs + 1);
        // The repairs reach the engine queued, after the check.
        QCoreApplication::processEvents();
    }

    /// Replaces the whole database by request, and waits for the pooled check it raises.
    void request(QJsonObject const& document, log_capture_t const& logs)
    {
        int const runs = logs.matching(kRunEnd).size();
        QVERIFY(engine()->update(QJsonObject{{"topic", "request/DB/persistent/DB"}, {"payload", document}}));
        QTRY_COMPARE(logs.matching(kRunEnd).size(), runs + 1);
        QTRY_VERIFY(!db->getConsistency()->isBusy());
        QCoreApplication::processEvents();
    }

    void addRows(char const* name, char const* changes, char const* expected, QStringList const& lines,
                 QString const& published)
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
        int result = 0;
        engine()->loadFromJson(document, result);
        QJsonObject const loaded = engine()->getJdata();
        QTRY_VERIFY(logs.contains(kRunEnd));
        QCOMPARE(engine()->getJdata(), loaded);
        // A bus scenario button needs no scenario of ours.
        QVERIFY(loaded.value("elements").toObject().value("objects_list").toObject().contains("SC2"));
    }

    void danglingReferenceIsRepaired_data()
    {
        QTest::addColumn<bool>("asRequest");
        QTest::addColumn<QJsonObject>("changes");
        QTest::addColumn<QJsonObject>("expected");
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<QString>("published");

        addRows("room on a floor without its element", R"({"elements/page_stack/1": ["R1", "R9"]})",
                R"({"elements/page_stack/1": ["R1"]})", {"3 Remove to page stack in floor 1 room R9",
                                                         "3 update page stack"},
                "elements/page_stack");
        addRows("room that doesn't name its floor", R"({"elements/objects_list/R1/rooms": []})",
                R"({"elements/objects_list/R1/rooms": ["1"]})", {"3 Append to room id R1 floor 1"},
                "elements/objects_list/R1");
        addRows("floor missing from the page stack", R"({"elements/objects_list/R1/rooms": ["1", "2"]})",
                R"({"elements/page_stack/2": ["R1"], "elements/page_stack/1": ["R1"]})",
                {"3 Added to page stack in floor 2 room R1"}, "elements/page_stack");
        addRows("element in a room that doesn't exist", R"({"elements/objects_list/E1/rooms": ["R1", "R9"]})",
                R"({"elements/objects_list/E1/rooms": ["R1"]})", {"3 Remove from element id E1 room R9"},
                "elements/objects_list/E1");
        addRows("element missing from its room's list",
                R"({"elements/objects_list/R1/element_list": ["E2", "SC1", "SC2", "T1"]})",
                R"({"elements/objects_list/R1/element_list": ["E2", "SC1", "SC2", "T1", "E1"]})",
                {"3 Add to room id R1 room E1"}, "elements/objects_list/R1");
        addRows("element allowed to a user that doesn't exist", R"({"elements/objects_list/E1/auth": {"0": 1, "7": 1}})",
                R"({"elements/objects_list/E1/auth": {"0": 1}})", {"3 Remove auth 7 from element E1"},
                "elements/objects_list/E1");
        addRows("room allowed to a user that doesn't exist", R"({"elements/objects_list/R1/auth": {"0": 1, "7": 1}})",
                R"({"elements/objects_list/R1/auth": {"0": 1}})", {"3 Remove auth 7 from room R1"},
                "elements/objects_list/R1");
        // The room's new list goes out under the missing element's topic.
        addRows("room listing an element that doesn't exist",
                R"({"elements/objects_list/R1/element_list": ["E1", "E2", "SC1", "SC2", "T1", "E9"]})",
                R"({"elements/objects_list/R1/element_list": ["E1", "E2", "SC1", "SC2", "T1"]})",
                {"3 Remove from room  R1 element E9"}, "elements/objects_list/E9");
        addRows("function on a deleted item, and the rule on it", R"({"items/objects_list/L3": null})",
                R"({"elements/objects_list/E2/function_map": {}, "rules/objects_list/RU2": null,
                    "rules/objects_list/RU1/name": "r1"})",
                {"3 Delete rules RU2 because is orphan"}, "rules/objects_list/RU2");
        addRows("thermostat element without thermostat, and the schedule on it",
                R"({"thermo/objects_list/TH1": null})",
                R"({"elements/objects_list/T1": null, "schedulers/objects_list/SCH2": null})",
                {"3 Remove thermo element T1because thermo not exist",
                 "3 Delete schedulers SCH2 because not found element T1"},
                "elements/objects_list/T1");
        addRows("scenario element without scenario, and what names it", R"({"scenary/objects_list/S1": null})",
                R"({"elements/objects_list/SC1": null, "elements/objects_list/SC2/name": "bus scene",
                    "schedulers/objects_list/SCH3": null, "rules/objects_list/RU1": null,
                    "rules/objects_list/RU2": null})",
                {"3 Remove scenary element SC1because scenary not exist",
                 "3 Delete schedulers SCH3 because not found element SC1", "3 Delete rules RU1 because is orphan",
                 "3 Delete rules RU2 because is orphan"},
                "elements/objects_list/SC1");
        addRows("item on a driver that doesn't exist", R"({"items/objects_list/L1/id_driver": "drivers/driver_knx/9"})",
                R"({"items/objects_list/L1/id_driver": ""})",
                {"3 Reset driver to item L1 because driver drivers/driver_knx/9 not exist"}, "items/objects_list/L1");
        addRows("presence simulation on an item no element uses", R"({"items/objects_list/L4/flags": 7})",
                R"({"items/objects_list/L4/flags": 4})",
                {"3 Reset presence simulation flags of item L4 because it has no associated elements"},
                "items/objects_list/L4");
        addRows("smart button on deleted items", R"({"smartbutton/id_item_rgb": "L9",
                                                    "smartbutton/id_item_listen_index": "L8"})",
                R"({"smartbutton/id_item_rgb": "", "smartbutton/id_item_listen_index": ""})",
                {"3 Reset smart button because id rgm L9 not exist",
                 "3 Reset smart button because id listen L8 not exist"},
                "smartbutton");
        addRows("presence simulation on a deleted item", R"({"presencesimulation/idItem": "L9"})",
                R"({"presencesimulation/idItem": ""})", {"3 Reset presence simulation because id item L9 not exist"},
                "presencesimulation");
        addRows("scenario without element, and the schedule action on it",
                R"({"scenary/objects_list/S9": {"name": "lost"},
                    "schedulers/objects_list/SCH3/cron_list/c1/objects_list/b": {"type": "@scenary", "id": "S9"}})",
                R"({"scenary/objects_list/S9": null, "schedulers/objects_list/SCH3/cron_list/c1/objects_list/b": null,
                    "schedulers/objects_list/SCH3/cron_list/c1/objects_list/a/id": "S1"})",
                {"4 In schedulers SCH3 in cron c1 object b is scenary orphan"}, "scenary/objects_list/S9");
        addRows("scenario actions that lead nowhere",
                R"({"scenary/objects_list/S1/objects_list/x": {"type": "@item", "id": "L9"},
                    "scenary/objects_list/S1/objects_list/y": {"type": "@item", "id": "L4"},
                    "scenary/objects_list/S1/objects_list/z": {"type": "@rules", "id": "RU9"},
                    "scenary/objects_list/S1/objects_list/w": {"type": "@bogus", "id": "1"}})",
                R"({"scenary/objects_list/S1/objects_list": {"a": {"type": "@item", "id": "L1", "value": "1",
                                                                  "enabled": false, "order": 0, "delay": 0,
                                                                  "args": ""}}})",
                {"3 In scenary S1 object x is item orphan", "3 In scenary S1 object y is element orphan no element linked",
                 "4 In scenary S1 object z is scenary orphan", "4 In scenary S1 object w not valid object type"},
                "scenary/objects_list/S1");
        addRows("thermostat and clock on a deleted item", R"({"items/objects_list/L2": null})",
                R"({"thermo/objects_list/TH1/id_win": "", "thermo/objects_list/TH1/thermo/idactual": "",
                    "thermo/objects_list/TH1/thermo/items": {}, "drivers/driver_clock/id_item_date": ""})",
                {}, "thermo/objects_list/TH1");
        addRows("thermostat without element keeps its items", R"({"thermo/objects_list/TH9": {"id_win": "L4"}})",
                R"({"thermo/objects_list/TH9": null, "items/objects_list/L4/name": "spare"})", {},
                "thermo/objects_list/TH9");
        addRows("baos thermostat without element takes its items",
                R"({"drivers/knx_mode": "baos", "thermo/objects_list/TH9": {"id_win": "L4"}})",
                R"({"thermo/objects_list/TH9": null, "items/objects_list/L4": null})", {}, "items/objects_list/L4");
        addRows("schedule of an element that doesn't exist", R"({"schedulers/objects_list/SCH1/element_id": "E9"})",
                R"({"schedulers/objects_list/SCH1": null})", {"3 Delete schedulers SCH1 because not found element E9"},
                "schedulers/objects_list/SCH1");
        addRows("schedule actions that lead nowhere", R"({
                    "schedulers/objects_list/SCH1/cron_list/c1/objects_list/b": {"type": "@item", "id": "L9"},
                    "schedulers/objects_list/SCH1/cron_list/c1/objects_list/c": {"type": "@item", "id": "L4"},
                    "schedulers/objects_list/SCH1/cron_list/c1/objects_list/d": {"type": "@scenary", "id": "S1"},
                    "schedulers/objects_list/SCH1/cron_list/c1/objects_list/e": {"type": "@rules", "id": "RU9"},
                    "schedulers/objects_list/SCH1/cron_list/c1/objects_list/f": {"type": "@notify", "id": "N9"},
                    "schedulers/objects_list/SCH1/cron_list/c1/objects_list/g": {"type": "@thermo", "id": "TH9"},
                    "schedulers/objects_list/SCH1/cron_list/c1/objects_list/h": {"type": "@bogus", "id": "1"},
                    "schedulers/objects_list/SCH1/astro_list/a1/objects_list/b": {"type": "@item", "id": "L9"}})",
                R"({"schedulers/objects_list/SCH1/cron_list/c1/objects_list": {"a": {"type": "@item", "id": "L1",
                        "value": "1", "enabled": false, "order": 0, "delay": 0, "args": ""}},
                    "schedulers/objects_list/SCH1/astro_list/a1/objects_list/b": null})",
                {"4 In schedulers SCH1 in cron c1 object b is item orphan",
                 "4 In schedulers SCH1 in cron c1 object c is item not in function map of element E1",
                 "4 In schedulers SCH1 in cron c1 object d is scenary element is not a scenary",
                 "4 In schedulers SCH1 in cron c1 object e is rule orphan",
                 "4 In schedulers SCH1 in cron c1 object f is notify orphan",
                 "4 In schedulers SCH1 in cron c1 object g is thermo orphan",
                 "4 In schedulers SCH1 in cron c1 object h wrong type: @bogus",
                 "4 In schedulers SCH1 in astro a1 object b is item orphan"},
                "schedulers/objects_list/SCH1/cron_list/c1");
        addRows("astronomical watch disabled", R"({"general/enable_astro": false})",
                R"({"schedulers/objects_list/SCH1/astro_list": {}})",
                {"3 In schedulers SCH1 delete astro a1 because astronomical watch is disabled!"},
                "schedulers/objects_list/SCH1");
        addRows("rules on what doesn't exist", R"({
                    "rules/objects_list/RU3": {"when_": "@item[L9] == 1"},
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
                "rules/objects_list/RU7");
        // Users come last, so the rights on the lost user are gone before it comes back.
        addRows("users lost", R"({"users/objects_list/0": null, "users/objects_list/99": null})",
                R"({"users/objects_list/0": {"name": "user", "perm": 95, "pin": ""},
                    "users/objects_list/99/perm": -1, "elements/objects_list/E1/auth": {}})",
                {"3 Remove auth 0 from element E1", "3 Remove auth 0 from room R1"}, "users/objects_list/99");
        addRows("administrator without PIN", R"({"users/objects_list/99/pin": ""})",
                R"({"users/objects_list/99/name": "admin"})", {}, "users/objects_list/99");
        addRows("notification to an address that doesn't exist",
                R"({"notify/objects_list/N1/emaildst": ["M1", "M9"]})", R"({"notify/objects_list/N1/emaildst": ["M1"]})",
                {}, "notify/objects_list/N1");
        addRows("clock on an item that doesn't exist", R"({"drivers/driver_clock/id_item_time": " L9 "})",
                R"({"drivers/driver_clock/id_item_time": "", "drivers/driver_clock/id_item_date": "L2"})", {},
                "drivers/driver_clock");
    }

    void danglingReferenceIsRepaired()
    {
        QFETCH(bool, asRequest);
        QFETCH(QJsonObject, changes);
        QFETCH(QJsonObject, expected);
        QFETCH(QStringList, lines);
        QFETCH(QString, published);
        QSignalSpy changed(engine()->getHandlerTopic(), &ps_handler_topic_t::onPersistentUpdatedSomething);
        QVERIFY(changed.isValid());
        QJsonObject document = consistentDocument();
        applyChanges(document, changes);
        log_capture_t logs;
        if (asRequest)
            request(document, logs);
        else
            load(document, logs);
        for (auto it = expected.begin(); it != expected.end(); ++it) {
            QJsonValue const actual = engine()->getJsonValue(it.key());
            if (it.value().isNull())
                QVERIFY2(absent(actual), qPrintable(it.key() + " is still there"));
            else
                QCOMPARE(actual, it.value());
        }
        verifyLines(logs, lines);
        QTRY_VERIFY2(publishedTopics(changed).contains(published), qPrintable(publishedTopics(changed).join(' ')));
        // The administrator never stays without the factory PIN.
        QString const factoryPin = database::persistent::ps_default_t::getInstance()->getAdminPin(type_brand_t::HALDO);
        QCOMPARE(engine()->getJsonValue("users/objects_list/99/pin").toString(), factoryPin);
    }

    void burstOfRequestsGivesOneRun()
    {
        log_capture_t logs;
        load(consistentDocument(), logs);
        logs.clear();
        QJsonObject const removal{{"topic", "request/DB/persistent/items/objects_list/L3"}, {"payload", QJsonObject()}};
        QVERIFY(engine()->update(removal));
        for (QString const id : {"U1", "U2", "U3"}) {
            QVERIFY(engine()->update(QJsonObject{{"topic", "request/DB/persistent/users/objects_list/" + id},
                                                 {"payload", QJsonObject{{"name", id}, {"perm", 1}, {"pin", ""}}}}));
        }
        QTRY_VERIFY(logs.contains(kRunEnd));
        QTRY_VERIFY(!db->getConsistency()->isBusy());
        QTest::qWait(400);
        QCOMPARE(logs.matching("Start consistency ... ").size(), 1);
        QCOMPARE(engine()->getJsonValue("elements/objects_list/E2/function_map").toObject(), QJsonObject());
        QVERIFY(absent(engine()->getJsonValue("rules/objects_list/RU2")));
    }

    void stepsAreReportedInTheirOrder_data()
    {
        QTest::addColumn<QStringList>("howCheck");
        QTest::newRow("all") << QStringList{"ALL"};
        // The list only names the run: every check runs anyway.
        QTest::newRow("items only") << QStringList{"ITEMS"};
    }

    void stepsAreReportedInTheirOrder()
    {
        QFETCH(QStringList, howCheck);
        database::ps_consistency_t* checker = db->getConsistency()->getPersistentConsistency();
        QSignalSpy steps(checker, &database::ps_consistency_t::onPersistentConsistencyStep);
        QSignalSpy inRun(checker, &database::ps_consistency_t::onPersistentConsistencyInRun);
        QVERIFY(steps.isValid() && inRun.isValid());
        QJsonObject document = consistentDocument();
        applyChanges(document, jsonObject(R"({"schedulers/objects_list/SCH1/element_id": "E9"})"));
        engine()->deserialize(document);
        log_capture_t logs;
        checker->check(howCheck, true);
        QVERIFY(logs.contains("Start consistency check " + howCheck.join(" - "), 6));
        QVERIFY(logs.contains("Delete schedulers SCH1 because not found element E9"));
        QStringList reports;
        for (QList<QVariant> const& report : steps)
            reports << QStringLiteral("%1/%2 %3: %4")
                           .arg(report.at(0).toInt())
                           .arg(report.at(1).toInt())
                           .arg(report.at(2).toString(), report.at(3).toString());
        QCOMPARE(reports, (QStringList{"0/11 CONSISTENCY: START", "1/11 ELEMENTS: Checked page stack",
                                       "1/11 ELEMENTS: Checked rooms", "1/11 ELEMENTS: Checked elements in rooms",
                                       "1/11 ELEMENTS: Checked rooms in elements", "1/11 ELEMENTS: Checked",
                                       "2/11 ITEMS: Checked", "3/11 SMARTBUTTON: Checked",
                                       "4/11 PRESENCE SIMULATION: Checked", "5/11 SCENARY: Checked object",
                                       "6/11 THERMO: Checked object", "7/11 SCHEDULERS: Checked",
                                       "8/11 RULES: Checked items in rules", "8/11 RULES: Checked scenarios in rules",
                                       "8/11 RULES: Checked rules in rules", "8/11 RULES: Checked notify in rules",
                                       "8/11 RULES: Checked", "9/11 USERS: Checked", "10/11 CLOCK: Checked",
                                       "11/11 NOTIFICATION: Checked"}));
        QCOMPARE(inRun.count(), 2);
        QCOMPARE(inRun.at(0).at(0).toBool(), true);
        QCOMPARE(inRun.at(1).at(0).toBool(), false);
        // With _realtime the twins follow before the run ends.
        QVERIFY(logs.contains("Start check consistency for realtime part ", 6));
        QVERIFY(logs.contains("Consistency persistent check time: 0 second", 4));
        // The driver logs every report as it arrives.
        QTRY_VERIFY(logs.contains("Persistent consynstecy check step 11/11 NOTIFICATION: Checked ", 6));
    }

    void clientRepairsNothing()
    {
        db->setService(service_t::client);
        QSignalSpy steps(db->getConsistency()->getPersistentConsistency(),
                         &database::ps_consistency_t::onPersistentConsistencyStep);
        QJsonObject document = consistentDocument();
        applyChanges(document, jsonObject(R"({"schedulers/objects_list/SCH1/element_id": "E9"})"));
        engine()->deserialize(document);
        log_capture_t logs;
        db->getConsistency()->getPersistentConsistency()->check({"ALL"}, false);
        QCOMPARE(logs.messages(), QStringList{"Start check consistency for persistent part "});
        QCOMPARE(steps.count(), 0);
        QCOMPARE(engine()->getJsonValue("schedulers/objects_list/SCH1/element_id").toString(), QStringLiteral("E9"));
    }
};

QTEST_GUILESS_MAIN(tst_ps_consistency)
#include "tst_ps_consistency.moc"
