#include "database/realtime/rt_handler_topic_t.h"

#include "database/base/literals.h"
#include "platform/logs/classlogs.h"

namespace database {
namespace realtime {

namespace {

QString absolute(QString const& prefix, QString const& pattern)
{
    return QStringLiteral("^") + prefix + QLatin1Char('/') + pattern;
}

} // namespace

rt_handler_topic_t::rt_handler_topic_t(QObject* parent)
    : QObject(parent)
    , statusRoutes(literals::status_realtime)
    , requestRoutes(literals::request_realtime)
    , offlineRoutes(literals::request_realtime)
{
    CLASSLOGS_LOG(QStringLiteral("Starting realtime topic handler engine ..."),
                  ::utility::logs::trace, QStringLiteral("rt_handler_topic_t"));
    initUpdateSignals();
    initUpdateSignalsOffline();
}

base::topic_routes_t const& rt_handler_topic_t::routes(form_t form) const
{
    switch (form) {
    case Change: return changeRoutes;
    case Status: return statusRoutes;
    case Request: return requestRoutes;
    case Offline: break;
    }
    return offlineRoutes;
}

template<class Signal>
void rt_handler_topic_t::addRoute(QString const& pattern, Signal change, Signal status, Signal request,
                                  QString const& requestPattern)
{
    changeRoutes.insert(QStringLiteral("^") + pattern, this, change);
    statusRoutes.insert(absolute(literals::status_realtime, pattern), this, status);
    if (request) {
        requestRoutes.insert(absolute(literals::request_realtime, requestPattern.isEmpty() ? pattern : requestPattern),
                             this, request);
    }
}

void rt_handler_topic_t::initUpdateSignals()
{
    using T = rt_handler_topic_t;
    // Letter classes such as [objects_list], the optional last letter of a
    // section key and the wider request pattern of the BAOS interfaces are
    // how other processes' topics have always been matched.
    addRoute(QStringLiteral(R"(DB$)"), &T::onRealtimeChangeDatabase, &T::onRealtimeStatusDatabase,
             &T::onRealtimeRequestDatabase);
    addRoute(QStringLiteral(R"(system/datetime$)"),
             &T::onRealtimeChangeSystemDateTime, &T::onRealtimeStatusSystemDateTime);
    addRoute(QStringLiteral(R"(system/connections$)"),
             &T::onRealtimeChangeSystemConnections, &T::onRealtimeStatusSystemConnections);
    addRoute(QStringLiteral(R"(system/urls$)"),
             &T::onRealtimeChangeSystemUrls, &T::onRealtimeStatusSystemUrls);
    addRoute(QStringLiteral(R"(presencesimulation?/?[\S ]*$)"),
             &T::onRealtimeChangePresenceSimulation, &T::onRealtimeStatusPresenceSimulation,
             &T::onRealtimeRequestPresenceSimulation);
    addRoute(QStringLiteral(R"(smartbutton?/?[\S ]*$)"),
             &T::onRealtimeChangeSmartButton, &T::onRealtimeStatusSmartButton,
             &T::onRealtimeRequestSmartButton);
    addRoute(QStringLiteral(R"(astronomical?/?[\w]+$)"),
             &T::onRealtimeChangeAstronomical, &T::onRealtimeStatusAstronomical);
    addRoute(QStringLiteral(R"(items?/?[objects_list]*$)"),
             &T::onRealtimeChangeItems, &T::onRealtimeStatusItems);
    addRoute(QStringLiteral(R"(installation/?(?!mqtt_devices)[\w]*/?[\w]*$)"),
             &T::onRealtimeChangeInstallation, &T::onRealtimeStatusInstallation,
             &T::onRealtimeRequestInstallation);
    addRoute(QStringLiteral(R"(notify$)"), &T::onRealtimeChangeNotify, &T::onRealtimeStatusNotify);
    addRoute(QStringLiteral(R"(notify?/[user_list]*$)"),
             &T::onRealtimeChangeUserNotify, &T::onRealtimeStatusUserNotify,
             &T::onRealtimeRequestUserNotify);
    addRoute(QStringLiteral(R"(notify?/[sys_list]*$)"),
             &T::onRealtimeChangeSystemNotify, &T::onRealtimeStatusSystemNotify,
             &T::onRealtimeRequestSystemNotify);
    addRoute(QStringLiteral(R"(storage?/?[\w/]*$)"),
             &T::onRealtimeChangeStorage, &T::onRealtimeStatusStorage);
    addRoute(QStringLiteral(R"(scenary?/?[objects_list]*$)"),
             &T::onRealtimeChangeScenary, &T::onRealtimeStatusScenary);
    addRoute(QStringLiteral(R"(rules?/?[objects_list]*$)"),
             &T::onRealtimeChangeRules, &T::onRealtimeStatusRules);
    addRoute(QStringLiteral(R"(drivers$)"), &T::onRealtimeChangeDrivers, &T::onRealtimeStatusDrivers,
             &T::onRealtimeRequestDrivers);
    addRoute(QStringLiteral(R"(drivers/knx_mode$)"),
             &T::onRealtimeChangeDriversKnxMode, &T::onRealtimeStatusDriversKnxMode,
             &T::onRealtimeRequestDriversKnxMode);
    addRoute(QStringLiteral(R"(schedulers?/?[objects_list]*$)"),
             &T::onRealtimeChangeSchedulers, &T::onRealtimeStatusSchedulers);
    addRoute(QStringLiteral(R"(drivers/driver_internal$)"),
             &T::onRealtimeChangeDriversInternal, &T::onRealtimeStatusDriversInternal);
    addRoute(QStringLiteral(R"(drivers/driver_internal/sensors/?.*$)"),
             &T::onRealtimeChangeDriversInternalSensors, &T::onRealtimeStatusDriversInternalSensors);
    addRoute(QStringLiteral(R"(drivers/driver_knx$)"),
             &T::onRealtimeChangeDriversKnx, &T::onRealtimeStatusDriversKnx);
    addRoute(QStringLiteral(R"(drivers/driver_baos$)"),
             &T::onRealtimeChangeDriversBaos, &T::onRealtimeStatusDriversBaos);
    addRoute(QStringLiteral(R"(drivers/driver_knx/interfaces/?.*$)"),
             &T::onRealtimeChangeDriverInterfacesKnx, &T::onRealtimeStatusDriverInterfacesKnx,
             &T::onRealtimeRequestDriverInterfacesKnx);
    addRoute(QStringLiteral(R"(drivers/driver_baos/interfaces$)"),
             &T::onRealtimeChangeDriverInterfacesBaos, &T::onRealtimeStatusDriverInterfacesBaos,
             &T::onRealtimeRequestDriverInterfacesBaos, QStringLiteral(R"(drivers/driver_baos/interfaces/?.*$)"));
    addRoute(QStringLiteral(R"(thermo?/?[objects_list]*$)"),
             &T::onRealtimeChangeThermos, &T::onRealtimeStatusThermos);
    addRoute(QStringLiteral(R"(items/objects_list/(\w+)/?.*$)"),
             &T::onRealtimeChangeItem, &T::onRealtimeStatusItem,
             &T::onRealtimeRequestItem);
    addRoute(QStringLiteral(R"(installation/mqtt_devices/(\w+)/?.*$)"),
             &T::onRealtimeChangeInstallationMqttDevice, &T::onRealtimeStatusInstallationMqttDevice,
             &T::onRealtimeRequestInstallationMqttDevice);
    addRoute(QStringLiteral(R"(notify/user_list/(\w+)/?.*$)"),
             &T::onRealtimeChangeUserNotifyObjects, &T::onRealtimeStatusUserNotifyObjects,
             &T::onRealtimeRequestUserNotifyObjects);
    addRoute(QStringLiteral(R"(notify/sys_list/(\w+)/?.*$)"),
             &T::onRealtimeChangeSystemNotifyObjects, &T::onRealtimeStatusSystemNotifyObjects,
             &T::onRealtimeRequestSystemNotifyObjects);
    addRoute(QStringLiteral(R"(scenary/objects_list/(\w+)/?.*$)"),
             &T::onRealtimeChangeScenaryObjects, &T::onRealtimeStatusScenaryObjects,
             &T::onRealtimeRequestScenaryObjects);
    addRoute(QStringLiteral(R"(rules/objects_list/(\w+)/?.*$)"),
             &T::onRealtimeChangeRulesObjects, &T::onRealtimeStatusRulesObjects);
    addRoute(QStringLiteral(R"(schedulers/objects_list/(\w+)/?.*$)"),
             &T::onRealtimeChangeScheduler, &T::onRealtimeStatusScheduler);
    addRoute(QStringLiteral(R"(drivers/driver_knx/status/(\w+)$)"),
             &T::onRealtimeChangeDriverStatusKnx, &T::onRealtimeStatusDriverStatusKnx);
    addRoute(QStringLiteral(R"(drivers/driver_knx/status/(\w+)/info$)"),
             &T::onRealtimeChangeDriverStatusInfoKnx, &T::onRealtimeStatusDriverStatusInfoKnx);
    addRoute(QStringLiteral(R"(drivers/driver_baos/status/(\w+)$)"),
             &T::onRealtimeChangeDriverStatusBaos, &T::onRealtimeStatusDriverStatusBaos);
    addRoute(QStringLiteral(R"(drivers/driver_baos/status/(\w+)/info$)"),
             &T::onRealtimeChangeDriverStatusInfoBaos, &T::onRealtimeStatusDriverStatusInfoBaos);
    addRoute(QStringLiteral(R"(thermo/objects_list/(\w+)/?.*$)"),
             &T::onRealtimeChangeThermo, &T::onRealtimeStatusThermo,
             &T::onRealtimeRequestThermo);
}

void rt_handler_topic_t::initUpdateSignalsOffline()
{
    offlineRoutes.insert(absolute(literals::request_realtime, QStringLiteral("drivers/knx_mode$")), this,
                         &rt_handler_topic_t::onRealtimeRequestDriversKnxMode);
}

bool rt_handler_topic_t::whoIsRequest(QJsonObject const& packet, bool emitSignal)
{
    return requestRoutes.dispatch("whoIsRequest", packet, emitSignal);
}

bool rt_handler_topic_t::whoIsRequestOffline(QJsonObject const& packet, bool emitSignal)
{
    return offlineRoutes.dispatch("whoIsRequestOffline", packet, emitSignal);
}

bool rt_handler_topic_t::whoIsStatus(QJsonObject const& packet, bool emitSignal)
{
    return statusRoutes.dispatch("whoIsStatus", packet, emitSignal);
}

bool rt_handler_topic_t::whoIsChange(QJsonObject const& packet, bool emitSignal, bool emitSomething)
{
    base::topic_routes_t::on_match_t something;
    if (emitSomething)
        something = [this](QJsonObject const& p) { Q_EMIT onRealtimeUpdatedSomething(p); };
    return changeRoutes.dispatch("whoIsChange", packet, emitSignal, something);
}

} // namespace realtime
} // namespace database
