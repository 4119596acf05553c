#ifndef HOST_DBHOST_HOST_SESSION_T_H
#define HOST_DBHOST_HOST_SESSION_T_H

#include <QElapsedTimer>
#include <QHash>
#include <QJsonObject>
#include <QList>
#include <QObject>
#include <QSocketNotifier>
#include <QString>
#include <QTextStream>
#include <QTimer>

#include <functional>
#include <vector>

#include "host_link_t.h"
#include "host_store_t.h"

namespace database {
class database_t;
}

/**
 * One run of the host: packets arrive by its links (standard input, a
 * broker) and go to the engine of their topic; what the library gives its
 * host (requests to forward, change signals, refusals) goes to every link.
 * Each database is saved to its own file on its engine's save requests, and a
 * last time when a link ends or on SIGINT/SIGTERM.
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
    /// Starts the links; the application quits when the session ends.
    void start();
    /// Routes SIGINT and SIGTERM to an orderly end; call once, before start().
    static bool installSignalHandlers();

    int savesDone() const { return saves; }
    /// Saves every database whose image on disk isn't already the current one.
    void saveNow();
    /// True while the last save of some database failed: its changes are not on disk.
    bool unsaved() const;

public Q_SLOTS:
    void finish();

private Q_SLOTS:
    void handlePacket(QJsonObject packet, QString origin);
    void onSignal();
    void onChange(QJsonObject _packet);
    void onChangeKey(QJsonObject _packet, QString _key);
    void onRequest(QJsonObject _packet);
    void onObjectNotExist(QJsonObject _packet);
    void onObjectError(QJsonObject _packet, QString _message);

private:
    /// A database's file, and what the session needs to keep it current.
    struct saved_file_t {
        host_store_t* store = nullptr;
        std::function<QString()> hash;
        host_store_t::writer_t write;
        QString lastSavedHash;
        /// While saves fail they are retried, each time after twice the delay.
        bool failing = false;
        int retryDelay = 0;
        QTimer* retry = nullptr;
        /// Saves of one file are spaced: a request that comes sooner waits for this timer.
        QElapsedTimer sinceSave;
        QTimer* later = nullptr;
    };

    void addFile(host_store_t* store, std::function<QString()> hash, host_store_t::writer_t write);
    void save(saved_file_t& file);
    /// What the engine's save request gets: a save now, or when the spacing is over.
    void requestSave(std::size_t index);
    void connectChanges(QObject* router, QByteArray const& prefix, QString const& databaseName);
    /// Hands the packet to the engine of its topic; false when it refuses it.
    bool route(QJsonObject const& packet);
    /// A command line: carried out offline, written out for delivery otherwise.
    bool routeCommand(QJsonObject const& packet);
    void reportProblem(QString const& event, QJsonObject const& packet, QString const& message = QString());
    void drainEvents();
    QString changeSignalName() const;

    database::database_t* database = nullptr;
    std::vector<saved_file_t> files;
    QList<host_link_t*> links;
    /// The database of each topic router, for the changes it signals.
    QHash<QObject const*, QString> routerDatabases;
    QSocketNotifier* signalNotifier = nullptr;
    int saves = 0;
    bool finished = false;
};

#endif // HOST_DBHOST_HOST_SESSION_T_H
