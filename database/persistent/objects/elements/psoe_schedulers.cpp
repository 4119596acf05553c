#include "database/persistent/objects/elements/psoe_schedulers.h"

namespace database {
namespace persistent {
namespace objects {

psoe_schedulers::psoe_schedulers(QObject* parent)
    : psoe_family_t(parent)
{
}

psoe_schedulers::psoe_schedulers(QString const& topic, QObject* parent)
    : psoe_family_t(topic, parent)
{
}

psoe_schedulers::psoe_schedulers(QString const& id, QString const& name, QString const& description,
                                 QVariantMap const& function_map, QVariantMap const& auth, QStringList const& rooms,
                                 int flags, QVariantMap const& runoptions, QVariantMap const& lock_ui_map,
                                 QObject* parent)
    : psoe_family_t(id, name, description, function_map, auth, rooms, flags, runoptions, lock_ui_map, parent)
{
}

psoe_schedulers::psoe_schedulers(psoe_schedulers const& other)
    : psoe_family_t(other)
{
}

} // namespace objects
} // namespace persistent
} // namespace database
