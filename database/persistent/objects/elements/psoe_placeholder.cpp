#include "database/persistent/objects/elements/psoe_placeholder.h"

namespace database {
namespace persistent {
namespace objects {

psoe_placeholder::psoe_placeholder(QObject* parent)
    : psoe_family_t(parent)
{
}

psoe_placeholder::psoe_placeholder(QString const& topic, QObject* parent)
    : psoe_family_t(topic, parent)
{
}

psoe_placeholder::psoe_placeholder(QString const& id, QString const& name, QString const& description,
                                   QVariantMap const& function_map, QVariantMap const& auth, QStringList const& rooms,
                                   int flags, QVariantMap const& runoptions, QVariantMap const& lock_ui_map,
                                   QString const& picture, QObject* parent)
    : psoe_family_t(id, name, description, function_map, auth, rooms, flags, runoptions, lock_ui_map, parent)
    , picture(picture)
{
}

psoe_placeholder::psoe_placeholder(psoe_placeholder const& other)
    : psoe_family_t(other)
{
    copyValues(&other);
}

} // namespace objects
} // namespace persistent
} // namespace database
