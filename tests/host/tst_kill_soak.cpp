// The host killed with SIGKILL at random points of a stream of requests, again
// and again, and started anew each time. KILL_SOAK_COUNT sets the number of
// kills (30 by default; the README has the long run).

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

#include <optional>

namespace {

constexpr int keyCount = 60;    // items are renamed over and over, never removed
constexpr int backupCount = 3;
QStringList const databases{"persistent.json", "realtime.json", "presencesimulation.json"};

QJsonObject readComplete(QString const& path, bool& ok)
{
    QFile file(path);
    QJsonParseError error{};
    QJsonDocument document;
    if (file.open(QIODevice::ReadOnly))
        document = QJsonDocument::fromJson(file.readAll(), &error);
    ok = file.isOpen() && error.error == QJsonParseError::NoError && document.isObject();
    return document.object();
}

/// The sequence number each item's name carries in a persistent document.
QMap<QString, int> savedSequence(QJsonObject const& document)
{
    QMap<QString, int> sequence;
    QJsonObject const list = document.value("items").toObject().value("objects_list").toObject();
    for (auto it = list.begin(); it != list.end(); ++it)
        sequence.insert(it.key(), it.value().toObject().value("name").toString().toInt());
    return sequence;
}

QByteArray line(QString const& topic, QJsonValue const& payload)
{
    return QJsonDocument(QJsonObject{{"topic", topic}, {"payload", payload}}).toJson(QJsonDocument::Compact) + '\n';
}

/// Requests of all three databases: an item renamed to the next sequence
/// number, its live value, and a presence simulation action.
QByteArray requests(int& sequence, int count)
{
    QByteArray text;
    for (int n = 0; n < count; ++n, ++sequence) {
        QString const key = QStringLiteral("K%1").arg(sequence % keyCount);
        QJsonObject const item{{"id_driver", "drivers/driver_knx/1"}, {"name", QString::number(sequence)},
                               {"description", ""}, {"enabled", true}, {"status", "1/1/2"}, {"command", "1/1/1"},
                               {"feedback", "1/1/3"}, {"type", "dtp_1"}, {"typeformat", ""}, {"interpreter", ""},
                               {"tracking", false}, {"flags", 0}};
        text += line("request/DB/persistent/items/objects_list/" + key, item);
        if (sequence % 3 == 0)
            text += line("status/DB/realtime/items/objects_list/" + key + "/value", QString::number(sequence));
        if (sequence % 7 == 0)
            text += line(QStringLiteral("request/DB/presencesimulation/week/days/%1/hours/%2/minutes/%3/actions/%4")
                             .arg(sequence % 7 + 1).arg(sequence % 24).arg(sequence % 60).arg(key),
                         QString::number(sequence));
    }
    return text;
}

} // namespace

class tst_kill_soak : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void killedAtRandomPointsLosesNothing()
    {
        int const kills = qEnvironmentVariableIntValue("KILL_SOAK_COUNT") > 0
                              ? qEnvironmentVariableIntValue("KILL_SOAK_COUNT")
                              : 30;
        QTemporaryDir dir;
        QString const folder = dir.filePath("data");
        QRandomGenerator random(QRandomGenerator::global()->generate());
        int sequence = 0;
        QMap<QString, int> acknowledged; // the newest saved sequence number of each item
        QMap<QString, int> backupsSeen;
        int replaced = 0;
        QByteArray previous;

        for (int kill = 0; kill < kills; ++kill) {
            QProcess host;
            host.start(QStringLiteral(DBHOST),
                       QStringList{"--data", folder, "--log-level", "1", "--backups", QString::number(backupCount)});
            QVERIFY(host.waitForStarted());
            host.write(requests(sequence, 150));
            // Killed after a random number of answered requests, at times even
            // before the first: during the load, the first save, or any later one.
            int const target = int(random.bounded(0, 170));
            int seen = 0;
            while (seen < target && host.waitForReadyRead(30000))
                seen += int(host.readAllStandardOutput().count('\n'));
            if (random.bounded(2))
                QThread::usleep(random.bounded(20000));
            QString const errors = QString::fromUtf8(host.readAllStandardError());
            host.kill();
            QVERIFY(host.waitForFinished(30000));
            QVERIFY2(!errors.contains("unreadable") && !errors.contains("save failed"), qPrintable(errors));

            QString const round = QStringLiteral("after kill %1: ").arg(kill + 1);
            QDir const data(folder);
            QVERIFY2(data.entryList({"*.corrupt-*"}, QDir::Files).isEmpty(),
                     qPrintable(round + "a database file was put aside"));
            for (QString const& name : databases) {
                // Every file there is complete: the current one and each backup.
                QStringList const files = data.entryList({name, name + ".?"}, QDir::Files);
                for (QString const& file : files) {
                    bool ok = false;
                    readComplete(data.filePath(file), ok);
                    QVERIFY2(ok, qPrintable(round + file + " is not a complete database"));
                }
                // A kill may catch a rotation after its oldest backup went, and
                // so cost one backup for a while; never more than that.
                int const backups = int(files.size()) - (files.contains(name) ? 1 : 0);
                QVERIFY2(backups >= backupsSeen.value(name) - 1,
                         qPrintable(round + QStringLiteral("%1 backups of %2 where there were %3")
                                                .arg(backups).arg(name).arg(backupsSeen.value(name))));
                backupsSeen[name] = qMax(backupsSeen.value(name), backups);
            }
            // The backups keep their order: none holds a newer rename than the file before it.
            std::optional<QMap<QString, int>> newer;
            for (int n = 0; n <= backupCount; ++n) {
                QString const file = n == 0 ? QStringLiteral("persistent.json") : QStringLiteral("persistent.json.%1").arg(n);
                bool complete = false;
                QMap<QString, int> const older = savedSequence(readComplete(data.filePath(file), complete));
                if (!complete)
                    continue;
                for (auto it = older.cbegin(); newer && it != older.cend(); ++it)
                    QVERIFY2(newer->value(it.key(), -1) >= it.value(),
                             qPrintable(round + file + " is newer than the file before it"));
                newer = older;
            }
            // Every rename that a completed save put on disk is still there, or a newer one.
            bool ok = false;
            QJsonObject const current = readComplete(data.filePath("persistent.json"), ok);
            if (!ok && acknowledged.isEmpty() && !data.exists("persistent.json"))
                continue; // killed before the first save of all
            QVERIFY2(ok, qPrintable(round + "no persistent.json"));
            QMap<QString, int> const saved = savedSequence(current);
            for (auto it = acknowledged.cbegin(); it != acknowledged.cend(); ++it)
                QVERIFY2(saved.value(it.key(), -1) >= it.value(),
                         qPrintable(round + QStringLiteral("%1 went back from %2 to %3")
                                                .arg(it.key()).arg(it.value()).arg(saved.value(it.key(), -1))));
            for (auto it = saved.cbegin(); it != saved.cend(); ++it)
                acknowledged[it.key()] = it.value();
            QFile file(data.filePath("persistent.json"));
            QVERIFY(file.open(QIODevice::ReadOnly));
            QByteArray const content = file.readAll();
            replaced += content != previous ? 1 : 0;
            previous = content;
        }
        qInfo("%d kills, %d of them with a new persistent.json on disk, %d requests sent", kills, replaced, sequence);
        // Saves did complete between kills, or nothing was tested.
        QVERIFY2(replaced > kills / 4, qPrintable(QStringLiteral("%1 saves seen in %2 kills").arg(replaced).arg(kills)));

        // A last run to its end: everything loads, and the backups are all there.
        QProcess host;
        host.start(QStringLiteral(DBHOST), QStringList{"--data", folder, "--log-level", "2", "--backups",
                                                       QString::number(backupCount)});
        QVERIFY(host.waitForStarted());
        host.write(requests(sequence, 5));
        host.closeWriteChannel();
        QVERIFY(host.waitForFinished(60000));
        QString const errors = QString::fromUtf8(host.readAllStandardError());
        QCOMPARE(host.exitCode(), 0);
        QVERIFY2(!errors.contains("unreadable"), qPrintable(errors));
        bool ok = false;
        QMap<QString, int> const saved = savedSequence(readComplete(folder + "/persistent.json", ok));
        QVERIFY(ok);
        for (auto it = acknowledged.cbegin(); it != acknowledged.cend(); ++it)
            QVERIFY(saved.value(it.key(), -1) >= it.value());
        QCOMPARE(QDir(folder).entryList({"persistent.json.?"}, QDir::Files).size(), backupCount);
    }
};

QTEST_GUILESS_MAIN(tst_kill_soak)
#include "tst_kill_soak.moc"
