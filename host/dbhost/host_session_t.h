#ifndef HOST_DBHOST_HOST_SESSION_T_H
#define HOST_DBHOST_HOST_SESSION_T_H

#include <QElapsedTimer>
#include <QHash>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QObject>
#include <QPair>
#include <QSocketNotifier>
#include <QString>
#include <QTimer>

#include <deque>
#include <functional>
#include <vector>

#include "host_committer_t.h"
#include "host_link_t.h"
#include "host_store_t.h"

namespace database {
class database_t;
}

/**
 * One run of the host: packets arrive by its links (standard input, a
 * broker) and go to the engine of their topic; what the library gives its
 * host (requests to forward, change signals, refusals) goes to every link.
 *
 * Nothing is reported before it is durable: each change goes to the journal
 * of its database, and the reports wait until the journals are on disk. The
 * changes of one turn of the event loop share one write and one sync (group
 * commit, just before the loop waits again), made on the committer's thread
 * while the loop takes more input; what comes meanwhile shares the next one. A full save of a database
 * starts its journal anew; it happens when the journal has grown as large as
 * the file, after a quiet spell, and at the end.
 */
class host_session_t : public QObject
{
    Q_OBJECT
public:
    host_session_t(database::database_t* database, host_store_t* persistentStore, host_store_t* realtimeStore,
                   host_store_t* presenceStore, QObject* parent = nullptr);
    ~host_session_t() override;

    /// A road for packets; the session doesn't own it. Add links before start().
    void addLink(host_link_t* link);
    /// Hands the links' records found in the journal back to them.
    void restoreRecords(QList<QJsonObject> const& records);
    /// Starts the links; the application quits when the session ends.
    void start();
    /// Routes SIGINT and SIGTERM to an orderly end; call once, before start().
    static bool installSignalHandlers();

    int savesDone() const { return saves; }
    /// Saves every database whose image on disk isn't already the current one.
    void saveNow();
    /// True while the last save of some database failed.
    bool unsaved() const;
    /// Changes (and records) held because their journal could not be written.
    int undurable() const;

public Q_SLOTS:
    void finish();

private Q_SLOTS:
    void handlePacket(QJsonObject packet, QString origin, QByteArray payloadText);
    void onSignal();
    void onChange(QJsonObject _packet);
    void onChangeKey(QJsonObject _packet, QString _key);
    void onRequest(QJsonObject _packet);
    /// A request of a link's user, with the text its payload came as, if any.
    void onLinkRequest(QJsonObject _packet, QByteArray payloadText);
    void onObjectNotExist(QJsonObject _packet);
    void onObjectError(QJsonObject _packet, QString _message);
    /// Group commit: the journals to disk, then the reports that waited.
    void commit();

private:
    /// A database's file and journal, and what the session needs to keep them current.
    struct saved_file_t {
        host_store_t* store = nullptr;
        QString database;
        /// The image's stamp: the same one, the same image (see json_image_t).
        std::function<quint64()> stamp;
        host_store_t::writer_t write;
        quint64 lastSavedStamp = 0;
        /// Changes appended since the last save: a save is due at the end.
        bool changedSinceSave = false;
        /// While saves fail they are retried, each time after twice the delay.
        bool failing = false;
        int retryDelay = 0;
        QTimer* retry = nullptr;
    };

    void accept(host_link_t::packet_t request);
    void addFile(host_store_t* store, QString const& database, std::function<quint64()> stamp,
                 host_store_t::writer_t write);
    saved_file_t* fileOf(QString const& database);
    bool save(saved_file_t& file);
    /// After a commit: saves the databases whose journal outgrew their file.
    void compactGrown();
    void connectChanges(QObject* router, QByteArray const& prefix, QString const& databaseName);
    /// Hands the packet to the engine of its topic; false when it refuses it.
    bool route(QJsonObject const& packet);
    /// A command line: carried out offline, written out for delivery otherwise.
    bool routeCommand(QJsonObject const& packet);
    void reportProblem(QString const& event, QJsonObject const& packet, QString const& message = QString());
    /// Runs output now when nothing waits for the disk, else after the next commit.
    void deliver(std::function<void()> output);
    bool journalsPending() const;
    /// A commit of what waits, on the committer's thread; with wait, here
    /// and now, after the one under way.
    void startCommit(bool retrying, bool wait);
    void commitNow();
    /// A commit's batches are back: its reports go out, or wait again.
    void completeCommit(std::vector<host_journal_t::batch_t> batches, bool chain);
    QString databaseOf(host_journal_t const* journal) const;
    /// The journals are durable: the reports that waited go out, in order.
    void releaseHeld();
    void release(std::deque<std::function<void()>> outputs);
    void armCommit();
    void holdInput(bool hold);
    void drainEvents();
    QString changeSignalName() const;

    database::database_t* database = nullptr;
    std::vector<saved_file_t> files;
    QList<host_link_t*> links;
    /// The database of each topic router, for the changes it signals.
    QHash<QObject const*, QString> routerDatabases;
    /// The payload of the last packet that came with its text, and that
    /// text: a change whose payload equals it takes the text as its own.
    QJsonValue arrivedPayload;
    QByteArray arrivedText;
    /// The names of the routers' change signals, by class and index.
    mutable QHash<QPair<QMetaObject const*, int>, QString> signalNames;
    QSocketNotifier* signalNotifier = nullptr;
    /// Reports that wait for their journal entries to be durable, in order.
    std::deque<std::function<void()>> held;
    /// The reports of the commit under way.
    std::deque<std::function<void()>> committed;
    host_committer_t* committer = nullptr;
    /// A commit that comes at the latest this long after the first waiting
    /// entry, should the event loop never wait.
    QTimer commitTimer;
    /// Journals that can't be written are tried again after this timer.
    QTimer commitRetry;
    int commitRetryDelay = 0;
    bool completing = false;
    bool journalFailing = false;
    /// Input is held while the journal fails or a link is full.
    bool inputHeld = false;
    int congestedLinks = 0;
    /// Journaled changes are saved in full after this much quiet.
    QTimer quiet;
    int saves = 0;
    bool finished = false;
};

#endif // HOST_DBHOST_HOST_SESSION_T_H
