#include "database/persistent/objects/elements/psoe_3state.h"

namespace database {
namespace persistent {
namespace objects {

psoe_3state::psoe_3state(QObject* parent)
    : psoe_element_type_t(parent)
{
}

psoe_3state::psoe_3state(QString const& topic, QObject* parent)
    : psoe_element_type_t(topic, parent)
{
}

psoe_3state::psoe_3state(QString const& id, QString const& name, QString const& description,
                         QVariantMap const& function_map, QVariantMap const& auth, QStringList const& rooms, int flags,
                         QVariantMap const& runoptions, QVariantMap const& lock_ui_map, int element_type,
                         QObject* parent)
    : psoe_element_type_t(id, name, description, function_map, auth, rooms, flags, runoptions, lock_ui_map, parent)
{
    setElement_type(element_type);
}

psoe_3state::psoe_3state(psoe_3state const& other)
    : psoe_element_type_t(other)
{
}

} // namespace objects
} // namespace persistent
} // namespace database
