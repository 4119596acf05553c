#include "database/persistent/objects/elements/psoe_thermostat.h"

namespace database {
namespace persistent {
namespace objects {

psoe_thermostat::psoe_thermostat(QObject* parent)
    : psoe_family_t(parent)
{
}

psoe_thermostat::psoe_thermostat(QString const& topic, QObject* parent)
    : psoe_family_t(topic, parent)
{
}

psoe_thermostat::psoe_thermostat(QString const& id, QString const& name, QString const& description,
                                 QVariantMap const& function_map, QVariantMap const& auth, QStringList const& rooms,
                                 int flags, QVariantMap const& runoptions, QVariantMap const& lock_ui_map, int fan_type,
                                 int opm_type, int seasontype, QStringList const& offset_par,
                                 QStringList const& setpoint_par, QObject* parent)
    : psoe_family_t(id, name, description, function_map, auth, rooms, flags, runoptions, lock_ui_map, parent)
    , fan_type(fan_type)
    , opm_type(opm_type)
    , seasontype(seasontype)
    , offset_par(offset_par)
    , setpoint_par(setpoint_par)
{
}

psoe_thermostat::psoe_thermostat(psoe_thermostat const& other)
    : psoe_family_t(other)
{
    copyValues(&other);
}

} // namespace objects
} // namespace persistent
} // namespace database
