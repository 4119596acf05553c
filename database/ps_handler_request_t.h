#ifndef DATABASE_PS_HANDLER_REQUEST_T_H
#define DATABASE_PS_HANDLER_REQUEST_T_H

#include <QJsonObject>
#include <QObject>
#include <QString>
#include <QStringList>

#include "database/handler_frame_t.h"
#include "database/rt_twin_t.h"
#include "database/persistent/dbs/ps_elements_t.h"
#include "database/persistent/dbs/ps_items_t.h"
#include "database/persistent/dbs/ps_presencesimulation_t.h"
#include "database/persistent/dbs/ps_smartbutton_t.h"
#include "database/persistent/objects/ps_object_item_t.h"
#include "database/persistent/objects/ps_object_user_t.h"

#include "database/database_export.h"

namespace database {

class database_t;
namespace persistent {
class persistent_t;
class ps_data_t;
}

/**
 * Applies the requests of the persistent database: it validates what a
 * request refers to, changes the tree with publication, and raises the
 * consistency check where a change may break references. One slot per
 * request route of the persistent router.
 */
class DATABASE_EXPORT ps_handler_request_t : public QObject
{
    Q_OBJECT
public:
    ps_handler_request_t(database_t* database, QObject* parent);
    ps_handler_request_t(ps_handler_request_t const& other);
    ~ps_handler_request_t() override;

    void initRequestEvent(bool connect);

    void handlePersistentRequestItem(persistent::objects::ps_object_item_t* item, QString const& id,
                                     bool& _consistency);
    void handleRequestItem(persistent::ps_items_map const& map, bool& _consistency);
    void handlePersistentRequestUsers(persistent::objects::ps_object_user_t* user, QString const& id,
                                      bool& _consistency);
    void handlePersistentRequestPresenceSimulation(persistent::dbs::ps_presencesimulation_t* object,
                                                   bool& _consistency);
    void handlePersistentRequestSmartButton(persistent::dbs::ps_smartbutton_t* object, bool& _consistency);
    void handlePersistentRequestElement(persistent::objects::ps_object_element_t* element, QString const& id,
                                        bool& _consistency);
    /// A scenario element owns its scene: it is created, renamed and removed with it.
    bool handlePersistentRequestElementScenary(persistent::objects::ps_object_element_t* element, QString const& id);
    /// A thermostat element owns its thermostat in the same way.
    bool handlePersistentRequestElementThermostat(persistent::objects::ps_object_element_t* element,
                                                  QString const& id);
    /// Fits an element to the tree: presets to its flags, functions to existing items.
    void handleElementCheck(QString const& id, persistent::objects::ps_object_element_t* element);
    /// The realtime twin follows the configuration of item id, keeping its value.
    void handleRealtimeItem(QString const& id);
    void handleRealtimeThermostat(QString const& id);

Q_SIGNALS:
    void consistency_check_async(QStringList _howCheck = QStringList(), bool _persistent = true,
                                 bool _realtime = true);
    void consistency_check_sync(QStringList _howCheck = QStringList(), bool _persistent = true,
                                bool _realtime = true);

public Q_SLOTS:
    void onPersistentRequestDatabase(QJsonObject _packet);
    void onPersistentRequestGeneral(QJsonObject _packet);
    void onPersistentRequestGeneralParam(QJsonObject _packet);
    void onPersistentRequestInformation(QJsonObject _packet);
    void onPersistentRequestStorage(QJsonObject _packet);
    void onPersistentRequestUsers(QJsonObject _packet);
    void onPersistentRequestUser(QJsonObject _packet, QString _key);
    void onPersistentRequestDrivers(QJsonObject _packet);
    void onPersistentRequestDriversInternal(QJsonObject _packet);
    void onPersistentRequestDriversInternalSensors(QJsonObject _packet);
    void onPersistentRequestDriversKnx(QJsonObject _packet);
    void onPersistentRequestDriverKnxBus(QJsonObject _packet, QString _key);
    void onPersistentRequestDriversBaos(QJsonObject _packet);
    void onPersistentRequestDriverBaosBus(QJsonObject _packet, QString _key);
    void onPersistentRequestDriversClock(QJsonObject _packet);
    void onPersistentRequestDriversKnxEnabled(QJsonObject _packet);
    void onPersistentRequestDriversBaosEnabled(QJsonObject _packet);
    void onPersistentRequestDriversClockEnabled(QJsonObject _packet);
    void onPersistentRequestPresenceSimulation(QJsonObject _packet);
    void onPersistentRequestSmartButton(QJsonObject _packet);
    void onPersistentRequestItems(QJsonObject _packet);
    void onPersistentRequestItem(QJsonObject _packet, QString _key);
    void onPersistentRequestNotify(QJsonObject _packet);
    void onPersistentRequestNotifyObjects(QJsonObject _packet, QString _key);
    void onPersistentRequestNotifyEmail(QJsonObject _packet, QString _key);
    void onPersistentRequestNotifySMTP(QJsonObject _packet);
    void onPersistentRequestNotifyEnabled(QJsonObject _packet);
    void onPersistentRequestNotifySoundLen(QJsonObject _packet);
    void onPersistentRequestScenary(QJsonObject _packet);
    void onPersistentRequestScenaryObjects(QJsonObject _packet, QString _key);
    void onPersistentRequestScenaryEnabled(QJsonObject _packet);
    void onPersistentRequestRules(QJsonObject _packet);
    void onPersistentRequestRulesObjects(QJsonObject _packet, QString _key);
    void onPersistentRequestRulesEnabled(QJsonObject _packet);
    void onPersistentRequestSchedulers(QJsonObject _packet);
    void onPersistentRequestScheduler(QJsonObject _packet, QString _key);
    void onPersistentRequestSchedulersEnabled(QJsonObject _packet);
    void onPersistentRequestPageStack(QJsonObject _packet);
    void onPersistentRequestOptions(QJsonObject _packet);
    void onPersistentRequestElements(QJsonObject _packet);
    void onPersistentRequestElement(QJsonObject _packet, QString _key);
    void onPersistentRequestThermos(QJsonObject _packet);
    void onPersistentRequestThermo(QJsonObject _packet, QString _key);

private:
    /// The frame of every slot: lock, trace, body, and the check once unlocked.
    /// live: the slot also changes the realtime twins, whose lock comes second.
    template<class Body>
    void handle(char const* slot, QJsonObject const& packet, Body body, bool live = false);
    /// The frame for a slot whose payload is one object of class T handed to
    /// apply; check says whether the consistency check follows.
    template<class T, class Apply>
    void handleObject(char const* slot, QJsonObject const& packet, bool check, Apply apply);
    /// The frame for a slot whose payload is a map of T: apply for each entry.
    template<class T, class Apply>
    void handleMap(char const* slot, QJsonObject const& packet, bool check, Apply apply);
    /// The frame for a slot whose payload is a bare value of the given type.
    template<class Apply>
    void handleValue(char const* slot, QJsonObject const& packet, QJsonValue::Type type, Apply apply);
    /// Whether an item id names an item of the tree.
    bool itemExists(QString const& id) const;

    handler_frame_t frame{QStringLiteral("ps_handler_request")};
    database_t* database = nullptr;
    // Taken once: the façade's accessor takes the engine's lock, which the slots already hold.
    persistent::persistent_t* engine = nullptr;
    rt_twin_t twin;
};

} // namespace database

#endif // DATABASE_PS_HANDLER_REQUEST_T_H
