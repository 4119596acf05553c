#include "database/default/realtime/rt_default_t.h"

#include "database/definition/type_knx_mode_t.h"
#include "database/realtime/dbs/rt_drivers_t.h"
#include "database/realtime/rt_data_t.h"
#include "database/utility/utility.h"
#include "platform/logs/classlogs.h"
#include "platform/qjsonserializer/qjsonserializer.h"

namespace database {
namespace realtime {

using ::database::definition::service_t;
using ::database::definition::type_brand_t;
using ::database::definition::type_knx_mode_t;

rt_default_t* rt_default_t::instance = nullptr;

rt_default_t::rt_default_t(type_brand_t const& _brand)
    : QObject(nullptr)
    , brand(_brand)
{
    log(QStringLiteral("Starting realtime default database engine ..."), ::utility::logs::trace, "rt_default_t");
}

rt_default_t* rt_default_t::createInstance(type_brand_t const& brand)
{
    if (!instance)
        instance = new rt_default_t(brand);
    return instance;
}

rt_default_t* rt_default_t::getInstance()
{
    return instance;
}

QList<rt_default_t::ps_knx_mode_t> rt_default_t::getKnxSupportedMode(service_t const& service, bool secure)
{
    // Kept even when used as a query: the one-argument form reads it back.
    knx_secure_enable = secure;
    if (brand == type_brand_t::HALDO && (secure || service == service_t::offline))
        supported = type_knx_mode_t::knx_mode(brand);
    else
        supported = QList<ps_knx_mode_t>{type_knx_mode_t::knx_default_mode(brand)};
    return supported;
}

QList<rt_default_t::ps_knx_mode_t> rt_default_t::getKnxSupportedMode(service_t const& service)
{
    return getKnxSupportedMode(service, knx_secure_enable);
}

QStringList rt_default_t::getKnxSupportedModeStringList(service_t const& service)
{
    QStringList modes;
    for (ps_knx_mode_t const& mode : getKnxSupportedMode(service))
        modes.append(mode.ToString());
    return modes;
}

void rt_default_t::resetData()
{
    log(name + QStringLiteral(" - Create empty"), ::utility::logs::trace, "resetData");
    delete root;
    root = new rt_data_t(this);
}

void rt_default_t::generateData(service_t const& service)
{
    log(name + QStringLiteral("Apply default config for realtime part..."), ::utility::logs::trace,
        "generateData");
    resetData();
    if (!root)
        root = new rt_data_t(this);
    root->getDrivers()->update_knxmode(getKnxSupportedModeStringList(service), false);
}

QPointer<rt_data_t> rt_default_t::getData(service_t const& service)
{
    generateData(service);
    return root;
}

QJsonObject rt_default_t::getJData(service_t const& service)
{
    generateData(service);
    return utility::getInstance()->serializer()->serializeImpl(QVariant::fromValue(static_cast<rt_data_t*>(root)))
        .toObject();
}

void rt_default_t::log(QString const& message, ::utility::logs::LogLevel level, char const* source) const
{
    CLASSLOGS_LOG(message, level, QString::fromLatin1(source));
}

} // namespace realtime
} // namespace database
