#ifndef DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_SHUTTER_H
#define DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_SHUTTER_H

#include <QObject>
#include <QString>

#include "database/persistent/objects/elements/psoe_element_type_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/// A shutter, door or window driven up and down, of the kind told by element_type.
class DATABASE_EXPORT psoe_shutter
    : public psoe_element_type_t<psoe_shutter, ps_object_element_t::ELEMENT_TYPE_SHUTTER_UPDOWN>
{
    Q_OBJECT
    Q_PROPERTY(int element_type READ getElement_type WRITE setElement_type NOTIFY element_typeChanged)

public:
    enum ELEMENT_SHUTTER_TYPE {
        ELEMENT_SHUTTER_TYPE_SHUTTER_UP_DOWN = 0,
        ELEMENT_SHUTTER_TYPE_DOOR = 1,
        ELEMENT_SHUTTER_TYPE_WINDOW = 2,
        ELEMENT_SHUTTER_TYPE_GARAGE = 3,
        ELEMENT_SHUTTER_TYPE_WINDOW_ROOF = 4
    };
    Q_ENUM(ELEMENT_SHUTTER_TYPE)

    Q_INVOKABLE explicit psoe_shutter(QObject* parent = nullptr);
    psoe_shutter(QString const& topic, QObject* parent);
    psoe_shutter(QString const& id, QString const& name, QString const& description, QVariantMap const& function_map,
                 QVariantMap const& auth, QStringList const& rooms, int flags, QVariantMap const& runoptions,
                 QVariantMap const& lock_ui_map, int element_type, QObject* parent);
    psoe_shutter(psoe_shutter const& other);

Q_SIGNALS:
    void element_typeChanged(int);
};

} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_SHUTTER_H
