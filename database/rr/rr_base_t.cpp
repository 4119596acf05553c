#include "database/rr/rr_base_t.h"

#include <QRegExp>

#include "database/rr/definition/rr_packet_service_t.h"

namespace database {
namespace rr {

namespace {

QString wholeTopic(QString const& topic)
{
    return QStringLiteral("^(") + topic + QStringLiteral(")$");
}

QString subTopic(QString const& name, definition::rr_packet_service_t const& word)
{
    return wholeTopic(name + QLatin1Char('/') + word.Topic());
}

} // namespace

rr_base_t::rr_base_t(QString const& name, QObject* parent)
    : QObject(parent)
    , serviceName(name)
{
    bind(wholeTopic(name), &rr_base_t::on_update_base);
    bind(subTopic(name, definition::rr_packet_service_t::start), &rr_base_t::on_update_start);
    bind(subTopic(name, definition::rr_packet_service_t::abort), &rr_base_t::on_update_abort);
    bind(subTopic(name, definition::rr_packet_service_t::state_of_service), &rr_base_t::on_update_state_of_service);
}

rr_base_t::rr_base_t(rr_base_t const& other)
    : QObject(nullptr)
    , serviceName(other.serviceName)
    , functions(other.functions)
{
    for (auto it = other.signalRoutes.cbegin(); it != other.signalRoutes.cend(); ++it)
        bind(it.key(), it.value());
}

void rr_base_t::bind(QString const& regex, route_signal_t signal)
{
    functions.insert(regex, [this, signal](QString const& topic, QJsonObject const& packet, QString const& last,
                                           QString const& name) { Q_EMIT(this->*signal)(topic, packet, last, name); });
    signalRoutes.insert(regex, signal);
}

void rr_base_t::add_function(QString const& regex, function_t const& function)
{
    functions.insert(regex, function);
    signalRoutes.remove(regex);
}

void rr_base_t::remove_function(QString const& regex)
{
    functions.remove(regex);
    signalRoutes.remove(regex);
}

void rr_base_t::whois(QString const& name, QString const& topic, QJsonObject const& packet)
{
    // Hosts put their own prefixes in front of the service's topics.
    QString const local = topic.mid(qMax(0, topic.indexOf(name)));
    for (auto it = functions.cbegin(); it != functions.cend(); ++it) {
        QRegExp expression(it.key(), Qt::CaseSensitive, QRegExp::RegExp);
        if (expression.exactMatch(local)) {
            // A copy, so that a route may remove itself while it runs.
            function_t const function = it.value();
            function(topic, packet, expression.cap(1), serviceName);
            return;
        }
    }
    // No expression matched, so there is no capture to pass on.
    Q_EMIT on_update_unknon(topic, packet, QString(), serviceName);
}

void rr_base_t::response(QString const& destination, QString const& topic, QJsonObject const& packet)
{
    Q_EMIT on_response(destination, topic, packet);
}

bool rr_base_t::compare(rr_base_t const* other) const
{
    return other && other->serviceName == serviceName;
}

} // namespace rr
} // namespace database
