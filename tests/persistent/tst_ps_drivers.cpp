#include <QPointer>
#include <QSignalSpy>
#include <QtTest>

#include <functional>

#include "database/default/persistent/ps_default_t.h"
#include "database/definition/knx/type_interfaces_knx_t.h"
#include "database/persistent/dbs/ps_drivers_t.h"
#include "database/utility/utility.h"
#include "platform/logs/classlogs.h"
#include "platform/qjsonserializer/qjsonserializer.h"
#include "support/model_test.h"
#include "support/packet_recorder.h"

using database::base::topicbase_t;
using database::persistent::dbs::ps_drivers_t;
using namespace database::persistent::objects::drivers;

namespace {


QJsonObject json(char const* text)
{
    return QJsonDocument::fromJson(QByteArray(text)).object();
}


template<class Bus>
Bus* makeBus(bool enabled, int interval, QString const& type, QString const& address)
{
    Bus* bus = new Bus;
    bus->setEnabled(enabled);
    bus->setInitLoopInterval(interval);
    bus->setType(type);
    bus->getParams()->setAddress(address);
    return bus;
}

QStringList const sensorIds{"drivers/driver_internal/sensors/temperature", "drivers/driver_internal/sensors/humidity",
                            "drivers/driver_internal/sensors/lux", "drivers/driver_internal/sensors/proximity"};

} // namespace

class tst_ps_drivers : public QObject
{
    Q_OBJECT

private:
    ps_drivers_t* section = nullptr;
    packet_recorder_t* engine = nullptr;
    QList<::utility::logs::logrecord> records;

    template<class Driver, class Bus>
    void checkBusUpdate(Driver* driver, void (Driver::*updateBus)(QString const&, Bus*, bool));
    template<class Driver>
    void checkListMiss(Driver* driver);

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(database::utility::getInstance());
        ::utility::logs::classlogs::getInstance()->setCapture(
            [this](::utility::logs::logrecord const& r) { records.append(r); });
    }

    void cleanupTestCase() { ::utility::logs::classlogs::getInstance()->setCapture({}); }

    void init()
    {
        section = new ps_drivers_t;
        engine = new packet_recorder_t;
        section->initRequestSignals(engine, true);
        records.clear();
    }

    void cleanup()
    {
        delete section;
        delete engine;
        drainEvents();
    }

    void defaultSectionHasFourDriversAndMode()
    {
        QMetaObject const* meta = section->metaObject();
        QStringList order;
        for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i)
            order.append(QString::fromLatin1(meta->property(i).name()));
        QCOMPARE(order, (QStringList{"driver_internal", "driver_knx", "driver_baos", "driver_clock", "knx_mode"}));

        // No defaults exist yet in this process, hence the empty knx_mode.
        QJsonObject const expected = json(R"({
            "driver_internal": {"sensors": {"temperature": {"enabled": false}, "humidity": {"enabled": false},
                                            "lux": {"enabled": false}, "proximity": {"enabled": false}}},
            "driver_knx": {"bus": {}, "enabled": false},
            "driver_baos": {"bus": {}, "enabled": false},
            "driver_clock": {"enabled": false, "init_read": 0, "mode": 0, "id_item_date": "", "id_item_time": "",
                             "id_item_datetime": "", "time_to_write": 0, "date_to_write": 0, "datetime_to_write": 0},
            "knx_mode": ""})");
        QCOMPARE(section->toJson(), expected);
        QCOMPARE(section->getKnx()->parent(), section);
        QCOMPARE(section->getInternal()->getSensors()->getLux()->getTopic(),
            QStringLiteral("drivers/driver_internal/sensors/lux"));
    }

    void driverIdsInDriverOrder_data()
    {
        QTest::addColumn<QStringList>("knxBuses");
        QTest::addColumn<QStringList>("baosBuses");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("no buses: clock and sensors only")
            << QStringList() << QStringList() << QStringList{"drivers/driver_clock"} + sensorIds;
        QStringList const busIds{"drivers/driver_knx/a", "drivers/driver_knx/b", "drivers/driver_baos/1",
                                 "drivers/driver_clock"};
        QTest::newRow("buses by key, knx before baos")
            << QStringList{"b", "a"} << QStringList{"1"} << busIds + sensorIds;
    }

    void driverIdsInDriverOrder()
    {
        QFETCH(QStringList, knxBuses);
        QFETCH(QStringList, baosBuses);
        QFETCH(QStringList, expected);
        ps_object_drivers_knx_bus_t knxBus;
        ps_object_drivers_baos_bus_t baosBus;
        for (QString const& id : knxBuses)
            section->getKnx()->update_driver(id, &knxBus, false);
        for (QString const& id : baosBuses)
            section->getBaos()->update_bus(id, &baosBus, false);
        QCOMPARE(section->getDriverId(), expected);
    }

    void replacedDriverIsNewCopyAndWired_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<bool>("given");
        QTest::addColumn<bool>("notify");
        QTest::addColumn<QString>("published");
        QTest::newRow("knx with notify") << "knx" << true << true << "drivers/driver_knx";
        QTest::newRow("baos without notify") << "baos" << true << false << "";
        QTest::newRow("internal publishes its sensors")
            << "internal" << true << true << "drivers/driver_internal/sensors";
        QTest::newRow("null knx gives a default") << "knx" << false << true << "drivers/driver_knx";
        QTest::newRow("null internal gives a default") << "internal" << false << false << "";
    }

    void replacedDriverIsNewCopyAndWired()
    {
        QFETCH(QString, kind);
        QFETCH(bool, given);
        QFETCH(bool, notify);
        QFETCH(QString, published);

        // Per kind: the driver in place, and the update with a prepared object or null.
        std::function<topicbase_t*()> current;
        std::function<void(bool)> update;
        QScopedPointer<topicbase_t> object;
        QString place;
        if (kind == "knx") {
            auto* knx = new ps_drivers_knx_t(QStringLiteral("elsewhere"), nullptr);
            knx->setEnabled(true);
            QScopedPointer<ps_object_drivers_knx_bus_t> bus(
                makeBus<ps_object_drivers_knx_bus_t>(true, 3, "USB", "1.1.1"));
            knx->update_driver(QStringLiteral("1"), bus.data(), false);
            object.reset(knx);
            current = [this] { return section->getKnx(); };
            update = [this, knx](bool n) { section->update_knx(knx, n); };
            place = QStringLiteral("drivers/driver_knx");
        } else if (kind == "baos") {
            auto* baos = new ps_drivers_baos_t;
            baos->setEnabled(true);
            object.reset(baos);
            current = [this] { return section->getBaos(); };
            update = [this, baos](bool n) { section->update_baos(baos, n); };
            place = QStringLiteral("drivers/driver_baos");
        } else {
            auto* internal = new ps_drivers_internal_t;
            internal->getSensors()->getHumidity()->setEnabled(true);
            object.reset(internal);
            current = [this] { return section->getInternal(); };
            update = [this, internal](bool n) { section->update_internal(internal, n); };
            place = QStringLiteral("drivers/driver_internal");
        }
        if (!given) {
            object.reset();
            update = [this, kind](bool n) {
                if (kind == "knx")
                    section->update_knx(nullptr, n);
                else
                    section->update_internal(nullptr, n);
            };
        }

        QPointer<topicbase_t> old = current();
        QJsonObject const defaultJson = old->toJson();
        update(notify);
        QVERIFY(old.isNull()); // at once, not later
        topicbase_t* fresh = current();
        QVERIFY(fresh != object.data());
        QCOMPARE(fresh->parent(), section);
        QCOMPARE(fresh->getTopic(), place);
        if (object) {
            QCOMPARE(object->getTopic(), place);
            QCOMPARE(fresh->toJson(), object->toJson());
        } else {
            QCOMPARE(fresh->toJson(), defaultJson);
        }

        drainEvents();
        QCOMPARE(engine->updated.size(), notify ? 1 : 0);
        if (notify)
            QCOMPARE(engine->updated.first().value("topic").toString(), published);

        engine->clear();
        fresh->publishSelf();
        if (kind == "knx" && given) {
            ps_object_drivers_knx_bus_t* bus = section->getKnx()->getBus().value("1");
            QCOMPARE(bus->getParams()->getTopic(), QStringLiteral("drivers/driver_knx/bus/1/params"));
            bus->getParams()->send_update();
        }
        drainEvents();
        QCOMPARE(engine->updated.size(), kind == "knx" && given ? 2 : 1);
    }

    void clockTakesContentIntoSameObject()
    {
        ps_drivers_clock_t* clock = section->getClock();
        ps_drivers_clock_t other(QStringLiteral("elsewhere"), nullptr);
        other.setEnabled(true);
        other.setMode(2);
        other.setIdItemDatetime(QStringLiteral("K7"));
        other.setDatetimeToWrite(60);

        section->update_clock(&other, true);
        QCOMPARE(section->getClock(), clock);
        QCOMPARE(other.getTopic(), QStringLiteral("drivers/driver_clock"));
        QCOMPARE(clock->toJson(), other.toJson());

        section->update_clock(nullptr, true);
        QCOMPARE(clock->toJson(), other.toJson());
        drainEvents();
        QCOMPARE(engine->updated.size(), 1);
        QCOMPARE(engine->updated.first(),
                 (QJsonObject{{"topic", "drivers/driver_clock"}, {"payload", other.toJson()}}));
        QCOMPARE(engine->errors.size(), 1);
        QCOMPARE(engine->errors.first().first,
                 (QJsonObject{{"topic", "drivers/driver_clock"}, {"payload", QJsonValue::Null}}));
        QCOMPARE(engine->errors.first().second, QStringLiteral("Not permitted nullptr"));
    }

    void busUpdateKeepsBusAndParams_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::newRow("knx") << "knx";
        QTest::newRow("baos") << "baos";
    }

    void busUpdateKeepsBusAndParams()
    {
        QFETCH(QString, kind);
        if (kind == "knx")
            checkBusUpdate(section->getKnx(), &ps_drivers_knx_t::update_driver);
        else
            checkBusUpdate(section->getBaos(), &ps_drivers_baos_t::update_bus);
    }

    void nullUpdateIsRefused_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::newRow("section") << "section";
        QTest::newRow("knx bus") << "knx bus";
        QTest::newRow("baos bus") << "baos bus";
        QTest::newRow("knx params") << "knx params";
        QTest::newRow("baos params") << "baos params";
        QTest::newRow("internal sensors") << "internal";
        QTest::newRow("one sensor") << "sensor";
    }

    void nullUpdateIsRefused()
    {
        QFETCH(QString, kind);
        ps_object_drivers_knx_bus_t knxBus(QStringLiteral("drivers/driver_knx/bus/1"), nullptr);
        ps_object_drivers_baos_bus_t baosBus(QStringLiteral("drivers/driver_baos/bus/1"), nullptr);
        ps_object_driver_internal_sensors_t* sensors = section->getInternal()->getSensors();
        QMap<QString, QPair<topicbase_t*, std::function<void()>>> const cases{
            {"section", {section, [this] { section->update(nullptr); }}},
            {"knx bus", {&knxBus, [&] { knxBus.update(nullptr, true); }}},
            {"baos bus", {&baosBus, [&] { baosBus.update(nullptr, true); }}},
            {"knx params", {knxBus.getParams(), [&] { knxBus.getParams()->update(nullptr, true); }}},
            {"baos params", {baosBus.getParams(), [&] { baosBus.getParams()->update(nullptr, true); }}},
            {"internal", {sensors, [this] { section->getInternal()->update(nullptr, true); }}},
            {"sensor", {sensors->getLux(), [&] { sensors->getLux()->update(nullptr, true); }}},
        };
        topicbase_t* target = cases.value(kind).first;
        QJsonObject const before = target->toJson();
        QSignalSpy errors(target, &topicbase_t::onObjectError);
        QSignalSpy updates(target, &topicbase_t::onUpdated);
        cases.value(kind).second();
        QCOMPARE(errors.size(), 1);
        QCOMPARE(errors.first().at(0).toJsonObject(),
                 (QJsonObject{{"topic", target->getTopic()}, {"payload", QJsonValue::Null}}));
        QCOMPARE(errors.first().at(1).toString(), QStringLiteral("Not permitted nullptr"));
        QCOMPARE(updates.size(), 0);
        QCOMPARE(target->toJson(), before);
    }

    void unknownBusIsLoggedAndReported_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::newRow("knx") << "knx";
        QTest::newRow("baos") << "baos";
    }

    void unknownBusIsLoggedAndReported()
    {
        QFETCH(QString, kind);
        if (kind == "knx")
            checkListMiss(section->getKnx());
        else
            checkListMiss(section->getBaos());
    }

    void requestsOnlyBuildPackets_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("topic");
        QTest::addColumn<QJsonValue>("payload");
        QString const base = QStringLiteral("request/DB/persistent/drivers/");
        QJsonObject const defaultBus =
            json(R"({"enabled":false,"init_loop_interval":0,"type":"USB","params":{"address":""}})");
        QTest::newRow("whole knx driver")
            << "setKnx" << base + "driver_knx" << QJsonValue(json(R"({"bus":{},"enabled":true})"));
        QTest::newRow("null clock asks with empty object")
            << "setClock" << base + "driver_clock" << QJsonValue(QJsonObject());
        QTest::newRow("knx switch") << "knxEnabled" << base + "driver_knx/enabled" << QJsonValue(true);
        QTest::newRow("baos bus") << "baosBus" << base + "driver_baos/bus/2" << QJsonValue(defaultBus);
        QTest::newRow("bus loop interval")
            << "interval" << base + "driver_knx/bus/1/init_loop_interval" << QJsonValue(5);
        QTest::newRow("bus interface type") << "type" << base + "driver_knx/bus/1/type" << QJsonValue("TUNNELING");
        QTest::newRow("bus params") << "params" << base + "driver_knx/bus/1/params"
                                    << QJsonValue(json(R"({"address":"1.1.9"})"));
        QTest::newRow("params address") << "address" << base + "driver_knx/bus/1/params/address"
                                        << QJsonValue("15.15.255");
        QTest::newRow("one sensor") << "sensor" << base + "driver_internal/sensors/lux/enabled" << QJsonValue(true);
    }

    void requestsOnlyBuildPackets()
    {
        QFETCH(QString, action);
        QFETCH(QString, topic);
        QFETCH(QJsonValue, payload);
        ps_object_drivers_knx_bus_t prototype;
        section->getKnx()->update_driver(QStringLiteral("1"), &prototype, false);
        ps_object_drivers_knx_bus_t* bus = section->getKnx()->getBus().value("1");
        QJsonObject const before = section->toJson();

        ps_drivers_knx_t knx;
        knx.setEnabled(true);
        ps_object_drivers_baos_bus_t baosBus;
        ps_object_driver_knx_bus_detail_t params;
        params.setAddress(QStringLiteral("1.1.9"));
        QMap<QString, std::function<void()>> const actions{
            {"setKnx", [&] { section->requestSetKnx(&knx); }},
            {"setClock", [&] { section->requestSetClock(nullptr); }},
            {"knxEnabled", [&] { section->getKnx()->requestSetEnabled(true); }},
            {"baosBus", [&] { section->getBaos()->requestSetBus(QStringLiteral("2"), &baosBus); }},
            {"interval", [&] { bus->requestSetInitLoopInterval(5); }},
            {"type", [&] { bus->requestSetType(database::definition::knx::type_interfaces_knx_t::TUNNELING); }},
            {"params", [&] { bus->requestSetParams(&params); }},
            {"address", [&] { bus->getParams()->requestSetAddress(QStringLiteral("15.15.255")); }},
            {"sensor", [&] { section->getInternal()->getSensors()->getLux()->requestSetEnabled(true); }},
        };
        actions.value(action)();
        drainEvents();
        QCOMPARE(engine->requests, (QList<QJsonObject>{QJsonObject{{"topic", topic}, {"payload", payload}}}));
        QCOMPARE(engine->total(), 1);
        QCOMPARE(section->toJson(), before);
    }

    void sectionSurvivesJsonRoundTrip()
    {
        QScopedPointer<ps_object_drivers_knx_bus_t> knxBus(
            makeBus<ps_object_drivers_knx_bus_t>(true, 2, "ROUTER", "1.1.1"));
        QScopedPointer<ps_object_drivers_baos_bus_t> baosBus(
            makeBus<ps_object_drivers_baos_bus_t>(false, 0, "USB", "0"));
        section->getKnx()->update_driver(QStringLiteral("1"), knxBus.data(), false);
        section->getKnx()->update_driver(QStringLiteral("2"), knxBus.data(), false);
        section->getBaos()->update_bus(QStringLiteral("1"), baosBus.data(), false);
        section->getClock()->update_item_time(QStringLiteral("K9"), false);
        section->getInternal()->getSensors()->getProximity()->setEnabled(true);
        section->setKnxMode(QStringLiteral("baos"));

        QJsonObject const jdata = section->toJson();
        QCOMPARE(section->getKnx()->getJsonObjectBus(), jdata.value("driver_knx").toObject().value("bus").toObject());
        QScopedPointer<ps_drivers_t> back(serializer()->deserialize<ps_drivers_t*>(jdata));
        QVERIFY(back);
        QCOMPARE(back->toJson(), jdata);

        back->initRequestSignals(engine, true);
        ps_object_drivers_knx_bus_t* bus = back->getKnx()->getBus().value("2");
        QCOMPARE(bus->parent(), nullptr); // the map owns its buses
        QCOMPARE(bus->getParams()->parent(), bus);
        QCOMPARE(bus->getParams()->getTopic(), QStringLiteral("drivers/driver_knx/bus/2/params"));
        QCOMPARE(back->getInternal()->parent(), back.data());
        QCOMPARE(back->getDriverId(), section->getDriverId());

        ps_drivers_t copy(*section);
        QCOMPARE(copy.parent(), nullptr);
        QCOMPARE(copy.toJson(), jdata);
        QVERIFY(copy.getKnx()->getBus().value("1") != section->getKnx()->getBus().value("1"));
        QVERIFY(!(copy == *section));
        QVERIFY(*section == *section);

        // The handler's whole-section update: bus drivers replaced, clock merged.
        ps_drivers_clock_t* clock = back->getClock();
        ps_drivers_t fresh;
        back->update(&fresh);
        QCOMPARE(back->getClock(), clock);
        QCOMPARE(back->toJson(), fresh.toJson());
    }

    void wrongJsonShapeThrows_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("driver is an array") << QByteArray(R"({"driver_knx":[]})");
        QTest::newRow("bus map is an array") << QByteArray(R"({"driver_knx":{"bus":[]}})");
        QTest::newRow("bus is a string") << QByteArray(R"({"driver_baos":{"bus":{"1":"x"}}})");
        QTest::newRow("params is a number") << QByteArray(R"({"driver_knx":{"bus":{"1":{"params":5}}}})");
        QTest::newRow("sensors is an array") << QByteArray(R"({"driver_internal":{"sensors":[]}})");
        QTest::newRow("clock mode is text") << QByteArray(R"({"driver_clock":{"mode":"fast"}})");
        QTest::newRow("knx mode is a number") << QByteArray(R"({"knx_mode":1})");
    }

    void wrongJsonShapeThrows()
    {
        QFETCH(QByteArray, text);
        QJsonObject const object = QJsonDocument::fromJson(text).object();
        QVERIFY_THROWS_EXCEPTION(QJsonDeserializationException, serializer()->deserialize<ps_drivers_t*>(object));
    }

    // Last: once created, the defaults stay for the rest of the process.
    void knxModeFollowsBrandDefault_data()
    {
        QTest::addColumn<QString>("brand");
        QTest::addColumn<QString>("mode");
        QTest::newRow("HALDO") << "HALDO" << "kdrive";
        QTest::newRow("TOLVER") << "TOLVER" << "baos";
    }

    void knxModeFollowsBrandDefault()
    {
        QFETCH(QString, brand);
        QFETCH(QString, mode);
        using database::persistent::ps_default_t;
        ps_default_t::createInstance(database::definition::type_brand_t::HALDO, QStringLiteral("4.0.0"));
        ps_default_t::getInstance()->setBrand(database::definition::type_brand_t::getType(brand));
        QCOMPARE(ps_drivers_t().getKnxMode(), mode);
    }
};

template<class Driver, class Bus>
void tst_ps_drivers::checkBusUpdate(Driver* driver, void (Driver::*updateBus)(QString const&, Bus*, bool))
{
    QScopedPointer<Bus> first(makeBus<Bus>(false, 1, "USB", "1.1.1"));
    (driver->*updateBus)(QStringLiteral("1"), first.data(), false);
    Bus* stored = driver->getBus().value("1");
    auto* params = stored->getParams();

    QScopedPointer<Bus> second(makeBus<Bus>(true, 9, "TUNNELING", "192.0.2.7"));
    (driver->*updateBus)(QStringLiteral("1"), second.data(), true);
    QCOMPARE(driver->getBus().value("1"), stored);
    QCOMPARE(stored->getParams(), params);
    QCOMPARE(stored->toJson(), second->toJson());
    QString const topic = driver->getTopic() + QStringLiteral("/bus/1");
    QCOMPARE(second->getTopic(), topic);
    QCOMPARE(params->getTopic(), topic + QStringLiteral("/params"));

    drainEvents();
    QCOMPARE(engine->updated, (QList<QJsonObject>{QJsonObject{{"topic", topic}, {"payload", stored->toJson()}}}));

    // The driver's own removal and publication of one bus.
    engine->clear();
    (driver->*updateBus)(QStringLiteral("1"), nullptr, false);
    driver->send_update_driver(QStringLiteral("1"));
    drainEvents();
    QVERIFY(driver->getBus().isEmpty());
    QCOMPARE(engine->updated, (QList<QJsonObject>{QJsonObject{{"topic", topic}, {"payload", QJsonValue::Null}}}));
}

template<class Driver>
void tst_ps_drivers::checkListMiss(Driver* driver)
{
    auto* temporary = driver->list_bus(QStringLiteral("X"));
    QVERIFY(temporary);
    QString const topic = driver->getTopic() + QStringLiteral("/bus/X");
    QCOMPARE(temporary->getTopic(), topic);
    QCOMPARE(temporary->getParams()->getTopic(), topic + QStringLiteral("/params"));
    QCOMPARE(driver->key_bus(), QStringLiteral("bus"));
    QVERIFY(driver->getBus().isEmpty());
    QCOMPARE(records.size(), 1);
    QCOMPARE(records.first().message, QStringLiteral("New key create app : X"));
    QCOMPARE(records.first().level, ::utility::logs::trace);

    QPointer<QObject> guard(temporary);
    drainEvents();
    QVERIFY(guard.isNull());
    QCOMPARE(engine->notExist, (QList<QJsonObject>{QJsonObject{{"topic", topic}}}));
}

QTEST_GUILESS_MAIN(tst_ps_drivers)
#include "tst_ps_drivers.moc"
