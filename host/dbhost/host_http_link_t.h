#ifndef HOST_DBHOST_HOST_HTTP_LINK_T_H
#define HOST_DBHOST_HOST_HTTP_LINK_T_H

#include <QByteArray>
#include <QHash>
#include <QHostAddress>
#include <QJsonObject>
#include <QList>
#include <QPointer>
#include <QString>
#include <QTimer>

#include <functional>
#include <memory>
#include <vector>

#include "host_link_t.h"
#include "host_metrics_t.h"

class QHttpServer;
class QHttpServerRequest;
class QHttpServerResponse;
class QTcpServer;
class QTcpSocket;
class QWebSocket;
class QWebSocketServer;

namespace database {
class database_t;
}

/**
 * A read-only window on the databases of this process, for people and for
 * monitoring: one page (a tree of sections and objects, search, live values,
 * the latest changes, the host's status), the change feed as a WebSocket,
 * the databases as JSON under /api, and the host's figures under /metrics.
 * It is a link like standard output: it sees every change, request and
 * refusal, but it never hands a packet to the engines.
 *
 * With a token every request must carry it, as "Authorization: Bearer" or,
 * for the page and the feed, which a browser opens without headers, as the
 * query parameter "token".
 */
class host_http_link_t : public host_link_t
{
    Q_OBJECT
public:
    struct options_t {
        QHostAddress address = QHostAddress(QHostAddress::LocalHost);
        /// 0 takes a free port; port() tells which.
        quint16 port = 0;
        /// Empty: no token asked, which only a loopback address allows.
        QString token;
    };
    /// What the page's status line shows: role, broker, saves, journal, data folder.
    using status_t = std::function<QJsonObject()>;

    host_http_link_t(options_t options, database::database_t* database, status_t status, QObject* parent = nullptr);
    ~host_http_link_t() override;

    /// Reads "[ADDR:]PORT" ("8080", "127.0.0.1:8080", "[::1]:8080", "localhost:8080").
    static bool parseAddress(QString const& text, QHostAddress& address, quint16& port);
    /// The saves of each database as the metrics know them, for the status.
    static QJsonObject savesStatus();
    /// The journal's syncs as the metrics know them; null when there is none.
    static QJsonValue journalStatus();

    /// False with the reason when the options may not be served: an address
    /// beyond loopback with no token.
    static bool allowed(options_t const& options, QString& error);

    /// Binds; false with the reason (an address beyond loopback with no
    /// token, a port taken).
    bool listen(QString& error);
    quint16 port() const;

    void start() override;
    void stop() override;
    void forwardRequest(packet_t const& request) override;
    void reportChange(change_t const& change) override;
    void reportProblem(QString const& event, QJsonObject const& packet, QString const& message) override;

private:
    class front_t;

    enum class access_t { granted, missing, wrong };
    /// The token of a request; the query parameter counts only where allowed.
    access_t access(QByteArray const& authorization, QString const& queryToken, bool queryAllowed) const;
    void routes();
    QHttpServerResponse answer(QHttpServerRequest const& request, bool queryAllowed,
                               std::function<QHttpServerResponse()> const& handler);
    QHttpServerResponse databaseResponse(QString const& name, QString const& section, QString const& key);
    /// Front: a WebSocket handshake for the feed, decided before the upgrade.
    void handshake(QTcpSocket* socket, QByteArray const& head);
    void onFeedConnection();
    /// Sends the lines gathered so far.
    void flushFeed();
    void sendFeed(QByteArray const& lines);
    host_metrics_t::cell_t& counted(QHash<QString, host_metrics_t::cell_t*>& cells, QString const& metric,
                                    QString const& label, QString const& value);
    QList<host_metrics_t::sample_t> collect();

    options_t options;
    database::database_t* database = nullptr;
    status_t status;
    QHttpServer* http = nullptr;
    front_t* front = nullptr;
    QWebSocketServer* feedServer = nullptr;
    struct subscriber_t {
        QPointer<QWebSocket> socket;
        /// Batches were dropped while it fell behind: it is told to reload.
        bool behind = false;
    };
    QList<subscriber_t> subscribers;
    /// Lines of changes waiting for the next batch: the text standard output
    /// got, made once for both.
    QByteArray pending;
    QTimer batch;
    QByteArray page;
    int collector = 0;
    QHash<QString, host_metrics_t::cell_t*> changeCells;
    QHash<QString, host_metrics_t::cell_t*> requestCells;
    QHash<QString, host_metrics_t::cell_t*> refusalCells;
    QHash<QString, host_metrics_t::cell_t*> responseCells;
    host_metrics_t::cell_t* dropped = nullptr;
    bool stopped = false;
};

#endif // HOST_DBHOST_HOST_HTTP_LINK_T_H
