// The inspector of dbhost (--http), against the real program: its API is what
// --dump prints, /metrics is well-formed Prometheus text whose counters
// follow the changes, the token guards every road, and an address beyond
// loopback without a token is refused at start. The registry is also checked
// alone for what the running host rarely shows (escapes, summaries).

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QWebSocket>
#include <QtTest>

#include <algorithm>
#include <cmath>

#include "host_metrics_t.h"

namespace {

struct reply_t {
    int status = 0;
    QByteArray body;
    QByteArray contentType;
};

struct sample_t {
    QString name;
    QMap<QString, QString> labels;
    double value = 0;
};

QChar charAt(QString const& text, qsizetype i)
{
    return i >= 0 && i < text.size() ? text.at(i) : QChar();
}

/// Reads the Prometheus text format strictly; false with the offending line.
bool parsePrometheus(QByteArray const& text, QList<sample_t>& samples, QString& error)
{
    static QRegularExpression const metricName(QStringLiteral("^[a-zA-Z_:][a-zA-Z0-9_:]*$"));
    static QRegularExpression const labelName(QStringLiteral("^[a-zA-Z_][a-zA-Z0-9_]*$"));
    static QStringList const types{"counter", "gauge", "histogram", "summary", "untyped"};
    if (!text.endsWith('\n')) {
        error = QStringLiteral("the last line has no line feed");
        return false;
    }
    QMap<QString, QString> typed;
    QSet<QString> helped;
    QSet<QString> finished; // names whose samples are over: they may not come back
    QString current;
    auto const family = [&](QString const& name) {
        for (QString const& suffix : {QStringLiteral("_sum"), QStringLiteral("_count"), QStringLiteral("_bucket")}) {
            QString const base = name.chopped(suffix.size());
            if (name.endsWith(suffix) && (typed.value(base) == QLatin1String("summary")
                                          || typed.value(base) == QLatin1String("histogram")))
                return base;
        }
        return name;
    };
    for (QString const& line : QString::fromUtf8(text).split(QLatin1Char('\n'))) {
        if (line.isEmpty())
            continue;
        error = line;
        if (line.startsWith(QLatin1String("# HELP ")) || line.startsWith(QLatin1String("# TYPE "))) {
            QStringList const parts = line.mid(7).split(QLatin1Char(' '));
            QString const name = parts.value(0);
            if (!metricName.match(name).hasMatch())
                return false;
            if (line.startsWith(QLatin1String("# HELP "))) {
                if (helped.contains(name))
                    return false;
                helped.insert(name);
            } else {
                if (typed.contains(name) || parts.size() != 2 || !types.contains(parts.at(1)))
                    return false;
                typed.insert(name, parts.at(1));
            }
            continue;
        }
        if (line.startsWith(QLatin1Char('#')))
            continue;
        sample_t sample;
        qsizetype i = 0;
        while (i < line.size() && line.at(i) != QLatin1Char('{') && line.at(i) != QLatin1Char(' '))
            ++i;
        sample.name = line.left(i);
        if (!metricName.match(sample.name).hasMatch())
            return false;
        if (i < line.size() && line.at(i) == QLatin1Char('{')) {
            ++i;
            while (i < line.size() && line.at(i) != QLatin1Char('}')) {
                qsizetype const equals = line.indexOf(QLatin1Char('='), i);
                if (equals < 0 || charAt(line, equals + 1) != QLatin1Char('"'))
                    return false;
                QString const label = line.mid(i, equals - i);
                if (!labelName.match(label).hasMatch() || sample.labels.contains(label))
                    return false;
                QString value;
                i = equals + 2;
                for (; i < line.size() && line.at(i) != QLatin1Char('"'); ++i) {
                    if (line.at(i) != QLatin1Char('\\')) {
                        value += line.at(i);
                        continue;
                    }
                    QChar const next = charAt(line, ++i);
                    if (next == QLatin1Char('n'))
                        value += QLatin1Char('\n');
                    else if (next == QLatin1Char('\\') || next == QLatin1Char('"'))
                        value += next;
                    else
                        return false;
                }
                if (i >= line.size())
                    return false;
                sample.labels.insert(label, value);
                ++i;
                if (charAt(line, i) == QLatin1Char(','))
                    ++i;
            }
            if (i >= line.size())
                return false;
            ++i;
        }
        QStringList const rest = line.mid(i).trimmed().split(QLatin1Char(' '));
        if (rest.isEmpty() || rest.size() > 2)
            return false;
        QString const value = rest.at(0);
        bool ok = true;
        if (value == QLatin1String("+Inf"))
            sample.value = INFINITY;
        else if (value == QLatin1String("-Inf"))
            sample.value = -INFINITY;
        else if (value == QLatin1String("NaN"))
            sample.value = NAN;
        else
            sample.value = value.toDouble(&ok);
        if (!ok)
            return false;
        // The samples of one metric come together, after its type.
        QString const base = family(sample.name);
        if (base != current) {
            if (finished.contains(base))
                return false;
            if (!current.isEmpty())
                finished.insert(current);
            current = base;
        }
        samples.append(sample);
    }
    error.clear();
    return true;
}

double find(QList<sample_t> const& samples, QString const& name, QMap<QString, QString> const& labels = {})
{
    for (sample_t const& sample : samples) {
        if (sample.name == name && sample.labels == labels)
            return sample.value;
    }
    return -1;
}

/// A dbhost with its inspector on a free loopback port; its input stays open.
class host_t
{
public:
    explicit host_t(QString const& folder, QStringList const& extra = {})
    {
        process.start(QStringLiteral(DBHOST),
                      QStringList{"--data", folder, "--log-level", "1", "--http", "127.0.0.1:0"} + extra);
        process.waitForStarted();
        QElapsedTimer clock;
        clock.start();
        static QRegularExpression const address(QStringLiteral("inspector at http://127\\.0\\.0\\.1:(\\d+)/"));
        while (clock.elapsed() < 30000 && process.state() == QProcess::Running) {
            process.waitForReadyRead(50);
            collect();
            QRegularExpressionMatch const match = address.match(errors);
            if (match.hasMatch()) {
                port = match.captured(1).toInt();
                break;
            }
        }
    }
    ~host_t()
    {
        if (process.state() == QProcess::Running) {
            process.terminate();
            if (!process.waitForFinished(20000))
                process.kill();
        }
    }

    void collect()
    {
        errors += QString::fromUtf8(process.readAllStandardError());
        out += process.readAllStandardOutput();
    }
    void send(QByteArray const& line) { process.write(line.endsWith('\n') ? line : line + '\n'); }
    /// Change lines on standard output so far.
    QList<QJsonObject> changes()
    {
        collect();
        QList<QJsonObject> found;
        for (QByteArray const& line : out.split('\n')) {
            QJsonObject const json = QJsonDocument::fromJson(line).object();
            if (json.value("event") == QLatin1String("change"))
                found.append(json);
        }
        return found;
    }
    /// Waits until the output has been quiet for a while: the input is applied.
    void settle(int quietMs = 600)
    {
        QElapsedTimer quiet;
        quiet.start();
        qsizetype seen = -1;
        while (quiet.elapsed() < quietMs) {
            QTest::qWait(50);
            collect();
            if (out.size() != seen) {
                seen = out.size();
                quiet.restart();
            }
        }
    }
    bool finish()
    {
        process.terminate();
        return process.waitForFinished(30000) && process.exitCode() == 0;
    }

    QString url(QString const& path) const { return QStringLiteral("http://127.0.0.1:%1%2").arg(port).arg(path); }

    reply_t get(QString const& path, QByteArray const& authorization = QByteArray(),
                QByteArray const& verb = QByteArrayLiteral("GET"))
    {
        QNetworkRequest request{QUrl(url(path))};
        if (!authorization.isEmpty())
            request.setRawHeader("Authorization", authorization);
        QNetworkReply* reply = network.sendCustomRequest(request, verb);
        QSignalSpy done(reply, &QNetworkReply::finished);
        done.wait(20000);
        reply_t result{reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), reply->readAll(),
                       reply->header(QNetworkRequest::ContentTypeHeader).toByteArray()};
        reply->deleteLater();
        return result;
    }

    QJsonValue getJson(QString const& path, QByteArray const& authorization = QByteArray())
    {
        reply_t const reply = get(path, authorization);
        return QJsonDocument::fromJson("[" + reply.body + "]").array().at(0);
    }

    /// The status line of the answer to a request written by hand.
    QByteArray raw(QByteArray const& head)
    {
        QTcpSocket socket;
        socket.connectToHost(QStringLiteral("127.0.0.1"), quint16(port));
        if (!socket.waitForConnected(5000))
            return QByteArray();
        socket.write(head + "\r\n");
        QByteArray answer;
        while (!answer.contains("\r\n") && socket.waitForReadyRead(5000))
            answer += socket.readAll();
        return answer.left(answer.indexOf("\r\n"));
    }

    /// The status line of a WebSocket handshake on the feed.
    QByteArray handshake(QString const& target, QByteArray const& extra = QByteArray(),
                         QByteArray const& hostName = QByteArray())
    {
        QByteArray const name = hostName.isEmpty() ? "127.0.0.1:" + QByteArray::number(port) : hostName;
        return raw("GET " + target.toUtf8() + " HTTP/1.1\r\nHost: " + name
                   + "\r\nUpgrade: websocket\r\nConnection: Upgrade\r\nSec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n"
                     "Sec-WebSocket-Version: 13\r\n"
                   + extra);
    }

    QProcess process;
    QNetworkAccessManager network;
    QString errors;
    QByteArray out;
    int port = 0;
};

/// A reader subscribed to a host's feed, and what it has received.
struct feed_reader_t
{
    QWebSocket socket;
    QByteArray received;

    /// Subscribes to the feed of the host on port; false when that fails.
    bool open(int port)
    {
        QObject::connect(&socket, &QWebSocket::binaryMessageReceived,
                         [this](QByteArray const& message) { received += message; });
        QSignalSpy connected(&socket, &QWebSocket::connected);
        socket.open(QUrl(QStringLiteral("ws://127.0.0.1:%1/feed").arg(port)));
        return connected.wait(10000);
    }

    /// The lines received so far, as JSON.
    QList<QJsonObject> lines() const
    {
        QList<QJsonObject> found;
        for (QByteArray const& line : received.split('\n')) {
            if (!line.isEmpty())
                found.append(QJsonDocument::fromJson(line).object());
        }
        return found;
    }
};

QByteArray itemLine(QString const& id, QString const& name)
{
    QJsonObject const payload{{"id_driver", "drivers/driver_knx/1"}, {"name", name}, {"description", ""},
                              {"enabled", true}, {"status", "1/1/2"}, {"command", "1/1/1"},
                              {"feedback", "1/1/3"}, {"type", "dtp_1"}, {"typeformat", ""},
                              {"interpreter", ""}, {"tracking", false}, {"flags", 0}};
    return QJsonDocument(QJsonObject{{"topic", "request/DB/persistent/items/objects_list/" + id},
                                     {"payload", payload}})
        .toJson(QJsonDocument::Compact);
}

QJsonValue dump(QString const& folder, QString const& section)
{
    QProcess process;
    process.start(QStringLiteral(DBHOST), {"--data", folder, "--dump", section});
    process.waitForFinished(30000);
    return QJsonDocument::fromJson("[" + process.readAllStandardOutput() + "]").array().at(0);
}

} // namespace

class tst_dbhost_http : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void apiIsWhatDumpPrints()
    {
        QTemporaryDir dir;
        // "database/section" (or "database" for all of it) -> what the API served
        QMap<QString, QJsonValue> served;
        QJsonValue lightHall, generalMember;
        QString generalKey;
        {
            host_t host(dir.path());
            QVERIFY2(host.port > 0, qPrintable(host.errors));
            QFile demo(QStringLiteral(DEMO));
            QVERIFY(demo.open(QIODevice::ReadOnly));
            host.send(demo.readAll());
            // Long enough for the consistency check that the demo's removals start.
            host.settle(2000);
            QJsonObject const hashes = host.getJson("/api/hashes").toObject();
            QCOMPARE(hashes.keys(), (QStringList{"persistent", "presencesimulation", "realtime"}));
            for (QString const& name : hashes.keys()) {
                served.insert(name, host.getJson("/api/" + name));
                for (QString const& section : hashes.value(name).toObject().keys())
                    served.insert(name + '/' + section, host.getJson("/api/" + name + '/' + section));
            }
            lightHall = host.getJson("/api/persistent/items/light_hall");
            generalKey = served.value("persistent/general").toObject().keys().value(0);
            generalMember = host.getJson("/api/persistent/general/" + generalKey);
            QVERIFY(host.finish()); // the last save: what --dump reads
        }
        QVERIFY(served.size() > 20);
        QJsonObject const all = dump(dir.path(), "all").toObject();
        for (auto it = served.begin(); it != served.end(); ++it) {
            QString const name = it.key().section('/', 0, 0);
            QString const section = it.key().section('/', 1);
            QJsonValue dumped;
            if (name != QLatin1String("persistent"))
                dumped = dump(dir.path(), it.key());
            else if (section.isEmpty())
                dumped = all;
            else if (section == QLatin1String("realtime") || section == QLatin1String("presencesimulation"))
                dumped = all.value(section); // --dump takes these names for their databases
            else
                dumped = dump(dir.path(), section);
            QVERIFY2(dumped.isObject(), qPrintable(it.key()));
            QVERIFY2(it.value() == dumped, qPrintable(it.key()));
        }
        QJsonObject const items = all.value("items").toObject().value("objects_list").toObject();
        QVERIFY(items.contains("light_hall"));
        QCOMPARE(lightHall, items.value("light_hall"));
        QVERIFY(!generalKey.isEmpty());
        QCOMPARE(generalMember, all.value("general").toObject().value(generalKey));
    }

    void apiAnswersWhatItDoesNotHave_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("verb");
        QTest::addColumn<int>("status");
        QTest::newRow("unknown database") << "/api/nowhere" << QByteArray("GET") << 404;
        QTest::newRow("unknown section") << "/api/persistent/nowhere" << QByteArray("GET") << 404;
        QTest::newRow("unknown object") << "/api/persistent/items/nothing_here" << QByteArray("GET") << 404;
        QTest::newRow("unknown path") << "/elsewhere" << QByteArray("GET") << 404;
        QTest::newRow("no writing") << "/api/persistent/items" << QByteArray("POST") << 405;
        QTest::newRow("no deleting") << "/api/persistent/items/light_hall" << QByteArray("DELETE") << 405;
    }
    void apiAnswersWhatItDoesNotHave()
    {
        QFETCH(QString, path);
        QFETCH(QByteArray, verb);
        QFETCH(int, status);
        QTemporaryDir dir;
        host_t host(dir.path());
        QVERIFY2(host.port > 0, qPrintable(host.errors));
        QCOMPARE(host.get(path, QByteArray(), verb).status, status);
    }

    void metricsAreWellFormedAndFollowTheChanges()
    {
        QTemporaryDir dir;
        host_t host(dir.path());
        QVERIFY2(host.port > 0, qPrintable(host.errors));
        reply_t reply = host.get("/metrics");
        QCOMPARE(reply.status, 200);
        QVERIFY(reply.contentType.startsWith("text/plain; version=0.0.4"));
        QList<sample_t> before;
        QString error;
        QVERIFY2(parsePrometheus(reply.body, before, error), qPrintable(error));
        QVERIFY(reply.body.contains("# TYPE dbhost_changes_total counter\n"));
        QVERIFY(reply.body.contains("# TYPE dbhost_save_duration_seconds summary\n"));
        // The first run saves the factory databases.
        QVERIFY(find(before, "dbhost_saves_total", {{"database", "persistent"}, {"result", "done"}}) >= 1);
        QVERIFY(find(before, "dbhost_save_duration_seconds_count", {{"database", "persistent"}}) >= 1);
        QVERIFY(find(before, "process_resident_memory_bytes") > 1e6);
        QMap<QString, QString> const items{{"database", "persistent"}, {"section", "items"}};
        double const itemsBefore = find(before, "dbhost_section_items", items);
        QVERIFY(itemsBefore >= 0);

        for (int i = 0; i < 3; ++i)
            host.send(itemLine(QStringLiteral("metric_%1").arg(i), QStringLiteral("Metric %1").arg(i)));
        host.send(R"({"topic":"request/DB/persistent/nowhere","payload":{}})");
        // The last item's line first: quiet alone is no proof on a slow machine.
        auto const lastItemReported = [&host] {
            QList<QJsonObject> const lines = host.changes();
            return std::any_of(lines.cbegin(), lines.cend(),
                               [](QJsonObject const& line) { return line.value("key") == "metric_2"; });
        };
        QTRY_VERIFY_WITH_TIMEOUT(lastItemReported(), 30000);
        host.settle(1000);
        QList<sample_t> after;
        QVERIFY2(parsePrometheus(host.get("/metrics").body, after, error), qPrintable(error));
        double const changes = find(after, "dbhost_changes_total", {{"database", "persistent"}});
        int persistentLines = 0;
        for (QJsonObject const& line : host.changes())
            persistentLines += line.value("signal").toString().startsWith("onPersistentChange") ? 1 : 0;
        // Every change line of the persistent database, counted once.
        QCOMPARE(changes, double(persistentLines));
        QVERIFY(changes >= 3);
        QCOMPARE(find(after, "dbhost_section_items", items), itemsBefore + 3);
        QCOMPARE(find(after, "dbhost_refusals_total", {{"kind", "refused"}}), 1.0);
        QVERIFY(find(after, "dbhost_http_responses_total", {{"code", "200"}}) >= 1);
    }

    void registryRendersWhatItKeeps()
    {
        host_metrics_t metrics;
        QString const tricky = QStringLiteral("a \"quoted\" back\\slash\nand a new line");
        metrics.add("dbhost_refusals_total", {{"kind", tricky}}, 2);
        metrics.add("dbhost_refusals_total", {{"kind", "error"}});
        metrics.set("dbhost_mqtt_connected", {}, 1);
        metrics.observe("dbhost_journal_sync_duration_seconds", {{"database", "realtime"}}, 0.25);
        metrics.observe("dbhost_journal_sync_duration_seconds", {{"database", "realtime"}}, 0.5);
        metrics.add("not_described_total");
        QVERIFY(!metrics.recordSave("persistent", [] { return false; }));
        int const collector = metrics.addCollector([] {
            return QList<host_metrics_t::sample_t>{
                {"dbhost_section_items", {{"database", "realtime"}, {"section", "items"}}, 7}};
        });
        QList<sample_t> samples;
        QString error;
        QByteArray const text = metrics.render();
        QVERIFY2(parsePrometheus(text, samples, error), qPrintable(error + "\n" + text));
        QCOMPARE(find(samples, "dbhost_refusals_total", {{"kind", tricky}}), 2.0);
        QCOMPARE(find(samples, "dbhost_refusals_total", {{"kind", "error"}}), 1.0);
        QCOMPARE(find(samples, "dbhost_mqtt_connected"), 1.0);
        QCOMPARE(find(samples, "dbhost_journal_sync_duration_seconds_count", {{"database", "realtime"}}), 2.0);
        QCOMPARE(find(samples, "dbhost_journal_sync_duration_seconds_sum", {{"database", "realtime"}}), 0.75);
        QCOMPARE(find(samples, "dbhost_saves_total", {{"database", "persistent"}, {"result", "failed"}}), 1.0);
        QCOMPARE(find(samples, "dbhost_save_failing", {{"database", "persistent"}}), 1.0);
        QCOMPARE(find(samples, "dbhost_section_items", {{"database", "realtime"}, {"section", "items"}}), 7.0);
        QVERIFY(text.contains("# TYPE not_described_total untyped\n"));
        metrics.removeCollector(collector);
        QVERIFY(!metrics.render().contains("dbhost_section_items{"));
    }

    void tokenGuardsEveryRoad_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("authorization");
        QTest::addColumn<int>("status");
        QByteArray const right = "Bearer s3cret-token";
        QByteArray const wrong = "Bearer s3cret-tokem";
        QTest::newRow("page without") << "/" << QByteArray() << 401;
        QTest::newRow("page wrong") << "/" << wrong << 401;
        QTest::newRow("page header") << "/" << right << 200;
        QTest::newRow("page query") << "/?token=s3cret-token" << QByteArray() << 200;
        QTest::newRow("page wrong query") << "/?token=s3cret" << QByteArray() << 401;
        QTest::newRow("api without") << "/api/hashes" << QByteArray() << 401;
        QTest::newRow("api wrong") << "/api/persistent/items" << wrong << 401;
        QTest::newRow("api header") << "/api/persistent/items" << right << 200;
        // The query is for what a browser opens by itself: the page and the feed.
        QTest::newRow("api query") << "/api/hashes?token=s3cret-token" << QByteArray() << 401;
        QTest::newRow("metrics without") << "/metrics" << QByteArray() << 401;
        QTest::newRow("metrics wrong") << "/metrics" << wrong << 401;
        QTest::newRow("metrics header") << "/metrics" << right << 200;
        QTest::newRow("unknown without") << "/nowhere" << QByteArray() << 401;
        QTest::newRow("feed without") << "/feed" << QByteArray() << 401;
        QTest::newRow("feed wrong query") << "/feed?token=s3cret-tokem" << QByteArray() << 401;
        QTest::newRow("feed query") << "/feed?token=s3cret-token" << QByteArray() << 101;
        QTest::newRow("feed header") << "/feed" << right << 101;
        QTest::newRow("feed elsewhere") << "/other?token=s3cret-token" << QByteArray() << 404;
    }
    void tokenGuardsEveryRoad()
    {
        QFETCH(QString, path);
        QFETCH(QByteArray, authorization);
        QFETCH(int, status);
        QTemporaryDir dir;
        QFile token(dir.filePath("token"));
        QVERIFY(token.open(QIODevice::WriteOnly));
        token.write("s3cret-token\nnot part of it\n");
        token.close();
        host_t host(dir.filePath("data"), {"--http-token-file", token.fileName()});
        QVERIFY2(host.port > 0, qPrintable(host.errors));
        if (path.startsWith("/feed") || path.startsWith("/other")) {
            QByteArray const extra =
                authorization.isEmpty() ? QByteArray() : "Authorization: " + authorization + "\r\n";
            QByteArray const line = host.handshake(path, extra);
            QVERIFY2(line.startsWith("HTTP/1.1 " + QByteArray::number(status)), line.constData());
            return;
        }
        QCOMPARE(host.get(path, authorization).status, status);
    }

    void foreignPagesAreKeptOut_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("hostName");
        QTest::addColumn<QByteArray>("origin");
        QTest::addColumn<int>("status");
        // Without a token, a page of another site must not read this machine's
        // feed (WebSockets know no same-origin rule), nor reach the API by
        // renaming its own host to this address.
        QTest::newRow("feed, same origin") << "/feed" << QByteArray() << QByteArray("http://127.0.0.1:PORT") << 101;
        QTest::newRow("feed, other origin") << "/feed" << QByteArray() << QByteArray("http://evil.example.com") << 403;
        QTest::newRow("feed, renamed host") << "/feed" << QByteArray("evil.example.com") << QByteArray() << 403;
        QTest::newRow("api, renamed host") << "/api/hashes" << QByteArray("evil.example.com") << QByteArray() << 403;
        QTest::newRow("api, localhost") << "/api/hashes" << QByteArray("localhost:PORT") << QByteArray() << 200;
    }
    void foreignPagesAreKeptOut()
    {
        QFETCH(QString, path);
        QFETCH(QByteArray, hostName);
        QFETCH(QByteArray, origin);
        QFETCH(int, status);
        QTemporaryDir dir;
        host_t host(dir.path());
        QVERIFY2(host.port > 0, qPrintable(host.errors));
        hostName.replace("PORT", QByteArray::number(host.port));
        origin.replace("PORT", QByteArray::number(host.port));
        QByteArray line;
        if (path == QLatin1String("/feed"))
            line = host.handshake(path, origin.isEmpty() ? QByteArray() : "Origin: " + origin + "\r\n", hostName);
        else
            line = host.raw("GET " + path.toUtf8() + " HTTP/1.1\r\nHost: " + hostName + "\r\n");
        QVERIFY2(line.startsWith("HTTP/1.1 " + QByteArray::number(status)), line.constData());
    }

    void feedCarriesTheChangeLinesOfStandardOutput()
    {
        QTemporaryDir dir;
        host_t host(dir.path());
        QVERIFY2(host.port > 0, qPrintable(host.errors));
        feed_reader_t feed;
        QVERIFY(feed.open(host.port));
        host.settle(300);
        qsizetype const already = host.changes().size();
        host.send(itemLine("fed_item", "Fed"));
        host.send(R"({"topic":"status/DB/realtime/items/objects_list/fed_item/value","payload":"1"})");
        QTRY_VERIFY_WITH_TIMEOUT(feed.received.contains("fed_item") && host.changes().size() > already + 1, 30000);
        host.settle(300);
        // The feed goes out in batches of its own: its last lines may still be on the way.
        QTRY_COMPARE_WITH_TIMEOUT(feed.lines(), host.changes().mid(already), 30000);
    }

    /// A burst that keeps the host busy to its end: the reader still gets
    /// every change line, up to the last one before the host leaves.
    void feedDeliversABurstToTheLastLineBeforeExit()
    {
        QTemporaryDir dir;
        host_t host(dir.path());
        QVERIFY2(host.port > 0, qPrintable(host.errors));
        feed_reader_t feed;
        QVERIFY(feed.open(host.port));
        QSignalSpy disconnected(&feed.socket, &QWebSocket::disconnected);
        QVERIFY(disconnected.isValid());
        QCOMPARE(disconnected.count(), 0);
        host.send(itemLine("burst_item", "Burst"));
        QByteArray burst;
        for (int n = 0; n < 20000; ++n)
            burst += "{\"topic\":\"status/DB/realtime/items/objects_list/burst_item/value\",\"payload\":\""
                     + QByteArray::number(n) + "\"}\n";
        host.process.write(burst);
        host.process.closeWriteChannel();
        QVERIFY(host.process.waitForFinished(180000));
        QTRY_VERIFY_WITH_TIMEOUT(disconnected.count() > 0, 10000);
        QList<QJsonObject> const fed = feed.lines();
        QList<QJsonObject> const printed = host.changes();
        QVERIFY(printed.size() > 20000);
        QCOMPARE(fed.size(), printed.size());
        QCOMPARE(fed.constLast(), printed.constLast());
    }

    void startIsRefused_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("said");
        QTest::newRow("all interfaces without token")
            << QStringList{"--http", "0.0.0.0:0"} << "reachable from other machines: give a token";
        QTest::newRow("all v6 interfaces without token")
            << QStringList{"--http", "[::]:0"} << "reachable from other machines: give a token";
        QTest::newRow("not an address") << QStringList{"--http", "here:80"} << "--http takes [ADDR:]PORT";
        QTest::newRow("not a port") << QStringList{"--http", "127.0.0.1:99999"} << "--http takes [ADDR:]PORT";
        QTest::newRow("empty token file")
            << QStringList{"--http", "0.0.0.0:0", "--http-token-file", "EMPTY"} << "has no token on its first line";
        QTest::newRow("missing token file")
            << QStringList{"--http", "0", "--http-token-file", "/nonexistent/token"} << "cannot read the token file";
    }
    void startIsRefused()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, said);
        QTemporaryDir dir;
        QFile empty(dir.filePath("empty"));
        QVERIFY(empty.open(QIODevice::WriteOnly));
        empty.close();
        arguments.replaceInStrings("EMPTY", empty.fileName());
        QProcess host;
        host.start(QStringLiteral(DBHOST), QStringList{"--data", dir.filePath("data")} + arguments);
        QVERIFY(host.waitForFinished(30000));
        QCOMPARE(host.exitCode(), 2);
        QString const errors = QString::fromUtf8(host.readAllStandardError());
        QVERIFY2(errors.contains(said), qPrintable(errors));
        // Refused before anything was loaded or written.
        QVERIFY(!QFile::exists(dir.filePath("data/persistent.json")));
    }
};

QTEST_GUILESS_MAIN(tst_dbhost_http)
#include "tst_dbhost_http.moc"
