#include "database/persistent/ps_handler_topic_t.h"

#include "database/base/literals.h"
#include "platform/logs/classlogs.h"

namespace database {
namespace persistent {

ps_handler_topic_t::ps_handler_topic_t(QObject* parent)
    : QObject(parent)
    , statusRoutes(literals::status_persistent)
    , requestRoutes(literals::request_persistent)
{
    CLASSLOGS_LOG(QStringLiteral("Starting persistent topic handler engine ..."),
                  ::utility::logs::trace, QStringLiteral("ps_handler_topic_t"));
    initUpdateSignals();
}

QStringList ps_handler_topic_t::routePatterns() const
{
    return changeRoutes.patterns() + changeRoutes.keyPatterns();
}

base::topic_routes_t const& ps_handler_topic_t::routes(form_t form) const
{
    switch (form) {
    case Change: return changeRoutes;
    case Status: return statusRoutes;
    case Request: break;
    }
    return requestRoutes;
}

template<class Signal>
void ps_handler_topic_t::addRoute(QString const& relative, QString const& tail,
                                  Signal change, Signal status, Signal request)
{
    changeRoutes.insert(relative, this, change);
    statusRoutes.insert(QStringLiteral("^") + literals::status_persistent + tail, this, status);
    requestRoutes.insert(QStringLiteral("^") + literals::request_persistent + tail, this, request);
}

void ps_handler_topic_t::initUpdateSignals()
{
    using T = ps_handler_topic_t;
    // Letter classes such as [objects_list] and the optional last letter of a
    // section key are how other processes' topics have always been matched.
    addRoute(QStringLiteral(R"(^DB$)"), QStringLiteral(R"(/DB$)"),
             &T::onPersistentChangeDatabase, &T::onPersistentStatusDatabase, &T::onPersistentRequestDatabase);
    addRoute(QStringLiteral(R"(^presencesimulation?/?[\S ]*$)"), QStringLiteral(R"(/presencesimulation?/?[\S ]*$)"),
             &T::onPersistentChangePresenceSimulation, &T::onPersistentStatusPresenceSimulation, &T::onPersistentRequestPresenceSimulation);
    addRoute(QStringLiteral(R"(^smartbutton?/?[\S ]*$)"), QStringLiteral(R"(/smartbutton?/?[\S ]*$)"),
             &T::onPersistentChangeSmartButton, &T::onPersistentStatusSmartButton, &T::onPersistentRequestSmartButton);
    addRoute(QStringLiteral(R"(^general$)"), QStringLiteral(R"(/general$)"),
             &T::onPersistentChangeGeneral, &T::onPersistentStatusGeneral, &T::onPersistentRequestGeneral);
    addRoute(QStringLiteral(R"(^general/[\w]+$)"), QStringLiteral(R"(/general?/?[\w]+$)"),
             &T::onPersistentChangeGeneralParam, &T::onPersistentStatusGeneralParam, &T::onPersistentRequestGeneralParam);
    addRoute(QStringLiteral(R"(^items?/?[objects_list]*$)"), QStringLiteral(R"(/items?/?[objects_list]*$)"),
             &T::onPersistentChangeItems, &T::onPersistentStatusItems, &T::onPersistentRequestItems);
    addRoute(QStringLiteral(R"(^elements?/?[objects_list]*$)"), QStringLiteral(R"(/elements?/?[objects_list]*$)"),
             &T::onPersistentChangeElements, &T::onPersistentStatusElements, &T::onPersistentRequestElements);
    addRoute(QStringLiteral(R"(^notify?/?[objects_list|email_list]*$)"), QStringLiteral(R"(/notify?/?[objects_list|email_list]*$)"),
             &T::onPersistentChangeNotify, &T::onPersistentStatusNotify, &T::onPersistentRequestNotify);
    addRoute(QStringLiteral(R"(^storage?/?[\w/]*$)"), QStringLiteral(R"(/storage?/?[\w/]*$)"),
             &T::onPersistentChangeStorage, &T::onPersistentStatusStorage, &T::onPersistentRequestStorage);
    addRoute(QStringLiteral(R"(^scenary?/?[objects_list]*$)"), QStringLiteral(R"(/scenary?/?[objects_list]*$)"),
             &T::onPersistentChangeScenary, &T::onPersistentStatusScenary, &T::onPersistentRequestScenary);
    addRoute(QStringLiteral(R"(^rules?/?[objects_list]*$)"), QStringLiteral(R"(/rules?/?[objects_list]*$)"),
             &T::onPersistentChangeRules, &T::onPersistentStatusRules, &T::onPersistentRequestRules);
    addRoute(QStringLiteral(R"(^drivers$)"), QStringLiteral(R"(/drivers$)"),
             &T::onPersistentChangeDrivers, &T::onPersistentStatusDrivers, &T::onPersistentRequestDrivers);
    addRoute(QStringLiteral(R"(^information$)"), QStringLiteral(R"(/information$)"),
             &T::onPersistentChangeInformation, &T::onPersistentStatusInformation, &T::onPersistentRequestInformation);
    addRoute(QStringLiteral(R"(^versions$)"), QStringLiteral(R"(/versions$)"),
             &T::onPersistentChangeVersions, &T::onPersistentStatusVersions, &T::onPersistentRequestVersions);
    addRoute(QStringLiteral(R"(^schedulers?/?[objects_list]*$)"), QStringLiteral(R"(/schedulers?/?[objects_list]*$)"),
             &T::onPersistentChangeSchedulers, &T::onPersistentStatusSchedulers, &T::onPersistentRequestSchedulers);
    addRoute(QStringLiteral(R"(^schedulers/enabled$)"), QStringLiteral(R"(/schedulers/enabled$)"),
             &T::onPersistentChangeSchedulersEnabled, &T::onPersistentStatusSchedulersEnabled, &T::onPersistentRequestSchedulersEnabled);
    addRoute(QStringLiteral(R"(^notify/enabled$)"), QStringLiteral(R"(/notify/enabled$)"),
             &T::onPersistentChangeNotifyEnabled, &T::onPersistentStatusNotifyEnabled, &T::onPersistentRequestNotifyEnabled);
    addRoute(QStringLiteral(R"(^notify/soundLoop$)"), QStringLiteral(R"(/notify/soundLoop$)"),
             &T::onPersistentChangeNotifySoundLen, &T::onPersistentStatusNotifySoundLen, &T::onPersistentRequestNotifySoundLen);
    addRoute(QStringLiteral(R"(^scenary/enabled$)"), QStringLiteral(R"(/scenary/enabled$)"),
             &T::onPersistentChangeScenaryEnabled, &T::onPersistentStatusScenaryEnabled, &T::onPersistentRequestScenaryEnabled);
    addRoute(QStringLiteral(R"(^rules/enabled$)"), QStringLiteral(R"(/rules/enabled$)"),
             &T::onPersistentChangeRulesEnabled, &T::onPersistentStatusRulesEnabled, &T::onPersistentRequestRulesEnabled);
    addRoute(QStringLiteral(R"(^drivers/driver_internal$)"), QStringLiteral(R"(/drivers/driver_internal$)"),
             &T::onPersistentChangeDriversInternal, &T::onPersistentStatusDriversInternal, &T::onPersistentRequestDriversInternal);
    addRoute(QStringLiteral(R"(^drivers/driver_internal/sensors?/?.*$)"), QStringLiteral(R"(/drivers/driver_internal/sensors?/?.*$)"),
             &T::onPersistentChangeDriversInternalSensors, &T::onPersistentStatusDriversInternalSensors, &T::onPersistentRequestDriversInternalSensors);
    addRoute(QStringLiteral(R"(^drivers/driver_knx$)"), QStringLiteral(R"(/drivers/driver_knx$)"),
             &T::onPersistentChangeDriversKnx, &T::onPersistentStatusDriversKnx, &T::onPersistentRequestDriversKnx);
    addRoute(QStringLiteral(R"(^drivers/driver_knx/enabled$)"), QStringLiteral(R"(/drivers/driver_knx/enabled$)"),
             &T::onPersistentChangeDriversKnxEnabled, &T::onPersistentStatusDriversKnxEnabled, &T::onPersistentRequestDriversKnxEnabled);
    addRoute(QStringLiteral(R"(^drivers/driver_baos$)"), QStringLiteral(R"(/drivers/driver_baos$)"),
             &T::onPersistentChangeDriversBaos, &T::onPersistentStatusDriversBaos, &T::onPersistentRequestDriversBaos);
    addRoute(QStringLiteral(R"(^drivers/driver_baos/enabled$)"), QStringLiteral(R"(/drivers/driver_baos/enabled$)"),
             &T::onPersistentChangeDriversBaosEnabled, &T::onPersistentStatusDriversBaosEnabled, &T::onPersistentRequestDriversBaosEnabled);
    addRoute(QStringLiteral(R"(^drivers/driver_clock$)"), QStringLiteral(R"(/drivers/driver_clock$)"),
             &T::onPersistentChangeDriversClock, &T::onPersistentStatusDriversClock, &T::onPersistentRequestDriversClock);
    addRoute(QStringLiteral(R"(^drivers/driver_clock/enabled$)"), QStringLiteral(R"(/drivers/driver_clock/enabled$)"),
             &T::onPersistentChangeDriversClockEnabled, &T::onPersistentStatusDriversClockEnabled, &T::onPersistentRequestDriversClockEnabled);
    addRoute(QStringLiteral(R"(^elements/page_stack/?.*$)"), QStringLiteral(R"(/elements/page_stack/?.*$)"),
             &T::onPersistentChangePageStack, &T::onPersistentStatusPageStack, &T::onPersistentRequestPageStack);
    addRoute(QStringLiteral(R"(^elements/options/?.*$)"), QStringLiteral(R"(/elements/options/?.*$)"),
             &T::onPersistentChangeOptions, &T::onPersistentStatusOptions, &T::onPersistentRequestOptions);
    addRoute(QStringLiteral(R"(^users?/?[objects_list]*$)"), QStringLiteral(R"(/users?/?[objects_list]*$)"),
             &T::onPersistentChangeUsers, &T::onPersistentStatusUsers, &T::onPersistentRequestUsers);
    addRoute(QStringLiteral(R"(^thermo?/?[objects_list]*$)"), QStringLiteral(R"(/thermo?/?[objects_list]*$)"),
             &T::onPersistentChangeThermos, &T::onPersistentStatusThermos, &T::onPersistentRequestThermos);
    addRoute(QStringLiteral(R"(^notify/smtp$)"), QStringLiteral(R"(/notify/smtp$)"),
             &T::onPersistentChangeNotifySMTP, &T::onPersistentStatusNotifySMTP, &T::onPersistentRequestNotifySMTP);
    addRoute(QStringLiteral(R"(^items/objects_list/(\w+)/?.*$)"), QStringLiteral(R"(/items/objects_list/(\w+)/?.*$)"),
             &T::onPersistentChangeItem, &T::onPersistentStatusItem, &T::onPersistentRequestItem);
    addRoute(QStringLiteral(R"(^notify/objects_list/(\w+)/?.*$)"), QStringLiteral(R"(/notify/objects_list/(\w+)/?.*$)"),
             &T::onPersistentChangeNotifyObjects, &T::onPersistentStatusNotifyObjects, &T::onPersistentRequestNotifyObjects);
    addRoute(QStringLiteral(R"(^notify/email_list/(\w+)/?.*$)"), QStringLiteral(R"(/notify/email_list/(\w+)/?.*$)"),
             &T::onPersistentChangeNotifyEmail, &T::onPersistentStatusNotifyEmail, &T::onPersistentRequestNotifyEmail);
    addRoute(QStringLiteral(R"(^scenary/objects_list/(\w+)/?.*$)"), QStringLiteral(R"(/scenary/objects_list/(\w+)/?.*$)"),
             &T::onPersistentChangeScenaryObjects, &T::onPersistentStatusScenaryObjects, &T::onPersistentRequestScenaryObjects);
    addRoute(QStringLiteral(R"(^rules/objects_list/(\w+)/?.*$)"), QStringLiteral(R"(/rules/objects_list/(\w+)/?.*$)"),
             &T::onPersistentChangeRulesObjects, &T::onPersistentStatusRulesObjects, &T::onPersistentRequestRulesObjects);
    addRoute(QStringLiteral(R"(^schedulers/objects_list/(\w+)/?.*$)"), QStringLiteral(R"(/schedulers/objects_list/(\w+)/?.*$)"),
             &T::onPersistentChangeScheduler, &T::onPersistentStatusScheduler, &T::onPersistentRequestScheduler);
    addRoute(QStringLiteral(R"(^drivers/driver_knx/bus/(\w+)/?.*$)"), QStringLiteral(R"(/drivers/driver_knx/bus/(\w+)/?.*$)"),
             &T::onPersistentChangeDriverKnxBus, &T::onPersistentStatusDriverKnxBus, &T::onPersistentRequestDriverKnxBus);
    addRoute(QStringLiteral(R"(^drivers/driver_baos/bus/(\w+)/?.*$)"), QStringLiteral(R"(/drivers/driver_baos/bus/(\w+)/?.*$)"),
             &T::onPersistentChangeDriverBaosBus, &T::onPersistentStatusDriverBaosBus, &T::onPersistentRequestDriverBaosBus);
    addRoute(QStringLiteral(R"(^elements/objects_list/(\w+)/?.*$)"), QStringLiteral(R"(/elements/objects_list/(\w+)/?.*$)"),
             &T::onPersistentChangeElement, &T::onPersistentStatusElement, &T::onPersistentRequestElement);
    addRoute(QStringLiteral(R"(^users/objects_list/(\w+)/?.*$)"), QStringLiteral(R"(/users/objects_list/(\w+)/?.*$)"),
             &T::onPersistentChangeUser, &T::onPersistentStatusUser, &T::onPersistentRequestUser);
    addRoute(QStringLiteral(R"(^thermo/objects_list/(\w+)/?.*$)"), QStringLiteral(R"(/thermo/objects_list/(\w+)/?.*$)"),
             &T::onPersistentChangeThermo, &T::onPersistentStatusThermo, &T::onPersistentRequestThermo);
}

bool ps_handler_topic_t::whoIsRequest(QJsonObject const& packet, bool emitSignal)
{
    return requestRoutes.dispatch("whoIsRequest", packet, emitSignal);
}

bool ps_handler_topic_t::whoIsStatus(QJsonObject const& packet, bool emitSignal)
{
    return statusRoutes.dispatch("whoIsStatus", packet, emitSignal);
}

bool ps_handler_topic_t::whoIsChange(QJsonObject const& packet, bool emitSignal, bool emitSomething)
{
    base::topic_routes_t::on_match_t something;
    if (emitSomething)
        something = [this](QJsonObject const& p) { Q_EMIT onPersistentUpdatedSomething(p); };
    return changeRoutes.dispatch("whoIsChange", packet, emitSignal, something);
}

} // namespace persistent
} // namespace database
