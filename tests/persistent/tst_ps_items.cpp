#include <QJsonArray>
#include <QPointer>
#include <QSignalSpy>
#include <QtTest>

#include "database/persistent/dbs/ps_items_t.h"
#include "database/persistent/objects/ps_object_t.h"
#include "database/utility/utility.h"
#include "platform/qjsonserializer/qjsonserializer.h"
#include "support/model_test.h"
#include "support/packet_recorder.h"

using database::persistent::ps_items_map;
using database::persistent::dbs::ps_items_t;
using database::persistent::objects::ps_object_item_t;
using database::persistent::objects::ps_object_t;

namespace {


ps_object_item_t* makeItem(QString const& name, QObject* parent = nullptr)
{
    return new ps_object_item_t(QStringLiteral("knx"), name, QStringLiteral("desc"), true, QStringLiteral("1/1/1"),
                                QStringLiteral("1/1/2"), QStringLiteral("1/1/3"), QStringLiteral("dtp_1"),
                                QStringLiteral("fmt"), QStringLiteral("int"), false,
                                QVariantMap{{QStringLiteral("E1"), 1}}, 5, parent);
}


} // namespace

class tst_ps_items : public QObject
{
    Q_OBJECT

private:
    ps_items_t* section = nullptr;
    packet_recorder_t* engine = nullptr;

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(database::utility::getInstance());
    }

    void init()
    {
        section = new ps_items_t;
        engine = new packet_recorder_t;
        section->initRequestSignals(engine, true);
    }

    void cleanup()
    {
        delete section;
        delete engine;
        drainEvents();
    }

    void listOfUnknownIdGivesTemporaryDefault()
    {
        ps_object_item_t* temporary = section->list(QStringLiteral("X"));
        QVERIFY(temporary);
        QVERIFY(temporary->getEnabled());
        QCOMPARE(temporary->getTopic(), QStringLiteral("items/objects_list/X"));
        QVERIFY(section->getObjects().isEmpty());

        QPointer<ps_object_item_t> guard(temporary);
        drainEvents();
        QCOMPARE(engine->notExist, (QList<QJsonObject>{QJsonObject{{"topic", "items/objects_list/X"}}}));
        QVERIFY(guard.isNull());
    }

    void updateWithNewIdStoresCopyAndWiresIt()
    {
        QScopedPointer<ps_object_item_t> mine(makeItem(QStringLiteral("Hall")));
        section->update_items(QStringLiteral("K1"), mine.data(), false);
        ps_object_item_t* stored = section->getObjects().value(QStringLiteral("K1"));
        QVERIFY(stored);
        QVERIFY(stored != mine.data());
        QVERIFY(stored->compare(mine.data()));
        QCOMPARE(stored->getTopic(), QStringLiteral("items/objects_list/K1"));

        mine->setName(QStringLiteral("changed later"));
        QCOMPARE(stored->getName(), QStringLiteral("Hall"));

        stored->send_update();
        drainEvents();
        QCOMPARE(engine->updated.size(), 1);
        QCOMPARE(engine->updated.first().value("topic").toString(), QStringLiteral("items/objects_list/K1"));
        QCOMPARE(engine->updated.first().value("payload").toObject().value("name").toString(), QStringLiteral("Hall"));
    }

    void updateWithKnownIdKeepsObjectAndPublishes()
    {
        QScopedPointer<ps_object_item_t> first(makeItem(QStringLiteral("A")));
        section->update_items(QStringLiteral("K1"), first.data(), false);
        ps_object_item_t* stored = section->getObjects().value(QStringLiteral("K1"));

        QScopedPointer<ps_object_item_t> second(makeItem(QStringLiteral("B")));
        section->update_items(QStringLiteral("K1"), second.data(), true);
        QCOMPARE(section->getObjects().value(QStringLiteral("K1")), stored);
        QCOMPARE(stored->getName(), QStringLiteral("B"));
        QCOMPARE(second->getTopic(), QStringLiteral("items/objects_list/K1"));

        drainEvents();
        QCOMPARE(engine->updated.size(), 1);
        QCOMPARE(engine->updated.first().value("payload").toObject(), stored->toJson());
    }

    void removalAndMissingIds_data()
    {
        QTest::addColumn<QString>("id");
        QTest::addColumn<bool>("notify");
        QTest::addColumn<int>("remaining");
        QTest::addColumn<int>("published");
        QTest::newRow("null removes known id") << "K1" << true << 0 << 1;
        QTest::newRow("null on unknown id still publishes") << "X" << true << 1 << 1;
        QTest::newRow("without notify nothing published") << "K1" << false << 0 << 0;
        QTest::newRow("empty id does nothing at all") << "" << true << 1 << 0;
    }

    void removalAndMissingIds()
    {
        QFETCH(QString, id);
        QFETCH(bool, notify);
        QFETCH(int, remaining);
        QFETCH(int, published);

        QScopedPointer<ps_object_item_t> item(makeItem(QStringLiteral("A")));
        section->update_items(QStringLiteral("K1"), item.data(), false);
        QPointer<ps_object_item_t> stored = section->getObjects().value(QStringLiteral("K1"));

        section->update_items(id, nullptr, notify);
        QCOMPARE(section->getObjects().size(), remaining);
        drainEvents();
        QCOMPARE(engine->updated.size(), published);
        if (published) {
            QJsonObject const expected{{"topic", "items/objects_list/" + id}, {"payload", QJsonValue::Null}};
            QCOMPARE(engine->updated.first(), expected);
        }
        QCOMPARE(stored.isNull(), remaining == 0);
    }

    void wholeListIsReplacedByCopies()
    {
        QScopedPointer<ps_object_item_t> old(makeItem(QStringLiteral("old")));
        section->update_items(QStringLiteral("K0"), old.data(), false);
        QPointer<ps_object_item_t> oldStored = section->getObjects().value(QStringLiteral("K0"));

        ps_items_map replacement{{QStringLiteral("K1"), makeItem(QStringLiteral("one"))},
                                 {QStringLiteral("K2"), makeItem(QStringLiteral("two"))}};
        section->update_items(replacement, true);
        QCOMPARE(section->getObjects().keys(), (QStringList{"K1", "K2"}));
        QVERIFY(oldStored.isNull());
        QVERIFY(section->getObjects().value("K1") != replacement.value("K1"));
        QCOMPARE(section->getObjects().value("K2")->getTopic(), QStringLiteral("items/objects_list/K2"));

        drainEvents();
        QCOMPARE(engine->updated.size(), 1);
        QCOMPARE(engine->updated.first().value("topic").toString(), QStringLiteral("items/objects_list"));
        QCOMPARE(engine->updated.first().value("payload").toObject().keys(), (QStringList{"K1", "K2"}));
        qDeleteAll(replacement);

        // Replacing with its own map must not read deleted objects.
        section->update_items(section->getObjects(), false);
        QCOMPARE(section->getObjects().value("K1")->getName(), QStringLiteral("one"));
    }

    void requestsChangeNothing()
    {
        QSignalSpy requests(section, qOverload<QJsonObject>(&ps_items_t::onRequest));
        QVERIFY(requests.isValid());
        QCOMPARE(requests.count(), 0);

        section->requestSetItem(QStringLiteral("K1"), nullptr);
        QScopedPointer<ps_object_item_t> item(makeItem(QStringLiteral("A")));
        section->requestSetItem(QStringLiteral("K2"), item.data());
        ps_items_map all{{QStringLiteral("K3"), item.data()}};
        section->requestSetItems(all);

        QCOMPARE(requests.count(), 3);
        QCOMPARE(requests.takeFirst().at(0).toJsonObject(),
                 (QJsonObject{{"topic", "request/DB/persistent/items/objects_list/K1"}, {"payload", QJsonObject()}}));
        QJsonObject const one = requests.takeFirst().at(0).toJsonObject();
        QCOMPARE(one.value("topic").toString(), QStringLiteral("request/DB/persistent/items/objects_list/K2"));
        QCOMPARE(one.value("payload").toObject().value("name").toString(), QStringLiteral("A"));
        QJsonObject const list = requests.takeFirst().at(0).toJsonObject();
        QCOMPARE(list.value("topic").toString(), QStringLiteral("request/DB/persistent/items/objects_list"));
        QVERIFY(list.value("payload").toObject().contains("K3"));
        QCOMPARE(item->getTopic(), QStringLiteral("items/objects_list/K3"));
        QVERIFY(section->getObjects().isEmpty());

        QSignalSpy itemRequests(item.data(), qOverload<QJsonObject>(&ps_object_item_t::onRequest));
        QVERIFY(itemRequests.isValid());
        item->requestSetValue(QStringLiteral("42"));
        QCOMPARE(itemRequests.count(), 1);
        QCOMPARE(itemRequests.takeFirst().at(0).toJsonObject(),
                 (QJsonObject{{"topic", "request/DB/persistent/items/objects_list/K3/value"}, {"payload", "42"}}));
    }

    void flagsMatchAnyBit_data()
    {
        QTest::addColumn<int>("flags");
        QTest::addColumn<int>("asked");
        QTest::addColumn<bool>("set");
        QTest::newRow("single bit set") << 4 << 4 << true;
        QTest::newRow("single bit clear") << 4 << 8 << false;
        QTest::newRow("any of a combination") << 2 << (1 | 2) << true;
        QTest::newRow("none of a combination") << 16 << (1 | 2) << false;
        QTest::newRow("zero asks nothing") << -1 << 0 << false;
        QTest::newRow("sign bit is not greater than zero") << int(0x80000000) << int(0x80000000) << false;
    }

    void flagsMatchAnyBit()
    {
        QFETCH(int, flags);
        QFETCH(int, asked);
        QFETCH(bool, set);
        ps_object_item_t item;
        item.setFlags(flags);
        QCOMPARE(item.getFlag(asked), set);
    }

    void elementLinksStayOutOfJsonButAreCopied()
    {
        QScopedPointer<ps_object_item_t> item(makeItem(QStringLiteral("A")));
        QJsonObject const json = item->toJson();
        QCOMPARE(json.keys(), (QStringList{"command", "description", "enabled", "feedback", "flags", "id_driver",
                                           "interpreter", "name", "status", "tracking", "type", "typeformat"}));
        ps_object_item_t target;
        target.update(item.data(), false);
        QCOMPARE(target.getIdElement(), item->getIdElement());
        QVERIFY(target.compare(item.data()));
        ps_object_item_t copy(*item);
        QCOMPARE(copy.getIdElement(), item->getIdElement());
    }

    void updateWithNullIsRefused()
    {
        ps_object_item_t item(QStringLiteral("items/objects_list/K"), nullptr);
        QSignalSpy errors(&item, &ps_object_item_t::onObjectError);
        QVERIFY(errors.isValid());
        QCOMPARE(errors.count(), 0);
        item.update(nullptr, true);
        QCOMPARE(errors.count(), 1);
        QList<QVariant> const arguments = errors.takeFirst();
        QCOMPARE(arguments.at(0).toJsonObject(),
                 (QJsonObject{{"topic", "items/objects_list/K"}, {"payload", QJsonValue::Null}}));
        QCOMPARE(arguments.at(1).toString(), QStringLiteral("Not permitted nullptr"));
    }

    void compareCoversEveryProperty_data()
    {
        QTest::addColumn<QByteArray>("property");
        QTest::addColumn<QVariant>("other");
        QTest::newRow("id_driver") << QByteArray("id_driver") << QVariant("baos");
        QTest::newRow("name case") << QByteArray("name") << QVariant("hall");
        QTest::newRow("enabled") << QByteArray("enabled") << QVariant(false);
        QTest::newRow("feedback") << QByteArray("feedback") << QVariant("2/2/2");
        QTest::newRow("tracking") << QByteArray("tracking") << QVariant(true);
        QTest::newRow("flags") << QByteArray("flags") << QVariant(6);
        QTest::newRow("id_element") << QByteArray("id_element") << QVariant(QVariantMap{{"E2", 1}});
    }

    void compareCoversEveryProperty()
    {
        QFETCH(QByteArray, property);
        QFETCH(QVariant, other);
        QScopedPointer<ps_object_item_t> a(makeItem(QStringLiteral("Hall")));
        QScopedPointer<ps_object_item_t> b(makeItem(QStringLiteral("Hall")));
        b->setTopic(QStringLiteral("another/topic"));
        QVERIFY(a->compare(b.data()));
        QVERIFY(b->setProperty(property.constData(), other));
        QVERIFY(!a->compare(b.data()));
    }

    void sectionSurvivesJsonRoundTrip()
    {
        QScopedPointer<ps_object_item_t> item(makeItem(QStringLiteral("Hall")));
        section->update_items(QStringLiteral("K1"), item.data(), false);
        section->update_items(QStringLiteral("K2"), item.data(), false);
        section->setEnabled(false);

        QJsonObject const json = section->toJson();
        QCOMPARE(json.keys(), (QStringList{"enabled", "objects_list"}));
        QScopedPointer<ps_items_t> back(serializer()->deserialize<ps_items_t*>(json));
        QVERIFY(back);
        QCOMPARE(back->toJson(), json);
        QVERIFY(!back->getEnabled());
        QCOMPARE(back->getObjects().value("K2")->toJson(), item->toJson()); // id_element stays behind
        QCOMPARE(back->getObjects().value("K2")->parent(), nullptr);
    }

    void wrongJsonShapeThrows_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::newRow("list is a string") << QByteArray(R"({"objects_list":"x"})");
        QTest::newRow("list is an array") << QByteArray(R"({"objects_list":[]})");
        QTest::newRow("item is a number") << QByteArray(R"({"objects_list":{"K":5}})");
        QTest::newRow("flags is text") << QByteArray(R"({"objects_list":{"K":{"flags":"many"}}})");
    }

    void wrongJsonShapeThrows()
    {
        QFETCH(QByteArray, json);
        QJsonObject const object = QJsonDocument::fromJson(json).object();
        QVERIFY_THROWS_EXCEPTION(QJsonDeserializationException, serializer()->deserialize<ps_items_t*>(object));
    }

    void copiesAreDeepAndComparedByPointer()
    {
        QScopedPointer<ps_object_item_t> item(makeItem(QStringLiteral("A")));
        section->update_items(QStringLiteral("K1"), item.data(), false);
        ps_items_t copy(*section);
        QCOMPARE(copy.parent(), nullptr);
        QVERIFY(copy.getObjects().value("K1") != section->getObjects().value("K1"));
        QVERIFY(copy.getObjects().value("K1")->compare(section->getObjects().value("K1")));
        QVERIFY(!(copy == *section));
        QVERIFY(*section == *section);

        copy.list(QStringLiteral("K1"))->setName(QStringLiteral("B"));
        QCOMPARE(section->getObjects().value("K1")->getName(), QStringLiteral("A"));
    }

    void referenceObjectCopiesAndCompares()
    {
        ps_object_t step(true, 2, 30, database::definition::type_object_t::scenary, QStringLiteral("S1"),
                         QStringLiteral("1"), QStringLiteral("@x"), nullptr);
        QCOMPARE(step.getType(), QStringLiteral("@scenary"));
        QCOMPARE(step.toJson().keys(), (QStringList{"args", "delay", "enabled", "id", "order", "type", "value"}));
        ps_object_t copy(step);
        QVERIFY(copy == step);
        ps_object_t other;
        QVERIFY(!(other == step));
        other.update(&step, false);
        QVERIFY(other == step);
        other.setDelay(31);
        QVERIFY(!other.compare(&step));
    }
};

QTEST_GUILESS_MAIN(tst_ps_items)
#include "tst_ps_items.moc"
