// Installations and brokers in other numbers than one to one: two
// installations apart on one broker by their topic prefixes, and one
// installation over two brokers joined by a bridge. Real processes on
// loopback, with the configuration of examples/mqtt.

#include <QDir>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <map>
#include <memory>

#include "support/dbhost_packets.h"
#include "support/dbhost_process.h"
#include "support/mqtt_broker.h"

namespace {

QStringList const databases{"persistent", "realtime", "presencesimulation"};

/// The ACL of installations sharing a broker under their prefixes, as the
/// README gives it: each has a server, a driver and a client user, the last
/// named as the prefix. mosquitto applies a pattern to every user, so only
/// %u keeps a client's hashes and answers within its own installation.
QByteArray sitesAcl(QStringList const& sites)
{
    QByteArray acl;
    for (QString const& site : sites) {
        QByteArray const p = site.toUtf8();
        acl += "user " + p + "-server\n"
               "topic read " + p + "/request/#\n"
               "topic write " + p + "/status/#\n"
               "topic read " + p + "/status/DB/realtime/#\n"
               "topic read " + p + "/dbhost/sync/hashes/+\n"
               "topic write " + p + "/dbhost/sync/sections/+\n"
               "topic write " + p + "/dbhost/sync/applied/+\n"
               "topic readwrite " + p + "/dbhost/sync/server\n\n"
               "user " + p + "-driver\n"
               "topic write " + p + "/status/DB/realtime/#\n"
               "topic read " + p + "/request/DB/realtime/#\n\n"
               "user " + p + "\n"
               "topic write " + p + "/request/#\n"
               "topic read " + p + "/status/#\n"
               "topic read " + p + "/dbhost/sync/server\n\n";
    }
    return acl + "pattern write %u/dbhost/sync/hashes/%c\n"
                 "pattern read %u/dbhost/sync/sections/%c\n"
                 "pattern read %u/dbhost/sync/applied/%c\n";
}

QStringList sitesUsers(QStringList const& sites)
{
    QStringList users;
    for (QString const& site : sites)
        users << site + "-server" << site + "-driver" << site;
    return users;
}




/// One installation: a server and clients by client id, each a real process
/// on a broker of its own choosing, all under the same topic prefix.
struct site_t {
    explicit site_t(QString const& _root, QString const& _prefix = QString())
        : root(_root)
        , prefix(_prefix)
    {
    }

    QString root;
    QString prefix;
    std::unique_ptr<dbhost_process_t> server;
    std::map<QString, std::unique_ptr<dbhost_process_t>> clients;

    QStringList prefixArguments() const
    {
        return prefix.isEmpty() ? QStringList() : QStringList{"--mqtt-prefix", prefix};
    }

    void startServer(mqtt_broker_t const& broker, QString const& user)
    {
        server = std::make_unique<dbhost_process_t>(root + "/server");
        server->start(QStringList{"--role", "server"} + prefixArguments() + broker.hostArguments(user));
    }

    /// Starts (or starts again) a client and waits until it has compared its hashes.
    bool startClient(QString const& id, mqtt_broker_t const& broker, QString const& user)
    {
        auto& client = clients[id];
        client = std::make_unique<dbhost_process_t>(root + "/" + id);
        client->start(QStringList{"--role", "client", "--mqtt-client-id", id} + prefixArguments()
                      + broker.hostArguments(user));
        return QTest::qWaitFor([&] { return client->errors.contains("in step with the server"); }, 30000);
    }

    dbhost_process_t& client(QString const& id) { return *clients.at(id); }

    QList<dbhost_process_t*> hosts() const
    {
        QList<dbhost_process_t*> all;
        if (server)
            all.append(server.get());
        for (auto const& [id, client] : clients)
            all.append(client.get());
        return all;
    }

    /// Every host has seen a change of this signal and key.
    bool allSaw(QString const& signal, QString const& key, int ms = 30000) const
    {
        return QTest::qWaitFor(
            [&] {
                for (dbhost_process_t* host : hosts()) {
                    if (host->changes(signal, key) == 0)
                        return false;
                }
                return true;
            },
            ms);
    }

    bool allHoldLiveValue(QString const& key, QString const& value, int ms = 30000) const
    {
        return QTest::qWaitFor(
            [&] {
                for (dbhost_process_t* host : hosts()) {
                    if (liveValue(*host, key) != value)
                        return false;
                }
                return true;
            },
            ms);
    }

    /// Waits until no host has said anything for a while.
    bool waitQuiet(int quietMs, int limitMs) const
    {
        QElapsedTimer limit;
        limit.start();
        QElapsedTimer quiet;
        quiet.start();
        qsizetype seen = -1;
        while (limit.elapsed() < limitMs) {
            QTest::qWait(250);
            qsizetype count = 0;
            for (dbhost_process_t* host : hosts())
                count += host->lines.size() + host->errors.size();
            if (count != seen) {
                seen = count;
                quiet.restart();
            } else if (quiet.elapsed() >= quietMs) {
                return true;
            }
        }
        return false;
    }

    bool terminateAll()
    {
        bool ok = true;
        for (dbhost_process_t* host : hosts())
            ok = host->terminate() && ok;
        return ok;
    }

    /// The saved sections of the clients that differ from the server's, as "id/database/section".
    QStringList differences() const
    {
        QStringList found;
        for (QString const& database : databases) {
            QMap<QString, QString> const reference =
                dbhost_process_t::sectionHashes(server->folder() + "/" + database + ".json");
            for (auto const& [id, client] : clients) {
                QMap<QString, QString> const theirs =
                    dbhost_process_t::sectionHashes(client->folder() + "/" + database + ".json");
                QStringList sections = reference.keys() + theirs.keys();
                sections.removeDuplicates();
                for (QString const& section : std::as_const(sections)) {
                    if (reference.isEmpty() || reference.value(section) != theirs.value(section))
                        found << id + "/" + database + "/" + section;
                }
            }
        }
        return found;
    }
};

/// The lines a mosquitto_sub has printed so far.
QStringList readLines(QProcess& tool, QString& pending)
{
    pending += QString::fromUtf8(tool.readAllStandardOutput());
    QStringList lines = pending.split('\n');
    pending = lines.takeLast();
    return lines;
}

} // namespace

class tst_dbhost_sites : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        for (QString const tool : {"mosquitto", "mosquitto_passwd", "mosquitto_pub", "mosquitto_sub"}) {
            if (mqtt_broker_t::executable(tool).isEmpty())
                QSKIP(qPrintable(tool + " is missing: ./dev.sh installs it"));
        }
    }

    void prefixedInstallationsOnOneBrokerKeepApart()
    {
        QTemporaryDir dir;
        QStringList const names{"north", "south"};
        QDir(dir.path()).mkpath("broker");
        mqtt_broker_t broker(dir.filePath("broker"), false);
        broker.setAccess(sitesUsers(names), sitesAcl(names));
        QString why;
        QVERIFY2(broker.start(why), qPrintable(why));
        site_t north(dir.filePath("north"), "north");
        site_t south(dir.filePath("south"), "south");
        // Both servers with their default client ids, which the prefixes tell apart.
        north.startServer(broker, "north-server");
        south.startServer(broker, "south-server");
        QVERIFY2(north.startClient("hall", broker, "north"), qPrintable(north.client("hall").errors));
        QVERIFY2(south.startClient("office", broker, "south"), qPrintable(south.client("office").errors));

        // What the south's client user may read: its own installation only.
        mqtt_broker_t::subscriber_t const reader = broker.subscribe("south", "#");
        QString pending;
        QStringList read;
        QVERIFY(QTest::qWaitFor(
            [&] {
                read += readLines(*reader, pending);
                return !read.filter(QRegularExpression("^south/dbhost/sync/server ")).isEmpty();
            },
            10000));

        north.client("hall").send(itemLine("N1", "Lamp"));
        south.client("office").send(itemLine("S1", "Fan"));
        QVERIFY(north.allSaw("onPersistentChangeItem", "N1"));
        QVERIFY(south.allSaw("onPersistentChangeItem", "S1"));
        QVERIFY(broker.publish("north-driver", "north/status/DB/realtime/items/objects_list/N1/value", "\"on\""));
        QVERIFY(north.allHoldLiveValue("N1", "on"));

        // A client coming back compares its hashes with its own server alone:
        // the other one, whose items differ, neither hears of them nor answers.
        QVERIFY(north.client("hall").terminate());
        QVERIFY(north.startClient("hall", broker, "north"));
        QVERIFY2(!north.client("hall").errors.contains("persistent/items"), qPrintable(north.client("hall").errors));
        QVERIFY(!south.server->errors.contains("hashes of hall"));

        // The north's server leaves: only its own client hears of it.
        QVERIFY(north.server->terminate());
        QVERIFY(QTest::qWaitFor([&] { return north.client("hall").errors.contains("the server is away"); }, 20000));
        south.client("office").send(itemLine("S2", "Heater"));
        QVERIFY(south.allSaw("onPersistentChangeItem", "S2"));
        QVERIFY2(!south.client("office").errors.contains("the server is away"),
                 qPrintable(south.client("office").errors));

        for (dbhost_process_t* host : north.hosts()) {
            QCOMPARE(host->changes("onPersistentChangeItem", "S1"), 0);
            QCOMPARE(host->changes("onPersistentChangeItem", "S2"), 0);
        }
        for (dbhost_process_t* host : south.hosts()) {
            QCOMPARE(host->changes("onPersistentChangeItem", "N1"), 0);
            QCOMPARE(liveValue(*host, "N1"), QString());
        }
        for (dbhost_process_t* server : {north.server.get(), south.server.get()})
            QVERIFY2(!server->errors.contains("lost the broker"), qPrintable(server->errors));

        // The south's last status closes what the reader was given.
        QVERIFY(QTest::qWaitFor(
            [&] {
                read += readLines(*reader, pending);
                return !read.filter(QRegularExpression("^south/status/DB/persistent/items/objects_list/S2 ")).isEmpty();
            },
            10000));
        QCOMPARE(read.filter(QRegularExpression("^(?!south/)")), QStringList());

        QVERIFY(north.terminateAll());
        QVERIFY(south.terminateAll());
        QCOMPARE(north.differences(), QStringList());
        QCOMPARE(south.differences(), QStringList());
        QCOMPARE(itemKeys(*north.server), QStringList{"N1"});
        QCOMPARE(itemKeys(*south.server), (QStringList{"S1", "S2"}));
    }

    void userOfAnotherInstallationReachesNothing_data()
    {
        QTest::addColumn<QString>("user");
        QTest::addColumn<QString>("topic");
        QTest::addColumn<QByteArray>("body");
        QByteArray const item = QJsonDocument(itemPayload("forged")).toJson(QJsonDocument::Compact);
        QTest::newRow("client's request") << "south" << "north/request/DB/persistent/items/objects_list/F1" << item;
        QTest::newRow("server's status") << "south-server" << "north/status/DB/persistent/items/objects_list/F1"
                                         << item;
        QTest::newRow("driver's live value") << "south-driver" << "north/status/DB/realtime/items/objects_list/L1/value"
                                             << QByteArray("\"forged\"");
        QTest::newRow("server said away") << "south-server" << "north/dbhost/sync/server"
                                          << QByteArray(R"({"online":false})");
        QTest::newRow("client's hashes") << "south" << "north/dbhost/sync/hashes/intruder"
                                         << QByteArray(R"({"persistent":{"items":"0"}})");
        QTest::newRow("answer to a client") << "south-server" << "north/dbhost/sync/sections/hall"
                                            << QByteArray(R"({"persistent":{"items":{"objects_list":{}}}})");
    }

    void userOfAnotherInstallationReachesNothing()
    {
        QFETCH(QString, user);
        QFETCH(QString, topic);
        QFETCH(QByteArray, body);
        QTemporaryDir dir;
        QStringList const names{"north", "south"};
        QDir(dir.path()).mkpath("broker");
        mqtt_broker_t broker(dir.filePath("broker"), false);
        broker.setAccess(sitesUsers(names), sitesAcl(names));
        QString why;
        QVERIFY2(broker.start(why), qPrintable(why));
        site_t north(dir.filePath("north"), "north");
        north.startServer(broker, "north-server");
        QVERIFY2(north.startClient("hall", broker, "north"), qPrintable(north.client("hall").errors));
        north.client("hall").send(itemLine("L1", "Lamp"));
        QVERIFY(north.allSaw("onPersistentChangeItem", "L1"));
        QVERIFY(north.waitQuiet(500, 20000));

        // The client id is the one the hashes' pattern names.
        QVERIFY(broker.publish(user, topic, body, {"-i", "intruder"}));
        // The next request is the barrier: the forged message came before it, if at all.
        north.client("hall").send(itemLine("B1", "Barrier"));
        QVERIFY(north.allSaw("onPersistentChangeItem", "B1"));
        QVERIFY(north.waitQuiet(500, 20000));

        for (dbhost_process_t* host : north.hosts()) {
            QCOMPARE(host->changes("onPersistentChangeItem", "F1"), 0);
            QCOMPARE(host->changes("onPersistentChangeDatabase"), 0);
            QVERIFY(liveValue(*host, "L1") != QLatin1String("forged"));
        }
        QVERIFY(!north.client("hall").errors.contains("the server is away"));
        QVERIFY(!north.server->errors.contains("hashes of intruder"));
        QVERIFY(north.terminateAll());
        QCOMPARE(itemKeys(north.client("hall")), (QStringList{"B1", "L1"}));
    }

    // A site with a broker in each building, joined by examples/mqtt/bridge.conf:
    // the server on the main broker, clients on both.
    void oneInstallationAcrossBridgedBrokers()
    {
        QTemporaryDir dir;
        bridged_brokers_t brokers(dir.path());
        QString why;
        QVERIFY2(brokers.start(why), qPrintable(why));
        mqtt_broker_t& main = brokers.main;
        mqtt_broker_t& far = brokers.far;

        site_t site(dir.path());
        site.startServer(main, "server");
        QVERIFY2(site.startClient("near", main, "client"), qPrintable(site.client("near").errors));
        for (QString const id : {"far1", "far2"})
            QVERIFY2(site.startClient(id, far, "client"), qPrintable(site.client(id).errors + far.log()));
        dbhost_process_t& near = site.client("near");
        dbhost_process_t& far1 = site.client("far1");

        // Requests from either side, applied once and followed everywhere once.
        far1.send(itemLine("F1", "Far lamp"));
        near.send(itemLine("N1", "Near lamp"));
        QVERIFY(site.allSaw("onPersistentChangeItem", "F1"));
        QVERIFY(site.allSaw("onPersistentChangeItem", "N1"));
        // A driver in the far building: its live value reaches the server and the near client.
        QVERIFY(far.publish("driver", "status/DB/realtime/items/objects_list/F1/value", "\"on\""));
        QVERIFY(site.allHoldLiveValue("F1", "on"));
        QVERIFY(site.waitQuiet(500, 20000));
        for (dbhost_process_t* host : site.hosts()) {
            QCOMPARE(host->changes("onPersistentChangeItem", "F1"), 1);
            QCOMPARE(host->changes("onPersistentChangeItem", "N1"), 1);
        }

        // far2 is away while things change.
        QVERIFY(site.client("far2").terminate());
        near.send(itemLine("N2", "Blind"));
        far1.send(itemLine("F1", "Far lamp, renamed"));
        near.send(packetLine("request/DB/persistent/items/objects_list/N1", QJsonValue::Null));
        QVERIFY(QTest::qWaitFor([&] { return far1.changes("onPersistentChangeItem", "N1") == 2; }, 30000));

        // The bridge is cut: the far broker goes, with the far client's connection.
        far.stop();
        QVERIFY(QTest::qWaitFor([&] { return far1.errors.contains("lost the broker"); }, 20000));
        near.send(itemLine("N3", "Heater"));
        far1.send(itemLine("F2", "Far fan")); // kept by far1 until its broker and the server are back
        QVERIFY(QTest::qWaitFor([&] { return near.changes("onPersistentChangeItem", "N3") == 1; }, 30000));
        QVERIFY2(far.start(why), qPrintable(why));
        QVERIFY(QTest::qWaitFor([&] { return far1.changes("onPersistentChangeItem", "F2") == 1; }, 30000));
        QVERIFY(QTest::qWaitFor([&] { return near.changes("onPersistentChangeItem", "F2") == 1; }, 30000));

        // far2 comes back and catches up by hashes, across the bridge.
        QVERIFY2(site.startClient("far2", far, "client"), qPrintable(site.client("far2").errors));
        dbhost_process_t& far2 = site.client("far2");
        QVERIFY2(far2.errors.contains("took 2 sections: persistent/items, realtime/items"), qPrintable(far2.errors));
        QCOMPARE(far2.changes("onPersistentChangeItem"), 0);

        QVERIFY(site.waitQuiet(3000, 60000));
        QCOMPARE(site.server->changes("onPersistentChangeItem", "F2"), 1);
        for (dbhost_process_t* host : site.hosts())
            QVERIFY2(!host->errors.contains("out of step after quiet"), qPrintable(host->errors));
        QVERIFY(site.terminateAll());
        QCOMPARE(site.differences(), QStringList());
        QCOMPARE(itemKeys(*site.server), (QStringList{"F1", "F2", "N2", "N3"}));
    }
};

QTEST_GUILESS_MAIN(tst_dbhost_sites)
#include "tst_dbhost_sites.moc"
