#include "database/persistent/objects/elements/psoe_cmdbtn.h"

namespace database {
namespace persistent {
namespace objects {

psoe_cmdbtn::psoe_cmdbtn(QObject* parent)
    : psoe_family_t(parent)
{
}

psoe_cmdbtn::psoe_cmdbtn(QString const& topic, QObject* parent)
    : psoe_family_t(topic, parent)
{
}

psoe_cmdbtn::psoe_cmdbtn(QString const& id, QString const& name, QString const& description,
                         QVariantMap const& function_map, QVariantMap const& auth, QStringList const& rooms, int flags,
                         QVariantMap const& runoptions, QVariantMap const& lock_ui_map, QString const& press,
                         QString const& release, int icon, QString const& label, QObject* parent)
    : psoe_family_t(id, name, description, function_map, auth, rooms, flags, runoptions, lock_ui_map, parent)
    , press(press)
    , release(release)
    , icon(icon)
    , label(label)
{
}

psoe_cmdbtn::psoe_cmdbtn(psoe_cmdbtn const& other)
    : psoe_family_t(other)
{
    copyValues(&other);
}

} // namespace objects
} // namespace persistent
} // namespace database
