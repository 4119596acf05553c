#include <QJsonDocument>
#include <QSignalSpy>
#include <QtTest>

#include "database/presencesimulation/psi_data_t.h"
#include "support/log_capture.h"
#include "support/model_test.h"
#include "support/packet_recorder.h"

using database::presencesimulation::map_string;
using database::presencesimulation::psi_data_t;

namespace {

QJsonObject json(char const* text)
{
    return QJsonDocument::fromJson(text).object();
}

QStringList topics(QList<QJsonObject> const& packets)
{
    QStringList list;
    for (QJsonObject const& packet : packets)
        list.append(packet.value("topic").toString());
    return list;
}

// Monday 2024-01-01 is weekday 1.
QDateTime monday(int hour, int minute)
{
    return QDateTime(QDate(2024, 1, 1), QTime(hour, minute));
}

} // namespace

class tst_psi_data : public QObject
{
    Q_OBJECT

private:
    psi_data_t* data = nullptr;
    packet_recorder_t* recorder = nullptr;

    void record(int day, int hour, int minute, QString const& item, QString const& value)
    {
        data->update_action(day, hour, minute, item, value, false);
    }

private Q_SLOTS:
    void init()
    {
        data = new psi_data_t;
        recorder = new packet_recorder_t;
        data->initRequestSignals(recorder, true);
    }

    void cleanup()
    {
        delete data;
        delete recorder;
        drainEvents();
    }

    void requestsWithinTheirBounds_data()
    {
        QTest::addColumn<QString>("operation");
        QTest::addColumn<int>("day");
        QTest::addColumn<int>("hour");
        QTest::addColumn<int>("minute");
        QTest::addColumn<QString>("topic");
        QTest::addColumn<QString>("refusal");

        QString const base = QStringLiteral("request/DB/presencesimulation/");
        QTest::newRow("last minute of the week") << "action" << 7 << 23 << 59
                                                 << base + "week/days/7/hours/23/minutes/59/actions/lamp" << "";
        QTest::newRow("day 0 goes out") << "action" << 0 << 0 << 0 << base + "week/days/0/hours/0/minutes/0/actions/lamp"
                                        << "";
        QTest::newRow("hour 24 refused") << "action" << 7 << 24 << 0 << ""
                                         << "Day (7) or hour (24) or minutes (0) out of range ";
        QTest::newRow("day 8 refused") << "delete action" << 8 << 0 << 0 << ""
                                       << "Day (8) or hour (0) or minutes (0) out of range ";
        QTest::newRow("negative minute refused") << "minute" << 1 << 2 << -1 << ""
                                                 << "Day (1) or hour (2) or minutes (-1) out of range ";
        QTest::newRow("minute") << "minute" << 1 << 2 << 3 << base + "week/days/1/hours/2/minutes/3" << "";
        QTest::newRow("hour") << "hour" << 7 << 23 << 0 << base + "week/days/7/hours/23" << "";
        QTest::newRow("hour 24 refused with two blanks") << "hour" << 1 << 24 << 0 << ""
                                                         << "Day (1) or hour (24)  out of range ";
        QTest::newRow("day") << "day" << 7 << 0 << 0 << base + "week/days/7" << "";
        QTest::newRow("day 8 refused") << "day" << 8 << 0 << 0 << "" << "Day (8) out of range ";
        QTest::newRow("whole week") << "week" << 0 << 0 << 0 << base + "week" << "";
        QTest::newRow("get data") << "getData" << 0 << 0 << 0 << base + "getData" << "";
    }

    void requestsWithinTheirBounds()
    {
        QFETCH(QString, operation);
        QFETCH(int, day);
        QFETCH(int, hour);
        QFETCH(int, minute);
        QFETCH(QString, topic);
        QFETCH(QString, refusal);

        if (operation == "action")
            data->requestSetAction(day, hour, minute, "lamp", "on");
        else if (operation == "delete action")
            data->requestDeleteAction(day, hour, minute, "lamp");
        else if (operation == "minute")
            data->requestDeleteMinute(day, hour, minute);
        else if (operation == "hour")
            data->requestDeleteHour(day, hour);
        else if (operation == "day")
            data->requestDeleteDay(day);
        else if (operation == "week")
            data->requestDelete();
        else
            data->requestgetData();

        QTRY_COMPARE(recorder->total(), 1);
        if (refusal.isEmpty()) {
            QCOMPARE(recorder->requests.size(), 1);
            QCOMPARE(recorder->requests.first().value("topic").toString(), topic);
            QJsonValue const payload = recorder->requests.first().value("payload");
            if (operation == "action")
                QCOMPARE(payload.toString(), QStringLiteral("on"));
            else
                QVERIFY(payload.isNull());
        } else {
            QCOMPARE(recorder->errors.size(), 1);
            QCOMPARE(recorder->errors.first().second, refusal);
        }
        QVERIFY(data->getWeek()->getDays().isEmpty());
    }

    void recordedActionsFormTheDocument()
    {
        record(1, 8, 30, "lamp", "1");
        record(1, 8, 30, "blind", "50");
        record(3, 22, 5, "lamp", "0");
        QCOMPARE(data->toJson(), json(R"({"week": {"days": {
            "1": {"hours": {"8": {"minutes": {"30": {"actions": {"blind": "50", "lamp": "1"}}}}}},
            "3": {"hours": {"22": {"minutes": {"5": {"actions": {"lamp": "0"}}}}}}}}})"));
        QCOMPARE(data->getMinute(3, 22, 5)->getTopic(),
                 QStringLiteral("DB/presencesimulation/week/days/3/hours/22/minutes/5"));
        QVERIFY(!data->getMinute(3, 22, 6));
        QVERIFY(!data->getHour(2, 22));
    }

    void actionsWithinTheBoundsOfTheNodes_data()
    {
        QTest::addColumn<int>("day");
        QTest::addColumn<int>("hour");
        QTest::addColumn<int>("minute");
        QTest::addColumn<QString>("item");
        QTest::addColumn<bool>("stored");

        QTest::newRow("hour 24, out of every topic's reach") << 1 << 24 << 0 << "i" << true;
        QTest::newRow("day 0") << 0 << 0 << 0 << "i" << true;
        QTest::newRow("last minute of day 7") << 7 << 23 << 59 << "i" << true;
        QTest::newRow("day 8") << 8 << 0 << 0 << "i" << false;
        QTest::newRow("hour 25") << 1 << 25 << 0 << "i" << false;
        QTest::newRow("minute 60") << 1 << 0 << 60 << "i" << false;
        QTest::newRow("negative day") << -1 << 0 << 0 << "i" << false;
        QTest::newRow("blank item") << 1 << 0 << 0 << "  " << false;
    }

    void actionsWithinTheBoundsOfTheNodes()
    {
        QFETCH(int, day);
        QFETCH(int, hour);
        QFETCH(int, minute);
        QFETCH(QString, item);
        QFETCH(bool, stored);

        log_capture_t logs;
        data->update_action(day, hour, minute, item, "v", true);
        drainEvents();
        QString const position = QStringLiteral("day: %1 hour: %2 min: %3 item: %4 value: v")
                                     .arg(day).arg(hour).arg(minute).arg(item);
        if (stored) {
            QCOMPARE(data->getMinute(day, hour, minute)->getActions(), (map_string{{item, "v"}}));
            QVERIFY(logs.contains("Added new action: " + position, 4));
            QCOMPARE(topics(recorder->updated),
                     QStringList{QStringLiteral("week/days/%1/hours/%2/minutes/%3/actions/%4")
                                     .arg(day).arg(hour).arg(minute).arg(item)});
        } else {
            QVERIFY(data->getWeek()->getDays().isEmpty());
            QCOMPARE(recorder->errors.size(), 1);
            QCOMPARE(recorder->errors.first().first.value("topic").toString(), QStringLiteral("DB/presencesimulation"));
            QCOMPARE(recorder->errors.first().second, "Error to insert new action: out of range " + position);
            QVERIFY(recorder->updated.isEmpty());
        }
    }

    void removingTheLastActionRemovesTheNodesAbove()
    {
        record(1, 8, 30, "lamp", "1");
        record(1, 8, 31, "lamp", "0");
        record(2, 9, 0, "lamp", "1");

        data->update_action(1, 8, 30, "lamp", " ", true);
        drainEvents();
        QCOMPARE(topics(recorder->updated),
                 (QStringList{"week/days/1/hours/8/minutes/30/actions/lamp", "week/days/1/hours/8/minutes/30"}));
        QVERIFY(recorder->updated.first().value("payload").isNull());
        QVERIFY(data->getHour(1, 8));

        recorder->clear();
        data->update_action(1, 8, 31, "lamp", QString(), true);
        drainEvents();
        QCOMPARE(topics(recorder->updated),
                 (QStringList{"week/days/1/hours/8/minutes/31/actions/lamp", "week/days/1/hours/8/minutes/31",
                              "week/days/1/hours/8", "week/days/1"}));
        QCOMPARE(data->toJson(), json(R"({"week": {"days": {
            "2": {"hours": {"9": {"minutes": {"0": {"actions": {"lamp": "1"}}}}}}}}})"));
    }

    void removingAnAbsentActionDoesNothing_data()
    {
        QTest::addColumn<int>("day");
        QTest::addColumn<QString>("item");
        QTest::newRow("absent item of a recorded minute") << 1 << "blind";
        QTest::newRow("absent day") << 4 << "lamp";
    }

    void removingAnAbsentActionDoesNothing()
    {
        QFETCH(int, day);
        QFETCH(QString, item);
        record(1, 8, 30, "lamp", "1");
        QJsonObject const before = data->toJson();
        log_capture_t logs;
        data->update_action(day, 8, 30, item, "", true);
        drainEvents();
        QCOMPARE(recorder->total(), 0);
        QVERIFY(logs.records.isEmpty());
        QCOMPARE(data->toJson(), before);
    }

    void subtreesAreCopiedInAndRemovedByNull_data()
    {
        QTest::addColumn<QString>("level");
        QTest::addColumn<QString>("topic");
        QTest::addColumn<QString>("line");
        QTest::newRow("minute") << "minute" << "week/days/2/hours/3/minutes/4" << "Added new minute: day: 2 hour: 3 min: 4";
        QTest::newRow("hour") << "hour" << "week/days/2/hours/3" << "Added new hour: day: 2 hour: 3";
        QTest::newRow("day, logged with the hour's words") << "day" << "week/days/2" << "Added new hour: day: 2";
    }

    void subtreesAreCopiedInAndRemovedByNull()
    {
        QFETCH(QString, level);
        QFETCH(QString, topic);
        QFETCH(QString, line);

        psi_data_t source;
        source.update_action(2, 3, 4, "lamp", "1", false);
        auto put = [&](bool remove) {
            if (level == "minute")
                data->update_minute(2, 3, 4, remove ? nullptr : source.getMinute(2, 3, 4), true);
            else if (level == "hour")
                data->update_hour(2, 3, remove ? nullptr : source.getHour(2, 3), true);
            else
                data->update_day(2, remove ? nullptr : source.getDay(2), true);
        };

        log_capture_t logs;
        put(false);
        drainEvents();
        QCOMPARE(data->toJson(), source.toJson());
        QVERIFY(data->getMinute(2, 3, 4) != source.getMinute(2, 3, 4));
        QVERIFY(logs.contains(line, 4));
        QCOMPARE(topics(recorder->updated), QStringList{topic});
        QJsonObject const published = level == "minute" ? source.getMinute(2, 3, 4)->toJson()
                                      : level == "hour" ? source.getHour(2, 3)->toJson()
                                                        : source.getDay(2)->toJson();
        QCOMPARE(recorder->updated.first().value("payload").toObject(), published);

        recorder->clear();
        put(true);
        drainEvents();
        QVERIFY(data->getWeek()->getDays().isEmpty());
        QCOMPARE(topics(recorder->updated).first(), topic);
        QVERIFY(recorder->updated.last().value("payload").isNull());
        QCOMPARE(topics(recorder->updated).last(), QStringLiteral("week/days/2"));
    }

    void anEmptySubtreeDoesNotStay()
    {
        psi_data_t::hour_t empty;
        data->update_hour(5, 6, &empty, true);
        drainEvents();
        QVERIFY(data->getWeek()->getDays().isEmpty());
        // Published as given, then its removal.
        QCOMPARE(topics(recorder->updated), (QStringList{"week/days/5/hours/6", "week/days/5/hours/6", "week/days/5"}));
    }

    void subtreeOutOfRangeIsRefused()
    {
        psi_data_t::minute_t minute;
        minute.add("lamp", "1");
        data->update_minute(1, 2, 60, &minute, true);
        drainEvents();
        QVERIFY(data->getWeek()->getDays().isEmpty());
        QCOMPARE(recorder->errors.size(), 1);
        QCOMPARE(recorder->errors.first().second,
                 QStringLiteral("Error to insert new action: out of range day: 1 hour: 2 min: 60"));
    }

    void anItemIsRemovedFromTheWholeWeek()
    {
        record(1, 8, 30, "lamp", "1");
        record(1, 8, 30, "blind", "0");
        record(6, 20, 0, "lamp", "0");
        data->update_remove_item("lamp", true);
        drainEvents();
        QCOMPARE(data->toJson(), json(R"({"week": {"days": {
            "1": {"hours": {"8": {"minutes": {"30": {"actions": {"blind": "0"}}}}}}}}})"));
        QCOMPARE(topics(recorder->updated), QStringList{"week"});
    }

    void replacingTheWeek()
    {
        record(1, 8, 30, "lamp", "1");
        psi_data_t other;
        other.update_action(4, 0, 0, "blind", "1", false);
        data->update(other.getWeek(), true);
        QCOMPARE(data->toJson(), other.toJson());
        QCOMPARE(data->getDay(4)->getTopic(), QStringLiteral("DB/presencesimulation/week/days/4"));
        data->update(nullptr, true);
        drainEvents();
        QCOMPARE(data->toJson(), json(R"({"week": {"days": {}}})"));
        QCOMPARE(topics(recorder->updated), (QStringList{"week", "week"}));
    }

    void documentRoundTrip()
    {
        record(1, 8, 30, "lamp", "1");
        record(7, 23, 59, "blind", "35");
        QJsonObject const document = data->toJson();
        auto* read = serializer()->deserialize<psi_data_t*>(document, nullptr);
        QVERIFY(read);
        QCOMPARE(read->toJson(), document);
        QVERIFY(*read->getWeek() == *data->getWeek());
        QCOMPARE(read->getMinute(7, 23, 59)->getTopic(),
                 QStringLiteral("DB/presencesimulation/week/days/7/hours/23/minutes/59"));
        psi_data_t const copy(*read);
        QCOMPARE(copy.toJson(), document);
        delete read;
        QCOMPARE(copy.getMinute(1, 8, 30)->getActions(), (map_string{{"lamp", "1"}}));
    }

    void actionsAreReadBack_data()
    {
        QTest::addColumn<int>("recordedDay");
        QTest::addColumn<QDateTime>("when");
        QTest::addColumn<int>("result");
        QTest::addColumn<QDateTime>("found");
        QTest::addColumn<QString>("lamp");

        QDateTime const untouched = QDateTime(QDate(2000, 1, 1), QTime(0, 0));
        QTest::newRow("recorded minute") << 1 << monday(8, 30) << 0 << monday(8, 30) << "1";
        QTest::newRow("recorded hour, silent minute") << 1 << monday(8, 31) << 42 << untouched << "";
        QTest::newRow("unrecorded day filled from the day before")
            << 1 << monday(8, 30).addDays(2) << 0 << monday(8, 30) << "1";
        QTest::newRow("six days back still reached")
            << 2 << monday(8, 30).addDays(7) << 0 << monday(8, 30).addDays(1) << "1";
        QTest::newRow("empty week") << 0 << monday(8, 30) << -1 << monday(8, 30).addDays(-7) << "";
    }

    void actionsAreReadBack()
    {
        QFETCH(int, recordedDay);
        QFETCH(QDateTime, when);
        QFETCH(int, result);
        QFETCH(QDateTime, found);
        QFETCH(QString, lamp);

        if (recordedDay > 0) {
            record(recordedDay, 8, 30, "lamp", "1");
            record(recordedDay, 9, 0, "other", "1");
        }
        int actualResult = 42;
        QDateTime actualFound = QDateTime(QDate(2000, 1, 1), QTime(0, 0));
        map_string const actions = data->getActions(when, actualResult, actualFound);
        QCOMPARE(actions.value("lamp"), lamp);
        QCOMPARE(actions.size(), lamp.isEmpty() ? 0 : 1);
        QCOMPARE(actualResult, result);
        QCOMPARE(actualFound, found);
    }

    void nextActionsWalkBackwards_data()
    {
        QTest::addColumn<QDateTime>("from");
        QTest::addColumn<int>("count");
        QTest::addColumn<QList<QDateTime>>("moments");

        QDateTime const tuesday = monday(0, 0).addDays(1);
        QTest::newRow("no count") << monday(8, 30) << 0 << QList<QDateTime>();
        QTest::newRow("within a day one step") << monday(8, 30) << 5 << QList<QDateTime>{monday(8, 30)};
        QTest::newRow("from a day's first minute until enough")
            << tuesday << 1 << QList<QDateTime>{monday(23, 58), monday(23, 59), tuesday};
    }

    void nextActionsWalkBackwards()
    {
        QFETCH(QDateTime, from);
        QFETCH(int, count);
        QFETCH(QList<QDateTime>, moments);
        record(1, 8, 30, "lamp", "1");
        record(1, 23, 58, "blind", "1");
        QMap<QDateTime, map_string> const next = data->getNextActions(from, count);
        QCOMPARE(next.keys(), moments);
        if (count == 1)
            QCOMPARE(next.value(monday(23, 58)), (map_string{{"blind", "1"}}));
    }

};

QTEST_GUILESS_MAIN(tst_psi_data)
#include "tst_psi_data.moc"
