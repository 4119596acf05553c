#include "database/consistency/consistency_t.h"

#include <QSet>
#include <QThreadPool>
#include <QtConcurrent/QtConcurrentRun>

#include "database/consistency/ps_consistency_t.h"
#include "database/consistency/rt_consistency_t.h"
#include "database/database_t.h"

namespace database {

namespace {

constexpr int kGatherMs = 250;

} // namespace

consistency_t::consistency_t(database_t* _database, QObject* parent)
    : QObject(parent)
    , database(_database)
    , ps_consistency(new ps_consistency_t(_database, nullptr))
    , rt_consistency(new rt_consistency_t(_database, nullptr))
{
    timer.setInterval(kGatherMs);
    auto const type = Qt::ConnectionType(Qt::QueuedConnection | Qt::UniqueConnection);
    connect(&timer, &QTimer::timeout, this, &consistency_t::timer_start_consystency_timeout, type);
    // Any thread may start or stop the timer by a signal; it is touched on its own thread only.
    connect(this, &consistency_t::timer_start_consystency_start, &timer, qOverload<>(&QTimer::start), type);
    connect(this, &consistency_t::timer_start_consystency_stop, &timer, &QTimer::stop, type);
    connect(ps_consistency, &ps_consistency_t::onPersistentConsistencyStep, this,
            &consistency_t::onPersistentConsistencyStep, type);
    connect(rt_consistency, &rt_consistency_t::onRealtimeConsistencyStep, this,
            &consistency_t::onRealtimeConsistencyStep, type);
    log((database ? database->getName() : QString()) + QStringLiteral("Starting database consistency engine ..."),
        ::utility::logs::trace, "consistency_t");
}

consistency_t::~consistency_t()
{
    consistency_check_async_stop();
    running = false;
    // A job in flight walks the engines, which the façade deletes next.
    future.waitForFinished();
    delete ps_consistency;
    delete rt_consistency;
}

bool consistency_t::isBusy() const
{
    return future.isRunning() || running;
}

void consistency_t::consistency_check_async_stop()
{
    pending.clear();
    Q_EMIT timer_start_consystency_stop();
    if (future.isRunning())
        future.cancel();
}

void consistency_t::consistency_check_async(QStringList const& _howCheck, bool _persistent, bool _realtime)
{
    log(QStringLiteral("Start timer consistency async... "), ::utility::logs::trace, "consistency_check_async");
    QSet<QString> merged(pending.begin(), pending.end());
    merged.unite(QSet<QString>(_howCheck.begin(), _howCheck.end()));
    pending = merged.values();
    if (!isBusy()) {
        pending_persistent = _persistent;
        pending_realtime = _realtime;
    } else {
        // A wish made during a run never narrows the next one.
        pending_persistent = pending_persistent || _persistent;
        pending_realtime = pending_realtime || _realtime;
    }
    // Each wish postpones the run: a burst is served once, after its last request.
    Q_EMIT timer_start_consystency_start();
}

void consistency_t::timer_start_consystency_timeout()
{
    char const* source = "timer_start_consystency_timeout";
    log(QStringLiteral("Try to start sync consistency ... "), ::utility::logs::info, source);
    if (isBusy()) {
        log(QStringLiteral("Cosistecy in running retry later"), ::utility::logs::warning, source);
        return;
    }
    log(QStringLiteral("Start async consistency ... "), ::utility::logs::info, source);
    Q_EMIT timer_start_consystency_stop();
    // The job takes the wishes gathered until now; later ones wait for the next round.
    QStringList const list = pending;
    bool const persistent = pending_persistent;
    bool const realtime = pending_realtime;
    future = QtConcurrent::run(QThreadPool::globalInstance(), [this, list, persistent, realtime] {
        consistency_check_sync(list, persistent, realtime);
    });
    pending.clear();
}

void consistency_t::consistency_check_sync(QStringList const& _howCheck, bool _persistent, bool _realtime)
{
    char const* source = "consistency_check_sync";
    log(QStringLiteral("Start consistency ... "), ::utility::logs::info, source);
    QElapsedTimer clock;
    clock.start();
    running = true;
    int seconds = 0;
    if (_persistent) {
        ps_consistency->check(_howCheck, false);
        seconds = int(clock.elapsed() / 1000);
        log(QStringLiteral("Consistency persistent check time: ") + QString::number(seconds)
                + QStringLiteral(" second"),
            ::utility::logs::trace, source);
    }
    if (_realtime) {
        rt_consistency->check(false, true);
        int const realtimeSeconds = int(clock.elapsed() / 1000) - seconds;
        log(QStringLiteral("Consistency realtime check time: ") + QString::number(realtimeSeconds)
                + QStringLiteral(" second"),
            ::utility::logs::trace, source);
        seconds += realtimeSeconds;
        // Only a run that reaches the realtime part lowers the flag: hosts rely on it.
        running = false;
    }
    log(QStringLiteral("Consistency check time: ") + QString::number(seconds) + QStringLiteral(" second"),
        ::utility::logs::trace, source);
}

void consistency_t::onPersistentConsistencyStep(int _step, int _numberstep, QString _field, QString _message)
{
    logStep(QStringLiteral("Persistent"), _step, _numberstep, _field, _message, "onPersistentConsistencyStep");
}

void consistency_t::onRealtimeConsistencyStep(int _step, int _numberstep, QString _field, QString _message)
{
    logStep(QStringLiteral("Realtime"), _step, _numberstep, _field, _message, "onRealtimeConsistencyStep");
}

void consistency_t::logStep(QString const& what, int _step, int _numberstep, QString const& _field,
                            QString const& _message, char const* source)
{
    if (_step == 0) {
        step_clock.start();
        step_total = 0;
    }
    float const delta = step_clock.isValid() ? float(step_clock.restart()) / 1000 : 0;
    if (!step_clock.isValid())
        step_clock.start();
    step_total += delta;
    log(what + QStringLiteral(" consynstecy check step ") + QString::number(_step) + QLatin1Char('/')
            + QString::number(_numberstep) + QLatin1Char(' ') + _field + QStringLiteral(": ") + _message
            + QLatin1Char(' ') + QString::number(delta, 'g', 6) + QStringLiteral(" sec tot: ")
            + QString::number(step_total, 'g', 6) + QStringLiteral(" sec"),
        ::utility::logs::trace, source);
}

void consistency_t::log(QString const& message, ::utility::logs::LogLevel level, char const* source) const
{
    CLASSLOGS_LOG(message, level, QString::fromLatin1(source));
}

} // namespace database
