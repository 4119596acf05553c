#ifndef PLATFORM_LOGS_CLASSLOGS_H
#define PLATFORM_LOGS_CLASSLOGS_H

#include <QAtomicInt>
#include <QMutex>
#include <QString>

#include <functional>

#include "platform/logs/classlogs_export.h"

namespace utility {
namespace logs {

/// Severity of a log line; a lower number is more severe.
enum LogLevel : int {
    exception = 1, ///< an exception was caught
    error = 2,     ///< an operation was refused or failed
    warning = 3,   ///< a warning or a notable event
    info = 4,      ///< start of the façade and of the main engines
    debug = 5,
    trace = 6      ///< each slot and each routed packet
};

/// One line handed to the logger.
struct CLASSLOGS_EXPORT logrecord {
    QString message;
    LogLevel level = info;
    QString source;
    QString file;
    unsigned int line = 0;
};

/**
 * The process-wide asynchronous logger used by every part of the library.
 *
 * log_asynch() never waits for I/O: lines are queued and written by a
 * background thread. The host chooses the threshold and the destination
 * (standard error by default, or a file). Tests install a capture, which
 * receives every record synchronously in the caller's thread.
 */
class CLASSLOGS_EXPORT classlogs
{
public:
    using capture_t = std::function<void(logrecord const&)>;

    static classlogs* getInstance();

    void log_asynch(QString const& message, LogLevel level, QString const& source,
                    char const* file, unsigned int line);

    /// Cheap check that lets callers skip building lines nobody will see.
    bool isEnabled(LogLevel level) const
    {
        return int(level) <= m_threshold.loadRelaxed() || m_capturing.loadRelaxed();
    }

    /// Lines above this level are not written. Default: warning.
    void setThreshold(LogLevel level);
    LogLevel threshold() const;

    /// Writes to the file at path (appending) instead of standard error.
    /// Returns false, and keeps the current destination, when it can't be opened.
    bool setFile(QString const& path);
    void setStandardError();

    /// Installs a synchronous capture of every record, whatever the threshold;
    /// an empty function removes it.
    void setCapture(capture_t capture);

    /// Waits until every queued line has been written.
    void flush();

private:
    classlogs();
    ~classlogs() = delete;
    classlogs(classlogs const&) = delete;
    classlogs& operator=(classlogs const&) = delete;

    QAtomicInt m_threshold;
    QAtomicInt m_capturing;
    mutable QMutex m_captureMutex;
    capture_t m_capture;
};

} // namespace logs
} // namespace utility

/// Logs through the shared logger with the caller's file and line, and builds
/// the message only when the level is enabled.
#define CLASSLOGS_LOG(message, level, source)                                              \
    do {                                                                                   \
        ::utility::logs::classlogs* classlogs_instance_ = ::utility::logs::classlogs::getInstance(); \
        if (classlogs_instance_->isEnabled(level))                                         \
            classlogs_instance_->log_asynch((message), (level), (source), __FILE__, __LINE__); \
    } while (false)

#endif // PLATFORM_LOGS_CLASSLOGS_H
