#include "host_link_t.h"

#include <QCoreApplication>

#include <utility>

#include "host_json_t.h"
#include "platform/qjsonserializer/qjsonserializer.h"

host_link_t::~host_link_t() = default;

host_link_t::packet_t::packet_t(QJsonObject _packet)
    : packet(std::move(_packet))
{
}

host_link_t::change_t::change_t(QString _database, QString _signal, QString _key, QJsonObject _packet)
    : packet_t(std::move(_packet))
    , database(std::move(_database))
    , signal(std::move(_signal))
    , key(std::move(_key))
{
}

namespace {

QString const topicKey = QStringLiteral("topic");
QString const payloadKey = QStringLiteral("payload");

/// A packet's text from its payload's: the keys in the order a JSON object
/// writes them, "payload", then "topic"; the topic given in pieces.
QByteArray packetOf(QByteArray const& payload, std::initializer_list<QStringView> topic)
{
    qsizetype topicSize = 0;
    for (QStringView piece : topic)
        topicSize += piece.size();
    QByteArray text;
    text.reserve(payload.size() + topicSize + 24);
    text += "{\"payload\":";
    text += payload;
    text += ",\"topic\":";
    host_json_t::appendString(text, topic);
    text += '}';
    return text;
}

} // namespace

bool host_link_t::packet_t::plain() const
{
    // Asked by every text made; the packet doesn't change once handed over.
    if (plainness < 0)
        plainness = packet.size() == 2 && packet.value(topicKey).isString() && packet.contains(payloadKey) ? 1 : 0;
    return plainness == 1;
}

QByteArray const& host_link_t::packet_t::payloadText() const
{
    if (payload.isEmpty()) {
        QJsonValue const value = packet.value(payloadKey);
        // An object the library has just written comes with its text.
        if (value.isObject())
            payload = QJsonSerializer::recentText(value.toObject());
        if (payload.isEmpty()) {
            payload.reserve(128);
            host_json_t::append(payload, value);
        }
    }
    return payload;
}

QByteArray const& host_link_t::packet_t::packetText() const
{
    if (packetJson.isEmpty()) {
        if (plain()) {
            packetJson = packetOf(payloadText(), {packet.value(topicKey).toString()});
        } else {
            packetJson = host_json_t::text(packet);
        }
    }
    return packetJson;
}

QByteArray const& host_link_t::change_t::line() const
{
    if (text.isEmpty()) {
        QByteArray const& packetPart = packetText();
        text.reserve(packetPart.size() + key.size() + signal.size() + 48);
        // The keys in the order a JSON object writes them: event, key, packet, signal.
        text += "{\"event\":\"change\",";
        if (!key.isNull()) {
            text += "\"key\":";
            host_json_t::appendString(text, key);
            text += ',';
        }
        text += "\"packet\":";
        text += packetPart;
        text += ",\"signal\":";
        host_json_t::appendString(text, signal);
        text += '}';
    }
    return text;
}

QByteArray host_link_t::change_t::journalEntry() const
{
    QString const relative = packet.value(topicKey).toString();
    if (!plain()) {
        QString const topic = QStringLiteral("status/DB/") + database + QLatin1Char('/') + relative;
        return host_json_t::text(QJsonObject{{topicKey, topic}, {payloadKey, packet.value(payloadKey)}});
    }
    return packetOf(payloadText(), {u"status/DB/", database, u"/", relative});
}

QByteArray host_link_t::acceptRequest(packet_t const&)
{
    return QByteArray();
}

void host_link_t::restoreRecord(QJsonObject const&) {}

QList<QJsonObject> host_link_t::carriedRecords() const
{
    return {};
}

void host_link_t::holdInput(bool) {}

void host_link_t::whenDurable(std::function<void()> work) const
{
    if (durability)
        durability(std::move(work));
    else
        work();
}

void host_link_t::settleLibrary()
{
    // A packet's road through the library is a few queued hops.
    for (int round = 0; round < 16; ++round)
        QCoreApplication::sendPostedEvents();
}
