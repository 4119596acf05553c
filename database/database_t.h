#ifndef DATABASE_DATABASE_T_H
#define DATABASE_DATABASE_T_H

#include <QJsonObject>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QString>

#include "database/definition/service_t.h"
#include "database/definition/type_brand_t.h"
#include "database/persistent/define/ps_knx_mode_t.h"
#include "platform/logs/classlogs.h"

#include "database/database_export.h"

namespace database {

namespace persistent {
class persistent_t;
}
namespace realtime {
class realtime_t;
}
namespace presencesimulation {
class presencesimulation_t;
}
namespace command {
class command_t;
}
namespace rr {
class rr_base_t;
}
class ps_handler_request_t;
class ps_handler_status_t;
class psi_handler_request_t;
class psi_handler_status_t;
class rt_handler_status_t;
class rt_handler_request_t;
class consistency_t;

/**
 * The one object a host process creates. It brings up the library's
 * singletons and engines in their order, wires them together, and gives the
 * host the engines through its accessors; everything else goes by packets.
 */
class DATABASE_EXPORT database_t : public QObject
{
    Q_OBJECT
public:
    database_t(::database::definition::service_t const& service, ::database::definition::type_brand_t const& brand);
    database_t(::database::definition::service_t const& service, ::database::definition::type_brand_t const& brand,
               persistent::definition::ps_knx_mode_t const& mode);
    /// For QObject glue: role client; the host must have made the singletons.
    explicit database_t(QObject* parent);
    /// A second façade on copies of the engines; the singletons aren't touched.
    database_t(database_t const& other);
    ~database_t() override;

    /// Held briefly under the engine's access mutex, so that no handler is mid-slot.
    persistent::persistent_t* getPersistent() const;
    realtime::realtime_t* getRealtime() const;
    presencesimulation::presencesimulation_t* getPresenceSimulation() const;
    command::command_t* getCommand() const { return command; }

    /// The outside-service peers by service name; the façade owns them.
    QMap<QString, rr::rr_base_t*> const& get_rr_map() const { return rr; }
    rr::rr_base_t* get_rr(QString const& name) const { return rr.value(name, nullptr); }
    /// false deletes every peer; true first does that, then creates the image updater's.
    void initrr(bool create);

    ::database::definition::service_t getService() const { return service; }
    void setService(::database::definition::service_t const& service);
    QString getName() const { return name; }
    void setName(QString const& name);
    static QString getVersion();

    void initInternalEvent(bool connect);

    /// Repeats the present state of the topic of a failed request to local listeners.
    void roolbackPacket(QJsonObject packet);

    ps_handler_request_t* getHandlerRequest() const;
    ps_handler_status_t* getHandlerStatus() const;
    rt_handler_status_t* getRtHandlerStatus() const;
    /// Null but in the offline role.
    rt_handler_request_t* getRtHandlerRequest() const;
    consistency_t* getConsistency() const { return consistency; }

Q_SIGNALS:
    void onSyncRT(bool softreset, bool _save);
    void onSaveRequest();

public Q_SLOTS:
    /// Puts the three databases back to their defaults through the command
    /// channel's own order, whatever the role, without going by the host.
    void resetDatabase();

private Q_SLOTS:
    void eventOfflineRequest(QJsonObject _packet);
    void onPersistentUpdatedSomething(QJsonObject _packet);

private:
    void createEngines();
    void createHandlers();
    void setOfflineHandler();
    void log(QString const& message, ::utility::logs::LogLevel level, char const* source) const;

    ::database::definition::service_t service;
    QString name;
    persistent::persistent_t* persistent = nullptr;
    realtime::realtime_t* realtime = nullptr;
    presencesimulation::presencesimulation_t* presencesimulation = nullptr;
    command::command_t* command = nullptr;
    QPointer<ps_handler_request_t> ps_handler_request;
    QPointer<ps_handler_status_t> ps_handler_status;
    QPointer<rt_handler_status_t> rt_handler_status;
    QPointer<psi_handler_request_t> psi_handler_request;
    QPointer<psi_handler_status_t> psi_handler_status;
    QPointer<rt_handler_request_t> rt_handler_request;
    QMap<QString, rr::rr_base_t*> rr;
    consistency_t* consistency = nullptr;
};

} // namespace database

#endif // DATABASE_DATABASE_T_H
