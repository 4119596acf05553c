#include "host_stdio_link_t.h"

#include <QJsonDocument>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "host_json_t.h"

namespace {

// Lines handed to the library in one turn of the event loop: their changes
// share one commit of the journal, and a long input still reports as it goes.
constexpr int linesPerTurn = 4096;

/// The text of the line's payload, when the line is a topic and an object
/// written exactly as the host writes them ({"payload":{...},"topic":"..."});
/// empty otherwise.
QByteArray payloadTextOf(QByteArray const& line, QJsonObject const& packet)
{
    QByteArrayView const head("{\"payload\":{");
    if (packet.size() != 2 || !line.startsWith(head) || !packet.value(QStringLiteral("payload")).isObject())
        return QByteArray();
    QByteArray tail(",\"topic\":");
    host_json_t::appendString(tail, packet.value(QStringLiteral("topic")).toString());
    tail += '}';
    if (!line.endsWith(tail))
        return QByteArray();
    qsizetype const from = head.size() - 1;
    QByteArray text = line.mid(from, line.size() - from - tail.size());
    return host_json_t::isCompactText(text) ? text : QByteArray();
}

} // namespace
#include <fcntl.h>
#include <unistd.h>

host_stdio_link_t::host_stdio_link_t(bool _local, bool _statusAfterLines, QObject* parent)
    : host_link_t(parent)
    , local(_local)
    , statusAfterLines(_statusAfterLines)
{
    // A timer, not a posted call: the batch never runs inside a settling of the library's events.
    nextLines.setSingleShot(true);
    nextLines.setInterval(0);
    connect(&nextLines, &QTimer::timeout, this, &host_stdio_link_t::processNextLine);
}

void host_stdio_link_t::start()
{
    ::fcntl(STDIN_FILENO, F_SETFL, ::fcntl(STDIN_FILENO, F_GETFL) | O_NONBLOCK);
    input = new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, this);
    connect(input, &QSocketNotifier::activated, this, &host_stdio_link_t::readInput);
    // A regular file never signals readiness again after the first time on
    // some platforms: read what is there at once.
    QMetaObject::invokeMethod(this, &host_stdio_link_t::readInput, Qt::QueuedConnection);
}

void host_stdio_link_t::stop()
{
    stopped = true;
    if (input)
        input->setEnabled(false);
}

void host_stdio_link_t::readInput()
{
    if (stopped || inputEnded)
        return;
    char buffer[65536];
    for (;;) {
        ssize_t const got = ::read(STDIN_FILENO, buffer, sizeof buffer);
        if (got > 0) {
            pending.append(buffer, got);
            continue;
        }
        if (got < 0 && errno == EINTR)
            continue;
        // A read that fails for good (a terminal that hung up) would otherwise
        // be tried again at every turn of the loop: it ends the input.
        bool const failed = got < 0 && errno != EAGAIN && errno != EWOULDBLOCK;
        if (failed)
            std::fprintf(stderr, "dbhost: standard input failed (%s): taken as its end\n", std::strerror(errno));
        if (got == 0 || failed) {
            inputEnded = true;
            input->setEnabled(false);
        }
        break; // EAGAIN: wait for the notifier
    }
    scheduleNextLine();
}

void host_stdio_link_t::holdInput(bool hold)
{
    held = hold;
    if (!held)
        scheduleNextLine();
}

void host_stdio_link_t::scheduleNextLine()
{
    if (lineScheduled || stopped || held)
        return;
    lineScheduled = true;
    nextLines.start();
}

void host_stdio_link_t::processNextLine()
{
    lineScheduled = false;
    if (stopped || held)
        return;
    // What is there, up to a bound, per turn of the event loop.
    qsizetype start = 0;
    int taken = 0;
    for (qsizetype end = 0; taken < linesPerTurn && !held && (end = pending.indexOf('\n', start)) >= 0; ++taken) {
        handleLine(pending.mid(start, end - start));
        start = end + 1;
    }
    pending.remove(0, start);
    if (taken > 0) {
        scheduleNextLine();
        return;
    }
    if (!inputEnded)
        return;
    // End of input: a last line without its newline still counts.
    if (!pending.trimmed().isEmpty())
        handleLine(pending);
    pending.clear();
    // Beside a broker the packets come from there: the input may end early.
    if (!local && !stopped) {
        stopped = true;
        Q_EMIT ended();
    }
}

void host_stdio_link_t::handleLine(QByteArray const& line)
{
    ++lineNumber;
    if (line.trimmed().isEmpty())
        return;
    QJsonParseError error;
    QJsonDocument const document = QJsonDocument::fromJson(line, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject()) {
        std::fprintf(stderr, "dbhost: line %lld is not a JSON object, skipped\n", static_cast<long long>(lineNumber));
        return;
    }
    QJsonObject const packet = document.object();
    if (!packet.value(QStringLiteral("topic")).isString()) {
        std::fprintf(stderr, "dbhost: line %lld has no topic, skipped\n", static_cast<long long>(lineNumber));
        return;
    }
    // A line written as the host writes lends its payload's text to what the
    // payload becomes: a request's record and message, a change's line.
    QByteArray const text = payloadTextOf(line, packet);
    if (local && packet.value(QStringLiteral("topic")).toString().startsWith(QLatin1String("request/")))
        Q_EMIT requestMade(packet, text);
    else
        Q_EMIT packetArrived(packet, QStringLiteral("line %1").arg(lineNumber), text);
    // Each line's changes before the next line's: the reports keep the order of the input.
    settleLibrary();
}

void host_stdio_link_t::writeLine(QJsonObject const& line) const
{
    // Beside a broker a request's line goes before the request itself.
    writeText(host_json_t::text(line), local);
}

void host_stdio_link_t::writeText(QByteArray const& text, bool flush) const
{
    std::fwrite(text.constData(), 1, size_t(text.size()), stdout);
    std::fputc('\n', stdout);
    if (flush)
        std::fflush(stdout);
}

void host_stdio_link_t::flushOutput()
{
    std::fflush(stdout);
}

void host_stdio_link_t::forwardRequest(packet_t const& request)
{
    // Beside a broker a request's line goes before the request itself.
    writeText(host_json_t::textWith({{QStringLiteral("event"), QStringLiteral("request")}}, QStringLiteral("packet"),
                                    request.packetText()),
              local);
}

void host_stdio_link_t::reportChange(change_t const& change)
{
    // A client's change lines go together, on flushOutput(): only the
    // server's status must find its line already out.
    writeText(change.line(), statusAfterLines);
}

void host_stdio_link_t::reportProblem(QString const& event, QJsonObject const& packet, QString const& message)
{
    QJsonObject line{{QStringLiteral("event"), event}, {QStringLiteral("packet"), packet}};
    if (event == QLatin1String("error"))
        line.insert(QStringLiteral("message"), message);
    writeLine(line);
}
