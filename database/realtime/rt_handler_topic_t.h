#ifndef DATABASE_REALTIME_RT_HANDLER_TOPIC_T_H
#define DATABASE_REALTIME_RT_HANDLER_TOPIC_T_H

#include <QJsonObject>
#include <QObject>
#include <QString>

#include "database/base/topic_routes_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {

/**
 * Decides what a packet of the realtime database is about, and raises one
 * signal for it.
 *
 * The status signals feed the realtime status handler; the change signals and
 * most request signals are for the host. Each route has a relative change
 * pattern and the same tail under "status/DB/realtime"; only some have a
 * request form under "request/DB/realtime". An offline process answers one
 * request by itself, the KNX mode, through its own small table.
 */
class DATABASE_EXPORT rt_handler_topic_t : public QObject
{
    Q_OBJECT
public:
    /// The routing tables, one per form of topic.
    enum form_t { Change, Status, Request, Offline };

    explicit rt_handler_topic_t(QObject* parent = nullptr);

    /// Routes a request packet; with emitSignal false it only tells whether it can.
    bool whoIsRequest(QJsonObject const& packet, bool emitSignal = true);
    /// Routes a request that an offline process answers itself.
    bool whoIsRequestOffline(QJsonObject const& packet, bool emitSignal = true);
    /// Routes a status packet; with emitSignal false it only tells whether it can.
    bool whoIsStatus(QJsonObject const& packet, bool emitSignal = true);
    /// Routes a change (updated) packet; emitSomething also raises onRealtimeUpdatedSomething.
    bool whoIsChange(QJsonObject const& packet, bool emitSignal = true, bool emitSomething = true);

    /// The table of one form, for inspection.
    base::topic_routes_t const& routes(form_t form) const;

Q_SIGNALS:
    void onRealtimeUpdatedSomething(QJsonObject _packet);

    // Changes of this process, for the host.
    void onRealtimeChangeDatabase(QJsonObject _packet);
    void onRealtimeChangeSystemDateTime(QJsonObject _packet);
    void onRealtimeChangeSystemConnections(QJsonObject _packet);
    void onRealtimeChangeSystemUrls(QJsonObject _packet);
    void onRealtimeChangePresenceSimulation(QJsonObject _packet);
    void onRealtimeChangeSmartButton(QJsonObject _packet);
    void onRealtimeChangeAstronomical(QJsonObject _packet);
    void onRealtimeChangeItems(QJsonObject _packet);
    void onRealtimeChangeInstallation(QJsonObject _packet);
    void onRealtimeChangeNotify(QJsonObject _packet);
    void onRealtimeChangeUserNotify(QJsonObject _packet);
    void onRealtimeChangeSystemNotify(QJsonObject _packet);
    void onRealtimeChangeStorage(QJsonObject _packet);
    void onRealtimeChangeScenary(QJsonObject _packet);
    void onRealtimeChangeRules(QJsonObject _packet);
    void onRealtimeChangeDrivers(QJsonObject _packet);
    void onRealtimeChangeDriversKnxMode(QJsonObject _packet);
    void onRealtimeChangeSchedulers(QJsonObject _packet);
    void onRealtimeChangeDriversInternal(QJsonObject _packet);
    void onRealtimeChangeDriversInternalSensors(QJsonObject _packet);
    void onRealtimeChangeDriversKnx(QJsonObject _packet);
    void onRealtimeChangeDriversBaos(QJsonObject _packet);
    void onRealtimeChangeDriverInterfacesKnx(QJsonObject _packet);
    void onRealtimeChangeDriverInterfacesBaos(QJsonObject _packet);
    void onRealtimeChangeThermos(QJsonObject _packet);
    void onRealtimeChangeItem(QJsonObject _packet, QString _key);
    void onRealtimeChangeInstallationMqttDevice(QJsonObject _packet, QString _key);
    void onRealtimeChangeUserNotifyObjects(QJsonObject _packet, QString _key);
    void onRealtimeChangeSystemNotifyObjects(QJsonObject _packet, QString _key);
    void onRealtimeChangeScenaryObjects(QJsonObject _packet, QString _key);
    void onRealtimeChangeRulesObjects(QJsonObject _packet, QString _key);
    void onRealtimeChangeScheduler(QJsonObject _packet, QString _key);
    void onRealtimeChangeDriverStatusKnx(QJsonObject _packet, QString _key);
    void onRealtimeChangeDriverStatusInfoKnx(QJsonObject _packet, QString _key);
    void onRealtimeChangeDriverStatusBaos(QJsonObject _packet, QString _key);
    void onRealtimeChangeDriverStatusInfoBaos(QJsonObject _packet, QString _key);
    void onRealtimeChangeThermo(QJsonObject _packet, QString _key);
    // Status packets from the owner of the state.
    void onRealtimeStatusDatabase(QJsonObject _packet);
    void onRealtimeStatusSystemDateTime(QJsonObject _packet);
    void onRealtimeStatusSystemConnections(QJsonObject _packet);
    void onRealtimeStatusSystemUrls(QJsonObject _packet);
    void onRealtimeStatusPresenceSimulation(QJsonObject _packet);
    void onRealtimeStatusSmartButton(QJsonObject _packet);
    void onRealtimeStatusAstronomical(QJsonObject _packet);
    void onRealtimeStatusItems(QJsonObject _packet);
    void onRealtimeStatusInstallation(QJsonObject _packet);
    void onRealtimeStatusNotify(QJsonObject _packet);
    void onRealtimeStatusUserNotify(QJsonObject _packet);
    void onRealtimeStatusSystemNotify(QJsonObject _packet);
    void onRealtimeStatusStorage(QJsonObject _packet);
    void onRealtimeStatusScenary(QJsonObject _packet);
    void onRealtimeStatusRules(QJsonObject _packet);
    void onRealtimeStatusDrivers(QJsonObject _packet);
    void onRealtimeStatusDriversKnxMode(QJsonObject _packet);
    void onRealtimeStatusSchedulers(QJsonObject _packet);
    void onRealtimeStatusDriversInternal(QJsonObject _packet);
    void onRealtimeStatusDriversInternalSensors(QJsonObject _packet);
    void onRealtimeStatusDriversKnx(QJsonObject _packet);
    void onRealtimeStatusDriversBaos(QJsonObject _packet);
    void onRealtimeStatusDriverInterfacesKnx(QJsonObject _packet);
    void onRealtimeStatusDriverInterfacesBaos(QJsonObject _packet);
    void onRealtimeStatusThermos(QJsonObject _packet);
    void onRealtimeStatusItem(QJsonObject _packet, QString _key);
    void onRealtimeStatusInstallationMqttDevice(QJsonObject _packet, QString _key);
    void onRealtimeStatusUserNotifyObjects(QJsonObject _packet, QString _key);
    void onRealtimeStatusSystemNotifyObjects(QJsonObject _packet, QString _key);
    void onRealtimeStatusScenaryObjects(QJsonObject _packet, QString _key);
    void onRealtimeStatusRulesObjects(QJsonObject _packet, QString _key);
    void onRealtimeStatusScheduler(QJsonObject _packet, QString _key);
    void onRealtimeStatusDriverStatusKnx(QJsonObject _packet, QString _key);
    void onRealtimeStatusDriverStatusInfoKnx(QJsonObject _packet, QString _key);
    void onRealtimeStatusDriverStatusBaos(QJsonObject _packet, QString _key);
    void onRealtimeStatusDriverStatusInfoBaos(QJsonObject _packet, QString _key);
    void onRealtimeStatusThermo(QJsonObject _packet, QString _key);
    // Requests to change the state.
    void onRealtimeRequestDatabase(QJsonObject _packet);
    void onRealtimeRequestPresenceSimulation(QJsonObject _packet);
    void onRealtimeRequestSmartButton(QJsonObject _packet);
    void onRealtimeRequestInstallation(QJsonObject _packet);
    void onRealtimeRequestUserNotify(QJsonObject _packet);
    void onRealtimeRequestSystemNotify(QJsonObject _packet);
    void onRealtimeRequestDrivers(QJsonObject _packet);
    void onRealtimeRequestDriversKnxMode(QJsonObject _packet);
    void onRealtimeRequestDriverInterfacesKnx(QJsonObject _packet);
    void onRealtimeRequestDriverInterfacesBaos(QJsonObject _packet);
    void onRealtimeRequestItem(QJsonObject _packet, QString _key);
    void onRealtimeRequestInstallationMqttDevice(QJsonObject _packet, QString _key);
    void onRealtimeRequestUserNotifyObjects(QJsonObject _packet, QString _key);
    void onRealtimeRequestSystemNotifyObjects(QJsonObject _packet, QString _key);
    void onRealtimeRequestScenaryObjects(QJsonObject _packet, QString _key);
    void onRealtimeRequestThermo(QJsonObject _packet, QString _key);

private:
    template<class Signal>
    void addRoute(QString const& pattern, Signal change, Signal status, Signal request = nullptr,
                  QString const& requestPattern = QString());
    void initUpdateSignals();
    void initUpdateSignalsOffline();

    base::topic_routes_t changeRoutes;
    base::topic_routes_t statusRoutes;
    base::topic_routes_t requestRoutes;
    base::topic_routes_t offlineRoutes;
};

} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_RT_HANDLER_TOPIC_T_H
