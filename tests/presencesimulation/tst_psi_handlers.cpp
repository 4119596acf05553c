#include <QJsonDocument>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

#include "database/definition/service_t.h"
#include "database/presencesimulation/presencesimulation_t.h"
#include "database/psi_handler_request_t.h"
#include "database/psi_handler_status_t.h"
#include "support/log_capture.h"
#include "support/model_test.h"
#include "support/week_notation.h"

using database::psi_handler_request_t;
using database::psi_handler_status_t;
using database::definition::service_t;
using database::presencesimulation::presencesimulation_t;
using database::presencesimulation::psi_handler_topic_t;

namespace {

QJsonObject json(QByteArray const& text)
{
    return QJsonDocument::fromJson(text).object();
}

QJsonValue value(QByteArray const& text)
{
    return QJsonDocument::fromJson("[" + text + "]").array().first();
}

QString const seeded = QStringLiteral("1/8/30 blind=50 lamp=1; 2/9/0 lamp=0");

} // namespace

class tst_psi_handlers : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<presencesimulation_t> engine;
    std::unique_ptr<psi_handler_request_t> requests;
    std::unique_ptr<psi_handler_status_t> statuses;

    void start(service_t const& role)
    {
        statuses.reset();
        requests.reset();
        engine = std::make_unique<presencesimulation_t>(role);
        requests = std::make_unique<psi_handler_request_t>(nullptr, engine.get());
        statuses = std::make_unique<psi_handler_status_t>(nullptr, engine.get());
        engine->update_database(weekDocument(seeded), false);
    }

    QJsonObject week() const { return engine->getData()->toJson(); }

private Q_SLOTS:
    void initTestCase() { QVERIFY(database::utility::getInstance()); }

    void init() { start(service_t::server); }

    void cleanup()
    {
        statuses.reset();
        requests.reset();
        engine.reset();
        drainEvents();
    }

    void packetsChangeTheWeek_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("role");
        QTest::addColumn<QString>("tail");
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<QString>("expected");

        struct row_t {
            char const* name;
            char const* tail;
            char const* payload;
            char const* expected;
        };
        static row_t const rows[] = {
            {"new action", "week/days/3/hours/7/minutes/5/actions/lamp", R"("on")",
             "1/8/30 blind=50 lamp=1; 2/9/0 lamp=0; 3/7/5 lamp=on"},
            {"number as text", "week/days/2/hours/9/minutes/0/actions/lamp", "21.5", "1/8/30 blind=50 lamp=1; 2/9/0 lamp=21.5"},
            {"empty text removes the last action and its nodes", "week/days/2/hours/9/minutes/0/actions/lamp", R"("")",
             "1/8/30 blind=50 lamp=1"},
            {"null removes one action", "week/days/1/hours/8/minutes/30/actions/lamp", "null", "1/8/30 blind=50; 2/9/0 lamp=0"},
            {"actions set and removed together", "week/days/1/hours/8/minutes/30/actions", R"({"lamp": "", "fan": "2"})",
             "1/8/30 blind=50 fan=2; 2/9/0 lamp=0"},
            {"minute replaced", "week/days/1/hours/8/minutes/30", R"({"actions": {"fan": "1"}})", "1/8/30 fan=1; 2/9/0 lamp=0"},
            {"null minute removed", "week/days/1/hours/8/minutes/30", "null", "2/9/0 lamp=0"},
            {"minutes by number", "week/days/2/hours/9/minutes", R"({"0": null, "05": {"actions": {"fan": "1"}}})",
             "1/8/30 blind=50 lamp=1; 2/9/5 fan=1"},
            {"hour added", "week/days/2/hours/23", R"({"minutes": {"59": {"actions": {"fan": "0"}}}})",
             "1/8/30 blind=50 lamp=1; 2/9/0 lamp=0; 2/23/59 fan=0"},
            {"hours with an empty one", "week/days/1/hours", R"({"8": {"minutes": {}}})", "2/9/0 lamp=0"},
            {"null day removed", "week/days/2", "null", "1/8/30 blind=50 lamp=1"},
            {"days", "week/days", R"({"1": null, "7": {"hours": {"0": {"minutes": {"0": {"actions": {"x": "1"}}}}}}})",
             "2/9/0 lamp=0; 7/0/0 x=1"},
            {"week replaced", "week", R"({"days": {"6": {"hours": {"1": {"minutes": {"2": {"actions": {"y": "3"}}}}}}}})",
             "6/1/2 y=3"},
            {"null week empties it", "week", "null", ""},
        };
        for (char const* kind : {"request", "status"}) {
            for (row_t const& row : rows) {
                QTest::newRow(qPrintable(QStringLiteral("%1: %2").arg(kind, row.name)))
                    << kind << "server" << row.tail << QByteArray(row.payload) << row.expected;
            }
        }
        // The handlers don't look at the role: whoever is handed a packet applies it.
        for (char const* role : {"client", "offline"}) {
            for (char const* kind : {"request", "status"}) {
                QTest::newRow(qPrintable(QStringLiteral("%1 in %2").arg(kind, role)))
                    << kind << role << rows[0].tail << QByteArray(rows[0].payload) << rows[0].expected;
            }
        }
    }

    void packetsChangeTheWeek()
    {
        QFETCH(QString, kind);
        QFETCH(QString, role);
        QFETCH(QString, tail);
        QFETCH(QByteArray, payload);
        QFETCH(QString, expected);

        start(service_t(role));
        QVERIFY(engine->update(QJsonObject{{"topic", kind + "/DB/presencesimulation/" + tail},
                                           {"payload", value(payload)}}));
        QTRY_COMPARE(week(), weekDocument(expected));
        drainEvents();
        QCOMPARE(engine->getJdata(), weekDocument(expected));
    }

    void aWholeDaysPacketIsPublishedOnce()
    {
        QSignalSpy weeks(engine->getHandlerTopic(), &psi_handler_topic_t::onPresencesimulationChangeWeek);
        QSignalSpy days(engine->getHandlerTopic(), &psi_handler_topic_t::onPresencesimulationChangeDay);
        QVERIFY(weeks.isValid() && days.isValid());
        QCOMPARE(weeks.count() + days.count(), 0);
        QJsonObject const day = json(R"({"hours": {"1": {"minutes": {"1": {"actions": {"a": "1"}}}}}})");
        engine->update(QJsonObject{{"topic", "request/DB/presencesimulation/week/days"},
                                   {"payload", QJsonObject{{"3", day}, {"4", day}, {"5", day}}}});
        QTRY_COMPARE(weeks.count(), 1);
        drainEvents();
        QCOMPARE(weeks.count(), 1);
        QCOMPARE(days.count(), 0);
        QCOMPARE(weeks.first().at(0).toJsonObject().value("payload").toObject(), week().value("week").toObject());
    }

    void refusedEntriesReachTheEngine_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("message");
        QTest::newRow("minute 60") << "60" << "Error to insert new action: out of range day: 1 hour: 8 min: 60";
        QTest::newRow("not a number") << "x" << "Error to insert new action: out of range day: 1 hour: 8 min: -1";
    }

    void refusedEntriesReachTheEngine()
    {
        QFETCH(QString, key);
        QFETCH(QString, message);
        QSignalSpy errors(engine.get(), &presencesimulation_t::onPresencesimulationObjectError);
        QVERIFY(errors.isValid());
        QCOMPARE(errors.count(), 0);
        QJsonObject const before = week();
        engine->update(QJsonObject{{"topic", "request/DB/presencesimulation/week/days/1/hours/8/minutes"},
                                   {"payload", QJsonObject{{key, json(R"({"actions": {"a": "1"}})")}}}});
        QTRY_COMPARE(errors.count(), 1);
        QCOMPARE(errors.first().at(1).toString(), message);
        QCOMPARE(week(), before);
    }

    void statusOfTheWholeDatabase()
    {
        QSignalSpy database(engine->getHandlerTopic(), &psi_handler_topic_t::onPresencesimulationChangeDB);
        QVERIFY(database.isValid());
        QCOMPARE(database.count(), 0);
        QJsonObject const incoming = weekDocument("4/4/4 z=1");
        log_capture_t logs;
        QVERIFY(engine->update(QJsonObject{{"topic", "status/DB/presencesimulation/DB"}, {"payload", incoming}}));
        QTRY_COMPARE(database.count(), 1);
        QCOMPARE(engine->getJdata(), incoming);
        QVERIFY(logs.contains("[psi_handler_status] Slots request:onPresencesimulationStatusDB topic: "
                              "status/DB/presencesimulation/DB",
                              6));
        // A request for the whole database is the host's business.
        QVERIFY(engine->update(QJsonObject{{"topic", "request/DB/presencesimulation/DB"}, {"payload", seeded}}));
        drainEvents();
        QCOMPARE(engine->getJdata(), incoming);
    }

    void handlersConnectAndDisconnectThemselves()
    {
        log_capture_t logs;
        auto handler = std::make_unique<psi_handler_request_t>(nullptr, engine.get());
        QVERIFY(logs.contains("Starting presencesimulation topic handler engine ...", 6));
        QVERIFY(logs.contains("[psi_handler_request] Connection signal-slots database part", 6));
        handler.reset();
        QVERIFY(logs.contains("[psi_handler_request] Disconnection signal-slots database part", 6));
        requests.reset();
        engine->update(QJsonObject{{"topic", "request/DB/presencesimulation/week"}, {"payload", QJsonValue()}});
        drainEvents();
        QCOMPARE(week(), weekDocument(seeded));
    }
};

QTEST_GUILESS_MAIN(tst_psi_handlers)
#include "tst_psi_handlers.moc"
