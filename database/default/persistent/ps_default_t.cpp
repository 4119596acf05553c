#include "database/default/persistent/ps_default_t.h"

#include "database/definition/type_knx_mode_t.h"
#include "platform/logs/classlogs.h"

namespace database {
namespace persistent {

using ::database::definition::type_brand_t;
using ::database::definition::type_knx_mode_t;
using definition::ps_knx_mode_t;

ps_default_t* ps_default_t::ps_default = nullptr;

ps_default_t::ps_default_t(type_brand_t const& _brand, QString const& version)
    : QObject(nullptr)
{
    Q_UNUSED(version);
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

type_brand_t ps_default_t::getBrand() const
{
    return brand;
}

void ps_default_t::setBrand(type_brand_t const& _brand)
{
    brand = _brand;
    knx_mode = type_knx_mode_t::knx_default_mode(brand);
}

ps_knx_mode_t ps_default_t::getDefaultKnxMode() const
{
    return type_knx_mode_t::knx_default_mode(brand);
}

ps_knx_mode_t ps_default_t::getSettedtKnxMode() const
{
    return knx_mode;
}

} // namespace persistent
} // namespace database
