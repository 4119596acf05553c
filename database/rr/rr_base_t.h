#ifndef DATABASE_RR_RR_BASE_T_H
#define DATABASE_RR_RR_BASE_T_H

#include <functional>

#include <QHash>
#include <QJsonObject>
#include <QMap>
#include <QObject>
#include <QString>

#include "database/database_export.h"

namespace database {
namespace rr {

/**
 * The host's peer of one outside service. It sorts what the service sends by
 * topic into signals, through a table of regular expressions, and carries the
 * host's answers out by on_response. It keeps no state of the service.
 */
class DATABASE_EXPORT rr_base_t : public QObject
{
    Q_OBJECT

public:
    /// Called with the topic, the packet, the first capture of the expression and the service name.
    using function_t = std::function<void(QString const&, QJsonObject const&, QString const&, QString const&)>;

    rr_base_t(QString const& name, QObject* parent = nullptr);
    /// Same service and routes; the routes that emitted the origin's signals emit the copy's.
    rr_base_t(rr_base_t const& other);

    /// Routes topics that match the whole of regex to function; replaces a route already under regex.
    void add_function(QString const& regex, function_t const& function);
    void remove_function(QString const& regex);

    /**
     * Cuts everything in front of name off the topic, then calls the first
     * route, in the order of the expressions' texts, whose expression matches
     * the rest exactly. When none does, on_update_unknon has the same
     * arguments with an empty last part.
     */
    void whois(QString const& name, QString const& topic, QJsonObject const& packet);
    /// Hands an answer for the service to whoever carries it (the host).
    void response(QString const& destination, QString const& topic, QJsonObject const& packet);
    /// Same service name; false for null.
    bool compare(rr_base_t const* other) const;

Q_SIGNALS:
    void on_update_base(QString _topic, QJsonObject _packet, QString _last_part_of_topic, QString _service_name);
    void on_update_stop(QString _topic, QJsonObject _packet, QString _last_part_of_topic, QString _service_name);
    void on_update_abort(QString _topic, QJsonObject _packet, QString _last_part_of_topic, QString _service_name);
    void on_update_start(QString _topic, QJsonObject _packet, QString _last_part_of_topic, QString _service_name);
    void on_update_error(QString _topic, QJsonObject _packet, QString _last_part_of_topic, QString _service_name);
    void on_update_state_of_service(QString _topic, QJsonObject _packet, QString _last_part_of_topic,
                                    QString _service_name);
    void on_update_unknon(QString _topic, QJsonObject _packet, QString _last_part_of_topic, QString _service_name);
    void on_response(QString _destionation, QString _topic, QJsonObject _packet);

private:
    using route_signal_t = void (rr_base_t::*)(QString, QJsonObject, QString, QString);

    /// A route that emits one of this peer's signals.
    void bind(QString const& regex, route_signal_t signal);

    QString serviceName;
    QMap<QString, function_t> functions;
    // Routes that still emit a signal of their own peer, so that a copy can
    // point them at itself instead of at the peer it was copied from.
    QHash<QString, route_signal_t> signalRoutes;
};

} // namespace rr
} // namespace database

#endif // DATABASE_RR_RR_BASE_T_H
