#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include "host_store_t.h"

namespace {

QByteArray readAll(QString const& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("-");
}

void writeAll(QString const& path, QByteArray const& bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(bytes);
}

/// The backups as one word each, newest first, "-" for a missing one: "D A B".
QByteArray backupsOf(host_store_t const& store, int count)
{
    QList<QByteArray> words;
    for (int n = 1; n <= count; ++n)
        words.append(readAll(store.backupPath(n)));
    return words.join(' ');
}

} // namespace

class tst_host_store : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saveKeepsEveryBackupThereIs_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        // The current file holds "D" and the save writes "E".
        QTest::newRow("first backup") << 3 << QByteArray("- - -") << QByteArray("D - -");
        QTest::newRow("filling up") << 3 << QByteArray("A - -") << QByteArray("D A -");
        QTest::newRow("full: the oldest goes") << 3 << QByteArray("A B C") << QByteArray("D A B");
        // A save killed during its rotation leaves gaps; the next save must not
        // lose a backup to them.
        QTest::newRow("killed after the oldest went and all moved up") << 3 << QByteArray("- A B")
                                                                       << QByteArray("D A B");
        QTest::newRow("killed with the newest not yet moved") << 3 << QByteArray("A - B") << QByteArray("D A B");
        QTest::newRow("only the last slot") << 3 << QByteArray("- - A") << QByteArray("D A -");
        QTest::newRow("gaps among many") << 5 << QByteArray("- A - B C") << QByteArray("D A B C -");
        QTest::newRow("no backups kept") << 0 << QByteArray("") << QByteArray("");
    }

    void saveKeepsEveryBackupThereIs()
    {
        QFETCH(int, count);
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        QTemporaryDir dir;
        host_store_t store(dir.path(), QStringLiteral("persistent.json"), count);
        writeAll(store.currentPath(), "D");
        QList<QByteArray> const words = before.split(' ');
        for (int n = 1; n <= count; ++n) {
            if (words.at(n - 1) != "-")
                writeAll(store.backupPath(n), words.at(n - 1));
        }
        QString error;
        QVERIFY2(store.save([](QString const& path) {
            QFile file(path);
            return file.open(QIODevice::WriteOnly) && file.write("E") == 1;
        }, error), qPrintable(error));
        QCOMPARE(readAll(store.currentPath()), QByteArray("E"));
        QCOMPARE(backupsOf(store, count), after);
        QVERIFY(!QFile::exists(store.temporaryPath()));
    }
};

QTEST_GUILESS_MAIN(tst_host_store)
#include "tst_host_store.moc"
