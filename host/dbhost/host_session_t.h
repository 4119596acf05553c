#ifndef HOST_DBHOST_HOST_SESSION_T_H
#define HOST_DBHOST_HOST_SESSION_T_H

#include <QJsonObject>
#include <QObject>
#include <QSocketNotifier>
#include <QString>
#include <QTextStream>

#include "host_store_t.h"

namespace database {
class database_t;
}

/**
 * One run of the host: packets arrive as JSON lines on standard input and go
 * to the library; what the library gives its host (requests to forward,
 * change signals, refusals) leaves as JSON lines on standard output. Saves
 * follow the library's save requests, and a last one is made on end of input
 * or on SIGINT/SIGTERM.
 */
class host_session_t : public QObject
{
    Q_OBJECT
public:
    host_session_t(database::database_t* database, host_store_t* store, QObject* parent = nullptr);
    ~host_session_t() override;

    /// Starts reading standard input; the application quits when the session ends.
    void start();
    /// Routes SIGINT and SIGTERM to an orderly end; call once, before start().
    static bool installSignalHandlers();

    int savesDone() const { return saves; }
    /// Saves unless the image on disk is already this one.
    void saveNow();

public Q_SLOTS:
    void finish();

private Q_SLOTS:
    void readInput();
    void processNextLine();
    void onSignal();
    void onSaveRequest();
    void onChange(QJsonObject _packet);
    void onChangeKey(QJsonObject _packet, QString _key);
    void onRequest(QJsonObject _packet);
    void onObjectNotExist(QJsonObject _packet);
    void onObjectError(QJsonObject _packet, QString _message);

private:
    void scheduleNextLine();
    void handleLine(QByteArray const& line);
    void emitLine(QJsonObject const& line);
    void drainEvents();
    QString changeSignalName() const;

    database::database_t* database = nullptr;
    host_store_t* store = nullptr;
    QSocketNotifier* input = nullptr;
    QSocketNotifier* signalNotifier = nullptr;
    QByteArray pending;
    qint64 lineNumber = 0;
    int saves = 0;
    bool finished = false;
    bool inputEnded = false;
    bool lineScheduled = false;
    QString lastSavedHash;
};

#endif // HOST_DBHOST_HOST_SESSION_T_H
