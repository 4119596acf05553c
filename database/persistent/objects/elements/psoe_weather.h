#ifndef DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_WEATHER_H
#define DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_WEATHER_H

#include <QObject>
#include <QString>

#include "database/persistent/objects/elements/psoe_family_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/**
 * A weather station's readings. Its class is neither cloned by type nor compared
 * by content, which the element type table keeps on purpose.
 */
class DATABASE_EXPORT psoe_weather : public psoe_family_t<psoe_weather, ps_object_element_t::ELEMENT_TYPE_WEATHER>
{
    Q_OBJECT

public:
    enum WindDirectionEnum {
        WEATHER_WIND_ORIENTATION_NORD = 0,
        WEATHER_WIND_ORIENTATION_NORD_EAST = 45,
        WEATHER_WIND_ORIENTATION_EAST = 90,
        WEATHER_WIND_ORIENTATION_SOUTH_EAST = 135,
        WEATHER_WIND_ORIENTATION_SOUTH = 180,
        WEATHER_WIND_ORIENTATION_SOUTH_WEST = 225,
        WEATHER_WIND_ORIENTATION_WEST = 270,
        WEATHER_WIND_ORIENTATION_NORD_WEST = 315
    };
    Q_ENUM(WindDirectionEnum)

    enum WeatherFlag {
        WEATHER_FLAG_TYPE = 0x80000000,
        WEATHER_FLAG_DAY_NIGHT_INV = 0x40000000,
        WEATHER_FLAG_ALARM_RAIN_INV = 0x20000000,
        WEATHER_FLAG_ALARM_WIND_INV = 0x10000000
    };
    Q_ENUM(WeatherFlag)

    Q_INVOKABLE explicit psoe_weather(QObject* parent = nullptr);
    psoe_weather(QString const& topic, QObject* parent);
    psoe_weather(QString const& id, QString const& name, QString const& description, QVariantMap const& function_map,
                 QVariantMap const& auth, QStringList const& rooms, int flags, QVariantMap const& runoptions,
                 QVariantMap const& lock_ui_map, QObject* parent);
    psoe_weather(psoe_weather const& other);
};

} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_WEATHER_H
