#ifndef TESTS_SUPPORT_DBHOST_PROCESS_H
#define TESTS_SUPPORT_DBHOST_PROCESS_H

#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <functional>

/**
 * A dbhost run by a test as a real process. Its output lines (changes,
 * requests, refusals) and its standard error are collected as they come,
 * while the caller's event loop turns, with the time each line arrived.
 */
class dbhost_process_t
{
public:
    struct line_t {
        QJsonObject json;
        qint64 nanoseconds = 0;
    };

    explicit dbhost_process_t(QString const& folder)
        : data(folder)
    {
        clock.start();
        QObject::connect(&process, &QProcess::readyReadStandardOutput, [this] {
            qint64 const now = clock.nsecsElapsed();
            pending += process.readAllStandardOutput();
            qsizetype start = 0;
            for (qsizetype end = 0; (end = pending.indexOf('\n', start)) >= 0; start = end + 1) {
                QByteArrayView const line(pending.constData() + start, end - start);
                if (keptText.isEmpty() || line.contains(keptText)) {
                    lines.append({QJsonDocument::fromJson(line.toByteArray()).object(), now});
                    if (checkCompact && QJsonDocument(lines.last().json).toJson(QJsonDocument::Compact) != line)
                        ++notCompact;
                }
            }
            pending.remove(0, start);
        });
        QObject::connect(&process, &QProcess::readyReadStandardError,
                         [this] { errors += QString::fromUtf8(process.readAllStandardError()); });
    }
    ~dbhost_process_t() { kill(); }

    void start(QStringList const& arguments)
    {
        // DBHOST_BINARY runs another build (an older one, for a benchmark's comparison).
        process.start(qEnvironmentVariableIsSet("DBHOST_BINARY") ? qEnvironmentVariable("DBHOST_BINARY")
                                                                 : QStringLiteral(DBHOST),
                      QStringList{QStringLiteral("--data"), data, QStringLiteral("--log-level"), QStringLiteral("1")}
                          + arguments);
        process.waitForStarted(10000);
    }

    /// Keeps only the output lines that hold text (a benchmark's reader
    /// parses no more than it counts); all of them when empty.
    void keepLinesWith(QByteArray const& text) { keptText = text; }
    /// From now on counts the lines that are not the compact text of their JSON in notCompact.
    void checkCompactLines() { checkCompact = true; }
    /// Before start(): the output goes nowhere and is not read at all.
    void discardOutput() { process.setStandardOutputFile(QProcess::nullDevice()); }

    bool running() const { return process.state() == QProcess::Running; }
    qint64 pid() const { return process.processId(); }
    int exitCode() const { return process.exitCode(); }
    /// The clock of the arrival times of the lines.
    qint64 now() const { return clock.nsecsElapsed(); }
    void send(QByteArray const& line) { process.write(line.endsWith('\n') ? line : line + '\n'); }

    /// Turns the event loop until done holds, checking it as each output
    /// arrives rather than on a polling period, so that arrival times are exact.
    bool waitFor(std::function<bool()> const& done, int ms) { return waitFor({this}, done, ms); }

    /// The same, checking as the output of any of hosts arrives.
    static bool waitFor(QList<dbhost_process_t*> const& hosts, std::function<bool()> const& done, int ms)
    {
        bool finished = done();
        if (finished)
            return true;
        QEventLoop loop;
        QTimer limit;
        limit.setSingleShot(true);
        QObject::connect(&limit, &QTimer::timeout, &loop, &QEventLoop::quit);
        // Connected after the line readers: the new lines are in when it runs.
        QList<QMetaObject::Connection> checks;
        for (dbhost_process_t* host : hosts)
            checks << QObject::connect(&host->process, &QProcess::readyReadStandardOutput, &loop, [&] {
                if (!finished && done()) {
                    finished = true;
                    loop.quit();
                }
            });
        limit.start(ms);
        loop.exec();
        for (auto const& check : std::as_const(checks))
            QObject::disconnect(check);
        return finished;
    }

    /// SIGTERM, and waits for the orderly end (the files are saved then).
    bool terminate(int ms = 20000)
    {
        if (!running())
            return true;
        process.terminate();
        return process.waitForFinished(ms) && process.exitStatus() == QProcess::NormalExit;
    }

    /// SIGKILL: nothing is saved on the way out.
    void kill()
    {
        if (!running())
            return;
        process.kill();
        process.waitForFinished(10000);
    }

    /// Change lines with this signal (and key, when given).
    int changes(QString const& signal, QString const& key = QString()) const
    {
        int found = 0;
        for (line_t const& line : lines)
            found += line.json.value(QStringLiteral("signal")).toString() == signal
                             && (key.isNull() || line.json.value(QStringLiteral("key")).toString() == key)
                         ? 1
                         : 0;
        return found;
    }

    QString const& folder() const { return data; }

    /// The hash of each section of a saved database, as the engines compute them.
    static QMap<QString, QString> sectionHashes(QString const& path)
    {
        QFile file(path);
        QMap<QString, QString> hashes;
        if (!file.open(QIODevice::ReadOnly))
            return hashes;
        QJsonObject const document = QJsonDocument::fromJson(file.readAll()).object();
        for (auto it = document.begin(); it != document.end(); ++it)
            hashes.insert(it.key(),
                          QString::fromLatin1(QCryptographicHash::hash(QJsonDocument(it.value().toObject())
                                                                           .toJson(QJsonDocument::Compact),
                                                                       QCryptographicHash::Sha1)
                                                  .toHex()));
        return hashes;
    }

    QList<line_t> lines;
    QString errors;
    int notCompact = 0;

private:
    QString data;
    QProcess process;
    QByteArray pending;
    bool checkCompact = false;
    QByteArray keptText;
    QElapsedTimer clock;
};

/// A saved database file as JSON; empty when it can't be read.
inline QJsonObject readJson(QString const& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
}

/// The keys of the items in a host's saved configuration.
inline QStringList itemKeys(dbhost_process_t const& host)
{
    QJsonObject const items = readJson(host.folder() + "/persistent.json").value("items").toObject();
    return items.value("objects_list").toObject().keys();
}

/// The last live value of an item that a host printed.
inline QString liveValue(dbhost_process_t const& host, QString const& key)
{
    QString value;
    for (auto const& line : host.lines) {
        if (line.json.value("signal").toString() == QLatin1String("onRealtimeChangeItem")
            && line.json.value("key").toString() == key)
            value = line.json.value("packet").toObject().value("payload").toObject().value("value").toString();
    }
    return value;
}

#endif // TESTS_SUPPORT_DBHOST_PROCESS_H
