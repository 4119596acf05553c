#ifndef HOST_DBHOST_HOST_COMMITTER_T_H
#define HOST_DBHOST_HOST_COMMITTER_T_H

#include <QMutex>
#include <QObject>
#include <QThread>
#include <QWaitCondition>

#include <vector>

#include "host_journal_t.h"

class QSocketNotifier;

/**
 * Writes the journals' batches and waits for the disk on a thread of its
 * own, so that the event loop goes on taking input while a sync is under
 * way; the session hands it one commit at a time and learns of its end by
 * written(), in its own thread, through a descriptor the event loop watches
 * (not a posted event: the library's queued hops are settled by sending
 * posted events, and a commit's end must not come in the middle of one).
 */
class host_committer_t : public QObject
{
    Q_OBJECT
public:
    explicit host_committer_t(QObject* parent = nullptr);
    ~host_committer_t() override;

    /// True from submit() until the batches are taken back.
    bool busy() const { return submitted; }
    /// Starts writing the batches, in their order; written() follows.
    void submit(std::vector<host_journal_t::batch_t> batches);
    /// Waits for the batches under way and takes them back (written() is not emitted).
    std::vector<host_journal_t::batch_t> wait();
    /// The batches of a commit that written() announced.
    std::vector<host_journal_t::batch_t> take();

Q_SIGNALS:
    /// The batches under way are written or failed; take them with take().
    void written();

private:
    void run();
    void onNotified();

    QThread* worker = nullptr;
    QSocketNotifier* notifier = nullptr;
    int doneFd = -1;
    QMutex mutex;
    QWaitCondition work;
    QWaitCondition finished;
    std::vector<host_journal_t::batch_t> batches;
    bool queued = false;
    bool done = false;
    bool announced = false;
    bool stopping = false;
    /// Owner's thread only.
    bool submitted = false;
};

#endif // HOST_DBHOST_HOST_COMMITTER_T_H
