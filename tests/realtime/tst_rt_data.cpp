#include <QJsonArray>
#include <QMetaProperty>
#include <QPointer>
#include <QSignalSpy>
#include <QtTest>

#include "database/realtime/define/rt_type_database_field_t.h"
#include "database/realtime/objects/rt_object_t.h"
#include "database/realtime/rt_data_t.h"
#include "support/model_test.h"
#include "support/packet_recorder.h"

using database::realtime::rt_data_t;
using database::realtime::definition::rt_type_database_field_t;
using database::realtime::dbs::rt_items_t;
using database::realtime::dbs::rt_thermo_t;
using database::realtime::objects::rt_object_hydro_t;
using database::realtime::objects::rt_object_item_t;
using database::realtime::objects::rt_object_t;
using database::realtime::objects::rt_object_thermo_t;
using database::realtime::objects::rt_object_thermostat_t;

namespace {

QStringList const sectionKeys{"astronomical", "notify",  "items",        "storage",
                              "schedulers",   "scenary", "rules",        "drivers",
                              "installation", "presencesimulation", "system", "smartbutton",
                              "thermo"};

QStringList propertyNames(QMetaObject const* meta, bool stored)
{
    QStringList names;
    for (int i = QObject::staticMetaObject.propertyCount(); i < meta->propertyCount(); ++i) {
        if (meta->property(i).isStored() == stored)
            names.append(QString::fromLatin1(meta->property(i).name()));
    }
    return names;
}

// A root with something in each section that has content.
void fill(rt_data_t& root)
{
    rt_object_item_t item(QStringLiteral("1"), QStringLiteral("0"), nullptr);
    root.getItems()->update_item(QStringLiteral("K1"), &item, false);
    rt_object_thermo_t thermo;
    thermo.setActualTemp(21.5f);
    root.getThermo()->update_thermo(QStringLiteral("T1"), &thermo, false);
    root.getThermo()->setUpdated(QStringLiteral("2024-05-01T10:00:00"));
    root.getDrivers()->update_knxmode(QStringList{"kdrive", "baos"}, false);
}

} // namespace

class tst_rt_data : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(database::utility::getInstance()); }
    void cleanup() { drainEvents(); }

    void rootHoldsThirteenSectionsInOrder()
    {
        rt_data_t root;
        QCOMPARE(root.getTopic(), QStringLiteral("request/DB/realtime"));
        QCOMPARE(propertyNames(root.metaObject(), true), sectionKeys);
        QStringList sorted = sectionKeys;
        sorted.sort();
        QCOMPARE(root.toJson().keys(), sorted);
        QMetaObject const* meta = root.metaObject();
        for (QString const& key : sectionKeys) {
            QMetaProperty const property = meta->property(meta->indexOfProperty(key.toLatin1().constData()));
            QCOMPARE(property.isWritable(), key != QLatin1String("system"));
            QCOMPARE(root.property(key.toLatin1().constData()).value<QObject*>()->parent(), &root);
        }
    }

    void modelPropertiesInJsonOrder_data()
    {
        QTest::addColumn<QString>("className");
        QTest::addColumn<QStringList>("stored");
        QTest::addColumn<QStringList>("memoryOnly");
        QTest::newRow("items") << "rt_items_t" << QStringList{"objects_list", "updated"} << QStringList{};
        QTest::newRow("thermo section") << "rt_thermo_t" << QStringList{"objects_list", "updated"} << QStringList{};
        QTest::newRow("item") << "rt_object_item_t" << QStringList{"feedback", "value"} << QStringList{};
        QTest::newRow("step") << "rt_object_t" << QStringList{"enabled", "order", "delay", "type", "id", "value"}
                              << QStringList{};
        QTest::newRow("thermostat") << "rt_object_thermostat_t" << QStringList{"win_open", "thermo"}
                                    << QStringList{"dew_point", "prot_dew_poin", "hydro"};
        QTest::newRow("thermo part")
            << "rt_object_thermo_t"
            << QStringList{"actual", "setpoint", "set_calc", "season", "mode", "output", "out_st", "error"}
            << QStringList{"fan", "forceFan", "battery"};
        QTest::newRow("hydro part") << "rt_object_hydro_t"
                                    << QStringList{"actual", "set", "set_calc", "mode", "output", "error", "fan",
                                                   "forceFan"}
                                    << QStringList{};
    }

    void modelPropertiesInJsonOrder()
    {
        QFETCH(QString, className);
        QFETCH(QStringList, stored);
        QFETCH(QStringList, memoryOnly);
        QHash<QString, QMetaObject const*> const classes{
            {"rt_items_t", &rt_items_t::staticMetaObject},
            {"rt_thermo_t", &rt_thermo_t::staticMetaObject},
            {"rt_object_item_t", &rt_object_item_t::staticMetaObject},
            {"rt_object_t", &rt_object_t::staticMetaObject},
            {"rt_object_thermostat_t", &rt_object_thermostat_t::staticMetaObject},
            {"rt_object_thermo_t", &rt_object_thermo_t::staticMetaObject},
            {"rt_object_hydro_t", &rt_object_hydro_t::staticMetaObject},
        };
        QMetaObject const* meta = classes.value(className);
        QVERIFY(meta);
        QCOMPARE(propertyNames(meta, true), stored);
        QCOMPARE(propertyNames(meta, false), memoryOnly);
    }

    void copyIsEqualByContentNotByPointer()
    {
        rt_data_t root;
        fill(root);
        rt_data_t copy(root);
        QCOMPARE(copy.parent(), nullptr);
        QVERIFY(root == root);
        QVERIFY(!(copy == root));
        QVERIFY(copy.getItems() != root.getItems());
        QCOMPARE(copy.getItems()->parent(), &copy);
        QCOMPARE(database::utility::compareJdata(root.toJson(), copy.toJson()), QList<QString>{});

        copy.getItems()->list(QStringLiteral("K1"))->setValue(QStringLiteral("1"));
        QCOMPARE(root.getItems()->getObjects().value("K1")->getValue(), QStringLiteral("0"));
        QCOMPARE(database::utility::compareJdata(root.toJson(), copy.toJson()), QList<QString>{"items"});
    }

    void jsonRoundTripKeepsTheImage()
    {
        rt_data_t root;
        fill(root);
        QJsonObject const json = root.toJson();
        QCOMPARE(json.value("drivers").toObject().value("knx_mode").toArray(), (QJsonArray{"kdrive", "baos"}));
        QScopedPointer<rt_data_t> back(serializer()->deserialize<rt_data_t*>(json));
        QVERIFY(back);
        QCOMPARE(back->toJson(), json);
        QCOMPARE(back->getThermo()->getObjects().value("T1")->getThermo()->getActualTemp(), 21.5f);
        QCOMPARE(back->getItems()->parent(), back.data());
        QCOMPARE(back->serializeDriver(), json.value("drivers").toObject());
    }

    void settersReplaceSections_data()
    {
        QTest::addColumn<bool>("withSection");
        QTest::addColumn<bool>("notify");
        QTest::newRow("new section, notified") << true << true;
        QTest::newRow("new section, silent") << true << false;
        QTest::newRow("null gives a default section") << false << true;
    }

    void settersReplaceSections()
    {
        QFETCH(bool, withSection);
        QFETCH(bool, notify);
        rt_data_t root;
        QSignalSpy changed(&root, &rt_data_t::itemsChanged);
        QVERIFY(changed.isValid());
        QCOMPARE(changed.count(), 0);
        QPointer<rt_items_t> old = root.getItems();
        rt_items_t* incoming = withSection ? new rt_items_t : nullptr;

        root.setItems(incoming, notify);
        QVERIFY(old.isNull());
        QVERIFY(root.getItems());
        if (withSection)
            QCOMPARE(root.getItems(), incoming);
        QCOMPARE(root.getItems()->parent(), &root);
        QCOMPARE(changed.count(), notify ? 1 : 0);

        root.setItems(root.getItems(), true);
        QCOMPARE(changed.count(), notify ? 1 : 0);
    }

    void wiringReachesEverySectionQueued()
    {
        rt_data_t root;
        fill(root);
        packet_recorder_t engine;
        root.initRequestSignals(nullptr, true);
        root.getItems()->send_update();
        drainEvents();
        QCOMPARE(engine.total(), 0);

        root.initRequestSignals(&engine, true);
        root.getItems()->getObjects().value("K1")->update_value(QStringLiteral("1"), true);
        QCOMPARE(engine.total(), 0); // queued
        root.getThermo()->getObjects().value("T1")->getThermo()->requestSetSeason(1);
        root.getDrivers()->update_knxmode(QStringList{"baos"}, true);
        QTRY_COMPARE(engine.total(), 3);
        QCOMPARE(engine.updated.first().value("topic").toString(), QStringLiteral("items/objects_list/K1"));
        QCOMPARE(engine.requests.first().value("topic").toString(),
                 QStringLiteral("request/DB/realtime/thermo/objects_list/T1/thermo/season"));
        QCOMPARE(engine.updated.last(),
                 (QJsonObject{{"topic", "drivers/knx_mode"}, {"payload", QJsonArray{"baos"}}}));

        root.initRequestSignals(&engine, false);
        root.getItems()->send_update();
        root.getAstronomical()->update(root.getAstronomical(), true);
        drainEvents();
        QCOMPARE(engine.total(), 3);
    }

    void databaseFieldsKeepTheirTexts()
    {
        QList<rt_type_database_field_t> const fields{
            rt_type_database_field_t::drivers,     rt_type_database_field_t::general,
            rt_type_database_field_t::items,       rt_type_database_field_t::notify,
            rt_type_database_field_t::rules,       rt_type_database_field_t::scenary,
            rt_type_database_field_t::schedulers,  rt_type_database_field_t::storage,
            rt_type_database_field_t::installation, rt_type_database_field_t::smartbutton,
            rt_type_database_field_t::thermo};
        QStringList texts;
        for (auto const& field : fields)
            texts.append(field.ToString());
        QCOMPARE(texts, (QStringList{"drivers", "general", "items", "notify", "rules", "scenary", "schedulers",
                                     "storage", "installation", "smartbutton", "thermo"}));
        QVERIFY(rt_type_database_field_t(QStringLiteral("items")) == rt_type_database_field_t::items);
        QVERIFY(!(rt_type_database_field_t::general == rt_type_database_field_t::drivers));
        // Every field but "general" names a section of the image.
        QJsonObject const image = rt_data_t().toJson();
        for (auto const& field : fields)
            QCOMPARE(image.contains(field.ToString()), field != rt_type_database_field_t::general);
    }
};

QTEST_GUILESS_MAIN(tst_rt_data)
#include "tst_rt_data.moc"
