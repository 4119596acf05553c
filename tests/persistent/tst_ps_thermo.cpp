#include <QJsonDocument>
#include <QPointer>
#include <QSignalSpy>
#include <QtTest>

#include "database/definition/type_thermostat_hydro_params_t.h"
#include "database/definition/type_thermostat_thermo_params_t.h"
#include "database/persistent/dbs/ps_thermo_t.h"
#include "database/persistent/objects/thermo/ps_object_thermo_isteresi_t.h"
#include "database/persistent/objects/thermo/ps_object_thermo_pi_t.h"
#include "database/persistent/objects/thermo/ps_object_thermo_pwm_t.h"
#include "database/utility/utility.h"
#include "platform/qjsonserializer/qjsonserializer.h"
#include "support/model_test.h"
#include "support/log_capture.h"
#include "support/packet_recorder.h"

using database::definition::type_thermostat_hydro_params_t;
using database::definition::type_thermostat_thermo_params_t;
using database::persistent::ps_thermostat_map;
using database::persistent::dbs::ps_thermo_t;
using database::persistent::objects::ps_object_hydro_base_t;
using database::persistent::objects::ps_object_thermo_base_t;
using database::persistent::objects::ps_object_thermo_isteresi_t;
using database::persistent::objects::ps_object_thermo_pi_t;
using database::persistent::objects::ps_object_thermo_pwm_t;
using database::persistent::objects::ps_object_thermostat_t;

/// A loop of an algorithm this program doesn't know, as a newer peer might send.
class thermo_foreign_t : public ps_object_thermo_base_t
{
    Q_OBJECT
public:
    using ps_object_thermo_base_t::ps_object_thermo_base_t;
    int getType() const override { return 7; }
};

namespace {



ps_object_thermo_base_t* makeLoop(QString const& className)
{
    ps_object_thermo_base_t* loop = nullptr;
    if (className == "ps_object_thermo_isteresi_t") {
        auto* isteresi = new ps_object_thermo_isteresi_t;
        isteresi->setIsteresiUp(0.25);
        isteresi->setIsteresiDown(1.5);
        loop = isteresi;
    } else if (className == "ps_object_thermo_pi_t" || className == "ps_object_thermo_pwm_t") {
        auto* modulating = className == "ps_object_thermo_pi_t" ? new ps_object_thermo_pi_t : new ps_object_thermo_pwm_t;
        modulating->setHeatSys(QStringLiteral("radiator"));
        modulating->setCalcTime(600);
        loop = modulating;
    } else if (className == "thermo_foreign_t") {
        loop = new thermo_foreign_t;
    } else {
        loop = new ps_object_thermo_base_t;
    }
    loop->setIdActual(QStringLiteral("T_ACT"));
    loop->setId(type_thermostat_thermo_params_t::idsetpoint, QStringLiteral("T_SP"));
    loop->setSeasonType(ps_object_thermo_base_t::ONLY_COOLING);
    loop->setAntifreezer(7);
    loop->setOutputType(3);
    return loop;
}

ps_object_thermostat_t* makeThermostat(QString const& loopClass, QString const& thermoActual = "T_ACT",
                                       QString const& hydroActual = "H_ACT")
{
    auto* hydro = new ps_object_hydro_base_t;
    hydro->setIdActual(hydroActual);
    hydro->setId(type_thermostat_hydro_params_t::idoutput, QStringLiteral("H_OUT"));
    ps_object_thermo_base_t* loop = makeLoop(loopClass);
    loop->setIdActual(thermoActual);
    return new ps_object_thermostat_t(QStringLiteral("Living"), QStringLiteral("WIN"), true, false, false, true, true,
                                      loop, hydro, nullptr);
}

QString className(QObject const* object)
{
    return QString::fromLatin1(object->metaObject()->className()).section(QStringLiteral("::"), -1);
}

} // namespace

class tst_ps_thermo : public QObject
{
    Q_OBJECT

private:
    ps_thermo_t* section = nullptr;
    packet_recorder_t* engine = nullptr;

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(database::utility::getInstance());
        QJsonSerializer::registerObjectType<thermo_foreign_t>();
    }

    void init()
    {
        section = new ps_thermo_t;
        engine = new packet_recorder_t;
        section->initRequestSignals(engine, true);
    }

    void cleanup()
    {
        delete section;
        delete engine;
        drainEvents();
    }

    void defaultsSerializeAsTheFactoryDocument()
    {
        QCOMPARE(section->toJson(), (QJsonObject{{"objects_list", QJsonObject()}, {"enabled", true}}));

        ps_object_thermostat_t thermostat;
        QJsonObject const json = thermostat.toJson();
        QCOMPARE(json.keys(), (QStringList{"id_win", "name", "thermo", "thermo_enabled"}));
        QCOMPARE(json.value("thermo_enabled").toBool(), false);
        QJsonObject const loop = json.value("thermo").toObject();
        QCOMPARE(loop.value("@class").toString(), QStringLiteral("ps_object_thermo_isteresi_t"));
        QJsonObject const expected{{"@class", "ps_object_thermo_isteresi_t"},
                                   {"items", QJsonObject()},
                                   {"idactual", ""},
                                   {"seasontype", 0},
                                   {"win_enable", false},
                                   {"antifreezer", 5},
                                   {"antioverheating", 45},
                                   {"offset_standby", 2},
                                   {"offset_eco", 4},
                                   {"isteresi_up", 0.5},
                                   {"isteresi_down", 0.5}};
        QCOMPARE(loop, expected);
        QCOMPARE(thermostat.getHydro()->toJson(),
                 (QJsonObject{{"items", QJsonObject()}, {"idactual", ""}, {"win_enable", false}, {"isteresi", 5},
                              {"fantype", 0}, {"fanisteresi", 5}, {"fanthreshold", 3}}));
    }

    void requestCorrectsLoopsWithoutMeasuredValue_data()
    {
        QTest::addColumn<QString>("thermoActual");
        QTest::addColumn<QString>("hydroActual");
        QTest::addColumn<bool>("thermoEnabled");
        QTest::addColumn<bool>("hydroEnabled");
        QTest::newRow("both measured: both loops stay on") << "T_ACT" << "H_ACT" << true << true;
        QTest::newRow("no temperature: thermo disabled") << "" << "H_ACT" << false << true;
        QTest::newRow("blank temperature counts as none") << "   " << "H_ACT" << false << true;
        QTest::newRow("blank humidity: hydro disabled") << "T_ACT" << " \t" << true << false;
        QTest::newRow("neither measured: both disabled") << "" << "" << false << false;
    }

    void requestCorrectsLoopsWithoutMeasuredValue()
    {
        QFETCH(QString, thermoActual);
        QFETCH(QString, hydroActual);
        QFETCH(bool, thermoEnabled);
        QFETCH(bool, hydroEnabled);

        QScopedPointer<ps_object_thermostat_t> thermostat(makeThermostat("ps_object_thermo_pwm_t", thermoActual,
                                                                         hydroActual));
        log_capture_t logs;
        section->requestSetThermo(QStringLiteral("T1"), thermostat.data());

        QCOMPARE(thermostat->getThermoEnabled(), thermoEnabled);
        QCOMPARE(thermostat->getHydroEnabled(), hydroEnabled);
        QCOMPARE(logs.contains("Disable thermo because id actual temp is not set", 3), !thermoEnabled);
        QCOMPARE(logs.contains("Disable hydro because id actual hydro is not set", 3), !hydroEnabled);

        drainEvents();
        QCOMPARE(engine->requests.size(), 1);
        QJsonObject const packet = engine->requests.first();
        QCOMPARE(packet.value("topic").toString(), QStringLiteral("request/DB/persistent/thermo/objects_list/T1"));
        QCOMPARE(packet.value("payload").toObject().value("thermo_enabled").toBool(), thermoEnabled);
        QVERIFY(section->getObjects().isEmpty());
    }

    void requestWithNullAsksForRemoval()
    {
        log_capture_t logs;
        section->requestSetThermo(QStringLiteral("T1"), nullptr);
        QVERIFY(logs.matching("Disable").isEmpty());
        drainEvents();
        QCOMPARE(engine->requests, (QList<QJsonObject>{QJsonObject{
                                       {"topic", "request/DB/persistent/thermo/objects_list/T1"},
                                       {"payload", QJsonObject()}}}));

        section->requestSetEnabled(false);
        drainEvents();
        QCOMPARE(engine->requests.last(),
                 (QJsonObject{{"topic", "request/DB/persistent/thermo/enabled"}, {"payload", false}}));
    }

    void eachLoopClassRoundTripsThroughJson_data()
    {
        QTest::addColumn<QString>("loopClass");
        QTest::addColumn<QString>("classKey");
        QTest::addColumn<int>("type");
        QTest::newRow("hysteresis") << "ps_object_thermo_isteresi_t" << "ps_object_thermo_isteresi_t" << 0;
        QTest::newRow("proportional-integral answers PWM") << "ps_object_thermo_pi_t" << "ps_object_thermo_pi_t" << 2;
        QTest::newRow("modulating") << "ps_object_thermo_pwm_t" << "ps_object_thermo_pwm_t" << 2;
        QTest::newRow("unknown algorithm has no class key") << "ps_object_thermo_base_t" << "" << -1;
    }

    void eachLoopClassRoundTripsThroughJson()
    {
        QFETCH(QString, loopClass);
        QFETCH(QString, classKey);
        QFETCH(int, type);

        QScopedPointer<ps_object_thermostat_t> thermostat(makeThermostat(loopClass));
        QCOMPARE(thermostat->getThermo()->getType(), type);
        QJsonObject const json = thermostat->toJson();
        QCOMPARE(json.value("thermo").toObject().value("@class").toString(), classKey);

        QScopedPointer<ps_object_thermostat_t> back(
            serializer()->deserialize<ps_object_thermostat_t*>(json, nullptr));
        QVERIFY(back);
        QCOMPARE(className(back->getThermo()), loopClass);
        QCOMPARE(back->getThermo()->parent(), back.data());
        QCOMPARE(back->getThermo()->getSeasonType(), uint(ps_object_thermo_base_t::ONLY_COOLING));
        QCOMPARE(back->getThermo()->getId(type_thermostat_thermo_params_t::idsetpoint), QStringLiteral("T_SP"));
        QCOMPARE(back->toJson(), json);
        // What the document leaves out comes back as the defaults.
        QCOMPARE(back->getHydro()->getIdActual(), QString());
        QCOMPARE(back->getWinNc(), true);
        QCOMPARE(back->getHydroEnabled(), false);
    }

    void sectionRoundTripKeepsClassesPerThermostat()
    {
        QJsonObject const document = QJsonDocument::fromJson(R"({
            "objects_list": {
                "A": {"name": "a", "id_win": "", "thermo_enabled": true,
                      "thermo": {"@class": "ps_object_thermo_pi_t", "calc_time": 300, "seasontype": 1}},
                "B": {"name": "b", "id_win": "", "thermo_enabled": false, "thermo": null}
            },
            "enabled": false
        })").object();
        QScopedPointer<ps_thermo_t> loaded(serializer()->deserialize<ps_thermo_t*>(document, nullptr));
        QVERIFY(loaded);
        QCOMPARE(loaded->getEnabled(), false);
        ps_object_thermostat_t* a = loaded->getObjects().value("A");
        ps_object_thermostat_t* b = loaded->getObjects().value("B");
        QCOMPARE(className(a->getThermo()), QStringLiteral("ps_object_thermo_pi_t"));
        QCOMPARE(qobject_cast<ps_object_thermo_pwm_t*>(a->getThermo())->getCalcTime(), 300);
        QCOMPARE(a->getThermo()->getSeasonType(), uint(ps_object_thermo_base_t::ONLY_HEATING));
        // A null loop in the document leaves the thermostat its default loop.
        QCOMPARE(className(b->getThermo()), QStringLiteral("ps_object_thermo_isteresi_t"));

        loaded->initRequestSignals(engine, true);
        QCOMPARE(a->getThermo()->getTopic(), QStringLiteral("thermo/objects_list/A"));
        QCOMPARE(a->getHydro()->getTopic(), QStringLiteral("thermo/objects_list/A"));
        a->getThermo()->update_enable_window(true, true);
        drainEvents();
        QCOMPARE(engine->updated.size(), 1);
        QCOMPARE(engine->updated.first().value("topic").toString(), QStringLiteral("thermo/objects_list/A"));
    }

    void cloneFollowsTheReportedType_data()
    {
        QTest::addColumn<QString>("loopClass");
        QTest::addColumn<QString>("cloneClass");
        QTest::addColumn<bool>("logged");
        QTest::newRow("hysteresis stays hysteresis") << "ps_object_thermo_isteresi_t" << "ps_object_thermo_isteresi_t"
                                                     << false;
        QTest::newRow("proportional-integral becomes PWM") << "ps_object_thermo_pi_t" << "ps_object_thermo_pwm_t"
                                                           << false;
        QTest::newRow("modulating stays modulating") << "ps_object_thermo_pwm_t" << "ps_object_thermo_pwm_t" << false;
        QTest::newRow("unknown algorithm stays base") << "ps_object_thermo_base_t" << "ps_object_thermo_base_t"
                                                      << false;
        QTest::newRow("foreign type falls back to base") << "thermo_foreign_t" << "ps_object_thermo_base_t" << true;
    }

    void cloneFollowsTheReportedType()
    {
        QFETCH(QString, loopClass);
        QFETCH(QString, cloneClass);
        QFETCH(bool, logged);

        QScopedPointer<ps_object_thermo_base_t> loop(makeLoop(loopClass));
        log_capture_t logs;
        QScopedPointer<ps_object_thermo_base_t> copy(loop->clone());
        QCOMPARE(logs.contains("Cannot create element of unknown type", 2), logged);
        QCOMPARE(className(copy.data()), cloneClass);
        QVERIFY(!copy->parent());
        QVERIFY(copy->compare(loop.data()));
        QCOMPARE(copy->getIdActual(), QStringLiteral("T_ACT"));
        auto* modulating = qobject_cast<ps_object_thermo_pwm_t*>(copy.data());
        if (modulating)
            QCOMPARE(modulating->getHeatSys(), QStringLiteral("radiator"));
    }

    void isEqualComparesByReportedType_data()
    {
        QTest::addColumn<QString>("oneClass");
        QTest::addColumn<QString>("otherClass");
        QTest::addColumn<bool>("equal");
        QTest::addColumn<bool>("logged");
        QTest::newRow("PI equals PWM of same values") << "ps_object_thermo_pi_t" << "ps_object_thermo_pwm_t" << true
                                                      << false;
        QTest::newRow("PWM equals PI of same values") << "ps_object_thermo_pwm_t" << "ps_object_thermo_pi_t" << true
                                                      << false;
        QTest::newRow("hysteresis never equals PWM") << "ps_object_thermo_isteresi_t" << "ps_object_thermo_pwm_t"
                                                     << false << false;
        QTest::newRow("same hysteresis values") << "ps_object_thermo_isteresi_t" << "ps_object_thermo_isteresi_t"
                                                << true << false;
        QTest::newRow("two unknown loops are distinct") << "ps_object_thermo_base_t" << "ps_object_thermo_base_t"
                                                        << false << false;
        QTest::newRow("foreign loops can't be compared") << "thermo_foreign_t" << "thermo_foreign_t" << false << true;
    }

    void isEqualComparesByReportedType()
    {
        QFETCH(QString, oneClass);
        QFETCH(QString, otherClass);
        QFETCH(bool, equal);
        QFETCH(bool, logged);

        QScopedPointer<ps_object_thermo_base_t> one(makeLoop(oneClass));
        QScopedPointer<ps_object_thermo_base_t> other(makeLoop(otherClass));
        log_capture_t logs;
        QCOMPARE(one->isEqual(other.data()), equal);
        QCOMPARE(logs.contains("Not implemted operator == ", 2), logged);
        QVERIFY(!one->isEqual(nullptr));
        if (one->getType() == ps_object_thermo_base_t::THERMO_UNKNOWN)
            QVERIFY(one->isEqual(one.data()));
    }

    void valuesOfTheAlgorithmCountInIsEqualOnly()
    {
        QScopedPointer<ps_object_thermo_base_t> one(makeLoop("ps_object_thermo_pwm_t"));
        QScopedPointer<ps_object_thermo_base_t> other(one->clone());
        static_cast<ps_object_thermo_pwm_t*>(other.data())->setCalcTime(60);
        QVERIFY(!one->isEqual(other.data()));
        // The thermostat looks at the loop's common fields only.
        QScopedPointer<ps_object_thermostat_t> a(makeThermostat("ps_object_thermo_pwm_t"));
        QScopedPointer<ps_object_thermostat_t> b(new ps_object_thermostat_t(*a));
        static_cast<ps_object_thermo_pwm_t*>(b->getThermo())->setCalcTime(60);
        QVERIFY(*a == *b);
        b->getThermo()->setOutputType(9);
        QVERIFY(!(*a == *b));
        b->getThermo()->setOutputType(a->getThermo()->getOutputType());
        b->getHydro()->setIsteresi(1);
        QVERIFY(!(*a == *b));
    }

    void thermostatUpdateKeepsItsLoopClass_data()
    {
        QTest::addColumn<QString>("mineClass");
        QTest::addColumn<QString>("theirsClass");
        QTest::addColumn<bool>("ownFieldsTaken");
        QTest::addColumn<bool>("commonFieldsTaken");
        QTest::addColumn<bool>("logged");
        QTest::newRow("PI from PWM takes everything") << "ps_object_thermo_pi_t" << "ps_object_thermo_pwm_t" << true
                                                      << true << false;
        QTest::newRow("hysteresis from PWM takes common fields") << "ps_object_thermo_isteresi_t"
                                                                 << "ps_object_thermo_pwm_t" << false << true << false;
        QTest::newRow("from an unknown loop nothing of the loop")
            << "ps_object_thermo_pwm_t" << "ps_object_thermo_base_t" << false << false << true;
    }

    void thermostatUpdateKeepsItsLoopClass()
    {
        QFETCH(QString, mineClass);
        QFETCH(QString, theirsClass);
        QFETCH(bool, ownFieldsTaken);
        QFETCH(bool, commonFieldsTaken);
        QFETCH(bool, logged);

        ps_object_thermostat_t mine(QStringLiteral("thermo/objects_list/T1"), nullptr);
        mine.setThermo(makeLoop(mineClass));
        QScopedPointer<ps_object_thermostat_t> theirs(makeThermostat(theirsClass));
        theirs->setName(QStringLiteral("Kitchen"));
        theirs->getThermo()->setAntioverheating(30);
        if (auto* modulating = qobject_cast<ps_object_thermo_pwm_t*>(theirs->getThermo()))
            modulating->setCoolSys(QStringLiteral("ceiling"));
        ps_object_thermo_base_t* loop = mine.getThermo();

        log_capture_t logs;
        mine.update(theirs.data(), false);
        QCOMPARE(logs.contains("Not implemted operator == ", 2), logged);
        QCOMPARE(mine.getThermo(), loop);
        QCOMPARE(className(mine.getThermo()), mineClass);
        QCOMPARE(mine.getName(), QStringLiteral("Kitchen"));
        QCOMPARE(mine.getHydro()->getIdActual(), QStringLiteral("H_ACT"));
        QCOMPARE(mine.getThermo()->getAntioverheating() == 30u, commonFieldsTaken);
        if (auto* modulating = qobject_cast<ps_object_thermo_pwm_t*>(mine.getThermo()))
            QCOMPARE(modulating->getCoolSys() == QStringLiteral("ceiling"), ownFieldsTaken);
        QCOMPARE(mine.getTopic(), QStringLiteral("thermo/objects_list/T1"));
    }

    void storedCopyOfPiThermostatIsPwm()
    {
        QScopedPointer<ps_object_thermostat_t> mine(makeThermostat("ps_object_thermo_pi_t"));
        section->update_thermos(QStringLiteral("T1"), mine.data(), true);
        ps_object_thermostat_t* stored = section->getObjects().value("T1");
        QVERIFY(stored && stored != mine.data());
        QCOMPARE(className(stored->getThermo()), QStringLiteral("ps_object_thermo_pwm_t"));
        QVERIFY(stored->getThermo()->isEqual(mine->getThermo()));
        QCOMPARE(stored->getThermo()->getTopic(), QStringLiteral("thermo/objects_list/T1"));
        QCOMPARE(stored->getHydro()->getId(type_thermostat_hydro_params_t::idoutput), QStringLiteral("H_OUT"));

        drainEvents();
        QCOMPARE(engine->updated.size(), 1);
        QJsonObject const payload = engine->updated.first().value("payload").toObject();
        QCOMPARE(payload.value("thermo").toObject().value("@class").toString(), QStringLiteral("ps_object_thermo_pwm_t"));
    }

    void nullArgumentsAreRefused_data()
    {
        QTest::addColumn<QString>("target");
        QTest::newRow("thermostat") << "thermostat";
        QTest::newRow("temperature loop") << "thermo";
        QTest::newRow("humidity loop") << "hydro";
    }

    void nullArgumentsAreRefused()
    {
        QFETCH(QString, target);
        QScopedPointer<ps_object_thermostat_t> thermostat(makeThermostat("ps_object_thermo_isteresi_t"));
        thermostat->setTopic(QStringLiteral("thermo/objects_list/T1"));
        thermostat->initRequestSignals(engine, true);
        QJsonObject const before = thermostat->toJson();

        if (target == "thermostat")
            thermostat->update(nullptr, true);
        else if (target == "thermo")
            thermostat->getThermo()->update(nullptr, true);
        else
            thermostat->getHydro()->update(nullptr, true);
        drainEvents();
        QCOMPARE(engine->errors.size(), 1);
        QCOMPARE(engine->errors.first().second, QStringLiteral("Not permitted nullptr"));
        QCOMPARE(engine->errors.first().first,
                 (QJsonObject{{"topic", "thermo/objects_list/T1"}, {"payload", QJsonValue::Null}}));
        QVERIFY(engine->updated.isEmpty());
        QCOMPARE(thermostat->toJson(), before);
        QVERIFY(!thermostat->compare(nullptr));
        QVERIFY(!thermostat->getHydro()->isEqual(nullptr));

        // A thermostat never loses a part.
        thermostat->setThermo(nullptr);
        thermostat->setHydro(nullptr);
        QVERIFY(thermostat->getThermo() && thermostat->getHydro());
    }

    void itemReferencesIgnoreBlanks_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QVariantMap>("items");
        QTest::newRow("id is trimmed") << "  K7 " << QVariantMap{{"idsetpoint", "K1"}, {"idoutput", "K7"}};
        QTest::newRow("empty removes the key") << "" << QVariantMap{{"idsetpoint", "K1"}};
        QTest::newRow("blank removes the key") << "   " << QVariantMap{{"idsetpoint", "K1"}};
    }

    void itemReferencesIgnoreBlanks()
    {
        QFETCH(QString, value);
        QFETCH(QVariantMap, items);

        ps_object_thermo_isteresi_t loop;
        ps_object_hydro_base_t hydro;
        loop.setIds(QVariantMap{{"idsetpoint", "K1"}, {"idoutput", "OLD"}});
        hydro.setIds(loop.getIds());
        loop.setId(type_thermostat_thermo_params_t::idoutput, value);
        hydro.setId(type_thermostat_hydro_params_t::idoutput, value);
        QCOMPARE(loop.getIds(), items);
        QCOMPARE(hydro.getIds(), items);
        QCOMPARE(loop.getId(type_thermostat_thermo_params_t::idoutput), items.value("idoutput").toString());
    }

    void measuredValueHasItsOwnField()
    {
        ps_object_thermo_pwm_t loop(QStringLiteral("thermo/objects_list/T1"), nullptr);
        loop.initRequestSignals(engine, true);
        loop.update_id(type_thermostat_thermo_params_t::idactual, QStringLiteral(" A1 "), false);
        loop.update_id(type_thermostat_thermo_params_t::idfan, QStringLiteral("F1"), false);
        QCOMPARE(loop.getIdActual(), QStringLiteral(" A1 "));
        QCOMPARE(loop.getIds(), (QVariantMap{{"idfan", "F1"}}));

        loop.update_reset_id(QStringLiteral("idactual"), false);
        QCOMPARE(loop.getIdActual(), QString());
        loop.update_reset_id(QStringLiteral("idfan"), true);
        QVERIFY(loop.getIds().isEmpty());
        drainEvents();
        QCOMPARE(engine->updated.size(), 1);
        QCOMPARE(engine->updated.first().value("payload").toObject().value("@class").toString(),
                 QStringLiteral("ps_object_thermo_pwm_t"));
    }

    void thermoTypeUpdateOnlyPublishes()
    {
        QScopedPointer<ps_object_thermostat_t> mine(makeThermostat("ps_object_thermo_isteresi_t"));
        section->update_thermos(QStringLiteral("T1"), mine.data(), false);
        ps_object_thermostat_t* stored = section->list(QStringLiteral("T1"));
        stored->update_thermo_type(ps_object_thermo_base_t::THERMO_PWM, true);
        QCOMPARE(className(stored->getThermo()), QStringLiteral("ps_object_thermo_isteresi_t"));
        stored->update_name(QStringLiteral("Bath"), false);
        stored->update_id_win(QStringLiteral("W2"), true);
        drainEvents();
        QCOMPARE(engine->updated.size(), 2);
        QCOMPARE(engine->updated.last().value("payload").toObject().value("name").toString(), QStringLiteral("Bath"));
        QCOMPARE(engine->updated.last().value("payload").toObject().value("id_win").toString(), QStringLiteral("W2"));
    }
};

QTEST_GUILESS_MAIN(tst_ps_thermo)
#include "tst_ps_thermo.moc"
