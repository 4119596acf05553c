#include "host_mqtt_client_t.h"

#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <vector>

#include <mosquitto.h>
#include <mqtt_protocol.h>

#include "host_metrics_t.h"

namespace {

constexpr int messagesPerTurn = 1024;

bool libraryReady()
{
    // Once per process, and before any thread might call into the library.
    static bool const ready = mosquitto_lib_init() == MOSQ_ERR_SUCCESS;
    return ready;
}

QString describe(int rc)
{
    if (rc == MOSQ_ERR_ERRNO)
        return QString::fromLocal8Bit(std::strerror(errno));
    return QString::fromUtf8(mosquitto_strerror(rc));
}

} // namespace

host_mqtt_client_t::host_mqtt_client_t(options_t _options, QObject* parent)
    : QObject(parent)
    , options(std::move(_options))
{
    // Keep-alive pings and the detection of a silent broker need a regular turn.
    misc.setInterval(1000);
    connect(&misc, &QTimer::timeout, this, &host_mqtt_client_t::onMisc);
    retry.setSingleShot(true);
    connect(&retry, &QTimer::timeout, this, &host_mqtt_client_t::connectNow);
}

host_mqtt_client_t::~host_mqtt_client_t()
{
    unwatchSocket();
    if (mosq)
        mosquitto_destroy(mosq);
}

QString host_mqtt_client_t::address() const
{
    return options.host + QLatin1Char(':') + QString::number(options.port);
}

bool host_mqtt_client_t::open(QString& error)
{
    if (!libraryReady()) {
        error = QStringLiteral("the MQTT library could not start");
        return false;
    }
    QByteArray const id = options.clientId.toUtf8();
    mosq = mosquitto_new(id.isEmpty() ? nullptr : id.constData(), true, this);
    if (!mosq) {
        error = QStringLiteral("the MQTT library refused the client id ") + options.clientId;
        return false;
    }
    mosquitto_int_option(mosq, MOSQ_OPT_PROTOCOL_VERSION, MQTT_PROTOCOL_V5);
    // A request is one small packet: Nagle's delay would be most of its latency.
    mosquitto_int_option(mosq, MOSQ_OPT_TCP_NODELAY, 1);
    // A burst of changes is thousands of messages: more of them in flight
    // than the default 20 waits less on acknowledgements.
    mosquitto_int_option(mosq, MOSQ_OPT_RECEIVE_MAXIMUM, 200);
    mosquitto_int_option(mosq, MOSQ_OPT_SEND_MAXIMUM, 200);
    mosquitto_connect_v5_callback_set(mosq, &host_mqtt_client_t::onConnectCallback);
    mosquitto_disconnect_v5_callback_set(mosq, &host_mqtt_client_t::onDisconnectCallback);
    mosquitto_message_v5_callback_set(mosq, &host_mqtt_client_t::onMessageCallback);
    int rc = MOSQ_ERR_SUCCESS;
    if (!options.user.isEmpty()) {
        rc = mosquitto_username_pw_set(mosq, options.user.toUtf8().constData(),
                                       options.password.isNull() ? nullptr : options.password.toUtf8().constData());
        if (rc != MOSQ_ERR_SUCCESS) {
            error = QStringLiteral("user name refused: ") + describe(rc);
            return false;
        }
    }
    for (QString const& file : {options.caFile, options.certFile, options.keyFile}) {
        if (!file.isEmpty() && !QFileInfo(file).isReadable()) {
            error = QStringLiteral("cannot read the TLS file ") + file;
            return false;
        }
    }
    if (!options.caFile.isEmpty()) {
        QByteArray const ca = options.caFile.toLocal8Bit();
        QByteArray const cert = options.certFile.toLocal8Bit();
        QByteArray const key = options.keyFile.toLocal8Bit();
        rc = mosquitto_tls_set(mosq, ca.constData(), nullptr, cert.isEmpty() ? nullptr : cert.constData(),
                               key.isEmpty() ? nullptr : key.constData(), nullptr);
        if (rc != MOSQ_ERR_SUCCESS) {
            error = QStringLiteral("TLS files not usable (CA, certificate, key): ") + describe(rc);
            return false;
        }
    } else if (!options.certFile.isEmpty() || !options.keyFile.isEmpty()) {
        error = QStringLiteral("a client certificate needs the CA file of the broker");
        return false;
    }
    if (!options.willTopic.isEmpty()) {
        rc = mosquitto_will_set_v5(mosq, options.willTopic.toUtf8().constData(), int(options.willPayload.size()),
                                   options.willPayload.constData(), 1, true, nullptr);
        if (rc != MOSQ_ERR_SUCCESS) {
            error = QStringLiteral("last will refused: ") + describe(rc);
            return false;
        }
    }
    misc.start();
    connectNow();
    return true;
}

void host_mqtt_client_t::connectNow()
{
    if (closing)
        return;
    // The first call stores host and port; later ones reuse them and keep the
    // messages still waiting for their acknowledgement, which go out again.
    int const rc = attempted ? mosquitto_reconnect_async(mosq)
                             : mosquitto_connect_bind_async(mosq, options.host.toUtf8().constData(), options.port,
                                                            options.keepAliveSeconds, nullptr);
    attempted = true;
    if (rc != MOSQ_ERR_SUCCESS) {
        lost(describe(rc));
        return;
    }
    watchSocket();
    followWrites();
}

void host_mqtt_client_t::watchSocket()
{
    int const fd = mosquitto_socket(mosq);
    if (fd == watchedSocket && reader)
        return;
    unwatchSocket();
    if (fd < 0)
        return;
    watchedSocket = fd;
    reader = new QSocketNotifier(fd, QSocketNotifier::Read, this);
    connect(reader, &QSocketNotifier::activated, this, &host_mqtt_client_t::onReadable);
    writer = new QSocketNotifier(fd, QSocketNotifier::Write, this);
    writer->setEnabled(false);
    connect(writer, &QSocketNotifier::activated, this, &host_mqtt_client_t::onWritable);
}

void host_mqtt_client_t::unwatchSocket()
{
    // The library closes the socket right after its disconnect callback: the
    // notifiers let go of it now, and go away once their own signal is over.
    for (QSocketNotifier* notifier : {reader.data(), writer.data()}) {
        if (notifier) {
            notifier->setEnabled(false);
            notifier->deleteLater();
        }
    }
    reader.clear();
    writer.clear();
    watchedSocket = -1;
}

void host_mqtt_client_t::followWrites()
{
    if (writer && mosq)
        writer->setEnabled(mosquitto_want_write(mosq));
}

void host_mqtt_client_t::onReadable()
{
    if (!reader)
        return;
    // What the socket holds, up to a bound, in one turn: the messages of a
    // burst share one commit of the journal instead of one each.
    for (int round = 0; round < messagesPerTurn && reader; ++round) {
        int const rc = mosquitto_loop_read(mosq, 1);
        if (rc != MOSQ_ERR_SUCCESS) {
            if (reader)
                lost(describe(rc));
            break;
        }
        pollfd ready{watchedSocket, POLLIN, 0};
        if (watchedSocket < 0 || ::poll(&ready, 1, 0) <= 0)
            break;
    }
    followWrites();
}

void host_mqtt_client_t::onWritable()
{
    if (!writer)
        return;
    int const rc = mosquitto_loop_write(mosq, 1);
    if (rc != MOSQ_ERR_SUCCESS && writer)
        lost(describe(rc));
    followWrites();
}

void host_mqtt_client_t::onMisc()
{
    if (!mosq || watchedSocket < 0)
        return;
    // Pings the broker when quiet, and gives up a connection that stays silent
    // for longer than the keep-alive: the disconnect callback follows.
    mosquitto_loop_misc(mosq);
    followWrites();
}

void host_mqtt_client_t::lost(QString const& reason)
{
    bool const wasOnline = online;
    online = false;
    host_metrics_t::instance().set(QStringLiteral("dbhost_mqtt_connected"), {}, 0);
    unwatchSocket();
    if (closing || retry.isActive())
        return;
    if (!lossSaid) {
        QString const why = refusal.isEmpty() ? reason : refusal;
        std::fprintf(stderr, "dbhost: %s the broker %s (%s); trying again with pauses up to %d s\n",
                     everConnected ? "lost" : "cannot reach", qPrintable(address()), qPrintable(why),
                     options.lastRetryMs / 1000);
        lossSaid = true;
        lossClock.start();
    }
    refusal.clear();
    retryMs = retryMs == 0 ? options.firstRetryMs : std::min(retryMs * 2, options.lastRetryMs);
    retry.start(retryMs);
    if (wasOnline)
        Q_EMIT disconnected();
}

bool host_mqtt_client_t::publish(QString const& topic, QByteArray const& payload, bool retain,
                                 QMap<QString, QString> const& properties)
{
    if (!mosq)
        return false;
    mosquitto_property* list = nullptr;
    for (auto it = properties.begin(); it != properties.end(); ++it)
        mosquitto_property_add_string_pair(&list, MQTT_PROP_USER_PROPERTY, it.key().toUtf8().constData(),
                                           it.value().toUtf8().constData());
    int const rc = mosquitto_publish_v5(mosq, nullptr, topic.toUtf8().constData(), int(payload.size()),
                                        payload.constData(), 1, retain, list);
    mosquitto_property_free_all(&list);
    followWrites();
    return rc == MOSQ_ERR_SUCCESS;
}

bool host_mqtt_client_t::subscribe(QStringList const& filters, bool noLocal, int qos)
{
    if (!mosq || filters.isEmpty())
        return false;
    std::vector<QByteArray> texts;
    std::vector<char*> pointers;
    for (QString const& filter : filters)
        texts.push_back(filter.toUtf8());
    for (QByteArray& text : texts)
        pointers.push_back(text.data());
    int const rc = mosquitto_subscribe_multiple(mosq, nullptr, int(pointers.size()), pointers.data(), qos,
                                                noLocal ? MQTT_SUB_OPT_NO_LOCAL : 0, nullptr);
    followWrites();
    return rc == MOSQ_ERR_SUCCESS;
}

void host_mqtt_client_t::close()
{
    if (closing)
        return;
    closing = true;
    retry.stop();
    misc.stop();
    if (mosq && online) {
        mosquitto_disconnect_v5(mosq, 0, nullptr);
        // What is still queued (a last status, the goodbye) goes out before
        // the process leaves; a broker that doesn't read is given a second.
        for (int round = 0; round < 10 && watchedSocket >= 0 && mosquitto_want_write(mosq); ++round) {
            pollfd ready{watchedSocket, POLLOUT, 0};
            if (::poll(&ready, 1, 100) > 0 && mosquitto_loop_write(mosq, 1) != MOSQ_ERR_SUCCESS)
                break;
        }
    }
    online = false;
    unwatchSocket();
}

void host_mqtt_client_t::onConnectCallback(mosquitto*, void* self, int rc, int, mqtt5__property const*)
{
    auto* client = static_cast<host_mqtt_client_t*>(self);
    if (rc != 0) {
        // The library closes the connection after this; say why when it does.
        client->refusal = QStringLiteral("refused: ") + QString::fromUtf8(mosquitto_reason_string(rc));
        return;
    }
    client->online = true;
    host_metrics_t::instance().set(QStringLiteral("dbhost_mqtt_connected"), {}, 1);
    client->retryMs = 0;
    if (!client->everConnected)
        std::fprintf(stderr, "dbhost: connected to the broker %s as %s\n", qPrintable(client->address()),
                     qPrintable(client->options.clientId));
    else
        std::fprintf(stderr, "dbhost: back with the broker %s after %.1f s\n", qPrintable(client->address()),
                     double(client->lossClock.elapsed()) / 1000.0);
    if (client->everConnected)
        host_metrics_t::instance().add(QStringLiteral("dbhost_mqtt_reconnections_total"));
    client->everConnected = true;
    client->lossSaid = false;
    Q_EMIT client->connected();
}

void host_mqtt_client_t::onDisconnectCallback(mosquitto*, void* self, int rc, mqtt5__property const*)
{
    auto* client = static_cast<host_mqtt_client_t*>(self);
    client->lost(rc == MOSQ_ERR_SUCCESS ? QStringLiteral("the broker said goodbye") : describe(rc));
}

void host_mqtt_client_t::onMessageCallback(mosquitto*, void* self, mosquitto_message const* message,
                                           mqtt5__property const* properties)
{
    auto* client = static_cast<host_mqtt_client_t*>(self);
    QMap<QString, QString> found;
    char* name = nullptr;
    char* value = nullptr;
    mosquitto_property const* property =
        mosquitto_property_read_string_pair(properties, MQTT_PROP_USER_PROPERTY, &name, &value, false);
    while (property) {
        found.insert(QString::fromUtf8(name), QString::fromUtf8(value));
        std::free(name);
        std::free(value);
        name = value = nullptr;
        property = mosquitto_property_read_string_pair(property, MQTT_PROP_USER_PROPERTY, &name, &value, true);
    }
    Q_EMIT client->messageReceived(QString::fromUtf8(message->topic),
                                   QByteArray(static_cast<char const*>(message->payload), message->payloadlen), found);
}
