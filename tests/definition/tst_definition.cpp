#include "database/definition/baos/type_dtp_baos_t.h"
#include "database/definition/baos/type_interfaces_baos_t.h"
#include "database/definition/knx/type_dtp_knx_t.h"
#include "database/definition/knx/type_interfaces_knx_t.h"
#include "database/definition/service_t.h"
#include "database/definition/smtp/type_smtp_auth_type_t.h"
#include "database/definition/smtp/type_smtp_connection_type_t.h"
#include "database/definition/type_brand_t.h"
#include "database/definition/type_cron_t.h"
#include "database/definition/type_item_address_t.h"
#include "database/definition/type_knx_mode_t.h"
#include "database/definition/type_notification_verbosity_t.h"
#include "database/definition/type_object_t.h"
#include "database/definition/type_object_thermostat_thermo_type_arg.h"
#include "database/definition/type_object_thermostat_type_arg.h"
#include "database/definition/type_rules_t.h"
#include "database/definition/type_smartbutton_state_t.h"
#include "database/definition/type_sun_t.h"
#include "database/definition/type_thermostat_hydro_params_t.h"
#include "database/definition/type_thermostat_thermo_params_t.h"
#include "database/persistent/define/ps_knx_mode_t.h"
#include "database/persistent/define/ps_type_database_field_t.h"
#include "database/presencesimulation/define/psi_type_database_field_t.h"

#include "platform/qjsonserializer/qjsonserializer.h"

#include <QtTest>

#include <memory>

using namespace database::definition;
using database::persistent::definition::ps_knx_mode_t;
using database::persistent::definition::ps_type_database_field_t;
using database::presencesimulation::definition::psi_type_database_field_t;
using knx::type_dtp_knx_t;

namespace {

int brandWarnings = 0;
QtMessageHandler testHandler = nullptr;

void countBrandWarnings(QtMsgType type, QMessageLogContext const& context, QString const& message)
{
    if (type == QtCriticalMsg && message.startsWith(QLatin1String("Unknown brand apply Haldo ... ")))
        ++brandWarnings;
    else
        testHandler(type, context, message);
}

QStringList strings(QList<ps_knx_mode_t> const& modes)
{
    QStringList result;
    for (ps_knx_mode_t const& mode : modes)
        result.append(mode.ToString());
    return result;
}

} // namespace

/// A model object with string-typed properties, as the databases have them.
class installation_probe : public QObject
{
    Q_OBJECT
    Q_PROPERTY(database::definition::type_brand_t brand MEMBER brand)
    Q_PROPERTY(database::persistent::definition::ps_knx_mode_t mode MEMBER mode)

public:
    Q_INVOKABLE explicit installation_probe(QObject* parent = nullptr)
        : QObject(parent)
    {
    }

    type_brand_t brand;
    ps_knx_mode_t mode;
};

#define STATIC_ROW(cls, member, text) \
    QTest::newRow(#cls "::" #member) << cls::member.ToString() << QStringLiteral(text)

class tst_definition : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Runs first, before any test constructs an instance.
    void staticsAreCounted_data()
    {
        QTest::addColumn<int>("counter");
        QTest::addColumn<int>("statics");
        QTest::newRow("service_t") << service_t::maxI << 3;
        QTest::newRow("type_brand_t") << type_brand_t::maxI << 4;
        QTest::newRow("type_object_t") << type_object_t::maxI << 6;
        QTest::newRow("type_smartbutton_state_t") << type_smartbutton_state_t::maxI << 2;
        QTest::newRow("type_item_address_t") << type_item_address_t::maxI << 3;
        QTest::newRow("knx::type_dtp_knx_t") << type_dtp_knx_t::maxI << 24;
        QTest::newRow("baos::type_dtp_baos_t") << baos::type_dtp_baos_t::maxI << 18;
        QTest::newRow("ps_knx_mode_t") << ps_knx_mode_t::maxI << 3;
        QTest::newRow("ps_type_database_field_t") << ps_type_database_field_t::maxI << 15;
        QTest::newRow("psi_type_database_field_t") << psi_type_database_field_t::maxI << 1;
    }

    void staticsAreCounted()
    {
        QFETCH(int, counter);
        QFETCH(int, statics);
        QCOMPARE(counter, statics);
    }

    // The strings are file format.
    void staticStrings_data()
    {
        QTest::addColumn<QString>("actual");
        QTest::addColumn<QString>("expected");
        STATIC_ROW(service_t, server, "server");
        STATIC_ROW(service_t, client, "client");
        STATIC_ROW(service_t, offline, "offline");
        STATIC_ROW(type_brand_t, HALDO, "HALDO");
        STATIC_ROW(type_brand_t, TOLVER, "TOLVER");
        STATIC_ROW(type_brand_t, ARDENWALL, "ARDENWALL");
        STATIC_ROW(type_brand_t, VESTRA, "VESTRA");
        STATIC_ROW(type_cron_t, dayofweek, "dayofweek");
        STATIC_ROW(type_cron_t, month, "month");
        STATIC_ROW(type_cron_t, day, "day");
        STATIC_ROW(type_cron_t, hour, "hour");
        STATIC_ROW(type_cron_t, minute, "minute");
        STATIC_ROW(type_cron_t, year, "year");
        STATIC_ROW(type_cron_t, from, "from");
        STATIC_ROW(type_cron_t, to, "to");
        STATIC_ROW(type_item_address_t, command, "command");
        STATIC_ROW(type_item_address_t, status, "status");
        STATIC_ROW(type_item_address_t, feedback, "feedback");
        STATIC_ROW(type_notification_verbosity_t, info, "info");
        STATIC_ROW(type_notification_verbosity_t, warning, "warning");
        STATIC_ROW(type_notification_verbosity_t, alarm, "alarm");
        STATIC_ROW(type_object_t, item, "@item");
        STATIC_ROW(type_object_t, scenary, "@scenary");
        STATIC_ROW(type_object_t, rules, "@rules");
        STATIC_ROW(type_object_t, notify, "@notify");
        STATIC_ROW(type_object_t, thermo, "@thermo");
        STATIC_ROW(type_object_t, unknown, "");
        STATIC_ROW(type_object_thermostat_thermo_type_arg, setpoint, "@setpoint");
        STATIC_ROW(type_object_thermostat_thermo_type_arg, season, "@season");
        STATIC_ROW(type_object_thermostat_thermo_type_arg, hvac, "@hvac");
        STATIC_ROW(type_object_thermostat_type_arg, thermo, "@thermo");
        STATIC_ROW(type_object_thermostat_type_arg, hydro, "@hydro");
        STATIC_ROW(type_rules_t, ondemand, "ondemand");
        STATIC_ROW(type_rules_t, ontrigger, "ontrigger");
        STATIC_ROW(type_rules_t, onchange, "onchange");
        STATIC_ROW(type_smartbutton_state_t, recindex, "recindex");
        STATIC_ROW(type_smartbutton_state_t, stop, "stop");
        STATIC_ROW(type_sun_t, sunset, "sunset");
        STATIC_ROW(type_sun_t, sunrise, "sunrise");
        STATIC_ROW(type_thermostat_hydro_params_t, idsetpoint, "idsetpoint");
        STATIC_ROW(type_thermostat_hydro_params_t, idoutput, "idoutput");
        STATIC_ROW(type_thermostat_hydro_params_t, idhvac, "idhvac");
        STATIC_ROW(type_thermostat_hydro_params_t, idfan, "idfan");
        STATIC_ROW(type_thermostat_hydro_params_t, idfan1, "idfan1");
        STATIC_ROW(type_thermostat_hydro_params_t, idfan2, "idfan2");
        STATIC_ROW(type_thermostat_hydro_params_t, idfan3, "idfan3");
        STATIC_ROW(type_thermostat_thermo_params_t, idsetpoint, "idsetpoint");
        STATIC_ROW(type_thermostat_thermo_params_t, idoutput, "idoutput");
        STATIC_ROW(type_thermostat_thermo_params_t, idseason, "idseason");
        STATIC_ROW(type_thermostat_thermo_params_t, idhvac, "idhvac");
        STATIC_ROW(type_thermostat_thermo_params_t, idfan, "idfan");
        STATIC_ROW(type_thermostat_thermo_params_t, idfan1, "idfan1");
        STATIC_ROW(type_thermostat_thermo_params_t, idfan2, "idfan2");
        STATIC_ROW(type_thermostat_thermo_params_t, idfan3, "idfan3");
        STATIC_ROW(type_thermostat_thermo_params_t, idbattery, "idbattery");
        STATIC_ROW(type_thermostat_thermo_params_t, idactual, "idactual");
        STATIC_ROW(smtp::type_smtp_auth_type_t, PLAIN, "PLAIN");
        STATIC_ROW(smtp::type_smtp_auth_type_t, LOGIN, "LOGIN");
        STATIC_ROW(smtp::type_smtp_connection_type_t, TCP, "TCP");
        STATIC_ROW(smtp::type_smtp_connection_type_t, SSL, "SSL");
        STATIC_ROW(smtp::type_smtp_connection_type_t, TLS, "TLS");
        STATIC_ROW(baos::type_interfaces_baos_t, USB, "USB");
        STATIC_ROW(baos::type_interfaces_baos_t, TUNNELING, "TUNNELING");
        STATIC_ROW(baos::type_interfaces_baos_t, ROUTER, "ROUTER");
        STATIC_ROW(knx::type_interfaces_knx_t, USB, "USB");
        STATIC_ROW(knx::type_interfaces_knx_t, TUNNELING, "TUNNELING");
        STATIC_ROW(knx::type_interfaces_knx_t, ROUTER, "ROUTER");
        STATIC_ROW(baos::type_dtp_baos_t, dtp_1, "dtp_1");
        STATIC_ROW(baos::type_dtp_baos_t, dtp_2, "dtp_2");
        STATIC_ROW(baos::type_dtp_baos_t, dtp_3, "dtp_3");
        STATIC_ROW(baos::type_dtp_baos_t, dtp_4, "dtp_4");
        STATIC_ROW(baos::type_dtp_baos_t, dtp_5, "dtp_5");
        STATIC_ROW(baos::type_dtp_baos_t, dtp_6, "dtp_6");
        STATIC_ROW(baos::type_dtp_baos_t, dtp_7, "dtp_7");
        STATIC_ROW(baos::type_dtp_baos_t, dtp_8, "dtp_8");
        STATIC_ROW(baos::type_dtp_baos_t, dtp_9, "dtp_9");
        STATIC_ROW(baos::type_dtp_baos_t, dtp_10, "dtp_10");
        STATIC_ROW(baos::type_dtp_baos_t, dtp_11, "dtp_11");
        STATIC_ROW(baos::type_dtp_baos_t, dtp_11_baos, "dtp_11_baos");
        STATIC_ROW(baos::type_dtp_baos_t, dtp_11_yyyy, "dtp_11_yyyy");
        STATIC_ROW(baos::type_dtp_baos_t, dtp_12, "dtp_12");
        STATIC_ROW(baos::type_dtp_baos_t, dtp_13, "dtp_13");
        STATIC_ROW(baos::type_dtp_baos_t, dtp_14, "dtp_14");
        STATIC_ROW(baos::type_dtp_baos_t, dtp_15, "dtp_15");
        STATIC_ROW(baos::type_dtp_baos_t, dtp_16, "dtp_16");
        STATIC_ROW(ps_knx_mode_t, kdrive, "kdrive");
        STATIC_ROW(ps_knx_mode_t, baos, "baos");
        STATIC_ROW(ps_knx_mode_t, automatic, "automatic");
        STATIC_ROW(psi_type_database_field_t, presencesimulation, "DB/presencesimulation");
        STATIC_ROW(ps_type_database_field_t, general, "general");
        STATIC_ROW(ps_type_database_field_t, items, "items");
        STATIC_ROW(ps_type_database_field_t, notify, "notify");
        STATIC_ROW(ps_type_database_field_t, elements, "elements");
        STATIC_ROW(ps_type_database_field_t, storage, "storage");
        STATIC_ROW(ps_type_database_field_t, schedulers, "schedulers");
        STATIC_ROW(ps_type_database_field_t, scenary, "scenary");
        STATIC_ROW(ps_type_database_field_t, rules, "rules");
        STATIC_ROW(ps_type_database_field_t, drivers, "drivers");
        STATIC_ROW(ps_type_database_field_t, information, "information");
        STATIC_ROW(ps_type_database_field_t, versions, "versions");
        STATIC_ROW(ps_type_database_field_t, presencesimulation, "presencesimulation");
        STATIC_ROW(ps_type_database_field_t, smartbutton, "smartbutton");
        STATIC_ROW(ps_type_database_field_t, users, "users");
        STATIC_ROW(ps_type_database_field_t, thermo, "thermo");
        // The knx datapoint strings are checked with their lengths below.
    }

    void staticStrings()
    {
        QFETCH(QString, actual);
        QFETCH(QString, expected);
        QCOMPARE(actual, expected);
    }

    void maxICountsConstructionsPerClass()
    {
        int const services = service_t::maxI;
        int const brands = type_brand_t::maxI;
        int const buttons = type_smartbutton_state_t::maxI;
        int const addresses = type_item_address_t::maxI;
        int const dtps = type_dtp_knx_t::maxI;
        int const modes = ps_knx_mode_t::maxI;

        service_t byDefault;
        service_t fromString(QStringLiteral("server"));
        QVERIFY(service_t(QStringLiteral("client")) == service_t::client);
        QCOMPARE(service_t::maxI, services + 3);

        // Copies keep the id of their origin and are not counted.
        service_t copy = fromString;
        byDefault = copy;
        type_brand_t const brand = type_brand_t::getType(QStringLiteral("VESTRA"));
        QCOMPARE(service_t::maxI, services + 3);
        QCOMPARE(type_brand_t::maxI, brands);

        type_smartbutton_state_t const button;
        type_item_address_t const address(QStringLiteral("status"), 1);
        type_dtp_knx_t const withLength(QStringLiteral("dtp_1"), 1);
        type_dtp_knx_t const lookedUp(QStringLiteral("dtp_1"));
        QCOMPARE(type_smartbutton_state_t::maxI, buttons + 1);
        QCOMPARE(type_item_address_t::maxI, addresses + 1);
        QCOMPARE(type_dtp_knx_t::maxI, dtps + 2);
        QCOMPARE(ps_knx_mode_t::maxI, modes);
        QCOMPARE(brand.ToString(), QStringLiteral("VESTRA"));
    }

    void equality_data()
    {
        QTest::addColumn<bool>("equal");
        QTest::addColumn<bool>("notEqual");
        QTest::addColumn<bool>("expected");
        QTest::newRow("same string, another instance")
            << (service_t(QStringLiteral("server")) == service_t::server)
            << (service_t(QStringLiteral("server")) != service_t::server) << true;
        QTest::newRow("other case") << (service_t(QStringLiteral("Server")) == service_t::server)
                                    << (service_t(QStringLiteral("Server")) != service_t::server) << false;
        QTest::newRow("trailing blank") << (type_rules_t(QStringLiteral("onchange ")) == type_rules_t::onchange)
                                        << (type_rules_t(QStringLiteral("onchange ")) != type_rules_t::onchange)
                                        << false;
        QTest::newRow("distinct statics") << (service_t::client == service_t::server)
                                          << (service_t::client != service_t::server) << false;
        QTest::newRow("default object type is unknown") << (type_object_t() == type_object_t::unknown)
                                                        << (type_object_t() != type_object_t::unknown) << true;
        QTest::newRow("default smart button state is stop")
            << (type_smartbutton_state_t() == type_smartbutton_state_t::stop)
            << (type_smartbutton_state_t() != type_smartbutton_state_t::stop) << true;
        QTest::newRow("item address number does not count")
            << (type_item_address_t(QStringLiteral("status"), 5) == type_item_address_t::status)
            << (type_item_address_t(QStringLiteral("status"), 5) != type_item_address_t::status) << true;
        QTest::newRow("datapoint length does not count")
            << (type_dtp_knx_t(QStringLiteral("dtp_16"), 3) == type_dtp_knx_t::dtp_16)
            << (type_dtp_knx_t(QStringLiteral("dtp_16"), 3) != type_dtp_knx_t::dtp_16) << true;
    }

    void equality()
    {
        QFETCH(bool, equal);
        QFETCH(bool, notEqual);
        QFETCH(bool, expected);
        QCOMPARE(equal, expected);
        QCOMPARE(notEqual, !expected);
    }

    void is_data()
    {
        QTest::addColumn<bool>("actual");
        QTest::addColumn<bool>("expected");
        QTest::newRow("knx interface, same") << knx::type_interfaces_knx_t::USB.is(QStringLiteral("USB")) << true;
        QTest::newRow("knx interface, other case") << knx::type_interfaces_knx_t::USB.is(QStringLiteral("usb")) << false;
        QTest::newRow("baos datapoint, same") << baos::type_dtp_baos_t::dtp_11_baos.is(QStringLiteral("dtp_11_baos")) << true;
        QTest::newRow("baos datapoint, other") << baos::type_dtp_baos_t::dtp_11.is(QStringLiteral("dtp_11_baos")) << false;
        QTest::newRow("smtp security, other") << smtp::type_smtp_connection_type_t::TLS.is(QStringLiteral("SSL")) << false;
        QTest::newRow("knx datapoint, unknown instance")
            << type_dtp_knx_t(QStringLiteral("dtp_99")).is(QStringLiteral("dtp_99")) << true;
    }

    void is()
    {
        QFETCH(bool, actual);
        QFETCH(bool, expected);
        QCOMPARE(actual, expected);
    }

    void brandGetType_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("brand");
        QTest::addColumn<int>("warnings");
        QTest::newRow("HALDO") << "HALDO" << "HALDO" << 0;
        QTest::newRow("TOLVER") << "TOLVER" << "TOLVER" << 0;
        QTest::newRow("ARDENWALL") << "ARDENWALL" << "ARDENWALL" << 0;
        QTest::newRow("VESTRA") << "VESTRA" << "VESTRA" << 0;
        QTest::newRow("unknown falls back") << "nobody" << "HALDO" << 1;
        QTest::newRow("other case falls back") << "Tolver" << "HALDO" << 1;
        QTest::newRow("empty falls back") << "" << "HALDO" << 1;
    }

    void brandGetType()
    {
        QFETCH(QString, text);
        QFETCH(QString, brand);
        QFETCH(int, warnings);
        brandWarnings = 0;
        testHandler = qInstallMessageHandler(countBrandWarnings);
        type_brand_t const result = type_brand_t::getType(text);
        qInstallMessageHandler(testHandler);
        QCOMPARE(result.ToString(), brand);
        QCOMPARE(brandWarnings, warnings);
    }

    void dtpKnxLength_data()
    {
        QTest::addColumn<QString>("actual");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("length");
        auto const row = [](type_dtp_knx_t const& dtp, char const* text, int length) {
            QTest::newRow(text) << dtp.ToString() << QString::fromLatin1(text) << length;
        };
        row(type_dtp_knx_t::dtp_1, "dtp_1", 1);
        row(type_dtp_knx_t::dtp_2, "dtp_2", 1);
        row(type_dtp_knx_t::dtp_3, "dtp_3", 1);
        row(type_dtp_knx_t::dtp_4, "dtp_4", 1);
        row(type_dtp_knx_t::dtp_5, "dtp_5", 1);
        row(type_dtp_knx_t::dtp_6, "dtp_6", 1);
        row(type_dtp_knx_t::dtp_7, "dtp_7", 2);
        row(type_dtp_knx_t::dtp_8, "dtp_8", 2);
        row(type_dtp_knx_t::dtp_9, "dtp_9", 2);
        row(type_dtp_knx_t::dtp_10, "dtp_10", 3);
        row(type_dtp_knx_t::dtp_11, "dtp_11", 3);
        row(type_dtp_knx_t::dtp_11_knx, "dtp_11_knx", 3);
        row(type_dtp_knx_t::dtp_11_yyyy, "dtp_11_yyyy", 3);
        row(type_dtp_knx_t::dtp_12, "dtp_12", 4);
        row(type_dtp_knx_t::dtp_13, "dtp_13", 4);
        row(type_dtp_knx_t::dtp_14, "dtp_14", 4);
        row(type_dtp_knx_t::dtp_15, "dtp_15", 4);
        row(type_dtp_knx_t::dtp_16, "dtp_16", 14);
        row(type_dtp_knx_t::dtp_17, "dtp_17", 1);
        row(type_dtp_knx_t::dtp_18, "dtp_18", 1);
        row(type_dtp_knx_t::dtp_19, "dtp_19", 8);
        row(type_dtp_knx_t::dtp_20, "dtp_20", 1);
        row(type_dtp_knx_t::dtp_232, "dtp_232", 3);
        row(type_dtp_knx_t::dtp_251, "dtp_251", 6);
        QTest::newRow("unknown") << "dtp_99" << "dtp_99" << 0;
        QTest::newRow("other case") << "DTP_16" << "DTP_16" << 0;
        QTest::newRow("baos only") << "dtp_11_baos" << "dtp_11_baos" << 0;
        QTest::newRow("empty") << "" << "" << 0;
    }

    void dtpKnxLength()
    {
        QFETCH(QString, actual);
        QFETCH(QString, text);
        QFETCH(int, length);
        QCOMPARE(actual, text);
        QCOMPARE(type_dtp_knx_t::length(text), length);
        // The lookup goes by the string, whatever length the instance carries.
        QCOMPARE(type_dtp_knx_t::length(type_dtp_knx_t(text, 99)), length);
        QCOMPARE(type_dtp_knx_t(text).length(), length);
    }

    void itemAddressNumber_data()
    {
        QTest::addColumn<QString>("actual");
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<int>("expectedNumber");
        auto const row = [](char const* name, type_item_address_t const& address, char const* expected, int number) {
            QTest::newRow(name) << address.ToString() << address.ToInt() << QString::fromLatin1(expected) << number;
        };
        row("getByInt 0", type_item_address_t::getByInt(0), "command", 0);
        row("getByInt 1", type_item_address_t::getByInt(1), "status", 1);
        row("getByInt 2", type_item_address_t::getByInt(2), "feedback", 2);
        row("getByInt 7 falls back", type_item_address_t::getByInt(7), "command", 0);
        row("getByInt -1 falls back", type_item_address_t::getByInt(-1), "command", 0);
        row("read back status", type_item_address_t(QStringLiteral("status")), "status", 1);
        row("read back feedback", type_item_address_t(QStringLiteral("feedback")), "feedback", 2);
        row("read back unknown", type_item_address_t(QStringLiteral("Status")), "Status", 0);
    }

    void itemAddressNumber()
    {
        QFETCH(QString, actual);
        QFETCH(int, number);
        QFETCH(QString, expected);
        QFETCH(int, expectedNumber);
        QCOMPARE(actual, expected);
        QCOMPARE(number, expectedNumber);
    }

    void knxModes_data()
    {
        QTest::addColumn<type_brand_t>("brand");
        QTest::addColumn<QStringList>("modes");
        QTest::newRow("HALDO") << type_brand_t::HALDO << QStringList{"kdrive", "baos"};
        QTest::newRow("TOLVER") << type_brand_t::TOLVER << QStringList{"baos"};
        QTest::newRow("VESTRA") << type_brand_t::VESTRA << QStringList{"baos"};
        QTest::newRow("ARDENWALL") << type_brand_t::ARDENWALL << QStringList{"baos"};
        QTest::newRow("brand outside the map") << type_brand_t(QStringLiteral("NOBRAND")) << QStringList();
        QTest::newRow("other case") << type_brand_t(QStringLiteral("haldo")) << QStringList();
    }

    void knxModes()
    {
        QFETCH(type_brand_t, brand);
        QFETCH(QStringList, modes);
        QCOMPARE(strings(type_knx_mode_t::knx_mode(brand)), modes);
        QCOMPARE(type_knx_mode_t::knx_mode_string_list(brand), modes);
        QCOMPARE(type_knx_mode_t::knx_default_mode(brand).ToString(), modes.value(0));
    }

    void knxModePermittedMap()
    {
        type_knx_mode_t::init();
        type_knx_mode_t::init();
        auto const permitted = type_knx_mode_t::knx_mode_permitted();
        QCOMPARE(permitted.keys(), (QStringList{"ARDENWALL", "HALDO", "TOLVER", "VESTRA"}));
        QCOMPARE(strings(permitted.value(QStringLiteral("HALDO"))), (QStringList{"kdrive", "baos"}));
    }

    // What the JSON serializer relies on: each type converts to and from its string.
    void stringConverters_data()
    {
        QTest::addColumn<QVariant>("typed");
        QTest::addColumn<QString>("text");
        QTest::newRow("service_t") << QVariant::fromValue(service_t::offline) << "offline";
        QTest::newRow("type_brand_t") << QVariant::fromValue(type_brand_t::VESTRA) << "VESTRA";
        QTest::newRow("type_brand_t unknown") << QVariant::fromValue(type_brand_t(QStringLiteral("NOBRAND"))) << "NOBRAND";
        QTest::newRow("type_cron_t") << QVariant::fromValue(type_cron_t::dayofweek) << "dayofweek";
        QTest::newRow("type_item_address_t") << QVariant::fromValue(type_item_address_t::feedback) << "feedback";
        QTest::newRow("type_notification_verbosity_t")
            << QVariant::fromValue(type_notification_verbosity_t::alarm) << "alarm";
        QTest::newRow("type_object_t") << QVariant::fromValue(type_object_t::scenary) << "@scenary";
        QTest::newRow("type_object_t unknown") << QVariant::fromValue(type_object_t::unknown) << "";
        QTest::newRow("type_object_thermostat_thermo_type_arg")
            << QVariant::fromValue(type_object_thermostat_thermo_type_arg::hvac) << "@hvac";
        QTest::newRow("type_object_thermostat_type_arg")
            << QVariant::fromValue(type_object_thermostat_type_arg::hydro) << "@hydro";
        QTest::newRow("type_rules_t") << QVariant::fromValue(type_rules_t::ontrigger) << "ontrigger";
        QTest::newRow("type_rules_t outside the table")
            << QVariant::fromValue(type_rules_t(QStringLiteral("onChange"))) << "onChange";
        QTest::newRow("type_smartbutton_state_t")
            << QVariant::fromValue(type_smartbutton_state_t::recindex) << "recindex";
        QTest::newRow("type_sun_t") << QVariant::fromValue(type_sun_t::sunrise) << "sunrise";
        QTest::newRow("type_thermostat_hydro_params_t")
            << QVariant::fromValue(type_thermostat_hydro_params_t::idfan3) << "idfan3";
        QTest::newRow("type_thermostat_thermo_params_t")
            << QVariant::fromValue(type_thermostat_thermo_params_t::idactual) << "idactual";
        QTest::newRow("smtp::type_smtp_auth_type_t") << QVariant::fromValue(smtp::type_smtp_auth_type_t::LOGIN) << "LOGIN";
        QTest::newRow("smtp::type_smtp_connection_type_t")
            << QVariant::fromValue(smtp::type_smtp_connection_type_t::SSL) << "SSL";
        QTest::newRow("baos::type_interfaces_baos_t")
            << QVariant::fromValue(baos::type_interfaces_baos_t::ROUTER) << "ROUTER";
        QTest::newRow("knx::type_interfaces_knx_t")
            << QVariant::fromValue(knx::type_interfaces_knx_t::TUNNELING) << "TUNNELING";
        QTest::newRow("baos::type_dtp_baos_t") << QVariant::fromValue(baos::type_dtp_baos_t::dtp_11_yyyy) << "dtp_11_yyyy";
        QTest::newRow("knx::type_dtp_knx_t") << QVariant::fromValue(type_dtp_knx_t::dtp_232) << "dtp_232";
        QTest::newRow("ps_knx_mode_t") << QVariant::fromValue(ps_knx_mode_t::automatic) << "automatic";
        QTest::newRow("ps_knx_mode_t outside the table") << QVariant::fromValue(ps_knx_mode_t(QStringLiteral("usb"))) << "usb";
        QTest::newRow("ps_type_database_field_t")
            << QVariant::fromValue(ps_type_database_field_t::presencesimulation) << "presencesimulation";
    }

    void stringConverters()
    {
        QFETCH(QVariant, typed);
        QFETCH(QString, text);
        QVERIFY(typed.canConvert<QString>());
        QCOMPARE(typed.toString(), text);

        QVariant read(text);
        QVERIFY(read.convert(typed.metaType()));
        QCOMPARE(read.metaType(), typed.metaType());
        QVERIFY(read == typed);
        QCOMPARE(read.toString(), text);
    }

    void stringConvertersKeepWhatTheTypeDerives()
    {
        // A brand read back is taken as it is, not resolved to a known one.
        QCOMPARE(QVariant(QStringLiteral("NOBRAND")).value<type_brand_t>().ToString(), QStringLiteral("NOBRAND"));
        QCOMPARE(QVariant(QStringLiteral("feedback")).value<type_item_address_t>().ToInt(), 2);
        QCOMPARE(QVariant(QStringLiteral("dtp_16")).value<type_dtp_knx_t>().length(), 14);
        QVERIFY(QVariant(QStringLiteral("stop")).value<type_smartbutton_state_t>() == type_smartbutton_state_t::stop);
    }

    void serializerWritesAndReadsTheString()
    {
        QJsonSerializer serializer;
        installation_probe probe;
        probe.brand = type_brand_t(QStringLiteral("NOBRAND"));
        probe.mode = ps_knx_mode_t::baos;
        QJsonObject const json = serializer.serialize(&probe).toObject();
        QCOMPARE(json.value(QStringLiteral("brand")), QJsonValue(QStringLiteral("NOBRAND")));
        QCOMPARE(json.value(QStringLiteral("mode")), QJsonValue(QStringLiteral("baos")));

        std::unique_ptr<installation_probe> const read(serializer.deserialize<installation_probe*>(json));
        QVERIFY(read);
        QCOMPARE(read->brand.ToString(), QStringLiteral("NOBRAND"));
        QVERIFY(read->mode == ps_knx_mode_t::baos);
    }
};

QTEST_GUILESS_MAIN(tst_definition)
#include "tst_definition.moc"
