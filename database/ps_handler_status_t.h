#ifndef DATABASE_PS_HANDLER_STATUS_T_H
#define DATABASE_PS_HANDLER_STATUS_T_H

#include <QJsonObject>
#include <QObject>
#include <QString>
#include <QStringList>

#include "database/handler_frame_t.h"
#include "database/rt_twin_t.h"
#include "database/persistent/dbs/ps_items_t.h"
#include "database/persistent/objects/ps_object_item_t.h"

#include "database/database_export.h"

namespace database {

class database_t;
namespace persistent {
class persistent_t;
class ps_data_t;
}

/**
 * Applies the status packets of the persistent database: the owner has
 * decided, and this process takes the state over as it comes, without
 * validation, dependent changes or consistency checks. A client learns the
 * whole configuration this way.
 */
class DATABASE_EXPORT ps_handler_status_t : public QObject
{
    Q_OBJECT
public:
    ps_handler_status_t(database_t* database, QObject* parent);
    ps_handler_status_t(ps_handler_status_t const& other);
    ~ps_handler_status_t() override;

    void initRequestEvent(bool connect);

    void handlePersistentStatusItem(persistent::objects::ps_object_item_t* item, QString const& id, QJsonObject const& json);
    void handlePersistentStatusItem(persistent::ps_items_map const& map);
    /// The realtime twins follow the configuration: one item keeps its live
    /// value, a whole list replaces every twin.
    void handleRealtimeItem(QString const& id);
    void handleRealtimeItem(persistent::ps_items_map const& map);
    void handleRealtimeThermostat(QString const& id);

Q_SIGNALS:
    void CheckPersistentConsistency(QStringList _howCheck);
    void CheckPersistentConsistency();

public Q_SLOTS:
    void onPersistentStatusDatabase(QJsonObject _packet);
    void onPersistentStatusGeneral(QJsonObject _packet);
    void onPersistentStatustGeneralParam(QJsonObject _packet);
    void onPersistentStatusInformation(QJsonObject _packet);
    void onPersistentStatusStorage(QJsonObject _packet);
    void onPersistentStatusUsers(QJsonObject _packet);
    void onPersistentStatusUser(QJsonObject _packet, QString _key);
    void onPersistentStatusDrivers(QJsonObject _packet);
    void onPersistentStatusDriversInternal(QJsonObject _packet);
    void onPersistentStatusDriversInternalSensors(QJsonObject _packet);
    void onPersistentStatusDriversKnx(QJsonObject _packet);
    void onPersistentStatusDriverKnxBus(QJsonObject _packet, QString _key);
    void onPersistentStatusDriversBaos(QJsonObject _packet);
    void onPersistentStatusDriverBaosBus(QJsonObject _packet, QString _key);
    void onPersistentStatusDriversClock(QJsonObject _packet);
    void onPersistentStatusDriversKnxEnabled(QJsonObject _packet);
    void onPersistentStatusDriversBaosEnabled(QJsonObject _packet);
    void onPersistentStatusDriversClockEnabled(QJsonObject _packet);
    void onPersistentStatusPresenceSimulation(QJsonObject _packet);
    void onPersistentStatusSmartButton(QJsonObject _packet);
    void onPersistentStatusItems(QJsonObject _packet);
    void onPersistentStatusItem(QJsonObject _packet, QString _key);
    void onPersistentStatusNotify(QJsonObject _packet);
    void onPersistentStatusNotifyObjects(QJsonObject _packet, QString _key);
    void onPersistentStatusNotifyEmail(QJsonObject _packet, QString _key);
    void onPersistentStatusNotifySMTP(QJsonObject _packet);
    void onPersistentStatusNotifyEnabled(QJsonObject _packet);
    void onPersistentStatusNotifySoundLen(QJsonObject _packet);
    void onPersistentStatusScenary(QJsonObject _packet);
    void onPersistentStatusScenaryObjects(QJsonObject _packet, QString _key);
    void onPersistentStatusScenaryEnabled(QJsonObject _packet);
    void onPersistentStatusRules(QJsonObject _packet);
    void onPersistentStatusRulesObjects(QJsonObject _packet, QString _key);
    void onPersistentStatusRulesEnabled(QJsonObject _packet);
    void onPersistentStatusSchedulers(QJsonObject _packet);
    void onPersistentStatusScheduler(QJsonObject _packet, QString _key);
    void onPersistentStatusSchedulersEnabled(QJsonObject _packet);
    void onPersistentStatusPageStack(QJsonObject _packet);
    void onPersistentStatusOptions(QJsonObject _packet);
    void onPersistentStatusElements(QJsonObject _packet);
    void onPersistentStatusElement(QJsonObject _packet, QString _key);
    void onPersistentStatusThermos(QJsonObject _packet);
    void onPersistentStatusThermo(QJsonObject _packet, QString _key);

private:
    /// The frame of every slot: lock, trace, body.
    /// live: the slot also changes the realtime twins, whose lock comes second.
    template<class Body>
    void handle(char const* slot, QJsonObject const& packet, Body body, bool live = false);
    /// The frame for a slot whose payload is one object of class T handed to apply.
    template<class T, class Apply>
    void handleObject(char const* slot, QJsonObject const& packet, Apply apply);

    /// The frame for a slot whose payload is a map of T: apply for each entry.
    template<class T, class Apply>
    void handleMap(char const* slot, QJsonObject const& packet, Apply apply);
    /// The frame for a slot whose payload is a bare value of the given type.
    template<class Apply>
    void handleValue(char const* slot, QJsonObject const& packet, QJsonValue::Type type, Apply apply);

    handler_frame_t frame{QStringLiteral("ps_handler_status")};
    database_t* database = nullptr;
    // Taken once: the façade's accessor takes the engine's lock, which the slots already hold.
    persistent::persistent_t* engine = nullptr;
    rt_twin_t twin;
};

} // namespace database

#endif // DATABASE_PS_HANDLER_STATUS_T_H
