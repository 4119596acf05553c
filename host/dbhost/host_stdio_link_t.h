#ifndef HOST_DBHOST_HOST_STDIO_LINK_T_H
#define HOST_DBHOST_HOST_STDIO_LINK_T_H

#include <QByteArray>
#include <QSocketNotifier>
#include <QTimer>

#include "host_link_t.h"

/**
 * Packets as JSON lines on standard input; what the library gives the host as
 * JSON lines on standard output. Alone, it is the host's only road: lines are
 * packets from the other processes and the end of input ends the session.
 * Beside a broker it is local: request lines are this process's own requests
 * and go the way of the engines' requests, and the end of input ends nothing.
 */
class host_stdio_link_t : public host_link_t
{
    Q_OBJECT
public:
    /// With statusAfterLines (a server beside a broker), each change line is
    /// flushed before the status of the same change can be published.
    explicit host_stdio_link_t(bool local, bool statusAfterLines = false, QObject* parent = nullptr);

    void start() override;
    void stop() override;
    void forwardRequest(packet_t const& request) override;
    void reportChange(change_t const& change) override;
    void reportProblem(QString const& event, QJsonObject const& packet, QString const& message) override;
    void flushOutput() override;
    void holdInput(bool hold) override;

private Q_SLOTS:
    void readInput();
    void processNextLine();

private:
    void scheduleNextLine();
    void handleLine(QByteArray const& line);
    void writeLine(QJsonObject const& line) const;
    /// One line of JSON text, with its newline; flushed at once when asked.
    void writeText(QByteArray const& text, bool flush) const;

    bool local = false;
    bool statusAfterLines = false;
    QSocketNotifier* input = nullptr;
    /// The next batch of lines, on a later turn of the event loop.
    QTimer nextLines;
    QByteArray pending;
    qint64 lineNumber = 0;
    bool inputEnded = false;
    bool lineScheduled = false;
    bool stopped = false;
    bool held = false;
};

#endif // HOST_DBHOST_HOST_STDIO_LINK_T_H
