#ifndef DATABASE_RT_HANDLER_REQUEST_T_H
#define DATABASE_RT_HANDLER_REQUEST_T_H

#include <QJsonObject>
#include <QObject>

#include "database/handler_frame_t.h"

#include "database/database_export.h"

namespace database {

class database_t;

namespace realtime {
class realtime_t;
}

/**
 * The one realtime request an offline process carries out by itself: the
 * change of the KNX access mode, which rebuilds the database from the
 * defaults of the new mode. database_t creates it in the offline role only.
 */
class DATABASE_EXPORT rt_handler_request_t : public QObject
{
    Q_OBJECT
public:
    rt_handler_request_t(database_t* database, QObject* parent);
    rt_handler_request_t(rt_handler_request_t const& other);
    ~rt_handler_request_t() override;

    void initRequestEvent(bool connect);

public Q_SLOTS:
    void onRealtimeRequestDriversKnxMode(QJsonObject _packet);

private:
    database_t* database = nullptr;
    realtime::realtime_t* engine = nullptr;
    handler_frame_t frame{QStringLiteral("rt_handler_request")};
};

} // namespace database

#endif // DATABASE_RT_HANDLER_REQUEST_T_H
