#include <QPointer>
#include <QtTest>

#include "database/definition/type_cron_t.h"
#include "database/definition/type_sun_t.h"
#include "database/persistent/dbs/ps_scheduler_t.h"
#include "database/utility/utility.h"
#include "platform/qjsonserializer/qjsonserializer.h"
#include "support/model_test.h"
#include "support/log_capture.h"
#include "support/packet_recorder.h"

using database::definition::type_cron_t;
using database::definition::type_object_t;
using database::definition::type_sun_t;
using database::persistent::ps_astro_map;
using database::persistent::ps_cron_map;
using database::persistent::ps_objects_map;
using database::persistent::dbs::ps_scheduler_t;
using database::persistent::objects::ps_object_astro_t;
using database::persistent::objects::ps_object_cron_t;
using database::persistent::objects::ps_object_schedule_entry_t;
using database::persistent::objects::ps_object_scheduler_t;
using database::persistent::objects::ps_object_t;

namespace {



ps_object_t* makeAction(QString const& id, QString const& value)
{
    return new ps_object_t(true, 1, 0, type_object_t::item, id, value, QString(), nullptr);
}

// A schedule "Evening" on element E1 with one clock entry C1 and one sun entry A1, one action each.
ps_object_scheduler_t* makeScheduler()
{
    ps_objects_map const cronActions{{QStringLiteral("K1"), makeAction(QStringLiteral("I1"), QStringLiteral("1"))}};
    ps_objects_map const astroActions{{QStringLiteral("K2"), makeAction(QStringLiteral("I2"), QStringLiteral("0"))}};
    ps_cron_map const crons{{QStringLiteral("C1"),
                             new ps_object_cron_t(QStringLiteral("30"), QStringLiteral("21"), QStringLiteral("*"),
                                                  QStringLiteral("*"), QStringLiteral("5"), QStringLiteral("*"),
                                                  QStringLiteral("1/1"), QStringLiteral("31/12"), &cronActions)}};
    ps_astro_map const astros{{QStringLiteral("A1"),
                               new ps_object_astro_t(type_sun_t::sunset, -15, QStringLiteral("*"), QStringLiteral("*"),
                                                     QStringLiteral("*"), QStringLiteral("*"), QStringLiteral("*"),
                                                     QStringLiteral("*"), &astroActions)}};
    return new ps_object_scheduler_t(QStringLiteral("Evening"), true, crons, astros, QStringLiteral("E1"), 3);
}

} // namespace

class tst_ps_schedulers : public QObject
{
    Q_OBJECT

private:
    ps_scheduler_t* section = nullptr;
    packet_recorder_t* engine = nullptr;

    // The stored schedule S1, made from makeScheduler().
    ps_object_scheduler_t* storeScheduler()
    {
        QScopedPointer<ps_object_scheduler_t> made(makeScheduler());
        section->update_scheduler(QStringLiteral("S1"), made.data(), false);
        return section->getObjects().value(QStringLiteral("S1"));
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(database::utility::getInstance()); }

    void init()
    {
        section = new ps_scheduler_t;
        engine = new packet_recorder_t;
        section->initRequestSignals(engine, true);
    }

    void cleanup()
    {
        delete section;
        delete engine;
        drainEvents();
    }

    void fieldGrammar_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("value");
        QTest::addColumn<bool>("accepted");

        // "sun" stands for the validity dates of a sun entry.
        struct row_t {
            char const* name;
            char const* field;
            char const* value;
            bool accepted;
        };
        static row_t const rows[] = {
            {"minute 59", "minute", "59", true},
            {"minute with leading zero", "minute", "05", true},
            {"minute 60", "minute", "60", false},
            {"minute empty", "minute", "", false},
            {"minute with blank", "minute", "5 ", false},
            {"minute list", "minute", "1,2", false},
            {"minute step", "minute", "*/5", false},
            {"hour 7", "hour", "7", true},
            {"hour with leading zero", "hour", "07", false},
            {"hour 24", "hour", "24", false},
            {"day 00 slips through", "day", "00", true},
            {"day 0", "day", "0", false},
            {"day 32", "day", "32", false},
            {"month 12", "month", "12", true},
            {"month 13", "month", "13", false},
            {"dayofweek 7", "dayofweek", "7", true},
            {"dayofweek 8", "dayofweek", "8", false},
            {"year 2024", "year", "2024", true},
            {"year 1999", "year", "1999", false},
            {"from 24/12", "from", "24/12", true},
            {"from any day", "from", "*/3", true},
            {"from 1/1", "from", "1/1", true},
            {"to 31/12", "to", "31/12", true},
            {"from day 10 refused", "from", "10/5", false},
            {"to day 20 refused", "to", "20/1", false},
            {"from any month never matches", "from", "1/*", false},
            {"from bare any", "from", "*", false},
            {"to month 13", "to", "1/13", false},
            {"sun 1/1", "sun", "1/1", true},
            {"sun day 10", "sun", "10/5", true},
            {"sun bare any", "sun", "*", true},
            {"sun any day refused", "sun", "*/12", false},
            {"sun month 13", "sun", "1/13", false},
        };
        for (row_t const& row : rows)
            QTest::newRow(row.name) << QString::fromLatin1(row.field) << QString::fromLatin1(row.value) << row.accepted;
    }

    void fieldGrammar()
    {
        QFETCH(QString, field);
        QFETCH(QString, value);
        QFETCH(bool, accepted);
        if (field == QLatin1String("sun"))
            QCOMPARE(ps_object_astro_t::checkParamsFromTo(value), accepted);
        else
            QCOMPARE(ps_object_schedule_entry_t::checkParams(value, type_cron_t(field)), accepted);
    }

    void cronRequestsAreRefusedOnAnyBadField_data()
    {
        QTest::addColumn<QStringList>("parts");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("payload");
        QTest::addColumn<bool>("accepted");

        QTest::newRow("pattern") << QStringList{"5", "7", "*", "*", "1", "2030"} << "pattern" << "5 7 * * 1 2030"
                                 << true;
        QTest::newRow("pattern with hour 07") << QStringList{"5", "07", "*", "*", "1", "*"} << "pattern"
                                              << "5 07 * * 1 *" << false;
        QTest::newRow("validity") << QStringList{"1/1", "31/12"} << "validity" << "1/1 31/12" << true;
        QTest::newRow("validity from day 10") << QStringList{"10/5", "31/12"} << "validity" << "10/5 31/12" << false;
    }

    void cronRequestsAreRefusedOnAnyBadField()
    {
        QFETCH(QStringList, parts);
        QFETCH(QString, key);
        QFETCH(QString, payload);
        QFETCH(bool, accepted);

        ps_object_cron_t* cron = storeScheduler()->cron(QStringLiteral("C1"));
        if (parts.size() == 6)
            cron->requestSetCron(parts[0], parts[1], parts[2], parts[3], parts[4], parts[5]);
        else
            cron->requestSetValidity(parts[0], parts[1]);

        QJsonObject const packet{
            {"topic", "request/DB/persistent/schedulers/objects_list/S1/cron_list/C1/" + key}, {"payload", payload}};
        QTRY_COMPARE(engine->total(), 1);
        if (accepted) {
            QCOMPARE(engine->requests, QList<QJsonObject>{packet});
        } else {
            QCOMPARE(engine->errors.size(), 1);
            QCOMPARE(engine->errors.first().first, packet);
            QCOMPARE(engine->errors.first().second, QStringLiteral("Value not allowed"));
        }
        // Nothing changes before the handler applies the request.
        QCOMPARE(cron->getPattern(), QStringLiteral("30 21 * * 5 *"));
    }

    void astroFieldRequests_data()
    {
        QTest::addColumn<QString>("request");
        QTest::addColumn<QVariant>("argument");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QJsonValue>("payload");
        QTest::addColumn<QString>("refusal");

        QTest::newRow("offset 1439") << "offset" << QVariant(1439) << "offset" << QJsonValue(1439) << QString();
        QTest::newRow("offset -1439") << "offset" << QVariant(-1439) << "offset" << QJsonValue(-1439) << QString();
        QTest::newRow("offset 1440") << "offset" << QVariant(1440) << "offset" << QJsonValue(1440)
                                     << "Offset not allowed";
        QTest::newRow("offset -1440") << "offset" << QVariant(-1440) << "offset" << QJsonValue(-1440)
                                      << "Offset not allowed";
        QTest::newRow("validity goes to from") << "validity" << QVariant(QStringList{"*", "10/5"}) << "from"
                                               << QJsonValue("* 10/5") << QString();
        QTest::newRow("validity any day") << "validity" << QVariant(QStringList{"*/12", "*"}) << "from"
                                          << QJsonValue("*/12 *") << "Validity not allowed";
        QTest::newRow("pattern keeps the time of day free")
            << "pattern" << QVariant(QStringList{"1", " 2", "3", "2030"}) << "pattern" << QJsonValue("* * 1 2 3 2030")
            << "Value not allowed";
        QTest::newRow("pattern") << "pattern" << QVariant(QStringList{"1", "2", "3", "2030"}) << "pattern"
                                 << QJsonValue("* * 1 2 3 2030") << QString();
        QTest::newRow("type") << "type" << QVariant() << "type" << QJsonValue("sunset") << QString();
    }

    void astroFieldRequests()
    {
        QFETCH(QString, request);
        QFETCH(QVariant, argument);
        QFETCH(QString, key);
        QFETCH(QJsonValue, payload);
        QFETCH(QString, refusal);

        ps_object_astro_t* astro = storeScheduler()->astro(QStringLiteral("A1"));
        QStringList const parts = argument.toStringList();
        if (request == QLatin1String("offset"))
            astro->requestSetOffset(argument.toInt());
        else if (request == QLatin1String("validity"))
            astro->requestSetValidity(parts[0], parts[1]);
        else if (request == QLatin1String("pattern"))
            astro->requestSetPattern(parts[0], parts[1], parts[2], parts[3]);
        else
            astro->requestSetType(type_sun_t::sunset);

        QJsonObject const packet{
            {"topic", "request/DB/persistent/schedulers/objects_list/S1/astro_list/A1/" + key}, {"payload", payload}};
        QTRY_COMPARE(engine->total(), 1);
        if (refusal.isEmpty()) {
            QCOMPARE(engine->requests, QList<QJsonObject>{packet});
        } else {
            QCOMPARE(engine->errors.size(), 1);
            QCOMPARE(engine->errors.first().first, packet);
            QCOMPARE(engine->errors.first().second, refusal);
        }
    }

    void wholeAstroRequestGoesTwiceWhenValidAndOnceAfterRefusal_data()
    {
        QTest::addColumn<int>("offset");
        QTest::addColumn<QString>("day");
        QTest::addColumn<QString>("from");
        QTest::addColumn<bool>("valid");

        QTest::newRow("valid") << 30 << "1" << "1/1" << true;
        QTest::newRow("offset out of range") << 1440 << "1" << "1/1" << false;
        QTest::newRow("day 32") << 30 << "32" << "1/1" << false;
        // The whole entry is judged by the clock grammar, which refuses day 10.
        QTest::newRow("from day 10") << 30 << "1" << "10/5" << false;
    }

    void wholeAstroRequestGoesTwiceWhenValidAndOnceAfterRefusal()
    {
        QFETCH(int, offset);
        QFETCH(QString, day);
        QFETCH(QString, from);
        QFETCH(bool, valid);

        ps_object_astro_t* astro = storeScheduler()->astro(QStringLiteral("A1"));
        astro->requestSetAstro(type_sun_t::sunrise, offset, day, "*", "*", "*", from, "31/12");

        QTRY_VERIFY(!engine->requests.isEmpty());
        drainEvents();
        QCOMPARE(engine->requests.size(), valid ? 2 : 1);
        QJsonObject const packet = engine->requests.first();
        QCOMPARE(packet.value("topic").toString(),
                 QStringLiteral("request/DB/persistent/schedulers/objects_list/S1/astro_list/A1"));
        QJsonObject const payload = packet.value("payload").toObject();
        QCOMPARE(payload.value("pattern").toString(), "* * " + day + " * * *");
        QCOMPARE(payload.value("validity").toString(), from + " 31/12");
        QCOMPARE(payload.value("offset").toInt(), offset);
        QCOMPARE(payload.value("type").toString(), QStringLiteral("sunrise"));
        // Without actions of its own, the request keeps the entry's actions.
        QVERIFY(payload.value("objects_list").toObject().contains("K2"));
        if (valid) {
            QCOMPARE(engine->requests.last(), packet);
            QVERIFY(engine->errors.isEmpty());
        } else {
            QCOMPARE(engine->errors.size(), 1);
            QCOMPARE(engine->errors.first().first, packet);
            QCOMPARE(engine->errors.first().second, QStringLiteral("Value not allowed"));
        }
    }

    void entryUpdateMergesActionsByKey()
    {
        ps_object_scheduler_t* scheduler = storeScheduler();
        ps_object_astro_t* astro = scheduler->astro(QStringLiteral("A1"));
        astro->update_object(QStringLiteral("K3"), QScopedPointer<ps_object_t>(makeAction("I3", "1")).data());
        ps_object_t* kept = astro->getObjects().value(QStringLiteral("K2"));
        QPointer<ps_object_t> dropped = astro->getObjects().value(QStringLiteral("K3"));

        // Same K2, K3 gone, K4 new, and new sun data.
        QScopedPointer<ps_object_astro_t> incoming(astro->get());
        incoming->update_remove_objects({QStringLiteral("K3"), QStringLiteral("unknown")}, false);
        incoming->update_object(QStringLiteral("K4"), QScopedPointer<ps_object_t>(makeAction("I4", "0")).data());
        incoming->setOffset(45);
        incoming->setType(type_sun_t::sunrise);
        incoming->setPattern(QStringLiteral("* * 1 * * *"));

        scheduler->update_astro(QStringLiteral("A1"), incoming.data(), true);
        QCOMPARE(scheduler->getAstros().value(QStringLiteral("A1")), astro);
        QCOMPARE(astro->getObjects().keys(), (QStringList{"K2", "K4"}));
        QCOMPARE(astro->getObjects().value(QStringLiteral("K2")), kept);
        QVERIFY(astro->getObjects().value(QStringLiteral("K4")) != incoming->getObjects().value("K4"));
        QCOMPARE(astro->getOffset(), 45);
        QCOMPARE(astro->getType(), QStringLiteral("sunrise"));
        QCOMPARE(astro->getPattern(), QStringLiteral("* * 1 * * *"));
        QVERIFY(astro->compare(incoming.data()));
        QVERIFY(!(*astro == *incoming));

        drainEvents();
        QVERIFY(dropped.isNull());
        // The schedule as a whole is published, once.
        QCOMPARE(engine->updated.size(), 1);
        QCOMPARE(engine->updated.first().value("topic").toString(), QStringLiteral("schedulers/objects_list/S1"));

        // The new action is wired under its entry.
        ps_object_t* added = astro->getObjects().value(QStringLiteral("K4"));
        QCOMPARE(added->getTopic(), QStringLiteral("schedulers/objects_list/S1/astro_list/A1/objects_list/K4"));
        added->send_update();
        QTRY_COMPARE(engine->updated.size(), 2);
    }

    void schedulerIsReplacedNotMerged()
    {
        ps_object_scheduler_t* first = storeScheduler();
        QPointer<ps_object_scheduler_t> guard(first);
        QScopedPointer<ps_object_scheduler_t> other(makeScheduler());
        other->setName(QStringLiteral("Morning"));

        section->update_scheduler(QStringLiteral("S1"), other.data(), true);
        ps_object_scheduler_t* stored = section->list(QStringLiteral("S1"));
        QVERIFY(stored != first && stored != other.data());
        QVERIFY(stored->compare(other.data()));
        drainEvents();
        QVERIFY(guard.isNull());
        QCOMPARE(engine->updated.size(), 1);
        QCOMPARE(engine->updated.first().value("payload").toObject().value("name").toString(),
                 QStringLiteral("Morning"));

        // The copy is wired: its entries know their topics and reach the engine.
        ps_object_cron_t* cron = stored->getCrons().value(QStringLiteral("C1"));
        QCOMPARE(cron->getTopic(), QStringLiteral("schedulers/objects_list/S1/cron_list/C1"));
        cron->send_update();
        QTRY_COMPARE(engine->updated.size(), 2);
    }

    void nullArguments()
    {
        ps_object_scheduler_t* scheduler = storeScheduler();
        scheduler->cron(QStringLiteral("C1"))->update(nullptr, true);
        scheduler->astro(QStringLiteral("A1"))->update(nullptr, true);
        QTRY_COMPARE(engine->errors.size(), 2);
        QCOMPARE(engine->errors.first().second, QStringLiteral("Not permitted nullptr"));
        QVERIFY(engine->updated.isEmpty());

        // A null schedule removes it and is published as a null payload, also for an unknown id.
        engine->clear();
        section->update_scheduler(QStringLiteral("S1"), nullptr, true);
        section->update_scheduler(QStringLiteral("S9"), nullptr, true);
        QVERIFY(section->keys().isEmpty());
        QTRY_COMPARE(engine->updated.size(), 2);
        QCOMPARE(engine->updated.last(),
                 (QJsonObject{{"topic", "schedulers/objects_list/S9"}, {"payload", QJsonValue()}}));

        // A null schedule in a request asks for removal with an empty object.
        section->requestSetSchedulers(QStringLiteral("S1"), nullptr);
        QTRY_COMPARE(engine->requests.size(), 1);
        QCOMPARE(engine->requests.first(), (QJsonObject{{"topic", "request/DB/persistent/schedulers/objects_list/S1"},
                                                        {"payload", QJsonObject()}}));
    }

    void unknownIdsGiveTemporaries()
    {
        log_capture_t logs;
        ps_object_scheduler_t* scheduler = section->list(QStringLiteral("S7"));
        QCOMPARE(scheduler->getTaskCount(), 0);
        QVERIFY(scheduler->getEnabled());
        ps_object_cron_t* cron = storeScheduler()->cron(QStringLiteral("C1"));
        ps_object_t* action = cron->objects(QStringLiteral("K9"));
        QVERIFY(action);
        QCOMPARE(action->getTopic(), QStringLiteral("schedulers/objects_list/S1/cron_list/C1/objects_list/K9"));
        QVERIFY(logs.contains(QStringLiteral("New key create app : K9"), 6));
        QVERIFY(!cron->getObjects().contains(QStringLiteral("K9")));
        QTRY_COMPARE(engine->notExist.size(), 2);

        ps_object_cron_t fiveFields(QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3"), QStringLiteral("4"),
                                    QStringLiteral("5"), QString(), QString(), QString(), nullptr);
        fiveFields.setPattern(QStringLiteral("1 2 3 4 5"));
        QCOMPARE(fiveFields.getYear(), QString());
        // Blank validity dates fall back to the stored default.
        QCOMPARE(fiveFields.getValidity(), QStringLiteral("* *"));
    }

    void sectionJsonRoundTrip()
    {
        QCOMPARE(ps_scheduler_t().toJson(), (QJsonObject{{"objects_list", QJsonObject()}, {"enabled", true}}));

        storeScheduler();
        section->update_enabled(false, true);
        QTRY_COMPARE(engine->updated.size(), 1);
        QCOMPARE(engine->updated.first(), (QJsonObject{{"topic", "schedulers/enabled"}, {"payload", false}}));

        QJsonObject const json = section->toJson();
        QJsonObject const entry =
            json.value("objects_list").toObject().value("S1").toObject().value("astro_list").toObject().value("A1")
                .toObject();
        QCOMPARE(entry.value("offset").toInt(), -15);
        QCOMPARE(entry.value("type").toString(), QStringLiteral("sunset"));
        QCOMPARE(entry.value("validity").toString(), QStringLiteral("* *"));

        QVariant const back =
            serializer()->deserialize(json, QMetaType::fromType<ps_scheduler_t*>().id(), nullptr);
        QScopedPointer<ps_scheduler_t> restored(back.value<ps_scheduler_t*>());
        QVERIFY(restored);
        QCOMPARE(restored->toJson(), json);
        QVERIFY(!restored->getEnabled());
        QVERIFY(restored->list("S1")->compare(section->list("S1")));

        // Wiring gives a freshly read tree its topics down to the actions.
        packet_recorder_t other;
        restored->initRequestSignals(&other, true);
        ps_object_t* action = restored->list("S1")->astro("A1")->getObjects().value("K2");
        QCOMPARE(action->getTopic(), QStringLiteral("schedulers/objects_list/S1/astro_list/A1/objects_list/K2"));
    }

    void schedulerRequestCarriesTheGivenLists()
    {
        ps_object_scheduler_t* scheduler = storeScheduler();
        QScopedPointer<ps_object_cron_t> cron(new ps_object_cron_t);
        scheduler->requestSetScheduler(ps_cron_map{{QStringLiteral("C5"), cron.data()}}, ps_astro_map());
        QCOMPARE(cron->getTopic(), QStringLiteral("schedulers/objects_list/S1/cron_list/C5"));
        QTRY_COMPARE(engine->requests.size(), 1);
        QJsonObject const payload = engine->requests.first().value("payload").toObject();
        QCOMPARE(payload.value("cron_list").toObject().keys(), QStringList{"C5"});
        QCOMPARE(payload.value("astro_list").toObject(), QJsonObject());
        QCOMPARE(payload.value("name").toString(), QStringLiteral("Evening"));
        QCOMPARE(scheduler->getTaskCount(), 2);
    }

    void equalityComparesPointersAndCompareContent()
    {
        ps_object_scheduler_t* stored = storeScheduler();
        QScopedPointer<ps_object_scheduler_t> copy(new ps_object_scheduler_t(*stored));
        QVERIFY(copy->compare(stored));
        QVERIFY(!(*copy == *stored));
        QVERIFY(*stored == *stored);
        copy->cron(QStringLiteral("C1"))->setPattern(QStringLiteral("* * * * * *"));
        QVERIFY(!copy->compare(stored));

        QScopedPointer<ps_scheduler_t> sectionCopy(new ps_scheduler_t(*section));
        QVERIFY(!(*sectionCopy == *section));
        QVERIFY(sectionCopy->list("S1")->compare(stored));
    }
};

QTEST_GUILESS_MAIN(tst_ps_schedulers)
#include "tst_ps_schedulers.moc"
