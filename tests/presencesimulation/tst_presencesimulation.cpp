#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include "database/definition/service_t.h"
#include "database/definition/type_brand_t.h"
#include "database/migration/migration_t.h"
#include "database/presencesimulation/presencesimulation_t.h"
#include "support/log_capture.h"
#include "support/model_test.h"
#include "support/week_notation.h"

using database::definition::service_t;
using database::definition::type_brand_t;
using database::presencesimulation::presencesimulation_t;
using database::presencesimulation::psi_data_t;
using database::presencesimulation::psi_handler_topic_t;

namespace {

void writeFile(QString const& path, QByteArray const& bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QJsonObject const emptyWeek = weekDocument("");

} // namespace

class tst_presencesimulation : public QObject
{
    Q_OBJECT

private:
    presencesimulation_t* engine = nullptr;

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(database::utility::getInstance());
        database::migration::migration_t::createInstance(type_brand_t::HALDO);
    }

    void init() { engine = new presencesimulation_t(service_t::server); }

    void cleanup()
    {
        delete engine;
        engine = nullptr;
        drainEvents();
    }

    void freshEngineHoldsAnEmptyHashedWeek()
    {
        log_capture_t logs;
        presencesimulation_t fresh(service_t::client);
        QVERIFY(logs.contains("Starting presencesimulation database engine ...", 6));
        QVERIFY(fresh.isJdataValid());
        QCOMPARE(fresh.getJdata(), emptyWeek);
        QString const weekHash =
            QString::fromLatin1(QCryptographicHash::hash(R"({"days":{}})", QCryptographicHash::Sha1).toHex());
        QCOMPARE(fresh.getHashList(), (QMap<QString, QString>{{"week", weekHash}}));
        // The field is the database's topic, not a key of the image.
        QCOMPARE(fresh.getJdata(database::presencesimulation::definition::psi_type_database_field_t::presencesimulation),
                 QJsonObject());
    }

    void checkHashOfTheWeek()
    {
        QSignalSpy replay(engine->getHandlerTopic(), &psi_handler_topic_t::onPresencesimulationStatusWeek);
        QVERIFY(replay.isValid());
        QCOMPARE(replay.count(), 0);
        QCOMPARE(engine->checkHash("days", "abc", true), -1);
        QCOMPARE(engine->checkHash("week", engine->getHashList().value("week"), true), 0);
        QCOMPARE(replay.count(), 0);
        log_capture_t logs;
        QCOMPARE(engine->checkHash("week", "abc", true), 1);
        QVERIFY(logs.contains("Old hash abc", 3));
        // A changed section goes through the status road again.
        QCOMPARE(replay.count(), 1);
    }

    void burstOfUpdates_data()
    {
        QTest::addColumn<int>("updates");
        QTest::addColumn<int>("saves");
        QTest::addColumn<int>("pending");
        QTest::newRow("twenty wait for the timer") << 20 << 0 << 20;
        QTest::newRow("the twenty-first rebuilds at once") << 21 << 1 << 0;
    }

    void burstOfUpdates()
    {
        QFETCH(int, updates);
        QFETCH(int, saves);
        QFETCH(int, pending);
        QSignalSpy saveRequests(engine, &presencesimulation_t::onSaveRequest);
        QVERIFY(saveRequests.isValid());
        QCOMPARE(saveRequests.count(), 0);
        for (int i = 0; i < updates; ++i)
            engine->getData()->update_action(1, 8, i, "lamp", "1", true);
        QTRY_COMPARE(engine->getUpdateCount() + saveRequests.count() * 21, updates);
        QCOMPARE(saveRequests.count(), saves);
        QCOMPARE(engine->getUpdateCount(), pending);
        QCOMPARE(engine->isJdataValid(), saves == 1);
        if (saves == 0) {
            // The timer catches up 2000 ms after the last change.
            QTRY_COMPARE_WITH_TIMEOUT(saveRequests.count(), 1, 15000);
            QCOMPARE(engine->getUpdateCount(), 0);
        }
        QCOMPARE(engine->getJdata(), engine->getData()->toJson());
    }

    void freshImageIsNotRebuilt()
    {
        QSignalSpy saveRequests(engine, &presencesimulation_t::onSaveRequest);
        QVERIFY(saveRequests.isValid());
        log_capture_t logs;
        QCOMPARE(engine->serialize(false), emptyWeek);
        QVERIFY(logs.contains("Serialize databse presence simulation", 6));
        QCOMPARE(saveRequests.count(), 0);
        engine->serialize(true);
        QCOMPARE(saveRequests.count(), 1);
    }

    void updateRoutesOnlyItsTopics_data()
    {
        QTest::addColumn<QString>("topic");
        QTest::addColumn<bool>("routed");
        QTest::newRow("request") << "request/DB/presencesimulation/week/days/1" << true;
        QTest::newRow("status") << "status/DB/presencesimulation/DB" << true;
        QTest::newRow("request for day 0") << "request/DB/presencesimulation/week/days/0" << false;
        QTest::newRow("persistent request") << "request/DB/persistent/general" << false;
        QTest::newRow("relative change") << "week" << false;
    }

    void updateRoutesOnlyItsTopics()
    {
        QFETCH(QString, topic);
        QFETCH(bool, routed);
        engine->setName("psi");
        log_capture_t logs;
        QCOMPARE(engine->update(QJsonObject{{"topic", topic}, {"payload", QJsonValue()}}), routed);
        if (routed)
            QVERIFY(logs.contains("[psi] Found database path: " + topic + " update it", 6));
        else
            QVERIFY(logs.contains("[psi] Database path or packet not valid: " + topic + " no update", 2));
    }

    void requestsLeaveByRole_data()
    {
        QTest::addColumn<QString>("role");
        QTest::addColumn<bool>("offline");
        QTest::newRow("server forwards") << "server" << false;
        QTest::newRow("client forwards") << "client" << false;
        QTest::newRow("offline answers itself") << "offline" << true;
    }

    void requestsLeaveByRole()
    {
        QFETCH(QString, role);
        QFETCH(bool, offline);
        presencesimulation_t own{service_t(role)};
        QSignalSpy requests(&own, &presencesimulation_t::onPresencesimulationRequest);
        QSignalSpy offlineRequests(&own, &presencesimulation_t::eventOfflineRequest);
        QVERIFY(requests.isValid() && offlineRequests.isValid());
        QCOMPARE(requests.count() + offlineRequests.count(), 0);
        own.getData()->requestSetAction(1, 2, 3, "lamp", "on");
        own.requestSetDB(nullptr);
        QTRY_COMPARE(requests.count() + offlineRequests.count(), 2);
        QSignalSpy& taken = offline ? offlineRequests : requests;
        QCOMPARE(taken.count(), 2);
        // The engine's own request leaves at once, the week's after a turn of the loop.
        QJsonObject const action = taken.at(1).at(0).toJsonObject();
        QCOMPARE(action, (QJsonObject{{"topic", "request/DB/presencesimulation/week/days/1/hours/2/minutes/3/actions/lamp"},
                                      {"payload", "on"}}));
        QJsonObject const database = taken.at(0).at(0).toJsonObject();
        QCOMPARE(database.value("topic").toString(), QStringLiteral("request/DB/presencesimulation/DB"));
        QCOMPARE(database.value("payload").toObject(), QJsonObject());
    }

    void refusalsAreLoggedAndForwarded()
    {
        QSignalSpy errors(engine, &presencesimulation_t::onPresencesimulationObjectError);
        QVERIFY(errors.isValid());
        QCOMPARE(errors.count(), 0);
        log_capture_t logs;
        engine->getData()->update_action(9, 0, 0, "lamp", "1", true);
        QTRY_COMPARE(errors.count(), 1);
        QVERIFY(logs.contains("Receive event: Error to update DB/presencesimulation msg: Error to insert new action", 2));
    }

    void replacingTheDatabase_data()
    {
        QTest::addColumn<QJsonObject>("incoming");
        QTest::addColumn<bool>("send");
        QTest::newRow("empty input leaves an empty week") << QJsonObject() << false;
        QTest::newRow("a week, published") << weekDocument("4/7/0 lamp=1") << true;
    }

    void replacingTheDatabase()
    {
        QFETCH(QJsonObject, incoming);
        QFETCH(bool, send);
        engine->update_database(weekDocument("1/1/1 old=1"), false);
        QSignalSpy database(engine->getHandlerTopic(), &psi_handler_topic_t::onPresencesimulationChangeDB);
        QVERIFY(database.isValid());
        QCOMPARE(database.count(), 0);

        engine->update_database(incoming, send);
        QCOMPARE(engine->getJdata(), incoming.isEmpty() ? emptyWeek : incoming);
        QCOMPARE(engine->getData()->toJson(), engine->getJdata());
        if (!send) {
            drainEvents();
            QCOMPARE(database.count(), 0);
            return;
        }
        QTRY_COMPARE(database.count(), 1);
        QJsonObject const packet = database.first().at(0).toJsonObject();
        QCOMPARE(packet.value("topic").toString(), QStringLiteral("DB"));
        QCOMPARE(packet.value("payload").toObject(), incoming);
        QCOMPARE(packet.value("change_list").toArray(), QJsonArray{"week"});
        // The new tree is wired: its changes reach the engine.
        QSignalSpy actions(engine->getHandlerTopic(), &psi_handler_topic_t::onPresencesimulationChangeAction);
        engine->getData()->update_action(4, 7, 0, "lamp", "0", true);
        QTRY_COMPARE(actions.count(), 1);
    }

    void saveAndLoadRoundTrip()
    {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        QString const path = dir.filePath("presencesimulation.json");
        engine->update_database(weekDocument("3/12/15 lamp=1"), false);
        QJsonObject const saved = engine->getJdata();
        log_capture_t logs;
        QVERIFY(engine->saveToFile(path, false));
        QVERIFY(logs.contains("File not foud write " + path, 3));
        QCOMPARE(engine->readFromFile(path), saved);

        presencesimulation_t other(service_t::client);
        int result = 0;
        QCOMPARE(other.loadFromFile(path, 4, result), saved);
        QVERIFY(result >= 0);
        QCOMPARE(other.getJdata(), saved);
        QCOMPARE(other.getData()->getMinute(3, 12, 15)->getActions().value("lamp"), QStringLiteral("1"));
    }

    void unreadableFilesLeaveTheWeekAlone_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("line");
        QTest::addColumn<bool>("result");
        QTest::newRow("missing") << QByteArray() << "File not exist ... " << false;
        QTest::newRow("not json") << QByteArray("week") << "Error parsing file" << false;
        QTest::newRow("truncated") << QByteArray(R"({"week": {"days": )") << "Error parsing file" << false;
        QTest::newRow("not a week") << QByteArray(R"({"week": {"days": {"1": 5}}})")
                                    << "Error to deserialize presence simulation: " << true;
    }

    void unreadableFilesLeaveTheWeekAlone()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, line);
        QFETCH(bool, result);
        QTemporaryDir dir;
        QString const path = dir.filePath("presencesimulation.json");
        if (!content.isEmpty())
            writeFile(path, content);
        engine->update_database(weekDocument("1/1/1 kept=1"), false);
        QJsonObject const before = engine->getJdata();
        QPointer<psi_data_t> const tree = engine->getData();
        log_capture_t logs;
        int migration = 0;
        QCOMPARE(engine->loadFromFile(path, 4, migration).isEmpty(), !result);
        QVERIFY2(logs.contains(line, 2), qPrintable(logs.messages().join('\n')));
        QCOMPARE(engine->getData(), tree.data());
        QCOMPARE(engine->getJdata(), before);
    }

};

QTEST_GUILESS_MAIN(tst_presencesimulation)
#include "tst_presencesimulation.moc"
