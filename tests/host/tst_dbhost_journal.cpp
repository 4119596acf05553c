// What dbhost promises about reported changes: each is on disk before its
// line is printed, whoever dies when, and a journal that doesn't belong to
// its file, or a disk that refuses it, never makes a wrong state.

#include <QDir>
#include <QJsonDocument>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/mount.h>
#include <unistd.h>

#include "support/dbhost_packets.h"
#include "support/dbhost_process.h"
#include "support/request_maker.h"

namespace {

QByteArray itemLines(QString const& prefix, int count, int descriptionBytes = 0)
{
    QByteArray text;
    for (int n = 0; n < count; ++n) {
        QJsonObject payload = itemPayload(QString::number(n));
        payload.insert("description", QString(descriptionBytes, QLatin1Char('d')));
        text += packetLine("request/DB/persistent/items/objects_list/" + prefix + QString::number(n), payload) + '\n';
    }
    return text;
}

/// What `dbhost --dump` prints for a section, and its standard error.
QJsonObject dump(QString const& folder, QString const& section, QString* errors = nullptr)
{
    QProcess host;
    host.start(QStringLiteral(DBHOST), {"--data", folder, "--log-level", "1", "--dump", section});
    host.waitForFinished(60000);
    if (errors)
        *errors = QString::fromUtf8(host.readAllStandardError());
    return QJsonDocument::fromJson(host.readAllStandardOutput()).object();
}

QStringList dumpedItems(QString const& folder, QString* errors = nullptr)
{
    return dump(folder, "items", errors).value("objects_list").toObject().keys();
}

QStringList savedItems(QString const& folder)
{
    QFile file(folder + "/persistent.json");
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(file.readAll()).object().value("items").toObject().value("objects_list")
        .toObject().keys();
}

/// Keys of the item changes a host printed.
QStringList printedItems(dbhost_process_t const& host)
{
    QStringList keys;
    for (auto const& line : host.lines) {
        if (line.json.value("signal").toString() == QLatin1String("onPersistentChangeItem"))
            keys << line.json.value("key").toString();
    }
    keys.removeDuplicates();
    keys.sort();
    return keys;
}

/// A host that printed count item changes and was then killed: they are in its journal only.
bool killedAfterReporting(QString const& folder, QString const& prefix, int count)
{
    dbhost_process_t host(folder);
    host.start({});
    host.send(itemLines(prefix, count));
    bool const printed = host.waitFor([&] { return printedItems(host).size() == count; }, 30000);
    host.kill();
    return printed;
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

QStringList keys(QString const& prefix, int count)
{
    QStringList list;
    for (int n = 0; n < count; ++n)
        list << prefix + QString::number(n);
    return sorted(list);
}

} // namespace

class tst_dbhost_journal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reportedChangesSurviveAKillAndAreSavedAtTheNextStart()
    {
        QTemporaryDir dir;
        QString const folder = dir.filePath("data");
        QVERIFY(killedAfterReporting(folder, "A", 300));
        // No save came between: the journal alone holds them, and a look shows them.
        QCOMPARE(savedItems(folder), QStringList());
        QCOMPARE(sorted(dumpedItems(folder)), keys("A", 300));

        dbhost_process_t again(folder);
        again.start({});
        QVERIFY(QTest::qWaitFor([&] { return again.errors.contains("changes replayed from the journals"); }, 30000));
        // Each item and its live twin.
        QVERIFY2(again.errors.contains("600 changes replayed"), qPrintable(again.errors));
        QVERIFY(again.terminate());
        QCOMPARE(sorted(savedItems(folder)), keys("A", 300));
        // The save took the journal's changes over: a start has nothing left to replay.
        dbhost_process_t third(folder);
        third.start({});
        third.send(itemLine("B", "after"));
        QVERIFY(third.waitFor([&] { return printedItems(third).contains("B"); }, 30000));
        QVERIFY(third.terminate());
        QVERIFY2(!third.errors.contains("replayed"), qPrintable(third.errors));
    }

    void replayGivesExactlyTheStateThatWasReported_data()
    {
        QTest::addColumn<QByteArray>("input");
        QFile demo(QStringLiteral(DEMO));
        QVERIFY(demo.open(QIODevice::ReadOnly));
        QTest::newRow("the demo") << demo.readAll();
        quint32 const seed = QRandomGenerator::global()->generate();
        request_maker_t maker(seed);
        QByteArray random;
        for (int n = 0; n < 600; ++n)
            random += maker.next() + '\n';
        QTest::addRow("600 random requests, seed %u", seed) << random;
    }

    void replayGivesExactlyTheStateThatWasReported()
    {
        // Packets of every kind, removals and repairs included, once to a
        // clean end and once killed when all is printed: the same databases.
        QFETCH(QByteArray, input);
        QTemporaryDir dir;
        // The barrier's line says that all input is through; the repairs of
        // the consistency check that follow come within the quiet spell.
        auto const through = [&](dbhost_process_t& host) {
            host.send(itemLine("BARRIER", "end of input"));
            if (!host.waitFor([&] { return printedItems(host).contains("BARRIER"); }, 60000))
                return false;
            qsizetype seen = -1;
            while (seen != host.lines.size()) {
                seen = host.lines.size();
                QTest::qWait(2000);
            }
            return true;
        };
        dbhost_process_t clean(dir.filePath("clean"));
        clean.start({});
        clean.send(input);
        QVERIFY(through(clean));
        QVERIFY(clean.terminate());
        dbhost_process_t killed(dir.filePath("killed"));
        killed.start({});
        killed.send(input);
        QVERIFY(through(killed));
        QCOMPARE(killed.lines.size(), clean.lines.size());
        killed.kill();
        for (QString const& what : {"all", "realtime", "presencesimulation"}) {
            QJsonObject const expected = dump(clean.folder(), what);
            QVERIFY(!expected.isEmpty());
            QCOMPARE(dump(killed.folder(), what), expected);
        }
    }

    void journalThatDoesNotFollowTheFileIsNotApplied_data()
    {
        QTest::addColumn<QString>("how");
        QTest::newRow("journal of another data folder") << "foreign";
        QTest::newRow("file restored from a backup") << "backup";
        QTest::newRow("current file unreadable, backup used") << "corrupt";
    }

    void journalThatDoesNotFollowTheFileIsNotApplied()
    {
        QFETCH(QString, how);
        QTemporaryDir dir;
        QString const folder = dir.filePath("data");
        {
            // A saved item S, then J reported and only journaled.
            dbhost_process_t first(folder);
            first.start({});
            first.send(itemLine("S", "saved"));
            QVERIFY(first.waitFor([&] { return printedItems(first).contains("S"); }, 30000));
            QVERIFY(first.terminate());
        }
        QVERIFY(killedAfterReporting(folder, "J", 5));
        QStringList expected;
        if (how == QLatin1String("foreign")) {
            QString const other = dir.filePath("other");
            QVERIFY(killedAfterReporting(other, "X", 3));
            QVERIFY(QFile::remove(folder + "/persistent.json.journal"));
            QVERIFY(QFile::copy(other + "/persistent.json.journal", folder + "/persistent.json.journal"));
            expected = {"S"};
        } else if (how == QLatin1String("backup")) {
            QVERIFY(QFile::remove(folder + "/persistent.json"));
            QVERIFY(QFile::copy(folder + "/persistent.json.1", folder + "/persistent.json"));
        } else {
            QFile file(folder + "/persistent.json");
            QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
            file.write("{\"items\": {");
        }
        QByteArray const journal = [&] {
            QFile file(folder + "/persistent.json.journal");
            return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        }();

        dbhost_process_t host(folder);
        host.start({});
        host.send(itemLine("B", "barrier"));
        QVERIFY(host.waitFor([&] { return printedItems(host).contains("B"); }, 30000));
        QVERIFY(host.terminate());
        QVERIFY2(host.errors.contains("does not follow the file beside it: not applied, kept as"),
                 qPrintable(host.errors));
        // The journal is kept byte for byte, and none of its changes is in the database.
        QStringList const aside = QDir(folder).entryList({"persistent.json.journal.corrupt-*"});
        QCOMPARE(aside.size(), 1);
        QFile kept(folder + "/" + aside.first());
        QVERIFY(kept.open(QIODevice::ReadOnly));
        QCOMPARE(kept.readAll(), journal);
        QCOMPARE(sorted(savedItems(folder)), sorted(expected + QStringList{"B"}));
    }

    void incompleteLastEntryIsIgnoredAndSaid()
    {
        QTemporaryDir dir;
        QString const folder = dir.filePath("data");
        QVERIFY(killedAfterReporting(folder, "A", 4));
        QString const path = folder + "/persistent.json.journal";
        QFile journal(path);
        QVERIFY(journal.open(QIODevice::ReadWrite));
        QByteArray const whole = journal.readAll();
        QVERIFY(journal.resize(whole.size() - 7));
        journal.close();
        QString errors;
        QCOMPARE(dumpedItems(folder, &errors).size(), 3);
        QVERIFY2(errors.contains("bytes of " + path + " are an incomplete entry"), qPrintable(errors));
        dbhost_process_t host(folder);
        host.start({});
        QVERIFY(QTest::qWaitFor([&] { return host.errors.contains("replayed"); }, 30000));
        QVERIFY(host.terminate());
        QVERIFY2(host.errors.contains("are an incomplete entry (a write cut short): ignored"), qPrintable(host.errors));
        QCOMPARE(savedItems(folder).size(), 3);
    }

    void fullDiskHoldsTheReportsAndSaysHowManyWereNeverDurable_data()
    {
        QTest::addColumn<bool>("freed");
        QTest::newRow("space comes back while held") << true;
        QTest::newRow("disk full to the end") << false;
    }

    void fullDiskHoldsTheReportsAndSaysHowManyWereNeverDurable()
    {
        QFETCH(bool, freed);
        QTemporaryDir dir;
        QString const disk = dir.filePath("disk");
        QVERIFY(QDir().mkpath(disk));
        if (::geteuid() != 0 || ::mount("tmpfs", QFile::encodeName(disk).constData(), "tmpfs", 0, "size=2m") != 0)
            QSKIP("a small file system of the test's own needs root");
        auto const unmount = qScopeGuard([&] { ::umount2(QFile::encodeName(disk).constData(), MNT_DETACH); });
        QString const folder = disk + "/data";
        // Room is taken by another file, given back in one of the rows.
        QFile filler(disk + "/filler");
        QVERIFY(filler.open(QIODevice::WriteOnly));
        filler.write(QByteArray(1700 * 1024, 'f'));
        filler.close();

        dbhost_process_t host(folder);
        // No backups: what the filler gives back is enough for the rest of the input.
        host.start({"--backups", "0"});
        host.send(itemLines("F", 800, 200));
        QVERIFY2(QTest::qWaitFor([&] { return host.errors.contains("input stopped"); }, 60000), qPrintable(host.errors));
        QVERIFY2(host.errors.contains("cannot write the journal"), qPrintable(host.errors));
        // Held means held: nothing more is printed while the disk refuses.
        qsizetype const printed = host.lines.size();
        QTest::qWait(1500);
        QCOMPARE(host.lines.size(), printed);
        QVERIFY2(host.errors.contains("retrying in 2 s") || host.errors.contains("retrying in 1 s"),
                 qPrintable(host.errors));
        if (freed) {
            QVERIFY(QFile::remove(disk + "/filler"));
            QVERIFY2(QTest::qWaitFor([&] { return host.errors.contains("the journals are written again"); }, 30000),
                     qPrintable(host.errors));
        }
        QVERIFY(host.terminate(60000));
        QStringList const reported = printedItems(host);
        QVERIFY(reported.size() >= printed / 2);
        if (freed) {
            QVERIFY2(!host.errors.contains("never made durable"), qPrintable(host.errors));
        } else {
            QVERIFY2(host.errors.contains("changes were never made durable and were not reported"),
                     qPrintable(host.errors));
        }
        QVERIFY2(host.exitCode() == (freed ? 0 : 1), qPrintable(host.errors));
        // Whatever was printed is in what a start would load.
        QStringList const loaded = dumpedItems(folder);
        for (QString const& key : reported)
            QVERIFY2(loaded.contains(key), qPrintable(key + " was reported and is not on disk"));
    }
};

QTEST_GUILESS_MAIN(tst_dbhost_journal)
#include "tst_dbhost_journal.moc"
