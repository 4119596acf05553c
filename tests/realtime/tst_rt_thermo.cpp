#include <QPointer>
#include <QSignalSpy>
#include <QtTest>

#include "database/realtime/dbs/rt_thermo_t.h"
#include "support/model_test.h"
#include "support/packet_recorder.h"

using database::realtime::rt_thermostat_map;
using database::realtime::dbs::rt_thermo_t;
using database::realtime::objects::rt_object_hydro_t;
using database::realtime::objects::rt_object_thermo_t;
using database::realtime::objects::rt_object_thermostat_t;

namespace {

// Every field away from its default, the unstored ones too.
rt_object_thermo_t* makeThermo(float actual)
{
    auto* thermo = new rt_object_thermo_t(nullptr);
    thermo->setActualTemp(actual);
    thermo->setSetpoint(21.5f);
    thermo->setSetpointCalculate(21.0f);
    thermo->setSeason(1);
    thermo->setOperationMode(2);
    thermo->setFan(3);
    thermo->setForceFan(1);
    thermo->setOutputTemp(40.5f);
    thermo->setOutputStTemp(12.25f);
    thermo->setError(7);
    thermo->setBattery(true);
    return thermo;
}

rt_object_hydro_t* makeHydro(float actual)
{
    auto* hydro = new rt_object_hydro_t(nullptr);
    hydro->setActual(actual);
    hydro->setSetpoint(55.5f);
    hydro->setSetpointCalculate(54.0f);
    hydro->setOperationMode(2);
    hydro->setOutput(10.5f);
    hydro->setError(3);
    hydro->setFan(2);
    hydro->setForceFan(1);
    return hydro;
}

rt_object_thermostat_t* makeThermostat()
{
    return new rt_object_thermostat_t(true, 12.5f, true, makeThermo(20.5f), makeHydro(50.5f), nullptr);
}

} // namespace

class tst_rt_thermo : public QObject
{
    Q_OBJECT

private:
    rt_thermo_t* section = nullptr;
    packet_recorder_t* engine = nullptr;

private Q_SLOTS:
    void initTestCase() { QVERIFY(database::utility::getInstance()); }

    void init()
    {
        section = new rt_thermo_t;
        engine = new packet_recorder_t;
        section->initRequestSignals(engine, true);
    }

    void cleanup()
    {
        delete section;
        delete engine;
        drainEvents();
    }

    void newAndClearedModes_data()
    {
        QTest::addColumn<bool>("hydro");
        QTest::addColumn<bool>("cleared");
        QTest::addColumn<int>("mode");
        QTest::newRow("new thermo") << false << false << 4;
        QTest::newRow("cleared thermo") << false << true << 1;
        QTest::newRow("new hydro") << true << false << 4;
        QTest::newRow("cleared hydro") << true << true << 4;
    }

    void newAndClearedModes()
    {
        QFETCH(bool, hydro);
        QFETCH(bool, cleared);
        QFETCH(int, mode);
        if (hydro) {
            QScopedPointer<rt_object_hydro_t> object(makeHydro(50));
            if (cleared)
                object->update(nullptr, false);
            else
                object.reset(new rt_object_hydro_t);
            QCOMPARE(object->getOperationMode(), mode);
            QVERIFY(*object == rt_object_hydro_t() || mode != 4);
        } else {
            QScopedPointer<rt_object_thermo_t> object(makeThermo(20));
            if (cleared)
                object->update(nullptr, false);
            else
                object.reset(new rt_object_thermo_t);
            QCOMPARE(object->getOperationMode(), mode);
            QCOMPARE(object->getFan(), 0);
            QCOMPARE(object->getBattery(), false);
            QCOMPARE(object->getActualTemp(), 0.0f);
        }
    }

    void partsCopyEveryFieldStoredOrNot()
    {
        QScopedPointer<rt_object_thermo_t> source(makeThermo(20.5f));
        rt_object_thermo_t thermo;
        thermo.update(source.data(), false);
        QVERIFY(thermo == *source);
        QCOMPARE(thermo.getFan(), 3);
        QCOMPARE(thermo.getBattery(), true);
        thermo.setForceFan(0);
        QVERIFY(!(thermo == *source)); // memory-only fields count in the comparison

        QScopedPointer<rt_object_hydro_t> hydroSource(makeHydro(50.5f));
        rt_object_hydro_t hydro;
        hydro.update(hydroSource.data(), false);
        QVERIFY(hydro == *hydroSource);
    }

    void jsonLeavesOutMemoryOnlyFields()
    {
        QScopedPointer<rt_object_thermostat_t> thermostat(makeThermostat());
        QJsonObject const json = thermostat->toJson();
        QCOMPARE(json.keys(), (QStringList{"thermo", "win_open"}));
        QCOMPARE(json.value("thermo").toObject().keys(),
                 (QStringList{"actual", "error", "mode", "out_st", "output", "season", "set_calc", "setpoint"}));
        QCOMPARE(thermostat->getHydro()->toJson().keys(),
                 (QStringList{"actual", "error", "fan", "forceFan", "mode", "output", "set", "set_calc"}));

        QScopedPointer<rt_object_thermostat_t> back(serializer()->deserialize<rt_object_thermostat_t*>(json));
        QVERIFY(back);
        QCOMPARE(back->toJson(), json);
        QCOMPARE(back->getThermo()->getFan(), 0);
        QCOMPARE(back->getThermo()->getBattery(), false);
        QCOMPARE(back->getDew_point(), 0.0f);
        QVERIFY(*back->getHydro() == rt_object_hydro_t());
        QCOMPARE(back->getThermo()->parent(), nullptr);
    }

    void thermostatUpdateTakesBothPartsAndPublishesOnce()
    {
        rt_object_thermostat_t thermostat(QStringLiteral("thermo/objects_list/T1"), nullptr);
        QSignalSpy updated(&thermostat, &rt_object_thermostat_t::onUpdated);
        QVERIFY(updated.isValid());
        QCOMPARE(updated.count(), 0);
        QScopedPointer<rt_object_thermostat_t> source(makeThermostat());

        thermostat.update(source.data(), true);
        QVERIFY(thermostat == *source);
        QCOMPARE(thermostat.getThermo()->getTopic(), QStringLiteral("thermo/objects_list/T1/thermo"));
        QCOMPARE(updated.count(), 1);
        QCOMPARE(updated.first().at(0).toJsonObject(),
                 (QJsonObject{{"topic", "thermo/objects_list/T1"}, {"payload", source->toJson()}}));

        thermostat.update(nullptr, false);
        QCOMPARE(thermostat.getWin_open(), false);
        QCOMPARE(thermostat.getProt_dew_poin(), false);
        QCOMPARE(thermostat.getThermo()->getOperationMode(), 1);
        QCOMPARE(thermostat.getHydro()->getOperationMode(), 4);
        QCOMPARE(thermostat.getHydro()->getActual(), 0.0f);
        QCOMPARE(updated.count(), 1);
    }

    void partOnUnknownKeyCreatesThermostat_data()
    {
        QTest::addColumn<bool>("hydro");
        QTest::newRow("thermo") << false;
        QTest::newRow("hydro") << true;
    }

    void partOnUnknownKeyCreatesThermostat()
    {
        QFETCH(bool, hydro);
        QScopedPointer<rt_object_thermo_t> thermo(makeThermo(22.5f));
        QScopedPointer<rt_object_hydro_t> humidity(makeHydro(60.5f));
        if (hydro)
            section->update_hydro(QStringLiteral("T1"), humidity.data(), true);
        else
            section->update_thermo(QStringLiteral("T1"), thermo.data(), true);

        rt_object_thermostat_t* stored = section->getObjects().value("T1");
        QVERIFY(stored);
        QCOMPARE(stored->getTopic(), QStringLiteral("thermo/objects_list/T1"));
        QCOMPARE(stored->getThermo()->getTopic(), QStringLiteral("thermo/objects_list/T1/thermo"));
        QCOMPARE(stored->getHydro()->getTopic(), QStringLiteral("thermo/objects_list/T1/hydro"));
        // Both parts are addressed under "/thermo" on their way in.
        QCOMPARE((hydro ? humidity->getTopic() : thermo->getTopic()), QStringLiteral("thermo/objects_list/T1/thermo"));
        QCOMPARE(*stored->getThermo() == *thermo, !hydro);
        QCOMPARE(*stored->getHydro() == *humidity, hydro);
        QCOMPARE(stored->getWin_open(), false);

        drainEvents();
        QCOMPARE(engine->updated.size(), 1);
        QCOMPARE(engine->updated.first(),
                 (QJsonObject{{"topic", "thermo/objects_list/T1"}, {"payload", stored->toJson()}}));
    }

    void nullPartStartsThatPartAfresh_data()
    {
        QTest::addColumn<bool>("hydro");
        QTest::newRow("room control") << false;
        QTest::newRow("hydronic control") << true;
    }

    // Unlike a part's own update(null), which leaves the room control in mode
    // 1, a null part given to the section is a new part: mode 4 on both halves.
    void nullPartStartsThatPartAfresh()
    {
        QFETCH(bool, hydro);
        QScopedPointer<rt_object_thermostat_t> source(makeThermostat());
        section->update(QStringLiteral("T1"), source.data(), false);
        rt_object_thermostat_t* stored = section->getObjects().value("T1");

        if (hydro)
            section->update_hydro(QStringLiteral("T1"), nullptr, true);
        else
            section->update_thermo(QStringLiteral("T1"), nullptr, true);

        QCOMPARE(section->getObjects().value("T1"), stored);
        QCOMPARE(stored->getWin_open(), true);
        if (hydro) {
            QVERIFY(*stored->getHydro() == rt_object_hydro_t());
            QCOMPARE(stored->getThermo()->getActualTemp(), 20.5f);
        } else {
            QVERIFY(*stored->getThermo() == rt_object_thermo_t());
            QCOMPARE(stored->getThermo()->getOperationMode(), 4);
            QCOMPARE(stored->getHydro()->getActual(), 50.5f);
        }
        drainEvents();
        QCOMPARE(engine->updated.size(), 1);
        QCOMPARE(engine->updated.first().value("payload").toObject(), stored->toJson());

        // The fresh part keeps its own topic and one connection to the engine.
        engine->clear();
        if (hydro)
            stored->getHydro()->requestSetOperationMode(3);
        else
            stored->getThermo()->requestSetOperationMode(3);
        drainEvents();
        QString const half = hydro ? QStringLiteral("hydro") : QStringLiteral("thermo");
        QCOMPARE(engine->requests.size(), 1);
        QCOMPARE(engine->requests.first().value("topic").toString(),
                 "request/DB/realtime/thermo/objects_list/T1/" + half + "/mode");
    }

    void nullPartOnUnknownKeyOnlyPublishesNull()
    {
        section->update_thermo(QStringLiteral("T9"), nullptr, true);
        section->update_hydro(QStringLiteral("T9"), nullptr, false);
        QVERIFY(section->getObjects().isEmpty());
        drainEvents();
        QJsonObject const expected{{"topic", "thermo/objects_list/T9"}, {"payload", QJsonValue()}};
        QCOMPARE(engine->updated, QList<QJsonObject>{expected});
    }

    void replacedThermostatsGiveTheirPartsTopics()
    {
        QScopedPointer<rt_object_thermostat_t> source(makeThermostat());
        QPointer<rt_object_thermostat_t> old;
        section->update(QStringLiteral("T0"), source.data(), false);
        old = section->getObjects().value("T0");

        section->update(rt_thermostat_map{{"T1", source.data()}, {"T2", source.data()}}, true);
        QCOMPARE(section->getObjects().keys(), (QStringList{"T1", "T2"}));
        QCOMPARE(section->getObjects().value("T2")->getHydro()->getTopic(), QStringLiteral("thermo/objects_list/T2/hydro"));
        QVERIFY(*section->getObjects().value("T2") == *source);
        drainEvents();
        QVERIFY(old.isNull());
        QCOMPARE(engine->updated.size(), 1);
        QCOMPARE(engine->updated.first().value("topic").toString(), QStringLiteral("thermo/objects_list"));

        section->update(QStringLiteral("T1"), nullptr, true);
        QCOMPARE(section->getObjects().keys(), QStringList{"T2"});
        QTRY_COMPARE(engine->updated.size(), 2);
        QCOMPARE(engine->updated.last(), (QJsonObject{{"topic", "thermo/objects_list/T1"}, {"payload", QJsonValue()}}));
    }

    void requestsAskWithoutChanging_data()
    {
        QTest::addColumn<QString>("call");
        QTest::addColumn<QString>("topic");
        QTest::addColumn<QJsonValue>("payload");
        QString const base = QStringLiteral("request/DB/realtime/thermo/objects_list/T1/");
        QTest::newRow("thermo season") << "thermo season" << base + "thermo/season" << QJsonValue(2);
        QTest::newRow("thermo mode") << "thermo mode" << base + "thermo/mode" << QJsonValue(3);
        QTest::newRow("thermo fan") << "thermo fan" << base + "thermo/fan" << QJsonValue(1);
        QTest::newRow("thermo forced fan") << "thermo forceFan" << base + "thermo/forceFan" << QJsonValue(1);
        QTest::newRow("thermo setpoint") << "thermo setpoint" << base + "thermo/setpoint" << QJsonValue(23.5);
        QTest::newRow("hydro mode") << "hydro mode" << base + "hydro/mode" << QJsonValue(3);
        QTest::newRow("hydro fan") << "hydro fan" << base + "hydro/fan" << QJsonValue(1);
        QTest::newRow("hydro forced fan") << "hydro forceFan" << base + "hydro/forceFan" << QJsonValue(1);
        QTest::newRow("hydro setpoint asked as setpoint") << "hydro setpoint" << base + "hydro/setpoint"
                                                          << QJsonValue(45.5);
    }

    void requestsAskWithoutChanging()
    {
        QFETCH(QString, call);
        QFETCH(QString, topic);
        QFETCH(QJsonValue, payload);
        QScopedPointer<rt_object_thermostat_t> source(makeThermostat());
        section->update(QStringLiteral("T1"), source.data(), false);
        rt_object_thermostat_t* stored = section->getObjects().value("T1");
        QJsonObject const before = stored->toJson();
        rt_object_thermo_t* thermo = stored->getThermo();
        rt_object_hydro_t* hydro = stored->getHydro();

        int const value = payload.toInt();
        if (call == QLatin1String("thermo season"))
            thermo->requestSetSeason(value);
        else if (call == QLatin1String("thermo mode"))
            thermo->requestSetOperationMode(value);
        else if (call == QLatin1String("thermo fan"))
            thermo->requestSetFan(value);
        else if (call == QLatin1String("thermo forceFan"))
            thermo->requestSetFanForce(value);
        else if (call == QLatin1String("thermo setpoint"))
            thermo->requestSetSetPoint(float(payload.toDouble()));
        else if (call == QLatin1String("hydro mode"))
            hydro->requestSetOperationMode(value);
        else if (call == QLatin1String("hydro fan"))
            hydro->requestSetFan(value);
        else if (call == QLatin1String("hydro forceFan"))
            hydro->requestSetFanForce(value);
        else
            hydro->requestSetSetPoint(float(payload.toDouble()));

        QTRY_COMPARE(engine->requests.size(), 1);
        QCOMPARE(engine->requests.first(), (QJsonObject{{"topic", topic}, {"payload", payload}}));
        QCOMPARE(stored->toJson(), before);
        QVERIFY(*hydro == *source->getHydro());
    }
};

QTEST_GUILESS_MAIN(tst_rt_thermo)
#include "tst_rt_thermo.moc"
