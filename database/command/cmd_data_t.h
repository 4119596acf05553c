#ifndef DATABASE_COMMAND_CMD_DATA_T_H
#define DATABASE_COMMAND_CMD_DATA_T_H

#include <QJsonObject>
#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"
#include "database/command/define/cmd_type_database_reset_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
class ps_data_t;
namespace objects {
class ps_smtp_notify_t;
}
} // namespace persistent
namespace presencesimulation {
class psi_data_t;
}

namespace command {

/**
 * Builds the packets of the command channel: orders to the store as a whole
 * (reset, load) and the SMTP test and pairing, which only a host carries out.
 * It holds no data; requests leave by onRequest, the pairing code by
 * onUpdated, both towards command_t.
 */
class DATABASE_EXPORT cmd_data_t : public base::topicbase_t
{
    Q_OBJECT
public:
    Q_INVOKABLE explicit cmd_data_t(QObject* parent = nullptr);

    QString const& getPrefix() const { return prefix; }

    void requestResetDatabase(definition::cmd_type_database_reset_t const& kind);
    /// The same packet, returned instead of sent.
    QJsonObject getPacketResetDatabase(definition::cmd_type_database_reset_t const& kind) const;
    /// A null tree is refused and sends nothing, here and in the two below.
    void requestPersistentLoadDatabase(persistent::ps_data_t* tree);
    void requestPresenceSimulationLoadDatabase(presencesimulation::psi_data_t* tree);
    void requestSetSMTP(persistent::objects::ps_smtp_notify_t* smtp);
    void requestStartPairing(bool start, QString const& name);
    /// "status/DB/command/pairing/command" with command, and destination when it isn't blank.
    void updateCodePairing(QString const& command, QJsonObject const& payload, QString const& destination);

    /// Refuses packet with message through onObjectError: an order that can't be carried out.
    void refuse(QJsonObject const& packet, QString const& message);

    void initRequestSignals(QObject* target, bool connect);

private:
    /// Sends a request for topic's tail with object serialized, or refuses a null object.
    void requestObject(QString const& tail, base::topicbase_t const* object);

    QString prefix = QStringLiteral("[command] ");
};

} // namespace command
} // namespace database

#endif // DATABASE_COMMAND_CMD_DATA_T_H
