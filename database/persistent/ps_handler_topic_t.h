#ifndef DATABASE_PERSISTENT_PS_HANDLER_TOPIC_T_H
#define DATABASE_PERSISTENT_PS_HANDLER_TOPIC_T_H

#include <QJsonObject>
#include <QObject>
#include <QString>
#include <QStringList>

#include "database/base/topic_routes_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {

/**
 * Decides what a packet of the persistent database is about, and raises one
 * signal for it.
 *
 * The request signals feed the request handler, the status signals the status
 * handler, and the change signals tell the host what changed in this process.
 * Every route exists in three forms: a relative change pattern, and the same
 * tail under the "request/DB/persistent" and "status/DB/persistent" prefixes.
 */
class DATABASE_EXPORT ps_handler_topic_t : public QObject
{
    Q_OBJECT
public:
    explicit ps_handler_topic_t(QObject* parent = nullptr);

    /// Routes a request packet; with emitSignal false it only tells whether it can.
    bool whoIsRequest(QJsonObject const& packet, bool emitSignal = true);
    /// Routes a status packet; with emitSignal false it only tells whether it can.
    bool whoIsStatus(QJsonObject const& packet, bool emitSignal = true);
    /// Routes a change (updated) packet; emitSomething also raises onPersistentUpdatedSomething.
    bool whoIsChange(QJsonObject const& packet, bool emitSignal = true, bool emitSomething = true);

    void initUpdateSignals();

    /// The relative pattern of every route, section routes first, each in
    /// trial order: the change form, from which the other two are made.
    QStringList routePatterns() const;

    enum form_t { Change, Status, Request };
    base::topic_routes_t const& routes(form_t form) const;

Q_SIGNALS:
    void onPersistentUpdatedSomething(QJsonObject _packet);

    // Changes of this process, for the host.
    void onPersistentChangeDatabase(QJsonObject _packet);
    void onPersistentChangePresenceSimulation(QJsonObject _packet);
    void onPersistentChangeSmartButton(QJsonObject _packet);
    void onPersistentChangeGeneral(QJsonObject _packet);
    void onPersistentChangeGeneralParam(QJsonObject _packet);
    void onPersistentChangeItems(QJsonObject _packet);
    void onPersistentChangeElements(QJsonObject _packet);
    void onPersistentChangeNotify(QJsonObject _packet);
    void onPersistentChangeStorage(QJsonObject _packet);
    void onPersistentChangeScenary(QJsonObject _packet);
    void onPersistentChangeRules(QJsonObject _packet);
    void onPersistentChangeDrivers(QJsonObject _packet);
    void onPersistentChangeInformation(QJsonObject _packet);
    void onPersistentChangeVersions(QJsonObject _packet);
    void onPersistentChangeSchedulers(QJsonObject _packet);
    void onPersistentChangeSchedulersEnabled(QJsonObject _packet);
    void onPersistentChangeNotifyEnabled(QJsonObject _packet);
    void onPersistentChangeNotifySoundLen(QJsonObject _packet);
    void onPersistentChangeScenaryEnabled(QJsonObject _packet);
    void onPersistentChangeRulesEnabled(QJsonObject _packet);
    void onPersistentChangeDriversInternal(QJsonObject _packet);
    void onPersistentChangeDriversInternalSensors(QJsonObject _packet);
    void onPersistentChangeDriversKnx(QJsonObject _packet);
    void onPersistentChangeDriversKnxEnabled(QJsonObject _packet);
    void onPersistentChangeDriversBaos(QJsonObject _packet);
    void onPersistentChangeDriversBaosEnabled(QJsonObject _packet);
    void onPersistentChangeDriversClock(QJsonObject _packet);
    void onPersistentChangeDriversClockEnabled(QJsonObject _packet);
    void onPersistentChangePageStack(QJsonObject _packet);
    void onPersistentChangeOptions(QJsonObject _packet);
    void onPersistentChangeUsers(QJsonObject _packet);
    void onPersistentChangeThermos(QJsonObject _packet);
    void onPersistentChangeNotifySMTP(QJsonObject _packet);
    void onPersistentChangeItem(QJsonObject _packet, QString _key);
    void onPersistentChangeNotifyObjects(QJsonObject _packet, QString _key);
    void onPersistentChangeNotifyEmail(QJsonObject _packet, QString _key);
    void onPersistentChangeScenaryObjects(QJsonObject _packet, QString _key);
    void onPersistentChangeRulesObjects(QJsonObject _packet, QString _key);
    void onPersistentChangeScheduler(QJsonObject _packet, QString _key);
    void onPersistentChangeDriverKnxBus(QJsonObject _packet, QString _key);
    void onPersistentChangeDriverBaosBus(QJsonObject _packet, QString _key);
    void onPersistentChangeElement(QJsonObject _packet, QString _key);
    void onPersistentChangeUser(QJsonObject _packet, QString _key);
    void onPersistentChangeThermo(QJsonObject _packet, QString _key);
    // Status packets from the owner of the state.
    void onPersistentStatusDatabase(QJsonObject _packet);
    void onPersistentStatusPresenceSimulation(QJsonObject _packet);
    void onPersistentStatusSmartButton(QJsonObject _packet);
    void onPersistentStatusGeneral(QJsonObject _packet);
    void onPersistentStatusGeneralParam(QJsonObject _packet);
    void onPersistentStatusItems(QJsonObject _packet);
    void onPersistentStatusElements(QJsonObject _packet);
    void onPersistentStatusNotify(QJsonObject _packet);
    void onPersistentStatusStorage(QJsonObject _packet);
    void onPersistentStatusScenary(QJsonObject _packet);
    void onPersistentStatusRules(QJsonObject _packet);
    void onPersistentStatusDrivers(QJsonObject _packet);
    void onPersistentStatusInformation(QJsonObject _packet);
    void onPersistentStatusVersions(QJsonObject _packet);
    void onPersistentStatusSchedulers(QJsonObject _packet);
    void onPersistentStatusSchedulersEnabled(QJsonObject _packet);
    void onPersistentStatusNotifyEnabled(QJsonObject _packet);
    void onPersistentStatusNotifySoundLen(QJsonObject _packet);
    void onPersistentStatusScenaryEnabled(QJsonObject _packet);
    void onPersistentStatusRulesEnabled(QJsonObject _packet);
    void onPersistentStatusDriversInternal(QJsonObject _packet);
    void onPersistentStatusDriversInternalSensors(QJsonObject _packet);
    void onPersistentStatusDriversKnx(QJsonObject _packet);
    void onPersistentStatusDriversKnxEnabled(QJsonObject _packet);
    void onPersistentStatusDriversBaos(QJsonObject _packet);
    void onPersistentStatusDriversBaosEnabled(QJsonObject _packet);
    void onPersistentStatusDriversClock(QJsonObject _packet);
    void onPersistentStatusDriversClockEnabled(QJsonObject _packet);
    void onPersistentStatusPageStack(QJsonObject _packet);
    void onPersistentStatusOptions(QJsonObject _packet);
    void onPersistentStatusUsers(QJsonObject _packet);
    void onPersistentStatusThermos(QJsonObject _packet);
    void onPersistentStatusNotifySMTP(QJsonObject _packet);
    void onPersistentStatusItem(QJsonObject _packet, QString _key);
    void onPersistentStatusNotifyObjects(QJsonObject _packet, QString _key);
    void onPersistentStatusNotifyEmail(QJsonObject _packet, QString _key);
    void onPersistentStatusScenaryObjects(QJsonObject _packet, QString _key);
    void onPersistentStatusRulesObjects(QJsonObject _packet, QString _key);
    void onPersistentStatusScheduler(QJsonObject _packet, QString _key);
    void onPersistentStatusDriverKnxBus(QJsonObject _packet, QString _key);
    void onPersistentStatusDriverBaosBus(QJsonObject _packet, QString _key);
    void onPersistentStatusElement(QJsonObject _packet, QString _key);
    void onPersistentStatusUser(QJsonObject _packet, QString _key);
    void onPersistentStatusThermo(QJsonObject _packet, QString _key);
    // Requests to change the state.
    void onPersistentRequestDatabase(QJsonObject _packet);
    void onPersistentRequestPresenceSimulation(QJsonObject _packet);
    void onPersistentRequestSmartButton(QJsonObject _packet);
    void onPersistentRequestGeneral(QJsonObject _packet);
    void onPersistentRequestGeneralParam(QJsonObject _packet);
    void onPersistentRequestItems(QJsonObject _packet);
    void onPersistentRequestElements(QJsonObject _packet);
    void onPersistentRequestNotify(QJsonObject _packet);
    void onPersistentRequestStorage(QJsonObject _packet);
    void onPersistentRequestScenary(QJsonObject _packet);
    void onPersistentRequestRules(QJsonObject _packet);
    void onPersistentRequestDrivers(QJsonObject _packet);
    void onPersistentRequestInformation(QJsonObject _packet);
    void onPersistentRequestVersions(QJsonObject _packet);
    void onPersistentRequestSchedulers(QJsonObject _packet);
    void onPersistentRequestSchedulersEnabled(QJsonObject _packet);
    void onPersistentRequestNotifyEnabled(QJsonObject _packet);
    void onPersistentRequestNotifySoundLen(QJsonObject _packet);
    void onPersistentRequestScenaryEnabled(QJsonObject _packet);
    void onPersistentRequestRulesEnabled(QJsonObject _packet);
    void onPersistentRequestDriversInternal(QJsonObject _packet);
    void onPersistentRequestDriversInternalSensors(QJsonObject _packet);
    void onPersistentRequestDriversKnx(QJsonObject _packet);
    void onPersistentRequestDriversKnxEnabled(QJsonObject _packet);
    void onPersistentRequestDriversBaos(QJsonObject _packet);
    void onPersistentRequestDriversBaosEnabled(QJsonObject _packet);
    void onPersistentRequestDriversClock(QJsonObject _packet);
    void onPersistentRequestDriversClockEnabled(QJsonObject _packet);
    void onPersistentRequestPageStack(QJsonObject _packet);
    void onPersistentRequestOptions(QJsonObject _packet);
    void onPersistentRequestUsers(QJsonObject _packet);
    void onPersistentRequestThermos(QJsonObject _packet);
    void onPersistentRequestNotifySMTP(QJsonObject _packet);
    void onPersistentRequestItem(QJsonObject _packet, QString _key);
    void onPersistentRequestNotifyObjects(QJsonObject _packet, QString _key);
    void onPersistentRequestNotifyEmail(QJsonObject _packet, QString _key);
    void onPersistentRequestScenaryObjects(QJsonObject _packet, QString _key);
    void onPersistentRequestRulesObjects(QJsonObject _packet, QString _key);
    void onPersistentRequestScheduler(QJsonObject _packet, QString _key);
    void onPersistentRequestDriverKnxBus(QJsonObject _packet, QString _key);
    void onPersistentRequestDriverBaosBus(QJsonObject _packet, QString _key);
    void onPersistentRequestElement(QJsonObject _packet, QString _key);
    void onPersistentRequestUser(QJsonObject _packet, QString _key);
    void onPersistentRequestThermo(QJsonObject _packet, QString _key);

private:
    template<class Signal>
    void addRoute(QString const& relative, QString const& tail, Signal change, Signal status, Signal request);

    base::topic_routes_t changeRoutes;
    base::topic_routes_t statusRoutes;
    base::topic_routes_t requestRoutes;
};

} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_PS_HANDLER_TOPIC_T_H
