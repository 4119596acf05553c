#include <QJsonArray>
#include <QPointer>
#include <QSignalSpy>
#include <QtTest>

#include <functional>

#include "database/persistent/define/ps_knx_mode_t.h"
#include "database/realtime/dbs/rt_drivers_t.h"
#include "database/utility/utility.h"
#include "support/log_capture.h"
#include "support/model_test.h"
#include "support/packet_recorder.h"

using database::persistent::definition::ps_knx_mode_t;
using database::realtime::rt_object_driver_baos_interface_list;
using database::realtime::rt_object_driver_knx_interface_list;
using database::realtime::rt_object_driver_knx_map;
using database::realtime::dbs::rt_drivers_t;
using database::realtime::objects::drivers::rt_drivers_baos_t;
using database::realtime::objects::drivers::rt_drivers_knx_t;
using database::realtime::objects::drivers::rt_object_driver_baos_interface_t;
using database::realtime::objects::drivers::rt_object_driver_baos_status_detail_t;
using database::realtime::objects::drivers::rt_object_driver_baos_status_t;
using database::realtime::objects::drivers::rt_object_driver_internal_sensors_t;
using database::realtime::objects::drivers::rt_object_driver_knx_interface_t;
using database::realtime::objects::drivers::rt_object_driver_knx_status_detail_t;
using database::realtime::objects::drivers::rt_object_driver_knx_status_t;

namespace {

rt_object_driver_knx_interface_list knxInterfaces(int count)
{
    rt_object_driver_knx_interface_list list;
    for (int i = 0; i < count; ++i) {
        auto* interface = new rt_object_driver_knx_interface_t;
        interface->setProperty("id", i);
        interface->setProperty("type", QStringLiteral("IP"));
        interface->setProperty("ip", QStringLiteral("192.0.2.%1").arg(10 + i));
        list.append(interface);
    }
    return list;
}

rt_object_driver_knx_status_t* knxStatus(bool running)
{
    auto* status = new rt_object_driver_knx_status_t;
    status->update_loop_execution(running, false);
    status->getInfo()->update_bus_disconnected(QStringLiteral("2024-05-01 10:00"), false);
    status->getInfo()->update_interface_id(2, false);
    return status;
}

} // namespace

Q_DECLARE_METATYPE(std::function<void(rt_drivers_t*)>)

class tst_rt_drivers : public QObject
{
    Q_OBJECT

private:
    rt_drivers_t* section = nullptr;
    packet_recorder_t* engine = nullptr;

private Q_SLOTS:
    void initTestCase() { QVERIFY(database::utility::getInstance()); }

    void init()
    {
        section = new rt_drivers_t;
        engine = new packet_recorder_t;
        section->initRequestSignals(engine, true);
    }

    void cleanup()
    {
        delete section;
        delete engine;
        drainEvents();
    }

    void defaultSectionHasItsDriversAtTheirTopics()
    {
        QCOMPARE(section->getInternal()->getTopic(), QStringLiteral("drivers/driver_internal"));
        QCOMPARE(section->getInternal()->getSensors()->getLux()->getTopic(),
                 QStringLiteral("drivers/driver_internal/sensors/lux"));
        QCOMPARE(section->getKnx()->getTopic(), QStringLiteral("drivers/driver_knx"));
        QCOMPARE(section->getBaos()->getTopic(), QStringLiteral("drivers/driver_baos"));
        QJsonObject const empty{{"interfaces", QJsonArray()}, {"status", QJsonObject()}};
        QJsonObject const sensor{{"value", ""}};
        QCOMPARE(section->toJson(),
                 (QJsonObject{{"driver_internal",
                               QJsonObject{{"sensors", QJsonObject{{"temperature", sensor},
                                                                   {"humidity", sensor},
                                                                   {"lux", sensor},
                                                                   {"proximity", sensor}}}}},
                              {"driver_knx", empty},
                              {"driver_baos", empty},
                              {"updated", ""},
                              {"knx_mode", QJsonArray()}}));
    }

    void requestsAskTheDriversAndChangeNothing_data()
    {
        QTest::addColumn<std::function<void(rt_drivers_t*)>>("ask");
        QTest::addColumn<QString>("topic");
        QTest::addColumn<QJsonValue>("payload");
        using ask_t = std::function<void(rt_drivers_t*)>;
        QTest::newRow("knx mode on offer") << ask_t([](rt_drivers_t* s) {
            s->requestSetKnxMode(ps_knx_mode_t::baos);
        }) << "drivers/knx_mode" << QJsonValue(QJsonObject{{"mode", "baos"}});
        QTest::newRow("knx scan") << ask_t([](rt_drivers_t* s) { s->getKnx()->requestSetScanInterfaces(); })
                                  << "drivers/driver_knx/interfaces/scan" << QJsonValue(QJsonObject());
        QTest::newRow("baos scan") << ask_t([](rt_drivers_t* s) { s->getBaos()->requestSetScanInterfaces(); })
                                   << "drivers/driver_baos/interfaces/scan" << QJsonValue(QJsonObject());
        QTest::newRow("knx address") << ask_t([](rt_drivers_t* s) {
            s->getKnx()->getInterfaces(1)->requestSetAddressKNX(QStringLiteral("1.1.250"));
        }) << "drivers/driver_knx/interfaces/1/address" << QJsonValue(QJsonObject{{"newvalue", "1.1.250"}});
        QTest::newRow("baos address") << ask_t([](rt_drivers_t* s) {
            s->getBaos()->getInterfaces(0)->requestSetAddressbaos(QStringLiteral("1.1.251"));
        }) << "drivers/driver_baos/interfaces/0/address" << QJsonValue(QJsonObject{{"newvalue", "1.1.251"}});
        QTest::newRow("baos programming toggle") << ask_t([](rt_drivers_t* s) {
            s->getBaos()->getInterfaces(0)->requestSetProgrammingMode(
                rt_object_driver_baos_interface_t::BAOS_PROGRAMING_MODE_TOGLE);
        }) << "drivers/driver_baos/interfaces/0/programming" << QJsonValue(2);
        QTest::newRow("baos reset") << ask_t([](rt_drivers_t* s) {
            s->getBaos()->getInterfaces(0)->requestSetResetUserConfig();
        }) << "drivers/driver_baos/interfaces/0/reset" << QJsonValue(QJsonObject());
        QTest::newRow("baos write") << ask_t([](rt_drivers_t* s) {
            s->getBaos()->getInterfaces(0)->requestSetWriteOnDevice();
        }) << "drivers/driver_baos/interfaces/0/writeondevice" << QJsonValue(QJsonObject());
    }

    void requestsAskTheDriversAndChangeNothing()
    {
        QFETCH(std::function<void(rt_drivers_t*)>, ask);
        QFETCH(QString, topic);
        QFETCH(QJsonValue, payload);
        section->update_knxmode({QStringLiteral("kdrive"), QStringLiteral("baos")}, false);
        rt_object_driver_knx_interface_list const knx = knxInterfaces(2);
        section->getKnx()->update_interface(knx, false);
        qDeleteAll(knx);
        rt_object_driver_baos_interface_list const baos{new rt_object_driver_baos_interface_t};
        section->getBaos()->update_interface(baos, false);
        qDeleteAll(baos);
        QJsonObject const before = section->toJson();

        ask(section);
        QCOMPARE(section->toJson(), before);
        drainEvents();
        QCOMPARE(engine->requests,
                 (QList<QJsonObject>{{{"topic", "request/DB/realtime/" + topic}, {"payload", payload}}}));
        QCOMPARE(engine->total(), 1);
    }

    void refusedRequestsSendNothing()
    {
        section->update_knxmode({QStringLiteral("kdrive")}, false);
        log_capture_t logs;
        section->requestSetKnxMode(ps_knx_mode_t::baos);
        QList<utility::logs::logrecord> const lines = logs.matching("Not possible change knx mode", 2);
        QCOMPARE(lines.size(), 1);
        QVERIFY(lines.first().message.contains("not compatible"));
        QCOMPARE(lines.first().source, QStringLiteral("requestSetKnxMode"));

        rt_object_driver_baos_interface_t interface(QStringLiteral("drivers/driver_baos/interfaces/0"), nullptr);
        interface.initRequestSignals(engine, true);
        interface.requestSetProgrammingMode(rt_object_driver_baos_interface_t::BAOS_PROGRAMING_MODE(3));
        drainEvents();
        QCOMPARE(engine->requests.size(), 0);
        QCOMPARE(engine->errors.size(), 1);
        QCOMPARE(engine->errors.first().second, QStringLiteral("Value not allowed"));
        QCOMPARE(engine->errors.first().first.value("topic").toString(),
                 QStringLiteral("request/DB/realtime/drivers/driver_baos/interfaces/0/programming"));
    }

    void interfacesAreReplacedAndIndexed_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<bool>("found");
        QTest::newRow("first") << 0 << true;
        QTest::newRow("last") << 2 << true;
        QTest::newRow("length") << 3 << false;
        QTest::newRow("negative") << -1 << false;
    }

    void interfacesAreReplacedAndIndexed()
    {
        QFETCH(int, index);
        QFETCH(bool, found);
        rt_drivers_knx_t* knx = section->getKnx();
        rt_object_driver_knx_interface_list const old = knxInterfaces(1);
        knx->update_interface(old, false);
        QPointer<rt_object_driver_knx_interface_t> replaced = knx->getInterfaces(0);
        rt_object_driver_knx_interface_list const given = knxInterfaces(3);
        knx->update_interface(given, true);
        QVERIFY(replaced.isNull());

        rt_object_driver_knx_interface_t* interface = knx->getInterfaces(index);
        QCOMPARE(interface != nullptr, found);
        if (found) {
            QVERIFY(interface != given.at(index));
            QCOMPARE(interface->getIp(), given.at(index)->getIp());
            QCOMPARE(interface->getTopic(), "drivers/driver_knx/interfaces/" + QString::number(index));
        }
        drainEvents();
        QCOMPARE(engine->updated.size(), 1);
        QCOMPARE(engine->updated.first().value("topic").toString(), QStringLiteral("drivers/driver_knx/interfaces"));
        QCOMPARE(engine->updated.first().value("payload").toArray().size(), 3);
        qDeleteAll(old);
        qDeleteAll(given);
    }

    void busStatusIsKeptByKey()
    {
        rt_drivers_knx_t* knx = section->getKnx();
        QScopedPointer<rt_object_driver_knx_status_t> given(knxStatus(true));
        knx->update_status(QStringLiteral("B1"), given.data(), true);
        rt_object_driver_knx_status_t* stored = knx->getStatus(QStringLiteral("B1"));
        QVERIFY(stored != given.data());
        QCOMPARE(stored->getTopic(), QStringLiteral("drivers/driver_knx/status/B1"));
        QCOMPARE(stored->getInfo()->getTopic(), QStringLiteral("drivers/driver_knx/status/B1/info"));
        QCOMPARE(stored->getInfo()->parent(), stored);

        given->update_loop_execution(false, false);
        knx->update_status(QStringLiteral("B1"), given.data(), false);
        QCOMPARE(knx->getStatus(QStringLiteral("B1")), stored); // merged into the same object
        QVERIFY(!stored->getLoopExecution());

        log_capture_t logs;
        QPointer<rt_object_driver_knx_status_t> temporary = knx->getStatus(QStringLiteral("B9"));
        QCOMPARE(logs.matching("New key create app : B9", 6).size(), 1);
        QCOMPARE(logs.records.first().source, QStringLiteral("getStatus"));
        QCOMPARE(temporary->getTopic(), QStringLiteral("drivers/driver_knx/status/B9"));

        knx->update_status(QStringLiteral("B1"), nullptr, true);
        QVERIFY(knx->getStatus().isEmpty());
        drainEvents();
        QVERIFY(temporary.isNull());
        QCOMPARE(engine->notExist, (QList<QJsonObject>{{{"topic", "drivers/driver_knx/status/B9"}}}));
        QCOMPARE(engine->updated.size(), 2);
        QCOMPARE(engine->updated.at(0).value("topic").toString(), QStringLiteral("drivers/driver_knx/status/B1"));
        QCOMPARE(engine->updated.at(1),
                 (QJsonObject{{"topic", "drivers/driver_knx/status/B1"}, {"payload", QJsonValue::Null}}));
    }

    void resetsClearTheirOwnPartOnly()
    {
        QScopedPointer<rt_object_driver_knx_status_t> status(knxStatus(true));
        rt_object_driver_knx_status_detail_t* info = status->getInfo();
        info->update_access_port_error(QStringLiteral("e"), false);
        info->update_packet_tx(5, false);

        status->update_reset_status(false);
        QVERIFY(!status->getLoopExecution());
        QCOMPARE(status->getInfo(), info);
        QCOMPARE(info->getBusDisconnected(), QStringLiteral("2024-05-01 10:00"));

        info->update_reset_info(false);
        QCOMPARE(info->toJson(), (QJsonObject{{"accessPortError", ""},
                                              {"accessPortClose", ""},
                                              {"accessPortTeminate", ""},
                                              {"busDisconnected", ""},
                                              {"deviceNotFound", ""},
                                              {"interfaceId", 2}}));
        QCOMPARE(info->getPacketTX(), 5);
    }

    void packetCountersLiveInMemoryOnly_data()
    {
        QTest::addColumn<bool>("baos");
        QTest::newRow("knx") << false;
        QTest::newRow("baos") << true;
    }

    void packetCountersLiveInMemoryOnly()
    {
        QFETCH(bool, baos);
        QString const driver = baos ? "driver_baos" : "driver_knx";
        if (baos) {
            rt_object_driver_baos_status_t status;
            section->getBaos()->update_status(QStringLiteral("B"), &status, false);
            rt_object_driver_baos_status_detail_t* info = section->getBaos()->getStatus(QStringLiteral("B"))->getInfo();
            info->update_packet_tx(11, false);
            info->update_packet_rx(12, true);
            info->update_in_download(true, false);
            QCOMPARE(rt_object_driver_baos_status_detail_t(*info).getPacketRX(), 12);
        } else {
            rt_object_driver_knx_status_t status;
            section->getKnx()->update_status(QStringLiteral("B"), &status, false);
            rt_object_driver_knx_status_detail_t* info = section->getKnx()->getStatus(QStringLiteral("B"))->getInfo();
            info->update_packet_tx(11, false);
            info->update_packet_rx(12, true);
            QCOMPARE(rt_object_driver_knx_status_detail_t(*info).getPacketRX(), 12);
        }
        QJsonObject const info = section->toJson()
                                     .value(driver)
                                     .toObject()
                                     .value("status")
                                     .toObject()
                                     .value("B")
                                     .toObject()
                                     .value("info")
                                     .toObject();
        QVERIFY(!info.contains("packetTX"));
        QVERIFY(!info.contains("packetRX"));
        QStringList expected{"accessPortError", "accessPortClose", "accessPortTeminate", "busDisconnected",
                             "deviceNotFound"};
        if (baos)
            expected << "inProgramming" << "inDownload" << "deviceInWrite";
        expected << "interfaceId";
        QMetaObject const* meta = baos ? &rt_object_driver_baos_status_detail_t::staticMetaObject
                                       : &rt_object_driver_knx_status_detail_t::staticMetaObject;
        QStringList stored;
        for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
            if (meta->property(i).isStored())
                stored.append(QString::fromLatin1(meta->property(i).name()));
        }
        QCOMPARE(stored, expected);
        QCOMPARE(info.keys().size(), expected.size());

        drainEvents();
        QCOMPARE(engine->updated.size(), 1);
        QCOMPARE(engine->updated.first().value("topic").toString(), "drivers/" + driver + "/status/B/info");
    }

    void knxModesArePublishedAlone()
    {
        QSignalSpy spy(section, &rt_drivers_t::knx_modeChanged);
        QVERIFY(spy.isValid());
        QCOMPARE(spy.count(), 0);
        section->update_knxmode({QStringLiteral("kdrive"), QStringLiteral("baos")}, true);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(section->getKnxMode(), (QStringList{"kdrive", "baos"}));
        drainEvents();
        QCOMPARE(engine->updated, (QList<QJsonObject>{{{"topic", "drivers/knx_mode"},
                                                       {"payload", QJsonArray{"kdrive", "baos"}}}}));
    }

    void sectionUpdateReplacesTheDriversOnly()
    {
        section->update_knxmode({QStringLiteral("kdrive")}, false);
        QPointer<rt_drivers_knx_t> oldKnx = section->getKnx();
        rt_drivers_t other;
        QScopedPointer<rt_object_driver_knx_status_t> status(knxStatus(true));
        other.getKnx()->update_status(QStringLiteral("B1"), status.data(), false);
        other.update_knxmode({QStringLiteral("baos")}, false);
        other.getInternal()->getSensors()->getLux()->update_value(QStringLiteral("320"), false);

        section->update(&other, true);
        QVERIFY(oldKnx.isNull()); // replaced at once
        QCOMPARE(section->getKnx()->parent(), section);
        QCOMPARE(section->getKnx()->getStatus().keys(), QStringList{"B1"});
        QCOMPARE(section->getInternal()->getSensors()->getLux()->getValue(), QStringLiteral("320"));
        QCOMPARE(section->getKnxMode(), QStringList{"kdrive"});

        // The new drivers answer to the engine.
        section->getKnx()->getStatus(QStringLiteral("B1"))->update_loop_execution(false, true);

        section->update(nullptr, true);
        drainEvents();
        QCOMPARE(engine->updated.size(), 2);
        QCOMPARE(engine->updated.at(0).value("topic").toString(), QStringLiteral("drivers"));
        QCOMPARE(engine->updated.at(1).value("topic").toString(), QStringLiteral("drivers/driver_knx/status/B1"));
        QCOMPARE(engine->errors.size(), 1);
        QCOMPARE(engine->errors.first().second, QStringLiteral("Not permitted nullptr"));
    }

    void sensorsAreUpdatedInPlace()
    {
        rt_object_driver_internal_sensors_t* sensors = section->getInternal()->getSensors();
        auto* temperature = sensors->getTemperature();
        rt_object_driver_internal_sensors_t given;
        given.getTemperature()->update_value(QStringLiteral("21.5"), false);
        section->getInternal()->update(&given, true);
        QCOMPARE(sensors->getTemperature(), temperature);
        QCOMPARE(temperature->getValue(), QStringLiteral("21.5"));
        drainEvents();
        QCOMPARE(engine->updated.size(), 1);
        QCOMPARE(engine->updated.first().value("topic").toString(), QStringLiteral("drivers/driver_internal/sensors"));
    }

    void sectionSurvivesJsonRoundTrip()
    {
        section->update_knxmode({QStringLiteral("kdrive"), QStringLiteral("baos")}, false);
        rt_object_driver_knx_interface_list const knx = knxInterfaces(2);
        section->getKnx()->update_interface(knx, false);
        qDeleteAll(knx);
        rt_object_driver_knx_map statuses{{"B1", knxStatus(true)}, {"B2", knxStatus(false)}};
        section->getKnx()->update_status(statuses, false);
        qDeleteAll(statuses);
        rt_object_driver_baos_status_t baos;
        baos.getInfo()->update_in_programming(true, false);
        section->getBaos()->update_status(QStringLiteral("D"), &baos, false);
        section->getInternal()->getSensors()->getHumidity()->update_value(QStringLiteral("40"), false);

        QJsonObject const json = section->toJson();
        QScopedPointer<rt_drivers_t> back(serializer()->deserialize<rt_drivers_t*>(json));
        QVERIFY(back);
        QCOMPARE(back->toJson(), json);
        back->initRequestSignals(engine, true);
        QCOMPARE(back->getKnx()->getInterfaces(1)->getTopic(), QStringLiteral("drivers/driver_knx/interfaces/1"));
        QCOMPARE(back->getKnx()->getInterfaces(1)->parent(), nullptr); // the list owns them
        QCOMPARE(back->getBaos()->getStatus(QStringLiteral("D"))->getInfo()->getTopic(),
                 QStringLiteral("drivers/driver_baos/status/D/info"));

        rt_drivers_t copy(*section);
        QCOMPARE(copy.parent(), nullptr);
        QCOMPARE(copy.toJson(), json);
        QVERIFY(!(copy == *section));
        QVERIFY(*section == *section);
    }
};

QTEST_GUILESS_MAIN(tst_rt_drivers)
#include "tst_rt_drivers.moc"
