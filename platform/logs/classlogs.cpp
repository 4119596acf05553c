#include "platform/logs/classlogs.h"

#include <QByteArray>
#include <QFile>
#include <QMutexLocker>

#include <spdlog/async.h>
#include <spdlog/async_logger.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/sinks/dist_sink.h>
#include <spdlog/sinks/stdout_sinks.h>
#include <spdlog/spdlog.h>

#include <atomic>
#include <cstdlib>

namespace utility {
namespace logs {

namespace {

// spdlog's async logger owns the queue and the writer thread; the dist sink
// lets the host switch destinations while lines are in flight.
struct backend_t {
    std::shared_ptr<spdlog::sinks::dist_sink_mt> sinks;
    std::shared_ptr<spdlog::logger> async;
    std::shared_ptr<spdlog::logger> direct; // used once the queue is gone at exit
    std::atomic<bool> stopped{false};
};

backend_t& backend()
{
    static backend_t* b = [] {
        auto* created = new backend_t;
        created->sinks = std::make_shared<spdlog::sinks::dist_sink_mt>();
        created->sinks->add_sink(std::make_shared<spdlog::sinks::stderr_sink_mt>());
        created->sinks->set_pattern("%Y-%m-%dT%H:%M:%S.%e %L %v");
        spdlog::init_thread_pool(8192, 1);
        created->async = std::make_shared<spdlog::async_logger>(
            "database", created->sinks, spdlog::thread_pool(),
            spdlog::async_overflow_policy::block);
        created->async->set_level(spdlog::level::trace);
        created->direct = std::make_shared<spdlog::logger>("database-direct", created->sinks);
        created->direct->set_level(spdlog::level::trace);
        // Drain the queue before static destruction so no line is lost at exit.
        std::atexit([] {
            backend_t& self = backend();
            self.async->flush();
            self.stopped.store(true);
            spdlog::shutdown();
            self.sinks->flush();
        });
        return created;
    }();
    return *b;
}

spdlog::level::level_enum toSpdlog(LogLevel level)
{
    switch (level) {
    case exception: return spdlog::level::critical;
    case error: return spdlog::level::err;
    case warning: return spdlog::level::warn;
    case info: return spdlog::level::info;
    case debug: return spdlog::level::debug;
    case trace: return spdlog::level::trace;
    }
    return spdlog::level::info;
}

} // namespace

classlogs::classlogs()
    : m_threshold(int(warning))
    , m_capturing(0)
{
    backend();
}

classlogs* classlogs::getInstance()
{
    static classlogs* instance = new classlogs;
    return instance;
}

void classlogs::log_asynch(QString const& message, LogLevel level, QString const& source,
                           char const* file, unsigned int line)
{
    if (m_capturing.loadRelaxed()) {
        QMutexLocker lock(&m_captureMutex);
        if (m_capture)
            m_capture(logrecord{message, level, source, QString::fromUtf8(file ? file : ""), line});
    }
    if (int(level) > m_threshold.loadRelaxed())
        return;

    QByteArray const text = (source + QLatin1String(": ") + message).toUtf8()
        + " (" + QByteArray(file ? file : "?") + ':' + QByteArray::number(line) + ')';
    backend_t& b = backend();
    spdlog::logger& target = b.stopped.load() ? *b.direct : *b.async;
    target.log(toSpdlog(level), spdlog::string_view_t(text.constData(), size_t(text.size())));
}

void classlogs::setThreshold(LogLevel level)
{
    m_threshold.storeRelaxed(int(level));
}

LogLevel classlogs::threshold() const
{
    return LogLevel(m_threshold.loadRelaxed());
}

bool classlogs::setFile(QString const& path)
{
    std::shared_ptr<spdlog::sinks::sink> sink;
    try {
        sink = std::make_shared<spdlog::sinks::basic_file_sink_mt>(QFile::encodeName(path).toStdString());
    } catch (spdlog::spdlog_ex const&) {
        return false;
    }
    sink->set_pattern("%Y-%m-%dT%H:%M:%S.%e %L %v");
    flush();
    backend().sinks->set_sinks({sink});
    return true;
}

void classlogs::setStandardError()
{
    auto sink = std::make_shared<spdlog::sinks::stderr_sink_mt>();
    sink->set_pattern("%Y-%m-%dT%H:%M:%S.%e %L %v");
    flush();
    backend().sinks->set_sinks({sink});
}

void classlogs::setCapture(capture_t capture)
{
    QMutexLocker lock(&m_captureMutex);
    m_capture = std::move(capture);
    m_capturing.storeRelaxed(m_capture ? 1 : 0);
}

void classlogs::flush()
{
    backend_t& b = backend();
    if (b.stopped.load()) {
        b.sinks->flush();
        return;
    }
    // An async flush only queues a request; wait until the writer has caught up.
    b.async->flush();
    auto pool = spdlog::thread_pool();
    while (pool && pool->queue_size() > 0)
        std::this_thread::yield();
    b.sinks->flush();
}

} // namespace logs
} // namespace utility
