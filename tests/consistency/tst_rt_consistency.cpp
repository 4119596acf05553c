#include <QSignalSpy>
#include <QtTest>

#include "database/consistency/consistency_t.h"
#include "database/consistency/rt_consistency_t.h"
#include "database/database_t.h"
#include "database/definition/service_t.h"
#include "database/definition/type_brand_t.h"
#include "database/persistent/persistent_t.h"
#include "database/realtime/realtime_t.h"
#include "database/utility/utility.h"
#include "support/log_capture.h"
#include "support/ps_document.h"

using database::database_t;
using database::definition::service_t;
using database::definition::type_brand_t;
using database::realtime::realtime_t;
using database::realtime::rt_handler_topic_t;

class tst_rt_consistency : public QObject
{
    Q_OBJECT

private:
    database_t* db = nullptr;

    realtime_t* live() const { return db->getRealtime(); }

    /// Puts both trees in place without asking for any check.
    void prepare(QJsonObject const& psChanges, QJsonObject const& rtChanges)
    {
        QJsonObject configured = consistentDocument();
        applyChanges(configured, psChanges);
        db->getPersistent()->deserialize(configured);
        QJsonObject state = live()->getJdata();
        applyChanges(state, rtChanges);
        live()->deserialize(state);
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(database::utility::getInstance()); }

    void cleanup()
    {
        delete db;
        db = nullptr;
    }

    void twinsFollowTheConfiguration_data()
    {
        QTest::addColumn<bool>("offline");
        QTest::addColumn<bool>("softreset");
        QTest::addColumn<bool>("save");
        QTest::addColumn<QJsonObject>("psChanges");
        QTest::addColumn<QJsonObject>("rtChanges");
        QTest::addColumn<QJsonObject>("expected");
        QTest::addColumn<bool>("saveRequested");
        QTest::addColumn<QStringList>("lines");

        auto row = [](char const* name, bool offline, bool softreset, bool save, char const* ps, char const* rt,
                      char const* expected, bool saveRequested, QStringList const& lines) {
            QTest::newRow(name) << offline << softreset << save << jsonObject(ps) << jsonObject(rt)
                                << jsonObject(expected) << saveRequested << lines;
        };
        row("configured items get their twins", false, false, true, "{}", "{}",
            R"({"items/objects_list/L1": {"feedback": "1/1/1", "value": ""},
                "items/objects_list/L4/feedback": "1/1/4"})",
            true, {"6 Sync item realtime .... ", "6 Add key L1", "6 Add key L4"});
        row("without _save nothing asks for a save", false, false, false, "{}", "{}",
            R"({"items/objects_list/L2/feedback": "1/1/2"})", false, {});
        row("a new feedback address keeps the value", false, false, true, "{}",
            R"({"items/objects_list/L1": {"feedback": "9/9/9", "value": "42"},
                "items/objects_list/L2": {"feedback": "1/1/2", "value": "21.5"}})",
            R"({"items/objects_list/L1": {"feedback": "1/1/1", "value": "42"},
                "items/objects_list/L2/value": "21.5"})",
            true, {"6 Already contains key L1", "6 Update key L1", "6 Already contains key L2 same"});
        row("a twin without configuration goes", false, false, true, "{}",
            R"({"items/objects_list/L9": {"feedback": "9/9/9", "value": "1"},
                "thermo/objects_list/TH9": {}, "scenary/objects_list/S9": {},
                "drivers/driver_knx/status/7": {}})",
            R"({"items/objects_list/L9": null, "thermo/objects_list/TH9": null, "scenary/objects_list/S9": null,
                "drivers/driver_knx/status/7": null})",
            true, {"6 Remove key L9"});
        row("thermostats, scenarios and buses get their twins", false, false, true,
            R"({"drivers/driver_baos/bus/2": {"enabled": true}})", "{}",
            R"({"thermo/objects_list/TH1/thermo/season": 0, "scenary/objects_list/S1/execution": false,
                "drivers/driver_knx/status/1/loop_execution": false,
                "drivers/driver_baos/status/2/loop_execution": false})",
            true,
            {"6 Sync thermo realtime .... ", "6 Sync scenary .. ", "6 Sync drivers knx .. ",
             "6 Sync drivers baos .. "});
        row("a heating-only thermostat is put in heating", false, false, true,
            R"({"thermo/objects_list/TH1/thermo/seasontype": 1})", R"({"thermo/objects_list/TH1": {}})",
            R"({"thermo/objects_list/TH1/thermo/season": 1})", true, {});
        row("notifications trimmed one at a time", false, false, true,
            R"({"notify/maxUserNotification": 1, "notify/maxSysNotification": 1})",
            R"({"notify/user_list": {"1": {"name": "a"}, "2": {"name": "b"}},
                "notify/sys_list": {"1": {"name": "a"}, "2": {"name": "b"}, "3": {"name": "c"}}})",
            R"({"notify/user_list/1": null, "notify/user_list/2/name": "b", "notify/sys_list/1": null,
                "notify/sys_list/3/name": "c"})",
            true,
            {"6 Check size user notification", "6 Check size system notification",
             "2 Error to resize system notification"});
        row("an offline soft reset starts the sun times again", true, true, false, "{}",
            R"({"astronomical/sunset": "19:00"})", R"({"astronomical/sunset": ""})", true, {"6 Sync astronomical .. "});
        row("a server's sun times survive a soft reset", false, true, false, "{}",
            R"({"astronomical/sunset": "19:00"})", R"({"astronomical/sunset": "19:00"})", false,
            {"6 Sync rules .. not implemented", "6 Sync scheduler .. not implemented"});
    }

    void twinsFollowTheConfiguration()
    {
        QFETCH(bool, offline);
        QFETCH(bool, softreset);
        QFETCH(bool, save);
        QFETCH(QJsonObject, psChanges);
        QFETCH(QJsonObject, rtChanges);
        QFETCH(QJsonObject, expected);
        QFETCH(bool, saveRequested);
        QFETCH(QStringList, lines);
        db = new database_t(offline ? service_t::offline : service_t::server, type_brand_t::HALDO);
        prepare(psChanges, rtChanges);
        QSignalSpy saves(live(), &realtime_t::onSaveRequest);
        QVERIFY(saves.isValid());
        log_capture_t logs;
        db->getConsistency()->getRealtimeConsistency()->check(softreset, save);
        // Counted at once: rebuilding the image for the reads below asks for a save of its own.
        QCOMPARE(saves.count() > 0, saveRequested);
        QCoreApplication::processEvents();
        QString const difference = firstDifference(live()->getJdata(), expected);
        QVERIFY2(difference.isEmpty(), qPrintable(difference));
        lines.append("4 Consistency realtime check time: 0 second");
        QVERIFY2(logs.missing(lines).isEmpty(), qPrintable(logs.missing(lines)));
    }

    void secondRunChangesNothing()
    {
        db = new database_t(service_t::server, type_brand_t::HALDO);
        prepare(jsonObject(R"({"thermo/objects_list/TH1/thermo/seasontype": 2})"), QJsonObject());
        database::rt_consistency_t* checker = db->getConsistency()->getRealtimeConsistency();
        checker->check(false, true);
        QCoreApplication::processEvents();
        QJsonObject const settled = live()->getJdata();
        QSignalSpy saves(live(), &realtime_t::onSaveRequest);
        QSignalSpy changes(live()->getHandlerTopic(), &rt_handler_topic_t::onRealtimeUpdatedSomething);
        QVERIFY(saves.isValid() && changes.isValid());
        checker->check(false, true);
        QCoreApplication::processEvents();
        QCOMPARE(saves.count(), 0);
        QCOMPARE(changes.count(), 0);
        QCOMPARE(live()->getJdata(), settled);
    }
};

QTEST_GUILESS_MAIN(tst_rt_consistency)
#include "tst_rt_consistency.moc"
