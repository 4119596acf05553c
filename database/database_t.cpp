#include "database/database_t.h"

#include <QJsonDocument>
#include <QMutexLocker>
#include <QRegExp>

#include "database/base/literals.h"
#include "database/command/command_t.h"
#include "database/consistency/consistency_t.h"
#include "database/default/persistent/ps_default_t.h"
#include "database/default/realtime/rt_default_t.h"
#include "database/definition/type_knx_mode_t.h"
#include "database/migration/migration_t.h"
#include "database/persistent/persistent_t.h"
#include "database/presencesimulation/presencesimulation_t.h"
#include "database/psi_handler_request_t.h"
#include "database/psi_handler_status_t.h"
#include "database/ps_handler_request_t.h"
#include "database/ps_handler_status_t.h"
#include "database/realtime/realtime_t.h"
#include "database/rr/rr_image_updater_t.h"
#include "database/rt_handler_request_t.h"
#include "database/rt_handler_status_t.h"
#include "database/utility/utility.h"

namespace database {

namespace {

QString const kVersion = QStringLiteral("4.0.0");

/// The wishes for a consistency check of sender reach the driver, queued: the
/// synchronous one too, since its name says how the check runs, not how the
/// wish arrives.
template<class Sender>
void wireConsistency(Sender* sender, consistency_t* consistency, bool connect)
{
    if (!sender || !consistency)
        return;
    if (connect) {
        QObject::connect(sender, &Sender::consistency_check_async, consistency,
                         &consistency_t::consistency_check_async, Qt::QueuedConnection);
        QObject::connect(sender, &Sender::consistency_check_sync, consistency, &consistency_t::consistency_check_sync,
                         Qt::QueuedConnection);
    } else {
        QObject::disconnect(sender, &Sender::consistency_check_async, consistency,
                            &consistency_t::consistency_check_async);
        QObject::disconnect(sender, &Sender::consistency_check_sync, consistency,
                            &consistency_t::consistency_check_sync);
    }
}

} // namespace

database_t::database_t(::database::definition::service_t const& _service,
                       ::database::definition::type_brand_t const& brand)
    : database_t(_service, brand, ::database::definition::type_knx_mode_t::knx_default_mode(brand))
{
}

database_t::database_t(::database::definition::service_t const& _service,
                       ::database::definition::type_brand_t const& brand,
                       persistent::definition::ps_knx_mode_t const& mode)
    : QObject(nullptr)
{
    log(name + QStringLiteral("Starting database engine ... for brand:") + brand.ToString(), ::utility::logs::info,
        "database_t");
    service = _service;
    // The engines load their defaults while they are built: the singletons come first.
    utility::getInstance();
    persistent::ps_default_t::createInstance(brand, kVersion);
    persistent::ps_default_t::getInstance()->setKnx_mode(mode);
    realtime::rt_default_t::createInstance(brand);
    migration::migration_t::createInstance(brand);
    consistency = new consistency_t(this, nullptr);
    createEngines();
    createHandlers();
    initrr(true);
    setOfflineHandler();
    initInternalEvent(true);
}

database_t::database_t(QObject* parent)
    : QObject(parent)
{
    log(name + QStringLiteral("Starting database engine ..."), ::utility::logs::info, "database_t");
    service = ::database::definition::service_t::client;
    consistency = new consistency_t(this, nullptr);
    createEngines();
    createHandlers();
    setOfflineHandler();
    initInternalEvent(true);
}

database_t::database_t(database_t const& other)
    : QObject(nullptr)
{
    consistency = new consistency_t(this, nullptr);
    // The engines exist before the name and the role are handed on to them.
    persistent = new persistent::persistent_t(*other.persistent);
    realtime = new realtime::realtime_t(*other.realtime);
    presencesimulation = new presencesimulation::presencesimulation_t(other.service);
    presencesimulation->deserialize(other.presencesimulation->getJdata());
    service = other.service;
    name = other.name;
    // A copy of the other channel would carry its orders out on the other
    // façade's engines; a channel of this façade in the same role is its copy.
    command = new command::command_t(this);
    persistent->setName(name);
    realtime->setName(name);
    createHandlers();
    initInternalEvent(true);
}

database_t::~database_t()
{
    initInternalEvent(false);
    delete ps_handler_request;
    delete ps_handler_status;
    delete psi_handler_request;
    delete psi_handler_status;
    delete rt_handler_status;
    delete rt_handler_request;
    // Before the engines: it waits for a check in flight, which walks them.
    delete consistency;
    delete persistent;
    delete realtime;
    delete presencesimulation;
    delete command;
    initrr(false);
}

void database_t::initrr(bool create)
{
    qDeleteAll(rr);
    rr.clear();
    if (create)
        rr.insert(rr::rr_image_updater_t::getNameOfService(), new rr::rr_image_updater_t(nullptr));
}

void database_t::createEngines()
{
    persistent = new persistent::persistent_t(service);
    realtime = new realtime::realtime_t(service);
    presencesimulation = new presencesimulation::presencesimulation_t(service);
    command = new command::command_t(this);
}

void database_t::createHandlers()
{
    ps_handler_request = new ps_handler_request_t(this, nullptr);
    ps_handler_status = new ps_handler_status_t(this, nullptr);
    psi_handler_request = new psi_handler_request_t(this, presencesimulation, nullptr);
    psi_handler_status = new psi_handler_status_t(this, presencesimulation, nullptr);
    rt_handler_status = new rt_handler_status_t(this, nullptr);
}

void database_t::setOfflineHandler()
{
    // Only an offline process answers the realtime request it can answer itself.
    delete rt_handler_request;
    if (service == ::database::definition::service_t::offline)
        rt_handler_request = new rt_handler_request_t(this, nullptr);
}

persistent::persistent_t* database_t::getPersistent() const
{
    if (persistent && persistent->getAccessMutex()) {
        QMutexLocker locker(persistent->getAccessMutex());
        return persistent;
    }
    return persistent;
}

realtime::realtime_t* database_t::getRealtime() const
{
    if (realtime && realtime->getAccessMutex()) {
        QMutexLocker locker(realtime->getAccessMutex());
        return realtime;
    }
    return realtime;
}

presencesimulation::presencesimulation_t* database_t::getPresenceSimulation() const
{
    if (presencesimulation && presencesimulation->getAccessMutex()) {
        QMutexLocker locker(presencesimulation->getAccessMutex());
        return presencesimulation;
    }
    return presencesimulation;
}

rt_handler_status_t* database_t::getRtHandlerStatus() const
{
    return rt_handler_status;
}

rt_handler_request_t* database_t::getRtHandlerRequest() const
{
    return rt_handler_request;
}

ps_handler_request_t* database_t::getHandlerRequest() const
{
    return ps_handler_request;
}

ps_handler_status_t* database_t::getHandlerStatus() const
{
    return ps_handler_status;
}

void database_t::setService(::database::definition::service_t const& _service)
{
    service = _service;
    if (persistent)
        persistent->setService(service);
    if (realtime)
        realtime->setService(service);
    if (command)
        command->setService(service);
    setOfflineHandler();
}

void database_t::setName(QString const& _name)
{
    name = _name;
    if (persistent)
        persistent->setName(name);
    if (realtime)
        realtime->setName(name);
}

QString database_t::getVersion()
{
    return kVersion;
}

void database_t::initInternalEvent(bool connect)
{
    if (!persistent)
        return;
    if (connect) {
        QObject::connect(persistent, &persistent::persistent_t::resetDatabase, this, &database_t::resetDatabase,
                         Qt::ConnectionType(Qt::QueuedConnection | Qt::UniqueConnection));
        QObject::connect(persistent, &persistent::persistent_t::eventOfflineRequest, this,
                         &database_t::eventOfflineRequest, Qt::QueuedConnection);
        if (realtime)
            QObject::connect(realtime, &realtime::realtime_t::eventOfflineRequest, this,
                             &database_t::eventOfflineRequest, Qt::QueuedConnection);
        if (presencesimulation)
            QObject::connect(presencesimulation, &presencesimulation::presencesimulation_t::eventOfflineRequest, this,
                             &database_t::eventOfflineRequest, Qt::QueuedConnection);
        QObject::connect(persistent->getHandlerTopic(), &persistent::ps_handler_topic_t::onPersistentUpdatedSomething,
                         this, &database_t::onPersistentUpdatedSomething, Qt::QueuedConnection);
    } else {
        QObject::disconnect(persistent, &persistent::persistent_t::resetDatabase, this, &database_t::resetDatabase);
        QObject::disconnect(persistent, &persistent::persistent_t::eventOfflineRequest, this,
                            &database_t::eventOfflineRequest);
        if (realtime)
            QObject::disconnect(realtime, &realtime::realtime_t::eventOfflineRequest, this,
                                &database_t::eventOfflineRequest);
        if (presencesimulation)
            QObject::disconnect(presencesimulation, &presencesimulation::presencesimulation_t::eventOfflineRequest,
                                this, &database_t::eventOfflineRequest);
        QObject::disconnect(persistent->getHandlerTopic(),
                            &persistent::ps_handler_topic_t::onPersistentUpdatedSomething, this,
                            &database_t::onPersistentUpdatedSomething);
    }
    wireConsistency(persistent, consistency, connect);
    wireConsistency(ps_handler_request.data(), consistency, connect);
}

void database_t::resetDatabase()
{
    if (!command)
        return;
    auto const& all = command::definition::cmd_type_database_reset_t::all;
    command->getHandlerTopic()->execCommandRequestResetDatabase(command->getData()->getPacketResetDatabase(all),
                                                                all.ToString());
}

void database_t::eventOfflineRequest(QJsonObject _packet)
{
    if (service.ToString() != ::database::definition::service_t::offline.ToString())
        return;
    QString const topic = _packet.value(QStringLiteral("topic")).toString();
    log(name + QStringLiteral("Offline update ") + topic, ::utility::logs::warning, "eventOfflineRequest");
    QRegExp pattern(QStringLiteral("^(") + literals::request_persistent + QLatin1Char('|') + literals::request_realtime
                        + QLatin1Char('|') + literals::request_presencesimulation + QStringLiteral(")/(\\w+/?.*$)"),
                    Qt::CaseSensitive);
    if (!pattern.exactMatch(topic))
        return;
    if (pattern.cap(1) == literals::request_persistent) {
        persistent->update(_packet);
        return;
    }
    if (pattern.cap(1) == literals::request_realtime) {
        // Without a server a realtime request is the new state itself.
        _packet.insert(QStringLiteral("topic"), literals::status_realtime + QLatin1Char('/') + pattern.cap(2));
        realtime->update(_packet);
        return;
    }
    if (pattern.cap(1) == literals::request_presencesimulation) {
        _packet.insert(QStringLiteral("topic"),
                       literals::status_presencesimulation + QLatin1Char('/') + pattern.cap(2));
        presencesimulation->update(_packet);
        return;
    }
    log(name + QStringLiteral("No roolback possible"), ::utility::logs::error, "eventOfflineRequest");
}

void database_t::roolbackPacket(QJsonObject packet)
{
    QString const topic = packet.value(QStringLiteral("topic")).toString();
    log(name + QStringLiteral("Roolback ") + topic, ::utility::logs::warning, "roolbackPacket");
    QRegExp pattern(QStringLiteral("^(") + literals::request_persistent + QLatin1Char('|') + literals::request_realtime
                        + QStringLiteral(")/(\\w+/?.*$)"),
                    Qt::CaseSensitive);
    if (!pattern.exactMatch(topic))
        return;
    if (pattern.cap(1) == literals::request_persistent) {
        QString const relative = pattern.cap(2);
        packet.insert(QStringLiteral("topic"), relative);
        packet.insert(QStringLiteral("payload"), persistent->getJsonValue(relative));
        persistent->getHandlerTopic()->whoIsChange(packet, true, false);
        return;
    }
    if (pattern.cap(1) == literals::request_realtime) {
        QString const relative = pattern.cap(2);
        packet.insert(QStringLiteral("topic"), relative);
        packet.insert(QStringLiteral("payload"), utility::getJsonValue(QJsonDocument(realtime->getJdata()), relative));
        realtime->getHandlerTopic()->whoIsChange(packet, true, false);
        return;
    }
    log(name + QStringLiteral("No roolback possible"), ::utility::logs::error, "roolbackPacket");
}

void database_t::onPersistentUpdatedSomething(QJsonObject)
{
}

void database_t::log(QString const& message, ::utility::logs::LogLevel level, char const* source) const
{
    CLASSLOGS_LOG(message, level, QString::fromLatin1(source));
}

} // namespace database
