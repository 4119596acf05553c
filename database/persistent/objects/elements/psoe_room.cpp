#include "database/persistent/objects/elements/psoe_room.h"

namespace database {
namespace persistent {
namespace objects {

psoe_room::psoe_room(QObject* parent)
    : psoe_family_t(parent)
{
}

psoe_room::psoe_room(QString const& topic, QObject* parent)
    : psoe_family_t(topic, parent)
{
}

psoe_room::psoe_room(QString const& id, QString const& name, QString const& description,
                     QVariantMap const& function_map, QVariantMap const& auth, QStringList const& rooms, int flags,
                     QVariantMap const& runoptions, QVariantMap const& lock_ui_map, QStringList const& element_list,
                     QString const& room_picture, int design, QObject* parent)
    : psoe_family_t(id, name, description, function_map, auth, rooms, flags, runoptions, lock_ui_map, parent)
    , element_list(element_list)
    , room_picture(room_picture)
    , design(design)
{
}

psoe_room::psoe_room(psoe_room const& other)
    : psoe_family_t(other)
{
    copyValues(&other);
}

void psoe_room::update_design(int value, bool _notify)
{
    setDesign(value);
    if (_notify)
        send_update();
}

} // namespace objects
} // namespace persistent
} // namespace database
