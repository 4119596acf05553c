#ifndef HOST_DBHOST_HOST_MQTT_LINK_T_H
#define HOST_DBHOST_HOST_MQTT_LINK_T_H

#include <QByteArray>
#include <QHash>
#include <QJsonValue>
#include <QList>
#include <QMap>
#include <QSet>
#include <QString>
#include <QTimer>

#include <deque>

#include "host_link_t.h"
#include "host_mqtt_client_t.h"
#include "host_sync_t.h"

/**
 * The roads of one process through an MQTT broker. The topic of a message is
 * the packet's topic after an optional prefix, its body the payload as
 * compact JSON. The server takes the requests of every database and publishes
 * each change as the status of what changed; a client publishes its requests
 * and follows the status. Live values that drivers publish reach every
 * process. A client compares the hashes of its sections with the server's
 * whenever it or the server comes (back) online, and takes over what differs.
 *
 * Requests are applied exactly once: a client journals each request it
 * accepts and sends it again until the server acknowledges it; the server
 * journals the id of each request it applies and acknowledges it once its
 * journal holds the change, so a request sent again is not applied twice.
 */
class host_mqtt_link_t : public host_link_t
{
    Q_OBJECT
public:
    /// The MQTT 5 user property that names a request once, so that one
    /// delivered again after a reconnection is not applied twice.
    static QString const requestIdProperty;
    /// The client id that a request's acknowledgement goes to.
    static QString const replyToProperty;

    host_mqtt_link_t(bool server, QString const& prefix, host_mqtt_client_t::options_t options,
                     database::database_t* database, QObject* parent = nullptr);

    /// Checks the options and starts connecting; false with a reason (bad
    /// client id, unreadable TLS files, ...).
    bool open(QString& error);

    void start() override;
    void stop() override;
    void forwardRequest(packet_t const& request) override;
    /// Server: the acknowledgements of the reports just released, one message per client.
    void flushOutput() override;
    void reportChange(change_t const& change) override;
    void reportProblem(QString const& event, QJsonObject const& packet, QString const& message) override;
    QByteArray acceptRequest(packet_t const& request) override;
    void restoreRecord(QJsonObject const& record) override;
    QList<QJsonObject> carriedRecords() const override;
    void holdInput(bool hold) override;

    bool connected() const { return client.isConnected(); }
    /// Connected, and a client has the server's answer to its last comparison.
    bool inStep() const { return client.isConnected() && (server || (serverOnline && asked.empty())); }

    /// The body of a message: compact JSON of any value, "null" for none.
    static QByteArray encode(QJsonValue const& value);
    /// Reads a body back; an empty body is null, as a removal.
    static bool decode(QByteArray const& body, QJsonValue& value);

private Q_SLOTS:
    void onConnected();
    void onDisconnected();
    void onMessage(QString topic, QByteArray payload, QMap<QString, QString> properties);

private:
    struct request_t {
        QJsonObject packet;
        /// The payload's text, as it goes out (again, after a reconnection).
        QByteArray body;
        QString id;
        /// The id's parts, read once: acknowledgements name them.
        QString instance;
        quint64 sequence = 0;
    };
    /// Server: the requests of one client process applied so far: all up to
    /// upTo, and those above it that came early.
    struct applied_t {
        quint64 upTo = 0;
        QSet<quint64> above;
    };
    struct message_t {
        QString topic;
        QByteArray payload;
        QMap<QString, QString> properties;
    };

    void handleMessage(QString topic, QByteArray const& payload, QMap<QString, QString> const& properties);
    void handleSync(QString const& topic, QByteArray const& payload);
    void publishPresence(bool online);
    void flushRequests();
    /// Client: everything not acknowledged goes out again, in order.
    void resendUnacknowledged();
    void takeAcknowledgement(QJsonObject const& acknowledged);
    void addWaiting(packet_t const& request, QString const& id);
    bool isAcknowledged(request_t const& request) const;
    /// Server: true the first time a request id is seen; notes it applied.
    bool markApplied(QString const& id);
    void acknowledge(QString const& id, QString const& replyTo);
    /// Client: sends its hashes, because the server is (back) online or
    /// because the status has been quiet for a while.
    void askForSections(bool online);

    bool server = false;
    QString prefix;
    host_mqtt_client_t client;
    QString clientId;
    host_sync_t sync;
    QString instance;
    quint64 sequence = 0;
    /// Client: requests accepted and not yet acknowledged by the server, in
    /// order. Acknowledged ones behind an open one stay until they reach the
    /// front, skipped: a burst is then linear, not quadratic, in its size.
    std::deque<request_t> waiting;
    /// Client: how many of waiting, from the front, are in the journal (and
    /// may go out), and how many of those have gone out.
    std::size_t durableCount = 0;
    std::size_t sentCount = 0;
    /// Client: the server's acknowledgements, by the instance of the ids.
    QHash<QString, quint64> acknowledgedUpTo;
    /// Client: sends again what the server hasn't acknowledged after a while.
    QTimer resend;
    bool serverOnline = false;
    bool full = false;
    /// Client: why each comparison still unanswered was asked (true: online).
    std::deque<bool> asked;
    /// Client: compares hashes again once the status has been quiet for a while.
    QTimer recheck;
    /// Server: what each client process's requests have come to, by its
    /// instance, the oldest instances first.
    QHash<QString, applied_t> applied;
    std::deque<QString> instances;
    /// Server: the watermarks to acknowledge, by client id and instance, of
    /// the commits released since the last flushOutput().
    QHash<QString, QHash<QString, quint64>> acknowledgements;
    /// Messages that came while input was held, in order.
    QList<message_t> heldMessages;
    bool inputHeld = false;
};

#endif // HOST_DBHOST_HOST_MQTT_LINK_T_H
