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
//
// HOST_ROAD_FEED=1 also measures what the inspector's change feed costs: the
// same input through a pipe, once into a host without --http and once into a
// host with --http and one reader of its feed subscribed, alternately
// (HOST_ROAD_FEED_ROUNDS, 3, rounds each; the best of each kept), timed from
// the first line written to the exit. Writes host_road_feed.json.

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QWebSocket>
#include <QtTest>

#include <cstdio>
#include <sys/resource.h>

#include "database/database_t.h"
#include "database/definition/service_t.h"
#include "database/definition/type_brand_t.h"
#include "platform/logs/classlogs.h"
#include "live_road_workload.h"

using namespace live_road;

namespace {

struct run_t {
    double seconds = 0;
    /// The host's processor time (user and system), all its threads.
    double cpuSeconds = 0;
    int changes = 0;
    qint64 largestJournal = 0;
};

/// Processor time of the children that have ended, in seconds.
double childrenCpu()
{
    rusage usage{};
    ::getrusage(RUSAGE_CHILDREN, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec)
        + double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

QString dbhostPath()
{
    return qEnvironmentVariableIsSet("HOST_ROAD_DBHOST") ? qEnvironmentVariable("HOST_ROAD_DBHOST")
                                                         : QStringLiteral(DBHOST);
}

/// dbhost on folder with input as its standard input; its change lines of signal counted.
run_t runHost(QString const& folder, QString const& input, QString const& signal, QString const& journal)
{
    double const cpuBefore = childrenCpu();
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
    run.cpuSeconds = childrenCpu() - cpuBefore;
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

struct fed_run_t {
    double seconds = 0;
    /// The host's processor time (user and system), less sensitive than the
    /// wall clock to what else runs on the machine.
    double cpuSeconds = 0;
    qint64 changeLines = 0;
    qint64 fedLines = 0;
};

/// dbhost fed through a pipe, timed from the first line to its exit; with
/// feed, one reader of the inspector's feed is subscribed before the first line.
fed_run_t runFedHost(QString const& folder, QString const& input, bool feed)
{
    fed_run_t run;
    QFile in(input);
    if (!in.open(QIODevice::ReadOnly))
        return run;
    QByteArray const lines = in.readAll();
    double const cpuBefore = childrenCpu();
    QProcess host;
    host.setStandardOutputFile(folder + QStringLiteral("/out.jsonl"));
    QStringList arguments{QStringLiteral("--data"), folder, QStringLiteral("--role"), QStringLiteral("client"),
                          QStringLiteral("--log-level"), QStringLiteral("1")};
    if (feed)
        arguments << QStringLiteral("--http") << QStringLiteral("127.0.0.1:0");
    host.start(QStringLiteral(DBHOST), arguments);
    if (!host.waitForStarted(10000))
        return run;
    QWebSocket reader;
    QObject::connect(&reader, &QWebSocket::binaryMessageReceived,
                     [&run](QByteArray const& message) { run.fedLines += message.count('\n'); });
    if (feed) {
        QString errors;
        static QRegularExpression const address(QStringLiteral("inspector at (http://[^ ]+/)"));
        QRegularExpressionMatch match;
        host.setReadChannel(QProcess::StandardError);
        while (!(match = address.match(errors)).hasMatch() && host.waitForReadyRead(10000))
            errors += QString::fromUtf8(host.readAllStandardError());
        if (!match.hasMatch()) {
            std::printf("dbhost did not open its inspector: %s\n", qPrintable(errors));
            return run;
        }
        QSignalSpy connected(&reader, &QWebSocket::connected);
        reader.open(QUrl(match.captured(1).replace(QStringLiteral("http:"), QStringLiteral("ws:")) + "feed"));
        if (!connected.wait(10000))
            return run;
    } else {
        // The same pause as the reader's connection: the host has loaded its files.
        QTest::qWait(300);
    }
    QElapsedTimer clock;
    clock.start();
    host.write(lines);
    host.closeWriteChannel();
    QEventLoop loop;
    QObject::connect(&host, &QProcess::finished, &loop, &QEventLoop::quit);
    if (host.state() == QProcess::Running)
        loop.exec();
    run.seconds = double(clock.nsecsElapsed()) / 1e9;
    run.cpuSeconds = childrenCpu() - cpuBefore;
    // What the reader had still on its way when the host left.
    QTest::qWait(200);
    QFile out(folder + QStringLiteral("/out.jsonl"));
    if (out.open(QIODevice::ReadOnly)) {
        while (!out.atEnd())
            run.changeLines += out.readLine().contains("\"event\":\"change\"") ? 1 : 0;
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
        std::printf("\n%8s  %-10s  %14s  %10s  %10s  %12s  %14s\n", "items", "road", "host per s", "run s",
                    "start s", "us cpu/chg", "journal max");
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
                // Processor time per change, the start and end of the idle run set off.
                double const cpuUs = (run.cpuSeconds - idle.cpuSeconds) * 1e6 / changes;
                std::printf("%8d  %-10s  %14.0f  %10.2f  %10.2f  %12.1f  %14lld  (%d change lines)\n", items, road,
                            perSecond, run.seconds, idle.seconds, cpuUs, static_cast<long long>(run.largestJournal),
                            run.changes);
                figures.append(QJsonObject{{"items", items},
                                           {"road", QString::fromLatin1(road)},
                                           {"changes", changes},
                                           {"change_lines", run.changes},
                                           {"largest_journal_bytes", run.largestJournal},
                                           {"cpu_us_per_change", cpuUs},
                                           {"per_s", perSecond}});
            }
        }
        QFile out(QCoreApplication::applicationDirPath() + QStringLiteral("/host_road.json"));
        QVERIFY(out.open(QIODevice::WriteOnly | QIODevice::Truncate));
        out.write(QJsonDocument(QJsonObject{{"host", figures}}).toJson(QJsonDocument::Indented));
        std::printf("figures: %s\n", qPrintable(out.fileName()));
    }

    void feedCost()
    {
        if (!qEnvironmentVariableIsSet("HOST_ROAD_FEED") || qEnvironmentVariable("HOST_ROAD_FEED") == "0")
            QSKIP("HOST_ROAD_FEED=1 measures the cost of the inspector's feed");
        int const changes = qEnvironmentVariableIsSet("HOST_ROAD_CHANGES")
            ? qEnvironmentVariableIntValue("HOST_ROAD_CHANGES")
            : 60000;
        int const rounds = qEnvironmentVariableIsSet("HOST_ROAD_FEED_ROUNDS")
            ? qEnvironmentVariableIntValue("HOST_ROAD_FEED_ROUNDS")
            : 3;
        QJsonArray figures;
        std::printf("\n%8s  %-10s  %12s  %12s  %6s  %12s  %12s  %6s  %12s\n", "items", "road", "plain per s",
                    "feed per s", "ratio", "plain us cpu", "feed us cpu", "ratio", "fed lines");
        for (int items : {1000, 10000}) {
            workload_t const w = workload(items, changes);
            for (bool const realtime : {true, false}) {
                QTemporaryDir dir;
                QVERIFY(dir.isValid());
                QString const folder = dir.filePath(QStringLiteral("data"));
                QVERIFY(QDir().mkpath(folder));
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
                // Every run starts from the same files.
                auto const reset = [&] {
                    for (QString const& name : QDir(folder).entryList(QDir::Files))
                        QFile::remove(folder + '/' + name);
                    QFile::copy(dir.filePath("persistent.json"), folder + QStringLiteral("/persistent.json"));
                    QFile::copy(dir.filePath("realtime.json"), folder + QStringLiteral("/realtime.json"));
                };
                double bestPlain = 0;
                double bestFed = 0;
                double plainCpu = 1e9;
                double fedCpu = 1e9;
                fed_run_t fedRun;
                for (int round = 0; round < rounds; ++round) {
                    reset();
                    fed_run_t const plain = runFedHost(folder, input.fileName(), false);
                    reset();
                    fed_run_t const fed = runFedHost(folder, input.fileName(), true);
                    QVERIFY2(plain.seconds > 0 && fed.seconds > 0, "a host run failed");
                    bestPlain = qMax(bestPlain, changes / plain.seconds);
                    plainCpu = qMin(plainCpu, plain.cpuSeconds);
                    fedCpu = qMin(fedCpu, fed.cpuSeconds);
                    if (changes / fed.seconds > bestFed) {
                        bestFed = changes / fed.seconds;
                        fedRun = fed;
                    }
                }
                char const* road = realtime ? "realtime" : "persistent";
                // Processor time per change, in microseconds: the whole run, load and save included.
                double const plainUs = plainCpu * 1e6 / changes;
                double const fedUs = fedCpu * 1e6 / changes;
                std::printf("%8d  %-10s  %12.0f  %12.0f  %6.3f  %12.1f  %12.1f  %6.3f  %5lld/%5lld\n", items, road,
                            bestPlain, bestFed, bestFed / bestPlain, plainUs, fedUs, fedUs / plainUs,
                            static_cast<long long>(fedRun.fedLines), static_cast<long long>(fedRun.changeLines));
                figures.append(QJsonObject{{"items", items},
                                           {"road", QString::fromLatin1(road)},
                                           {"changes", changes},
                                           {"plain_per_s", bestPlain},
                                           {"feed_per_s", bestFed},
                                           {"ratio", bestFed / bestPlain},
                                           {"plain_cpu_us_per_change", plainUs},
                                           {"feed_cpu_us_per_change", fedUs},
                                           {"change_lines", fedRun.changeLines},
                                           {"fed_lines", fedRun.fedLines}});
            }
        }
        QFile out(QCoreApplication::applicationDirPath() + QStringLiteral("/host_road_feed.json"));
        QVERIFY(out.open(QIODevice::WriteOnly | QIODevice::Truncate));
        out.write(QJsonDocument(QJsonObject{{"feed", figures}}).toJson(QJsonDocument::Indented));
        std::printf("figures: %s\n", qPrintable(out.fileName()));
    }
};

QTEST_GUILESS_MAIN(bench_host_road)
#include "bench_host_road.moc"
