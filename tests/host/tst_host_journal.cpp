// The journal beside a database file: what a start replays after a write cut
// short, a journal of another file, and a save cut at each of its steps.

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QtTest>

#include <fcntl.h>
#include <unistd.h>

#include "host_committer_t.h"
#include "host_journal_t.h"
#include "host_store_t.h"

namespace {

QJsonObject change(int n)
{
    return {{"topic", "status/DB/persistent/items/objects_list/K" + QString::number(n % 7)},
            {"payload", QJsonObject{{"name", QString::number(n)}}}};
}

QByteArray readAll(QString const& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeAll(QString const& path, QByteArray const& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}

/// A database file and a journal of count changes that follows it.
struct folder_t {
    QTemporaryDir dir;
    QString file = dir.filePath("persistent.json");
    QString journal = file + ".journal";

    bool make(int count)
    {
        if (!writeAll(file, "{\"items\":{}}\n"))
            return false;
        host_journal_t writer(journal);
        QList<QJsonObject> entries;
        QStringList notes;
        if (!writer.open(host_journal_t::fileHash(file), entries, notes) || !entries.isEmpty())
            return false;
        for (int n = 0; n < count; ++n)
            writer.append(change(n));
        QString error;
        return writer.commit(error);
    }

    /// Opens journal for appending; what it would replay is not looked at.
    bool openForWriting(host_journal_t& journal)
    {
        QList<QJsonObject> entries;
        QStringList notes;
        return journal.open(host_journal_t::fileHash(file), entries, notes);
    }

    QList<QJsonObject> open(QStringList& notes)
    {
        host_journal_t reader(journal);
        QList<QJsonObject> entries;
        reader.open(host_journal_t::fileHash(file), entries, notes);
        return entries;
    }
};

/// Loads a store's file and opens its journal; the entries to replay go to entries.
bool openStore(host_store_t& store, QList<QJsonObject>& entries)
{
    QStringList notes;
    return store.load([](QString const&) { return true; }, notes) && store.openJournal(entries, notes);
}

} // namespace

class tst_host_journal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void entriesComeBackInOrder()
    {
        folder_t folder;
        QVERIFY(folder.make(50));
        QStringList notes;
        QList<QJsonObject> const entries = folder.open(notes);
        QCOMPARE(notes, QStringList());
        QCOMPARE(entries.size(), 50);
        for (int n = 0; n < 50; ++n)
            QCOMPARE(entries.at(n), change(n));
    }

    void entryCutAtAnyByteIsIgnoredAndCutOff()
    {
        folder_t folder;
        QVERIFY(folder.make(3));
        QByteArray const whole = readAll(folder.journal);
        qsizetype const lastStart = whole.lastIndexOf('\n', whole.size() - 2) + 1;
        // Every length from the start of the last entry to one byte short of its end.
        for (qsizetype length = lastStart; length < whole.size(); ++length) {
            QVERIFY(writeAll(folder.journal, whole.left(length)));
            QStringList notes;
            QList<QJsonObject> const entries = folder.open(notes);
            QCOMPARE(entries.size(), 2);
            QCOMPARE(entries.last(), change(1));
            if (length > lastStart) {
                QCOMPARE(notes.size(), 1);
                QVERIFY2(notes.first().contains(QStringLiteral("the last %1 bytes").arg(length - lastStart)),
                         qPrintable(notes.first()));
            }
            // What was incomplete is gone, so that what comes next follows whole entries.
            QCOMPARE(readAll(folder.journal), whole.left(lastStart));
        }
    }

    void appendAfterACutTailReadsBackWhole()
    {
        folder_t folder;
        QVERIFY(folder.make(3));
        QByteArray const whole = readAll(folder.journal);
        QVERIFY(writeAll(folder.journal, whole.left(whole.size() - 5)));
        {
            host_journal_t journal(folder.journal);
            QList<QJsonObject> entries;
            QStringList notes;
            QVERIFY(journal.open(host_journal_t::fileHash(folder.file), entries, notes));
            journal.append(change(9));
            QString error;
            QVERIFY2(journal.commit(error), qPrintable(error));
        }
        QStringList notes;
        QList<QJsonObject> const entries = folder.open(notes);
        QCOMPARE(notes, QStringList());
        QCOMPARE(entries, (QList<QJsonObject>{change(0), change(1), change(9)}));
    }

    void statusRepeatingTheEntryBeforeIsLeftOut_data()
    {
        // Each step: 's' + n appends change(n) as a status, 'r' + n as a plain
        // record, 'c' commits, 'v' commits and saves (the journal starts anew).
        QTest::addColumn<QStringList>("steps");
        QTest::addColumn<QList<int>>("kept");
        QTest::newRow("repeat right after") << QStringList{"s1", "s1"} << QList<int>{1};
        QTest::newRow("repeat in the next commit") << QStringList{"s1", "c", "s1"} << QList<int>{1};
        QTest::newRow("another status between") << QStringList{"s1", "s2", "s1"} << QList<int>{1, 2, 1};
        QTest::newRow("a record between") << QStringList{"s1", "r3", "s1"} << QList<int>{1, 3, 1};
        QTest::newRow("a record is never left out") << QStringList{"r1", "r1"} << QList<int>{1, 1};
        QTest::newRow("a status after the same record") << QStringList{"r1", "s1"} << QList<int>{1, 1};
        QTest::newRow("after a save") << QStringList{"s1", "v", "s1"} << QList<int>{1};
    }

    void statusRepeatingTheEntryBeforeIsLeftOut()
    {
        QFETCH(QStringList, steps);
        QFETCH(QList<int>, kept);
        QTemporaryDir dir;
        host_store_t store(dir.path(), "persistent.json", 2);
        QList<QJsonObject> entries;
        QVERIFY(openStore(store, entries));
        QString error;
        auto const write = [](QString const& path) { return writeAll(path, "{\"items\":{}}\n"); };
        for (QString const& step : steps) {
            int const n = step.mid(1).toInt();
            QByteArray const text = QJsonDocument(change(n)).toJson(QJsonDocument::Compact);
            if (step.startsWith('s'))
                store.journal().appendStatus(text);
            else if (step.startsWith('r'))
                store.journal().appendText(text);
            else if (step == QLatin1String("c"))
                QVERIFY2(store.journal().commit(error), qPrintable(error));
            else
                QVERIFY2(store.journal().commit(error) && store.save(write, error, {}), qPrintable(error));
        }
        QVERIFY2(store.journal().commit(error), qPrintable(error));
        // What a start replays: the entries since the last save.
        host_store_t again(dir.path(), "persistent.json", 2);
        QVERIFY(openStore(again, entries));
        QList<QJsonObject> expected;
        for (int n : kept)
            expected.append(change(n));
        QCOMPARE(entries, expected);
    }

    void entriesAppendedDuringACommitGoInTheNextOne()
    {
        folder_t folder;
        QVERIFY(folder.make(0));
        host_journal_t journal(folder.journal);
        QVERIFY(folder.openForWriting(journal));
        QStringList notes;
        host_committer_t committer;
        QSignalSpy written(&committer, &host_committer_t::written);
        QVERIFY(written.isValid());
        for (int n = 0; n < 5; ++n)
            journal.append(change(n));
        committer.submit({journal.takeBatch()});
        QVERIFY(committer.busy());
        for (int n = 5; n < 8; ++n)
            journal.append(change(n));
        // Under way or buffered, none of them is durable yet.
        QCOMPARE(journal.pendingCount(), 8);
        QTRY_COMPARE(written.count(), 1);
        std::vector<host_journal_t::batch_t> batches = committer.take();
        QVERIFY(!committer.busy());
        QCOMPARE(batches.size(), std::size_t(1));
        journal.settle(batches.front());
        QVERIFY2(batches.front().written, qPrintable(batches.front().error));
        QCOMPARE(journal.pendingCount(), 3);
        QCOMPARE(journal.entries(), qint64(5));
        // A commit waited for is taken back at once and announces nothing.
        committer.submit({journal.takeBatch()});
        batches = committer.wait();
        journal.settle(batches.front());
        QCOMPARE(journal.pendingCount(), 0);
        QTest::qWait(50);
        QCOMPARE(written.count(), 1);
        QList<QJsonObject> expected;
        for (int n = 0; n < 8; ++n)
            expected.append(change(n));
        QCOMPARE(folder.open(notes), expected);
        QCOMPARE(notes, QStringList());
    }

    void failedCommitIsWrittenAgainBeforeNewerEntries()
    {
        folder_t folder;
        QVERIFY(folder.make(2));
        host_journal_t journal(folder.journal);
        QVERIFY(folder.openForWriting(journal));
        QStringList notes;
        journal.append(change(2));
        journal.append(change(3));
        host_journal_t::batch_t batch = journal.takeBatch();
        // A descriptor that refuses writes stands for a full disk.
        int const readOnly = ::open(QFile::encodeName(folder.journal).constData(), O_RDONLY);
        QVERIFY(readOnly >= 0);
        batch.fd = readOnly;
        host_journal_t::writeBatch(batch);
        ::close(readOnly);
        journal.settle(batch);
        QVERIFY(!batch.written);
        QVERIFY2(batch.error.startsWith(QStringLiteral("cannot write the journal ")), qPrintable(batch.error));
        QCOMPARE(journal.pendingCount(), 2);
        // Part of the failed write reached the file: the next commit cuts it first.
        QFile file(folder.journal);
        QVERIFY(file.open(QIODevice::Append));
        file.write("{\"topic\":\"status/DB/pers");
        file.close();
        journal.append(change(4));
        QString error;
        QVERIFY2(journal.commit(error), qPrintable(error));
        QCOMPARE(folder.open(notes), (QList<QJsonObject>{change(0), change(1), change(2), change(3), change(4)}));
        QCOMPARE(notes, QStringList());
    }

    void journalOfAnotherFileIsSetAside_data()
    {
        QTest::addColumn<QByteArray>("replacement");
        QTest::newRow("file from another folder") << QByteArray("{\"items\":{\"other\":{}}}\n");
        QTest::newRow("file restored from an older backup") << QByteArray("{\"items\":{\"older\":{}}}\n");
        QTest::newRow("journal header unreadable") << QByteArray();
    }

    void journalOfAnotherFileIsSetAside()
    {
        QFETCH(QByteArray, replacement);
        folder_t folder;
        QVERIFY(folder.make(4));
        QByteArray const journal = readAll(folder.journal);
        if (replacement.isEmpty())
            QVERIFY(writeAll(folder.journal, "garbage\n" + journal));
        else
            QVERIFY(writeAll(folder.file, replacement));
        QStringList notes;
        QList<QJsonObject> const entries = folder.open(notes);
        QCOMPARE(entries, QList<QJsonObject>());
        QCOMPARE(notes.size(), 1);
        QVERIFY2(notes.first().contains("does not follow the file beside it: not applied, kept as"),
                 qPrintable(notes.first()));
        QStringList const aside = QDir(folder.dir.path()).entryList({"persistent.json.journal.corrupt-*"});
        QCOMPARE(aside.size(), 1);
        QCOMPARE(readAll(folder.dir.filePath(aside.first())), replacement.isEmpty() ? "garbage\n" + journal : journal);
        // A new journal follows the file that is there.
        QStringList again;
        QCOMPARE(folder.open(again), QList<QJsonObject>());
        QCOMPARE(again, QStringList());
    }

    void saveCutAtEachStepLeavesTheJournalOfTheFileThere_data()
    {
        QTest::addColumn<int>("step");
        QTest::addColumn<bool>("replaced");
        QTest::newRow("killed after the next journal was written") << 1 << false;
        QTest::newRow("killed after the file was replaced") << 2 << true;
        QTest::newRow("save completed") << 3 << true;
    }

    void saveCutAtEachStepLeavesTheJournalOfTheFileThere()
    {
        QFETCH(int, step);
        QFETCH(bool, replaced);
        folder_t folder;
        QVERIFY(folder.make(5));
        QByteArray const saved = "{\"items\":{\"K0\":{},\"K1\":{}}}\n";
        QByteArray const carried = QJsonDocument(QJsonObject{{"applied", "x:1"}}).toJson(QJsonDocument::Compact);
        {
            host_journal_t journal(folder.journal);
            QList<QJsonObject> entries;
            QStringList notes;
            QVERIFY(journal.open(host_journal_t::fileHash(folder.file), entries, notes));
            QVERIFY(writeAll(folder.file + ".tmp", saved));
            QString error;
            QVERIFY(journal.prepareNext(host_journal_t::fileHash(folder.file + ".tmp"),
                                        {QJsonDocument::fromJson(carried).object()}, error));
            if (step >= 2)
                QVERIFY(QFile::remove(folder.file) && QFile::rename(folder.file + ".tmp", folder.file));
            if (step >= 3)
                QVERIFY(journal.adoptNext(error));
        }
        QStringList notes;
        QList<QJsonObject> const entries = folder.open(notes);
        QCOMPARE(notes, QStringList());
        QCOMPARE(readAll(folder.file) == saved, replaced);
        // The old journal's changes with the old file, the carried records alone with the new one.
        if (replaced)
            QCOMPARE(entries, (QList<QJsonObject>{QJsonDocument::fromJson(carried).object()}));
        else
            QCOMPARE(entries.size(), 5);
        QVERIFY(!QFile::exists(folder.journal + ".new"));
    }

    void lookingTouchesNothing()
    {
        folder_t folder;
        QVERIFY(folder.make(3));
        QByteArray const whole = readAll(folder.journal);
        QVERIFY(writeAll(folder.journal, whole.left(whole.size() - 3)));
        QStringList notes;
        QList<QJsonObject> const entries =
            host_journal_t::inspect(folder.journal, host_journal_t::fileHash(folder.file), notes);
        QCOMPARE(entries.size(), 2);
        QCOMPARE(notes.size(), 1);
        QCOMPARE(readAll(folder.journal), whole.left(whole.size() - 3));
    }

    void storeSaveStartsTheJournalAnew()
    {
        QTemporaryDir dir;
        host_store_t store(dir.path(), "persistent.json", 2);
        QList<QJsonObject> entries;
        QVERIFY(openStore(store, entries));
        store.journal().append(change(1));
        QString error;
        QVERIFY(store.journal().commit(error));
        auto const write = [](QString const& path) { return writeAll(path, "{\"items\":{\"K1\":{}}}\n"); };
        QVERIFY2(store.save(write, error, {QJsonObject{{"applied", "x:2"}}}), qPrintable(error));
        QCOMPARE(store.journal().entries(), 1);
        // Journals hold what the databases hold: only the owner reads them.
        QFile::Permissions const others = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
        QCOMPARE(QFile::permissions(store.journalPath()) & others, QFile::Permissions());
        host_store_t again(dir.path(), "persistent.json", 2);
        QVERIFY(openStore(again, entries));
        QCOMPARE(entries, (QList<QJsonObject>{QJsonObject{{"applied", "x:2"}}}));
    }

    /// What a save carries into the next journal isn't growth: the host
    /// compacts by growth, and open requests outweighing the file would
    /// otherwise bring a save at every commit.
    void growthLeavesOutWhatASaveCarried()
    {
        QTemporaryDir dir;
        host_store_t store(dir.path(), "persistent.json", 2);
        QList<QJsonObject> entries;
        QVERIFY(openStore(store, entries));
        QCOMPARE(store.journal().grown(), 0);
        QList<QJsonObject> carried;
        for (int n = 0; n < 200; ++n)
            carried.append(QJsonObject{{"request", change(n)}, {"id", "writer:" + QString::number(n)}});
        QString error;
        auto const write = [](QString const& path) { return writeAll(path, "{\"items\":{}}\n"); };
        QVERIFY2(store.save(write, error, carried), qPrintable(error));
        QVERIFY(store.journal().size() > 100 * QFileInfo(store.currentPath()).size());
        QCOMPARE(store.journal().grown(), 0);
        store.journal().append(change(1));
        QVERIFY(store.journal().commit(error));
        qint64 const line = QJsonDocument(change(1)).toJson(QJsonDocument::Compact).size() + 1;
        QCOMPARE(store.journal().grown(), line);
        // A journal found at the start: nothing tells carried from grown.
        host_store_t again(dir.path(), "persistent.json", 2);
        QVERIFY(openStore(again, entries));
        QCOMPARE(entries.size(), 201);
        QCOMPARE(again.journal().grown(), again.journal().size());
    }
};

QTEST_GUILESS_MAIN(tst_host_journal)
#include "tst_host_journal.moc"
