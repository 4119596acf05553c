// The cost of one group commit of dbhost's journal: a batch of item changes
// written and synced (fdatasync), on the disk of the data folder and on
// tmpfs. BENCH_JOURNAL_DISK and BENCH_JOURNAL_TMPFS name the folders
// (/tmp and /dev/shm by default).

#include <QElapsedTimer>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <cstdio>
#include <vector>

#include "host_journal_t.h"

class bench_journal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void groupCommit()
    {
        QJsonObject const payload{{"id_driver", "drivers/driver_knx/1"}, {"name", "Hall light"}, {"description", ""},
                                  {"enabled", true}, {"status", "1/1/2"}, {"command", "1/1/1"}, {"feedback", "1/1/3"},
                                  {"type", "dtp_1"}, {"typeformat", ""}, {"interpreter", ""}, {"tracking", false},
                                  {"flags", 0}};
        std::printf("\n%-8s %8s %12s %12s %14s\n", "where", "batch", "commits", "median us", "us per change");
        QList<QPair<QString, QString>> const places{
            {"disk", qEnvironmentVariableIsSet("BENCH_JOURNAL_DISK") ? qEnvironmentVariable("BENCH_JOURNAL_DISK")
                                                                     : QStringLiteral("/tmp")},
            {"tmpfs", qEnvironmentVariableIsSet("BENCH_JOURNAL_TMPFS") ? qEnvironmentVariable("BENCH_JOURNAL_TMPFS")
                                                                       : QStringLiteral("/dev/shm")}};
        for (auto const& [where, base] : places) {
            for (int batch : {1, 16, 256, 4096}) {
                QTemporaryDir dir(base + QStringLiteral("/bench_journal-XXXXXX"));
                QVERIFY(dir.isValid());
                host_journal_t journal(dir.filePath("persistent.json.journal"));
                QList<QJsonObject> entries;
                QStringList notes;
                QVERIFY(journal.open(QByteArray(), entries, notes));
                int const commits = batch >= 256 ? 50 : 300;
                std::vector<qint64> times;
                for (int c = 0; c < commits; ++c) {
                    for (int i = 0; i < batch; ++i)
                        journal.append({{"topic", QStringLiteral("status/DB/persistent/items/objects_list/K%1").arg(i)},
                                        {"payload", payload}});
                    QElapsedTimer clock;
                    clock.start();
                    QString error;
                    QVERIFY2(journal.commit(error), qPrintable(error));
                    times.push_back(clock.nsecsElapsed());
                }
                std::sort(times.begin(), times.end());
                double const median = double(times[times.size() / 2]) / 1000.0;
                std::printf("%-8s %8d %12d %12.1f %14.2f\n", qPrintable(where), batch, commits, median,
                            median / batch);
            }
        }
    }
};

QTEST_GUILESS_MAIN(bench_journal)
#include "bench_journal.moc"
