#include "database/command/cmd_data_t.h"

#include "database/base/literals.h"
#include "database/persistent/objects/ps_smtp_notify_t.h"
#include "database/persistent/ps_data_t.h"
#include "database/presencesimulation/psi_data_t.h"

namespace database {
namespace command {

cmd_data_t::cmd_data_t(QObject* parent)
    : topicbase_t(literals::request_command, parent)
{
}

void cmd_data_t::requestResetDatabase(definition::cmd_type_database_reset_t const& kind)
{
    Q_EMIT onRequest(getPacketResetDatabase(kind));
}

QJsonObject cmd_data_t::getPacketResetDatabase(definition::cmd_type_database_reset_t const& kind) const
{
    return getPacketRequest(topic + QStringLiteral("/reset/") + kind.ToString(), QJsonObject());
}

void cmd_data_t::requestPersistentLoadDatabase(persistent::ps_data_t* tree)
{
    requestObject(QStringLiteral("/persistent/load/database"), tree);
}

void cmd_data_t::requestPresenceSimulationLoadDatabase(presencesimulation::psi_data_t* tree)
{
    requestObject(QStringLiteral("/presencesimulation/load/database"), tree);
}

void cmd_data_t::requestSetSMTP(persistent::objects::ps_smtp_notify_t* smtp)
{
    requestObject(QStringLiteral("/smtp/test"), smtp);
}

void cmd_data_t::requestStartPairing(bool start, QString const& name)
{
    Q_EMIT onRequest(getPacketRequest(topic + QStringLiteral("/pairing/start"),
                                      QJsonObject{{QStringLiteral("start"), start}, {QStringLiteral("name"), name}}));
}

void cmd_data_t::updateCodePairing(QString const& command, QJsonObject const& payload, QString const& destination)
{
    QJsonObject packet = getPacketUpdated(literals::status_command + QStringLiteral("/pairing/command"), payload);
    packet.insert(QStringLiteral("command"), command);
    if (!destination.trimmed().isEmpty())
        packet.insert(QStringLiteral("destination"), destination);
    Q_EMIT onUpdated(packet);
}

void cmd_data_t::refuse(QJsonObject const& packet, QString const& message)
{
    Q_EMIT onObjectError(packet, message);
}

void cmd_data_t::initRequestSignals(QObject* target, bool connect)
{
    connectRequestSignals(target, connect);
}

void cmd_data_t::requestObject(QString const& tail, base::topicbase_t const* object)
{
    if (!object) {
        refuse(getPacketRequest(topic + tail, QJsonValue()), QStringLiteral("Not permitted nullptr"));
        return;
    }
    Q_EMIT onRequest(getPacketRequest(topic + tail, object->toJson()));
}

} // namespace command
} // namespace database
