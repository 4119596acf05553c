#include "platform/logs/classlogs.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QtTest>

using utility::logs::classlogs;
using utility::logs::logrecord;
using utility::logs::LogLevel;

class tst_classlogs : public QObject
{
    Q_OBJECT

private:
    QList<logrecord> records;

    void capture()
    {
        records.clear();
        classlogs::getInstance()->setCapture([this](logrecord const& r) { records.append(r); });
    }

private Q_SLOTS:
    void cleanup()
    {
        classlogs::getInstance()->setCapture({});
        classlogs::getInstance()->setThreshold(utility::logs::warning);
        classlogs::getInstance()->setStandardError();
    }

    void captureSeesEveryRecordSynchronously()
    {
        capture();
        classlogs::getInstance()->log_asynch(QStringLiteral("hello"), utility::logs::trace,
                                             QStringLiteral("src"), "a/b.cpp", 12);
        QCOMPARE(records.size(), 1);
        QCOMPARE(records.first().message, QStringLiteral("hello"));
        QCOMPARE(records.first().level, utility::logs::trace);
        QCOMPARE(records.first().source, QStringLiteral("src"));
        QCOMPARE(records.first().file, QStringLiteral("a/b.cpp"));
        QCOMPARE(records.first().line, 12u);
    }

    void levelCheckFollowsThreshold_data()
    {
        QTest::addColumn<int>("threshold");
        QTest::addColumn<int>("level");
        QTest::addColumn<bool>("enabled");
        QTest::newRow("error under warning") << 3 << 2 << true;
        QTest::newRow("warning at warning") << 3 << 3 << true;
        QTest::newRow("trace under warning") << 3 << 6 << false;
        QTest::newRow("trace at trace") << 6 << 6 << true;
        QTest::newRow("exception at exception") << 1 << 1 << true;
        QTest::newRow("error at exception") << 1 << 2 << false;
    }

    void levelCheckFollowsThreshold()
    {
        QFETCH(int, threshold);
        QFETCH(int, level);
        QFETCH(bool, enabled);
        classlogs::getInstance()->setThreshold(LogLevel(threshold));
        QCOMPARE(classlogs::getInstance()->isEnabled(LogLevel(level)), enabled);
    }

    void captureEnablesEveryLevel()
    {
        classlogs::getInstance()->setThreshold(utility::logs::exception);
        QVERIFY(!classlogs::getInstance()->isEnabled(utility::logs::trace));
        capture();
        QVERIFY(classlogs::getInstance()->isEnabled(utility::logs::trace));
        CLASSLOGS_LOG(QStringLiteral("built"), utility::logs::trace, QStringLiteral("macro"));
        QCOMPARE(records.size(), 1);
        QCOMPARE(records.first().source, QStringLiteral("macro"));
    }

    void fileReceivesOnlyLinesWithinThreshold()
    {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        QString const path = dir.filePath(QStringLiteral("log.txt"));
        auto* logs = classlogs::getInstance();
        QVERIFY(logs->setFile(path));
        logs->setThreshold(utility::logs::warning);
        logs->log_asynch(QStringLiteral("kept error"), utility::logs::error, QStringLiteral("s"), __FILE__, __LINE__);
        logs->log_asynch(QStringLiteral("dropped trace"), utility::logs::trace, QStringLiteral("s"), __FILE__, __LINE__);
        logs->log_asynch(QStringLiteral("kept warning"), utility::logs::warning, QStringLiteral("s"), __FILE__, __LINE__);
        logs->flush();

        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QString const text = QString::fromUtf8(file.readAll());
        QVERIFY2(text.contains(QStringLiteral("s: kept error")), qPrintable(text));
        QVERIFY(text.contains(QStringLiteral("s: kept warning")));
        QVERIFY(!text.contains(QStringLiteral("dropped trace")));
        QVERIFY(text.indexOf(QStringLiteral("kept error")) < text.indexOf(QStringLiteral("kept warning")));
    }

    void unwritableFileKeepsDestination()
    {
        // A path below a plain file can't be created, even by root.
        QTemporaryFile blocker;
        QVERIFY(blocker.open());
        QVERIFY(!classlogs::getInstance()->setFile(blocker.fileName() + QStringLiteral("/x/log.txt")));
    }

    void nothingIsLostAtExit()
    {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        QString const path = dir.filePath(QStringLiteral("exit.txt"));
        int const lines = 20000;
        QProcess helper;
        helper.start(QStringLiteral(CLASSLOGS_EXIT_HELPER), {path, QString::number(lines)});
        QVERIFY(helper.waitForFinished(60000));
        QCOMPARE(helper.exitStatus(), QProcess::NormalExit);
        QCOMPARE(helper.exitCode(), 0);

        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QList<QByteArray> const written = file.readAll().split('\n');
        QCOMPARE(written.size(), lines + 1); // the last split is after the final newline
        QVERIFY(written.at(lines - 1).contains(QByteArray("line ") + QByteArray::number(lines - 1)));
    }
};

QTEST_GUILESS_MAIN(tst_classlogs)
#include "tst_classlogs.moc"
