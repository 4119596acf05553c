#ifndef DATABASE_REALTIME_DBS_RT_THERMO_T_H
#define DATABASE_REALTIME_DBS_RT_THERMO_T_H

#include <QObject>
#include <QString>

#include "database/realtime/dbs/rt_map_section_t.h"
#include "database/realtime/objects/rt_object_thermostat_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace dbs {

/**
 * The live state of the thermostats, by the key of their persistent twin.
 * The thermostat process writes a whole thermostat or one of its two parts.
 */
class DATABASE_EXPORT rt_thermo_t : public rt_map_section_t<rt_thermo_t, objects::rt_object_thermostat_t>
{
    Q_OBJECT
    Q_PROPERTY(database::realtime::rt_thermostat_map objects_list READ getObjects WRITE setObjects
                   NOTIFY objects_listChanged)
    Q_PROPERTY(QString updated READ getUpdated WRITE setUpdated NOTIFY updatedChanged)

public:
    Q_INVOKABLE explicit rt_thermo_t(QObject* parent = nullptr);
    /// Takes the map's pointers as they are.
    rt_thermo_t(rt_thermostat_map const& objects, QObject* parent);
    /// Deep: every thermostat copied, no parent, no receiver.
    rt_thermo_t(rt_thermo_t const& other) = default;

    /// Content into the thermostat of that key, a copy for a new key, removal
    /// for null; with _notify the key is published, null payload included.
    void update(QString const& key, objects::rt_object_thermostat_t* object, bool _notify)
    {
        objects.update(key, object, _notify);
    }
    /// Replaces every thermostat by copies of map's.
    void update(rt_thermostat_map const& map, bool _notify) { replaceAll(map, _notify); }

    /// The room control of the thermostat of that key takes object's content;
    /// an unknown key gets a new thermostat, a null object clears that part
    /// alone. With _notify the whole thermostat is published.
    void update_thermo(QString const& key, objects::rt_object_thermo_t* object, bool _notify);
    /// The same for the hydronic control.
    void update_hydro(QString const& key, objects::rt_object_hydro_t* object, bool _notify);

    using rt_map_section_t::send_update;
    /// Publishes one thermostat, or null when the key isn't there.
    void send_update(QString const& key) { objects.sendUpdateObject(key); }

Q_SIGNALS:
    void objects_listChanged(database::realtime::rt_thermostat_map);
    void updatedChanged(QString);

private:
    template<class Part>
    void updatePart(QString const& key, Part* object, bool _notify,
                    void (objects::rt_object_thermostat_t::*apply)(Part const*, bool));
};

} // namespace dbs
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_RT_THERMO_T_H
