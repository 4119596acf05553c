#include "host_session_t.h"

#include <QCoreApplication>
#include <QFile>
#include <QMetaMethod>
#include <QThread>

#include <csignal>
#include <exception>
#include <cstdio>
#include <sys/socket.h>
#include <unistd.h>

#include "database/database_t.h"
#include "database/base/literals.h"
#include "database/command/cmd_handler_topic_t.h"
#include "database/command/command_t.h"
#include "database/persistent/persistent_t.h"
#include "database/presencesimulation/presencesimulation_t.h"
#include "database/realtime/realtime_t.h"
#include "host_metrics_t.h"

namespace {

int signalPipe[2] = {-1, -1};

// Failed saves are retried after one second, then after twice the last delay up to a minute.
constexpr int firstRetryDelay = 1000;
constexpr int lastRetryDelay = 60000;
// A file is written at most this often (ms). The engines ask for a save after
// every 21 changes, and a save rewrites the whole file: without spacing, a
// burst into a large installation spends its time writing. Changes wait at most
// this long for the disk, less than the engines' own two-second debounce.
constexpr qint64 saveSpacing = 500;

void onUnixSignal(int)
{
    char const byte = 1;
    // Only async-signal-safe calls here: the event loop does the rest.
    [[maybe_unused]] ssize_t const written = ::write(signalPipe[0], &byte, 1);
}

} // namespace

host_session_t::host_session_t(database::database_t* _database, host_store_t* persistentStore,
                               host_store_t* realtimeStore, host_store_t* presenceStore, QObject* parent)
    : QObject(parent)
    , database(_database)
{
    database::persistent::persistent_t* persistent = database->getPersistent();
    connect(persistent, &database::persistent::persistent_t::onPersistentRequest, this, &host_session_t::onRequest);
    connect(persistent, &database::persistent::persistent_t::onPersistentObjectNotExist, this,
            &host_session_t::onObjectNotExist);
    connect(persistent, &database::persistent::persistent_t::onPersistentObjectError, this,
            &host_session_t::onObjectError);
    connectChanges(persistent->getHandlerTopic(), "onPersistentChange", QStringLiteral("persistent"));

    database::realtime::realtime_t* realtime = database->getRealtime();
    connect(realtime, &database::realtime::realtime_t::onRealtimeRequest, this, &host_session_t::onRequest);
    connect(realtime, &database::realtime::realtime_t::onRealtimeObjectNotExist, this,
            &host_session_t::onObjectNotExist);
    connect(realtime, &database::realtime::realtime_t::onRealtimeObjectError, this, &host_session_t::onObjectError);
    connectChanges(realtime->getHandlerTopic(), "onRealtimeChange", QStringLiteral("realtime"));

    database::presencesimulation::presencesimulation_t* presence = database->getPresenceSimulation();
    connect(presence, &database::presencesimulation::presencesimulation_t::onPresencesimulationRequest, this,
            &host_session_t::onRequest);
    connect(presence, &database::presencesimulation::presencesimulation_t::onPresencesimulationObjectNotExist, this,
            &host_session_t::onObjectNotExist);
    connect(presence, &database::presencesimulation::presencesimulation_t::onPresencesimulationObjectError, this,
            &host_session_t::onObjectError);
    connectChanges(presence->getHandlerTopic(), "onPresencesimulationChange", QStringLiteral("presencesimulation"));

    // Commands the library raises go out for delivery like requests.
    database::command::command_t* command = database->getCommand();
    connect(command, &database::command::command_t::onCommandRequest, this, &host_session_t::onRequest);
    connect(command, &database::command::command_t::onCommandObjectNotExist, this, &host_session_t::onObjectNotExist);
    connect(command, &database::command::command_t::onCommandObjectError, this, &host_session_t::onObjectError);

    addFile(persistentStore, [persistent] { return persistent->getHash(); },
            [persistent](QString const& path) { return persistent->saveToFile(path, false); });
    addFile(realtimeStore, [realtime] { return realtime->getHash(); },
            [realtime](QString const& path) { return realtime->saveToFile(path, false); });
    addFile(presenceStore, [presence] { return presence->getHash(); },
            [presence](QString const& path) { return presence->saveToFile(path, false); });
    // Each database is saved when its own engine asks.
    connect(persistent, &database::persistent::persistent_t::onSaveRequest, this, [this] { requestSave(0); },
            Qt::QueuedConnection);
    connect(realtime, &database::realtime::realtime_t::onSaveRequest, this, [this] { requestSave(1); },
            Qt::QueuedConnection);
    connect(presence, &database::presencesimulation::presencesimulation_t::onSaveRequest, this,
            [this] { requestSave(2); }, Qt::QueuedConnection);
}

void host_session_t::requestSave(std::size_t index)
{
    saved_file_t& file = files.at(index);
    if (finished || file.later->isActive())
        return;
    qint64 const since = file.sinceSave.isValid() ? file.sinceSave.elapsed() : saveSpacing;
    // A failing file is tried at once, as its retries are.
    if (file.failing || since >= saveSpacing)
        save(file);
    else
        file.later->start(int(saveSpacing - since));
}

void host_session_t::addFile(host_store_t* store, std::function<QString()> hash, host_store_t::writer_t write)
{
    saved_file_t file;
    file.store = store;
    file.hash = std::move(hash);
    file.write = std::move(write);
    file.lastSavedHash = file.hash();
    file.retry = new QTimer(this);
    file.retry->setSingleShot(true);
    std::size_t const index = files.size();
    connect(file.retry, &QTimer::timeout, this, [this, index] {
        if (!finished)
            save(files.at(index));
    });
    file.later = new QTimer(this);
    file.later->setSingleShot(true);
    connect(file.later, &QTimer::timeout, this, [this, index] {
        if (!finished)
            save(files.at(index));
    });
    files.push_back(std::move(file));
}

void host_session_t::connectChanges(QObject* router, QByteArray const& prefix, QString const& databaseName)
{
    routerDatabases.insert(router, databaseName);
    // Every change signal of the router, whatever its section: one line each.
    QMetaObject const* meta = router->metaObject();
    QMetaMethod const plain = metaObject()->method(metaObject()->indexOfSlot("onChange(QJsonObject)"));
    QMetaMethod const keyed = metaObject()->method(metaObject()->indexOfSlot("onChangeKey(QJsonObject,QString)"));
    for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
        QMetaMethod const signal = meta->method(i);
        if (signal.methodType() != QMetaMethod::Signal || !signal.name().startsWith(prefix))
            continue;
        bool const withKey = signal.parameterCount() == 2 && signal.parameterType(1) == QMetaType::QString;
        // Signals with more arguments (day, hour, minute) reach the plain slot with the packet alone.
        connect(router, signal, this, withKey ? keyed : plain);
    }
}

host_session_t::~host_session_t() = default;

bool host_session_t::installSignalHandlers()
{
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, signalPipe) != 0)
        return false;
    struct sigaction action = {};
    action.sa_handler = onUnixSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    return ::sigaction(SIGINT, &action, nullptr) == 0 && ::sigaction(SIGTERM, &action, nullptr) == 0;
}

void host_session_t::addLink(host_link_t* link)
{
    links.append(link);
    connect(link, &host_link_t::packetArrived, this, &host_session_t::handlePacket);
    connect(link, &host_link_t::requestMade, this, &host_session_t::onRequest);
    connect(link, &host_link_t::ended, this, &host_session_t::finish);
}

void host_session_t::start()
{
    if (signalPipe[1] >= 0) {
        signalNotifier = new QSocketNotifier(signalPipe[1], QSocketNotifier::Read, this);
        connect(signalNotifier, &QSocketNotifier::activated, this, &host_session_t::onSignal);
    }
    for (host_link_t* link : std::as_const(links))
        link->start();
}

void host_session_t::handlePacket(QJsonObject packet, QString origin)
{
    if (finished)
        return;
    bool accepted = false;
    try {
        accepted = route(packet);
    } catch (std::exception const& e) {
        std::fprintf(stderr, "dbhost: %s ended in an exception, skipped: %s\n", qPrintable(origin), e.what());
    } catch (...) {
        std::fprintf(stderr, "dbhost: %s ended in an unknown exception, skipped\n", qPrintable(origin));
    }
    if (!accepted)
        reportProblem(QStringLiteral("refused"), packet);
}

bool host_session_t::route(QJsonObject const& packet)
{
    // The database is the third and fourth steps of the topic: "status/DB/realtime/...".
    QString const base = packet.value(QStringLiteral("topic")).toString().section(QLatin1Char('/'), 2, 2);
    if (base == QLatin1String("realtime"))
        return database->getRealtime()->update(packet);
    if (base == QLatin1String("presencesimulation"))
        return database->getPresenceSimulation()->update(packet);
    if (base == QLatin1String("command"))
        return routeCommand(packet);
    return database->getPersistent()->update(packet);
}

bool host_session_t::routeCommand(QJsonObject const& packet)
{
    database::command::cmd_handler_topic_t* router = database->getCommand()->getHandlerTopic();
    if (!router->whoIsRequest(packet, false))
        return false;
    // Only an offline process carries orders out itself; the others pass them on.
    if (database->getService() == database::definition::service_t::offline)
        router->whoIsRequest(packet, true);
    else
        onRequest(packet);
    return true;
}

void host_session_t::reportProblem(QString const& event, QJsonObject const& packet, QString const& message)
{
    for (host_link_t* link : std::as_const(links))
        link->reportProblem(event, packet, message);
}

QString host_session_t::changeSignalName() const
{
    int const index = senderSignalIndex();
    return index < 0 ? QString() : QString::fromLatin1(sender()->metaObject()->method(index).name());
}

void host_session_t::onChange(QJsonObject _packet)
{
    onChangeKey(_packet, QString());
}

void host_session_t::onChangeKey(QJsonObject _packet, QString _key)
{
    QString const databaseName = routerDatabases.value(sender());
    QString const signal = changeSignalName();
    for (host_link_t* link : std::as_const(links))
        link->reportChange(databaseName, signal, _key, _packet);
}

void host_session_t::onRequest(QJsonObject _packet)
{
    for (host_link_t* link : std::as_const(links))
        link->forwardRequest(_packet);
}

void host_session_t::onObjectNotExist(QJsonObject _packet)
{
    reportProblem(QStringLiteral("not_exist"), _packet);
}

void host_session_t::onObjectError(QJsonObject _packet, QString _message)
{
    reportProblem(QStringLiteral("error"), _packet, _message);
}

void host_session_t::saveNow()
{
    for (saved_file_t& file : files)
        save(file);
}

void host_session_t::save(saved_file_t& file)
{
    QString const hash = file.hash();
    QString const name = file.store->currentPath().section(QLatin1Char('/'), -1);
    QString error;
    // An image that is already on disk isn't written again: backups stay meaningful.
    bool const current = hash == file.lastSavedHash && QFile::exists(file.store->currentPath());
    if (current
        || host_metrics_t::instance().recordSave(name.section(QLatin1Char('.'), 0, 0),
                                                 [&] { return file.store->save(file.write, error); })) {
        if (!current) {
            file.lastSavedHash = hash;
            file.sinceSave.start();
            ++saves;
        }
        if (file.failing)
            std::fprintf(stderr, "dbhost: %s saved again after failed saves\n", qPrintable(name));
        file.failing = false;
        file.retryDelay = 0;
        file.retry->stop();
        return;
    }
    file.failing = true;
    if (finished) {
        std::fprintf(stderr, "dbhost: save failed: %s\n", qPrintable(error));
        return;
    }
    // The changes exist only in memory until a save goes through: keep trying,
    // less often the longer the disk refuses, and say so each time.
    file.retryDelay = file.retryDelay == 0 ? firstRetryDelay : qMin(2 * file.retryDelay, lastRetryDelay);
    std::fprintf(stderr, "dbhost: save failed: %s; retrying in %g s\n", qPrintable(error),
                 file.retryDelay / 1000.0);
    file.retry->start(file.retryDelay);
}

bool host_session_t::unsaved() const
{
    for (saved_file_t const& file : files) {
        if (file.failing)
            return true;
    }
    return false;
}

void host_session_t::drainEvents()
{
    // Packets travel through queued connections in several hops.
    for (int round = 0; round < 16; ++round)
        QCoreApplication::sendPostedEvents();
}

void host_session_t::onSignal()
{
    char byte;
    [[maybe_unused]] ssize_t const got = ::read(signalPipe[1], &byte, 1);
    std::fprintf(stderr, "dbhost: signal received, saving and leaving\n");
    finish();
}

void host_session_t::finish()
{
    if (finished)
        return;
    drainEvents();
    finished = true;
    database->getPersistent()->serialize(false);
    database->getRealtime()->serialize(false);
    database->getPresenceSimulation()->serialize(false);
    saveNow();
    for (host_link_t* link : std::as_const(links))
        link->stop();
    // Leaving is no time to wait a minute, but a disk that was full a moment
    // ago may have room now: a few quick tries before the changes are given up.
    for (int delay = firstRetryDelay; unsaved() && delay <= 2 * firstRetryDelay; delay *= 2) {
        std::fprintf(stderr, "dbhost: trying the failed saves again in %g s before leaving\n", delay / 1000.0);
        QThread::msleep(static_cast<unsigned long>(delay));
        saveNow();
    }
    for (saved_file_t const& file : files) {
        if (file.failing)
            std::fprintf(stderr, "dbhost: the last save of %s failed: its latest changes are lost\n",
                         qPrintable(file.store->currentPath()));
    }
    QCoreApplication::exit(unsaved() ? 1 : 0);
}
