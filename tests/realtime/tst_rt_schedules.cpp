#include <QDateTime>
#include <QJsonArray>
#include <QPointer>
#include <QSignalSpy>
#include <QtTest>

#include <functional>

#include "database/definition/type_smartbutton_state_t.h"
#include "database/realtime/dbs/rt_astronomical_t.h"
#include "database/realtime/dbs/rt_rules_t.h"
#include "database/realtime/dbs/rt_scenary_t.h"
#include "database/realtime/dbs/rt_scheduler_t.h"
#include "database/realtime/dbs/rt_smartbutton_t.h"
#include "database/realtime/dbs/rt_storage_t.h"
#include "database/utility/utility.h"
#include "support/log_capture.h"
#include "support/model_test.h"
#include "support/packet_recorder.h"

using database::base::topicbase_t;
using database::definition::type_smartbutton_state_t;
using database::realtime::rt_astro_map;
using database::realtime::rt_cron_map;
using database::realtime::rt_schedulers_map;
using database::realtime::dbs::rt_astronomical_t;
using database::realtime::dbs::rt_rules_t;
using database::realtime::dbs::rt_scenary_t;
using database::realtime::dbs::rt_scheduler_t;
using database::realtime::dbs::rt_smartbutton_t;
using database::realtime::dbs::rt_storage_t;
using database::realtime::objects::rt_object_astro_t;
using database::realtime::objects::rt_object_cron_t;
using database::realtime::objects::rt_object_rules_t;
using database::realtime::objects::rt_object_scenary_t;
using database::realtime::objects::rt_object_scheduler_t;

namespace {

QStringList ownProperties(QMetaObject const& meta)
{
    QStringList names;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i)
        names.append(QString::fromLatin1(meta.property(i).name()));
    return names;
}

rt_object_scheduler_t* makeScheduler(QStringList const& crons, QStringList const& astros)
{
    rt_cron_map cronMap;
    for (QString const& key : crons)
        cronMap.insert(key, new rt_object_cron_t(QStringLiteral("2024-05-01T10:00:00"), 3, nullptr));
    rt_astro_map astroMap;
    for (QString const& key : astros)
        astroMap.insert(key, new rt_object_astro_t(QStringLiteral("2024-05-01T20:41:00"), 7, nullptr));
    return new rt_object_scheduler_t(cronMap, astroMap, nullptr);
}

// The three map sections behind one face: a section, and how to store an
// object with some content under a key (null removes).
struct map_section_t {
    std::function<topicbase_t*()> make;
    std::function<void(topicbase_t*, QString const&, bool withObject, bool notify)> update;
    std::function<QStringList(topicbase_t*)> keys;
    std::function<topicbase_t*(topicbase_t*, QString const&)> list;
    std::function<void(topicbase_t*, QStringList const&)> updateAll; // publishes
    std::function<void(topicbase_t*, QObject*)> connect;
};

template<class Section, class Object>
map_section_t access(void (Section::*updateOne)(QString const&, Object*, bool), std::function<Object*()> make)
{
    return {
        [] { return new Section; },
        [=](topicbase_t* s, QString const& key, bool withObject, bool notify) {
            QScopedPointer<Object> object(withObject ? make() : nullptr);
            (static_cast<Section*>(s)->*updateOne)(key, object.data(), notify);
        },
        [](topicbase_t* s) { return static_cast<Section*>(s)->keys(); },
        [](topicbase_t* s, QString const& key) -> topicbase_t* { return static_cast<Section*>(s)->list(key); },
        [=](topicbase_t* s, QStringList const& keys) {
            typename Section::map_t map;
            for (QString const& key : keys)
                map.insert(key, make());
            static_cast<Section*>(s)->update(map, true);
            qDeleteAll(map);
        },
        [](topicbase_t* s, QObject* receiver) { static_cast<Section*>(s)->initRequestSignals(receiver, true); },
    };
}

} // namespace

Q_DECLARE_METATYPE(map_section_t)
Q_DECLARE_METATYPE(std::function<topicbase_t*()>)

class tst_rt_schedules : public QObject
{
    Q_OBJECT

private:
    packet_recorder_t* engine = nullptr;

private Q_SLOTS:
    void initTestCase() { QVERIFY(database::utility::getInstance()); }

    void init() { engine = new packet_recorder_t; }

    void cleanup()
    {
        delete engine;
        drainEvents();
    }

    void defaultSectionJsonHasItsKeysInOrder_data()
    {
        QTest::addColumn<std::function<topicbase_t*()>>("make");
        QTest::addColumn<QJsonObject>("json");
        QTest::addColumn<QStringList>("order");
        QJsonObject const map{{"objects_list", QJsonObject()}, {"updated", ""}};
        QStringList const mapOrder{"objects_list", "updated"};
        QTest::newRow("schedulers") << std::function<topicbase_t*()>([] { return new rt_scheduler_t; })
                                    << QJsonObject{{"objects_list", QJsonObject()}, {"updated", ""}, {"enabled", true}}
                                    << QStringList{"objects_list", "updated", "enabled"};
        QTest::newRow("rules") << std::function<topicbase_t*()>([] { return new rt_rules_t; }) << map << mapOrder;
        QTest::newRow("scenary") << std::function<topicbase_t*()>([] { return new rt_scenary_t; }) << map
                                 << mapOrder;
        QTest::newRow("storage") << std::function<topicbase_t*()>([] { return new rt_storage_t; }) << map
                                 << mapOrder;
        QTest::newRow("smartbutton") << std::function<topicbase_t*()>([] { return new rt_smartbutton_t; })
                                     << QJsonObject{{"state", "stop"}, {"recScena", ""}}
                                     << QStringList{"state", "recScena"};
        QTest::newRow("astronomical")
            << std::function<topicbase_t*()>([] { return new rt_astronomical_t; })
            << QJsonObject{{"sunset", ""}, {"sunrice", ""}, {"daylen", ""}, {"azimuth", ""}, {"altitude", ""},
                           {"declination", ""}, {"timezone", ""}, {"updated", ""}}
            << QStringList{"sunset", "sunrice", "daylen", "azimuth", "altitude", "declination", "timezone", "updated"};
    }

    void defaultSectionJsonHasItsKeysInOrder()
    {
        QFETCH(std::function<topicbase_t*()>, make);
        QFETCH(QJsonObject, json);
        QFETCH(QStringList, order);
        QScopedPointer<topicbase_t> section(make());
        QCOMPARE(section->getTopic(), QString::fromLatin1(QTest::currentDataTag()));
        QCOMPARE(section->toJson(), json);
        QCOMPARE(ownProperties(*section->metaObject()), order);
    }

    void mapSectionsMergeCopyAndRemoveByKey_data()
    {
        QTest::addColumn<map_section_t>("section");
        QTest::addColumn<QString>("topic");
        QTest::newRow("schedulers") << access<rt_scheduler_t, rt_object_scheduler_t>(
            &rt_scheduler_t::update_scheduler, [] { return makeScheduler({"c1"}, {"a1"}); })
                                    << "schedulers";
        QTest::newRow("rules") << access<rt_rules_t, rt_object_rules_t>(&rt_rules_t::update_rule, [] {
            return new rt_object_rules_t;
        }) << "rules";
        QTest::newRow("scenary") << access<rt_scenary_t, rt_object_scenary_t>(&rt_scenary_t::update_scenary, [] {
            return new rt_object_scenary_t;
        }) << "scenary";
    }

    void mapSectionsMergeCopyAndRemoveByKey()
    {
        QFETCH(map_section_t, section);
        QFETCH(QString, topic);
        QScopedPointer<topicbase_t> s(section.make());
        section.connect(s.data(), engine);
        QString const objectTopic = topic + "/objects_list/K";

        section.update(s.data(), "K", true, true);
        topicbase_t* stored = section.list(s.data(), "K");
        QCOMPARE(stored->getTopic(), objectTopic);
        section.update(s.data(), "K", true, false);
        QCOMPARE(section.list(s.data(), "K"), stored); // a known key keeps its object
        section.update(s.data(), "K", false, true);
        section.update(s.data(), "X", false, true); // null on an unknown key: still a packet
        QVERIFY(section.keys(s.data()).isEmpty());

        log_capture_t logs;
        QPointer<topicbase_t> temporary = section.list(s.data(), "missing");
        QVERIFY(temporary);
        QVERIFY(logs.contains("New key create app : missing", 6));

        section.updateAll(s.data(), {"B", "A"});
        QCOMPARE(section.keys(s.data()), (QStringList{"A", "B"}));
        QCOMPARE(section.list(s.data(), "B")->getTopic(), topic + "/objects_list/B");

        drainEvents();
        QVERIFY(temporary.isNull());
        QCOMPARE(engine->notExist, (QList<QJsonObject>{{{"topic", topic + "/objects_list/missing"}}}));
        QCOMPARE(engine->updated.size(), 4);
        QCOMPARE(engine->updated.at(0).value("topic").toString(), objectTopic);
        QVERIFY(engine->updated.at(0).value("payload").isObject());
        QCOMPARE(engine->updated.at(1), (QJsonObject{{"topic", objectTopic}, {"payload", QJsonValue::Null}}));
        QCOMPARE(engine->updated.at(2),
                 (QJsonObject{{"topic", topic + "/objects_list/X"}, {"payload", QJsonValue::Null}}));
        QCOMPARE(engine->updated.at(3).value("topic").toString(), topic + "/objects_list");
        QCOMPARE(engine->updated.at(3).value("payload").toObject().keys(), (QStringList{"A", "B"}));
    }

    void schedulerUpdateReplacesBothListsWhole_data()
    {
        QTest::addColumn<QStringList>("crons");
        QTest::addColumn<QStringList>("astros");
        QTest::addColumn<bool>("null");
        QTest::newRow("other lists") << QStringList{"c2"} << QStringList{"a2", "a3"} << false;
        QTest::newRow("empty clock list drops every counter") << QStringList() << QStringList{"a1"} << false;
        QTest::newRow("null leaves both empty") << QStringList() << QStringList() << true;
    }

    void schedulerUpdateReplacesBothListsWhole()
    {
        QFETCH(QStringList, crons);
        QFETCH(QStringList, astros);
        QFETCH(bool, null);
        rt_scheduler_t section;
        section.initRequestSignals(engine, true);
        QScopedPointer<rt_object_scheduler_t> first(makeScheduler({"c1"}, {"a1"}));
        section.update_scheduler("S", first.data(), false);
        rt_object_scheduler_t* stored = section.list("S");
        QPointer<rt_object_cron_t> oldCron = stored->getCrons().value("c1");
        QCOMPARE(oldCron->getTopic(), QStringLiteral("schedulers/objects_list/S/cron_list/c1"));

        QScopedPointer<rt_object_scheduler_t> other(makeScheduler(crons, astros));
        stored->update(null ? nullptr : other.data(), true);
        QCOMPARE(stored->getCrons().keys(), crons);
        QCOMPARE(stored->getAstros().keys(), astros);
        QVERIFY(oldCron.isNull()); // freed at once, counter and all
        for (rt_object_astro_t* astro : stored->getAstros()) {
            QCOMPARE(astro->getCounter(), 7);
            QVERIFY(astro->getTopic().startsWith("schedulers/objects_list/S/astro_list/"));
        }

        drainEvents();
        QCOMPARE(engine->updated.size(), 1);
        QCOMPARE(engine->updated.first(),
                 (QJsonObject{{"topic", "schedulers/objects_list/S"}, {"payload", stored->toJson()}}));

        // The new entries answer to the engine like the schedule itself.
        engine->clear();
        for (rt_object_astro_t* astro : stored->getAstros())
            astro->send_update();
        drainEvents();
        QCOMPARE(engine->updated.size(), astros.size());
    }

    void scenarioStateFollowsItsUpdate_data()
    {
        QTest::addColumn<bool>("before");
        QTest::addColumn<int>("other"); // -1 null, else the other's state
        QTest::addColumn<bool>("after");
        QTest::newRow("null stops a running one") << true << -1 << false;
        QTest::newRow("running taken") << false << 1 << true;
        QTest::newRow("stopped taken") << true << 0 << false;
    }

    void scenarioStateFollowsItsUpdate()
    {
        QFETCH(bool, before);
        QFETCH(int, other);
        QFETCH(bool, after);
        rt_object_scenary_t scenario(QStringLiteral("scenary/objects_list/S"), nullptr);
        scenario.initRequestSignals(engine, true);
        scenario.update_execution(before, false);
        rt_object_scenary_t given;
        given.update_execution(other == 1, false);
        scenario.update(other < 0 ? nullptr : &given, true);
        QCOMPARE(scenario.getExecution(), after);
        drainEvents();
        QCOMPARE(engine->updated, (QList<QJsonObject>{{{"topic", "scenary/objects_list/S"},
                                                       {"payload", QJsonObject{{"execution", after}}}}}));
    }

    void smartButtonStates_data()
    {
        QTest::addColumn<QString>("recScenaBefore");
        QTest::addColumn<QString>("state");
        QTest::addColumn<QVariant>("recScenaArgument"); // null: the two-argument update
        QTest::addColumn<QString>("stateAfter");
        QTest::addColumn<QString>("recScenaAfter");
        QTest::addColumn<int>("errors");
        QVariant const none;
        QTest::newRow("stop forgets the scenario") << "S1" << "stop" << none << "stop" << "" << 0;
        QTest::newRow("rec with a scenario") << "S1" << "recindex" << none << "recindex" << "S1" << 0;
        QTest::newRow("rec without scenario stops") << "" << "recindex" << none << "stop" << "" << 1;
        QTest::newRow("rec with a scenario given") << "" << "recindex" << QVariant("S2") << "recindex" << "S2" << 0;
        QTest::newRow("rec with an empty scenario given") << "S1" << "recindex" << QVariant("") << "stop" << "" << 1;
        QTest::newRow("stop with a scenario given drops it") << "" << "stop" << QVariant("S2") << "stop" << "" << 0;
        QTest::newRow("unknown state changes nothing") << "S1" << "pause" << none << "stop" << "S1" << 0;
    }

    void smartButtonStates()
    {
        QFETCH(QString, recScenaBefore);
        QFETCH(QString, state);
        QFETCH(QVariant, recScenaArgument);
        QFETCH(QString, stateAfter);
        QFETCH(QString, recScenaAfter);
        QFETCH(int, errors);
        rt_smartbutton_t button;
        button.initRequestSignals(engine, true);
        button.setProperty("recScena", recScenaBefore);

        log_capture_t logs;
        if (recScenaArgument.isNull())
            button.update(type_smartbutton_state_t(state), true);
        else
            button.update(type_smartbutton_state_t(state), recScenaArgument.toString(), true);
        QCOMPARE(button.getState(), stateAfter);
        QCOMPARE(button.getRecScena(), recScenaAfter);
        QList<utility::logs::logrecord> const lines =
            logs.matching("Try to set smartbutton in rec but rec scena is empty! Set state to stop!", 2);
        QCOMPARE(lines.size(), errors);
        if (errors)
            QCOMPARE(lines.first().source, QStringLiteral("update"));

        drainEvents();
        QCOMPARE(engine->updated, (QList<QJsonObject>{{{"topic", "smartbutton"}, {"payload", button.toJson()}}}));
    }

    void smartButtonWholeUpdateAndStop()
    {
        rt_smartbutton_t button;
        button.initRequestSignals(engine, true);
        rt_smartbutton_t other;
        other.update(type_smartbutton_state_t::recindex, QStringLiteral("S3"), false);
        button.update(&other, false);
        QVERIFY(button == other);
        button.update(nullptr, false);
        QCOMPARE(button.getState(), QStringLiteral("stop"));
        QCOMPARE(button.getRecScena(), QString());

        button.requestSetStop();
        drainEvents();
        QCOMPARE(engine->total(), 0);
    }

    void storageUpdateTakesTheTreeNotTheDate()
    {
        rt_storage_t storage;
        storage.initRequestSignals(engine, true);
        storage.setProperty("updated", QStringLiteral("before"));
        QJsonObject const tree{{"panel", QJsonObject{{"page", 3}}}};
        rt_storage_t other;
        other.setProperty("objects_list", tree);
        other.setProperty("updated", QStringLiteral("other"));

        storage.update(&other, true);
        QCOMPARE(storage.getObjects(), tree);
        QCOMPARE(storage.getUpdated(), QStringLiteral("before"));
        rt_storage_t fromPointer(&other);
        QCOMPARE(fromPointer.toJson(), other.toJson());

        storage.update(nullptr, true);
        QCOMPARE(storage.getObjects(), tree);
        drainEvents();
        QCOMPARE(engine->updated, (QList<QJsonObject>{{{"topic", "storage"}, {"payload", storage.toJson()}}}));
        QCOMPARE(engine->errors.size(), 1);
    }

    void sunTimesAreTakenAndReset()
    {
        rt_astronomical_t sun;
        sun.initRequestSignals(engine, true);
        sun.update("20:41", "06:02", "14:39", "281.5", "-0.8", "18.2", "Europe/Rome", "Mon May 6 2024", false);
        QCOMPARE(sun.getSunrice(), QStringLiteral("06:02"));
        QCOMPARE(sun.getTimezone(), QStringLiteral("Europe/Rome"));
        rt_astronomical_t copy(sun);
        QVERIFY(copy == sun);

        QDateTime const before = QDateTime::currentDateTime().addSecs(-1);
        sun.update_reset(true);
        QJsonObject json = sun.toJson();
        QDateTime const stamp = QDateTime::fromString(json.take("updated").toString(), Qt::ISODate);
        QVERIFY(stamp.isValid());
        QVERIFY(stamp >= before && stamp <= QDateTime::currentDateTime());
        for (QJsonValue const& value : std::as_const(json))
            QCOMPARE(value.toString(), QString());

        sun.update(&copy, true);
        QCOMPARE(sun.toJson(), copy.toJson());
        drainEvents();
        QCOMPARE(engine->updated.size(), 2);
        QCOMPARE(engine->updated.at(1), (QJsonObject{{"topic", "astronomical"}, {"payload", copy.toJson()}}));
    }

    void schedulerSectionSurvivesJsonRoundTrip()
    {
        QScopedPointer<rt_object_scheduler_t> scheduler(makeScheduler({"c1", "c2"}, {"a1"}));
        rt_schedulers_map map{{"S1", scheduler.data()}};
        rt_scheduler_t section(false, {}, nullptr);
        section.update(map, false);
        section.setUpdated(QStringLiteral("today"));
        QJsonObject const json = section.toJson();
        QCOMPARE(json.value("objects_list").toObject().value("S1").toObject().value("cron_list").toObject().keys(),
                 (QStringList{"c1", "c2"}));
        QCOMPARE(json.value("enabled"), QJsonValue(false));

        QScopedPointer<rt_scheduler_t> back(serializer()->deserialize<rt_scheduler_t*>(json));
        QVERIFY(back);
        QCOMPARE(back->toJson(), json);
        back->initRequestSignals(engine, true);
        QCOMPARE(back->list("S1")->getAstros().value("a1")->getTopic(),
                 QStringLiteral("schedulers/objects_list/S1/astro_list/a1"));

        rt_scheduler_t copy(section);
        QCOMPARE(copy.toJson(), json);

        // The whole-section update takes the switch and the date, and copies of the schedules.
        rt_scheduler_t taken;
        taken.update(&section, false);
        QCOMPARE(taken.toJson(), json);
        QVERIFY(taken.getObjects().value("S1") != section.getObjects().value("S1"));
        QVERIFY(!(copy == section));
        QVERIFY(section == section);
    }
};

QTEST_GUILESS_MAIN(tst_rt_schedules)
#include "tst_rt_schedules.moc"
