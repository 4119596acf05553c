#ifndef DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_ONOFF_H
#define DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_ONOFF_H

#include <QObject>
#include <QString>

#include "database/persistent/objects/elements/psoe_element_type_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/// A switch: something that is on or off, of the kind told by element_type.
class DATABASE_EXPORT psoe_onoff : public psoe_element_type_t<psoe_onoff, ps_object_element_t::ELEMENT_TYPE_ONOFF>
{
    Q_OBJECT
    Q_PROPERTY(int element_type READ getElement_type WRITE setElement_type NOTIFY element_typeChanged)

public:
    enum ELEMENT_ONOFF_TYPE {
        ELEMENT_ONOFF_TYPE_GENERIC = 0,
        ELEMENT_ONOFF_TYPE_LIGHT = 1,
        ELEMENT_ONOFF_TYPE_PRESENCE = 2,
        ELEMENT_ONOFF_TYPE_DOOR = 3,
        ELEMENT_ONOFF_TYPE_LOCK = 4,
        ELEMENT_ONOFF_TYPE_ALARM = 5,
        ELEMENT_ONOFF_TYPE_WINDOW = 6,
        ELEMENT_ONOFF_TYPE_DOORLOCK = 7,
        ELEMENT_ONOFF_TYPE_GARAGE = 8,
        ELEMENT_ONOFF_TYPE_VENTILATION = 9,
        ELEMENT_ONOFF_TYPE_LOAD = 10,
        ELEMENT_ONOFF_TYPE_HEATING = 11,
        ELEMENT_ONOFF_TYPE_COOLING = 12,
        ELEMENT_ONOFF_TYPE_SOCKET = 13,
        ELEMENT_ONOFF_TYPE_SPRINKLER = 14,
        ELEMENT_ONOFF_TYPE_WINDOW_ROOF = 15,
        ELEMENT_ONOFF_TYPE_DAY_NIGHT = 16,
        ELEMENT_ONOFF_TYPE_SHUTTER_UP_DOWN = 17,
        ELEMENT_ONOFF_TYPE_RAINING = 18,
        ELEMENT_ONOFF_TYPE_WIND = 19,
        ELEMENT_ONOFF_TYPE_AWNINGS = 20,
        ELEMENT_ONOFF_TYPE_CURTAINS = 21,
        ELEMENT_ONOFF_TYPE_HEAT_COOL = 22,
        ELEMENT_ONOFF_TYPE_HEAT_PUMP = 23,
        ELEMENT_ONOFF_TYPE_PUMP = 24,
        ELEMENT_ONOFF_TYPE_SUMMER_WINTER = 25,
        ELEMENT_ONOFF_TYPE_VALVE = 26,
        ELEMENT_ONOFF_TYPE_ARMED_DISARMED = 27
    };
    Q_ENUM(ELEMENT_ONOFF_TYPE)

    enum OnOffFlag { ONOFF_FLAG_INVERT = 0x80000000, ONOFF_FLAG_INVERT_COLORIZATION = 0x40000000 };
    Q_ENUM(OnOffFlag)

    Q_INVOKABLE explicit psoe_onoff(QObject* parent = nullptr);
    psoe_onoff(QString const& topic, QObject* parent);
    psoe_onoff(QString const& id, QString const& name, QString const& description, QVariantMap const& function_map,
               QVariantMap const& auth, QStringList const& rooms, int flags, QVariantMap const& runoptions,
               QVariantMap const& lock_ui_map, int element_type, QObject* parent);
    psoe_onoff(psoe_onoff const& other);

Q_SIGNALS:
    void element_typeChanged(int);
};

} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_ONOFF_H
