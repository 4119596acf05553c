#include "host_mqtt_link_t.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSysInfo>
#include <QUuid>

#include <cstdio>

#include "host_metrics_t.h"

namespace {

// Host-level topics, outside the library's "request/" and "status/" space.
QString const presenceTopic = QStringLiteral("dbhost/sync/server");
QString const hashesTopic = QStringLiteral("dbhost/sync/hashes/");
QString const sectionsTopic = QStringLiteral("dbhost/sync/sections/");

// A client that followed a burst of status compares hashes this long after
// its end: a message the broker dropped from a full queue is found then.
constexpr int recheckMs = 3000;

// Requests waiting while the broker or the server is away, and request ids
// remembered against a second delivery: both bounded.
constexpr std::size_t waitingLimit = 100000;
constexpr std::size_t seenLimit = 100000;

host_mqtt_client_t::options_t completed(host_mqtt_client_t::options_t options, bool server, QString const& prefix)
{
    if (options.clientId.isEmpty()) {
        // A server keeps one name per installation; clients must not take each other's.
        QString place = QString(prefix).replace(QLatin1Char('/'), QLatin1Char('-'));
        if (!place.isEmpty())
            place = QLatin1Char('-') + place.chopped(1);
        options.clientId = server ? QStringLiteral("dbhost-server") + place
                                  : QStringLiteral("dbhost-client-%1-%2")
                                        .arg(QSysInfo::machineHostName())
                                        .arg(QCoreApplication::applicationPid());
    }
    if (server) {
        // The broker says for the server that it is gone when it can't say so itself.
        options.willTopic = prefix + presenceTopic;
        options.willPayload = host_mqtt_link_t::encode(QJsonObject{{QStringLiteral("online"), false}});
    }
    return options;
}

} // namespace

QString const host_mqtt_link_t::requestIdProperty = QStringLiteral("dbhost-id");

host_mqtt_link_t::host_mqtt_link_t(bool _server, QString const& _prefix, host_mqtt_client_t::options_t options,
                                   database::database_t* database, QObject* parent)
    : host_link_t(parent)
    , server(_server)
    , prefix(_prefix.isEmpty() || _prefix.endsWith(QLatin1Char('/')) ? _prefix : _prefix + QLatin1Char('/'))
    , client(completed(std::move(options), _server, prefix))
    , sync(database)
    , instance(QUuid::createUuid().toString(QUuid::WithoutBraces))
{
    clientId = client.clientId();
    connect(&client, &host_mqtt_client_t::connected, this, &host_mqtt_link_t::onConnected);
    connect(&client, &host_mqtt_client_t::disconnected, this, &host_mqtt_link_t::onDisconnected);
    connect(&client, &host_mqtt_client_t::messageReceived, this, &host_mqtt_link_t::onMessage);
    recheck.setSingleShot(true);
    recheck.setInterval(recheckMs);
    connect(&recheck, &QTimer::timeout, this, [this] { askForSections(false); });
}

bool host_mqtt_link_t::open(QString& error)
{
    for (QChar const c : {QLatin1Char('/'), QLatin1Char('+'), QLatin1Char('#')}) {
        if (clientId.contains(c)) {
            error = QStringLiteral("the client id is part of topics and may not hold '/', '+' or '#'");
            return false;
        }
    }
    if (prefix.contains(QLatin1Char('+')) || prefix.contains(QLatin1Char('#'))) {
        error = QStringLiteral("the topic prefix may not hold '+' or '#'");
        return false;
    }
    return client.open(error);
}

void host_mqtt_link_t::start()
{
    // Connecting began in open(): what arrives is handled once the event loop turns.
}

void host_mqtt_link_t::stop()
{
    if (server && client.isConnected())
        publishPresence(false);
    client.close();
}

QByteArray host_mqtt_link_t::encode(QJsonValue const& value)
{
    if (value.isObject())
        return QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact);
    if (value.isArray())
        return QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact);
    // A document holds no bare value: write it in an array and drop the brackets.
    QByteArray const text = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return text.mid(1, text.size() - 2);
}

bool host_mqtt_link_t::decode(QByteArray const& body, QJsonValue& value)
{
    if (body.trimmed().isEmpty()) {
        value = QJsonValue::Null;
        return true;
    }
    QJsonParseError error{};
    QJsonDocument const document = QJsonDocument::fromJson('[' + body + ']', &error);
    if (error.error != QJsonParseError::NoError || document.array().size() != 1)
        return false;
    value = document.array().at(0);
    return true;
}

void host_mqtt_link_t::onConnected()
{
    // Comparisons asked before the connection was lost get no answer.
    asked.clear();
    if (server) {
        QStringList requests;
        for (QString const& name : host_sync_t::databaseNames())
            requests << prefix + QStringLiteral("request/DB/") + name + QStringLiteral("/#");
        requests << prefix + hashesTopic + QLatin1Char('+');
        client.subscribe(requests);
        // Drivers' live values; what the server publishes itself doesn't come back.
        client.subscribe({prefix + QStringLiteral("status/DB/realtime/#")}, true);
        // Subscribed first: a client that answers the presence finds the server listening.
        publishPresence(true);
    } else {
        serverOnline = false;
        client.subscribe(
            {prefix + QStringLiteral("status/DB/#"), prefix + presenceTopic, prefix + sectionsTopic + clientId});
    }
}

void host_mqtt_link_t::onDisconnected()
{
    serverOnline = false;
    recheck.stop();
}

void host_mqtt_link_t::publishPresence(bool online)
{
    QJsonObject presence{{QStringLiteral("online"), online}};
    if (online)
        presence.insert(QStringLiteral("session"), instance);
    client.publish(prefix + presenceTopic, encode(presence), true);
}

void host_mqtt_link_t::onMessage(QString topic, QByteArray payload, QMap<QString, QString> properties)
{
    if (!topic.startsWith(prefix))
        return;
    topic = topic.mid(prefix.size());
    if (topic.startsWith(QLatin1String("dbhost/sync/"))) {
        handleSync(topic, payload);
        return;
    }
    QJsonValue value;
    if (!decode(payload, value)) {
        std::fprintf(stderr, "dbhost: the message on %s is not JSON, skipped\n", qPrintable(topic));
        return;
    }
    // A removal is null on the wire; the library's handlers take it as an empty object.
    if (value.isNull())
        value = QJsonObject();
    if (server && topic.startsWith(QLatin1String("request/"))) {
        QString const id = properties.value(requestIdProperty);
        if (!id.isEmpty() && !firstTime(id))
            return;
    }
    if (!server)
        recheck.start();
    Q_EMIT packetArrived({{QStringLiteral("topic"), topic}, {QStringLiteral("payload"), value}},
                         QStringLiteral("the message on ") + topic);
}

bool host_mqtt_link_t::firstTime(QString const& id)
{
    if (seen.contains(id))
        return false;
    seen.insert(id);
    seenOrder.push_back(id);
    if (seenOrder.size() > seenLimit) {
        seen.remove(seenOrder.front());
        seenOrder.pop_front();
    }
    return true;
}

void host_mqtt_link_t::handleSync(QString const& topic, QByteArray const& payload)
{
    QJsonValue value;
    if (!decode(payload, value))
        return;
    if (server && topic.startsWith(hashesTopic)) {
        QString const peer = topic.mid(hashesTopic.size());
        QJsonObject const sections = sync.answer(value.toObject());
        int count = 0;
        for (QString const& name : host_sync_t::databaseNames())
            count += int(sections.value(name).toObject().size());
        client.publish(prefix + sectionsTopic + peer, encode(sections));
        host_metrics_t::instance().add(QStringLiteral("dbhost_mqtt_sync_sections_sent_total"), {}, count);
        if (count > 0)
            std::fprintf(stderr, "dbhost: %d sections differed from the hashes of %s: sent\n", count,
                         qPrintable(peer));
        return;
    }
    if (server)
        return;
    if (topic == presenceTopic) {
        bool const online = value.toObject().value(QStringLiteral("online")).toBool();
        if (online == serverOnline && !online)
            return;
        serverOnline = online;
        if (!online) {
            recheck.stop();
            std::fprintf(stderr, "dbhost: the server is away; requests wait for it\n");
            return;
        }
        // Whether the server or this client was away, whatever changed meanwhile
        // is found by the hashes. The requests kept meanwhile follow them: their
        // status comes as usual, and the comparison isn't spoilt by them.
        std::fprintf(stderr, "dbhost: the server is online; comparing hashes\n");
        askForSections(true);
        flushRequests();
        return;
    }
    if (topic == sectionsTopic + clientId) {
        bool const afterQuiet = asked.empty() || !asked.front();
        if (!asked.empty())
            asked.pop_front();
        QStringList names;
        QList<QJsonObject> const packets = sync.takeOver(value.toObject(), names);
        for (QJsonObject const& packet : packets)
            Q_EMIT packetArrived(packet, QStringLiteral("the sections from the server"));
        QString const list = names.join(QStringLiteral(", "));
        host_metrics_t::instance().add(QStringLiteral("dbhost_mqtt_sync_comparisons_total"),
                                       {{QStringLiteral("result"), names.isEmpty() ? QStringLiteral("in_step")
                                                                   : afterQuiet    ? QStringLiteral("lost_status")
                                                                                   : QStringLiteral("took_sections")}});
        host_metrics_t::instance().add(QStringLiteral("dbhost_mqtt_sync_sections_taken_total"), {},
                                       double(names.size()));
        if (names.isEmpty() && !afterQuiet)
            std::fprintf(stderr, "dbhost: in step with the server; no section differed\n");
        else if (!names.isEmpty() && !afterQuiet)
            std::fprintf(stderr, "dbhost: in step with the server; took %lld sections: %s\n",
                         static_cast<long long>(names.size()), qPrintable(list));
        else if (!names.isEmpty())
            // Only a status lost on the way (a broker's full queue) leaves a client
            // out of step after quiet: worth a look at the broker.
            std::fprintf(stderr,
                         "dbhost: out of step after quiet, status was lost on the way; took %lld sections: %s\n",
                         static_cast<long long>(names.size()), qPrintable(list));
    }
}

void host_mqtt_link_t::askForSections(bool online)
{
    if (!client.isConnected() || !serverOnline)
        return;
    asked.push_back(online);
    client.publish(prefix + hashesTopic + clientId, encode(sync.hashes()));
}

void host_mqtt_link_t::forwardRequest(QJsonObject const& packet)
{
    if (server) {
        // The server decides: its own requests are applied here.
        Q_EMIT packetArrived(packet, QStringLiteral("a request of this process"));
        return;
    }
    if (waiting.size() >= waitingLimit) {
        waiting.pop_front();
        if (!warnedFull)
            std::fprintf(stderr, "dbhost: more than %zu requests wait for the server; the oldest are dropped\n",
                         waitingLimit);
        warnedFull = true;
    }
    waiting.push_back({packet, instance + QLatin1Char(':') + QString::number(++sequence)});
    flushRequests();
}

void host_mqtt_link_t::flushRequests()
{
    while (!waiting.empty() && client.isConnected() && serverOnline) {
        request_t const& next = waiting.front();
        QString const topic = next.packet.value(QStringLiteral("topic")).toString();
        if (!client.publish(prefix + topic, encode(next.packet.value(QStringLiteral("payload"))), false,
                            {{requestIdProperty, next.id}}))
            return;
        waiting.pop_front();
    }
    if (waiting.empty())
        warnedFull = false;
}

void host_mqtt_link_t::reportChange(QString const& database, QString const&, QString const&,
                                    QJsonObject const& packet)
{
    // Only the server's word is status. While it is away from the broker its
    // changes aren't kept: the clients compare hashes when it comes back.
    if (!server || database.isEmpty() || !client.isConnected())
        return;
    QString const relative = packet.value(QStringLiteral("topic")).toString();
    client.publish(prefix + QStringLiteral("status/DB/") + database + QLatin1Char('/') + relative,
                   encode(packet.value(QStringLiteral("payload"))));
}

void host_mqtt_link_t::reportProblem(QString const&, QJsonObject const&, QString const&)
{
    // Refusals stay in this process: the standard output reports them.
}
