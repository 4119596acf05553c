#ifndef TESTS_SUPPORT_LOG_CAPTURE_H
#define TESTS_SUPPORT_LOG_CAPTURE_H

#include <QList>
#include <QMutex>
#include <QMutexLocker>
#include <QString>
#include <QStringList>

#include "platform/logs/classlogs.h"

/// Records every line handed to the logger while it lives, synchronously.
/// Lines may come from any thread; the accessors below read under the lock.
class log_capture_t
{
public:
    log_capture_t()
    {
        ::utility::logs::classlogs::getInstance()->setCapture([this](::utility::logs::logrecord const& record) {
            QMutexLocker locker(&mutex);
            records.append(record);
        });
    }
    ~log_capture_t() { ::utility::logs::classlogs::getInstance()->setCapture(nullptr); }

    log_capture_t(log_capture_t const&) = delete;
    log_capture_t& operator=(log_capture_t const&) = delete;

    void clear()
    {
        QMutexLocker locker(&mutex);
        records.clear();
    }

    QStringList messages() const
    {
        QMutexLocker locker(&mutex);
        QStringList texts;
        for (auto const& record : records)
            texts.append(record.message);
        return texts;
    }

    /// The lines that contain text, at the given level (any level for 0).
    QList<::utility::logs::logrecord> matching(QString const& text, int level = 0) const
    {
        QMutexLocker locker(&mutex);
        QList<::utility::logs::logrecord> found;
        for (auto const& record : records) {
            if (record.message.contains(text) && (level == 0 || record.level == level))
                found.append(record);
        }
        return found;
    }

    bool contains(QString const& text, int level = 0) const { return !matching(text, level).isEmpty(); }

    /// The first of lines, each written "<level> <text>", that wasn't logged; empty when all were.
    QString missing(QStringList const& lines) const
    {
        for (QString const& line : lines) {
            if (!contains(line.section(QLatin1Char(' '), 1), line.section(QLatin1Char(' '), 0, 0).toInt()))
                return line;
        }
        return QString();
    }

    QList<::utility::logs::logrecord> records;

private:
    mutable QMutex mutex;
};

#endif // TESTS_SUPPORT_LOG_CAPTURE_H
