#include "database/persistent/objects/elements/psoe_pres_sim.h"

namespace database {
namespace persistent {
namespace objects {

psoe_pres_sim::psoe_pres_sim(QObject* parent)
    : psoe_family_t(parent)
{
}

psoe_pres_sim::psoe_pres_sim(QString const& topic, QObject* parent)
    : psoe_family_t(topic, parent)
{
}

psoe_pres_sim::psoe_pres_sim(QString const& id, QString const& name, QString const& description,
                             QVariantMap const& function_map, QVariantMap const& auth, QStringList const& rooms,
                             int flags, QVariantMap const& runoptions, QVariantMap const& lock_ui_map, QObject* parent)
    : psoe_family_t(id, name, description, function_map, auth, rooms, flags, runoptions, lock_ui_map, parent)
{
}

psoe_pres_sim::psoe_pres_sim(psoe_pres_sim const& other)
    : psoe_family_t(other)
{
}

} // namespace objects
} // namespace persistent
} // namespace database
