#include <QElapsedTimer>
#include <QSignalSpy>
#include <QtTest>

#include "database/consistency/consistency_t.h"
#include "database/consistency/ps_consistency_t.h"
#include "database/database_t.h"
#include "database/definition/service_t.h"
#include "database/definition/type_brand_t.h"
#include "database/persistent/persistent_t.h"
#include "database/realtime/realtime_t.h"
#include "database/utility/utility.h"
#include "support/log_capture.h"
#include "support/ps_document.h"

using database::consistency_t;
using database::database_t;
using database::definition::service_t;
using database::definition::type_brand_t;

namespace {

QString const kStarted = QStringLiteral("Start async consistency ... ");
QString const kRunEnd = QStringLiteral("Consistency check time: ");
QStringList const kAll{QStringLiteral("ALL")};

/// A document big enough for a check to take a while: rooms of elements on
/// items, half of whose functions name items that don't exist.
QJsonObject largeDocument(int elements)
{
    QJsonObject document = consistentDocument();
    QJsonObject changes;
    QJsonArray floor;
    for (int room = 0; room < 10; ++room) {
        QJsonArray list;
        for (int e = room; e < elements; e += 10)
            list.append(QStringLiteral("B%1").arg(e));
        changes.insert(QStringLiteral("elements/objects_list/Q%1").arg(room),
                       QJsonObject{{"@class", "psoe_room"}, {"rooms", QJsonArray{"2"}}, {"element_list", list}});
        floor.append(QStringLiteral("Q%1").arg(room));
    }
    changes.insert("elements/page_stack/2", floor);
    for (int e = 0; e < elements; ++e) {
        QString const item = QStringLiteral("%1%2").arg(e % 2 ? "I" : "X").arg(e);
        changes.insert(QStringLiteral("items/objects_list/I%1").arg(e),
                       QJsonObject{{"name", "item"}, {"feedback", QStringLiteral("2/1/%1").arg(e)}});
        changes.insert(QStringLiteral("elements/objects_list/B%1").arg(e),
                       QJsonObject{{"@class", "psoe_onoff"}, {"rooms", QJsonArray{QStringLiteral("Q%1").arg(e % 10)}},
                                   {"function_map", QJsonObject{{"onoff", item}}}});
    }
    applyChanges(document, changes);
    return document;
}

} // namespace

class tst_consistency : public QObject
{
    Q_OBJECT

private:
    database_t* db = nullptr;

    consistency_t* driver() const { return db->getConsistency(); }

    /// Brings the running flag down again with a run that reaches the realtime part.
    void settle()
    {
        driver()->consistency_check_sync(kAll, false, true);
        QTRY_VERIFY(!driver()->isBusy());
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(database::utility::getInstance()); }

    void init() { db = new database_t(service_t::server, type_brand_t::HALDO); }

    void cleanup()
    {
        delete db;
        db = nullptr;
    }

    void burstGivesOneRunAfterItsLastWish()
    {
        log_capture_t logs;
        QElapsedTimer sinceLast;
        for (int i = 0; i < 10; ++i) {
            driver()->consistency_check_async({QStringLiteral("W%1").arg(i % 3)}, true, true);
            sinceLast.start();
            QTest::qWait(100);
            QCOMPARE(logs.matching(kStarted).size(), 0);
        }
        QTRY_COMPARE(logs.matching(kStarted).size(), 1);
        QVERIFY2(sinceLast.elapsed() >= 240, qPrintable(QString::number(sinceLast.elapsed())));
        QTRY_VERIFY(logs.contains(kRunEnd));
        QTRY_VERIFY(!driver()->isBusy());
        QTest::qWait(300);
        QCOMPARE(logs.matching(kStarted).size(), 1);
        QCOMPARE(logs.matching("Start timer consistency async... ", 6).size(), 10);
        // The job was given the gathered wishes, each once.
        QStringList gathered = logs.matching("Start consistency check ").value(0).message.section("check ", 1)
                                   .split(" - ");
        gathered.sort();
        QCOMPARE(gathered, (QStringList{"W0", "W1", "W2"}));
        QVERIFY(driver()->getPendingList().isEmpty());
    }

    void wishesAreMerged_data()
    {
        QTest::addColumn<bool>("duringRun");
        QTest::addColumn<bool>("persistent");
        QTest::addColumn<bool>("realtime");
        QTest::newRow("idle: the last wish decides") << false << false << true;
        QTest::newRow("during a run: no wish narrows the next") << true << true << true;
    }

    void wishesAreMerged()
    {
        QFETCH(bool, duringRun);
        QFETCH(bool, persistent);
        QFETCH(bool, realtime);
        log_capture_t logs;
        // A run without its realtime part leaves the flag up: the driver counts as running.
        if (duringRun)
            driver()->consistency_check_sync({"X"}, false, false);
        QCOMPARE(driver()->isBusy(), duringRun);
        driver()->consistency_check_async({"A", "B"}, true, false);
        driver()->consistency_check_async({"B", "C"}, false, true);
        QCOMPARE(driver()->getPendingPersistent(), persistent);
        QCOMPARE(driver()->getPendingRealtime(), realtime);
        QStringList pending = driver()->getPendingList();
        pending.sort();
        QCOMPARE(pending, (QStringList{"A", "B", "C"}));
        if (duringRun) {
            QTRY_VERIFY(logs.matching("Cosistecy in running retry later", 3).size() >= 2);
            QCOMPARE(logs.matching(kStarted).size(), 0);
            settle();
        }
        QTRY_COMPARE(logs.matching(kStarted).size(), 1);
        QTRY_VERIFY(!driver()->isBusy());
        QCOMPARE(logs.contains("Start check consistency for persistent part "), persistent);
    }

    void stopDuringGatheringCancelsTheRun()
    {
        log_capture_t logs;
        driver()->consistency_check_async(kAll, true, true);
        driver()->consistency_check_async_stop();
        QVERIFY(driver()->getPendingList().isEmpty());
        QTest::qWait(400);
        QCOMPARE(logs.matching("Try to start sync consistency ... ").size(), 0);
        QVERIFY(!driver()->isBusy());
    }

    void runningFlagFallsOnlyWithTheRealtimePart_data()
    {
        QTest::addColumn<bool>("persistent");
        QTest::addColumn<bool>("realtime");
        QTest::addColumn<bool>("busyAfter");
        QTest::addColumn<QStringList>("lines");
        QTest::newRow("both") << true << true << false
                              << QStringList{"Start consistency ... ", "Consistency persistent check time: 0 second",
                                             "Consistency realtime check time: 0 second",
                                             "Consistency check time: 0 second"};
        QTest::newRow("persistent only") << true << false << true
                                         << QStringList{"Start consistency ... ",
                                                        "Consistency persistent check time: 0 second",
                                                        "Consistency check time: 0 second"};
        QTest::newRow("realtime only") << false << true << false
                                       << QStringList{"Start consistency ... ",
                                                      "Consistency realtime check time: 0 second",
                                                      "Consistency check time: 0 second"};
        QTest::newRow("neither") << false << false << true
                                 << QStringList{"Start consistency ... ", "Consistency check time: 0 second"};
    }

    void runningFlagFallsOnlyWithTheRealtimePart()
    {
        QFETCH(bool, persistent);
        QFETCH(bool, realtime);
        QFETCH(bool, busyAfter);
        QFETCH(QStringList, lines);
        log_capture_t logs;
        driver()->consistency_check_sync(kAll, persistent, realtime);
        QCOMPARE(driver()->isBusy(), busyAfter);
        QStringList own;
        for (auto const& record : logs.records) {
            if (record.source == QLatin1String("consistency_check_sync"))
                own.append(record.message);
        }
        QCOMPARE(own, lines);
    }

    void stepZeroStartsTheClockAgain()
    {
        database::ps_consistency_t* checker = driver()->getPersistentConsistency();
        log_capture_t logs;
        Q_EMIT checker->onPersistentConsistencyStep(0, 11, "CONSISTENCY", "START");
        QTest::qWait(120);
        Q_EMIT checker->onPersistentConsistencyStep(1, 11, "ELEMENTS", "Checked");
        QTRY_VERIFY(logs.contains("Persistent consynstecy check step 1/11 ELEMENTS: Checked "));
        QString const first = logs.matching("step 1/11").value(0).message;
        double const total = first.section("tot: ", 1).section(' ', 0, 0).toDouble();
        QVERIFY2(total >= 0.1, qPrintable(first));
        Q_EMIT checker->onPersistentConsistencyStep(0, 11, "CONSISTENCY", "START");
        QTRY_COMPARE(logs.matching("Persistent consynstecy check step 0/11 CONSISTENCY: START 0 sec tot: 0 sec", 6)
                         .size(),
                     2);
    }

    void requestsDuringACheckWaitForIt()
    {
        log_capture_t logs;
        database::persistent::persistent_t* engine = db->getPersistent();
        int result = 0;
        QJsonObject document = largeDocument(1200);
        engine->loadFromJson(document, result);
        QTRY_VERIFY(logs.contains(kRunEnd));
        QCoreApplication::processEvents();
        QCOMPARE(engine->getJsonValue("elements/objects_list/B0/function_map").toObject(), QJsonObject());
        logs.clear();
        // Removals raise checks; more of them, and live values, arrive while the check walks.
        int removed = 0;
        int duringRun = 0;
        auto send = [&] {
            QString const item = QStringLiteral("I%1").arg(2 * removed + 1);
            QVERIFY(engine->update(QJsonObject{{"topic", "request/DB/persistent/items/objects_list/" + item},
                                               {"payload", QJsonObject()}}));
            QVERIFY(db->getRealtime()->update(QJsonObject{{"topic", "status/DB/realtime/items/objects_list/I0/value"},
                                                          {"payload", QString::number(removed)}}));
            ++removed;
        };
        for (int round = 0; round < 5; ++round) {
            for (int i = 0; i < 10; ++i)
                send();
            QElapsedTimer clock;
            clock.start();
            while (!driver()->isBusy() && clock.elapsed() < 5000)
                QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
            while (driver()->isBusy()) {
                send();
                ++duringRun;
                QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
            }
        }
        QTRY_VERIFY_WITH_TIMEOUT(logs.matching(kRunEnd).size() >= 1 && !driver()->isBusy(), 60000);
        QTest::qWait(400);
        QTRY_VERIFY_WITH_TIMEOUT(!driver()->isBusy(), 60000);
        qInfo() << removed << "removals," << duringRun << "sent during a run,"
                << logs.matching(kStarted).size() << "runs";
        QVERIFY(duringRun > 0);
        QVERIFY(logs.matching(kStarted).size() >= 1);
        // Every reference that the removals broke is gone: a further check finds nothing.
        logs.clear();
        driver()->consistency_check_sync(kAll, true, true);
        QCoreApplication::processEvents();
        QVERIFY2(logs.matching(QString(), 3).isEmpty(), qPrintable(logs.messages().join('\n')));
        QCOMPARE(engine->getJsonValue("elements/objects_list/B1/function_map").toObject(), QJsonObject());
    }
};

QTEST_GUILESS_MAIN(tst_consistency)
#include "tst_consistency.moc"
