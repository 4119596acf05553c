#include "database/persistent/objects/elements/psoe_customslider.h"

namespace database {
namespace persistent {
namespace objects {

psoe_customslider::psoe_customslider(QObject* parent)
    : psoe_family_t(parent)
{
}

psoe_customslider::psoe_customslider(QString const& topic, QObject* parent)
    : psoe_family_t(topic, parent)
{
}

psoe_customslider::psoe_customslider(QString const& id, QString const& name, QString const& description,
                                     QVariantMap const& function_map, QVariantMap const& auth, QStringList const& rooms,
                                     int flags, QVariantMap const& runoptions, QVariantMap const& lock_ui_map,
                                     QString const& measure_unit, QString const& label_min, QString const& label_max,
                                     double slider_maxvalue, double slider_minvalue, double slider_tickstep,
                                     double slider_valuestep, int icon_id, int decimals, int controls, QObject* parent)
    : psoe_family_t(id, name, description, function_map, auth, rooms, flags, runoptions, lock_ui_map, parent)
    , measure_unit(measure_unit)
    , label_min(label_min)
    , label_max(label_max)
    , slider_maxvalue(slider_maxvalue)
    , slider_minvalue(slider_minvalue)
    , slider_tickstep(slider_tickstep)
    , slider_valuestep(slider_valuestep)
    , icon_id(icon_id)
    , decimals(decimals)
    , controls(controls)
{
}

psoe_customslider::psoe_customslider(psoe_customslider const& other)
    : psoe_family_t(other)
{
    copyValues(&other);
}

} // namespace objects
} // namespace persistent
} // namespace database
