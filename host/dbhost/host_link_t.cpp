#include "host_link_t.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>

#include <utility>

host_link_t::~host_link_t() = default;

namespace {

/// Qt's own writer, for what the short path below does not write itself.
QByteArray documentText(QJsonValue const& value)
{
    if (value.isObject())
        return QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact);
    if (value.isArray())
        return QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact);
    // A document holds no bare value: write it in an array and drop the brackets.
    QByteArray const text = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return text.mid(1, text.size() - 2);
}

/// Appends s as it stands when every character stands for itself in JSON
/// (printable ASCII but quote and backslash); false, with out unchanged, otherwise.
bool appendPlainChars(QByteArray& out, QStringView s)
{
    for (QChar const c : s) {
        char16_t const u = c.unicode();
        if (u < 0x20 || u >= 0x7f || u == u'"' || u == u'\\')
            return false;
    }
    qsizetype const at = out.size();
    out.resize(at + s.size());
    char* cursor = out.data() + at;
    for (QChar const c : s)
        *cursor++ = char(c.unicode());
    return true;
}

/// Appends s as a JSON string, escaped as the JSON documents escape it.
void appendString(QByteArray& out, QString const& s)
{
    qsizetype const at = out.size();
    out += '"';
    if (appendPlainChars(out, s)) {
        out += '"';
        return;
    }
    out.truncate(at);
    out += documentText(s);
}

/// Writes value as QJsonDocument's compact form does: strings, objects and
/// arrays here, where the text of a change is made, numbers and escaped
/// strings by Qt's writer.
void appendJson(QByteArray& out, QJsonValue const& value)
{
    switch (value.type()) {
    case QJsonValue::Null:
        out += "null";
        return;
    case QJsonValue::Bool:
        out += value.toBool() ? "true" : "false";
        return;
    case QJsonValue::String:
        appendString(out, value.toString());
        return;
    case QJsonValue::Object: {
        QJsonObject const object = value.toObject();
        out += '{';
        bool first = true;
        for (auto it = object.constBegin(); it != object.constEnd(); ++it) {
            if (!std::exchange(first, false))
                out += ',';
            appendString(out, it.key());
            out += ':';
            appendJson(out, it.value());
        }
        out += '}';
        return;
    }
    case QJsonValue::Array: {
        QJsonArray const array = value.toArray();
        out += '[';
        bool first = true;
        for (QJsonValue const& element : array) {
            if (!std::exchange(first, false))
                out += ',';
            appendJson(out, element);
        }
        out += ']';
        return;
    }
    default:
        out += documentText(value);
        return;
    }
}

} // namespace

QByteArray host_link_t::jsonText(QJsonValue const& value)
{
    QByteArray text;
    text.reserve(64);
    appendJson(text, value);
    return text;
}

host_link_t::change_t::change_t(QString _database, QString _signal, QString _key, QJsonObject _packet)
    : database(std::move(_database))
    , signal(std::move(_signal))
    , key(std::move(_key))
    , packet(std::move(_packet))
{
}

namespace {

QString const topicKey = QStringLiteral("topic");
QString const payloadKey = QStringLiteral("payload");

} // namespace

bool host_link_t::change_t::plain() const
{
    return packet.size() == 2 && packet.value(topicKey).isString() && packet.contains(payloadKey);
}

QByteArray const& host_link_t::change_t::payloadText() const
{
    if (payload.isEmpty()) {
        payload.reserve(128);
        appendJson(payload, packet.value(payloadKey));
    }
    return payload;
}

QByteArray const& host_link_t::change_t::packetText() const
{
    if (packetJson.isEmpty()) {
        if (plain()) {
            // The keys of a JSON object are written in order: "payload", then "topic".
            QString const topic = packet.value(topicKey).toString();
            packetJson.reserve(payloadText().size() + topic.size() + 24);
            packetJson += "{\"payload\":";
            packetJson += payloadText();
            packetJson += ",\"topic\":";
            appendString(packetJson, topic);
            packetJson += '}';
        } else {
            packetJson = QJsonDocument(packet).toJson(QJsonDocument::Compact);
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
            appendString(text, key);
            text += ',';
        }
        text += "\"packet\":";
        text += packetPart;
        text += ",\"signal\":";
        appendString(text, signal);
        text += '}';
    }
    return text;
}

QByteArray host_link_t::change_t::journalEntry() const
{
    QString const topic = QStringLiteral("status/DB/") + database + QLatin1Char('/') + packet.value(topicKey).toString();
    if (!plain())
        return QJsonDocument(QJsonObject{{topicKey, topic}, {payloadKey, packet.value(payloadKey)}})
            .toJson(QJsonDocument::Compact);
    QByteArray entry;
    entry.reserve(payloadText().size() + topic.size() + 24);
    entry += "{\"payload\":";
    entry += payloadText();
    entry += ",\"topic\":";
    appendString(entry, topic);
    entry += '}';
    return entry;
}

QJsonObject host_link_t::acceptRequest(QJsonObject const&)
{
    return QJsonObject();
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
