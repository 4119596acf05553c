#include <QDir>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

namespace {

QByteArray itemLine(QString const& id, QString const& name, QString const& driver = QStringLiteral("drivers/driver_knx/1"))
{
    QJsonObject const payload{{"id_driver", driver}, {"name", name}, {"description", ""}, {"enabled", true},
                              {"status", "1/1/2"}, {"command", "1/1/1"}, {"feedback", "1/1/3"}, {"type", "dtp_1"},
                              {"typeformat", ""}, {"interpreter", ""}, {"tracking", false}, {"flags", 0}};
    QJsonObject const packet{{"topic", "request/DB/persistent/items/objects_list/" + id}, {"payload", payload}};
    return QJsonDocument(packet).toJson(QJsonDocument::Compact) + '\n';
}

QJsonObject readJson(QString const& path, bool* ok = nullptr)
{
    QFile file(path);
    QJsonParseError error{};
    QJsonDocument document;
    if (file.open(QIODevice::ReadOnly))
        document = QJsonDocument::fromJson(file.readAll(), &error);
    if (ok)
        *ok = file.isOpen() && error.error == QJsonParseError::NoError && document.isObject();
    return document.object();
}

struct run_t {
    int exitCode = -1;
    QList<QJsonObject> lines;
    QList<QByteArray> texts; // the same lines as written
    QString errors;
};

/// An item request spelled by hand: name as JSON string contents, flags as JSON number text.
QByteArray spelledItem(QByteArray const& name, QByteArray const& flags)
{
    return R"({"payload":{"command":"1/1/1","description":"","enabled":true,"feedback":"1/1/3","flags":)" + flags
           + R"(,"id_driver":"drivers/driver_knx/1","interpreter":"","name":")" + name
           + R"(","status":"1/1/1","tracking":false,"type":"dtp_1","typeformat":""},"topic":"request/DB/persistent/items/objects_list/L1"})";
}

/// Runs the host on a data folder with the given input and waits for it to end.
run_t runHost(QString const& folder, QByteArray const& input, QStringList const& extra = {})
{
    QProcess host;
    host.start(QStringLiteral(DBHOST), QStringList{"--data", folder, "--log-level", "2"} + extra);
    run_t run;
    if (!host.waitForStarted())
        return run;
    host.write(input);
    host.closeWriteChannel();
    if (!host.waitForFinished(60000))
        return run;
    run.exitCode = host.exitCode();
    for (QByteArray const& line : host.readAllStandardOutput().split('\n')) {
        if (!line.isEmpty()) {
            run.lines.append(QJsonDocument::fromJson(line).object());
            run.texts.append(line);
        }
    }
    run.errors = QString::fromUtf8(host.readAllStandardError());
    return run;
}

/// Reads the host's standard error until it holds the text; false when the host
/// ended or the time ran out first.
bool waitForError(QProcess& host, QString& errors, QString const& text, int milliseconds = 30000)
{
    QElapsedTimer clock;
    clock.start();
    host.setReadChannel(QProcess::StandardError);
    while (!errors.contains(text)) {
        if (clock.elapsed() > milliseconds || host.state() != QProcess::Running)
            return false;
        host.waitForReadyRead(100);
        errors += QString::fromUtf8(host.readAllStandardError());
    }
    return true;
}

QList<QJsonObject> withSignal(QList<QJsonObject> const& lines, QString const& signal)
{
    QList<QJsonObject> found;
    for (QJsonObject const& line : lines) {
        if (line.value("signal").toString() == signal)
            found.append(line);
    }
    return found;
}

} // namespace

class tst_dbhost : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void scriptedSessionPrintsChangesAndSaves()
    {
        QTemporaryDir dir;
        QString const folder = dir.filePath("data");
        QByteArray input = itemLine("L1", "Lamp") + itemLine("L2", "Blind") + itemLine("L1", "Hall lamp")
                           + "{\"topic\":\"request/DB/persistent/items/objects_list/L2\",\"payload\":{}}\n"
                           + "not json at all\n"
                           + "{\"topic\":\"request/DB/persistent/drivers/driver_baos/enabled\",\"payload\":true}\n"
                           + "{\"topic\":\"request/DB/persistent/nowhere\",\"payload\":1}\n"
                           + "{\"payload\":1}\n"
                           + itemLine("L3", "Truncated").left(40) + '\n';
        run_t const run = runHost(folder, input);
        QCOMPARE(run.exitCode, 0);

        QList<QJsonObject> const items = withSignal(run.lines, "onPersistentChangeItem");
        QCOMPARE(items.size(), 4);
        QCOMPARE(items.at(0).value("key").toString(), QStringLiteral("L1"));
        QCOMPARE(items.at(2).value("packet").toObject().value("payload").toObject().value("name").toString(),
                 QStringLiteral("Hall lamp"));
        QVERIFY(items.at(3).value("packet").toObject().value("payload").isNull());
        QVERIFY(!withSignal(run.lines, "onPersistentChangeDriversBaosEnabled").isEmpty());
        QVERIFY(!withSignal(run.lines, "onPersistentChangeDriversKnxEnabled").isEmpty());
        int refused = 0;
        for (QJsonObject const& line : run.lines)
            refused += line.value("event").toString() == QLatin1String("refused") ? 1 : 0;
        QCOMPARE(refused, 1);
        QVERIFY(run.errors.contains("line 5 is not a JSON object"));
        QVERIFY(run.errors.contains("line 8 has no topic"));
        QVERIFY(run.errors.contains("line 9 is not a JSON object"));

        bool ok = false;
        QJsonObject const saved = readJson(folder + "/persistent.json", &ok);
        QVERIFY(ok);
        QJsonObject const list = saved.value("items").toObject().value("objects_list").toObject();
        QCOMPARE(list.keys(), QStringList{"L1"});
        QCOMPARE(list.value("L1").toObject().value("name").toString(), QStringLiteral("Hall lamp"));
        QCOMPARE(saved.value("drivers").toObject().value("driver_baos").toObject().value("enabled").toBool(), true);
        QCOMPARE(saved.value("drivers").toObject().value("driver_knx").toObject().value("enabled").toBool(), false);
        QVERIFY(!QFile::exists(folder + "/persistent.json.tmp"));

        // A second run starts from what the first saved, and keeps the first as a backup.
        run_t const again = runHost(folder, itemLine("L4", "Fan"));
        QCOMPARE(again.exitCode, 0);
        QVERIFY2(again.errors.isEmpty(), qPrintable(again.errors));
        QJsonObject const second = readJson(folder + "/persistent.json");
        QCOMPARE(second.value("items").toObject().value("objects_list").toObject().keys(),
                 (QStringList{"L1", "L4"}));
        QCOMPARE(readJson(folder + "/persistent.json.1"), saved);

        // A run that changes nothing writes nothing: the backup stays the first run's file.
        QDateTime const written = QFileInfo(folder + "/persistent.json").lastModified();
        run_t const idle = runHost(folder, QByteArray());
        QCOMPARE(idle.exitCode, 0);
        QCOMPARE(readJson(folder + "/persistent.json"), second);
        QCOMPARE(readJson(folder + "/persistent.json.1"), saved);
        QCOMPARE(QFileInfo(folder + "/persistent.json").lastModified(), written);
    }

    void badLineIsSkippedAndSaid_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QString>("said");
        QTest::newRow("no topic") << QByteArray(R"({"payload":1})") << "line 2 has no topic, skipped";
        QTest::newRow("topic not a string") << QByteArray(R"({"topic":5,"payload":1})") << "line 2 has no topic, skipped";
        QTest::newRow("array") << QByteArray("[1,2,3]") << "line 2 is not a JSON object, skipped";
        QTest::newRow("string") << QByteArray(R"("request/DB/persistent/general")") << "line 2 is not a JSON object, skipped";
        QTest::newRow("no JSON") << QByteArray("topic=general") << "line 2 is not a JSON object, skipped";
    }

    void badLineIsSkippedAndSaid()
    {
        QFETCH(QByteArray, line);
        QFETCH(QString, said);
        QTemporaryDir dir;
        QString const folder = dir.filePath("data");
        // The lines around it still count.
        run_t const run = runHost(folder, itemLine("A", "before") + line + '\n' + itemLine("B", "after"));
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(run.errors.contains("dbhost: " + said), qPrintable(run.errors));
        QCOMPARE(withSignal(run.lines, "onPersistentChangeItem").size(), 2);
        QCOMPARE(readJson(folder + "/persistent.json").value("items").toObject().value("objects_list").toObject()
                     .keys(),
                 (QStringList{"A", "B"}));
    }

    void spellingOfALineChangesNoOutput_data()
    {
        // The host's own spelling lends its payload's text to the change lines;
        // any other spelling of the same packet must print the same bytes.
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("the host's spelling") << spelledItem(R"(Hall \"lamp\"\té/ü)", "0");
        QTest::newRow("spaces") << spelledItem(R"(Hall \"lamp\"\té/ü)", "0").replace(",", ", ").replace(":{", ": {");
        QTest::newRow("topic first")
            << QByteArray(R"({"topic":"request/DB/persistent/items/objects_list/L1","payload":)")
                   + spelledItem(R"(Hall \"lamp\"\té/ü)", "0").mid(11).chopped(55) + '}';
        QTest::newRow("escaped slash") << spelledItem(R"(Hall \"lamp\"\té\/ü)", "0");
        QTest::newRow("escaped letters") << spelledItem(R"(Hall \"lamp\"\t\u00e9/\u00fc)", "0");
        QTest::newRow("a number as a fraction") << spelledItem(R"(Hall \"lamp\"\té/ü)", "0.0");
        QTest::newRow("a key more") << spelledItem(R"(Hall \"lamp\"\té/ü)", "0").replace("\"status\"", "\"extra\":1,\"status\"");
    }

    void spellingOfALineChangesNoOutput()
    {
        QFETCH(QByteArray, line);
        QTemporaryDir dir;
        run_t const expected = runHost(dir.filePath("expected"), spelledItem(R"(Hall \"lamp\"\té/ü)", "0") + '\n');
        run_t const run = runHost(dir.filePath("data"), line + '\n');
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(withSignal(run.lines, "onPersistentChangeItem").size(), 1);
        QCOMPARE(run.texts, expected.texts);
        QCOMPARE(readJson(dir.filePath("data") + "/persistent.json"), readJson(dir.filePath("expected") + "/persistent.json"));
    }

    void malformedPacketDoesNotEndTheHost_data()
    {
        QTest::addColumn<QString>("role");
        QTest::newRow("server") << "server";
        QTest::newRow("client") << "client";
        QTest::newRow("offline") << "offline";
    }

    void malformedPacketDoesNotEndTheHost()
    {
        QFETCH(QString, role);
        QTemporaryDir dir;
        QString const folder = dir.filePath("data");
        QByteArray const bad = R"({"topic": "status/DB/persistent/elements/page_stack", "payload": {"mode": "0 19 * * *", "flags": ""}})";
        QByteArray const input = bad + '\n' + QByteArray(bad).replace("status/", "request/") + '\n'
                                 + itemLine("L1", "Lamp").replace("request/", "status/");
        run_t const run = runHost(folder, input, {"--role", role});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(withSignal(run.lines, "onPersistentChangeItem").size(), 1);
        QVERIFY(readJson(folder + "/persistent.json").value("items").toObject().value("objects_list").toObject()
                    .contains("L1"));
    }

    /// A standard input whose every read fails (here a folder; a terminal that
    /// hung up does the same) ends the input as its end would, instead of
    /// being read again at every turn of the event loop.
    void unreadableInputEndsTheInput()
    {
        QTemporaryDir dir;
        QProcess host;
        host.setStandardInputFile(dir.path());
        host.start(QStringLiteral(DBHOST), QStringList{"--data", dir.filePath("data"), "--log-level", "2"});
        QVERIFY(host.waitForStarted());
        QVERIFY(host.waitForFinished(20000));
        QCOMPARE(host.exitCode(), 0);
        QVERIFY(QString::fromUtf8(host.readAllStandardError()).contains("standard input failed"));
        QVERIFY(QFile::exists(dir.filePath("data/persistent.json")));
    }

    // Installed and packaged binaries too: log lines name the source by its
    // path in the tree, never by the build machine's folders.
    void logLinesNameSourcesByTheirPathInTheTree()
    {
        QTemporaryDir dir;
        run_t const run = runHost(dir.filePath("data"), itemLine("L1", "Lamp"), {"--log-level", "6"});
        QCOMPARE(run.exitCode, 0);
        static QRegularExpression const place(QStringLiteral(R"(\(([^()]+):(\d+)\)$)"),
                                              QRegularExpression::MultilineOption);
        QStringList files;
        for (auto it = place.globalMatch(run.errors); it.hasNext();)
            files.append(it.next().captured(1));
        files.removeDuplicates();
        QVERIFY2(!files.filter(QRegularExpression("^database/.+\\.cpp$")).isEmpty(), qPrintable(run.errors));
        for (QString const& file : std::as_const(files)) {
            QVERIFY2(QDir::isRelativePath(file), qPrintable(file));
            QVERIFY2(QFileInfo::exists(QStringLiteral(SOURCE_TREE "/") + file), qPrintable(file));
        }
        QVERIFY(!run.errors.contains(QStringLiteral(SOURCE_TREE)));
    }

    void liveValueIsSavedAndRecoveredFromABackup()
    {
        QTemporaryDir dir;
        QString const folder = dir.filePath("data");
        auto const value = [](QByteArray const& text) {
            return "{\"topic\":\"status/DB/realtime/items/objects_list/L1/value\",\"payload\":\"" + text + "\"}\n";
        };
        run_t const first = runHost(folder, itemLine("L1", "Lamp") + value("on"));
        QCOMPARE(first.exitCode, 0);
        QList<QJsonObject> const live = withSignal(first.lines, "onRealtimeChangeItem");
        QVERIFY(!live.isEmpty());
        QCOMPARE(live.last().value("packet").toObject().value("payload").toObject().value("value").toString(),
                 QStringLiteral("on"));
        auto const savedValue = [&] {
            return readJson(folder + "/realtime.json").value("items").toObject().value("objects_list").toObject()
                .value("L1").toObject().value("value").toString();
        };
        QCOMPARE(savedValue(), QStringLiteral("on"));

        QCOMPARE(runHost(folder, value("off")).exitCode, 0);
        QCOMPARE(savedValue(), QStringLiteral("off"));
        QFile::resize(folder + "/realtime.json", 20);
        run_t const recovered = runHost(folder, QByteArray());
        QCOMPARE(recovered.exitCode, 0);
        QVERIFY2(recovered.errors.contains("realtime.json is empty or unreadable; kept as"),
                 qPrintable(recovered.errors));
        QVERIFY(recovered.errors.contains("recovered from the backup"));
        // The newest backup is the file of the first run.
        QCOMPARE(savedValue(), QStringLiteral("on"));
        QCOMPARE(QDir(folder).entryList({"realtime.json.corrupt-*"}).size(), 1);
    }

    void commandsResetAndLoadWhatIsSaved()
    {
        QTemporaryDir dir;
        QString const folder = dir.filePath("data");
        auto const itemsSaved = [&] {
            return readJson(folder + "/persistent.json").value("items").toObject().value("objects_list").toObject().keys();
        };
        QCOMPARE(runHost(folder, itemLine("L1", "Lamp")).exitCode, 0);
        QCOMPARE(itemsSaved(), QStringList{"L1"});
        QJsonObject const withLamp = readJson(folder + "/persistent.json");

        // A reset puts the factory database back, on disk too.
        run_t const reset = runHost(folder, "{\"topic\":\"request/DB/command/reset/all\",\"payload\":{}}\n");
        QCOMPARE(reset.exitCode, 0);
        QCOMPARE(itemsSaved(), QStringList());

        // A load puts the given document in place.
        QJsonObject const load{{"topic", "request/DB/command/persistent/load/database"}, {"payload", withLamp}};
        QCOMPARE(runHost(folder, QJsonDocument(load).toJson(QJsonDocument::Compact) + '\n').exitCode, 0);
        QCOMPARE(itemsSaved(), QStringList{"L1"});

        // A bad document changes nothing, not even the file.
        QFile current(folder + "/persistent.json");
        QVERIFY(current.open(QIODevice::ReadOnly));
        QByteArray const before = current.readAll();
        current.close();
        QJsonObject newer = withLamp;
        newer.insert("versions", QJsonObject{{"database", "9.0.0"}});
        QByteArray input;
        for (QJsonValue const& payload : {QJsonValue("not a database"), QJsonValue(newer)}) {
            QJsonObject const bad{{"topic", "request/DB/command/persistent/load/database"}, {"payload", payload}};
            input += QJsonDocument(bad).toJson(QJsonDocument::Compact) + '\n';
        }
        run_t const refused = runHost(folder, input);
        QCOMPARE(refused.exitCode, 0);
        int errors = 0;
        for (QJsonObject const& line : refused.lines)
            errors += line.value("event").toString() == QLatin1String("error") ? 1 : 0;
        QCOMPARE(errors, 2);
        QVERIFY(current.open(QIODevice::ReadOnly));
        QCOMPARE(current.readAll(), before);
    }

    void commandsOfAClientGoOutForDelivery()
    {
        QTemporaryDir dir;
        QString const folder = dir.filePath("data");
        QCOMPARE(runHost(folder, itemLine("L1", "Lamp").replace("request/", "status/"), {"--role", "client"}).exitCode, 0);
        run_t const run = runHost(folder, "{\"topic\":\"request/DB/command/reset/all\",\"payload\":{}}\n",
                                  {"--role", "client"});
        QCOMPARE(run.exitCode, 0);
        // The load's check may bring live twins in line (change lines); the command goes out once.
        QList<QJsonObject> requests;
        for (QJsonObject const& line : run.lines) {
            if (line.value("event").toString() == QLatin1String("request"))
                requests.append(line);
        }
        QCOMPARE(requests.size(), 1);
        QCOMPARE(requests.first().value("packet").toObject().value("topic").toString(),
                 QStringLiteral("request/DB/command/reset/all"));
        QVERIFY(readJson(folder + "/persistent.json").value("items").toObject().value("objects_list").toObject()
                    .contains("L1"));
    }

    void killedWhileSavingLeavesALoadableDatabase()
    {
        QTemporaryDir dir;
        QString const folder = dir.filePath("data");
        QByteArray burst;
        for (int i = 0; i < 400; ++i)
            burst += itemLine(QStringLiteral("K%1").arg(i % 50), QStringLiteral("name %1").arg(i));
        int replaced = 0;
        QByteArray previous;
        for (int round = 0; round < 12; ++round) {
            QProcess host;
            host.start(QStringLiteral(DBHOST), QStringList{"--data", folder, "--log-level", "1", "--backups", "2"});
            QVERIFY(host.waitForStarted());
            host.write(burst);
            // Killed after a random number of applied packets, not after a time:
            // a save follows every 21 changes, so kills land before, during and
            // after saves whatever the speed of the machine.
            int const target = int(QRandomGenerator::global()->bounded(20, 390));
            int seen = 0;
            while (seen < target && host.waitForReadyRead(30000))
                seen += int(host.readAllStandardOutput().count('\n'));
            host.kill();
            QVERIFY(host.waitForFinished());
            for (QString const& name : QDir(folder).entryList({"persistent.json", "persistent.json.?"}, QDir::Files)) {
                bool ok = false;
                QJsonObject const document = readJson(folder + "/" + name, &ok);
                QVERIFY2(ok, qPrintable(name + " is not a complete database after a kill"));
                QVERIFY(document.contains("items"));
            }
            QFile current(folder + "/persistent.json");
            QVERIFY(current.open(QIODevice::ReadOnly));
            QByteArray const content = current.readAll();
            replaced += content != previous ? 1 : 0;
            previous = content;
        }
        // Saves did happen while the host was being killed.
        QVERIFY(replaced > 1);
        run_t const after = runHost(folder, QByteArray());
        QCOMPARE(after.exitCode, 0);
        QVERIFY2(!after.errors.contains("unreadable"), qPrintable(after.errors));
        QVERIFY(QDir(folder).entryList({"*.corrupt-*"}, QDir::Files).isEmpty());
    }

    void badFileIsKeptAsideAndNewestBackupUsed_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty file") << QByteArray();
        QTest::newRow("truncated file") << QByteArray("{\n    \"general\": {\n        \"descr");
    }

    void badFileIsKeptAsideAndNewestBackupUsed()
    {
        QFETCH(QByteArray, content);
        QTemporaryDir dir;
        QString const folder = dir.filePath("data");
        QCOMPARE(runHost(folder, itemLine("A", "first")).exitCode, 0);
        QCOMPARE(runHost(folder, itemLine("B", "second")).exitCode, 0);
        QJsonObject const newestBackup = readJson(folder + "/persistent.json.1");
        QVERIFY(newestBackup.value("items").toObject().value("objects_list").toObject().contains("A"));
        {
            QFile file(folder + "/persistent.json");
            QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
            file.write(content);
        }
        run_t const run = runHost(folder, QByteArray());
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(run.errors.contains("empty or unreadable; kept as"), qPrintable(run.errors));
        QVERIFY(run.errors.contains("recovered from the backup " + folder + "/persistent.json.1"));
        QStringList const aside = QDir(folder).entryList({"persistent.json.corrupt-*"}, QDir::Files);
        QCOMPARE(aside.size(), 1);
        QVERIFY(!aside.first().contains(':'));
        QFile kept(folder + "/" + aside.first());
        QVERIFY(kept.open(QIODevice::ReadOnly));
        QCOMPARE(kept.readAll(), content);
        QCOMPARE(readJson(folder + "/persistent.json").value("items"), newestBackup.value("items"));
    }

    void diskFullWhenLeavingIsTriedAgain()
    {
        if (!QFileInfo::exists("/dev/full"))
            QSKIP("no /dev/full here");
        QTemporaryDir dir;
        QString const folder = dir.filePath("data");
        QCOMPARE(runHost(folder, itemLine("A", "saved before")).exitCode, 0);
        // The save at the end of input is the only one, and the disk is full for it.
        QVERIFY(QFile::link("/dev/full", folder + "/persistent.json.tmp"));
        run_t const run = runHost(folder, itemLine("B", "saved on leaving"));
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(run.errors.contains("save failed: cannot write " + folder + "/persistent.json.tmp\n"),
                 qPrintable(run.errors));
        QVERIFY(run.errors.contains("trying the failed saves again in 1 s before leaving"));
        QVERIFY(run.errors.contains("persistent.json saved again after failed saves"));
        QCOMPARE(readJson(folder + "/persistent.json").value("items").toObject().value("objects_list").toObject()
                     .keys(),
                 (QStringList{"A", "B"}));
    }

    void fileOfANewerVersionIsLeftAlone()
    {
        QTemporaryDir dir;
        QString const folder = dir.filePath("data");
        QCOMPARE(runHost(folder, itemLine("A", "first")).exitCode, 0);
        QCOMPARE(runHost(folder, itemLine("B", "second")).exitCode, 0);
        QFile file(folder + "/persistent.json");
        QVERIFY(file.open(QIODevice::ReadWrite));
        QByteArray const newer = file.readAll().replace("\"4.0.0\"", "\"9.1.0\"");
        QVERIFY(file.resize(0) && file.write(newer) == newer.size());
        file.close();
        QStringList const before = QDir(folder).entryList(QDir::Files);

        // Taken as this version's, its unknown parts would be dropped by the next save.
        run_t const run = runHost(folder, itemLine("C", "third"));
        QCOMPARE(run.exitCode, 2);
        QVERIFY2(run.errors.contains(folder + "/persistent.json was written by a newer version of the database "
                                              "(9.1.0; this one is 4.0.0): not started, nothing changed"),
                 qPrintable(run.errors));
        QVERIFY(run.lines.isEmpty());
        QCOMPARE(QDir(folder).entryList(QDir::Files), before);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), newer);
    }

    void firstRunCreatesTheFactoryDatabase()
    {
        QTemporaryDir dir;
        QString const folder = dir.filePath("fresh/data");
        run_t const run = runHost(folder, QByteArray(), {"--brand", "VESTRA"});
        QCOMPARE(run.exitCode, 0);
        QVERIFY(run.errors.contains("starting from the factory database"));
        QJsonObject const saved = readJson(folder + "/persistent.json");
        QCOMPARE(saved.value("drivers").toObject().value("knx_mode").toString(), QStringLiteral("baos"));
        QCOMPARE(saved.value("versions").toObject().value("database").toString(), QStringLiteral("4.0.0"));
    }

    void failedSavesAreRetriedAndEndInTheExitStatus_data()
    {
        QTest::addColumn<QString>("obstacle");
        QTest::addColumn<bool>("freedWhileRunning");
        QTest::addColumn<int>("exitCode");
        // Permissions don't stop root: a folder where the temporary file goes does.
        QTest::newRow("write refused, then allowed again") << "folder" << true << 0;
        QTest::newRow("write refused to the end") << "folder" << false << 1;
        // A disk that is full for one write: the failed temporary file goes, the retry saves.
        if (QFileInfo::exists("/dev/full"))
            QTest::newRow("disk full once") << "full disk" << false << 0;
    }

    void failedSavesAreRetriedAndEndInTheExitStatus()
    {
        QFETCH(QString, obstacle);
        QFETCH(bool, freedWhileRunning);
        QFETCH(int, exitCode);
        QTemporaryDir dir;
        QString const folder = dir.filePath("data");
        QCOMPARE(runHost(folder, itemLine("A", "saved before")).exitCode, 0);
        QByteArray const before = [&] {
            QFile file(folder + "/persistent.json");
            return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        }();
        QString const temporary = folder + "/persistent.json.tmp";
        if (obstacle == QLatin1String("folder"))
            QVERIFY(QDir().mkdir(temporary));
        else
            QVERIFY(QFile::link("/dev/full", temporary));

        QProcess host;
        host.start(QStringLiteral(DBHOST), QStringList{"--data", folder, "--log-level", "2"});
        QVERIFY(host.waitForStarted());
        host.write(itemLine("B", "not saved yet"));
        QString errors;
        QVERIFY2(waitForError(host, errors, "save failed: cannot write " + temporary + "; retrying in 1 s"),
                 qPrintable(errors));
        if (obstacle == QLatin1String("folder")) {
            // Still refused: the next try waits twice as long.
            QVERIFY2(waitForError(host, errors, "; retrying in 2 s"), qPrintable(errors));
            // Nothing was replaced meanwhile.
            QFile current(folder + "/persistent.json");
            QVERIFY(current.open(QIODevice::ReadOnly));
            QCOMPARE(current.readAll(), before);
        }
        if (freedWhileRunning)
            QVERIFY(QDir(temporary).removeRecursively());
        if (exitCode == 0)
            QVERIFY2(waitForError(host, errors, "persistent.json saved again after failed saves"), qPrintable(errors));
        host.closeWriteChannel();
        QVERIFY(host.waitForFinished(30000));
        errors += QString::fromUtf8(host.readAllStandardError());
        QCOMPARE(host.exitStatus(), QProcess::NormalExit);
        QCOMPARE(host.exitCode(), exitCode);
        QJsonObject const items = readJson(folder + "/persistent.json").value("items").toObject()
                                      .value("objects_list").toObject();
        if (exitCode == 0) {
            QCOMPARE(items.keys(), (QStringList{"A", "B"}));
        } else {
            QVERIFY2(errors.contains("the last save of " + folder + "/persistent.json failed"), qPrintable(errors));
            QCOMPARE(items.keys(), QStringList{"A"});
        }
    }

    void terminationSavesBeforeLeaving()
    {
        QTemporaryDir dir;
        QString const folder = dir.filePath("data");
        QProcess host;
        host.start(QStringLiteral(DBHOST), QStringList{"--data", folder, "--log-level", "1"});
        QVERIFY(host.waitForStarted());
        host.write(itemLine("T1", "before term"));
        QVERIFY(host.waitForReadyRead(30000)); // the change line: the packet is applied
        host.terminate();
        QVERIFY(host.waitForFinished(60000));
        QCOMPARE(host.exitStatus(), QProcess::NormalExit);
        QCOMPARE(readJson(folder + "/persistent.json").value("items").toObject().value("objects_list").toObject().keys(),
                 QStringList{"T1"});
    }
};

QTEST_GUILESS_MAIN(tst_dbhost)
#include "tst_dbhost.moc"
