#include "database/persistent/objects/elements/psoe_thermo_logic.h"

namespace database {
namespace persistent {
namespace objects {

psoe_thermo_logic::psoe_thermo_logic(QObject* parent)
    : psoe_family_t(parent)
{
}

psoe_thermo_logic::psoe_thermo_logic(QString const& topic, QObject* parent)
    : psoe_family_t(topic, parent)
{
}

psoe_thermo_logic::psoe_thermo_logic(QString const& id, QString const& name, QString const& description,
                                     QVariantMap const& function_map, QVariantMap const& auth, QStringList const& rooms,
                                     int flags, QVariantMap const& runoptions, QVariantMap const& lock_ui_map,
                                     QString const& thermo_id, int opm_type, QStringList const& setpoint_par,
                                     QObject* parent)
    : psoe_family_t(id, name, description, function_map, auth, rooms, flags, runoptions, lock_ui_map, parent)
    , thermo_id(thermo_id)
    , opm_type(opm_type)
    , setpoint_par(setpoint_par)
{
}

psoe_thermo_logic::psoe_thermo_logic(psoe_thermo_logic const& other)
    : psoe_family_t(other)
{
    copyValues(&other);
}

void psoe_thermo_logic::update_thermo_id(QString const& value, bool _notify)
{
    setThermo_id(value);
    if (_notify)
        send_update();
}

} // namespace objects
} // namespace persistent
} // namespace database
