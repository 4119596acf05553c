#include "host_http_link_t.h"
#include "host_mqtt_link_t.h"

#include <QDateTime>
#include <QFile>
#include <QHttpServer>
#include <QHttpServerRequest>
#include <QHttpServerResponder>
#include <QHttpServerResponse>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>
#include <QUrlQuery>
#include <QWebSocket>
#include <QWebSocketServer>

#include "database/database_t.h"
#include "database/persistent/persistent_t.h"
#include "database/presencesimulation/presencesimulation_t.h"
#include "database/realtime/realtime_t.h"
#include "host_sync_t.h"

namespace {

using status_code = QHttpServerResponder::StatusCode;

// Changes go to the feed in batches: one message per reader every so often
// instead of one per change keeps the host's own road fast in a burst.
constexpr int batchMs = 50;
// A reader with this much still unsent misses batches until it catches up.
constexpr qint64 behindBytes = 8 * 1024 * 1024;
// A connection must have sent its request head within this time and size.
constexpr int headMs = 10000;
constexpr qsizetype headBytes = 16 * 1024;

QString const feedPath = QStringLiteral("/feed");


/// The lines that standard output writes for these changes, byte for byte
/// (the members in the order QJsonObject keeps them).
QHttpServerResponse json(QJsonValue const& value, status_code code = status_code::Ok)
{
    return QHttpServerResponse(QByteArrayLiteral("application/json"), host_mqtt_link_t::encode(value), code);
}

QHttpServerResponse problem(status_code code, QString const& message)
{
    return json(QJsonObject{{QStringLiteral("error"), message}}, code);
}

/// Equal tokens, in a time that doesn't tell how much of a wrong one was right.
bool sameToken(QByteArray const& given, QByteArray const& expected)
{
    unsigned char differ = given.size() == expected.size() ? 0 : 1;
    for (qsizetype i = 0; i < given.size(); ++i)
        differ |= static_cast<unsigned char>(given.at(i) ^ expected.at(i % qMax<qsizetype>(1, expected.size())));
    return differ == 0;
}

/// A Host header that names this machine's loopback, whatever the port.
bool loopbackHost(QByteArray const& host)
{
    QByteArray name = host.trimmed();
    if (name.startsWith('[')) {
        name = name.mid(1, name.indexOf(']') - 1);
    } else if (name.count(':') == 1) {
        name = name.left(name.indexOf(':'));
    }
    if (name.compare("localhost", Qt::CaseInsensitive) == 0)
        return true;
    QHostAddress const address(QString::fromLatin1(name));
    return !address.isNull() && address.isLoopback();
}

QJsonObject image(database::database_t* database, QString const& name)
{
    // A stale image is rebuilt first, as every reader of the engines does.
    if (name == QLatin1String("realtime"))
        return database->getRealtime()->getJdata();
    if (name == QLatin1String("presencesimulation"))
        return database->getPresenceSimulation()->getJdata();
    return database->getPersistent()->getJdata();
}

} // namespace

/**
 * The listening socket. It reads the head of each connection's first
 * request before anyone else: a WebSocket handshake goes to the feed, which
 * can refuse it with a status like any request, and everything else to the
 * HTTP server as if it had just been accepted.
 */
class host_http_link_t::front_t : public QTcpServer
{
public:
    front_t(host_http_link_t* _link)
        : QTcpServer(_link)
        , link(_link)
    {
    }

    /// The HTTP server takes this socket as a new connection.
    void handOver(QTcpSocket* socket)
    {
        addPendingConnection(socket);
        Q_EMIT newConnection();
        // What was read ahead is waiting in the socket: let the server see it.
        Q_EMIT socket->readyRead();
    }

protected:
    void incomingConnection(qintptr descriptor) override
    {
        auto* socket = new QTcpSocket(this);
        if (!socket->setSocketDescriptor(descriptor)) {
            delete socket;
            return;
        }
        auto* limit = new QTimer(socket);
        limit->setSingleShot(true);
        connect(limit, &QTimer::timeout, socket, &QTcpSocket::abort);
        limit->start(headMs);
        connect(socket, &QTcpSocket::readyRead, this, [this, socket, limit] { inspect(socket, limit); });
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    }

private:
    void inspect(QTcpSocket* socket, QTimer* limit)
    {
        QByteArray const head = socket->peek(headBytes);
        if (!head.contains("\r\n\r\n")) {
            if (head.size() >= headBytes)
                socket->abort();
            return;
        }
        delete limit;
        disconnect(socket, nullptr, this, nullptr);
        QByteArray const lower = head.toLower();
        if (lower.contains("\nupgrade:") && lower.contains("websocket"))
            link->handshake(socket, head);
        else
            handOver(socket);
    }

    host_http_link_t* link;
};

host_http_link_t::host_http_link_t(options_t _options, database::database_t* _database, status_t _status,
                                   QObject* parent)
    : host_link_t(parent)
    , options(std::move(_options))
    , database(_database)
    , status(std::move(_status))
{
    batch.setSingleShot(true);
    batch.setInterval(batchMs);
    connect(&batch, &QTimer::timeout, this, &host_http_link_t::flushFeed);
    QFile file(QStringLiteral(":/inspector/inspector.html"));
    if (file.open(QIODevice::ReadOnly))
        page = file.readAll();
    dropped = &host_metrics_t::instance().cell(QStringLiteral("dbhost_http_feed_dropped_total"));
    collector = host_metrics_t::instance().addCollector([this] { return collect(); });
}

host_http_link_t::~host_http_link_t()
{
    host_metrics_t::instance().removeCollector(collector);
}

bool host_http_link_t::parseAddress(QString const& text, QHostAddress& address, quint16& port)
{
    QString host;
    QString portText = text;
    int const colon = int(text.lastIndexOf(QLatin1Char(':')));
    if (colon >= 0) {
        host = text.left(colon);
        portText = text.mid(colon + 1);
        if (host.startsWith(QLatin1Char('[')) && host.endsWith(QLatin1Char(']')))
            host = host.mid(1, host.size() - 2);
        else if (host.contains(QLatin1Char(':')))
            return false; // an IPv6 address needs its brackets
    }
    bool ok = false;
    int const number = portText.toInt(&ok);
    if (!ok || number < 0 || number > 65535)
        return false;
    port = quint16(number);
    if (host.isEmpty() || host.compare(QLatin1String("localhost"), Qt::CaseInsensitive) == 0) {
        address = QHostAddress(QHostAddress::LocalHost);
        return colon < 0 || !host.isEmpty();
    }
    address = QHostAddress(host);
    return !address.isNull();
}

QJsonObject host_http_link_t::savesStatus()
{
    QJsonObject saves;
    host_metrics_t& metrics = host_metrics_t::instance();
    for (host_metrics_t::sample_t const& last : metrics.series(QStringLiteral("dbhost_last_save_timestamp_seconds"))) {
        QString const name = last.labels.value(QStringLiteral("database"));
        saves.insert(name, QJsonObject{{QStringLiteral("at"), QDateTime::fromMSecsSinceEpoch(qint64(last.value * 1000))
                                                                  .toUTC()
                                                                  .toString(Qt::ISODateWithMs)}});
    }
    for (host_metrics_t::sample_t const& failing : metrics.series(QStringLiteral("dbhost_save_failing"))) {
        QString const name = failing.labels.value(QStringLiteral("database"));
        QJsonObject entry = saves.value(name).toObject();
        entry.insert(QStringLiteral("failing"), failing.value > 0);
        saves.insert(name, entry);
    }
    return saves;
}

QJsonValue host_http_link_t::journalStatus()
{
    QList<host_metrics_t::sample_t> const syncs = host_metrics_t::instance().series(
        QStringLiteral("dbhost_journal_syncs_total"));
    if (syncs.isEmpty())
        return QJsonValue::Null;
    QJsonObject journal;
    for (host_metrics_t::sample_t const& sync : syncs)
        journal.insert(sync.labels.value(QStringLiteral("database")),
                       QJsonObject{{QStringLiteral("syncs"), sync.value}});
    for (host_metrics_t::sample_t const& bytes :
         host_metrics_t::instance().series(QStringLiteral("dbhost_journal_bytes"))) {
        QString const name = bytes.labels.value(QStringLiteral("database"));
        QJsonObject entry = journal.value(name).toObject();
        entry.insert(QStringLiteral("bytes"), bytes.value);
        journal.insert(name, entry);
    }
    for (host_metrics_t::sample_t const& held :
         host_metrics_t::instance().series(QStringLiteral("dbhost_journal_held_changes")))
        journal.insert(QStringLiteral("held"), held.value);
    return journal;
}

bool host_http_link_t::allowed(options_t const& options, QString& error)
{
    if (options.token.isEmpty() && !options.address.isLoopback()) {
        error = QStringLiteral("--http %1 is reachable from other machines: give a token with --http-token-file, "
                               "or bind to 127.0.0.1")
                    .arg(options.address.toString());
        return false;
    }
    return true;
}

bool host_http_link_t::listen(QString& error)
{
    if (!allowed(options, error))
        return false;
    http = new QHttpServer(this);
    routes();
    feedServer = new QWebSocketServer(QStringLiteral("dbhost"), QWebSocketServer::NonSecureMode, this);
    connect(feedServer, &QWebSocketServer::newConnection, this, &host_http_link_t::onFeedConnection);
    front = new front_t(this);
    if (!front->listen(options.address, options.port)) {
        error = QStringLiteral("--http cannot listen on %1:%2: %3")
                    .arg(options.address.toString())
                    .arg(options.port)
                    .arg(front->errorString());
        return false;
    }
    http->bind(front);
    return true;
}

quint16 host_http_link_t::port() const
{
    return front ? front->serverPort() : 0;
}

void host_http_link_t::start()
{
}

void host_http_link_t::stop()
{
    // The last changes go out before the goodbye, as they did on standard output.
    batch.stop();
    sendFeed(std::exchange(pending, {}));
    stopped = true;
    if (front)
        front->close();
    for (subscriber_t const& subscriber : std::as_const(subscribers)) {
        if (subscriber.socket)
            subscriber.socket->close(QWebSocketProtocol::CloseCodeGoingAway);
    }
}

host_http_link_t::access_t host_http_link_t::access(QByteArray const& authorization, QString const& queryToken,
                                                     bool queryAllowed) const
{
    if (options.token.isEmpty())
        return access_t::granted;
    QByteArray given;
    if (authorization.startsWith("Bearer "))
        given = authorization.mid(7).trimmed();
    else if (queryAllowed && !queryToken.isEmpty())
        given = queryToken.toUtf8();
    if (given.isEmpty())
        return access_t::missing;
    return sameToken(given, options.token.toUtf8()) ? access_t::granted : access_t::wrong;
}

host_metrics_t::cell_t& host_http_link_t::counted(QHash<QString, host_metrics_t::cell_t*>& cells,
                                                  QString const& metric, QString const& label, QString const& value)
{
    host_metrics_t::cell_t*& cell = cells[value];
    if (!cell)
        cell = &host_metrics_t::instance().cell(metric, {{label, value}});
    return *cell;
}

QHttpServerResponse host_http_link_t::answer(QHttpServerRequest const& request, bool queryAllowed,
                                             std::function<QHttpServerResponse()> const& handler)
{
    QHttpServerResponse response = [&] {
        // Without a token only this machine may ask, and only by a loopback
        // name: a page elsewhere that renames its host to 127.0.0.1 gets nothing.
        if (options.token.isEmpty() && !loopbackHost(request.value(QByteArrayLiteral("host"))))
            return problem(status_code::Forbidden, QStringLiteral("the inspector answers to loopback names only"));
        QString const queryToken = request.query().queryItemValue(QStringLiteral("token"), QUrl::FullyDecoded);
        access_t const granted = access(request.value(QByteArrayLiteral("authorization")), queryToken, queryAllowed);
        if (granted != access_t::granted) {
            QHttpServerResponse refused = problem(status_code::Unauthorized, granted == access_t::missing
                                                                                 ? QStringLiteral("a token is needed")
                                                                                 : QStringLiteral("wrong token"));
            refused.setHeader(QByteArrayLiteral("WWW-Authenticate"), QByteArrayLiteral("Bearer realm=\"dbhost\""));
            return refused;
        }
        return handler();
    }();
    // Everything here is the state of now, and the token may be in the address.
    response.setHeader(QByteArrayLiteral("Cache-Control"), QByteArrayLiteral("no-store"));
    response.setHeader(QByteArrayLiteral("Referrer-Policy"), QByteArrayLiteral("no-referrer"));
    response.setHeader(QByteArrayLiteral("X-Content-Type-Options"), QByteArrayLiteral("nosniff"));
    counted(responseCells, QStringLiteral("dbhost_http_responses_total"), QStringLiteral("code"),
            QString::number(int(response.statusCode())))
        .add();
    return response;
}

void host_http_link_t::routes()
{
    using method = QHttpServerRequest::Method;
    http->route(QStringLiteral("/"), method::Get, [this](QHttpServerRequest const& request) {
        return answer(request, true, [this] {
            QHttpServerResponse response(QByteArrayLiteral("text/html; charset=utf-8"), page);
            // Everything the page needs is in it; it talks only to this host.
            response.setHeader(QByteArrayLiteral("Content-Security-Policy"),
                               QByteArrayLiteral("default-src 'none'; script-src 'unsafe-inline'; "
                                                 "style-src 'unsafe-inline'; connect-src 'self'; img-src data:; "
                                                 "base-uri 'none'; form-action 'none'; frame-ancestors 'none'"));
            return response;
        });
    });
    http->route(QStringLiteral("/metrics"), method::Get, [this](QHttpServerRequest const& request) {
        return answer(request, false, [] {
            return QHttpServerResponse(host_metrics_t::contentType(), host_metrics_t::instance().render());
        });
    });
    http->route(QStringLiteral("/api/hashes"), method::Get, [this](QHttpServerRequest const& request) {
        return answer(request, false, [this] { return json(host_sync_t(database).hashes()); });
    });
    http->route(QStringLiteral("/api/status"), method::Get, [this](QHttpServerRequest const& request) {
        return answer(request, false, [this] {
            QJsonObject state = status ? status() : QJsonObject();
            state.insert(QStringLiteral("version"), database::database_t::getVersion());
            return json(state);
        });
    });
    http->route(QStringLiteral("/api/<arg>"), method::Get, [this](QString name, QHttpServerRequest const& request) {
        return answer(request, false, [&] { return databaseResponse(name, QString(), QString()); });
    });
    http->route(QStringLiteral("/api/<arg>/<arg>"), method::Get,
                [this](QString name, QString section, QHttpServerRequest const& request) {
                    return answer(request, false, [&] { return databaseResponse(name, section, QString()); });
                });
    http->route(QStringLiteral("/api/<arg>/<arg>/<arg>"), method::Get,
                [this](QString name, QString section, QString key, QHttpServerRequest const& request) {
                    return answer(request, false, [&] { return databaseResponse(name, section, key); });
                });
    http->setMissingHandler([this](QHttpServerRequest const& request, QHttpServerResponder&& responder) {
        QHttpServerResponse const response = answer(request, false, [&] {
            // Read-only: no method but GET does anything here.
            if (request.method() != QHttpServerRequest::Method::Get)
                return problem(status_code::MethodNotAllowed, QStringLiteral("the inspector is read-only"));
            return problem(status_code::NotFound, QStringLiteral("nothing at ") + request.url().path());
        });
        response.write(std::move(responder));
    });
}

QHttpServerResponse host_http_link_t::databaseResponse(QString const& name, QString const& section,
                                                       QString const& key)
{
    if (!host_sync_t::databaseNames().contains(name))
        return problem(status_code::NotFound, QStringLiteral("no database ") + name);
    QJsonObject const whole = image(database, name);
    if (section.isEmpty())
        return json(whole);
    if (!whole.contains(section))
        return problem(status_code::NotFound, QStringLiteral("no section %1 in %2").arg(section, name));
    QJsonValue const value = whole.value(section);
    if (key.isEmpty())
        return json(value);
    // A key names an object of the section's map, or else a member of the section.
    QJsonObject const objects = value.toObject().value(QStringLiteral("objects_list")).toObject();
    if (objects.contains(key))
        return json(objects.value(key));
    if (value.toObject().contains(key))
        return json(value.toObject().value(key));
    return problem(status_code::NotFound, QStringLiteral("no %1 in %2/%3").arg(key, name, section));
}

void host_http_link_t::handshake(QTcpSocket* socket, QByteArray const& head)
{
    QList<QByteArray> const lines = head.left(head.indexOf("\r\n\r\n")).split('\n');
    QList<QByteArray> const requestLine = lines.value(0).trimmed().split(' ');
    QUrl const url(QString::fromLatin1(requestLine.value(1)));
    QHash<QByteArray, QByteArray> headers;
    for (qsizetype i = 1; i < lines.size(); ++i) {
        qsizetype const colon = lines.at(i).indexOf(':');
        if (colon > 0)
            headers.insert(lines.at(i).left(colon).trimmed().toLower(), lines.at(i).mid(colon + 1).trimmed());
    }
    auto const refuse = [&](int code, QByteArray const& reason, QByteArray const& extra = QByteArray()) {
        socket->write("HTTP/1.1 " + QByteArray::number(code) + ' ' + reason + "\r\n" + extra
                      + "Content-Length: 0\r\nConnection: close\r\n\r\n");
        socket->disconnectFromHost();
        counted(responseCells, QStringLiteral("dbhost_http_responses_total"), QStringLiteral("code"),
                QString::number(code))
            .add();
    };
    if (stopped || requestLine.value(0) != "GET" || url.path() != feedPath)
        return refuse(404, "Not Found");
    QByteArray const host = headers.value("host");
    if (options.token.isEmpty() && !loopbackHost(host))
        return refuse(403, "Forbidden");
    // Browsers send their page's origin: a page of another site may not read the feed.
    QByteArray const origin = headers.value("origin");
    if (!origin.isEmpty() && origin != "http://" + host)
        return refuse(403, "Forbidden");
    QString const queryToken = QUrlQuery(url).queryItemValue(QStringLiteral("token"), QUrl::FullyDecoded);
    if (access(headers.value("authorization"), queryToken, true) != access_t::granted)
        return refuse(401, "Unauthorized", "WWW-Authenticate: Bearer realm=\"dbhost\"\r\n");
    counted(responseCells, QStringLiteral("dbhost_http_responses_total"), QStringLiteral("code"),
            QStringLiteral("101"))
        .add();
    feedServer->handleConnection(socket);
    Q_EMIT socket->readyRead();
}

void host_http_link_t::onFeedConnection()
{
    while (QWebSocket* socket = feedServer->nextPendingConnection()) {
        if (stopped) {
            socket->close(QWebSocketProtocol::CloseCodeGoingAway);
            socket->deleteLater();
            continue;
        }
        socket->setParent(this);
        subscribers.append({socket, false});
        connect(socket, &QWebSocket::disconnected, this, [this, socket] {
            subscribers.removeIf([socket](subscriber_t const& s) { return s.socket == socket || !s.socket; });
            socket->deleteLater();
        });
    }
}

void host_http_link_t::flushFeed()
{
    sendFeed(std::exchange(pending, {}));
}

void host_http_link_t::sendFeed(QByteArray const& lines)
{
    if (lines.isEmpty())
        return;
    for (subscriber_t& subscriber : subscribers) {
        if (!subscriber.socket)
            continue;
        // A reader that can't keep up is told what it missed instead of
        // growing this process's memory without end.
        if (subscriber.socket->bytesToWrite() > behindBytes) {
            subscriber.behind = true;
            dropped->add();
            continue;
        }
        if (subscriber.behind) {
            subscriber.socket->sendBinaryMessage(QByteArrayLiteral("{\"event\":\"gap\"}\n"));
            subscriber.behind = false;
        }
        subscriber.socket->sendBinaryMessage(lines);
        // Into the kernel now: a busy loop would otherwise let the batches
        // pile up in the socket's buffer and reach the reader only once the burst is over.
        subscriber.socket->flush();
    }
}

void host_http_link_t::forwardRequest(packet_t const& request)
{
    // "request/DB/<database>/...": the third step names the database.
    QString const name = request.packet.value(QStringLiteral("topic")).toString().section(QLatin1Char('/'), 2, 2);
    counted(requestCells, QStringLiteral("dbhost_requests_total"), QStringLiteral("database"), name).add();
}

void host_http_link_t::reportChange(change_t const& change)
{
    counted(changeCells, QStringLiteral("dbhost_changes_total"), QStringLiteral("database"), change.database).add();
    if (subscribers.isEmpty() || stopped)
        return;
    pending += change.line();
    pending += '\n';
    if (!batch.isActive())
        batch.start();
}

void host_http_link_t::reportProblem(QString const& event, QJsonObject const&, QString const&)
{
    counted(refusalCells, QStringLiteral("dbhost_refusals_total"), QStringLiteral("kind"), event).add();
}

QList<host_metrics_t::sample_t> host_http_link_t::collect()
{
    QList<host_metrics_t::sample_t> samples;
    samples.append({QStringLiteral("dbhost_http_feed_subscribers"), {}, double(subscribers.size())});
    for (QString const& name : host_sync_t::databaseNames()) {
        QJsonObject const whole = image(database, name);
        for (auto it = whole.begin(); it != whole.end(); ++it) {
            if (!it.value().isObject())
                continue;
            QJsonObject const section = it.value().toObject();
            QJsonValue const objects = section.value(QStringLiteral("objects_list"));
            double const count = objects.isObject() ? double(objects.toObject().size()) : double(section.size());
            samples.append({QStringLiteral("dbhost_section_items"),
                            {{QStringLiteral("database"), name}, {QStringLiteral("section"), it.key()}},
                            count});
        }
    }
    return samples;
}
