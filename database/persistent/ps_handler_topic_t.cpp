#include "database/persistent/ps_handler_topic_t.h"

#include <QException>
#include <QMutexLocker>

#include "database/base/literals.h"
#include "platform/logs/classlogs.h"

namespace database {
namespace persistent {

namespace {

QRegExp gatePattern(QString const& prefix)
{
    return QRegExp(QStringLiteral("^") + prefix + QStringLiteral(R"(/((\w+)/?.*)$)"),
                   Qt::CaseSensitive, QRegExp::RegExp);
}

void logException(char const* source, QString const& text)
{
    ::utility::logs::classlogs::getInstance()->log_asynch(
        QStringLiteral("Handling exception: ") + text, ::utility::logs::exception,
        QString::fromLatin1(source), __FILE__, __LINE__);
}

} // namespace

ps_handler_topic_t::ps_handler_topic_t(QObject* parent)
    : QObject(parent)
    , requestGate(gatePattern(literals::request_persistent))
    , statusGate(gatePattern(literals::status_persistent))
{
    CLASSLOGS_LOG(QStringLiteral("Starting persistent topic handler engine ..."),
                  ::utility::logs::trace, QStringLiteral("ps_handler_topic_t"));
    changeTable = new table_t;
    changeKeyTable = new table_key_t;
    statusTable = new table_t;
    statusKeyTable = new table_key_t;
    requestTable = new table_t;
    requestKeyTable = new table_key_t;
    initUpdateSignals();
}

ps_handler_topic_t::~ps_handler_topic_t()
{
    for (table_t* table : {changeTable, statusTable, requestTable}) {
        table->clear();
        delete table;
    }
    for (table_key_t* table : {changeKeyTable, statusKeyTable, requestKeyTable}) {
        table->clear();
        delete table;
    }
}

QStringList ps_handler_topic_t::routePatterns() const
{
    return changeTable->patterns() + changeKeyTable->patterns();
}

void ps_handler_topic_t::addRoute(QString const& relative, QString const& tail,
                                  signal_t change, signal_t status, signal_t request)
{
    changeTable->insert(relative, [this, change](QJsonObject packet) { (this->*change)(packet); });
    statusTable->insert(QStringLiteral("^") + literals::status_persistent + tail,
                        [this, status](QJsonObject packet) { (this->*status)(packet); });
    requestTable->insert(QStringLiteral("^") + literals::request_persistent + tail,
                         [this, request](QJsonObject packet) { (this->*request)(packet); });
}

void ps_handler_topic_t::addRoute(QString const& relative, QString const& tail,
                                  signal_key_t change, signal_key_t status, signal_key_t request)
{
    changeKeyTable->insert(relative, [this, change](QJsonObject packet, QString key) {
        (this->*change)(packet, key);
    });
    statusKeyTable->insert(QStringLiteral("^") + literals::status_persistent + tail,
                           [this, status](QJsonObject packet, QString key) { (this->*status)(packet, key); });
    requestKeyTable->insert(QStringLiteral("^") + literals::request_persistent + tail,
                            [this, request](QJsonObject packet, QString key) { (this->*request)(packet, key); });
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

bool ps_handler_topic_t::route(char const* source, QJsonObject const& packet, QRegExp* gate,
                               table_t* table, table_key_t* tableKey, bool emitSignal, bool emitSomething)
{
    try {
        QMutexLocker lock(&mutex);
        QString const topic = packet.value(QStringLiteral("topic")).toString();
        if (gate && !gate->exactMatch(topic))
            return false;

        if (callback_t const* callback = table->match(topic)) {
            if (emitSomething)
                Q_EMIT onPersistentUpdatedSomething(packet);
            if (emitSignal)
                (*callback)(packet);
            return true;
        }
        QString key;
        if (callback_key_t const* callback = tableKey->match(topic, &key)) {
            if (emitSomething)
                Q_EMIT onPersistentUpdatedSomething(packet);
            if (emitSignal)
                (*callback)(packet, key);
            return true;
        }
    } catch (QException const& e) {
        logException(source, QString::fromUtf8(e.what()));
    } catch (QString const& e) {
        logException(source, e);
    }
    return false;
}

bool ps_handler_topic_t::whoIsRequest(QJsonObject const& packet, bool emitSignal)
{
    return route("whoIsRequest", packet, &requestGate, requestTable, requestKeyTable, emitSignal, false);
}

bool ps_handler_topic_t::whoIsStatus(QJsonObject const& packet, bool emitSignal)
{
    return route("whoIsStatus", packet, &statusGate, statusTable, statusKeyTable, emitSignal, false);
}

bool ps_handler_topic_t::whoIsChange(QJsonObject const& packet, bool emitSignal, bool emitSomething)
{
    return route("whoIsChange", packet, nullptr, changeTable, changeKeyTable, emitSignal, emitSomething);
}

} // namespace persistent
} // namespace database
