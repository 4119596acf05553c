#include "database/rt_handler_request_t.h"

#include "database/command/command_t.h"
#include "database/database_t.h"
#include "database/default/persistent/ps_default_t.h"
#include "database/persistent/persistent_t.h"
#include "database/realtime/realtime_t.h"

namespace database {

using ::database::definition::service_t;
using ::database::persistent::definition::ps_knx_mode_t;

rt_handler_request_t::rt_handler_request_t(database_t* _database, QObject* parent)
    : QObject(parent)
    , database(_database)
    , engine(_database ? _database->getRealtime() : nullptr)
{
    frame.log(QStringLiteral("Starting Realtime topic handler engine ..."), ::utility::logs::trace,
              "rt_handler_request_t");
    initRequestEvent(true);
}

rt_handler_request_t::rt_handler_request_t(rt_handler_request_t const& other)
    : QObject(nullptr)
    , database(other.database)
    , engine(other.engine)
{
    initRequestEvent(true);
}

rt_handler_request_t::~rt_handler_request_t()
{
    initRequestEvent(false);
}

void rt_handler_request_t::initRequestEvent(bool connect)
{
    frame.log(connect ? QStringLiteral("Connection signal-slots database part")
                      : QStringLiteral("Disconnection signal-slots database part"),
              ::utility::logs::trace, "initRequestEvent");
    if (!engine)
        return;
    handler_frame_t::connectByName(engine->getHandlerTopic(), this, "onRealtimeRequestDriversKnxMode", connect, {},
                                   Qt::ConnectionType(Qt::QueuedConnection | Qt::UniqueConnection));
}

void rt_handler_request_t::onRealtimeRequestDriversKnxMode(QJsonObject _packet)
{
    bool reset = false;
    frame.run(nullptr, "onRealtimeRequestDriversKnxMode", _packet, [&] {
        service_t const role = database->getService();
        // A handler built by hand in a server passes the packet on.
        if (role == service_t::server) {
            engine->update(_packet);
            return false;
        }
        if (role != service_t::offline)
            return false;
        QJsonObject const payload = _packet.value(QStringLiteral("payload")).toObject();
        if (payload.isEmpty() || !payload.contains(QStringLiteral("mode"))) {
            frame.log(QStringLiteral("Unknown knxmode "), ::utility::logs::error, "onRealtimeRequestDriversKnxMode");
            return false;
        }
        auto* defaults = persistent::ps_default_t::getInstance();
        ps_knx_mode_t mode = defaults->getDefaultKnxMode();
        QJsonValue const text = payload.value(QStringLiteral("mode"));
        if (text.isString())
            mode = ps_knx_mode_t(text.toString());
        if (mode.ToString() == database->getPersistent()->getData()->getDrivers()->getKnxMode()) {
            frame.log(QStringLiteral("Already setted knx mode "), ::utility::logs::warning,
                      "onRealtimeRequestDriversKnxMode");
            return false;
        }
        defaults->setKnx_mode(mode);
        reset = true;
        return false;
    });
    // The database is rebuilt from the defaults of the new mode.
    if (reset && database->getCommand()) {
        database->getCommand()->getHandlerTopic()->execCommandRequestResetDatabase(
            QJsonObject(), command::definition::cmd_type_database_reset_t::all.ToString());
    }
}

} // namespace database
