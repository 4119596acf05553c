#include "database/rr/definition/rr_packet_service_t.h"

DATABASE_STRING_TYPE_DEFINE(database::rr::definition::rr_packet_service_t);

namespace database {
namespace rr {
namespace definition {

namespace {

// A whole packet: its topic is a place to fill as well.
QJsonObject payloadTemplate(QJsonObject const& content)
{
    return QJsonObject{{QStringLiteral("topic"), QStringLiteral("@topic")}, {QStringLiteral("payload"), content}};
}

} // namespace

const rr_packet_service_t rr_packet_service_t::state_of_service(
    QStringLiteral("state_of_service"),
    payloadTemplate({{QStringLiteral("state"), QStringLiteral("@state")},
                     {QStringLiteral("message"), QStringLiteral("@message")}}));
const rr_packet_service_t rr_packet_service_t::command_of_sercice(
    QStringLiteral("command_of_sercice"), payloadTemplate({{QStringLiteral("command"), QStringLiteral("@command")}}));
const rr_packet_service_t rr_packet_service_t::start(QStringLiteral("start"));
const rr_packet_service_t rr_packet_service_t::abort(QStringLiteral("abort"));

rr_packet_service_t::rr_packet_service_t(QString const& text, QJsonObject const& _packet)
    : string_type_t(text)
    , packet(_packet)
{
}

QString rr_packet_service_t::Topic() const
{
    return value;
}

QString rr_packet_service_t::Topic(QString const& sub) const
{
    return value + QLatin1Char('/') + sub;
}

int rr_packet_service_t::Index() const
{
    return id;
}

QJsonObject rr_packet_service_t::Payload(QString const& message) const
{
    QJsonObject result{{QStringLiteral("state"), value}};
    if (!message.trimmed().isEmpty())
        result.insert(QStringLiteral("message"), message);
    return result;
}

QJsonObject rr_packet_service_t::Template() const
{
    return packet;
}

} // namespace definition
} // namespace rr
} // namespace database
