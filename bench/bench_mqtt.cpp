// The road of a request between processes: a client's request through the
// broker to the server, applied there, and its status back to the client
// until the client's change signal; with 1,000 items in the database. A
// broker, a server and a client run as real processes on loopback; then the
// same for a client of a second broker bridged to the server's.

#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <utility>
#include <vector>

#include "support/dbhost_packets.h"
#include "support/dbhost_process.h"
#include "support/mqtt_broker.h"

namespace {

constexpr int items = 1000;

QString key(int n)
{
    return QStringLiteral("I%1").arg(n);
}

/// Finds the change of an item to a name in a host's output, reading each line once.
class change_finder_t
{
public:
    explicit change_finder_t(dbhost_process_t const& _host)
        : host(_host)
        , next(_host.lines.size())
    {
    }

    /// The index of the line with the change, or -1 while it hasn't come.
    qsizetype find(QString const& id, QString const& name)
    {
        for (; next < host.lines.size(); ++next) {
            QJsonObject const& line = host.lines.at(next).json;
            if (line.value("signal").toString() == QLatin1String("onPersistentChangeItem")
                && line.value("key").toString() == id
                && line.value("packet").toObject().value("payload").toObject().value("name").toString() == name)
                return next++;
        }
        return -1;
    }

private:
    dbhost_process_t const& host;
    qsizetype next = 0;
};

/// One request at a time from a client, timed until its change signal there.
bool timeOneRequest(dbhost_process_t& client, QString const& id, QString const& name, std::vector<double>& into)
{
    change_finder_t change(client);
    qint64 const sent = client.now();
    client.send(itemLine(id, name));
    qsizetype found = -1;
    if (!client.waitFor([&] { return (found = change.find(id, name)) >= 0; }, 10000))
        return false;
    into.push_back(double(client.lines.at(found).nanoseconds - sent) / 1e6);
    return true;
}

/// Median and 99th percentile, in that order.
std::pair<double, double> spread(std::vector<double> latencies)
{
    std::sort(latencies.begin(), latencies.end());
    return {latencies.at(latencies.size() / 2), latencies.at(latencies.size() * 99 / 100)};
}

} // namespace

class bench_mqtt : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void requestToChangeSignal()
    {
        if (mqtt_broker_t::executable("mosquitto").isEmpty())
            QSKIP("mosquitto is missing: ./dev.sh installs it");
        QTemporaryDir dir;
        QDir(dir.path()).mkpath("broker");
        mqtt_broker_t broker(dir.filePath("broker"), false);
        QString why;
        QVERIFY2(broker.start(why), qPrintable(why));
        dbhost_process_t server(dir.filePath("server"));
        server.start(QStringList{"--role", "server"} + broker.hostArguments("server"));
        dbhost_process_t client(dir.filePath("client"));
        client.start(QStringList{"--role", "client", "--mqtt-client-id", "bench"} + broker.hostArguments("client"));
        QVERIFY2(QTest::qWaitFor([&] { return client.errors.contains("in step with the server"); }, 20000),
                 qPrintable(client.errors + server.errors));

        // The database of the installation: 1,000 items, through the same road.
        for (int n = 0; n < items; ++n)
            client.send(itemLine(key(n), "first"));
        QVERIFY(QTest::qWaitFor([&] { return client.changes("onPersistentChangeItem") >= items; }, 120000));
        QTest::qWait(2500); // the images are rebuilt and saved

        // Sustained: every item changed twice, as fast as the client takes requests.
        change_finder_t burst(client);
        qint64 const start = client.now();
        for (int round = 0; round < 2; ++round) {
            for (int n = 0; n < items; ++n)
                client.send(itemLine(key(n), QStringLiteral("burst %1").arg(round)));
        }
        qsizetype last = -1;
        QVERIFY(client.waitFor([&] { return (last = burst.find(key(items - 1), "burst 1")) >= 0; }, 300000));
        double const seconds = double(client.lines.at(last).nanoseconds - start) / 1e9;
        double const perSecond = 2.0 * items / seconds;
        QTest::qWait(2500);

        // Latency: one request at a time, from the client's request to its change signal.
        std::vector<double> latencies;
        for (int i = 0; i < 500; ++i)
            QVERIFY(timeOneRequest(client, key((i * 7) % items), QStringLiteral("single %1").arg(i), latencies));
        auto const [median, p99] = spread(latencies);

        std::printf("bench_mqtt: %d items; request to change signal: median %.2f ms, 99th percentile %.2f ms "
                    "(%zu requests one at a time)\n",
                    items, median, p99, latencies.size());
        std::printf("bench_mqtt: sustained %.0f requests/s (%d requests in %.2f s, each applied by the server and "
                    "followed by the client)\n",
                    perSecond, 2 * items, seconds);
        QVERIFY(server.terminate());
        QVERIFY(client.terminate());
    }

    // The same road from a client of a second broker bridged to the server's
    // (examples/mqtt/bridge.conf), against a client of the server's broker in
    // the same run, their requests taking turns.
    void requestToChangeSignalAcrossABridge()
    {
        if (mqtt_broker_t::executable("mosquitto").isEmpty())
            QSKIP("mosquitto is missing: ./dev.sh installs it");
        QTemporaryDir dir;
        bridged_brokers_t brokers(dir.path());
        QString why;
        QVERIFY2(brokers.start(why), qPrintable(why));
        mqtt_broker_t& main = brokers.main;
        mqtt_broker_t& far = brokers.far;
        dbhost_process_t server(dir.filePath("server"));
        server.start(QStringList{"--role", "server"} + main.hostArguments("server"));
        dbhost_process_t near(dir.filePath("near"));
        near.start(QStringList{"--role", "client", "--mqtt-client-id", "near"} + main.hostArguments("client"));
        dbhost_process_t remote(dir.filePath("far"));
        remote.start(QStringList{"--role", "client", "--mqtt-client-id", "far"} + far.hostArguments("client"));
        for (dbhost_process_t* client : {&near, &remote})
            QVERIFY2(QTest::qWaitFor([&] { return client->errors.contains("in step with the server"); }, 20000),
                     qPrintable(client->errors + server.errors));

        for (int n = 0; n < items; ++n)
            near.send(itemLine(key(n), "first"));
        QVERIFY(QTest::qWaitFor([&] { return remote.changes("onPersistentChangeItem") >= items; }, 120000));
        QTest::qWait(2500);

        std::vector<double> nearLatencies;
        std::vector<double> farLatencies;
        for (int i = 0; i < 500; ++i) {
            QString const name = QStringLiteral("single %1").arg(i);
            QVERIFY(timeOneRequest(near, key((i * 7) % items), name, nearLatencies));
            QVERIFY(timeOneRequest(remote, key((i * 11 + 3) % items), name, farLatencies));
        }
        auto const [nearMedian, nearP99] = spread(nearLatencies);
        auto const [farMedian, farP99] = spread(farLatencies);
        std::printf("bench_mqtt: %d items; request to change signal, a client of the server's broker: median %.2f ms, "
                    "99th percentile %.2f ms; a client of the bridged broker: median %.2f ms, 99th percentile "
                    "%.2f ms (%zu requests each, taking turns)\n",
                    items, nearMedian, nearP99, farMedian, farP99, farLatencies.size());
        QVERIFY(server.terminate());
        QVERIFY(near.terminate());
        QVERIFY(remote.terminate());
    }
};

QTEST_GUILESS_MAIN(bench_mqtt)
#include "bench_mqtt.moc"
