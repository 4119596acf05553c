#include "database/persistent/objects/elements/psoe_scenario.h"

namespace database {
namespace persistent {
namespace objects {

psoe_scenario::psoe_scenario(QObject* parent)
    : psoe_family_t(parent)
{
}

psoe_scenario::psoe_scenario(QString const& topic, QObject* parent)
    : psoe_family_t(topic, parent)
{
}

psoe_scenario::psoe_scenario(QString const& id, QString const& name, QString const& description,
                             QVariantMap const& function_map, QVariantMap const& auth, QStringList const& rooms,
                             int flags, QVariantMap const& runoptions, QVariantMap const& lock_ui_map,
                             QString const& scenario_id, QString const& knx_nr, QObject* parent)
    : psoe_family_t(id, name, description, function_map, auth, rooms, flags, runoptions, lock_ui_map, parent)
    , scenario_id(scenario_id)
    , knx_nr(knx_nr)
{
}

psoe_scenario::psoe_scenario(psoe_scenario const& other)
    : psoe_family_t(other)
{
    copyValues(&other);
}

void psoe_scenario::update_scenario_id(QString const& value, bool _notify)
{
    setScenario_id(value);
    if (_notify)
        send_update();
}

} // namespace objects
} // namespace persistent
} // namespace database
