// The live road through the host: the workload of bench_live_road as JSON
// lines into a client dbhost whose data folder holds 1,000 or 10,000 items,
// saved on its own save signals and once more at the end of its input, as an
// installation runs it. Changes per second are counted from the first line to
// the exit, less the time of the same start and end with no input.
//
// Writes the figures to host_road.json beside the executable. Changes per
// run: HOST_ROAD_CHANGES (60000). HOST_ROAD_DBHOST runs another build of
// dbhost (an older one, to compare). The largest size the journal of the
// road's database reaches is noted.

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <cstdio>

#include "database/database_t.h"
#include "database/definition/service_t.h"
#include "database/definition/type_brand_t.h"
#include "platform/logs/classlogs.h"
#include "live_road_workload.h"

using namespace live_road;

namespace {

struct run_t {
    double seconds = 0;
    int changes = 0;
    qint64 largestJournal = 0;
};

QString dbhostPath()
{
    return qEnvironmentVariableIsSet("HOST_ROAD_DBHOST") ? qEnvironmentVariable("HOST_ROAD_DBHOST")
                                                         : QStringLiteral(DBHOST);
}

/// dbhost on folder with input as its standard input; its change lines of signal counted.
run_t runHost(QString const& folder, QString const& input, QString const& signal, QString const& journal)
{
    QProcess host;
    host.setStandardInputFile(input);
    host.setStandardOutputFile(folder + QStringLiteral("/out.jsonl"));
    QElapsedTimer clock;
    clock.start();
    host.start(dbhostPath(), {QStringLiteral("--data"), folder, QStringLiteral("--role"), QStringLiteral("client"),
                              QStringLiteral("--log-level"), QStringLiteral("1")});
    run_t run;
    QString const journalPath = folder + QLatin1Char('/') + journal;
    while (clock.elapsed() < 1800000 && !host.waitForFinished(20))
        run.largestJournal = qMax(run.largestJournal, QFileInfo(journalPath).size());
    if (host.state() != QProcess::NotRunning || host.exitCode() != 0) {
        std::printf("dbhost failed: %s\n", host.readAllStandardError().constData());
        return run;
    }
    run.seconds = double(clock.nsecsElapsed()) / 1e9;
    QFile out(folder + QStringLiteral("/out.jsonl"));
    if (out.open(QIODevice::ReadOnly)) {
        QByteArray const needle = "\"signal\":\"" + signal.toUtf8() + '"';
        while (!out.atEnd()) {
            if (out.readLine().contains(needle))
                ++run.changes;
        }
    }
    return run;
}

} // namespace

class bench_host_road : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { ::utility::logs::classlogs::getInstance()->setThreshold(::utility::logs::exception); }

    void hostRoad()
    {
        int const changes = qEnvironmentVariableIsSet("HOST_ROAD_CHANGES")
            ? qEnvironmentVariableIntValue("HOST_ROAD_CHANGES")
            : 60000;
        QJsonArray figures;
        std::printf("\n%8s  %-10s  %14s  %10s  %10s  %14s\n", "items", "road", "host per s", "run s", "start s",
                    "journal max");
        for (int items : {1000, 10000}) {
            workload_t const w = workload(items, changes);
            for (bool const realtime : {true, false}) {
                QTemporaryDir dir;
                QVERIFY(dir.isValid());
                {
                    database::database_t db(database::definition::service_t::client,
                                            database::definition::type_brand_t::HALDO);
                    fillPersistent(db, items);
                    fillRealtime(db, items);
                    QVERIFY(db.getPersistent()->saveToFile(dir.filePath("persistent.json"), true));
                    QVERIFY(db.getRealtime()->saveToFile(dir.filePath("realtime.json"), true));
                }
                QFile input(dir.filePath("input.jsonl"));
                QVERIFY(input.open(QIODevice::WriteOnly));
                for (int i = 0; i < changes; ++i) {
                    QJsonObject const packet = realtime ? realtimePacket(w.keys[i], w.values[i])
                                                        : persistentPacket(w.keys[i], w.values[i]);
                    input.write(QJsonDocument(packet).toJson(QJsonDocument::Compact) + '\n');
                }
                input.close();
                QFile empty(dir.filePath("empty.jsonl"));
                QVERIFY(empty.open(QIODevice::WriteOnly));
                empty.close();

                QString const signal = realtime ? QStringLiteral("onRealtimeChangeItem")
                                                : QStringLiteral("onPersistentChangeItem");
                QString const journal = realtime ? QStringLiteral("realtime.json.journal")
                                                 : QStringLiteral("persistent.json.journal");
                run_t const idle = runHost(dir.path(), empty.fileName(), signal, journal);
                run_t const run = runHost(dir.path(), input.fileName(), signal, journal);
                QVERIFY2(run.changes > 0, "the host raised no change");
                // Too short a run to tell from the start and end alone: more changes are needed.
                double const perSecond =
                    run.seconds > 1.5 * idle.seconds ? double(changes) / (run.seconds - idle.seconds) : 0.0;
                char const* road = realtime ? "realtime" : "persistent";
                std::printf("%8d  %-10s  %14.0f  %10.2f  %10.2f  %14lld  (%d change lines)\n", items, road,
                            perSecond, run.seconds, idle.seconds, static_cast<long long>(run.largestJournal),
                            run.changes);
                figures.append(QJsonObject{{"items", items},
                                           {"road", QString::fromLatin1(road)},
                                           {"changes", changes},
                                           {"change_lines", run.changes},
                                           {"largest_journal_bytes", run.largestJournal},
                                           {"per_s", perSecond}});
            }
        }
        QFile out(QCoreApplication::applicationDirPath() + QStringLiteral("/host_road.json"));
        QVERIFY(out.open(QIODevice::WriteOnly | QIODevice::Truncate));
        out.write(QJsonDocument(QJsonObject{{"host", figures}}).toJson(QJsonDocument::Indented));
        std::printf("figures: %s\n", qPrintable(out.fileName()));
    }
};

QTEST_GUILESS_MAIN(bench_host_road)
#include "bench_host_road.moc"
