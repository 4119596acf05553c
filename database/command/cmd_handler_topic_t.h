#ifndef DATABASE_COMMAND_CMD_HANDLER_TOPIC_T_H
#define DATABASE_COMMAND_CMD_HANDLER_TOPIC_T_H

#include <QJsonObject>
#include <QObject>
#include <QString>

#include "database/base/topic_routes_t.h"
#include "database/handler_frame_t.h"

#include "database/database_export.h"

namespace database {

class database_t;

namespace persistent {
class ps_data_t;
}

namespace command {

/**
 * Decides what a command packet orders, and raises one signal for it.
 *
 * Only requests are routed: the command channel has no state that could
 * change, so its change routes stay empty. In the offline role the three
 * orders a process can carry out by itself (reset, and the load of either
 * database) are connected to the exec slots, which act on the façade's
 * engines; the SMTP test and pairing are always the host's.
 */
class DATABASE_EXPORT cmd_handler_topic_t : public QObject
{
    Q_OBJECT
public:
    /// The routing tables, one per form of topic.
    enum form_t { Change, Request };

    cmd_handler_topic_t(database_t* database, QObject* parent = nullptr);

    /// Routes a request; with emitSignal false it only tells whether it can.
    bool whoIsRequest(QJsonObject const& packet, bool emitSignal = true);
    /// Routes a change, raising onCommandUpdatedSomething first at a match.
    bool whoIsChange(QJsonObject const& packet, bool emitSignal = true);

    /// Connects the three orders to the exec slots, or undoes it.
    void initInternalEvent(bool connect);
    bool isInternalEventConnected() const { return internalEvents; }
    database_t* getDatabase() const { return database; }

    /// The table of one form, as tests read it.
    base::topic_routes_t const& routes(form_t form) const;

Q_SIGNALS:
    void onCommandUpdatedSomething(QJsonObject _packet);
    void onCommandRequestPersistentLoadDatabase(QJsonObject _packet);
    void onCommandRequestPresencesimulationLoadDatabase(QJsonObject _packet);
    void onCommandRequestSMTPTest(QJsonObject _packet);
    /// Declared for hosts; the request gate keeps this library from raising it.
    void onCommandStatusPairing(QJsonObject _packet);
    void onCommandRequestPairing(QJsonObject _packet);
    void onCommandRequestResetDatabase(QJsonObject _packet, QString _wath);

public Q_SLOTS:
    /// Replaces the configuration by the packet's document through a request;
    /// live state and the week start empty. A payload that is no usable
    /// configuration is refused and changes nothing.
    void execCommandRequestPersistentLoadDatabase(QJsonObject _packet);
    /// Empties the week: the payload is not read.
    void execCommandRequestPresencesimulationLoadDatabase(QJsonObject _packet);
    /// "all" puts the three databases back to their defaults, "presencesimulation"
    /// the week alone; any other kind does nothing.
    void execCommandRequestResetDatabase(QJsonObject _packet, QString _wath);

private:
    void initUpdateSignals();
    /// The payload as a configuration tree ready to load, or null with the reason in refusal.
    persistent::ps_data_t* acceptedTree(QJsonObject const& packet, QString& refusal) const;
    void refuse(QJsonObject const& packet, QString const& message) const;

    database_t* database = nullptr;
    base::topic_routes_t changeRoutes;
    base::topic_routes_t requestRoutes;
    bool internalEvents = false;
    handler_frame_t frame{QStringLiteral("cmd_handler_topic")};
};

} // namespace command
} // namespace database

#endif // DATABASE_COMMAND_CMD_HANDLER_TOPIC_T_H
