#include <QPointer>
#include <QSignalSpy>
#include <QtTest>

#include "database/definition/type_object_t.h"
#include "database/realtime/dbs/rt_items_t.h"
#include "database/realtime/objects/rt_object_t.h"
#include "support/log_capture.h"
#include "support/model_test.h"
#include "support/packet_recorder.h"

using database::definition::type_object_t;
using database::realtime::rt_items_map;
using database::realtime::dbs::rt_items_t;
using database::realtime::objects::rt_object_item_t;
using database::realtime::objects::rt_object_t;

class tst_rt_items : public QObject
{
    Q_OBJECT

private:
    rt_items_t* section = nullptr;
    packet_recorder_t* engine = nullptr;

private Q_SLOTS:
    void initTestCase() { QVERIFY(database::utility::getInstance()); }

    void init()
    {
        section = new rt_items_t;
        engine = new packet_recorder_t;
        section->initRequestSignals(engine, true);
        rt_object_item_t first(QStringLiteral("fb0"), QStringLiteral("v0"), nullptr);
        section->update_item(QStringLiteral("K1"), &first, false);
    }

    void cleanup()
    {
        delete section;
        delete engine;
        drainEvents();
    }

    void listOfUnknownKeyLosesChangesAndReportsEveryCall()
    {
        log_capture_t log;
        rt_object_item_t* temporary = section->list(QStringLiteral("X"));
        QVERIFY(temporary);
        QCOMPARE(temporary->getTopic(), QStringLiteral("items/objects_list/X"));
        temporary->setValue(QStringLiteral("lost"));
        QPointer<rt_object_item_t> guard(temporary);
        section->list(QStringLiteral("X"));

        QCOMPARE(section->getObjects().keys(), QStringList{"K1"});
        QCOMPARE(log.matching(QStringLiteral("New key create app : X"), ::utility::logs::trace).size(), 2);
        QCOMPARE(log.matching(QStringLiteral("New key create app : X")).first().source, QStringLiteral("list"));
        drainEvents();
        QVERIFY(guard.isNull());
        QJsonObject const expected{{"topic", "items/objects_list/X"}};
        QCOMPARE(engine->notExist, (QList<QJsonObject>{expected, expected}));

        QCOMPARE(section->list(QStringLiteral("K1")), section->getObjects().value("K1"));
        drainEvents();
        QCOMPARE(engine->notExist.size(), 2);
    }

    void updateItemBranches_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<bool>("withObject");
        QTest::addColumn<bool>("notify");
        QTest::addColumn<QStringList>("keys");
        QTest::addColumn<int>("published");
        QTest::addColumn<QJsonValue>("payload");

        QJsonValue const incoming = QJsonObject{{"feedback", "fb1"}, {"value", "v1"}};
        QTest::newRow("unknown key stores a copy") << "K2" << true << true << QStringList{"K1", "K2"} << 1 << incoming;
        QTest::newRow("known key takes the content in place") << "K1" << true << true << QStringList{"K1"} << 1 << incoming;
        QTest::newRow("null removes a known key and publishes null")
            << "K1" << false << true << QStringList{} << 1 << QJsonValue();
        QTest::newRow("null on an unknown key still publishes null")
            << "X" << false << true << QStringList{"K1"} << 1 << QJsonValue();
        QTest::newRow("empty key is a key like any other") << "" << true << true << QStringList{"", "K1"} << 1 << incoming;
        QTest::newRow("without notify nothing is published") << "K2" << true << false << QStringList{"K1", "K2"} << 0
                                                             << QJsonValue();
    }

    void updateItemBranches()
    {
        QFETCH(QString, key);
        QFETCH(bool, withObject);
        QFETCH(bool, notify);
        QFETCH(QStringList, keys);
        QFETCH(int, published);
        QFETCH(QJsonValue, payload);

        QPointer<rt_object_item_t> const before = section->getObjects().value("K1");
        QScopedPointer<rt_object_item_t> object(
            withObject ? new rt_object_item_t(QStringLiteral("fb1"), QStringLiteral("v1"), nullptr) : nullptr);
        section->update_item(key, object.data(), notify);

        QCOMPARE(section->getObjects().keys(), keys);
        if (withObject) {
            rt_object_item_t* stored = section->getObjects().value(key);
            QVERIFY(stored != object.data());
            QVERIFY(*stored == *object);
            QCOMPARE(stored->getTopic(), "items/objects_list/" + key);
            QCOMPARE(object->getTopic(), "items/objects_list/" + key);
            if (key == QLatin1String("K1"))
                QCOMPARE(stored, before.data());
        }
        drainEvents();
        QCOMPARE(before.isNull(), !keys.contains("K1"));
        QCOMPARE(engine->updated.size(), published);
        if (published) {
            QJsonObject const expected{{"topic", "items/objects_list/" + key}, {"payload", payload}};
            QCOMPARE(engine->updated.first(), expected);
        }
    }

    void storedItemsReachTheEngine()
    {
        rt_object_item_t item(QStringLiteral("fb0"), QString(), nullptr);
        section->update_item(QStringLiteral("K2"), &item, false);
        section->getObjects().value("K2")->update_value(QStringLiteral("7"), true);
        QTRY_COMPARE(engine->updated.size(), 1);
        QCOMPARE(engine->updated.first(),
                 (QJsonObject{{"topic", "items/objects_list/K2"},
                              {"payload", QJsonObject{{"feedback", "fb0"}, {"value", "7"}}}}));
    }

    void wholeMapIsReplacedByCopies()
    {
        QPointer<rt_object_item_t> old = section->getObjects().value("K1");
        rt_object_item_t one(QStringLiteral("a"), QStringLiteral("1"), nullptr);
        rt_object_item_t two(QStringLiteral("b"), QStringLiteral("2"), nullptr);
        section->update_item(rt_items_map{{"K2", &one}, {"K3", &two}}, true);

        QCOMPARE(section->getObjects().keys(), (QStringList{"K2", "K3"}));
        QVERIFY(old.isNull());
        QVERIFY(section->getObjects().value("K2") != &one);
        QCOMPARE(section->getObjects().value("K3")->getTopic(), QStringLiteral("items/objects_list/K3"));
        drainEvents();
        QCOMPARE(engine->updated.size(), 1);
        QCOMPARE(engine->updated.first().value("topic").toString(), QStringLiteral("items/objects_list"));
        QCOMPARE(engine->updated.first().value("payload").toObject(),
                 (QJsonObject{{"K2", one.toJson()}, {"K3", two.toJson()}}));

        // The copies are wired like the rest.
        section->getObjects().value("K2")->update_feedback(QStringLiteral("c"), true);
        QTRY_COMPARE(engine->updated.size(), 2);

        // Its own map as the replacement must not read deleted objects.
        section->update_item(section->getObjects(), false);
        QCOMPARE(section->getObjects().value("K3")->getValue(), QStringLiteral("2"));
    }

    void replacementWithoutReceiverStillGivesTopics()
    {
        rt_items_t unwired;
        rt_object_item_t item(QStringLiteral("elsewhere"), nullptr);
        unwired.update_item(rt_items_map{{"K9", &item}}, false);
        QCOMPARE(unwired.getObjects().value("K9")->getTopic(), QStringLiteral("items/objects_list/K9"));
    }

    void fieldUpdatesPublishEvenWithTheHeldValue_data()
    {
        QTest::addColumn<bool>("value");
        QTest::newRow("value") << true;
        QTest::newRow("feedback") << false;
    }

    void fieldUpdatesPublishEvenWithTheHeldValue()
    {
        QFETCH(bool, value);
        rt_object_item_t item(QStringLiteral("items/objects_list/K"), nullptr);
        QSignalSpy updated(&item, &rt_object_item_t::onUpdated);
        QVERIFY(updated.isValid());
        QCOMPARE(updated.count(), 0);
        for (int i = 0; i < 2; ++i) {
            if (value)
                item.update_value(QStringLiteral("1"), true);
            else
                item.update_feedback(QStringLiteral("1"), true);
        }
        QCOMPARE(updated.count(), 2);
        QCOMPARE(updated.at(1).at(0).toJsonObject(), updated.at(0).at(0).toJsonObject());
        QCOMPARE(updated.at(0).at(0).toJsonObject().value("topic").toString(), QStringLiteral("items/objects_list/K"));
        item.update_value(QStringLiteral("2"), false);
        QCOMPARE(updated.count(), 2);
    }

    void sectionSurvivesJsonRoundTrip()
    {
        section->setUpdated(QStringLiteral("2024-05-01T10:00:00"));
        QJsonObject const json = section->toJson();
        QCOMPARE(json.keys(), (QStringList{"objects_list", "updated"}));
        QScopedPointer<rt_items_t> back(serializer()->deserialize<rt_items_t*>(json));
        QVERIFY(back);
        QCOMPARE(back->toJson(), json);
        QCOMPARE(back->getObjects().value("K1")->parent(), nullptr);
    }

    void copiesAreDeepAndComparedByPointer()
    {
        rt_items_t copy(*section);
        QCOMPARE(copy.parent(), nullptr);
        QVERIFY(copy.getObjects().value("K1") != section->getObjects().value("K1"));
        QVERIFY(*copy.getObjects().value("K1") == *section->getObjects().value("K1"));
        QVERIFY(!(copy == *section));
        QVERIFY(*section == *section);

        copy.list(QStringLiteral("K1"))->setValue(QStringLiteral("changed"));
        QCOMPARE(section->getObjects().value("K1")->getValue(), QStringLiteral("v0"));
        // A copy has no receiver: its objects stay silent.
        copy.getObjects().value("K1")->send_update();
        drainEvents();
        QCOMPARE(engine->total(), 0);
    }

    void stepComparesAllSixFields_data()
    {
        QTest::addColumn<QByteArray>("property");
        QTest::addColumn<QVariant>("other");
        QTest::newRow("enabled") << QByteArray("enabled") << QVariant(false);
        QTest::newRow("order") << QByteArray("order") << QVariant(3);
        QTest::newRow("delay") << QByteArray("delay") << QVariant(31);
        QTest::newRow("type") << QByteArray("type") << QVariant(type_object_t::item.ToString());
        QTest::newRow("id") << QByteArray("id") << QVariant("S2");
        QTest::newRow("value") << QByteArray("value") << QVariant("0");
    }

    void stepComparesAllSixFields()
    {
        QFETCH(QByteArray, property);
        QFETCH(QVariant, other);
        rt_object_t const step(true, 2, 30, type_object_t::scenary, QStringLiteral("S1"), QStringLiteral("1"), nullptr);
        QCOMPARE(step.getType(), type_object_t::scenary.ToString());
        rt_object_t copy(step);
        copy.setTopic(QStringLiteral("another/topic"));
        QVERIFY(copy == step);
        QVERIFY(copy.setProperty(property.constData(), other));
        QVERIFY(!(copy == step));
        QVERIFY(!(rt_object_t() == step));
    }
};

QTEST_GUILESS_MAIN(tst_rt_items)
#include "tst_rt_items.moc"
