#include <QElapsedTimer>
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
QStringList const kAll{QStringLiteral("ALL")};

QJsonObject packet(QString const& topic, QJsonValue const& payload)
{
    return QJsonObject{{"topic", topic}, {"payload", payload}};
}

/// Ten rooms of elements on items, half of whose functions name items that
/// don't exist: a check has hundreds of repairs to make in it.
QJsonObject largeDocument(int elements)
{
    QJsonObject document = consistentDocument();
    QJsonObject changes;
    for (int e = 0; e < elements; ++e) {
        QString const room = QStringLiteral("elements/objects_list/Q%1").arg(e % 10);
        QJsonObject roomElement = changes.value(room).toObject({{"@class", "psoe_room"}, {"rooms", QJsonArray{"2"}}});
        roomElement.insert("element_list", roomElement.value("element_list").toArray() << QStringLiteral("B%1").arg(e));
        changes.insert(room, roomElement);
        changes.insert(QStringLiteral("items/objects_list/I%1").arg(e), QJsonObject{{"feedback", "2/1/1"}});
        changes.insert(QStringLiteral("elements/objects_list/B%1").arg(e),
                       QJsonObject{{"@class", "psoe_onoff"},
                                   {"rooms", QJsonArray{room.section('/', -1)}},
                                   {"function_map",
                                    QJsonObject{{"onoff", QStringLiteral("%1%2").arg(e % 2 ? "I" : "X").arg(e)}}}});
    }
    changes.insert("elements/page_stack/2", QJsonArray{"Q0", "Q1", "Q2", "Q3", "Q4", "Q5", "Q6", "Q7", "Q8", "Q9"});
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
        // Spaced well inside the gathering time, so that a stalled wait can't
        // let it end, and lasting longer than it, so that only postponing keeps it waiting.
        for (int i = 0; i < 20; ++i) {
            driver()->consistency_check_async({QStringLiteral("W%1").arg(i % 3)}, true, true);
            sinceLast.start();
            QTest::qWait(40);
            QCOMPARE(logs.matching(kStarted).size(), 0);
        }
        QVERIFY(checkedAfter(logs, [] { return true; }));
        QVERIFY2(sinceLast.elapsed() >= 240, qPrintable(QString::number(sinceLast.elapsed())));
        QTest::qWait(300);
        QCOMPARE(logs.matching(kStarted).size(), 1);
        // The job was given the gathered wishes, each once.
        QStringList gathered
            = logs.matching("Start consistency check ").value(0).message.section("check ", 1).split(" - ");
        gathered.sort();
        QCOMPARE(gathered, (QStringList{"W0", "W1", "W2"}));
        QVERIFY(driver()->getPendingList().isEmpty());
    }

    void wishesAreMerged_data()
    {
        QTest::addColumn<bool>("duringRun");
        QTest::addColumn<bool>("persistent");
        QTest::newRow("idle: the last wish decides") << false << false;
        QTest::newRow("during a run: no wish narrows the next") << true << true;
    }

    void wishesAreMerged()
    {
        QFETCH(bool, duringRun);
        QFETCH(bool, persistent);
        log_capture_t logs;
        // A run without its realtime part leaves the flag up: the driver counts as running.
        if (duringRun)
            driver()->consistency_check_sync({"X"}, false, false);
        driver()->consistency_check_async({"A", "B"}, true, false);
        driver()->consistency_check_async({"B", "C"}, false, true);
        QCOMPARE(driver()->getPendingPersistent(), persistent);
        QVERIFY(driver()->getPendingRealtime());
        QStringList pending = driver()->getPendingList();
        pending.sort();
        QCOMPARE(pending, (QStringList{"A", "B", "C"}));
        if (duringRun) {
            QTRY_VERIFY(logs.matching("Cosistecy in running retry later", 3).size() >= 2);
            QCOMPARE(logs.matching(kStarted).size(), 0);
            driver()->consistency_check_sync(kAll, false, true);
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
    }

    void runningFlagFallsOnlyWithTheRealtimePart_data()
    {
        QTest::addColumn<bool>("persistent");
        QTest::addColumn<bool>("realtime");
        QTest::addColumn<bool>("busyAfter");
        QTest::addColumn<QString>("lines");
        QTest::newRow("both") << true << true << false
                              << "persistent check time: 0 second|realtime check time: 0 second|check time: 0 second";
        QTest::newRow("persistent only") << true << false << true
                                         << "persistent check time: 0 second|check time: 0 second";
        QTest::newRow("neither") << false << false << true << "check time: 0 second";
    }

    void runningFlagFallsOnlyWithTheRealtimePart()
    {
        QFETCH(bool, persistent);
        QFETCH(bool, realtime);
        QFETCH(bool, busyAfter);
        QFETCH(QString, lines);
        log_capture_t logs;
        driver()->consistency_check_sync(kAll, persistent, realtime);
        QCOMPARE(driver()->isBusy(), busyAfter);
        QStringList own;
        for (auto const& record : logs.records) {
            if (record.source == QLatin1String("consistency_check_sync"))
                own.append(record.message);
        }
        QCOMPARE(own,
                 QStringList{"Start consistency ... "}
                     + lines.split('|').replaceInStrings(QRegularExpression("^"), "Consistency "));
    }

    void stepZeroStartsTheClockAgain()
    {
        database::ps_consistency_t* checker = driver()->getPersistentConsistency();
        log_capture_t logs;
        Q_EMIT checker->onPersistentConsistencyStep(0, 11, "CONSISTENCY", "START");
        QTest::qWait(120);
        Q_EMIT checker->onPersistentConsistencyStep(1, 11, "ELEMENTS", "Checked");
        Q_EMIT checker->onPersistentConsistencyStep(0, 11, "CONSISTENCY", "START");
        QTRY_COMPARE(logs.matching("Persistent consynstecy check step ", 6).size(), 3);
        QString const first = logs.matching("step 1/11 ELEMENTS: Checked ").value(0).message;
        QVERIFY2(first.section("tot: ", 1).section(' ', 0, 0).toDouble() >= 0.1, qPrintable(first));
        QCOMPARE(logs.matching("step 0/11 CONSISTENCY: START 0 sec tot: 0 sec").size(), 2);
    }

    void requestsDuringACheckWaitForIt()
    {
        log_capture_t logs;
        database::persistent::persistent_t* engine = db->getPersistent();
        // Its check repairs hundreds of elements on the pool while their changes reach the engine here.
        QVERIFY(engine->update(packet("request/DB/persistent/DB", largeDocument(1200))));
        int sent = 0;
        int duringRun = 0;
        // Removals raise checks; changes and live values come with them.
        auto send = [&] {
            QString const kept = QStringLiteral("I%1").arg(2 * sent);
            QString const base = QStringLiteral("request/DB/persistent/");
            QVERIFY(
                engine->update(packet(base + "items/objects_list/I" + QString::number(2 * sent + 1), QJsonObject())));
            QVERIFY(engine->update(
                packet(base + "items/objects_list/" + kept, QJsonObject{{"flags", 3}, {"feedback", "3/1/1"}})));
            QVERIFY(engine->update(packet(base + "elements/objects_list/B" + QString::number(2 * sent),
                                          QJsonObject{{"@class", "psoe_onoff"},
                                                      {"rooms", QJsonArray{"Q" + QString::number(2 * sent % 10)}},
                                                      {"function_map", QJsonObject{{"onoff", kept}}}})));
            QVERIFY(db->getRealtime()->update(
                packet("status/DB/realtime/items/objects_list/I0/value", QString::number(sent))));
            ++sent;
        };
        for (int round = 0; round < 5; ++round) {
            for (int i = 0; i < 10; ++i)
                send();
            // The job starts in the timer's slot: from there on, requests meet it.
            qsizetype const started = logs.matching(kStarted).size();
            QElapsedTimer clock;
            clock.start();
            while (logs.matching(kStarted).size() == started && clock.elapsed() < 5000)
                QCoreApplication::processEvents(QEventLoop::AllEvents, 2);
            // Now and then a request, which waits for the check; in between the
            // engines take the check's changes while it goes on.
            clock.start();
            for (int during = 0; driver()->isBusy(); QCoreApplication::processEvents(QEventLoop::AllEvents, 2)) {
                if (clock.elapsed() >= 60 * during) {
                    duringRun += driver()->isBusy() ? 1 : 0;
                    send();
                    ++during;
                }
            }
        }
        QTest::qWait(400);
        QTRY_VERIFY_WITH_TIMEOUT(!driver()->isBusy(), 60000);
        QVERIFY(duringRun > 0);
        QCOMPARE(engine->getJsonValue("elements/objects_list/B1198/function_map").toObject(), QJsonObject());
        QCOMPARE(engine->getJsonValue("elements/objects_list/B1/function_map").toObject(), QJsonObject());
        // Every reference that the requests broke is gone: a further check finds nothing.
        logs.clear();
        driver()->consistency_check_sync(kAll, true, true);
        QVERIFY2(logs.matching(QString(), 3).isEmpty(), qPrintable(logs.messages().join('\n')));
    }
};

QTEST_GUILESS_MAIN(tst_consistency)
#include "tst_consistency.moc"
