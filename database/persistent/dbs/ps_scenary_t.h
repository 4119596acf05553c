#ifndef DATABASE_PERSISTENT_DBS_PS_SCENARY_T_H
#define DATABASE_PERSISTENT_DBS_PS_SCENARY_T_H

#include <QObject>
#include <QString>

#include "database/persistent/dbs/ps_map_section_t.h"
#include "database/persistent/objects/ps_object_scenary_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace dbs {

/// The section of the scenarios by id. A scenario is always replaced whole, never merged.
class DATABASE_EXPORT ps_scenary_t : public ps_map_section_t<ps_scenary_t, objects::ps_object_scenary_t>
{
    Q_OBJECT
    Q_PROPERTY(database::persistent::ps_scenary_map objects_list READ getObjects WRITE setObjects
                   NOTIFY objects_listChanged)
    Q_PROPERTY(bool enabled READ getEnabled WRITE setEnabled NOTIFY enabledChanged)

public:
    Q_INVOKABLE explicit ps_scenary_t(QObject* parent = nullptr);
    /// Takes the map's pointers as they are.
    ps_scenary_t(ps_scenary_map const& objects, QObject* parent);
    /// Deep: every scenario copied, no parent, no receiver.
    ps_scenary_t(ps_scenary_t const& other);

    /// A null scenario asks for its removal.
    void requestSetScenary(QString const& id, objects::ps_object_scenary_t* object) { objects.requestSet(id, object); }
    void requestSetScenary(ps_scenary_map const& map) { objects.requestSetAll(map); }

    /// A copy of object takes the id, and a scenario held there before goes
    /// with the event loop; null removes the scenario and its steps.
    void update_scene(QString const& id, objects::ps_object_scenary_t* object, bool _notify);

    /// Publishes one scenario, or null when it isn't there.
    void send_update_scene(QString const& id) { objects.sendUpdateObject(id); }

Q_SIGNALS:
    void objects_listChanged(database::persistent::ps_scenary_map);
    void enabledChanged(bool);
};

} // namespace dbs
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_PS_SCENARY_T_H
