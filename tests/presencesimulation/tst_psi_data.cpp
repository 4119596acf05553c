#include <QSignalSpy>
#include <QtTest>

#include <memory>

#include "database/presencesimulation/psi_data_t.h"
#include "support/log_capture.h"
#include "support/model_test.h"
#include "support/packet_recorder.h"
#include "support/week_notation.h"

using database::presencesimulation::map_string;
using database::presencesimulation::psi_data_t;

namespace {

QStringList topics(QList<QJsonObject> const& packets)
{
    QStringList list;
    for (QJsonObject const& packet : packets)
        list.append(packet.value("topic").toString());
    return list;
}

// 2024-01-01 is a Monday, weekday 1.
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

    void record(QString const& notation)
    {
        std::unique_ptr<psi_data_t> const read(serializer()->deserialize<psi_data_t*>(weekDocument(notation), nullptr));
        data->update(read->getWeek(), false);
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
        QTest::addColumn<QList<int>>("at");
        QTest::addColumn<QString>("topic");
        QTest::addColumn<QString>("refusal");
        QTest::newRow("last minute of the week") << "action" << QList<int>{7, 23, 59}
                                                 << "week/days/7/hours/23/minutes/59/actions/lamp" << "";
        QTest::newRow("day 0 goes out") << "action" << QList<int>{0, 0, 0} << "week/days/0/hours/0/minutes/0/actions/lamp"
                                        << "";
        QTest::newRow("hour 24") << "action" << QList<int>{7, 24, 0} << ""
                                 << "Day (7) or hour (24) or minutes (0) out of range ";
        QTest::newRow("negative minute") << "minute" << QList<int>{1, 2, -1} << ""
                                         << "Day (1) or hour (2) or minutes (-1) out of range ";
        QTest::newRow("hour") << "hour" << QList<int>{7, 23} << "week/days/7/hours/23" << "";
        QTest::newRow("hour 24, two blanks") << "hour" << QList<int>{1, 24} << "" << "Day (1) or hour (24)  out of range ";
        QTest::newRow("day 8") << "day" << QList<int>{8} << "" << "Day (8) out of range ";
        QTest::newRow("whole week") << "week" << QList<int>{} << "week" << "";
        QTest::newRow("get data") << "getData" << QList<int>{} << "getData" << "";
    }

    void requestsWithinTheirBounds()
    {
        QFETCH(QString, operation);
        QFETCH(QList<int>, at);
        QFETCH(QString, topic);
        QFETCH(QString, refusal);
        if (operation == "action")
            data->requestSetAction(at[0], at[1], at[2], "lamp", "on");
        else if (operation == "minute")
            data->requestDeleteMinute(at[0], at[1], at[2]);
        else if (operation == "hour")
            data->requestDeleteHour(at[0], at[1]);
        else if (operation == "day")
            data->requestDeleteDay(at[0]);
        else if (operation == "week")
            data->requestDelete();
        else
            data->requestgetData();

        QTRY_COMPARE(recorder->total(), 1);
        if (refusal.isEmpty()) {
            QCOMPARE(recorder->requests.first().value("topic").toString(), "request/DB/presencesimulation/" + topic);
            QJsonValue const payload = recorder->requests.first().value("payload");
            QCOMPARE(payload, operation == "action" ? QJsonValue("on") : QJsonValue());
        } else {
            QCOMPARE(recorder->errors.first().second, refusal);
        }
        QCOMPARE(data->toJson(), weekDocument(""));
    }

    void recordedActionsFormTheDocument()
    {
        data->update_action(1, 8, 30, "lamp", "1", false);
        data->update_action(1, 8, 30, "blind", "50", false);
        data->update_action(3, 22, 5, "lamp", "0", false);
        QCOMPARE(data->toJson(), weekDocument("1/8/30 blind=50 lamp=1; 3/22/5 lamp=0"));
        QCOMPARE(data->getMinute(3, 22, 5)->getTopic(),
                 QStringLiteral("DB/presencesimulation/week/days/3/hours/22/minutes/5"));
        // A document read back is the same tree.
        std::unique_ptr<psi_data_t> const read(serializer()->deserialize<psi_data_t*>(data->toJson(), nullptr));
        QVERIFY(*read->getWeek() == *data->getWeek());
        QCOMPARE(read->getMinute(3, 22, 5)->getTopic(), data->getMinute(3, 22, 5)->getTopic());
        QCOMPARE(psi_data_t(*read).toJson(), data->toJson());
    }

    void actionsWithinTheBoundsOfTheNodes_data()
    {
        QTest::addColumn<QList<int>>("at");
        QTest::addColumn<QString>("item");
        QTest::addColumn<bool>("stored");
        QTest::newRow("hour 24, that no topic reaches") << QList<int>{1, 24, 0} << "i" << true;
        QTest::newRow("day 0") << QList<int>{0, 0, 0} << "i" << true;
        QTest::newRow("day 8") << QList<int>{8, 0, 0} << "i" << false;
        QTest::newRow("hour 25") << QList<int>{1, 25, 0} << "i" << false;
        QTest::newRow("minute 60") << QList<int>{1, 0, 60} << "i" << false;
        QTest::newRow("blank item") << QList<int>{1, 0, 0} << "  " << false;
    }

    void actionsWithinTheBoundsOfTheNodes()
    {
        QFETCH(QList<int>, at);
        QFETCH(QString, item);
        QFETCH(bool, stored);
        log_capture_t logs;
        data->update_action(at[0], at[1], at[2], item, "v", true);
        drainEvents();
        QString const position =
            QStringLiteral("day: %1 hour: %2 min: %3 item: %4 value: v").arg(at[0]).arg(at[1]).arg(at[2]).arg(item);
        if (stored) {
            QCOMPARE(data->getMinute(at[0], at[1], at[2])->getActions(), (map_string{{item, "v"}}));
            QVERIFY(logs.contains("Added new action: " + position, 4));
            QCOMPARE(recorder->updated.size(), 1);
        } else {
            QCOMPARE(data->toJson(), weekDocument(""));
            QCOMPARE(recorder->errors.first().first.value("topic").toString(), QStringLiteral("DB/presencesimulation"));
            QCOMPARE(recorder->errors.first().second, "Error to insert new action: out of range " + position);
            QCOMPARE(recorder->updated.size(), 0);
        }
    }

    void removingActionsRemovesTheNodesThatEmpty_data()
    {
        QTest::addColumn<QList<int>>("at");
        QTest::addColumn<QString>("item");
        QTest::addColumn<QStringList>("published");
        QTest::addColumn<QString>("after");
        QTest::newRow("one of two") << QList<int>{1, 8, 30} << "blind"
                                    << QStringList{"week/days/1/hours/8/minutes/30/actions/blind"}
                                    << "1/8/30 lamp=1; 1/8/31 lamp=0; 2/9/0 lamp=1";
        QTest::newRow("last of a minute") << QList<int>{1, 8, 31} << "lamp"
                                          << QStringList{"week/days/1/hours/8/minutes/31/actions/lamp",
                                                         "week/days/1/hours/8/minutes/31"}
                                          << "1/8/30 blind=0 lamp=1; 2/9/0 lamp=1";
        QTest::newRow("last of the week") << QList<int>{2, 9, 0} << "lamp"
                                          << QStringList{"week/days/2/hours/9/minutes/0/actions/lamp",
                                                         "week/days/2/hours/9/minutes/0", "week/days/2/hours/9",
                                                         "week/days/2"}
                                          << "1/8/30 blind=0 lamp=1; 1/8/31 lamp=0";
        QTest::newRow("absent item does nothing") << QList<int>{1, 8, 30} << "fan" << QStringList()
                                                  << "1/8/30 blind=0 lamp=1; 1/8/31 lamp=0; 2/9/0 lamp=1";
        QTest::newRow("absent day does nothing") << QList<int>{4, 8, 30} << "lamp" << QStringList()
                                                 << "1/8/30 blind=0 lamp=1; 1/8/31 lamp=0; 2/9/0 lamp=1";
    }

    void removingActionsRemovesTheNodesThatEmpty()
    {
        QFETCH(QList<int>, at);
        QFETCH(QString, item);
        QFETCH(QStringList, published);
        QFETCH(QString, after);
        record("1/8/30 blind=0 lamp=1; 1/8/31 lamp=0; 2/9/0 lamp=1");
        log_capture_t logs;
        data->update_action(at[0], at[1], at[2], item, " ", true);
        drainEvents();
        QCOMPARE(topics(recorder->updated), published);
        for (QJsonObject const& packet : std::as_const(recorder->updated))
            QVERIFY(packet.value("payload").isNull());
        QCOMPARE(data->toJson(), weekDocument(after));
        QVERIFY(logs.records.isEmpty());
    }

    void subtreesAreCopiedInAndRemovedByNull_data()
    {
        QTest::addColumn<QString>("level");
        QTest::addColumn<QString>("topic");
        QTest::addColumn<QString>("line");
        QTest::newRow("minute") << "minute" << "week/days/2/hours/3/minutes/4" << "Added new minute: day: 2 hour: 3 min: 4";
        QTest::newRow("hour") << "hour" << "week/days/2/hours/3" << "Added new hour: day: 2 hour: 3";
        QTest::newRow("day, with the hour's words") << "day" << "week/days/2" << "Added new hour: day: 2";
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

        recorder->clear();
        put(true);
        drainEvents();
        QCOMPARE(data->toJson(), weekDocument(""));
        QCOMPARE(topics(recorder->updated).first(), topic);
        QCOMPARE(topics(recorder->updated).last(), QStringLiteral("week/days/2"));
    }

    void anEmptySubtreeDoesNotStay()
    {
        psi_data_t::hour_t empty;
        data->update_hour(5, 6, &empty, true);
        drainEvents();
        QCOMPARE(data->toJson(), weekDocument(""));
        // Published as given, then its removal.
        QCOMPARE(topics(recorder->updated), (QStringList{"week/days/5/hours/6", "week/days/5/hours/6", "week/days/5"}));
    }

    void anItemIsRemovedFromTheWholeWeek()
    {
        record("1/8/30 blind=0 lamp=1; 6/20/0 lamp=0");
        data->update_remove_item("lamp", true);
        drainEvents();
        QCOMPARE(data->toJson(), weekDocument("1/8/30 blind=0"));
        QCOMPARE(topics(recorder->updated), QStringList{"week"});
    }

    void actionsAreReadBack_data()
    {
        QTest::addColumn<QString>("week");
        QTest::addColumn<QDateTime>("when");
        QTest::addColumn<int>("result");
        QTest::addColumn<QDateTime>("found");
        QTest::addColumn<QString>("lamp");
        QDateTime const untouched = QDateTime(QDate(2000, 1, 1), QTime(0, 0));
        QTest::newRow("recorded minute") << "1/8/30 lamp=1" << monday(8, 30) << 0 << monday(8, 30) << "1";
        QTest::newRow("recorded hour, silent minute") << "1/8/30 lamp=1" << monday(8, 31) << 42 << untouched << "";
        QTest::newRow("unrecorded day taken from the latest before")
            << "1/8/30 lamp=1; 2/9/0 lamp=0" << monday(8, 30).addDays(3) << 0 << monday(8, 30) << "1";
        QTest::newRow("six days back is still reached")
            << "2/8/30 lamp=1" << monday(8, 30).addDays(7) << 0 << monday(8, 30).addDays(1) << "1";
        QTest::newRow("empty week") << "" << monday(8, 30) << -1 << monday(8, 30).addDays(-7) << "";
    }

    void actionsAreReadBack()
    {
        QFETCH(QString, week);
        QFETCH(QDateTime, when);
        QFETCH(int, result);
        QFETCH(QDateTime, found);
        QFETCH(QString, lamp);
        record(week);
        int actualResult = 42;
        QDateTime actualFound = QDateTime(QDate(2000, 1, 1), QTime(0, 0));
        map_string const actions = data->getActions(when, actualResult, actualFound);
        QCOMPARE(actions, (lamp.isEmpty() ? map_string() : map_string{{"lamp", lamp}}));
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
        QTest::newRow("within a day, one step") << monday(8, 30) << 5 << QList<QDateTime>{monday(8, 30)};
        QTest::newRow("from a day's first minute, until enough")
            << tuesday << 1 << QList<QDateTime>{monday(23, 58), monday(23, 59), tuesday};
    }

    void nextActionsWalkBackwards()
    {
        QFETCH(QDateTime, from);
        QFETCH(int, count);
        QFETCH(QList<QDateTime>, moments);
        record("1/8/30 lamp=1; 1/23/58 blind=1");
        QMap<QDateTime, map_string> const next = data->getNextActions(from, count);
        QCOMPARE(next.keys(), moments);
        if (count == 1)
            QCOMPARE(next.value(monday(23, 58)), (map_string{{"blind", "1"}}));
    }

};

QTEST_GUILESS_MAIN(tst_psi_data)
#include "tst_psi_data.moc"
