#include <QJsonArray>
#include <QSignalSpy>
#include <QtTest>

#include "database/default/persistent/ps_default_t.h"
#include "database/definition/type_brand_t.h"
#include "database/persistent/dbs/ps_versions_t.h"
#include "database/persistent/ps_data_t.h"
#include "database/utility/utility.h"
#include "platform/logs/classlogs.h"
#include "platform/qjsonserializer/qjsonserializer.h"
#include "support/model_test.h"
#include "support/packet_recorder.h"

using database::definition::type_brand_t;
using database::persistent::ps_data_t;
using database::persistent::ps_default_t;
using database::persistent::definition::ps_knx_mode_t;

namespace {


QJsonObject at(QJsonObject const& object, QString const& path)
{
    QJsonValue value = object;
    for (QString const& step : path.split(QLatin1Char('/')))
        value = value.toObject().value(step);
    return value.toObject();
}

} // namespace

class tst_ps_data : public QObject
{
    Q_OBJECT

private:
    QList<::utility::logs::logrecord> records;

    QStringList messages() const
    {
        QStringList texts;
        for (auto const& record : records)
            texts.append(record.message);
        return texts;
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(database::utility::getInstance());
        QVERIFY(!ps_default_t::getInstance());
        ps_default_t* instance = ps_default_t::createInstance(type_brand_t::HALDO, QStringLiteral("4.0.0"));
        QVERIFY(instance);
        QCOMPARE(ps_default_t::createInstance(type_brand_t::VESTRA, QStringLiteral("9.9.9")), instance);
        QCOMPARE(instance->getBrand(), type_brand_t::HALDO);
        QCOMPARE(instance->getVersions()->property("database").toString(), QStringLiteral("4.0.0"));
        ::utility::logs::classlogs::getInstance()->setCapture(
            [this](::utility::logs::logrecord const& r) { records.append(r); });
    }

    void cleanup()
    {
        records.clear();
        ps_default_t::getInstance()->setBrand(type_brand_t::HALDO);
    }

    void defaultRootHasSectionsInOrder()
    {
        ps_data_t root;
        QStringList names;
        QMetaObject const* meta = root.metaObject();
        for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i)
            names.append(QString::fromLatin1(meta->property(i).name()));
        QCOMPARE(names, (QStringList{"general", "notify", "items", "elements", "storage", "schedulers", "scenary",
                                     "rules", "drivers", "information", "versions", "presencesimulation",
                                     "smartbutton", "users", "thermo"}));
        QJsonObject const json = root.toJson();
        QStringList sorted = names;
        sorted.sort();
        QCOMPARE(json.keys(), sorted);
        QCOMPARE(root.getTopic(), QStringLiteral("request/DB/persistent"));
    }

    void copiesAreDeepAndComparedByPointer()
    {
        ps_data_t root;
        ps_data_t copy(root);
        QVERIFY(root == root);
        QVERIFY(!(root == copy));
        QVERIFY(copy.getGeneral() != root.getGeneral());
        QCOMPARE(copy.getGeneral()->parent(), &copy);
        QCOMPARE(copy.toJson(), root.toJson());
        copy.getGeneral()->setProperty("description", QStringLiteral("changed"));
        QCOMPARE(root.getGeneral()->property("description").toString(), QString());
    }

    void wiringReachesSectionsOnlyWithTarget()
    {
        ps_data_t root;
        packet_recorder_t engine;
        root.initRequestSignals(nullptr, true);
        root.getItems()->send_update();
        QCoreApplication::processEvents();
        QCOMPARE(engine.total(), 0);

        root.initRequestSignals(&engine, true);
        root.getItems()->send_update();
        root.requestSetGeneral(nullptr);
        QTRY_COMPARE(engine.total(), 2);
        QCOMPARE(engine.updated.first().value("topic").toString(), QStringLiteral("items/objects_list"));
    }

    void requestForEmptySection_data()
    {
        QTest::addColumn<QString>("key");
        QTest::newRow("general") << "general";
        QTest::newRow("storage") << "storage";
        QTest::newRow("users") << "users";
        QTest::newRow("items") << "items";
    }

    void requestForEmptySection()
    {
        QFETCH(QString, key);
        ps_data_t root;
        QSignalSpy requests(&root, qOverload<QJsonObject>(&ps_data_t::onRequest));
        QVERIFY(requests.isValid());
        QCOMPARE(requests.count(), 0);
        if (key == QLatin1String("general"))
            root.requestSetGeneral(nullptr);
        else if (key == QLatin1String("storage"))
            root.requestSetStorage(nullptr);
        else if (key == QLatin1String("users"))
            root.requestSetUSers(nullptr);
        else
            root.requestSetItems(nullptr);
        QCOMPARE(requests.count(), 1);
        QJsonObject const packet = requests.takeFirst().at(0).toJsonObject();
        QCOMPARE(packet.value("topic").toString(), "request/DB/persistent/" + key);
        QJsonObject expected = ps_data_t().toJson().value(key).toObject();
        if (key == QLatin1String("storage"))
            expected.insert("objects_list", QJsonObject{{QString(), QJsonValue()}});
        QCOMPARE(packet.value("payload").toObject(), expected);
    }

    void knxModeFollowsBrand_data()
    {
        QTest::addColumn<QString>("brand");
        QTest::addColumn<QString>("asked");
        QTest::addColumn<QString>("held");
        QTest::addColumn<bool>("logged");
        QTest::newRow("haldo automatic") << "HALDO" << "automatic" << "kdrive" << false;
        QTest::newRow("haldo baos") << "HALDO" << "baos" << "baos" << false;
        QTest::newRow("haldo kdrive") << "HALDO" << "kdrive" << "kdrive" << false;
        QTest::newRow("vestra automatic") << "VESTRA" << "automatic" << "baos" << false;
        QTest::newRow("vestra kdrive refused") << "VESTRA" << "kdrive" << "baos" << true;
        QTest::newRow("tolver kdrive refused") << "TOLVER" << "kdrive" << "baos" << true;
        QTest::newRow("ardenwall baos still logged") << "ARDENWALL" << "baos" << "baos" << true;
    }

    void knxModeFollowsBrand()
    {
        QFETCH(QString, brand);
        QFETCH(QString, asked);
        QFETCH(QString, held);
        QFETCH(bool, logged);
        ps_default_t* defaults = ps_default_t::getInstance();
        defaults->setBrand(type_brand_t::getType(brand));
        records.clear();
        defaults->setKnx_mode(ps_knx_mode_t(asked));
        QCOMPARE(defaults->getSettedtKnxMode().ToString(), held);
        QCOMPARE(defaults->getDefaultKnxMode(), brand == "HALDO" ? ps_knx_mode_t::kdrive : ps_knx_mode_t::baos);
        if (logged) {
            QCOMPARE(records.size(), 1);
            QCOMPARE(records.first().level, ::utility::logs::error);
            QCOMPARE(records.first().source, QStringLiteral("setKnx_mode"));
            QCOMPARE(records.first().message,
                     "[Default branding] Not able to change the modility for the brand " + brand);
        } else {
            QVERIFY(records.isEmpty());
        }
    }

    void factoryDocumentPerBrand_data()
    {
        QTest::addColumn<QString>("brand");
        QTest::addColumn<double>("latitude");
        QTest::addColumn<double>("longitude");
        QTest::addColumn<QString>("bus");
        QTest::addColumn<QString>("email");
        QTest::newRow("haldo") << "HALDO" << 46.4556 << 11.2628 << "driver_knx" << "info@haldo.example.com";
        QTest::newRow("vestra") << "VESTRA" << 47.2514822 << 8.5943254 << "driver_baos" << "?@?";
        QTest::newRow("tolver") << "TOLVER" << 51.23848 << 7.5465713 << "driver_baos" << "?@?";
        QTest::newRow("ardenwall") << "ARDENWALL" << 48.8911231 << 2.1706854 << "driver_baos" << "?@?";
        QTest::newRow("unknown brand") << "NOBODY" << 46.4556 << 11.2628 << "driver_knx" << "info@haldo.example.com";
    }

    void factoryDocumentPerBrand()
    {
        QFETCH(QString, brand);
        QFETCH(double, latitude);
        QFETCH(double, longitude);
        QFETCH(QString, bus);
        QFETCH(QString, email);
        ps_default_t* defaults = ps_default_t::getInstance();
        if (brand == QLatin1String("NOBODY")) {
            // A brand outside the table builds the first brand's content with kdrive forced.
            defaults->setBrand(type_brand_t(brand));
            defaults->setKnx_mode(ps_knx_mode_t::automatic);
        } else {
            defaults->setBrand(type_brand_t::getType(brand));
        }
        QJsonObject const doc = defaults->getJData();

        QJsonObject const general = doc.value("general").toObject();
        QCOMPARE(general.value("latitude").toDouble(), latitude);
        QCOMPARE(general.value("longitude").toDouble(), longitude);
        QCOMPARE(general.value("timezone").toDouble(), 2.0);
        QCOMPARE(general.value("enable_img_upd").toBool(), true);
        QCOMPARE(doc.value("information").toObject().value("email").toString(), email);
        QCOMPARE(doc.value("versions").toObject().value("database").toString(), QStringLiteral("4.0.0"));

        QJsonObject const users = at(doc, "users/objects_list");
        QCOMPARE(users.keys(), (QStringList{"0", "99"}));
        QCOMPARE(users.value("99").toObject().value("name").toString(), QStringLiteral("admin"));
        QCOMPARE(users.value("99").toObject().value("perm").toInt(), -1);
        QCOMPARE(users.value("99").toObject().value("pin").toString(),
                 database::utility::createStringHash(QStringLiteral("58316")));
        QCOMPARE(users.value("0").toObject().value("perm").toInt(), 95);
        QCOMPARE(users.value("0").toObject().value("pin").toString(), QString());

        QJsonObject const drivers = doc.value("drivers").toObject();
        QString const other = bus == QLatin1String("driver_knx") ? "driver_baos" : "driver_knx";
        QCOMPARE(drivers.value("knx_mode").toString(), bus == QLatin1String("driver_knx") ? "kdrive" : "baos");
        QJsonObject const first = at(drivers, bus + "/bus/1");
        QCOMPARE(first.value("enabled").toBool(), true);
        QCOMPARE(first.value("type").toString(), QStringLiteral("USB"));
        QCOMPARE(at(first, "params").value("address").toString(),
                 bus == QLatin1String("driver_knx") ? "15.15.255" : "0");
        QCOMPARE(drivers.value(bus).toObject().value("enabled").toBool(), true);
        QCOMPARE(drivers.value(other).toObject().value("enabled").toBool(), false);
        QVERIFY(at(drivers, other + "/bus").isEmpty());

        // The document survives a round trip through the model unchanged.
        QScopedPointer<ps_data_t> back(serializer()->deserialize<ps_data_t*>(doc));
        QCOMPARE(back->toJson(), doc);
        QCOMPARE(defaults->getJData(), doc);
    }

    void haldoCheckChangesVersionsOnly()
    {
        ps_default_t* defaults = ps_default_t::getInstance();
        QJsonObject original{{"versions", QJsonObject{{"database", "1.0.0"}}},
                             {"unknown", QJsonObject{{"kept", true}}},
                             {"drivers", QJsonObject{{"knx_mode", "odd"}}}};
        QJsonObject checked = original;
        defaults->checkData(checked);
        QCOMPARE(checked.value("versions").toObject(), defaults->getVersions()->toJson());
        checked.remove("versions");
        original.remove("versions");
        QCOMPARE(checked, original);
    }

    void otherBrandsGetBaosDriver()
    {
        ps_default_t* defaults = ps_default_t::getInstance();
        defaults->setBrand(type_brand_t::VESTRA);
        QJsonObject doc{{"unknown", QJsonObject{{"dropped", true}}}};
        records.clear();
        defaults->checkData(doc);
        QVERIFY(!doc.contains("unknown")); // what the model doesn't hold is dropped
        QCOMPARE(at(doc, "drivers/driver_baos/bus/1").value("enabled").toBool(), true);
        QCOMPARE(at(doc, "drivers/driver_baos").value("enabled").toBool(), true);
        QVERIFY(messages().contains("[Default branding]  - Create driver baos"));
    }

    void enabledBaosBusIsLeftAlone()
    {
        ps_default_t* defaults = ps_default_t::getInstance();
        defaults->setBrand(type_brand_t::TOLVER);
        QJsonObject doc = defaults->getJData();
        QJsonObject const before = doc;
        records.clear();
        defaults->checkKnxDriver(doc, false, true);
        QCOMPARE(doc, before);
        QStringList const lines = messages();
        QVERIFY(lines.contains("[Default branding]  - Create driver baos"));
        QVERIFY(!lines.contains("[Default branding]  - Enable driver baos"));
    }

    void knxCheckDisablesBaosAndCreatesBus()
    {
        ps_default_t* defaults = ps_default_t::getInstance();
        defaults->setBrand(type_brand_t::VESTRA);
        QJsonObject doc = defaults->getJData();
        records.clear();
        defaults->checkKnxDriver(doc, true, false);
        QCOMPARE(at(doc, "drivers/driver_baos").value("enabled").toBool(), false);
        QCOMPARE(at(doc, "drivers/driver_knx").value("enabled").toBool(), true);
        QCOMPARE(at(doc, "drivers/driver_knx/bus/1/params").value("address").toString(), QStringLiteral("15.15.255"));
        QStringList const lines = messages();
        QVERIFY(lines.contains("[Default branding]  - Disable baos ... "));
        QVERIFY(lines.contains("[Default branding]  - Create driver knx"));
    }
};

QTEST_GUILESS_MAIN(tst_ps_data)
#include "tst_ps_data.moc"
