#include "database/default/persistent/ps_default_t.h"

#include <QException>
#include <QScopedPointer>

#include "database/base/literals.h"
#include "database/definition/baos/type_interfaces_baos_t.h"
#include "database/definition/knx/type_interfaces_knx_t.h"
#include "database/definition/type_knx_mode_t.h"
#include "database/persistent/dbs/ps_drivers_t.h"
#include "database/persistent/dbs/ps_versions_t.h"
#include "database/persistent/objects/ps_object_user_t.h"
#include "database/persistent/ps_data_t.h"
#include "database/utility/utility.h"
#include "platform/logs/classlogs.h"
#include "platform/qjsonserializer/qjsonserializer.h"

namespace database {
namespace persistent {

using ::database::definition::type_brand_t;
using ::database::definition::type_knx_mode_t;
using definition::ps_knx_mode_t;
using ::utility::logs::LogLevel;
using objects::drivers::ps_drivers_baos_t;
using objects::drivers::ps_drivers_knx_t;

ps_default_t* ps_default_t::ps_default = nullptr;

namespace {

// The factory PIN of the administrator; stored only as its hash.
QString const factoryPin = QStringLiteral("58316");

/// The company data that a brand's factory document carries.
struct brand_data_t {
    char const* logLine;
    double latitude;
    double longitude;
    QString company;
    QString address;
    QString phone;
    QString email;
    QString support;
    QString site;
};

brand_data_t const haldo{"Set default for Haldo config",
                         46.4556,
                         11.2628,
                         QStringLiteral("Haldo Systems Srl "),
                         QStringLiteral("Via Esempio 10, 39100 Sampletown, Italy"),
                         QStringLiteral("+39 0471 000000"),
                         QStringLiteral("info@haldo.example.com"),
                         QStringLiteral("support@haldo.example.com"),
                         QStringLiteral("https://www.haldo.example.com")};

brand_data_t const vestra{"Set default for Vestra config",
                          47.2514822,
                          8.5943254,
                          QStringLiteral("Vestra AG"),
                          QStringLiteral("Beispielweg 3, 8000 Musterdorf, Switzerland"),
                          QStringLiteral("+41 44 000 00 00 "),
                          QStringLiteral("?@?"),
                          QStringLiteral("+41 44 000 00 01"),
                          QStringLiteral("https://www.vestra.example.com")};

brand_data_t const tolver{"Set default for Tolver config",
                          51.23848,
                          7.5465713,
                          QStringLiteral("Tolver GmbH"),
                          QStringLiteral("Musterstrasse 5, 42000 Beispielstadt, Germany"),
                          QStringLiteral("+49 202 0000000"),
                          QStringLiteral("?@?"),
                          QStringLiteral("+49 202 0000001"),
                          QStringLiteral("https://www.tolver.example.com")};

brand_data_t const ardenwall{"Set default for Ardenwal config",
                             48.8911231,
                             2.1706854,
                             QStringLiteral("Ardenwall SAS"),
                             QStringLiteral("1 Rue de l'Exemple, 78000 Villexemple, France"),
                             QStringLiteral("?"),
                             QStringLiteral("?@?"),
                             QStringLiteral("?"),
                             QStringLiteral("https://www.ardenwall.example.com")};

QJsonSerializer* serializer()
{
    return utility::getInstance()->serializer();
}

/// A bus driver in force with one bus "1" on USB at address: the factory
/// form of both bus drivers, built from JSON so that both share it.
template<class Driver>
Driver* makeBusDriver(QString const& type, QString const& address)
{
    QJsonObject const bus{{QStringLiteral("enabled"), true},
                          {QStringLiteral("init_loop_interval"), 0},
                          {QStringLiteral("type"), type},
                          {QStringLiteral("params"), QJsonObject{{QStringLiteral("address"), address}}}};
    QJsonObject const driver{{QStringLiteral("bus"), QJsonObject{{QStringLiteral("1"), bus}}},
                             {QStringLiteral("enabled"), true}};
    return serializer()->deserialize<Driver*>(driver, nullptr);
}

} // namespace

ps_default_t::ps_default_t(type_brand_t const& _brand, QString const& version)
    : QObject(nullptr)
    , versions(new dbs::ps_versions_t(nullptr))
{
    versions->setProperty("database", version);
    setBrand(_brand);
}

ps_default_t* ps_default_t::createInstance(type_brand_t const& brand, QString const& version)
{
    if (!ps_default)
        ps_default = new ps_default_t(brand, version);
    return ps_default;
}

ps_default_t* ps_default_t::getInstance()
{
    return ps_default;
}

void ps_default_t::log(QString const& message, int level, char const* source) const
{
    auto* logs = ::utility::logs::classlogs::getInstance();
    if (logs->isEnabled(LogLevel(level)))
        logs->log_asynch(_name + message, LogLevel(level), QString::fromLatin1(source), __FILE__, __LINE__);
}

type_brand_t ps_default_t::getBrand() const
{
    return brand;
}

void ps_default_t::setBrand(type_brand_t const& _brand)
{
    brand = _brand;
    knx_mode = type_knx_mode_t::knx_default_mode(brand);
}

void ps_default_t::setVsersions(QString const& general, QString const& server, QString const& database,
                                QString const& comunication)
{
    versions->setProperty("general", general);
    versions->setProperty("server", server);
    versions->setProperty("database", database);
    versions->setProperty("comunication", comunication);
}

dbs::ps_versions_t* ps_default_t::getVersions() const
{
    return versions;
}

void ps_default_t::setLast_knx_address(QString const& address)
{
    last_knx_address = address;
}

ps_knx_mode_t ps_default_t::getDefaultKnxMode() const
{
    return type_knx_mode_t::knx_default_mode(brand);
}

ps_knx_mode_t ps_default_t::getSettedtKnxMode() const
{
    return knx_mode;
}

void ps_default_t::setKnx_mode(ps_knx_mode_t mode)
{
    if (mode == ps_knx_mode_t::automatic) {
        knx_mode = type_knx_mode_t::knx_default_mode(brand);
        return;
    }
    if (brand == type_brand_t::HALDO) {
        knx_mode = mode;
        return;
    }
    // Only the one brand may run the kdrive access: the others fall back to baos.
    log(QStringLiteral("Not able to change the modility for the brand ") + brand.ToString(), LogLevel::error,
        "setKnx_mode");
    knx_mode = ps_knx_mode_t::baos;
}

QString ps_default_t::getAdminPin(type_brand_t const& _brand) const
{
    Q_UNUSED(_brand);
    return utility::createStringHash(factoryPin);
}

void ps_default_t::resetData()
{
    log(QStringLiteral(" - Create empty"), LogLevel::trace, "resetData");
    delete data;
    data = new ps_data_t(this);
}

void ps_default_t::generateData()
{
    log(QStringLiteral("Apply default config for persistent part ..."), LogLevel::info, "generateData");
    resetData();
    // The root that resetData made stays behind as a child; the factory
    // document is built in a second one, and nothing holds the first.
    data = new ps_data_t(this);
    setDefaultVersions();

    brand_data_t const* chosen = &haldo;
    bool knx = true;
    char const* logLine = "Set default for Haldo config -- *DEFAULT";
    if (brand == type_brand_t::HALDO) {
        logLine = haldo.logLine;
        knx = knx_mode == ps_knx_mode_t::kdrive;
    } else if (brand == type_brand_t::VESTRA) {
        chosen = &vestra;
        logLine = vestra.logLine;
        knx = false;
    } else if (brand == type_brand_t::TOLVER) {
        chosen = &tolver;
        logLine = tolver.logLine;
        knx = false;
    } else if (brand == type_brand_t::ARDENWALL) {
        chosen = &ardenwall;
        logLine = ardenwall.logLine;
        knx = false;
    }
    log(QString::fromLatin1(logLine), LogLevel::info, "generateData");
    setDefaultGeneral(chosen->latitude, chosen->longitude, 2.0);
    setDefaultInformation(QString(), chosen->company, chosen->address, chosen->phone, chosen->email,
                          chosen->support, chosen->site);
    setDefaultDriversKNX(knx, !knx);

    ps_users_map users{
        {QStringLiteral("99"), new objects::ps_object_user_t(QStringLiteral("admin"), -1, getAdminPin(brand), nullptr)},
        {QStringLiteral("0"), new objects::ps_object_user_t(QStringLiteral("user"), 95, QString(), nullptr)}};
    QJsonObject const json = serializer()->serializeImpl(QVariant::fromValue(users)).toObject();
    qDeleteAll(users);
    setDefaultUsers(json);
}

QPointer<ps_data_t> ps_default_t::getData()
{
    generateData();
    return data;
}

QJsonObject ps_default_t::getJData()
{
    generateData();
    return data->toJson();
}

void ps_default_t::checkVersion(QJsonObject& jdata)
{
    jdata.insert(literals::key_versions, versions->toJson());
}

void ps_default_t::checkData(QJsonObject& jdata)
{
    log(QStringLiteral("Check data..."), LogLevel::trace, "checkData");
    checkVersion(jdata);
    if (brand == type_brand_t::HALDO)
        return;
    if (brand == type_brand_t::VESTRA || brand == type_brand_t::TOLVER || brand == type_brand_t::ARDENWALL)
        checkKnxDriver(jdata, false, true);
}

void ps_default_t::setDefaultVersions()
{
    log(QStringLiteral(" - Apply Versions"), LogLevel::trace, "setDefaultVersions");
    data->setVersions(new dbs::ps_versions_t(*versions));
}

void ps_default_t::setDefaultInformation(QString const& image, QString const& company, QString const& address,
                                         QString const& phone, QString const& email, QString const& support,
                                         QString const& site)
{
    log(QStringLiteral(" - Apply information"), LogLevel::trace, "setDefaultInformation");
    auto* information = new dbs::ps_information_t(data);
    information->setProperty("image", image);
    information->setProperty("company", company);
    information->setProperty("address", address);
    information->setProperty("phone", phone);
    information->setProperty("email", email);
    information->setProperty("support", support);
    information->setProperty("site", site);
    data->setInformation(information);
}

void ps_default_t::setDefaultGeneral(double latitude, double longitude, double timezone)
{
    log(QStringLiteral(" - Apply general"), LogLevel::trace, "setDefaultGeneral");
    auto* general = new dbs::ps_general_t(data);
    general->setProperty("enable_astro", false);
    general->setProperty("identify", QString());
    general->setProperty("description", QString());
    general->setProperty("latitude", latitude);
    general->setProperty("longitude", longitude);
    general->setProperty("timezone", timezone);
    data->setGeneral(general);
}

void ps_default_t::setDefaultUsers(QJsonObject const& json)
{
    log(QStringLiteral(" - Apply default users"), LogLevel::trace, "setDefaultUsers");
    auto* users = new dbs::ps_users_t(data);
    ps_users_map const map = serializer()->deserialize<ps_users_map>(json, users);
    users->setProperty("objects_list", QVariant::fromValue(map));
    data->setUsers(users);
}

ps_drivers_knx_t* ps_default_t::createDefaultKnxDriver() const
{
    return makeBusDriver<ps_drivers_knx_t>(::database::definition::knx::type_interfaces_knx_t::USB.ToString(),
                                           last_knx_address);
}

ps_drivers_baos_t* ps_default_t::createDefaultBaosDriver() const
{
    return makeBusDriver<ps_drivers_baos_t>(::database::definition::baos::type_interfaces_baos_t::USB.ToString(),
                                            QStringLiteral("0"));
}

void ps_default_t::setDefaultDriversKNX(bool knx, bool baos)
{
    log(QStringLiteral(" - Apply driver knx/baos"), LogLevel::trace, "setDefaultDriversKNX");
    dbs::ps_drivers_t* drivers = data->getDrivers();
    if (!knx && !baos) {
        log(QStringLiteral(" - Disable knx and baos"), LogLevel::trace, "setDefaultDriversKNX");
        return;
    }
    QScopedPointer<ps_drivers_knx_t> knxDriver(knx ? createDefaultKnxDriver() : new ps_drivers_knx_t(nullptr));
    QScopedPointer<ps_drivers_baos_t> baosDriver(knx ? new ps_drivers_baos_t(nullptr) : createDefaultBaosDriver());
    if (knx) {
        log(QStringLiteral(" - Apply driver kdriver"), LogLevel::info, "setDefaultDriversKNX");
        drivers->setProperty("knx_mode", ps_knx_mode_t::kdrive.ToString());
    } else {
        log(QStringLiteral(" - Apply driver baos"), LogLevel::info, "setDefaultDriversKNX");
        drivers->setProperty("knx_mode", ps_knx_mode_t::baos.ToString());
    }
    drivers->update_knx(knxDriver.data(), false);
    drivers->update_baos(baosDriver.data(), false);
}

void ps_default_t::checkKnxDriver(QJsonObject& jdata, bool knx, bool baos)
{
    log(QStringLiteral(" - Apply driver knx/baos"), LogLevel::trace, "checkKnxDriver");
    QScopedPointer<ps_data_t> document;
    try {
        document.reset(serializer()->deserialize<ps_data_t*>(jdata, nullptr));
    } catch (QException const& e) {
        log(QStringLiteral("Error to deserialize peristent: ") + QString::fromUtf8(e.what()), LogLevel::error,
            "checkKnxDriver");
        return;
    }
    if (!document)
        return;
    dbs::ps_drivers_t* drivers = document->getDrivers();
    if (knx) {
        if (drivers->getBaos()->getEnabled()) {
            log(QStringLiteral(" - Disable baos ... "), LogLevel::info, "checkKnxDriver");
            drivers->getBaos()->update_enabled(false, false);
        }
        if (!drivers->getKnx()->getBus().isEmpty()) {
            if (!drivers->getKnx()->getEnabled()) {
                log(QStringLiteral(" - Enable driver knx"), LogLevel::info, "checkKnxDriver");
                drivers->getKnx()->update_enabled(true, false);
            }
        } else {
            log(QStringLiteral(" - Create driver knx"), LogLevel::info, "checkKnxDriver");
            QScopedPointer<ps_drivers_knx_t> created(createDefaultKnxDriver());
            drivers->update_knx(created.data(), false);
        }
    } else if (baos) {
        if (drivers->getKnx()->getEnabled()) {
            log(QStringLiteral(" - Disable knx ... "), LogLevel::info, "checkKnxDriver");
            drivers->getKnx()->update_enabled(false, false);
        }
        log(QStringLiteral(" - Create driver baos"), LogLevel::info, "checkKnxDriver");
        if (!drivers->getBaos()->getBus().isEmpty()) {
            if (!drivers->getBaos()->getEnabled()) {
                log(QStringLiteral(" - Enable driver baos"), LogLevel::info, "checkKnxDriver");
                drivers->getBaos()->update_enabled(true, false);
            }
        } else {
            QScopedPointer<ps_drivers_baos_t> created(createDefaultBaosDriver());
            drivers->update_baos(created.data(), false);
        }
    }
    // Always written back: what the model doesn't hold leaves the document here.
    jdata = document->toJson();
}

} // namespace persistent
} // namespace database
