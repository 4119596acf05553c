#ifndef DATABASE_CONSISTENCY_CONSISTENCY_T_H
#define DATABASE_CONSISTENCY_CONSISTENCY_T_H

#include <QElapsedTimer>
#include <QFuture>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <atomic>

#include "platform/logs/classlogs.h"

#include "database/database_export.h"

namespace database {

class database_t;
class ps_consistency_t;
class rt_consistency_t;

/**
 * Decides when the persistent and realtime consistency checks run, and on
 * which thread. A load asks for a check and waits for it; requests that change
 * objects ask for one each, and since they come in bursts their wishes are
 * gathered behind a short timer and served by one job on the global thread
 * pool, one job at a time.
 */
class DATABASE_EXPORT consistency_t : public QObject
{
    Q_OBJECT
public:
    consistency_t(database_t* database, QObject* parent);
    ~consistency_t() override;

    /// True while a job runs or a check has set the running flag.
    bool isBusy() const;
    /// Forgets the gathered wishes and stops the timer; a job not yet started won't start.
    void consistency_check_async_stop();

    ps_consistency_t* getPersistentConsistency() const { return ps_consistency; }
    rt_consistency_t* getRealtimeConsistency() const { return rt_consistency; }
    /// What the next job will be asked for.
    QStringList getPendingList() const { return pending; }
    bool getPendingPersistent() const { return pending_persistent; }
    bool getPendingRealtime() const { return pending_realtime; }

Q_SIGNALS:
    void timer_start_consystency_start();
    void timer_start_consystency_stop();

public Q_SLOTS:
    /// Runs the checks on the calling thread and returns when they end.
    void consistency_check_sync(QStringList const& _howCheck, bool _persistent = true, bool _realtime = true);
    /// Records the wish and (re)starts the timer.
    void consistency_check_async(QStringList const& _howCheck, bool _persistent = true, bool _realtime = true);

private Q_SLOTS:
    void timer_start_consystency_timeout();
    void onPersistentConsistencyStep(int _step, int _numberstep, QString _field, QString _message);
    void onRealtimeConsistencyStep(int _step, int _numberstep, QString _field, QString _message);

private:
    /// The line of one step report, with the time since the last one.
    void logStep(QString const& what, int _step, int _numberstep, QString const& _field, QString const& _message,
                 char const* source);
    void log(QString const& message, ::utility::logs::LogLevel level, char const* source) const;

    // Monotonic: a step across midnight or a change of the clock still measures right.
    QElapsedTimer step_clock;
    float step_total = 0;
    database_t* database = nullptr;
    // Set on the thread of the check, read on the thread of the timer.
    std::atomic<bool> running{false};
    QFuture<void> future;
    // The wishes and the future are touched on this object's thread only.
    QStringList pending;
    bool pending_persistent = false;
    bool pending_realtime = false;
    QTimer timer;
    ps_consistency_t* ps_consistency = nullptr;
    rt_consistency_t* rt_consistency = nullptr;
};

} // namespace database

#endif // DATABASE_CONSISTENCY_CONSISTENCY_T_H
