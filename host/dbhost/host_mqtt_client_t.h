#ifndef HOST_DBHOST_HOST_MQTT_CLIENT_T_H
#define HOST_DBHOST_HOST_MQTT_CLIENT_T_H

#include <QByteArray>
#include <QElapsedTimer>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QSocketNotifier>
#include <QString>
#include <QStringList>
#include <QTimer>

struct mosquitto;
struct mosquitto_message;
struct mqtt5__property;

/**
 * One connection to an MQTT broker over libmosquitto, driven by the Qt event
 * loop: QSocketNotifiers watch the library's socket and a timer runs its
 * keep-alive, so every callback comes in the thread of this object and of
 * the databases, with no lock and no thread of the library's own. A lost or
 * refused connection is tried again with a delay that doubles up to a limit;
 * each loss and each return is said once on standard error.
 */
class host_mqtt_client_t : public QObject
{
    Q_OBJECT
public:
    struct options_t {
        QString host = QStringLiteral("127.0.0.1");
        int port = 1883;
        QString clientId;
        QString user;
        QString password;
        /// TLS is on when a CA file is given; the client certificate is optional.
        QString caFile;
        QString certFile;
        QString keyFile;
        int keepAliveSeconds = 10;
        /// Said by the broker for this client when it goes without a goodbye.
        QString willTopic;
        QByteArray willPayload;
        int firstRetryMs = 250;
        int lastRetryMs = 8000;
    };

    explicit host_mqtt_client_t(options_t options, QObject* parent = nullptr);
    ~host_mqtt_client_t() override;

    /// Sets the library up and starts connecting; false with a reason when
    /// the options can't work (a TLS file that can't be read, ...).
    bool open(QString& error);
    /// Says goodbye to the broker after what is queued has gone, and stays away.
    void close();

    bool isConnected() const { return online; }
    QString clientId() const { return options.clientId; }
    QString address() const;

    /// Publishes at QoS 1 with MQTT 5 user properties; false when the library
    /// refused it.
    bool publish(QString const& topic, QByteArray const& payload, bool retain = false,
                 QMap<QString, QString> const& properties = {});
    /// Subscribes at qos (1 unless asked otherwise); with noLocal the broker
    /// doesn't send back what this client published itself.
    bool subscribe(QStringList const& filters, bool noLocal = false, int qos = 1);

Q_SIGNALS:
    void connected();
    void disconnected();
    void messageReceived(QString topic, QByteArray payload, QMap<QString, QString> properties);

private Q_SLOTS:
    void onReadable();
    void onWritable();
    void onMisc();
    void connectNow();

private:
    static void onConnectCallback(mosquitto*, void* self, int rc, int flags, mqtt5__property const*);
    static void onDisconnectCallback(mosquitto*, void* self, int rc, mqtt5__property const*);
    static void onMessageCallback(mosquitto*, void* self, mosquitto_message const* message,
                                  mqtt5__property const* properties);

    void watchSocket();
    void unwatchSocket();
    /// Lets the write notifier follow what the library has left to send.
    void followWrites();
    void lost(QString const& reason);

    options_t options;
    mosquitto* mosq = nullptr;
    QPointer<QSocketNotifier> reader;
    QPointer<QSocketNotifier> writer;
    int watchedSocket = -1;
    QTimer misc;
    QTimer retry;
    QElapsedTimer lossClock;
    /// The broker's reason when it refused the last connection.
    QString refusal;
    int retryMs = 0;
    bool attempted = false;
    bool everConnected = false;
    bool online = false;
    bool closing = false;
    bool lossSaid = false;
};

#endif // HOST_DBHOST_HOST_MQTT_CLIENT_T_H
