#ifndef DATABASE_PERSISTENT_DBS_PS_THERMO_T_H
#define DATABASE_PERSISTENT_DBS_PS_THERMO_T_H

#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"
#include "database/persistent/dbs/ps_object_map_t.h"
#include "database/persistent/objects/thermo/ps_object_thermostat_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace dbs {

/// The section of the thermostats by id.
class DATABASE_EXPORT ps_thermo_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(database::persistent::ps_thermostat_map objects_list READ getObjects WRITE setObjects
                   NOTIFY objects_listChanged)
    Q_PROPERTY(bool enabled READ getEnabled WRITE setEnabled NOTIFY enabledChanged)

public:
    Q_INVOKABLE explicit ps_thermo_t(QObject* parent = nullptr);
    /// Takes the map's pointers as they are.
    ps_thermo_t(ps_thermostat_map const& objects, QObject* parent);
    /// Deep: every thermostat copied, no parent, no receiver.
    ps_thermo_t(ps_thermo_t const& other);

    ps_thermostat_map getObjects() const { return objects.get(); }
    void setObjects(ps_thermostat_map const& map);
    bool getEnabled() const { return enabled; }
    void setEnabled(bool value);

    /// Never null; see ps_object_map_t::list.
    objects::ps_object_thermostat_t* list(QString const& id) { return objects.list(id); }

    void requestSetEnabled(bool value);
    /// Asks for one thermostat; null asks for its removal. A loop without a
    /// measured value can't run, so object is first corrected in place: its
    /// temperature or humidity loop is disabled when that loop has no idactual.
    void requestSetThermo(QString const& id, objects::ps_object_thermostat_t* object);
    void requestSetThermos(ps_thermostat_map const& map) { objects.requestSetAll(map); }

    void update_thermos(QString const& id, objects::ps_object_thermostat_t* object, bool _notify)
    {
        objects.update(id, object, _notify);
    }
    void update_thermos(ps_thermostat_map const& map, bool _notify);

    void send_update() { objects.sendUpdate(); }
    void send_update_thermo(QString const& id) { objects.sendUpdateObject(id); }

    /// Also remembers receiver for the thermostats that update_thermos creates later.
    void initRequestSignals(QObject* receiver, bool connect) { objects.initRequestSignals(receiver, connect); }

    /// Same thermostat pointers and the same enabled: a deep comparison goes through compare().
    bool operator==(ps_thermo_t const& other) const;

Q_SIGNALS:
    void objects_listChanged(database::persistent::ps_thermostat_map);
    void updatedChanged(QString);
    void enabledChanged(bool);

private:
    ps_object_map_t<objects::ps_object_thermostat_t> objects{this, QStringLiteral("objects_list")};
    bool enabled = true;
};

} // namespace dbs
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_PS_THERMO_T_H
