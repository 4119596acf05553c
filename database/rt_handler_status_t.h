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
    void onRealtimeStatusItems(QJsonObject _packet);
    void onRealtimeStatusItem(QJsonObject _packet, QString _key);
    void onRealtimeStatusThermos(QJsonObject _packet);
    void onRealtimeStatusThermo(QJsonObject _packet, QString _key);

private:
    template<class Body>
    void handle(char const* slot, QJsonObject const& packet, Body body);

    database_t* database = nullptr;
    realtime::realtime_t* engine = nullptr;
    handler_frame_t frame{QStringLiteral("rt_handler_status_t"), QStringLiteral("Slots status:")};
};

} // namespace database

#endif // DATABASE_RT_HANDLER_STATUS_T_H
