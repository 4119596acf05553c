// The road between processes against a peer states server: one writer
// process, three followers, all on this machine, with 1,000 and 10,000 items.
// The writer changes random items, the whole item as the value; a change
// counts when all three followers have reported it. A burst gives changes per
// second (from the first write to the last follower's report of the last
// change), then 300 single changes one at a time the latency from the
// writer's request to the last follower's report.
//
// Ours: a broker with the installation's configuration, a server dbhost, a
// writer client dbhost fed request lines on its standard input, three follower
// client dbhosts whose change lines are read. The peer (bench/peer_states,
// installed by `npm ci` there): its states server keeping a jsonl file, a
// writer and three subscribers as Node.js processes, fed the same workload
// from a file by bench/peer_states/cross_road.js. Without Node.js or the
// installed peer, only our side is measured and the peer's figures are null.
//
// The data folders are in a temporary folder on the normal disk, where the
// hosts' journal syncs cost what they cost an installation;
// CROSS_ROAD_TMPDIR=<dir> puts them elsewhere (/dev/shm: the road without the
// disk's syncs). Unless it is set, our latency is measured once more with the
// data folders in /dev/shm, after a short burst: the share of the syncs.
// CROSS_ROAD_BURST sets the burst (3,000 changes, or one per item when there
// are more). DBHOST_BINARY runs another build of dbhost.
// Writes cross_road.json beside the executable, with the processor time per
// change of each process during the burst, and how many cores the machine's
// other processes took meanwhile (on a shared machine, a busy neighbour
// explains odd figures).

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <optional>
#include <vector>

#include <unistd.h>

#include "database/database_t.h"
#include "database/definition/service_t.h"
#include "database/definition/type_brand_t.h"
#include "live_road_workload.h"
#include "platform/logs/classlogs.h"
#include "support/dbhost_packets.h"
#include "support/dbhost_process.h"
#include "support/mqtt_broker.h"

namespace {

constexpr int followers = 3;
constexpr int singles = 300;

QString key(int n)
{
    return QStringLiteral("I%1").arg(n);
}

QJsonObject payloadOf(int n, QString const& name)
{
    return itemPayload(name, 1 + n % 250);
}

QByteArray textOf(int n, QString const& name)
{
    return QJsonDocument(payloadOf(n, name)).toJson(QJsonDocument::Compact);
}

/// The changes of a run: the burst's, then the single ones; each name is unique.
struct change_t {
    int item = 0;
    QString name;
};

struct workload_t {
    int items = 0;
    int burst = 0;
    std::vector<change_t> changes;
};

workload_t makeWorkload(int items, int burst)
{
    workload_t w;
    w.items = items;
    w.burst = burst;
    QRandomGenerator random(items);
    for (int i = 0; i < w.burst + singles; ++i)
        w.changes.push_back({int(random.bounded(items)),
                             i < w.burst ? QStringLiteral("burst %1").arg(i) : QStringLiteral("single %1").arg(i)});
    return w;
}

/// The workload as the peer's script reads it.
bool writePeerWorkload(workload_t const& w, QString const& path)
{
    QJsonArray initial;
    for (int n = 0; n < w.items; ++n)
        initial.append(QString::fromUtf8(textOf(n, QStringLiteral("item %1").arg(n))));
    QJsonArray burst;
    QJsonArray single;
    for (int i = 0; i < int(w.changes.size()); ++i) {
        change_t const& c = w.changes[size_t(i)];
        (i < w.burst ? burst : single).append(QJsonArray{c.item, QString::fromUtf8(textOf(c.item, c.name))});
    }
    QFile file(path);
    return file.open(QIODevice::WriteOnly)
        && file.write(QJsonDocument(QJsonObject{{"items", w.items}, {"initial", initial}, {"burst", burst},
                                                {"singles", single}})
                          .toJson(QJsonDocument::Compact))
        > 0;
}

struct figures_t {
    double perSecond = 0;
    double p50 = 0;
    double p99 = 0;
    QJsonObject cpu; // microseconds of processor time per change of the burst, per process
    double othersCores = 0; // cores that other processes of the machine used during the burst
};

/// User and system time of a process so far, in microseconds.
double cpuMicros(qint64 pid)
{
    QFile stat(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!stat.open(QIODevice::ReadOnly))
        return 0;
    // The fields after the command's name, which may hold spaces: utime and stime are the 12th and 13th.
    QByteArray const line = stat.readAll();
    QList<QByteArray> const fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
    return fields.size() > 12 ? (fields[11].toDouble() + fields[12].toDouble()) * 1e6 / double(::sysconf(_SC_CLK_TCK))
                              : 0;
}

/// Processor time of the whole machine so far, all cores, in microseconds (/proc/stat's first line).
double machineBusyMicros()
{
    QFile stat(QStringLiteral("/proc/stat"));
    if (!stat.open(QIODevice::ReadOnly))
        return 0;
    // user nice system idle iowait irq softirq steal: all but idle and iowait are busy.
    QList<QByteArray> const fields = stat.readLine().simplified().split(' ');
    double busy = 0;
    for (int i = 1; i <= 8 && i < fields.size(); ++i)
        busy += i == 4 || i == 5 ? 0 : fields[i].toDouble();
    return busy * 1e6 / double(::sysconf(_SC_CLK_TCK));
}

double percentile(std::vector<double> values, int p)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() * size_t(p) / 100);
}

/// Our road: broker, server, writer and followers under root; nothing on failure.
std::optional<figures_t> runOurs(workload_t const& w, QString const& root)
{
    // Every host starts from the same items, so that the clients are in step at once.
    {
        database::database_t db(database::definition::service_t::client, database::definition::type_brand_t::HALDO);
        live_road::fillPersistent(db, w.items,
                                  [](int n) { return payloadOf(n, QStringLiteral("item %1").arg(n)); });
        QStringList folders{"server", "writer"};
        for (int f = 0; f < followers; ++f)
            folders << QStringLiteral("follower%1").arg(f);
        for (QString const& folder : std::as_const(folders)) {
            if (!QDir(root).mkpath(folder)
                || !db.getPersistent()->saveToFile(root + '/' + folder + "/persistent.json", true))
                return std::nullopt;
        }
    }
    QDir(root).mkpath("broker");
    mqtt_broker_t broker(root + "/broker", false);
    QString why;
    if (!broker.start(why)) {
        qWarning("%s", qPrintable(why));
        return std::nullopt;
    }
    // Only the followers' item changes are counted: the harness reads no
    // other line, and not the output of the server and the writer at all.
    QByteArray const counted = "\"signal\":\"onPersistentChangeItem\"";
    dbhost_process_t server(root + "/server");
    server.discardOutput();
    server.start(QStringList{"--role", "server"} + broker.hostArguments("server"));
    dbhost_process_t writer(root + "/writer");
    writer.discardOutput();
    writer.start(QStringList{"--role", "client", "--mqtt-client-id", "writer"} + broker.hostArguments("client"));
    std::vector<std::unique_ptr<dbhost_process_t>> readers;
    QList<dbhost_process_t*> watched;
    for (int f = 0; f < followers; ++f) {
        readers.push_back(std::make_unique<dbhost_process_t>(root + QStringLiteral("/follower%1").arg(f)));
        readers.back()->keepLinesWith(counted);
        readers.back()->start(QStringList{"--role", "client", "--mqtt-client-id", QStringLiteral("follower%1").arg(f)}
                              + broker.hostArguments("client"));
        watched << readers.back().get();
    }
    for (dbhost_process_t* host : watched + QList<dbhost_process_t*>{&writer}) {
        if (!QTest::qWaitFor([&] { return host->errors.contains("in step with the server"); }, 60000)) {
            qWarning("a client is not in step: %s", qPrintable(host->errors + server.errors));
            return std::nullopt;
        }
    }
    QTest::qWait(500);

    // Each follower's lines, read once, on the writer's clock.
    QHash<QString, int> index;
    for (int i = 0; i < int(w.changes.size()); ++i)
        index.insert(w.changes[size_t(i)].name, i);
    std::vector<int> counts(w.changes.size(), 0);
    std::vector<qint64> doneAt(w.changes.size(), 0);
    int completed = 0;
    std::vector<qsizetype> next(followers, 0);
    std::vector<qint64> shift;
    for (dbhost_process_t* reader : std::as_const(watched))
        shift.push_back(writer.now() - reader->now());
    auto const collect = [&] {
        for (int f = 0; f < followers; ++f) {
            QList<dbhost_process_t::line_t> const& lines = watched[f]->lines;
            for (; next[size_t(f)] < lines.size(); ++next[size_t(f)]) {
                auto const& line = lines.at(next[size_t(f)]);
                if (line.json.value("signal").toString() != QLatin1String("onPersistentChangeItem"))
                    continue;
                int const i = index.value(
                    line.json.value("packet").toObject().value("payload").toObject().value("name").toString(), -1);
                if (i >= 0 && ++counts[size_t(i)] == followers) {
                    doneAt[size_t(i)] = line.nanoseconds + shift[size_t(f)];
                    ++completed;
                }
            }
        }
    };
    auto const line = [&](int i) {
        change_t const& c = w.changes[size_t(i)];
        return packetLine("request/DB/persistent/items/objects_list/" + key(c.item), payloadOf(c.item, c.name));
    };

    // The harness too: it reads the lines of every host.
    QList<QPair<QString, qint64>> const processes{{"broker", broker.pid()},         {"server", server.pid()},
                                                  {"writer", writer.pid()},         {"follower0", watched[0]->pid()},
                                                  {"follower1", watched[1]->pid()}, {"follower2", watched[2]->pid()},
                                                  {"harness", QCoreApplication::applicationPid()}};
    std::vector<double> cpuBefore;
    for (auto const& p : processes)
        cpuBefore.push_back(cpuMicros(p.second));
    double const machineBefore = machineBusyMicros();
    QByteArray burst;
    for (int i = 0; i < w.burst; ++i)
        burst += line(i) + '\n';
    qint64 const start = writer.now();
    writer.send(burst);
    if (!dbhost_process_t::waitFor(watched, [&] {
            collect();
            return completed == w.burst;
        }, 600000)) {
        qWarning("the burst did not reach the followers: %d of %d", completed, w.burst);
        return std::nullopt;
    }
    figures_t figures;
    double const machine = machineBusyMicros() - machineBefore;
    double followersCpu = 0;
    double ownCpu = 0;
    for (int p = 0; p < processes.size(); ++p) {
        double const us = (cpuMicros(processes[p].second) - cpuBefore[size_t(p)]) / w.burst;
        figures.cpu.insert(processes[p].first, us);
        followersCpu += processes[p].first.startsWith("follower") ? us / followers : 0;
        ownCpu += us * w.burst;
    }
    figures.cpu.insert("followers", followersCpu);
    qint64 const end = *std::max_element(doneAt.begin(), doneAt.begin() + w.burst);
    double const seconds = double(end - start) / 1e9;
    figures.perSecond = w.burst / seconds;
    // On a shared machine the figures mean little when others took the cores meanwhile.
    figures.othersCores = qMax(0.0, (machine - ownCpu) / 1e6 / seconds);

    // Past the idle save and the clients' comparison after a burst.
    QTest::qWait(4000);
    std::vector<double> latencies;
    for (int i = w.burst; i < int(w.changes.size()); ++i) {
        qint64 const sent = writer.now();
        writer.send(line(i));
        if (!dbhost_process_t::waitFor(watched, [&] {
                collect();
                return counts[size_t(i)] == followers;
            }, 20000)) {
            qWarning("single change %d did not reach the followers", i);
            return std::nullopt;
        }
        latencies.push_back(double(doneAt[size_t(i)] - sent) / 1e6);
    }
    figures.p50 = percentile(latencies, 50);
    figures.p99 = percentile(latencies, 99);
    for (dbhost_process_t* host : watched + QList<dbhost_process_t*>{&writer, &server})
        host->terminate();
    return figures;
}

/// The peer's road through its script; nothing when Node.js or the peer is missing.
std::optional<figures_t> runPeer(workload_t const& w, QString const& root)
{
    QString const node = QStandardPaths::findExecutable(QStringLiteral("node"));
    if (node.isEmpty() || !QFile::exists(PEER_DIR "/node_modules/@iobroker/db-states-jsonl/package.json"))
        return std::nullopt;
    QString const workloadFile = root + "/peer_workload.json";
    if (!writePeerWorkload(w, workloadFile))
        return std::nullopt;
    QProcess script;
    script.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    script.start(node, {PEER_DIR "/cross_road.js", workloadFile, root + "/peer"});
    if (!script.waitForFinished(900000) || script.exitCode() != 0) {
        qWarning("the peer's script failed");
        return std::nullopt;
    }
    QList<QByteArray> const out = script.readAllStandardOutput().trimmed().split('\n');
    QJsonObject const result = QJsonDocument::fromJson(out.last()).object();
    if (!result.contains("per_s"))
        return std::nullopt;
    return figures_t{result.value("per_s").toDouble(), result.value("p50_ms").toDouble(),
                     result.value("p99_ms").toDouble(), result.value("cpu_us_per_change").toObject(),
                     result.value("others_cores").toDouble()};
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    std::size_t const n = values.size();
    return n % 2 == 1 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
}

/// Each figure's median over the rounds; the processor times are those of the
/// round whose rate is the median one.
std::optional<figures_t> medianOf(std::vector<figures_t> const& rounds)
{
    if (rounds.empty())
        return std::nullopt;
    auto const each = [&rounds](double figures_t::*field) {
        std::vector<double> values;
        for (figures_t const& f : rounds)
            values.push_back(f.*field);
        return median(values);
    };
    figures_t m;
    m.perSecond = each(&figures_t::perSecond);
    m.p50 = each(&figures_t::p50);
    m.p99 = each(&figures_t::p99);
    m.othersCores = each(&figures_t::othersCores);
    std::vector<figures_t> byRate = rounds;
    std::sort(byRate.begin(), byRate.end(),
              [](figures_t const& a, figures_t const& b) { return a.perSecond < b.perSecond; });
    m.cpu = byRate[byRate.size() / 2].cpu;
    return m;
}

QJsonValue orNull(std::optional<figures_t> const& f, double figures_t::*field)
{
    return f ? QJsonValue((*f).*field) : QJsonValue();
}

} // namespace

class bench_cross_road : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        ::utility::logs::classlogs::getInstance()->setThreshold(::utility::logs::exception);
        if (mqtt_broker_t::executable("mosquitto").isEmpty())
            QSKIP("mosquitto is missing: ./dev.sh installs it");
    }

    void crossRoad_data()
    {
        QTest::addColumn<int>("items");
        QTest::newRow("1000") << 1000;
        QTest::newRow("10000") << 10000;
    }

    void crossRoad()
    {
        QFETCH(int, items);
        workload_t const w = makeWorkload(items, qEnvironmentVariableIsSet("CROSS_ROAD_BURST")
                                                     ? qEnvironmentVariableIntValue("CROSS_ROAD_BURST")
                                                     : std::max(3000, items));
        std::unique_ptr<QTemporaryDir> dir;
        if (qEnvironmentVariableIsSet("CROSS_ROAD_TMPDIR"))
            dir = std::make_unique<QTemporaryDir>(qEnvironmentVariable("CROSS_ROAD_TMPDIR") + "/cross_road-XXXXXX");
        else
            dir = std::make_unique<QTemporaryDir>();
        QVERIFY(dir->isValid());
        // Rounds of ours then the peer, each pair close in time: this machine's
        // speed drifts by a third within minutes, so one pair can mislead.
        int const rounds = std::max(1, qEnvironmentVariableIsSet("CROSS_ROAD_ROUNDS")
                                           ? qEnvironmentVariableIntValue("CROSS_ROAD_ROUNDS")
                                           : 3);
        std::vector<figures_t> oursRounds;
        std::vector<figures_t> peerRounds;
        QJsonArray roundRows;
        for (int r = 0; r < rounds; ++r) {
            QString const root = dir->filePath(QStringLiteral("round%1").arg(r));
            QVERIFY(QDir().mkpath(root));
            std::optional<figures_t> const ours = runOurs(w, root + "/ours");
            QVERIFY2(ours, "our road failed");
            oursRounds.push_back(*ours);
            std::optional<figures_t> const peer = runPeer(w, root);
            if (peer)
                peerRounds.push_back(*peer);
            roundRows.append(QJsonObject{{"ours_per_s", ours->perSecond},
                                         {"peer_per_s", orNull(peer, &figures_t::perSecond)},
                                         {"ratio", peer ? QJsonValue(ours->perSecond / peer->perSecond) : QJsonValue()},
                                         {"ours_p50_ms", ours->p50},
                                         {"peer_p50_ms", orNull(peer, &figures_t::p50)},
                                         {"ours_p99_ms", ours->p99},
                                         {"peer_p99_ms", orNull(peer, &figures_t::p99)}});
        }
        std::optional<figures_t> const ours = medianOf(oursRounds);
        std::optional<figures_t> const peer = medianOf(peerRounds);
        if (!peer)
            std::printf("bench_cross_road: the peer was not measured (Node.js or bench/peer_states/node_modules "
                        "missing: ./dev.sh bench installs them)\n");
        // The ratio of each round, paired in time; the row gives their median and range.
        std::vector<double> ratios;
        for (QJsonValue const& round : std::as_const(roundRows)) {
            if (round.toObject().value("ratio").isDouble())
                ratios.push_back(round.toObject().value("ratio").toDouble());
        }
        std::sort(ratios.begin(), ratios.end());
        // Our latency once more with the data folders in memory: what the
        // journal's syncs add to a change, which the peer's file doesn't wait for.
        std::optional<figures_t> inMemory;
        if (!qEnvironmentVariableIsSet("CROSS_ROAD_TMPDIR") && QFileInfo(QStringLiteral("/dev/shm")).isWritable()) {
            QTemporaryDir shm(QStringLiteral("/dev/shm/cross_road-XXXXXX"));
            if (shm.isValid())
                inMemory = runOurs(makeWorkload(items, 300), shm.filePath("ours"));
        }
        QJsonObject row{{"items", items},
                        {"burst", w.burst},
                        {"singles", singles},
                        {"data_folders", QDir(dir->path()).absolutePath()},
                        {"ours_per_s", ours->perSecond},
                        {"peer_per_s", orNull(peer, &figures_t::perSecond)},
                        {"ratio", ratios.empty() ? QJsonValue() : QJsonValue(median(ratios))},
                        {"ratio_min", ratios.empty() ? QJsonValue() : QJsonValue(ratios.front())},
                        {"ratio_max", ratios.empty() ? QJsonValue() : QJsonValue(ratios.back())},
                        {"rounds", roundRows},
                        {"ours_p50_ms", ours->p50},
                        {"peer_p50_ms", orNull(peer, &figures_t::p50)},
                        {"ours_p99_ms", ours->p99},
                        {"peer_p99_ms", orNull(peer, &figures_t::p99)},
                        {"ours_in_memory_p50_ms", orNull(inMemory, &figures_t::p50)},
                        {"ours_in_memory_p99_ms", orNull(inMemory, &figures_t::p99)},
                        {"ours_cpu_us_per_change", ours->cpu},
                        {"peer_cpu_us_per_change", peer ? QJsonValue(peer->cpu) : QJsonValue()},
                        {"ours_others_cores", ours->othersCores},
                        {"peer_others_cores", orNull(peer, &figures_t::othersCores)}};
        sizes.append(row);
    }

    void cleanupTestCase()
    {
        if (sizes.isEmpty())
            return;
        auto const figure = [](QJsonValue const& v, char const* format) {
            return v.isDouble() ? QString::asprintf(format, v.toDouble()) : QStringLiteral("-");
        };
        std::printf("\nmedians of %lld rounds (ours, then the peer's); ratio: ours/peer changes per second, the "
                    "median of the rounds' and their range; data folders under %s\n",
                    static_cast<long long>(sizes.first().toObject().value("rounds").toArray().size()),
                    qPrintable(sizes.first().toObject().value("data_folders").toString().section('/', 0, -2)));
        std::printf("%8s | %14s | %14s | %6s | %11s | %18s | %18s\n", "items", "ours changes/s", "peer changes/s",
                    "ratio", "range", "p50 ours/peer ms", "p99 ours/peer ms");
        for (QJsonValue const& value : std::as_const(sizes)) {
            QJsonObject const s = value.toObject();
            std::printf("%8d | %14.0f | %14s | %6s | %11s | %8.2f / %-7s | %8.2f / %-7s\n", s.value("items").toInt(),
                        s.value("ours_per_s").toDouble(), qPrintable(figure(s.value("peer_per_s"), "%.0f")),
                        qPrintable(figure(s.value("ratio"), "%.2f")),
                        qPrintable(figure(s.value("ratio_min"), "%.2f") + QLatin1Char('-')
                                   + figure(s.value("ratio_max"), "%.2f")),
                        s.value("ours_p50_ms").toDouble(), qPrintable(figure(s.value("peer_p50_ms"), "%.2f")),
                        s.value("ours_p99_ms").toDouble(), qPrintable(figure(s.value("peer_p99_ms"), "%.2f")));
        }
        std::printf("our latency with the data folders in memory, no syncs to wait for (p50/p99 ms):");
        for (QJsonValue const& value : std::as_const(sizes))
            std::printf(" %s", qPrintable(figure(value.toObject().value("ours_in_memory_p50_ms"), "%.2f") + '/'
                                          + figure(value.toObject().value("ours_in_memory_p99_ms"), "%.2f")));
        std::printf("\n");
        std::printf("cores other processes used during the bursts (ours/peer):");
        for (QJsonValue const& value : std::as_const(sizes))
            std::printf(" %s", qPrintable(figure(value.toObject().value("ours_others_cores"), "%.2f") + '/'
                                          + figure(value.toObject().value("peer_others_cores"), "%.2f")));
        std::printf("\n");
        QFile out(QCoreApplication::applicationDirPath() + QStringLiteral("/cross_road.json"));
        QVERIFY(out.open(QIODevice::WriteOnly | QIODevice::Truncate));
        out.write(QJsonDocument(QJsonObject{{"sizes", sizes}}).toJson(QJsonDocument::Indented));
        std::printf("figures: %s\n", qPrintable(out.fileName()));
    }

private:
    QJsonArray sizes;
};

QTEST_GUILESS_MAIN(bench_cross_road)
#include "bench_cross_road.moc"
