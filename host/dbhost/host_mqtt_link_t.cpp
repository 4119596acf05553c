#include "host_mqtt_link_t.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonDocument>
#include <QSysInfo>
#include <QUuid>

#include <cstdio>

#include "database/base/topicbase_t.h"
#include "host_json_t.h"
#include "host_metrics_t.h"

namespace {

// Host-level topics, outside the library's "request/" and "status/" space.
QString const presenceTopic = QStringLiteral("dbhost/sync/server");
QString const hashesTopic = QStringLiteral("dbhost/sync/hashes/");
QString const sectionsTopic = QStringLiteral("dbhost/sync/sections/");
QString const appliedTopic = QStringLiteral("dbhost/sync/applied/");

// A client that followed a burst of status compares hashes this long after
// its end: a message the broker dropped from a full queue is found then.
constexpr int recheckMs = 3000;

// Requests a client holds until the server has them; beyond this, input
// waits instead of requests being dropped.
constexpr std::size_t waitingLimit = 100000;
// Client processes whose requests the server remembers; one a process start.
constexpr std::size_t instanceLimit = 10000;
// A client sends again what the server has not acknowledged for this long:
// a message lost on the way costs no more than this.
constexpr int resendMs = 5000;

/// "<instance>:<n>" split; false for an id of another form.
bool splitId(QString const& id, QString& instance, quint64& sequence)
{
    qsizetype const colon = id.lastIndexOf(QLatin1Char(':'));
    bool ok = false;
    sequence = colon > 0 ? id.mid(colon + 1).toULongLong(&ok) : 0;
    instance = id.left(colon);
    return ok && sequence > 0;
}

QString const appliedKey = QStringLiteral("applied");
QString const appliedUpToKey = QStringLiteral("applied_up_to");
QString const requestKey = QStringLiteral("request");
QString const idKey = QStringLiteral("id");
QString const acknowledgedKey = QStringLiteral("acknowledged");

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
QString const host_mqtt_link_t::replyToProperty = QStringLiteral("dbhost-reply-to");

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
    resend.setSingleShot(true);
    resend.setInterval(resendMs);
    connect(&resend, &QTimer::timeout, this, &host_mqtt_link_t::resendUnacknowledged);
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
    return host_json_t::text(value);
}

bool host_mqtt_link_t::decode(QByteArray const& body, QJsonValue& value)
{
    if (body.trimmed().isEmpty()) {
        value = QJsonValue::Null;
        return true;
    }
    QJsonParseError error{};
    // An object, as nearly every body is, is a document of its own; a bare
    // value is read as the one element of an array.
    if (body.startsWith('{')) {
        QJsonDocument const document = QJsonDocument::fromJson(body, &error);
        if (error.error != QJsonParseError::NoError)
            return false;
        value = document.object();
        return true;
    }
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
        // Status at QoS 0: with a clean session nothing is delivered again
        // after a reconnection whatever the QoS, a live connection loses
        // nothing, and a broker's full queue drops either kind; the hashes
        // find what is missed. Acknowledging each message cost the broker and
        // every client a packet and its bookkeeping per status.
        client.subscribe({prefix + QStringLiteral("status/DB/#")}, false, 0);
        client.subscribe({prefix + presenceTopic, prefix + sectionsTopic + clientId, prefix + appliedTopic + clientId});
    }
}

void host_mqtt_link_t::onDisconnected()
{
    serverOnline = false;
    recheck.stop();
    resend.stop();
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
    if (inputHeld) {
        heldMessages.append({topic, payload, properties});
        return;
    }
    handleMessage(std::move(topic), payload, properties);
}

void host_mqtt_link_t::holdInput(bool hold)
{
    inputHeld = hold;
    while (!inputHeld && !heldMessages.isEmpty()) {
        message_t const message = heldMessages.takeFirst();
        handleMessage(message.topic, message.payload, message.properties);
    }
}

void host_mqtt_link_t::handleMessage(QString topic, QByteArray const& payload,
                                     QMap<QString, QString> const& properties)
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
    bool const removal = value.isNull();
    if (removal)
        value = QJsonObject();
    QJsonObject const packet = database::base::topicbase_t::getPacketUpdated(topic, value);
    // The changes the payload brings need its text again: the body is that
    // text when it is written as the host writes.
    QByteArray const text = !removal && host_json_t::isCompactText(payload) ? payload : QByteArray();
    QString const id = server && topic.startsWith(QLatin1String("request/")) ? properties.value(requestIdProperty)
                                                                            : QString();
    if (!id.isEmpty()) {
        bool const first = markApplied(id);
        if (first) {
            Q_EMIT packetArrived(packet, QStringLiteral("the message on ") + topic, text);
            // The id follows the request's changes into the journal, in the
            // same turn and so in the same commit: durable together, and
            // acknowledged only once they are.
            settleLibrary();
            Q_EMIT recordMade({{appliedKey, id}});
        }
        acknowledge(id, properties.value(replyToProperty));
        return;
    }
    if (!server)
        recheck.start();
    Q_EMIT packetArrived(packet, QStringLiteral("the message on ") + topic, text);
    // A message's changes all in the commit of its turn, in the order of the messages.
    settleLibrary();
}

bool host_mqtt_link_t::markApplied(QString const& id)
{
    QString instance;
    quint64 sequence = 0;
    if (!splitId(id, instance, sequence))
        return true;
    auto found = applied.find(instance);
    if (found == applied.end()) {
        found = applied.insert(instance, applied_t());
        instances.push_back(instance);
        if (instances.size() > instanceLimit) {
            applied.remove(instances.front());
            instances.pop_front();
        }
    }
    applied_t& record = *found;
    if (sequence <= record.upTo || record.above.contains(sequence))
        return false;
    if (sequence == record.upTo + 1) {
        record.upTo = sequence;
        while (record.above.remove(record.upTo + 1))
            ++record.upTo;
    } else {
        record.above.insert(sequence);
    }
    return true;
}

void host_mqtt_link_t::acknowledge(QString const& id, QString const& replyTo)
{
    QString instance;
    quint64 sequence = 0;
    if (replyTo.isEmpty() || !splitId(id, instance, sequence))
        return;
    // Only once the journal holds the request's changes does the client let
    // go of it: the watermark of now is told after the commit that holds
    // what it covers; the ones of a commit go out together, on flushOutput().
    quint64 const upTo = applied.value(instance).upTo;
    whenDurable([this, replyTo, instance, upTo] {
        quint64& told = acknowledgements[replyTo][instance];
        told = qMax(told, upTo);
    });
}

void host_mqtt_link_t::flushOutput()
{
    if (acknowledgements.isEmpty())
        return;
    for (auto it = acknowledgements.cbegin(); it != acknowledgements.cend(); ++it) {
        QJsonObject body;
        for (auto instance = it.value().cbegin(); instance != it.value().cend(); ++instance)
            body.insert(instance.key(), QString::number(instance.value()));
        if (client.isConnected())
            client.publish(prefix + appliedTopic + it.key(), encode(body));
    }
    acknowledgements.clear();
}

QByteArray host_mqtt_link_t::acceptRequest(packet_t const& request)
{
    if (server)
        return QByteArray();
    QString const id = instance + QLatin1Char(':') + QString::number(++sequence);
    addWaiting(request, id);
    if (!full && waiting.size() >= waitingLimit) {
        full = true;
        std::fprintf(stderr, "dbhost: %zu requests wait for the server; input waits for them\n", waitingLimit);
        Q_EMIT congested(true);
    }
    return host_json_t::textWith({{idKey, id}}, requestKey, request.packetText());
}

void host_mqtt_link_t::addWaiting(packet_t const& accepted, QString const& id)
{
    request_t request{accepted.packet, accepted.payloadText(), id, QString(), 0};
    // An id of another form is never taken as acknowledged.
    if (!splitId(id, request.instance, request.sequence))
        request.instance.clear();
    waiting.push_back(std::move(request));
}

bool host_mqtt_link_t::isAcknowledged(request_t const& request) const
{
    if (request.sequence == 0)
        return false;
    auto const found = acknowledgedUpTo.constFind(request.instance);
    return found != acknowledgedUpTo.cend() && request.sequence <= *found;
}

void host_mqtt_link_t::restoreRecord(QJsonObject const& record)
{
    if (server) {
        if (record.contains(appliedKey)) {
            markApplied(record.value(appliedKey).toString());
        } else if (record.contains(appliedUpToKey)) {
            QJsonObject const upTo = record.value(appliedUpToKey).toObject();
            for (auto it = upTo.begin(); it != upTo.end(); ++it) {
                QJsonObject const state = it.value().toObject();
                if (!applied.contains(it.key()))
                    instances.push_back(it.key());
                applied_t& entry = applied[it.key()];
                entry.upTo = state.value(QStringLiteral("up_to")).toString().toULongLong();
                for (QJsonValue const& above : state.value(QStringLiteral("above")).toArray())
                    entry.above.insert(above.toString().toULongLong());
            }
        }
        return;
    }
    if (record.contains(requestKey)) {
        // Accepted before the last end and not known to have arrived: it goes again.
        addWaiting(packet_t(record.value(requestKey).toObject()), record.value(idKey).toString());
        durableCount = waiting.size();
    } else if (record.contains(acknowledgedKey)) {
        takeAcknowledgement(record.value(acknowledgedKey).toObject());
    }
}

QList<QJsonObject> host_mqtt_link_t::carriedRecords() const
{
    QList<QJsonObject> records;
    if (server) {
        QJsonObject upTo;
        for (QString const& name : instances) {
            applied_t const& entry = applied.value(name);
            QJsonArray above;
            for (quint64 const n : entry.above)
                above.append(QString::number(n));
            upTo.insert(name, QJsonObject{{QStringLiteral("up_to"), QString::number(entry.upTo)},
                                          {QStringLiteral("above"), above}});
        }
        if (!upTo.isEmpty())
            records.append({{appliedUpToKey, upTo}});
        return records;
    }
    for (std::size_t i = 0; i < durableCount; ++i) {
        request_t const& request = waiting[i];
        if (!isAcknowledged(request))
            records.append({{requestKey, request.packet}, {idKey, request.id}});
    }
    return records;
}

void host_mqtt_link_t::takeAcknowledgement(QJsonObject const& acknowledged)
{
    bool progress = false;
    for (auto it = acknowledged.begin(); it != acknowledged.end(); ++it) {
        quint64 const upTo = it.value().toString().toULongLong();
        quint64& known = acknowledgedUpTo[it.key()];
        progress = progress || upTo > known;
        known = qMax(known, upTo);
    }
    while (!waiting.empty() && isAcknowledged(waiting.front())) {
        waiting.pop_front();
        durableCount -= durableCount > 0 ? 1 : 0;
        sentCount -= sentCount > 0 ? 1 : 0;
    }
    if (progress)
        resend.start();
    if (full && waiting.size() < waitingLimit / 2) {
        full = false;
        Q_EMIT congested(false);
    }
}

void host_mqtt_link_t::resendUnacknowledged()
{
    sentCount = 0;
    flushRequests();
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
        // Sections may hold changes still on their way to the journal.
        whenDurable([this, peer, sections, count] {
            client.publish(prefix + sectionsTopic + peer, encode(sections));
            host_metrics_t::instance().add(QStringLiteral("dbhost_mqtt_sync_sections_sent_total"), {}, count);
            if (count > 0)
                std::fprintf(stderr, "dbhost: %d sections differed from the hashes of %s: sent\n", count,
                             qPrintable(peer));
        });
        return;
    }
    if (server)
        return;
    if (topic == appliedTopic + clientId) {
        QJsonObject const acknowledged = value.toObject();
        takeAcknowledgement(acknowledged);
        // Kept so that a start after a crash sends only what is still open.
        Q_EMIT recordMade({{acknowledgedKey, acknowledged}});
        return;
    }
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
        resendUnacknowledged();
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

void host_mqtt_link_t::forwardRequest(packet_t const& request)
{
    if (server) {
        // The server decides: its own requests are applied here.
        Q_EMIT packetArrived(request.packet, QStringLiteral("a request of this process"));
        return;
    }
    // Called once the request is in the journal, in the order of acceptance.
    durableCount = qMin(durableCount + 1, waiting.size());
    flushRequests();
}

void host_mqtt_link_t::flushRequests()
{
    if (!client.isConnected() || !serverOnline)
        return;
    for (; sentCount < durableCount; ++sentCount) {
        request_t const& request = waiting[sentCount];
        if (isAcknowledged(request))
            continue;
        QString const topic = request.packet.value(QStringLiteral("topic")).toString();
        if (!client.publish(prefix + topic, request.body, false,
                            {{requestIdProperty, request.id}, {replyToProperty, clientId}}))
            return;
        if (!resend.isActive())
            resend.start();
    }
}

void host_mqtt_link_t::reportChange(change_t const& change)
{
    QString const& database = change.database;
    QJsonObject const& packet = change.packet;
    // Only the server's word is status. While it is away from the broker its
    // changes aren't kept: the clients compare hashes when it comes back.
    if (!server || database.isEmpty() || !client.isConnected())
        return;
    QString const relative = packet.value(QStringLiteral("topic")).toString();
    client.publish(prefix + QStringLiteral("status/DB/") + database + QLatin1Char('/') + relative,
                   change.payloadText());
}

void host_mqtt_link_t::reportProblem(QString const&, QJsonObject const&, QString const&)
{
    // Refusals stay in this process: the standard output reports them.
}
