#include "host_committer_t.h"

#include <QMutexLocker>
#include <QSocketNotifier>

#include <cstdint>
#include <sys/eventfd.h>
#include <unistd.h>

host_committer_t::host_committer_t(QObject* parent)
    : QObject(parent)
{
    doneFd = ::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    if (doneFd >= 0) {
        notifier = new QSocketNotifier(doneFd, QSocketNotifier::Read, this);
        connect(notifier, &QSocketNotifier::activated, this, &host_committer_t::onNotified);
    }
    worker = QThread::create([this] { run(); });
    worker->start();
}

host_committer_t::~host_committer_t()
{
    {
        QMutexLocker locker(&mutex);
        stopping = true;
        work.wakeAll();
    }
    worker->wait();
    delete worker;
    if (doneFd >= 0)
        ::close(doneFd);
}

void host_committer_t::submit(std::vector<host_journal_t::batch_t> _batches)
{
    // Without a descriptor to wake the loop, the commit is made right here.
    if (doneFd < 0) {
        for (host_journal_t::batch_t& batch : _batches)
            host_journal_t::writeBatch(batch);
        QMutexLocker locker(&mutex);
        batches = std::move(_batches);
        done = true;
        announced = true;
        submitted = true;
        QMetaObject::invokeMethod(this, &host_committer_t::written, Qt::QueuedConnection);
        return;
    }
    QMutexLocker locker(&mutex);
    batches = std::move(_batches);
    queued = true;
    done = false;
    submitted = true;
    work.wakeAll();
}

void host_committer_t::run()
{
    QMutexLocker locker(&mutex);
    for (;;) {
        while (!queued && !stopping)
            work.wait(&mutex);
        if (!queued)
            return;
        queued = false;
        std::vector<host_journal_t::batch_t> writing = std::move(batches);
        locker.unlock();
        // In their order: the last journal is durable only after the others.
        for (host_journal_t::batch_t& batch : writing)
            host_journal_t::writeBatch(batch);
        locker.relock();
        batches = std::move(writing);
        done = true;
        finished.wakeAll();
        std::uint64_t const one = 1;
        [[maybe_unused]] ssize_t const n = ::write(doneFd, &one, sizeof one);
    }
}

std::vector<host_journal_t::batch_t> host_committer_t::wait()
{
    if (!submitted)
        return {};
    {
        QMutexLocker locker(&mutex);
        while (!done)
            finished.wait(&mutex);
    }
    return take();
}

std::vector<host_journal_t::batch_t> host_committer_t::take()
{
    QMutexLocker locker(&mutex);
    if (!done)
        return {};
    // The wake-up of this commit is spent here, whoever takes it.
    std::uint64_t count = 0;
    if (doneFd >= 0)
        [[maybe_unused]] ssize_t const n = ::read(doneFd, &count, sizeof count);
    done = false;
    announced = false;
    submitted = false;
    return std::move(batches);
}

void host_committer_t::onNotified()
{
    bool announce = false;
    {
        QMutexLocker locker(&mutex);
        std::uint64_t count = 0;
        [[maybe_unused]] ssize_t const n = ::read(doneFd, &count, sizeof count);
        // Once per commit, however long it waits to be taken.
        announce = done && !announced;
        announced = announced || announce;
    }
    if (announce)
        Q_EMIT written();
}
