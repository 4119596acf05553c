#ifndef DATABASE_RT_HANDLER_STATUS_T_H
#define DATABASE_RT_HANDLER_STATUS_T_H

#include <QJsonObject>
#include <QObject>
#include <QString>
#include <QStringList>

#include "database/handler_frame_t.h"

#include "database/database_export.h"

namespace database {

class database_t;

namespace realtime {
class realtime_t;
class rt_data_t;
}

/**
 * Applies the realtime status packets to the live tree, in every role: the
 * realtime router's status signals arrive at the slots of the same names. A
 * status says what the world is like, so it is applied without validation.
 * Created by database_t.
 */
class DATABASE_EXPORT rt_handler_status_t : public QObject
{
    Q_OBJECT
public:
    rt_handler_status_t(database_t* database, QObject* parent);
    rt_handler_status_t(rt_handler_status_t const& other);
    ~rt_handler_status_t() override;

    void initStatusEvent(bool connect);

Q_SIGNALS:
    void CheckPersistentConsistency(QStringList _howCheck);
    void CheckPersistentConsistency();

public Q_SLOTS:
    void onRealtimeStatusDatabase(QJsonObject _packet);
    void onRealtimeStatusPresenceSimulation(QJsonObject _packet);
    void onRealtimeStatusSmartButton(QJsonObject _packet);
    void onRealtimeStatusAstronomical(QJsonObject _packet);
    void onRealtimeStatusItems(QJsonObject _packet);
    void onRealtimeStatusItem(QJsonObject _packet, QString _key);
    void onRealtimeStatusInstallation(QJsonObject _packet);
    void onRealtimeStatusInstallationMqttDevice(QJsonObject _packet, QString _key);
    void onRealtimeStatusNotify(QJsonObject _packet);
    void onRealtimeStatusUserNotify(QJsonObject _packet);
    void onRealtimeStatusSystemNotify(QJsonObject _packet);
    void onRealtimeStatusUserNotifyObjects(QJsonObject _packet, QString _key);
    void onRealtimeStatusSystemNotifyObjects(QJsonObject _packet, QString _key);
    void onRealtimeStatusStorage(QJsonObject _packet);
    void onRealtimeStatusScenary(QJsonObject _packet);
    void onRealtimeStatusScenaryObjects(QJsonObject _packet, QString _key);
    void onRealtimeStatusRules(QJsonObject _packet);
    void onRealtimeStatusRulesObjects(QJsonObject _packet, QString _key);
    void onRealtimeStatusSchedulers(QJsonObject _packet);
    void onRealtimeStatusScheduler(QJsonObject _packet, QString _key);
    void onRealtimeStatusDriverStatusKnx(QJsonObject _packet, QString _key);
    void onRealtimeStatusDriverStatusBaos(QJsonObject _packet, QString _key);
    void onRealtimeStatusDriverStatusInfoKnx(QJsonObject _packet, QString _key);
    void onRealtimeStatusDriverStatusInfoBaos(QJsonObject _packet, QString _key);
    void onRealtimeStatusDriverInterfacesKnx(QJsonObject _packet);
    void onRealtimeStatusDriverInterfacesBaos(QJsonObject _packet);
    void onRealtimeStatusDrivers(QJsonObject _packet);
    void onRealtimeStatusDriversKnxMode(QJsonObject _packet);
    void onRealtimeStatusDriversInternal(QJsonObject _packet);
    void onRealtimeStatusDriversInternalSensors(QJsonObject _packet);
    void onRealtimeStatusDriversKnx(QJsonObject _packet);
    void onRealtimeStatusDriversBaos(QJsonObject _packet);
    void onRealtimeStatusSystemDateTime(QJsonObject _packet);
    void onRealtimeStatusSystemConnections(QJsonObject _packet);
    void onRealtimeStatusSystemUrls(QJsonObject _packet);
    void onRealtimeStatusThermos(QJsonObject _packet);
    void onRealtimeStatusThermo(QJsonObject _packet, QString _key);

private:
    /// The frame of every slot: the tree's lock, the trace line, the body.
    template<class Body>
    void handle(char const* slot, QJsonObject const& packet, Body body);
    /// A slot whose payload is one object of class T handed to apply: a
    /// payload that isn't an object, or an empty one, gives null.
    template<class T, class Apply>
    void handleObject(char const* slot, QJsonObject const& packet, Apply apply);
    /// A slot whose payload is a map of T handed to apply as a whole.
    template<class T, class Apply>
    void handleMap(char const* slot, QJsonObject const& packet, Apply apply);
    /// A slot whose payload is an array of T handed to apply as a list.
    template<class T, class Apply>
    void handleList(char const* slot, QJsonObject const& packet, Apply apply);

    database_t* database = nullptr;
    realtime::realtime_t* engine = nullptr;
    handler_frame_t frame{QStringLiteral("rt_handler_status_t"), QStringLiteral("Slots status:")};
};

} // namespace database

#endif // DATABASE_RT_HANDLER_STATUS_T_H
