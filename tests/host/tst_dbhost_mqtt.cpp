#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

#include <map>
#include <memory>
#include <sys/stat.h>

#include "support/dbhost_packets.h"
#include "support/dbhost_process.h"
#include "support/request_maker.h"
#include "support/mqtt_broker.h"

namespace {

QStringList const databases{"persistent", "realtime", "presencesimulation"};




/// A broker, a server and clients named by their client id, each a real process.
struct installation_t {
    QTemporaryDir dir;
    std::unique_ptr<mqtt_broker_t> broker;
    std::unique_ptr<dbhost_process_t> server;
    std::map<QString, std::unique_ptr<dbhost_process_t>> clients;

    bool start(QStringList const& clientIds, bool tls, QString& why)
    {
        QDir(dir.path()).mkpath("broker");
        broker = std::make_unique<mqtt_broker_t>(dir.filePath("broker"), tls);
        if (!broker->start(why))
            return false;
        startServer();
        for (QString const& id : clientIds) {
            if (!startClient(id)) {
                why = id + " did not get in step: " + clients.at(id)->errors;
                return false;
            }
        }
        return true;
    }

    void startServer()
    {
        server = std::make_unique<dbhost_process_t>(dir.filePath("server"));
        server->start(QStringList{"--role", "server"} + broker->hostArguments("server"));
    }

    /// Starts (or starts again) a client on its folder and waits until it has compared its hashes.
    bool startClient(QString const& id)
    {
        auto& client = clients[id];
        client = std::make_unique<dbhost_process_t>(dir.filePath(id));
        client->start(QStringList{"--role", "client", "--mqtt-client-id", id} + broker->hostArguments("client"));
        return QTest::qWaitFor([&] { return client->errors.contains("in step with the server"); }, 20000);
    }

    dbhost_process_t& client(QString const& id) { return *clients.at(id); }

    QList<dbhost_process_t*> hosts()
    {
        QList<dbhost_process_t*> all{server.get()};
        for (auto& [id, client] : clients)
            all.append(client.get());
        return all;
    }

    /// Every host has seen a change of this signal and key.
    bool allSaw(QString const& signal, QString const& key, int ms = 20000)
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

    /// Waits until no host has said anything for a while: every request is applied and followed.
    bool waitQuiet(int quietMs, int limitMs)
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

    /// The section hashes of every saved database that differ from the server's, as "folder/database/section".
    QStringList differences()
    {
        QStringList found;
        for (QString const& database : databases) {
            QMap<QString, QString> const reference =
                dbhost_process_t::sectionHashes(server->folder() + "/" + database + ".json");
            for (auto& [id, client] : clients) {
                QMap<QString, QString> const theirs =
                    dbhost_process_t::sectionHashes(client->folder() + "/" + database + ".json");
                QStringList sections = reference.keys() + theirs.keys();
                sections.removeDuplicates();
                for (QString const& section : std::as_const(sections)) {
                    if (reference.value(section) != theirs.value(section) || reference.isEmpty())
                        found << id + "/" + database + "/" + section;
                }
            }
        }
        return found;
    }
};

} // namespace

class tst_dbhost_mqtt : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        for (QString const tool : {"mosquitto", "mosquitto_passwd", "mosquitto_pub", "openssl"}) {
            if (mqtt_broker_t::executable(tool).isEmpty())
                QSKIP(qPrintable(tool + " is missing: ./dev.sh installs it"));
        }
    }

    void requestTravelsAndEveryProcessFollows_data()
    {
        QTest::addColumn<bool>("tls");
        QTest::newRow("plain") << false;
        QTest::newRow("TLS with client certificates") << true;
    }

    void requestTravelsAndEveryProcessFollows()
    {
        QFETCH(bool, tls);
        installation_t site;
        QString why;
        QVERIFY2(site.start({"a", "b"}, tls, why), qPrintable(why));
        for (dbhost_process_t* host : site.hosts())
            host->checkCompactLines();

        dbhost_process_t& a = site.client("a");
        a.send(itemLine("L1", "Lamp"));
        a.send(packetLine("request/DB/persistent/elements/objects_list/room1",
                      QJsonObject{{"@class", "psoe_room"}, {"name", "Hall"}, {"description", ""},
                                  {"element_list", QJsonArray()}, {"rooms", QJsonArray()}}));
        QVERIFY(site.allSaw("onPersistentChangeItem", "L1"));
        QVERIFY(site.allSaw("onPersistentChangeElement", "room1"));
        // A client applies nothing itself: its request went to the server and back.
        QCOMPARE(a.changes("onPersistentChangeItem", "L1"), 1);

        // A driver's live values reach every process that holds the live
        // database, and their lines are compact JSON however the driver wrote them.
        QVERIFY(site.broker->publish("driver", "status/DB/realtime/items/objects_list/L1",
                                     "{ \"value\": \"off\",\"feedback\":\"1/1/3\" }"));
        QVERIFY(site.broker->publish("driver", "status/DB/realtime/items/objects_list/L1",
                                     "{\"value\":\"x\\u0041\",\"feedback\":\"1/1/3\"}"));
        QVERIFY(site.broker->publish("driver", "status/DB/realtime/items/objects_list/L1/value", "\"on\""));
        QVERIFY(QTest::qWaitFor(
            [&] {
                for (dbhost_process_t* host : site.hosts()) {
                    if (liveValue(*host, "L1") != QLatin1String("on"))
                        return false;
                }
                return true;
            },
            20000));

        for (dbhost_process_t* host : site.hosts())
            QCOMPARE(host->notCompact, 0);

        QVERIFY(site.terminateAll());
        for (QString const& database : databases) {
            QJsonObject const reference = readJson(site.server->folder() + "/" + database + ".json");
            QVERIFY(!reference.isEmpty());
            QCOMPARE(readJson(a.folder() + "/" + database + ".json"), reference);
            QCOMPARE(readJson(site.client("b").folder() + "/" + database + ".json"), reference);
        }
        QCOMPARE(itemKeys(a), QStringList{"L1"});
        // Users' secrets are in these files: only their owner reads them.
        for (dbhost_process_t* host : site.hosts()) {
            for (QString const& database : databases) {
                struct stat status = {};
                QCOMPARE(::stat(QFile::encodeName(host->folder() + "/" + database + ".json").constData(), &status), 0);
                QCOMPARE(status.st_mode & 0777, 0600u);
            }
        }
    }

    void offlineClientCatchesUpByHashesAlone()
    {
        installation_t site;
        QString why;
        QVERIFY2(site.start({"a", "b"}, false, why), qPrintable(why));
        dbhost_process_t& b = site.client("b");
        b.send(itemLine("L1", "Lamp"));
        b.send(itemLine("L2", "Blind"));
        QVERIFY(site.allSaw("onPersistentChangeItem", "L2"));

        QVERIFY(site.client("a").terminate());
        b.send(itemLine("L1", "Hall lamp"));
        b.send(packetLine("request/DB/persistent/items/objects_list/L2", QJsonValue::Null));
        b.send(itemLine("L3", "Fan"));
        QVERIFY(QTest::qWaitFor([&] { return b.changes("onPersistentChangeItem", "L3") == 1; }, 20000));

        // The server went too; while it is away a client's requests wait for it.
        QVERIFY(site.server->terminate());
        QVERIFY(QTest::qWaitFor([&] { return b.errors.contains("the server is away"); }, 20000));
        b.send(itemLine("L4", "Heater"));
        site.startServer();
        QVERIFY(QTest::qWaitFor([&] { return b.changes("onPersistentChangeItem", "L4") == 1; }, 20000));

        QVERIFY(site.startClient("a"));
        dbhost_process_t& a = site.client("a");
        QVERIFY2(a.errors.contains("took 2 sections: persistent/items, realtime/items"), qPrintable(a.errors));
        // By hashes alone: one whole-database status per database, no replay of the changes one by one.
        QVERIFY(QTest::qWaitFor(
            [&] { return a.changes("onPersistentChangeDatabase") == 1 && a.changes("onRealtimeChangeDatabase") == 1; },
            20000));
        QCOMPARE(a.changes("onPersistentChangeItem"), 0);

        // A client in step costs its hashes and nothing more.
        QVERIFY(b.terminate());
        qsizetype const said = site.server->errors.size();
        QVERIFY(site.startClient("b"));
        QVERIFY2(site.client("b").errors.contains("no section differed"), qPrintable(site.client("b").errors));
        QVERIFY(!site.server->errors.mid(said).contains("hashes of b"));
        QTest::qWait(300);
        QVERIFY(site.client("b").lines.isEmpty());

        QVERIFY(site.terminateAll());
        QCOMPARE(site.differences(), QStringList());
        QCOMPARE(itemKeys(a), (QStringList{"L1", "L3", "L4"}));
    }

    void forgedMessageOfAClientChangesNothing_data()
    {
        QTest::addColumn<QString>("topic");
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("status of an item") << "status/DB/persistent/items/objects_list/F1"
                                           << QJsonDocument(itemPayload("forged")).toJson(QJsonDocument::Compact);
        QTest::newRow("live value") << "status/DB/realtime/items/objects_list/L1/value" << QByteArray("\"forged\"");
        QTest::newRow("whole database") << "status/DB/persistent/DB" << QByteArray("{}");
        QTest::newRow("sections for another client") << "dbhost/sync/sections/b"
                                                     << QByteArray(R"({"persistent":{"items":{"objects_list":{}}}})");
        QTest::newRow("server said away") << "dbhost/sync/server" << QByteArray(R"({"online":false})");
    }

    void forgedMessageOfAClientChangesNothing()
    {
        QFETCH(QString, topic);
        QFETCH(QByteArray, body);
        installation_t site;
        QString why;
        QVERIFY2(site.start({"a", "b"}, false, why), qPrintable(why));
        site.client("a").send(itemLine("L1", "Lamp"));
        QVERIFY(site.allSaw("onPersistentChangeItem", "L1"));
        // L1's live twin may still be on its way; count from a quiet point after it.
        QVERIFY(site.allSaw("onRealtimeChangeItem", "L1"));
        QVERIFY(site.waitQuiet(500, 20000));
        int const before = int(site.client("b").lines.size());

        QVERIFY(site.broker->publish("client", topic, body));
        // The next request of a client is the barrier: the forged message came before it, if at all.
        site.client("a").send(itemLine("B1", "Barrier"));
        QVERIFY(site.allSaw("onPersistentChangeItem", "B1"));

        for (dbhost_process_t* host : site.hosts()) {
            QCOMPARE(host->changes("onPersistentChangeItem", "F1"), 0);
            QCOMPARE(host->changes("onPersistentChangeDatabase"), 0);
            QVERIFY(liveValue(*host, "L1") != QLatin1String("forged"));
        }
        // b saw the barrier item and its live twin, nothing else.
        QVERIFY(site.waitQuiet(500, 20000));
        QStringList others;
        auto const& seen = site.client("b").lines;
        for (int i = before; i < seen.size(); ++i) {
            if (seen.at(i).json.value("key").toString() != QLatin1String("B1"))
                others.append(QString::fromUtf8(QJsonDocument(seen.at(i).json).toJson(QJsonDocument::Compact)));
        }
        QVERIFY2(others.isEmpty(), qPrintable(others.join('\n')));
        QVERIFY(seen.size() > before);
    }

    void requestDeliveredTwiceIsAppliedOnce()
    {
        installation_t site;
        QString why;
        QVERIFY2(site.start({"a"}, false, why), qPrintable(why));
        QByteArray const body = QJsonDocument(itemPayload("Lamp")).toJson(QJsonDocument::Compact);
        QString const topic = "request/DB/persistent/items/objects_list/D1";
        // As a client's request goes out again after a reconnection: the same id.
        for (QString const id : {"x:1", "x:1", "x:2"})
            QVERIFY(site.broker->publish("client", topic, body, {"-D", "publish", "user-property", "dbhost-id", id}));
        site.client("a").send(itemLine("B1", "Barrier"));
        QVERIFY(site.allSaw("onPersistentChangeItem", "B1"));
        QCOMPARE(site.server->changes("onPersistentChangeItem", "D1"), 2);
        QCOMPARE(site.client("a").changes("onPersistentChangeItem", "D1"), 2);
    }

    void requestsAreAppliedExactlyOnceThroughServerKills()
    {
        installation_t site;
        QString why;
        QStringList const ids{"w0", "w1", "w2"};
        QVERIFY2(site.start(ids, false, why), qPrintable(why));
        int const serverKills = qMax(20, qEnvironmentVariableIntValue("MQTT_KILL_COUNT"));
        quint32 const seed = QRandomGenerator::global()->generate();
        qInfo("seed %u", seed);
        QRandomGenerator random(seed);

        // Each client adds an item of its own per request and, every tenth,
        // renames its item "last" to the request's number.
        std::map<QString, int> sent;
        std::map<QString, QSet<QString>> accepted;
        // Lines of processes that are gone: a kill replaces their collector.
        QList<dbhost_process_t::line_t> serverLines;
        auto const harvestAccepted = [&](QString const& id) {
            for (auto const& line : site.client(id).lines) {
                if (line.json.value("event").toString() == QLatin1String("request"))
                    accepted[id].insert(line.json.value("packet").toObject().value("topic").toString());
            }
        };
        auto const sendSome = [&] {
            for (QString const& id : ids) {
                if (!site.client(id).running())
                    continue;
                int const n = sent[id]++;
                site.client(id).send(itemLine(id + "n" + QString::number(n), QString::number(n)));
                if (n % 10 == 0)
                    site.client(id).send(itemLine(id + "last", QString::number(n)));
            }
        };
        QTimer stream;
        QObject::connect(&stream, &QTimer::timeout, sendSome);
        stream.start(20);

        for (int kill = 0; kill < serverKills; ++kill) {
            QTest::qWait(int(random.bounded(200, 700)));
            site.server->kill();
            serverLines += site.server->lines;
            QTest::qWait(int(random.bounded(50, 300)));
            if (kill == 5 || kill == 12) {
                // A client dies too; what it accepted before is in its journal.
                harvestAccepted("w1");
                site.client("w1").kill();
            }
            if (kill == 8 || kill == 16) {
                site.broker->stop();
                QTest::qWait(200);
                QVERIFY2(site.broker->start(why), qPrintable(why));
            }
            site.startServer();
            if (kill == 5 || kill == 12)
                QVERIFY(site.startClient("w1"));
        }
        QTest::qWait(500);
        stream.stop();
        // A last rename of each client's item, the newest of all.
        for (QString const& id : ids)
            site.client(id).send(itemLine(id + "last", "final"));
        QVERIFY(site.allSaw("onPersistentChangeItem", "w2last"));
        QVERIFY(site.waitQuiet(4000, 180000));
        QVERIFY(site.terminateAll());
        serverLines += site.server->lines;
        for (QString const& id : ids)
            harvestAccepted(id);

        QCOMPARE(site.differences(), QStringList());
        // Each accepted request was applied by the server once: never two
        // change lines for its item across all the server's lives (none when
        // a kill came after its commit and before its line).
        QMap<QString, int> applied;
        for (auto const& line : std::as_const(serverLines)) {
            if (line.json.value("signal").toString() == QLatin1String("onPersistentChangeItem"))
                applied[line.json.value("key").toString()] += 1;
        }
        QJsonObject const items = readJson(site.server->folder() + "/persistent.json").value("items").toObject()
                                      .value("objects_list").toObject();
        int total = 0;
        for (QString const& id : ids) {
            for (QString const& topic : accepted[id]) {
                QString const key = topic.section('/', -1);
                if (key.endsWith("last"))
                    continue;
                ++total;
                QVERIFY2(items.contains(key), qPrintable(key + " was accepted and is missing"));
                QVERIFY2(applied.value(key) <= 1,
                         qPrintable(QStringLiteral("%1 was applied %2 times").arg(key).arg(applied.value(key))));
            }
            QCOMPARE(items.value(id + "last").toObject().value("name").toString(), QStringLiteral("final"));
        }
        // Nothing that no client asked for: every item of a client was sent by it.
        for (auto it = items.begin(); it != items.end(); ++it) {
            QString const id = it.key().left(2);
            if (ids.contains(id) && !it.key().endsWith("last"))
                QVERIFY2(it.key().mid(3).toInt() < sent[id], qPrintable(it.key()));
        }
        qInfo("%d server kills, %d requests accepted and applied once", serverKills, total);
        QVERIFY(total > serverKills * 20);
    }

    void everyProcessConvergesThroughKillsAndBrokerRestart()
    {
        installation_t site;
        QString why;
        QStringList const ids{"c0", "c1", "c2"};
        QVERIFY2(site.start(ids, false, why), qPrintable(why));
        quint32 const seed = QRandomGenerator::global()->generate();
        qInfo("seed %u", seed);
        request_maker_t maker(seed);
        auto const burst = [&](int count, QStringList const& to) {
            for (int i = 0; i < count; ++i)
                site.client(to.at(maker.pick(int(to.size())))).send(maker.next());
        };
        auto const liveValues = [&](int count) {
            for (int i = 0; i < count; ++i)
                site.broker->publish("driver", "status/DB/realtime/items/objects_list/" + maker.key("K", 60) + "/value",
                                     QByteArray::number(maker.pick(100)));
        };

        burst(900, ids);
        liveValues(10);
        QTest::qWait(1500);
        site.client("c1").kill();
        burst(600, {"c0", "c2"});
        QTest::qWait(500);
        QVERIFY(site.startClient("c1"));
        burst(600, ids);
        QTest::qWait(1000);
        site.broker->stop();
        burst(300, ids); // kept by the clients until the broker and the server are back
        QTest::qWait(500);
        QVERIFY2(site.broker->start(why), qPrintable(why));
        burst(600, ids);
        liveValues(10);

        // After quiet every saved database holds the server's hashes, section by section.
        QVERIFY(site.waitQuiet(3000, 120000));
        QStringList differences = site.differences();
        QElapsedTimer saving;
        saving.start();
        // A client's reconnection may back off for seconds and a resend wait
        // for its own delay: a slow machine gets time for both.
        while (!differences.isEmpty() && saving.elapsed() < 45000) {
            QTest::qWait(500);
            differences = site.differences();
        }
        bool const converged = differences.isEmpty();
        QVERIFY(site.terminateAll());
        QVERIFY2(converged, qPrintable(differences.join(", ")));
        QCOMPARE(site.differences(), QStringList());
        QVERIFY(site.server->errors.contains("back with the broker"));
        // The status alone kept the clients in step between their comparisons
        // on (re)connection: none had to take sections after quiet.
        for (QString const& id : ids)
            QVERIFY2(!site.client(id).errors.contains("out of step after quiet"), qPrintable(site.client(id).errors));
    }
};

QTEST_GUILESS_MAIN(tst_dbhost_mqtt)
#include "tst_dbhost_mqtt.moc"
