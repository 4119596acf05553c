// The live road side by side with a peer store: status packets of item values
// from update() to the change signal, on the realtime and on the persistent
// road of a client, with 100, 1,000 and 10,000 items; every image rebuild
// the engines make on the way, and at the end the digests and one save. The
// peer (jsonl-db under Node.js, bench/peer) takes the same random changes.
// Also the floor: the two queued hops every packet takes, with no engine
// work at all, against the same peer. Also: loading and saving a 10,000-item persistent file against the bare
// parse and print of its JSON, and the resident memory per item.
//
// Writes the figures to live_road.json beside the executable. Changes per
// size: LIVE_ROAD_CHANGES (100000).

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <cstdio>
#include <vector>

#include "database/database_t.h"
#include "database/definition/service_t.h"
#include "database/definition/type_brand_t.h"
#include "database/persistent/dbs/ps_items_t.h"
#include "database/persistent/objects/ps_object_item_t.h"
#include "database/persistent/persistent_t.h"
#include "database/realtime/dbs/rt_items_t.h"
#include "database/realtime/objects/rt_object_item_t.h"
#include "database/realtime/realtime_t.h"
#include "platform/logs/classlogs.h"
#include "live_road_workload.h"

using namespace live_road;

using database::database_t;
using database::definition::service_t;
using database::definition::type_brand_t;
using database::persistent::ps_handler_topic_t;
using database::persistent::objects::ps_object_item_t;
using database::realtime::rt_handler_topic_t;
using database::realtime::objects::rt_object_item_t;

namespace {

double residentBytes()
{
    // /proc files report no size, so they are read as a stream.
    std::FILE* statm = std::fopen("/proc/self/statm", "r");
    if (!statm)
        return 0;
    long pages = 0;
    long resident = 0;
    int const read = std::fscanf(statm, "%ld %ld", &pages, &resident);
    std::fclose(statm);
    return read == 2 ? double(resident) * 4096.0 : 0;
}

/// Changes per second of one road, from the first update to the save after the last change signal.
template<class Engine, class Handler, class Signal>
double drive(Engine* engine, Handler* handler, Signal signal, std::vector<QJsonObject> const& packets,
             QString const& file)
{
    qsizetype changes = 0;
    auto const connection = QObject::connect(handler, signal, [&changes] { ++changes; });
    QElapsedTimer clock;
    clock.start();
    for (QJsonObject const& packet : packets) {
        engine->update(packet);
        // A host's event loop turns between packets.
        QCoreApplication::processEvents();
    }
    while (changes < qsizetype(packets.size()))
        QCoreApplication::processEvents();
    engine->getHash();
    engine->saveToFile(file, false);
    qint64 const elapsed = clock.nsecsElapsed();
    QObject::disconnect(connection);
    return double(packets.size()) * 1e9 / double(elapsed);
}

struct peer_t {
    double perSecond = 0;
    QString problem;
};

peer_t runPeer(int items, int changes, char const* kind, qint64 checksum, QString const& dir)
{
    peer_t peer;
    QString const node = QStandardPaths::findExecutable(QStringLiteral("node"));
    QString const script = QStringLiteral(PEER_DIR "/live_road.js");
    if (node.isEmpty() || !QFile::exists(QStringLiteral(PEER_DIR "/node_modules/@alcalzone/jsonl-db/package.json"))) {
        peer.problem = QStringLiteral("no peer: ./dev.sh bench installs Node.js and jsonl-db");
        return peer;
    }
    QProcess process;
    process.start(node, {script, QString::number(items), QString::number(changes), QString::fromLatin1(kind),
                         dir + QStringLiteral("/peer.jsonl")});
    if (!process.waitForFinished(600000) || process.exitCode() != 0) {
        peer.problem = QString::fromUtf8(process.readAllStandardError());
        return peer;
    }
    QJsonObject const result = QJsonDocument::fromJson(process.readAllStandardOutput()).object();
    if (result.value("checksum").toInteger() != checksum) {
        peer.problem = QStringLiteral("the peer ran another sequence");
        return peer;
    }
    peer.perSecond = result.value("per_s").toDouble();
    return peer;
}

template<class F>
double medianNs(int runs, F f)
{
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer clock;
        clock.start();
        f();
        times.push_back(double(clock.nsecsElapsed()));
    }
    std::sort(times.begin(), times.end());
    return times.at(times.size() / 2);
}

/// The road a packet must take whatever the engines do: two queued hops
/// carrying a QJsonObject (router to handler, model to engine) and a turn of
/// the host's event loop per packet, with nothing done at either end.
class queued_hop_t : public QObject
{
    Q_OBJECT

Q_SIGNALS:
    void arrived(QJsonObject packet);
    void forwarded(QJsonObject packet);

public Q_SLOTS:
    void forward(QJsonObject packet) { Q_EMIT forwarded(packet); }
};

/// Changes per second of that bare road, the floor under both of ours.
double queuedFloor(std::vector<QJsonObject> const& packets)
{
    queued_hop_t hop;
    QObject sink;
    qsizetype changes = 0;
    QObject::connect(&hop, &queued_hop_t::arrived, &hop, &queued_hop_t::forward, Qt::QueuedConnection);
    QObject::connect(&hop, &queued_hop_t::forwarded, &sink, [&changes] { ++changes; }, Qt::QueuedConnection);
    QElapsedTimer clock;
    clock.start();
    for (QJsonObject const& packet : packets) {
        Q_EMIT hop.arrived(packet);
        QCoreApplication::processEvents();
    }
    while (changes < qsizetype(packets.size()))
        QCoreApplication::processEvents();
    return double(packets.size()) * 1e9 / double(clock.nsecsElapsed());
}

} // namespace

class bench_live_road : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        ::utility::logs::classlogs::getInstance()->setThreshold(::utility::logs::exception);
        std::setvbuf(stdout, nullptr, _IOLBF, 0);
    }

    void liveRoad()
    {
        int const changes = qEnvironmentVariableIsSet("LIVE_ROAD_CHANGES")
            ? qEnvironmentVariableIntValue("LIVE_ROAD_CHANGES")
            : 100000;
        QTemporaryDir dir;
        // Memory first, while the heap holds nothing freed by the runs.
        double perItem = 0;
        {
            auto* db = new database_t(service_t::client, type_brand_t::HALDO);
            double const empty = residentBytes();
            fillPersistent(*db, 10000);
            fillRealtime(*db, 10000);
            db->getPersistent()->getHashList();
            db->getRealtime()->getHashList(true);
            QCoreApplication::processEvents();
            perItem = (residentBytes() - empty) / 10000.0;
            delete db;
        }
        QJsonArray sizes;
        QMap<int, double> realtimeRate;
        QMap<int, double> persistentRate;
        QMap<int, double> floors;
        QString problems;
        std::printf("\n%8s  %-10s  %14s  %14s  %7s\n", "items", "road", "ours per s", "peer per s", "ratio");
        // LIVE_ROAD_SIZES=10000 runs one size, e.g. under a profiler; empty, only the files and memory.
        QList<int> runSizes{100, 1000, 10000};
        if (qEnvironmentVariableIsSet("LIVE_ROAD_SIZES")) {
            runSizes.clear();
            for (QString const& size : qEnvironmentVariable("LIVE_ROAD_SIZES").split(QLatin1Char(','), Qt::SkipEmptyParts))
                runSizes.append(size.toInt());
        }
        for (int items : runSizes) {
            workload_t const w = workload(items, changes);
            std::vector<QJsonObject> realtime;
            std::vector<QJsonObject> persistent;
            for (int i = 0; i < changes; ++i) {
                realtime.push_back(realtimePacket(w.keys[i], w.values[i]));
                persistent.push_back(persistentPacket(w.keys[i], w.values[i]));
            }
            double rt = 0;
            double ps = 0;
            {
                database_t db(service_t::client, type_brand_t::HALDO);
                fillRealtime(db, items);
                rt = drive(db.getRealtime(), db.getRealtime()->getHandlerTopic(),
                           &rt_handler_topic_t::onRealtimeChangeItem, realtime, dir.filePath("realtime.json"));
            }
            {
                database_t db(service_t::client, type_brand_t::HALDO);
                fillPersistent(db, items);
                ps = drive(db.getPersistent(), db.getPersistent()->getHandlerTopic(),
                           &ps_handler_topic_t::onPersistentChangeItem, persistent, dir.filePath("persistent.json"));
            }
            peer_t const peerRt = runPeer(items, changes, "rt", w.checksum, dir.path());
            peer_t const peerPs = runPeer(items, changes, "ps", w.checksum, dir.path());
            if (!peerRt.problem.isEmpty())
                problems = peerRt.problem;
            if (!peerPs.problem.isEmpty())
                problems = peerPs.problem;
            auto const ratio = [](double ours, double peer) { return peer > 0 ? ours / peer : 0.0; };
            std::printf("%8d  %-10s  %14.0f  %14.0f  %7.2f\n", items, "realtime", rt, peerRt.perSecond,
                        ratio(rt, peerRt.perSecond));
            std::printf("%8d  %-10s  %14.0f  %14.0f  %7.2f\n", items, "persistent", ps, peerPs.perSecond,
                        ratio(ps, peerPs.perSecond));
            // Against the peer, what no engine work can go below.
            double const bare = queuedFloor(realtime);
            std::printf("%8d  %-10s  %14.0f  %14.0f  %7.2f\n", items, "floor", bare, peerRt.perSecond,
                        ratio(bare, peerRt.perSecond));
            floors.insert(items, bare);
            realtimeRate.insert(items, rt);
            persistentRate.insert(items, ps);
            // The slower road stands for the size, against the peer on that road's values.
            bool const realtimeSlower = rt <= ps;
            double const ours = realtimeSlower ? rt : ps;
            double const peer = realtimeSlower ? peerRt.perSecond : peerPs.perSecond;
            sizes.append(QJsonObject{{"items", items},
                                     {"ours_per_s", ours},
                                     {"peer_per_s", peer},
                                     {"ratio", ratio(ours, peer)}});
        }
        if (!problems.isEmpty())
            std::printf("peer: %s\n", qPrintable(problems.trimmed()));

        double const flatRealtime = realtimeRate.value(10000) / realtimeRate.value(100);
        double const flatPersistent = persistentRate.value(10000) / persistentRate.value(100);

        // Files and memory with 10,000 items.
        double loadRatio = 0;
        double saveRatio = 0;
        {
            auto* db = new database_t(service_t::client, type_brand_t::HALDO);
            fillPersistent(*db, 10000);
            QString const path = dir.filePath("load.json");
            QVERIFY(db->getPersistent()->saveToFile(path, true));
            QFile file(path);
            QVERIFY(file.open(QIODevice::ReadOnly));
            QByteArray const bytes = file.readAll();
            double const parse = medianNs(5, [&] {
                QFile f(path);
                f.open(QIODevice::ReadOnly);
                QJsonDocument const document = QJsonDocument::fromJson(f.readAll());
                QVERIFY(document.isObject());
            });
            database_t loader(service_t::client, type_brand_t::HALDO);
            double const load = medianNs(5, [&] {
                int result = 0;
                QVERIFY(!loader.getPersistent()->loadFromFile(path, result).isEmpty());
            });
            QCOMPARE(loader.getPersistent()->getData()->getItems()->getObjects().size(), 10000);
            QJsonObject const image = db->getPersistent()->getJdata();
            double const print = medianNs(5, [&] {
                QFile f(dir.filePath("print.json"));
                f.open(QIODevice::WriteOnly | QIODevice::Truncate);
                f.write(QJsonDocument(image).toJson(QJsonDocument::Indented));
            });
            double const save = medianNs(5, [&] { QVERIFY(db->getPersistent()->saveToFile(path, false)); });
            loadRatio = load / parse;
            saveRatio = save / print;
            std::printf("\nfiles, 10000 items (%.1f MB): load %.1f ms, parse %.1f ms, load/parse %.2f; "
                        "save %.1f ms, print %.1f ms, save/print %.2f\n",
                        double(bytes.size()) / 1e6, load / 1e6, parse / 1e6, loadRatio, save / 1e6, print / 1e6,
                        saveRatio);
            delete db;
        }
        std::printf("flat (10000 / 100 items): realtime %.2f, persistent %.2f\n", flatRealtime, flatPersistent);
        std::printf("memory: %.0f bytes resident per item (10000 items in both databases, images and digests included)\n",
                    perItem);

        QJsonObject const figures{{"sizes", sizes},
                                  {"flat_realtime", flatRealtime},
                                  {"flat_persistent", flatPersistent},
                                  {"load_ratio", loadRatio},
                                  {"save_ratio", saveRatio},
                                  {"floor_per_s", floors.isEmpty() ? 0.0 : floors.last()}};
        QFile out(QCoreApplication::applicationDirPath() + QStringLiteral("/live_road.json"));
        QVERIFY(out.open(QIODevice::WriteOnly | QIODevice::Truncate));
        out.write(QJsonDocument(figures).toJson(QJsonDocument::Indented));
        std::printf("figures: %s\n", qPrintable(out.fileName()));
    }
};

QTEST_GUILESS_MAIN(bench_live_road)
#include "bench_live_road.moc"
