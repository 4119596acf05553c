#include "host_session_t.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
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

/// The third step of a topic ("realtime" in "status/DB/realtime/..."), as
/// QString::section() gives it, without splitting the topic for every packet.
QStringView thirdStep(QStringView topic)
{
    qsizetype from = 0;
    for (int step = 0; step < 2; ++step) {
        from = topic.indexOf(QLatin1Char('/'), from);
        if (from < 0)
            return {};
        ++from;
    }
    qsizetype const end = topic.indexOf(QLatin1Char('/'), from);
    return end < 0 ? topic.mid(from) : topic.mid(from, end - from);
}

// Failed saves are retried after one second, then after twice the last delay up to a minute.
constexpr int firstRetryDelay = 1000;
constexpr int lastRetryDelay = 60000;
// The journal makes every change durable, so a full save (a rewrite of the
// whole file) is only a matter of keeping the journal short: it comes after
// this much quiet, or when the journal has grown by twice its file (a start
// then replays at most about two files' worth besides the requests still
// open; a rewrite per file's worth took a tenth of a follower's time in a
// long burst), never at every burst. Growth, not size: the open requests a
// save carries into the next journal can outweigh the file, and a writer far
// ahead of its server would otherwise save at every commit.
constexpr int quietBeforeSave = 2000;
constexpr qint64 smallestJournalToCompact = 64 * 1024;
constexpr qint64 journalPerFileToCompact = 2;
// Should the event loop never wait (a dispatcher that doesn't say so while
// events are posted), changes wait at most this long for their commit.
constexpr int latestCommit = 20;
// A commit is forced once this many reports wait, to bound what is held.
constexpr std::size_t mostHeld = 20000;

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
    , committer(new host_committer_t(this))
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

    addFile(persistentStore, QStringLiteral("persistent"), [persistent] { return persistent->getImageStamp(); },
            [persistent](QString const& path) { return persistent->saveToFile(path, false); });
    addFile(realtimeStore, QStringLiteral("realtime"), [realtime] { return realtime->getImageStamp(); },
            [realtime](QString const& path) { return realtime->saveToFile(path, false); });
    addFile(presenceStore, QStringLiteral("presencesimulation"), [presence] { return presence->getImageStamp(); },
            [presence](QString const& path) { return presence->saveToFile(path, false); });

    // The commit goes just before the loop waits: everything the turn changed shares it.
    if (QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance(thread()))
        connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this, &host_session_t::commit);
    commitTimer.setSingleShot(true);
    connect(&commitTimer, &QTimer::timeout, this, &host_session_t::commit);
    commitRetry.setSingleShot(true);
    connect(&commitRetry, &QTimer::timeout, this, [this] { startCommit(true, false); });
    connect(committer, &host_committer_t::written, this, [this] { completeCommit(committer->take(), true); });
    quiet.setSingleShot(true);
    quiet.setInterval(quietBeforeSave);
    connect(&quiet, &QTimer::timeout, this, [this] {
        if (finished || journalFailing)
            return;
        commit();
        for (saved_file_t& file : files) {
            if (file.changedSinceSave && !file.failing)
                save(file);
        }
    });
}

void host_session_t::addFile(host_store_t* store, QString const& name, std::function<quint64()> stamp,
                             host_store_t::writer_t write)
{
    saved_file_t file;
    file.store = store;
    file.database = name;
    file.stamp = std::move(stamp);
    file.write = std::move(write);
    file.lastSavedStamp = file.stamp();
    // Changes replayed from the journal at start are not in the file yet.
    file.changedSinceSave = store->replayedChanges() > 0;
    file.retry = new QTimer(this);
    file.retry->setSingleShot(true);
    std::size_t const index = files.size();
    connect(file.retry, &QTimer::timeout, this, [this, index] {
        if (!finished)
            save(files.at(index));
    });
    files.push_back(std::move(file));
}

host_session_t::saved_file_t* host_session_t::fileOf(QString const& name)
{
    for (saved_file_t& file : files) {
        if (file.database == name)
            return &file;
    }
    return nullptr;
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
    connect(link, &host_link_t::requestMade, this, &host_session_t::onLinkRequest);
    connect(link, &host_link_t::ended, this, &host_session_t::finish);
    // A link's own records travel in the persistent journal, with the changes they go with.
    connect(link, &host_link_t::recordMade, this, [this](QJsonObject record) {
        if (saved_file_t* file = fileOf(QStringLiteral("persistent"))) {
            file->store->journal().append(record);
            armCommit();
        }
    });
    connect(link, &host_link_t::congested, this, [this](bool full) {
        congestedLinks += full ? 1 : -1;
        holdInput(journalFailing || congestedLinks > 0);
    });
    link->setDurability([this](std::function<void()> work) { deliver(std::move(work)); });
}

void host_session_t::restoreRecords(QList<QJsonObject> const& records)
{
    for (QJsonObject const& record : records) {
        for (host_link_t* link : std::as_const(links))
            link->restoreRecord(record);
    }
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

void host_session_t::handlePacket(QJsonObject packet, QString origin, QByteArray payloadText)
{
    if (finished)
        return;
    arrivedText = payloadText;
    arrivedPayload = payloadText.isEmpty() ? QJsonValue() : packet.value(QStringLiteral("payload"));
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
    QString const topic = packet.value(QStringLiteral("topic")).toString();
    QStringView const base = thirdStep(topic);
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

void host_session_t::deliver(std::function<void()> output)
{
    if (held.empty() && !committer->busy() && !journalsPending()) {
        output();
        for (host_link_t* link : std::as_const(links))
            link->flushOutput();
        return;
    }
    held.push_back(std::move(output));
    armCommit();
}

bool host_session_t::journalsPending() const
{
    for (saved_file_t const& file : files) {
        if (file.store->journal().pending())
            return true;
    }
    return false;
}

void host_session_t::armCommit()
{
    if (journalFailing)
        return;
    if (held.size() >= mostHeld) {
        commitNow();
        return;
    }
    if (!commitTimer.isActive())
        commitTimer.start(latestCommit);
}

void host_session_t::commit()
{
    startCommit(false, false);
}

void host_session_t::commitNow()
{
    startCommit(false, true);
}

void host_session_t::startCommit(bool retrying, bool wait)
{
    if (completing)
        return;
    if (committer->busy()) {
        // The commit under way starts the next one when it ends.
        if (!wait)
            return;
        completeCommit(committer->wait(), false);
    }
    if (!journalsPending() && held.empty())
        return;
    // While the disk refuses, only the retry timer tries again.
    if (journalFailing && !retrying && !finished)
        return;
    commitTimer.stop();
    // The persistent journal goes last: the ids of applied requests in it
    // are durable only once the changes they brought are, in every journal.
    std::vector<host_journal_t::batch_t> batches;
    for (auto it = files.rbegin(); it != files.rend(); ++it) {
        if (it->store->journal().pending())
            batches.push_back(it->store->journal().takeBatch());
    }
    committed.swap(held);
    if (wait || batches.empty()) {
        for (host_journal_t::batch_t& batch : batches)
            host_journal_t::writeBatch(batch);
        completeCommit(std::move(batches), !wait);
        return;
    }
    // The loop goes on taking input meanwhile; what it brings waits for the next commit.
    committer->submit(std::move(batches));
}

void host_session_t::completeCommit(std::vector<host_journal_t::batch_t> batches, bool chain)
{
    completing = true;
    QString error;
    host_metrics_t& metrics = host_metrics_t::instance();
    for (host_journal_t::batch_t& batch : batches) {
        batch.journal->settle(batch);
        if (!batch.written) {
            if (error.isEmpty())
                error = batch.error;
            continue;
        }
        QString const name = databaseOf(batch.journal);
        host_metrics_t::labels_t const labels{{QStringLiteral("database"), name}};
        metrics.add(QStringLiteral("dbhost_journal_syncs_total"), labels);
        metrics.observe(QStringLiteral("dbhost_journal_sync_duration_seconds"), labels,
                        double(batch.nanoseconds) / 1e9);
        metrics.set(QStringLiteral("dbhost_journal_bytes"), labels, double(batch.journal->size()));
    }
    if (!error.isEmpty()) {
        // The reports wait again, before the ones that came meanwhile.
        std::move(held.begin(), held.end(), std::back_inserter(committed));
        held.swap(committed);
        committed.clear();
        metrics.set(QStringLiteral("dbhost_journal_held_changes"), {}, double(undurable()));
        completing = false;
        if (finished)
            return;
        commitRetryDelay = commitRetryDelay == 0 ? firstRetryDelay : qMin(2 * commitRetryDelay, lastRetryDelay);
        std::fprintf(stderr, "dbhost: %s: %d changes held, input stopped; retrying in %g s\n", qPrintable(error),
                     undurable(), commitRetryDelay / 1000.0);
        journalFailing = true;
        holdInput(true);
        commitRetry.start(commitRetryDelay);
        return;
    }
    metrics.set(QStringLiteral("dbhost_journal_held_changes"), {}, double(undurable()));
    std::deque<std::function<void()>> outputs;
    outputs.swap(committed);
    release(std::move(outputs));
    completing = false;
    if (finished)
        return;
    quiet.start();
    compactGrown();
    if (chain && (journalsPending() || !held.empty()))
        startCommit(false, false);
}

QString host_session_t::databaseOf(host_journal_t const* journal) const
{
    for (saved_file_t const& file : files) {
        if (&file.store->journal() == journal)
            return file.database;
    }
    return QString();
}

void host_session_t::releaseHeld()
{
    std::deque<std::function<void()>> outputs;
    outputs.swap(held);
    release(std::move(outputs));
}

void host_session_t::release(std::deque<std::function<void()>> outputs)
{
    if (journalFailing) {
        std::fprintf(stderr, "dbhost: the journals are written again; %zu held reports go out\n", outputs.size());
        journalFailing = false;
        commitRetryDelay = 0;
        commitRetry.stop();
        holdInput(congestedLinks > 0);
    }
    // Outputs may bring more: those go at once, or wait for the next commit.
    for (std::function<void()> const& output : outputs)
        output();
    for (host_link_t* link : std::as_const(links))
        link->flushOutput();
}

void host_session_t::compactGrown()
{
    for (saved_file_t& file : files) {
        qint64 const journal = file.store->journal().grown();
        if (journal >= smallestJournalToCompact
            && journal >= journalPerFileToCompact * QFileInfo(file.store->currentPath()).size()
            && !file.failing)
            save(file);
    }
}

void host_session_t::holdInput(bool hold)
{
    if (hold == inputHeld)
        return;
    inputHeld = hold;
    for (host_link_t* link : std::as_const(links))
        link->holdInput(hold);
}

int host_session_t::undurable() const
{
    int count = 0;
    for (saved_file_t const& file : files)
        count += file.store->journal().pendingCount();
    return count;
}

void host_session_t::reportProblem(QString const& event, QJsonObject const& packet, QString const& message)
{
    deliver([this, event, packet, message] {
        for (host_link_t* link : std::as_const(links))
            link->reportProblem(event, packet, message);
    });
}

QString host_session_t::changeSignalName() const
{
    int const index = senderSignalIndex();
    if (index < 0)
        return QString();
    // Every change asks; the routers' signals are few and never change.
    QMetaObject const* const metaObject = sender()->metaObject();
    auto found = signalNames.constFind({metaObject, index});
    if (found == signalNames.constEnd())
        found = signalNames.insert({metaObject, index}, QString::fromLatin1(metaObject->method(index).name()));
    return *found;
}

void host_session_t::onChange(QJsonObject _packet)
{
    onChangeKey(_packet, QString());
}

void host_session_t::onChangeKey(QJsonObject _packet, QString _key)
{
    QString const databaseName = routerDatabases.value(sender());
    QString const signal = changeSignalName();
    host_link_t::change_t change(databaseName, signal, _key, _packet);
    // A change that carries the payload of the packet that brought it takes
    // the text that payload came as; equal JSON has that text whatever its
    // numbers' types (host_json_t::isCompactText).
    if (!arrivedText.isEmpty() && _packet.value(QStringLiteral("payload")) == arrivedPayload)
        change.setPayloadText(arrivedText);
    // The journal keeps the change as the status it is reported as: replayed,
    // it gives the state that was reported, as it does on every client. The
    // payload's text is made once, for the journal and every link.
    if (saved_file_t* file = fileOf(databaseName)) {
        file->changedSinceSave = true;
        file->store->journal().appendStatus(change.journalEntry());
    }
    deliver([this, change = std::move(change)] {
        for (host_link_t* link : std::as_const(links))
            link->reportChange(change);
    });
}

void host_session_t::onRequest(QJsonObject _packet)
{
    accept(host_link_t::packet_t(std::move(_packet)));
}

void host_session_t::onLinkRequest(QJsonObject _packet, QByteArray payloadText)
{
    host_link_t::packet_t request(std::move(_packet));
    if (!payloadText.isEmpty())
        request.setPayloadText(payloadText);
    accept(std::move(request));
}

void host_session_t::accept(host_link_t::packet_t request)
{
    // A request is accepted once the links that must find it again have it
    // journaled. Its text is made once, for the journal and every link.
    for (host_link_t* link : std::as_const(links)) {
        QByteArray const record = link->acceptRequest(request);
        if (!record.isEmpty())
            fileOf(QStringLiteral("persistent"))->store->journal().appendText(record);
    }
    deliver([this, request = std::move(request)] {
        for (host_link_t* link : std::as_const(links))
            link->forwardRequest(request);
    });
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

bool host_session_t::save(saved_file_t& file)
{
    // A save starts the journal anew: what waits for the journal goes first.
    commitNow();
    // A stamp, not the digest: hashing a large image costs about as much as writing it.
    quint64 const stamp = file.stamp();
    QString const name = file.store->currentPath().section(QLatin1Char('/'), -1);
    QString error;
    // An image that is already on disk isn't written again: backups stay meaningful.
    bool const current = stamp == file.lastSavedStamp && !file.changedSinceSave
                         && QFile::exists(file.store->currentPath()) && file.store->journal().isOpen();
    QList<QJsonObject> carried;
    if (file.database == QLatin1String("persistent")) {
        for (host_link_t* link : std::as_const(links))
            carried += link->carriedRecords();
    }
    if (current
        || host_metrics_t::instance().recordSave(file.database,
                                                 [&] { return file.store->save(file.write, error, carried); })) {
        if (!current) {
            file.lastSavedStamp = stamp;
            file.changedSinceSave = false;
            ++saves;
        }
        // The file holds what its journal couldn't take: the reports may go.
        if (journalFailing && !journalsPending() && !committer->busy())
            releaseHeld();
        if (file.failing)
            std::fprintf(stderr, "dbhost: %s saved again after failed saves\n", qPrintable(name));
        file.failing = false;
        file.retryDelay = 0;
        file.retry->stop();
        return true;
    }
    file.failing = true;
    if (finished) {
        std::fprintf(stderr, "dbhost: save failed: %s\n", qPrintable(error));
        return false;
    }
    // The journal holds the changes meanwhile; the save keeps it short.
    file.retryDelay = file.retryDelay == 0 ? firstRetryDelay : qMin(2 * file.retryDelay, lastRetryDelay);
    std::fprintf(stderr, "dbhost: save failed: %s; retrying in %g s\n", qPrintable(error),
                 file.retryDelay / 1000.0);
    file.retry->start(file.retryDelay);
    return false;
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
    quiet.stop();
    commitTimer.stop();
    commitRetry.stop();
    database->getPersistent()->serialize(false);
    database->getRealtime()->serialize(false);
    database->getPresenceSimulation()->serialize(false);
    commitNow();
    saveNow();
    // Leaving is no time to wait a minute, but a disk that was full a moment
    // ago may have room now: a few quick tries before the changes are given up.
    for (int delay = firstRetryDelay; (unsaved() || journalsPending()) && delay <= 2 * firstRetryDelay; delay *= 2) {
        std::fprintf(stderr, "dbhost: trying the failed saves again in %g s before leaving\n", delay / 1000.0);
        QThread::msleep(static_cast<unsigned long>(delay));
        startCommit(true, true);
        saveNow();
    }
    // What is still pending is neither in a journal nor in a file.
    int const lost = undurable();
    if (lost == 0)
        releaseHeld();
    for (host_link_t* link : std::as_const(links))
        link->stop();
    for (saved_file_t const& file : files) {
        if (!file.failing)
            continue;
        if (file.store->journal().pending())
            std::fprintf(stderr, "dbhost: the last save of %s failed: its latest changes are lost\n",
                         qPrintable(file.store->currentPath()));
        else
            std::fprintf(stderr, "dbhost: the last save of %s failed: its latest changes are in its journal\n",
                         qPrintable(file.store->currentPath()));
    }
    if (lost > 0)
        std::fprintf(stderr, "dbhost: %d changes were never made durable and were not reported\n", lost);
    QCoreApplication::exit(unsaved() || lost > 0 ? 1 : 0);
}
