#include <QJsonArray>
#include <QMetaProperty>
#include <QPointer>
#include <QtTest>

#include <functional>

#include "database/persistent/dbs/ps_elements_t.h"
#include "database/persistent/objects/elements/psoe_3state.h"
#include "database/persistent/objects/elements/psoe_cmdbtn.h"
#include "database/persistent/objects/elements/psoe_customslider.h"
#include "database/persistent/objects/elements/psoe_dimmer.h"
#include "database/persistent/objects/elements/psoe_music.h"
#include "database/persistent/objects/elements/psoe_onoff.h"
#include "database/persistent/objects/elements/psoe_placeholder.h"
#include "database/persistent/objects/elements/psoe_pres_sim.h"
#include "database/persistent/objects/elements/psoe_raffstore.h"
#include "database/persistent/objects/elements/psoe_rgb.h"
#include "database/persistent/objects/elements/psoe_room.h"
#include "database/persistent/objects/elements/psoe_scenario.h"
#include "database/persistent/objects/elements/psoe_schedulers.h"
#include "database/persistent/objects/elements/psoe_shutter.h"
#include "database/persistent/objects/elements/psoe_shutterpercent.h"
#include "database/persistent/objects/elements/psoe_thermo_logic.h"
#include "database/persistent/objects/elements/psoe_thermostat.h"
#include "database/persistent/objects/elements/psoe_tunablewhite.h"
#include "database/persistent/objects/elements/psoe_weather.h"
#include "database/persistent/objects/ps_object_desktop_t.h"
#include "database/utility/utility.h"
#include "platform/qjsonserializer/qjsonserializer.h"
#include "support/model_test.h"
#include "support/log_capture.h"
#include "support/packet_recorder.h"

using namespace database::persistent::objects;
using database::definition::type_object_t;
using database::persistent::map_stringlist;
using database::persistent::ps_elements_map;
using database::persistent::ps_preset_map;
using database::persistent::dbs::ps_elements_t;

namespace {

using factory_t = std::function<ps_object_element_t*()>;

template <class T> factory_t make()
{
    return [] { return new T; };
}

// An element of the page type: no class of the family has it.
class test_page_t : public ps_object_element_t
{
public:
    int getTypeIndex() const override { return ELEMENT_TYPE_PAGE; }
};



QStringList topicsOf(QList<QJsonObject> const& packets)
{
    QStringList topics;
    for (QJsonObject const& packet : packets)
        topics.append(packet.value("topic").toString());
    return topics;
}

psoe_room* room(QStringList const& pages)
{
    auto* created = new psoe_room;
    created->setRooms(pages);
    return created;
}

psoe_onoff* onoff(QStringList const& rooms)
{
    auto* created = new psoe_onoff;
    created->setRooms(rooms);
    return created;
}

// Every stored property of the concrete class gets a value unlike its default.
void fillOwnProperties(QObject* object)
{
    QMetaObject const* meta = object->metaObject();
    for (int i = ps_object_element_t::staticMetaObject.propertyCount(); i < meta->propertyCount(); ++i) {
        QMetaProperty const property = meta->property(i);
        if (!property.isStored())
            continue;
        switch (property.metaType().id()) {
        case QMetaType::QString:
            property.write(object, QStringLiteral("text"));
            break;
        case QMetaType::Int:
            property.write(object, 7);
            break;
        case QMetaType::Double:
            property.write(object, 2.5);
            break;
        case QMetaType::QStringList:
            property.write(object, QStringList { "a", "b" });
            break;
        default:
            break;
        }
    }
}

} // namespace

class tst_ps_elements : public QObject
{
    Q_OBJECT

private:
    ps_elements_t* section = nullptr;
    packet_recorder_t* engine = nullptr;

    psoe_room* storedRoom(QString const& id) { return qobject_cast<psoe_room*>(section->getObjects().value(id)); }

    /// R1 on page P1 with E1; E2 in R1 and R2; R2 on P1 and P2.
    void buildHouse()
    {
        section->update_with_dependency("R1", room({ "P1" }));
        section->update_with_dependency("R2", room({ "P1", "P2" }));
        section->update_with_dependency("E1", onoff({ "R1" }));
        section->update_with_dependency("E2", onoff({ "R1", "R2" }));
        drainEvents();
        engine->clear();
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(database::utility::getInstance()); }

    void init()
    {
        section = new ps_elements_t;
        engine = new packet_recorder_t;
        section->initRequestSignals(engine, true);
    }

    void cleanup()
    {
        delete section;
        delete engine;
        drainEvents();
    }

    void defaultSectionSerializesThreeEmptyKeys()
    {
        QJsonObject const expected { { "objects_list", QJsonObject() },
                                     { "page_stack", QJsonObject() },
                                     { "options", QJsonObject() } };
        QCOMPARE(section->toJson(), expected);
    }

    void addedElementsAreLinkedBothWays()
    {
        buildHouse();
        QCOMPARE(section->getPage_stack(), (map_stringlist { { "P1", { "R1", "R2" } }, { "P2", { "R2" } } }));
        QCOMPARE(storedRoom("R1")->getElement_list(), (QStringList { "E1", "E2" }));
        QCOMPARE(storedRoom("R2")->getElement_list(), (QStringList { "E2" }));
        QCOMPARE(section->getObjects().value("E2")->getId(), QStringLiteral("E2"));
        QCOMPARE(section->getObjects().value("E2")->getTopic(), QStringLiteral("elements/objects_list/E2"));
    }

    void removingLastRoomRemovesElement()
    {
        buildHouse();
        QPointer<ps_object_element_t> e1 = section->getObjects().value("E1");
        section->update_with_dependency("R1", nullptr);

        QCOMPARE(section->getObjects().keys(), (QStringList { "E2", "R2" }));
        QCOMPARE(section->getObjects().value("E2")->getRooms(), (QStringList { "R2" }));
        QCOMPARE(section->getPage_stack(), (map_stringlist { { "P1", { "R2" } }, { "P2", { "R2" } } }));
        drainEvents();
        QVERIFY(e1.isNull());
        QCOMPARE(topicsOf(engine->updated),
                 (QStringList { "elements/objects_list/E1", "elements/objects_list/E2", "elements/page_stack",
                                "elements/objects_list/R1" }));
        QVERIFY(engine->updated.first().value("payload").isNull());
    }

    void removingElementTakesItOutOfItsRooms()
    {
        buildHouse();
        section->update_with_dependency("E2", nullptr);
        QCOMPARE(storedRoom("R1")->getElement_list(), (QStringList { "E1" }));
        QVERIFY(storedRoom("R2")->getElement_list().isEmpty());
        drainEvents();
        QCOMPARE(topicsOf(engine->updated),
                 (QStringList { "elements/objects_list/R1", "elements/objects_list/R2", "elements/objects_list/E2" }));
    }

    void pageIdEntersOnlyThePageStackOnce()
    {
        QPointer<test_page_t> first = new test_page_t;
        QPointer<test_page_t> second = new test_page_t;
        section->update_with_dependency("P9", first);
        section->update_with_dependency("P9", second);
        QVERIFY(section->getObjects().isEmpty());
        QCOMPARE(section->getPage_stack(), (map_stringlist{{"P9", {}}}));
        drainEvents();
        QVERIFY(first.isNull() && second.isNull());
        QCOMPARE(topicsOf(engine->updated), (QStringList{"elements/page_stack"}));
        QCOMPARE(engine->updated.first().value("payload").toObject(), (QJsonObject{{"P9", QJsonArray()}}));
    }

    void storedElementLosesItsParent()
    {
        QObject holder;
        auto* element = new psoe_dimmer(&holder);
        section->update_with_dependency("D", element);
        QCOMPARE(element->parent(), nullptr);
        QCOMPARE(section->getObjects().value("D"), element);
    }

    void blankRoomIdIsSkippedWithItsLogLine()
    {
        section->update_with_dependency("R1", room({}));
        log_capture_t logs;
        section->update_with_dependency("E1", onoff({ "  ", "R1" }));
        QVERIFY(logs.contains("Cannot add element E1 in the room because idroom is empty, the rooms are:   ; R1", 2));
        QCOMPARE(storedRoom("R1")->getElement_list(), (QStringList { "E1" }));
    }

    void unknownRoomIsNotCreated()
    {
        section->update_with_dependency("E1", onoff({ "R404" }));
        QCOMPARE(section->getObjects().keys(), (QStringList { "E1" }));
        drainEvents();
        // The room is announced, with nothing in it, before the element.
        QCOMPARE(topicsOf(engine->updated), (QStringList { "elements/objects_list/R404", "elements/objects_list/E1" }));
        QVERIFY(engine->updated.first().value("payload").isNull());
    }

    void replacingElementPublishesOnceAndTakesNewRooms()
    {
        buildHouse();
        psoe_onoff* replacement = onoff({ "R2" });
        replacement->setName("new");
        section->update_with_dependency("E1", replacement);

        QCOMPARE(section->getObjects().value("E1"), replacement);
        QCOMPARE(storedRoom("R2")->getElement_list(), (QStringList { "E2", "E1" }));
        drainEvents();
        QCOMPARE(topicsOf(engine->updated).count("elements/objects_list/E1"), 1);
        QCOMPARE(engine->updated.last().value("payload").toObject().value("name").toString(), QStringLiteral("new"));
    }

    void storingTheStoredElementAgainKeepsIt()
    {
        buildHouse();
        QPointer<ps_object_element_t> e1 = section->getObjects().value("E1");
        section->update_element_to_list("E1", e1.data());
        drainEvents();
        QVERIFY(!e1.isNull());
        QCOMPARE(section->getObjects().value("E1"), e1.data());
        QCOMPARE(topicsOf(engine->updated), (QStringList { "elements/objects_list/E1" }));
    }

    void pageStackAndOptionsAreReplacedAndAlwaysPublished()
    {
        section->update_page_stack({ { "P1", { "R1" } } });
        section->update_options({ { "0", 5 } });
        section->update_options({ { "0", 5 } });
        QCOMPARE(section->getOptions(), (QVariantMap { { "0", 5 } }));
        drainEvents();
        QCOMPARE(
            engine->updated,
            (QList<QJsonObject> {
                { { "topic", "elements/page_stack" }, { "payload", QJsonObject { { "P1", QJsonArray { "R1" } } } } },
                { { "topic", "elements/options" }, { "payload", QJsonObject { { "0", 5 } } } },
                { { "topic", "elements/options" }, { "payload", QJsonObject { { "0", 5 } } } } }));
    }

    void sectionCopyIsDeep()
    {
        auto* rgb = new psoe_rgb;
        ps_object_preset_t preset({ { "color_rgb", "1" } }, 0, nullptr);
        rgb->update_preset("p", &preset);
        section->update_with_dependency("L", rgb);

        ps_elements_t copy(*section);
        auto* copied = qobject_cast<psoe_rgb*>(copy.getObjects().value("L"));
        QVERIFY(copied);
        QVERIFY(copied != rgb);
        QVERIFY(copied->getPresets().value("p") != rgb->getPresets().value("p"));
        QCOMPARE(copied->parent(), nullptr);
        QVERIFY(copy == *section);
    }

    void nullElementsChangeNothing()
    {
        log_capture_t logs;
        section->update_add_element("E1", nullptr);
        QVERIFY(logs.contains("Unable to add element null", 2));
        section->update_with_dependency("E1", nullptr);
        section->update_remove_element_from_list("E1");
        drainEvents();
        QCOMPARE(engine->total(), 0);
    }

    void listOfUnknownIdGivesTemporaryPlainElement()
    {
        log_capture_t logs;
        ps_object_element_t* temporary = section->list("X");
        QCOMPARE(temporary->getTypeIndex(), -1);
        QCOMPARE(temporary->getTopic(), QStringLiteral("elements/objects_list/X"));
        QVERIFY(logs.contains("New key create app : X", 6));
        QVERIFY(section->getObjects().isEmpty());
        drainEvents();
        QCOMPARE(engine->notExist, (QList<QJsonObject> { QJsonObject { { "topic", "elements/objects_list/X" } } }));
    }

    void requestSetElement_data()
    {
        QTest::addColumn<factory_t>("factory");
        QTest::addColumn<QString>("className");
        QTest::addColumn<QString>("logLine");
        QTest::newRow("concrete class writes @class") << make<psoe_dimmer>() << "psoe_dimmer" << QString();
        QTest::newRow("weather is written though never cloned") << make<psoe_weather>() << "psoe_weather" << QString();
        QTest::newRow("unknown type sends nothing")
            << make<ps_object_element_t>() << QString() << "Cannot deserialize unknwon element type -1, aborting.";
        QTest::newRow("page type sends nothing") << factory_t([] { return new test_page_t; }) << QString()
                                                 << "Cannot deserialize unknwon element type 12, aborting.";
    }

    void requestSetElement()
    {
        QFETCH(factory_t, factory);
        QFETCH(QString, className);
        QFETCH(QString, logLine);
        QScopedPointer<ps_object_element_t> element(factory());
        log_capture_t logs;
        section->requestSetElement("E1", element.data());
        drainEvents();
        if (!logLine.isEmpty()) {
            QVERIFY(logs.contains(logLine, 2));
            QCOMPARE(engine->total(), 0);
            return;
        }
        QCOMPARE(engine->requests.size(), 1);
        QCOMPARE(engine->requests.first().value("topic").toString(),
                 QStringLiteral("request/DB/persistent/elements/objects_list/E1"));
        QCOMPARE(engine->requests.first().value("payload").toObject().value("@class").toString(), className);
    }

    void requestsOfTheSectionLists()
    {
        section->requestSetElement("E1", nullptr);
        section->requestSetPageStack({});
        section->requestSetOptions({});
        drainEvents();
        QCOMPARE(
            topicsOf(engine->requests),
            (QStringList { "request/DB/persistent/elements/objects_list/E1",
                           "request/DB/persistent/elements/page_stack", "request/DB/persistent/elements/options" }));
        QCOMPARE(engine->requests.at(0).value("payload").toObject(), QJsonObject());
        QCOMPARE(engine->requests.at(1).value("payload").toObject(), (QJsonObject { { "0", QJsonArray() } }));
        QCOMPARE(engine->requests.at(2).value("payload").toObject(), QJsonObject());
    }

    void typeTable_data()
    {
        QTest::addColumn<factory_t>("factory");
        QTest::addColumn<int>("createdType");
        QTest::addColumn<bool>("equalByContent");
        QTest::addColumn<QString>("logLine");
        QTest::newRow("onoff") << make<psoe_onoff>() << 0 << true << QString();
        QTest::newRow("rgb") << make<psoe_rgb>() << 2 << true << QString();
        QTest::newRow("room") << make<psoe_room>() << 11 << true << QString();
        QTest::newRow("weather: no creation, no comparison")
            << make<psoe_weather>() << -1 << false << "Cannot compare element of unknown type";
        QTest::newRow("tunable white: no comparison")
            << make<psoe_tunablewhite>() << 20 << false << "Cannot compare element of unknown type";
        QTest::newRow("page: nothing") << factory_t([] { return new test_page_t; }) << -1 << false
                                       << "Cannot compare element of unknown type";
    }

    void typeTable()
    {
        QFETCH(factory_t, factory);
        QFETCH(int, createdType);
        QFETCH(bool, equalByContent);
        QFETCH(QString, logLine);
        QScopedPointer<ps_object_element_t> first(factory());
        QScopedPointer<ps_object_element_t> second(factory());
        int const type = first->getTypeIndex();

        QScopedPointer<ps_object_element_t> created(ps_object_element_t::createElementOfType(type));
        QCOMPARE(created->getTypeIndex(), createdType);
        QScopedPointer<ps_object_element_t> copied(ps_object_element_t::createCopyOfType(type, first.data()));
        QCOMPARE(copied->getTypeIndex(), createdType);

        log_capture_t logs;
        QCOMPARE(first->isEqual(second.data(), false), equalByContent);
        QVERIFY(first->isEqual(first.data(), false));
        QCOMPARE(logs.contains(logLine, 2), !logLine.isEmpty());
    }

    void cloneKeepsClassOrFallsBackLogged_data()
    {
        QTest::addColumn<factory_t>("factory");
        QTest::addColumn<int>("clonedType");
        QTest::newRow("scenario") << make<psoe_scenario>() << 8;
        QTest::newRow("tunable white") << make<psoe_tunablewhite>() << 20;
        QTest::newRow("weather") << make<psoe_weather>() << -1;
        QTest::newRow("unknown") << make<ps_object_element_t>() << -1;
    }

    void cloneKeepsClassOrFallsBackLogged()
    {
        QFETCH(factory_t, factory);
        QFETCH(int, clonedType);
        QScopedPointer<ps_object_element_t> origin(factory());
        origin->setName("kitchen");
        log_capture_t logs;
        QScopedPointer<ps_object_element_t> clone(origin->clone());
        QCOMPARE(clone->getTypeIndex(), clonedType);
        QCOMPARE(clone->getName(), QStringLiteral("kitchen"));
        QCOMPARE(clone->parent(), nullptr);
        QCOMPARE(logs.contains("Cannot create element of unknown type", 2), clonedType == -1);
    }

    void copyObjectElementCopiesEveryClassThatIsWritten()
    {
        psoe_weather weather;
        QScopedPointer<ps_object_element_t> copy(ps_elements_t::copyObjectElement(&weather));
        QCOMPARE(copy->getTypeIndex(), 10);

        test_page_t page;
        log_capture_t logs;
        copy.reset(ps_elements_t::copyObjectElement(&page));
        QCOMPARE(copy->getTypeIndex(), -1);
        QVERIFY(logs.contains("Cannot copy unknwon element type 12, aborting.", 2));
        QCOMPARE(ps_elements_t::copyObjectElement(nullptr), nullptr);
    }

    void jsonRoundTripKeepsClassAndValues_data()
    {
        QTest::addColumn<factory_t>("factory");
        QTest::newRow("psoe_onoff") << make<psoe_onoff>();
        QTest::newRow("psoe_dimmer") << make<psoe_dimmer>();
        QTest::newRow("psoe_rgb") << make<psoe_rgb>();
        QTest::newRow("psoe_shutter") << make<psoe_shutter>();
        QTest::newRow("psoe_shutterpercent") << make<psoe_shutterpercent>();
        QTest::newRow("psoe_thermostat") << make<psoe_thermostat>();
        QTest::newRow("psoe_music") << make<psoe_music>();
        QTest::newRow("psoe_customslider") << make<psoe_customslider>();
        QTest::newRow("psoe_scenario") << make<psoe_scenario>();
        QTest::newRow("psoe_raffstore") << make<psoe_raffstore>();
        QTest::newRow("psoe_weather") << make<psoe_weather>();
        QTest::newRow("psoe_room") << make<psoe_room>();
        QTest::newRow("psoe_cmdbtn") << make<psoe_cmdbtn>();
        QTest::newRow("psoe_pres_sim") << make<psoe_pres_sim>();
        QTest::newRow("psoe_thermo_logic") << make<psoe_thermo_logic>();
        QTest::newRow("psoe_placeholder") << make<psoe_placeholder>();
        QTest::newRow("psoe_schedulers") << make<psoe_schedulers>();
        QTest::newRow("psoe_tunablewhite") << make<psoe_tunablewhite>();
        QTest::newRow("psoe_3state") << make<psoe_3state>();
    }

    void jsonRoundTripKeepsClassAndValues()
    {
        QFETCH(factory_t, factory);
        QScopedPointer<ps_object_element_t> element(factory());
        element->setId("not written");
        element->setName("Lamp");
        element->setFunction_map({ { "dimming", "I1" } });
        element->setRooms({ "R1" });
        element->setFlags(int(0x80000001u));
        element->setRunoptions({ { "memory", "only" } });
        fillOwnProperties(element.data());
        if (auto* rgb = qobject_cast<psoe_rgb*>(element.data())) {
            ps_object_preset_t preset({ { "color_rgb", "FF;00;00" } }, 3, nullptr);
            rgb->update_preset("p1", &preset);
        }

        QJsonObject const json = element->toJson();
        QCOMPARE(json.value("@class").toString(), QString::fromLatin1(QTest::currentDataTag()));
        QVERIFY(!json.contains("id"));
        QVERIFY(!json.contains("runoptions"));

        QScopedPointer<ps_object_element_t> read(serializer()->deserialize<ps_object_element_t*>(json));
        QCOMPARE(read->metaObject()->className(), element->metaObject()->className());
        QCOMPARE(read->getTypeIndex(), element->getTypeIndex());
        QCOMPARE(read->toJson(), json);
        QScopedPointer<ps_object_element_t> copy(ps_elements_t::copyObjectElement(read.data()));
        QCOMPARE(copy->toJson(), json);
    }

    void sectionDocumentRoundTripKeepsClassesAndLinks()
    {
        buildHouse();
        QJsonObject const json = section->toJson();
        QScopedPointer<ps_elements_t> read(serializer()->deserialize<ps_elements_t*>(json));
        QVERIFY(qobject_cast<psoe_room*>(read->getObjects().value("R1")));
        QVERIFY(*read == *section);
        QVERIFY(ps_elements_t(*section) == *section);

        storedRoom("R1")->setDesign(1);
        QVERIFY(!(*read == *section));
    }

    void getElementsSortsRoomsFromOthers()
    {
        buildHouse();
        map_stringlist rooms;
        QStringList others;
        section->getElements(rooms, others);
        QCOMPARE(rooms, (map_stringlist { { "R1", { "E1", "E2" } }, { "R2", { "E2" } } }));
        QCOMPARE(others, (QStringList { "E1", "E2" }));
    }

    void getDependency_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("id");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("items by function value") << "@item"
                                                 << "I1" << QStringList { "E1", "S1" };
        QTest::newRow("scenario elements") << "@scenary"
                                           << "SC" << QStringList { "S1" };
        QTest::newRow("thermostat elements") << "@thermo"
                                             << "TH" << QStringList { "T1" };
        QTest::newRow("thermostat id is no scenario") << "@scenary"
                                                      << "TH" << QStringList {};
        QTest::newRow("other kinds have none") << "@rules"
                                               << "I1" << QStringList {};
    }

    void getDependency()
    {
        QFETCH(QString, type);
        QFETCH(QString, id);
        QFETCH(QStringList, expected);
        psoe_onoff* light = onoff({});
        light->update_add_function("switch", "I1", false);
        light->update_add_function("status", "I1", false);
        auto* scenario = new psoe_scenario;
        scenario->setScenario_id("SC");
        scenario->setFunction_map({ { "learn", "I1" } });
        auto* thermo = new psoe_thermo_logic;
        thermo->setThermo_id("TH");
        section->update_element_to_list("E1", light);
        section->update_element_to_list("S1", scenario);
        section->update_element_to_list("T1", thermo);
        QCOMPARE(section->getDependency(type_object_t(type), id), expected);
    }

    void elementFlagsNeedAllBits_data()
    {
        QTest::addColumn<int>("flags");
        QTest::addColumn<int>("asked");
        QTest::addColumn<bool>("set");
        QTest::newRow("sign bit set") << int(0x80000001u) << int(psoe_scenario::SCENARIO_FLAG_KNX_SCENARIO) << true;
        QTest::newRow("sign bit clear") << 1 << int(psoe_scenario::SCENARIO_FLAG_KNX_SCENARIO) << false;
        QTest::newRow("one of two bits is not enough") << 1 << 3 << false;
        QTest::newRow("both bits") << 7 << 3 << true;
    }

    void elementFlagsNeedAllBits()
    {
        QFETCH(int, flags);
        QFETCH(int, asked);
        QFETCH(bool, set);
        psoe_scenario scenario;
        scenario.setFlags(flags);
        QCOMPARE(scenario.getFlag(asked), set);
    }

    void fieldRequestsCarryBareValues()
    {
        psoe_thermostat thermostat("elements/objects_list/T", nullptr);
        thermostat.initRequestSignals(engine, true);
        thermostat.requestSetSetpoint_par({ "7", "30" });
        psoe_music music("elements/objects_list/M", nullptr);
        music.initRequestSignals(engine, true);
        music.requestSetInvert_playpause(true);
        drainEvents();
        QCOMPARE(engine->requests,
                 (QList<QJsonObject> { { { "topic", "request/DB/persistent/elements/objects_list/T/setpoint_par" },
                                         { "payload", QJsonArray { "7", "30" } } },
                                       { { "topic", "request/DB/persistent/elements/objects_list/M/invert_playpause" },
                                         { "payload", true } } }));
    }

    void desktopAsksForItsIdOnItsOwnTopic()
    {
        ps_object_desktop_t desktop("elements/desktop/D", nullptr);
        desktop.connectRequestSignals(engine, true);
        desktop.requestSetId("D2");
        desktop.requestSetEnabled(true);
        drainEvents();
        QCOMPARE(topicsOf(engine->requests),
                 (QStringList { "request/DB/persistent/elements/desktop/D",
                                "request/DB/persistent/elements/desktop/D/enabled" }));
        QCOMPARE(engine->requests.first().value("payload").toString(), QStringLiteral("D2"));
    }

    // Colour elements.

    void rgbToDatabaseFormat_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("base");
        QTest::addColumn<QString>("expected");
        QTest::newRow("blanks, decimal") << "255 0 10" << 10 << "FF;00;0A";
        QTest::newRow("semicolons, hex, lower case") << "ff;0;a" << 16 << "FF;00;0A";
        QTest::newRow("dashes") << "255-0-10" << 10 << "FF;00;0A";
        QTest::newRow("hash and six digits, any base") << "#FF000A" << 10 << "FF;00;0A";
        QTest::newRow("six digits with blanks") << "ff 00 0a" << 16 << "FF;00;0A";
        QTest::newRow("too short") << "FF00" << 16 << "";
        QTest::newRow("part that doesn't read") << "255;x;10" << 10 << "";
    }

    void rgbToDatabaseFormat()
    {
        QFETCH(QString, text);
        QFETCH(int, base);
        QFETCH(QString, expected);
        QCOMPARE(psoe_rgb().rgb_stringTodbformat(text, base), expected);
    }

    void colourConversions()
    {
        psoe_rgb rgb;
        QCOMPARE(rgb.rgbw_stringTodbformat("255,0,10,127", 10), QString());
        QCOMPARE(rgb.rgbw_stringTodbformat("255:0:10:127", 10), QStringLiteral("FF;00;0A;7F"));
        QCOMPARE(rgb.rgb_stringFromdbformat("FF;00;0A", 16), QStringLiteral("#FF000A"));
        QCOMPARE(rgb.rgb_stringFromdbformat("#FF;00;0A", 10), QStringLiteral("255,0,10"));
        QCOMPARE(rgb.rgb_stringFromdbformat("FF;00;0A", 8), QString());
        QCOMPARE(rgb.rgb_stringFromdbformat("FF;00", 16), QString());
        QCOMPARE(rgb.rgbw_stringFromdbformat("FF;00;0A;7F", 10), QStringLiteral("255,0,10,127"));
        QCOMPARE(rgb.rgb_listFromdbformat("FF;00;0A", 10), (QStringList { "255", "0", "10" }));
        QCOMPARE(rgb.rgb_listTodbformat({ "255", "0", "10" }, 10), QStringLiteral("FF;00;0A"));
        QCOMPARE(rgb.rgb_listTodbformat({ "255", "0" }, 10), QString());
        QCOMPARE(rgb.rgbw_listTodbformat({ "ff", "0", "a", "7f" }, 16), QStringLiteral("FF;00;0A;7F"));
        QCOMPARE(rgb.listToRgbHex({ "255", "0", "10" }, 10), QStringLiteral("#FF000A"));
    }

    void interpretedValues_data()
    {
        QTest::addColumn<bool>("interpreted");
        QTest::addColumn<QString>("key");
        QTest::addColumn<int>("value");
        QTest::addColumn<int>("byte");
        QTest::newRow("hue in degrees") << true << "color_hue" << 100 << 71;
        QTest::newRow("red in percent") << true << "color_red" << 50 << 128;
        QTest::newRow("saturation full") << true << "color_saturation" << 100 << 255;
        QTest::newRow("other keys pass") << true << "dimming" << 50 << 50;
        QTest::newRow("without the flag") << false << "color_hue" << 100 << 100;
    }

    void interpretedValues()
    {
        QFETCH(bool, interpreted);
        QFETCH(QString, key);
        QFETCH(int, value);
        QFETCH(int, byte);
        psoe_rgb rgb;
        rgb.setFlags(interpreted ? int(psoe_rgb::RGB_FLAG_MULTIPLE_DPT_INTERPRETED) : 0);
        QCOMPARE(rgb.interpreted2ByteValue(value, key), byte);
        QCOMPARE(rgb.byte2InterpretedValue(byte, key), value);
    }

    void kelvinCurve_data()
    {
        QTest::addColumn<int>("kelvin");
        QTest::addColumn<QString>("hex");
        QTest::newRow("below 100 K: no green") << 99 << "#FF0000";
        QTest::newRow("1900 K: still no blue") << 1900 << "#FF8400";
        QTest::newRow("1999 K: hundreds are cut") << 1999 << "#FF8400";
        QTest::newRow("2000 K: blue starts") << 2000 << "#FF890E";
        QTest::newRow("6599 K") << 6599 << "#FFFEFA";
        QTest::newRow("6600 K: green clamped") << 6600 << "#FFFFFD";
        QTest::newRow("6700 K: red falls, blue full") << 6700 << "#FEF9FF";
        QTest::newRow("10000 K") << 10000 << "#CADAFF";
    }

    void kelvinCurve()
    {
        QFETCH(int, kelvin);
        QFETCH(QString, hex);
        QCOMPARE(psoe_tunablewhite().kelvinToRgbHex(kelvin), hex);
    }

    void rgbPresetsFollowTheFlags_data()
    {
        QTest::addColumn<int>("flags");
        QTest::addColumn<QVariantMap>("before");
        QTest::addColumn<QVariantMap>("after");
        QTest::addColumn<bool>("changed");
        int const white = int(psoe_rgb::RGB_FLAG_ENABLE_COLOR_WHITE);
        int const dimming = int(psoe_rgb::RGB_FLAG_ENABLE_DIMMING);
        int const bothModes = int(psoe_rgb::RGB_FLAG_RGB_DPT_MODE | psoe_rgb::RGB_FLAG_RGBW_DPT_MODE);
        QVariantMap const rgb { { "color_rgb", "FF;00;0A" } };
        QTest::newRow("dimming added where missing")
            << (white | dimming) << rgb << QVariantMap { { "color_rgb", "FF;00;0A" }, { "dimming", "100" } } << true;
        QTest::newRow("present dimming kept")
            << (white | dimming) << QVariantMap { { "color_rgb", "1" }, { "dimming", "40" } }
            << QVariantMap { { "color_rgb", "1" }, { "dimming", "40" } } << false;
        QTest::newRow("dimming removed") << white << QVariantMap { { "color_rgb", "1" }, { "dimming", "40" } }
                                         << QVariantMap { { "color_rgb", "1" } } << true;
        QTest::newRow("white removed") << 0 << QVariantMap { { "color_rgb", "1" }, { "color_white", "7F" } }
                                       << QVariantMap { { "color_rgb", "1" } } << true;
        QTest::newRow("white part darkened in both modes")
            << bothModes << QVariantMap { { "color_rgbw", "FF;00;0A;7F" } }
            << QVariantMap { { "color_rgbw", "FF;00;0A;00" } } << true;
        QTest::newRow("white part kept in one mode")
            << int(psoe_rgb::RGB_FLAG_RGBW_DPT_MODE) << QVariantMap { { "color_rgbw", "FF;00;0A;7F" } }
            << QVariantMap { { "color_rgbw", "FF;00;0A;7F" } } << false;
        QTest::newRow("hsv alone is usable in hsv mode")
            << int(psoe_rgb::RGB_FLAG_RGB_HSV) << QVariantMap { { "color_hue", "10" } }
            << QVariantMap { { "color_hue", "10" } } << false;
        QTest::newRow("hsv alone is dropped otherwise")
            << 0 << QVariantMap { { "color_hue", "10" } } << QVariantMap() << true;
    }

    void rgbPresetsFollowTheFlags()
    {
        QFETCH(int, flags);
        QFETCH(QVariantMap, before);
        QFETCH(QVariantMap, after);
        QFETCH(bool, changed);
        psoe_rgb rgb("elements/objects_list/L", nullptr);
        rgb.initRequestSignals(engine, true);
        rgb.setFlags(flags);
        ps_object_preset_t preset(before, 0, nullptr);
        rgb.update_preset("p", &preset);

        QCOMPARE(rgb.update_to_adjust_preset(true), changed);
        QScopedPointer<ps_object_preset_t> result(rgb.preset_get_copy("p"));
        QCOMPARE(result ? result->getFunction_map() : QVariantMap(), after);
        drainEvents();
        QCOMPARE(engine->updated.size(), changed ? 1 : 0);
    }

    void rgbAdjustmentDropsLaterDuplicates()
    {
        psoe_rgb rgb;
        rgb.setFlags(int(psoe_rgb::RGB_FLAG_ENABLE_COLOR_WHITE));
        QVariantMap const red { { "color_rgb", "FF;00;00" } };
        for (auto const& [key, order] : { std::pair { "b", 1 }, std::pair { "a", 2 }, std::pair { "c", 3 } }) {
            QScopedPointer<ps_object_preset_t> preset(
                rgb.preset_create(key == QLatin1String("c") ? QVariantMap { { "color_rgb", "1" } } : red, order));
            rgb.update_preset(key, preset.data());
        }
        QVERIFY(rgb.update_to_adjust_preset(false));
        QCOMPARE(rgb.preset_keys(), (QStringList { "a", "c" }));
        QCOMPARE(rgb.getPresets().value("a")->getTopic(), QStringLiteral("/preset/a"));
    }

    void presetUpdates()
    {
        psoe_rgb rgb("elements/objects_list/L", nullptr);
        ps_object_preset_t preset({ { "color_rgb", "1" } }, 4, nullptr);
        rgb.update_preset("", &preset);
        QVERIFY(rgb.preset_keys().isEmpty());

        rgb.update_preset("p", &preset);
        ps_object_preset_t* stored = rgb.getPresets().value("p");
        QVERIFY(stored != &preset);
        QCOMPARE(stored->getTopic(), QStringLiteral("elements/objects_list/L/preset/p"));
        QCOMPARE(stored->parent(), &rgb);

        preset.setOrder(9);
        rgb.update_preset("p", &preset);
        QCOMPARE(rgb.getPresets().value("p"), stored);
        QCOMPARE(stored->getOrder(), 9);
        rgb.update_preset_order("p", 2);
        QCOMPARE(stored->getOrder(), 2);

        psoe_rgb copy(rgb);
        QVERIFY(copy.getPresets().value("p") != stored);
        QVERIFY(copy.compare(&rgb, false));
        rgb.update_preset("p", nullptr);
        QVERIFY(rgb.preset_keys().isEmpty());
        QVERIFY(!copy.compare(&rgb, false));
    }

    void tunableWhitePresets()
    {
        psoe_tunablewhite white;
        white.setFlags(int(psoe_tunablewhite::TUNABLE_WHITE_FLAG_ENABLE_DIMMING));
        ps_object_preset_t warm({ { "white_tune", "2700" } }, 0, nullptr);
        ps_object_preset_t same({ { "white_tune", "2700.0" } }, 1, nullptr);
        ps_object_preset_t cold({ { "white_tune", "6500" } }, 2, nullptr);
        white.update_preset("a", &warm);
        white.update_preset("b", &same);
        white.update_preset("c", &cold);

        QVERIFY(white.update_to_adjust_preset(false));
        QCOMPARE(white.getPresets().value("a")->getFunction_map().value("dimming").toString(), QStringLiteral("100"));
        QVERIFY(!white.update_to_adjust_preset(false));
        QVERIFY(white.adjust_white_tune());
        QCOMPARE(white.preset_keys(), (QStringList { "a", "c" }));

        white.setFlags(0);
        QVERIFY(white.update_to_adjust_preset(false));
        QVERIFY(!white.getPresets().value("c")->getFunction_map().contains("dimming"));
    }
};

QTEST_GUILESS_MAIN(tst_ps_elements)
#include "tst_ps_elements.moc"
