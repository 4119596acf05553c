#include <QPointer>
#include <QtTest>

#include "database/definition/type_object_t.h"
#include "database/definition/type_rules_t.h"
#include "database/persistent/dbs/ps_rules_t.h"
#include "database/persistent/dbs/ps_scenary_t.h"
#include "database/utility/utility.h"
#include "platform/qjsonserializer/qjsonserializer.h"
#include "support/model_test.h"
#include "support/log_capture.h"
#include "support/packet_recorder.h"

using database::definition::type_object_t;
using database::definition::type_rules_t;
using database::persistent::ps_objects_map;
using database::persistent::ps_rules_map;
using database::persistent::dbs::ps_rules_t;
using database::persistent::dbs::ps_scenary_t;
using database::persistent::objects::ps_object_rules_t;
using database::persistent::objects::ps_object_scenary_t;
using database::persistent::objects::ps_object_t;

namespace {



ps_object_t* makeStep(QString const& id, int order = 0)
{
    return new ps_object_t(true, order, 0, type_object_t::item, id, QStringLiteral("1"), QString(), nullptr);
}

/// A scenario that owns one new step per key.
ps_object_scenary_t* makeScene(QString const& name, QStringList const& keys)
{
    ps_objects_map steps;
    for (QString const& key : keys)
        steps.insert(key, makeStep(QStringLiteral("I_") + key));
    return new ps_object_scenary_t(true, steps, 0, name, nullptr);
}

ps_object_rules_t* makeRule(QString const& when, QString const& then, QString const& _else)
{
    return new ps_object_rules_t(true, type_rules_t::onchange, QStringLiteral("rule"), when, then, _else, 0, nullptr);
}

} // namespace

class tst_ps_scenary_rules : public QObject
{
    Q_OBJECT

private:
    ps_scenary_t* scenary = nullptr;
    ps_rules_t* rules = nullptr;
    packet_recorder_t* engine = nullptr;

private Q_SLOTS:
    void init()
    {
        QVERIFY(database::utility::getInstance());
        scenary = new ps_scenary_t;
        rules = new ps_rules_t;
        engine = new packet_recorder_t;
        scenary->initRequestSignals(engine, true);
        rules->initRequestSignals(engine, true);
    }

    void cleanup()
    {
        delete scenary;
        delete rules;
        delete engine;
        drainEvents();
    }

    void sceneUpdateReplacesWholeScenario()
    {
        QScopedPointer<ps_object_scenary_t> first(makeScene(QStringLiteral("Night"), {"A", "B"}));
        scenary->update_scene(QStringLiteral("S1"), first.data(), false);
        QPointer<ps_object_scenary_t> old = scenary->getObjects().value("S1");
        QVERIFY(old && old != first.data());

        QScopedPointer<ps_object_scenary_t> second(makeScene(QStringLiteral("Day"), {"C"}));
        scenary->update_scene(QStringLiteral("S1"), second.data(), true);
        ps_object_scenary_t* stored = scenary->getObjects().value("S1");
        QVERIFY(stored != old.data());
        QVERIFY(stored != second.data());
        // A merge would have kept A and B.
        QCOMPARE(stored->getObjects().keys(), QStringList{"C"});
        QCOMPARE(stored->getName(), QStringLiteral("Day"));
        QCOMPARE(stored->getTopic(), QStringLiteral("scenary/objects_list/S1"));
        QCOMPARE(stored->getObjects().value("C")->getTopic(), QStringLiteral("scenary/objects_list/S1/objects_list/C"));

        QVERIFY(!old.isNull()); // lives until the event loop runs
        drainEvents();
        QVERIFY(old.isNull());
        QCOMPARE(engine->updated.size(), 1);
        QCOMPARE(engine->updated.first().value("topic").toString(), QStringLiteral("scenary/objects_list/S1"));
        QCOMPARE(engine->updated.first().value("payload").toObject(), stored->toJson());

        // The replacement is wired: its own publication reaches the engine.
        engine->clear();
        stored->update_name(QStringLiteral("Evening"), true);
        drainEvents();
        QCOMPARE(engine->updated.size(), 1);
    }

    void sceneRemovalDropsStepsAtOnce()
    {
        QScopedPointer<ps_object_scenary_t> scene(makeScene(QStringLiteral("Night"), {"A"}));
        scenary->update_scene(QStringLiteral("S1"), scene.data(), false);
        QPointer<ps_object_scenary_t> stored = scenary->getObjects().value("S1");
        QPointer<ps_object_t> step = stored->getObjects().value("A");

        scenary->update_scene(QStringLiteral("S1"), nullptr, true);
        QVERIFY(scenary->getObjects().isEmpty());
        QVERIFY(step.isNull());
        QVERIFY(!stored.isNull());
        QVERIFY(stored->getObjects().isEmpty());
        drainEvents();
        QVERIFY(stored.isNull());
        QCOMPARE(engine->updated,
                 (QList<QJsonObject>{{{"topic", "scenary/objects_list/S1"}, {"payload", QJsonValue::Null}}}));
    }

    void stepUpdates_data()
    {
        QTest::addColumn<QString>("operation");
        QTest::addColumn<QStringList>("keys");
        QTest::addColumn<bool>("sameA");
        QTest::newRow("new key is added as a copy") << "add D" << QStringList{"A", "B", "D"} << true;
        QTest::newRow("known key takes the content") << "change A" << QStringList{"A", "B"} << true;
        QTest::newRow("null removes the step") << "null A" << QStringList{"B"} << false;
        QTest::newRow("removal skips unknown keys") << "remove A X" << QStringList{"B"} << false;
    }

    void stepUpdates()
    {
        QFETCH(QString, operation);
        QFETCH(QStringList, keys);
        QFETCH(bool, sameA);

        QScopedPointer<ps_object_scenary_t> scene(makeScene(QStringLiteral("Night"), {"A", "B"}));
        scenary->update_scene(QStringLiteral("S1"), scene.data(), false);
        ps_object_scenary_t* stored = scenary->list(QStringLiteral("S1"));
        QPointer<ps_object_t> stepA = stored->getObjects().value("A");

        QScopedPointer<ps_object_t> step(makeStep(QStringLiteral("I9"), 7));
        if (operation == "add D")
            stored->update_object(QStringLiteral("D"), step.data(), true);
        else if (operation == "change A")
            stored->update_object(QStringLiteral("A"), step.data(), true);
        else if (operation == "null A")
            stored->update_object(QStringLiteral("A"), nullptr, true);
        else
            stored->update_remove_objects({"A", "X"}, true);

        QCOMPARE(stored->getObjects().keys(), keys);
        QCOMPARE(stored->getObjects().value("A") == stepA.data(), sameA);
        for (QString const& key : keys)
            QCOMPARE(stored->getObjects().value(key)->getTopic(), "scenary/objects_list/S1/objects_list/" + key);
        if (operation == "change A")
            QCOMPARE(stepA->getOrder(), 7);
        if (operation == "add D")
            QVERIFY(stored->getObjects().value("D") != step.data());

        drainEvents();
        QVERIFY(stepA.isNull() != sameA);
        // Steps are published as part of their scenario, once.
        QCOMPARE(engine->updated.size(), 1);
        QCOMPARE(engine->updated.first().value("topic").toString(), QStringLiteral("scenary/objects_list/S1"));
        QCOMPARE(engine->updated.first().value("payload").toObject().value("objects_list").toObject().keys(), keys);
    }

    void scenarioCompareIsDeepAndEqualityByPointer()
    {
        QScopedPointer<ps_object_scenary_t> scene(makeScene(QStringLiteral("Night"), {"A", "B"}));
        ps_object_scenary_t copy(*scene);
        QCOMPARE(copy.parent(), nullptr);
        QVERIFY(copy.getObjects().value("A") != scene->getObjects().value("A"));
        QVERIFY(copy.compare(scene.data()));
        QVERIFY(!(copy == *scene));
        QVERIFY(*scene == *scene);

        copy.objects(QStringLiteral("B"))->setValue(QStringLiteral("0"));
        QVERIFY(!copy.compare(scene.data()));
        copy.objects(QStringLiteral("B"))->setValue(QStringLiteral("1"));
        copy.update_smart_button_value(QStringLiteral("3"), false);
        QVERIFY(!copy.compare(scene.data()));
        QVERIFY(!copy.compare(nullptr));
    }

    void requestsBuildPacketsOnly_data()
    {
        QTest::addColumn<QString>("which");
        QTest::addColumn<QString>("topic");
        QTest::addColumn<QJsonValue>("payload");
        QString const scene = QStringLiteral("request/DB/persistent/scenary/objects_list/S1");
        QTest::newRow("name") << "name" << scene + "/name" << QJsonValue("Day");
        QTest::newRow("smart button value") << "smvalue" << scene + "/smvalue" << QJsonValue("4");
        QTest::newRow("execution") << "execution" << scene + "/execution" << QJsonValue(true);
        QTest::newRow("step removal") << "step null" << scene + "/objects_list/K" << QJsonValue(QJsonObject());
        QTest::newRow("scenary switch") << "scenary enabled" << "request/DB/persistent/scenary/enabled"
                                        << QJsonValue(false);
        QTest::newRow("rules switch") << "rules enabled" << "request/DB/persistent/rules/enabled"
                                      << QJsonValue(false);
        QTest::newRow("rule removal") << "rule null" << "request/DB/persistent/rules/objects_list/R1"
                                      << QJsonValue(QJsonObject());
    }

    void requestsBuildPacketsOnly()
    {
        QFETCH(QString, which);
        QFETCH(QString, topic);
        QFETCH(QJsonValue, payload);

        QScopedPointer<ps_object_scenary_t> mine(makeScene(QStringLiteral("Night"), {"A"}));
        scenary->update_scene(QStringLiteral("S1"), mine.data(), false);
        ps_object_scenary_t* scene = scenary->list(QStringLiteral("S1"));
        QJsonObject const before = scene->toJson();

        if (which == "name")
            scene->requestSetName(QStringLiteral("Day"));
        else if (which == "smvalue")
            scene->requestSetSmartButtonValue(QStringLiteral("4"));
        else if (which == "execution")
            scene->requestSetExecution(true);
        else if (which == "step null")
            scene->requestSetObject(QStringLiteral("K"), nullptr);
        else if (which == "scenary enabled")
            scenary->requestSetEnabled(false);
        else if (which == "rules enabled")
            rules->requestSetEnabled(false);
        else
            rules->requestSetRules(QStringLiteral("R1"), nullptr);

        drainEvents();
        QCOMPARE(engine->requests, (QList<QJsonObject>{{{"topic", topic}, {"payload", payload}}}));
        QCOMPARE(engine->updated.size(), 0);
        QCOMPARE(scene->toJson(), before);
        QVERIFY(scenary->getEnabled() && rules->getEnabled());
    }

    void switchPublishesOnItsOwnTopic()
    {
        scenary->update_enabled(false, true);
        rules->update_enabled(false, false);
        QVERIFY(!scenary->getEnabled());
        QVERIFY(!rules->getEnabled());
        drainEvents();
        QCOMPARE(engine->updated, (QList<QJsonObject>{{{"topic", "scenary/enabled"}, {"payload", false}}}));
    }

    void ruleUpdateMergesAndNullIsRefused()
    {
        QScopedPointer<ps_object_rules_t> rule(makeRule("@item[I1]", "", ""));
        rules->update_rule(QStringLiteral("R1"), rule.data(), false);
        ps_object_rules_t* stored = rules->getObjects().value("R1");

        rule->setThen(QStringLiteral("@scenary[S1]"));
        rules->update_rule(QStringLiteral("R1"), rule.data(), true);
        QCOMPARE(rules->getObjects().value("R1"), stored);
        QVERIFY(*stored == *rule);

        stored->update(nullptr);
        QCOMPARE(stored->getThen(), QStringLiteral("@scenary[S1]"));
        drainEvents();
        // The section publishes the rule once; the rule's own update stays silent.
        QCOMPARE(engine->updated.size(), 1);
        QCOMPARE(engine->updated.first().value("topic").toString(), QStringLiteral("rules/objects_list/R1"));
        QCOMPARE(engine->errors.size(), 1);
        QCOMPARE(engine->errors.first().second, QStringLiteral("Not permitted nullptr"));
        QCOMPARE(engine->errors.first().first,
                 (QJsonObject{{"topic", "rules/objects_list/R1"}, {"payload", QJsonValue::Null}}));
    }

    void getMatchFindsCaptures_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("empty id is a reference") << "if @item[] > 1" << ps_rules_t::pattern_item
                                                 << QStringList{"@item[]"};
        QTest::newRow("repeats are kept") << "@item[A1] + @item[A1]" << ps_rules_t::pattern_item
                                          << QStringList{"@item[A1]", "@item[A1]"};
        QTest::newRow("hyphen in id is no reference") << "@item[a-b]" << ps_rules_t::pattern_item << QStringList{};
        QTest::newRow("rule pattern ignores the plural word") << "@rules[R1] @rule[R2]" << ps_rules_t::pattern_rule
                                                              << QStringList{"@rule[R2]"};
        QTest::newRow("scenario reference") << "run @scenary[S1]" << ps_rules_t::pattern_scenary
                                            << QStringList{"@scenary[S1]"};
        QTest::newRow("no group gives whole matches") << "a1 b2 a3" << "a\\d" << QStringList{"a1", "a3"};
        QTest::newRow("group by group, then match by match") << "x1y2 x3y4" << "x(\\d)y(\\d)"
                                                             << QStringList{"1", "3", "2", "4"};
        QTest::newRow("empty captures are dropped") << "ab" << "(a)(z?)" << QStringList{"a"};
    }

    void getMatchFindsCaptures()
    {
        QFETCH(QString, text);
        QFETCH(QString, pattern);
        QFETCH(QStringList, expected);
        QCOMPARE(ps_rules_t::getMatch(text, pattern), expected);
    }

    void getMatchOfInvalidPatternLogsAndGivesNothing()
    {
        log_capture_t logs;
        QVERIFY(ps_rules_t::getMatch(QStringLiteral("@item[A]"), QStringLiteral("(@item[")).isEmpty());
        QVERIFY(logs.contains(QStringLiteral("Invalid regex pattern: (@item["), 2));
    }

    void getDependencyListsReferringRules_data()
    {
        QTest::addColumn<type_object_t>("type");
        QTest::addColumn<QString>("id");
        QTest::addColumn<QStringList>("when");
        QTest::addColumn<QStringList>("then");
        QTest::addColumn<QStringList>("otherwise");
        QTest::newRow("item named twice counts once") << type_object_t::item << "I1" << QStringList{"R1"}
                                                      << QStringList{"R2"} << QStringList{};
        QTest::newRow("id is matched whole") << type_object_t::item << "I10" << QStringList{} << QStringList{}
                                             << QStringList{"R2"};
        QTest::newRow("scenario in an action") << type_object_t::scenary << "S1" << QStringList{}
                                               << QStringList{"R1"} << QStringList{"R1"};
        QTest::newRow("rules are found by the plural word") << type_object_t::rules << "R1" << QStringList{}
                                                            << QStringList{"R3"} << QStringList{};
        QTest::newRow("unreferenced id") << type_object_t::thermo << "T1" << QStringList{} << QStringList{}
                                         << QStringList{};
    }

    void getDependencyListsReferringRules()
    {
        QFETCH(type_object_t, type);
        QFETCH(QString, id);
        QFETCH(QStringList, when);
        QFETCH(QStringList, then);
        QFETCH(QStringList, otherwise);

        QScopedPointer<ps_object_rules_t> r1(makeRule("@item[I1] == 1 && @item[I1] < 5", "@scenary[S1]", "@scenary[S1]"));
        QScopedPointer<ps_object_rules_t> r2(makeRule("@item[I2]", "@item[I1] = 0", "@item[I10] = 1"));
        // "@rule[R1]" is the section's own form; only "@rules[R1]" counts as a dependency.
        QScopedPointer<ps_object_rules_t> r3(makeRule("@rule[R1]", "@rules[R1]", "@thermo[T-1]"));
        rules->update_rule(QStringLiteral("R1"), r1.data(), false);
        rules->update_rule(QStringLiteral("R2"), r2.data(), false);
        rules->update_rule(QStringLiteral("R3"), r3.data(), false);

        QStringList foundWhen{"kept"}, foundThen, foundElse;
        rules->getDependency(type, id, foundWhen, foundThen, foundElse);
        QCOMPARE(foundWhen, QStringList{"kept"} + when);
        QCOMPARE(foundThen, then);
        QCOMPARE(foundElse, otherwise);
    }

    void sectionsSurviveJsonRoundTrip()
    {
        QCOMPARE(ps_scenary_t().toJson(), (QJsonObject{{"enabled", true}, {"objects_list", QJsonObject()}}));
        QCOMPARE(ps_rules_t().toJson(), (QJsonObject{{"enabled", true}, {"objects_list", QJsonObject()}}));

        QScopedPointer<ps_object_scenary_t> scene(makeScene(QStringLiteral("Night"), {"A", "B"}));
        scene->setSmartButtonValue(QStringLiteral("2"));
        scenary->update_scene(QStringLiteral("S1"), scene.data(), false);
        scenary->setEnabled(false);
        QScopedPointer<ps_object_rules_t> rule(makeRule("@item[I1]", "@scenary[S1]", "x"));
        rules->update_rule(QStringLiteral("R1"), rule.data(), false);

        QJsonObject const sceneJson = scenary->toJson();
        QCOMPARE(sceneJson["objects_list"]["S1"].toObject().keys(),
                 (QStringList{"enabled", "name", "objects_list", "permission", "smvalue"}));
        QJsonObject const ruleJson = rules->toJson();
        QCOMPARE(ruleJson["objects_list"]["R1"].toObject().keys(),
                 (QStringList{"else_", "enabled", "name", "permission", "then_", "type", "when_"}));
        QCOMPARE(ruleJson["objects_list"]["R1"]["type"].toString(), type_rules_t::onchange.ToString());

        QScopedPointer<ps_scenary_t> sceneBack(serializer()->deserialize<ps_scenary_t*>(sceneJson));
        QScopedPointer<ps_rules_t> rulesBack(serializer()->deserialize<ps_rules_t*>(ruleJson));
        QCOMPARE(sceneBack->toJson(), sceneJson);
        QCOMPARE(rulesBack->toJson(), ruleJson);
        QVERIFY(!sceneBack->getEnabled());
        ps_object_scenary_t* sceneRead = sceneBack->getObjects().value("S1");
        QVERIFY(sceneRead->compare(scene.data()));
        QCOMPARE(sceneRead->parent(), nullptr);
        QCOMPARE(sceneRead->getObjects().value("A")->parent(), nullptr);
        QVERIFY(*rulesBack->getObjects().value("R1") == *rule);

        // Wiring gives a freshly read tree its topics, down to the steps.
        sceneBack->initRequestSignals(engine, true);
        QCOMPARE(sceneRead->getObjects().value("B")->getTopic(), QStringLiteral("scenary/objects_list/S1/objects_list/B"));
    }
};

QTEST_GUILESS_MAIN(tst_ps_scenary_rules)
#include "tst_ps_scenary_rules.moc"
