#ifndef DATABASE_PERSISTENT_OBJECTS_SCHEDULERS_PS_OBJECT_SCHEDULER_T_H
#define DATABASE_PERSISTENT_OBJECTS_SCHEDULERS_PS_OBJECT_SCHEDULER_T_H

#include <QMap>
#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"
#include "database/persistent/dbs/ps_object_map_t.h"
#include "database/persistent/objects/schedulers/ps_object_astro_t.h"
#include "database/persistent/objects/schedulers/ps_object_cron_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/// One named schedule of an element: its clock entries and its sun entries.
class DATABASE_EXPORT ps_object_scheduler_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(database::persistent::ps_cron_map cron_list READ getCrons WRITE setCrons NOTIFY cron_listChanged)
    Q_PROPERTY(database::persistent::ps_astro_map astro_list READ getAstros WRITE setAstros NOTIFY astro_listChanged)
    Q_PROPERTY(QString name READ getName WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(QString element_id READ getElementId WRITE setElementId NOTIFY element_idChanged)
    Q_PROPERTY(bool enabled READ getEnabled WRITE setEnabled NOTIFY enabledChanged)
    Q_PROPERTY(int permission READ getPermission WRITE setPermission NOTIFY permissionChanged)

public:
    Q_INVOKABLE explicit ps_object_scheduler_t(QObject* parent = nullptr);
    ps_object_scheduler_t(QString const& topic, QObject* parent);
    /// The maps' pointers are taken as they are.
    ps_object_scheduler_t(QString const& name, bool enabled, ps_cron_map const& crons, ps_astro_map const& astros,
                          QString const& element_id, int permission = 0, QObject* parent = nullptr);
    /// Deep: every entry and action copied, no parent, no receiver.
    ps_object_scheduler_t(ps_object_scheduler_t const& other);

    ps_cron_map getCrons() const { return crons.get(); }
    ps_astro_map getAstros() const { return astros.get(); }
    QString getName() const { return name; }
    QString getElementId() const { return element_id; }
    bool getEnabled() const { return enabled; }
    int getPermission() const { return permission; }

    /// Take the map's pointers as they are.
    void setCrons(ps_cron_map const& map);
    void setAstros(ps_astro_map const& map);
    void setName(QString const& value);
    void setElementId(QString const& value);
    void setEnabled(bool value);
    void setPermission(int value);

    /// Clock entries and sun entries together.
    int getTaskCount() const { return int(crons.get().size() + astros.get().size()); }

    void requestSetEnabled(bool value);
    void requestSetName(QString const& value);
    void requestSetElemetId(QString const& value);
    void requestSetPermission(int value);
    void requestSetCron(QString const& id, ps_object_cron_t* cron) { crons.requestSet(id, cron); }
    void requestSetAstro(QString const& id, ps_object_astro_t* astro) { astros.requestSet(id, astro); }
    void requestSetCrons(ps_cron_map const& map) { crons.requestSetAll(map); }
    void requestSetAstros(ps_astro_map const& map) { astros.requestSetAll(map); }
    /// Asks for this schedule with both lists replaced.
    void requestSetScheduler(ps_cron_map const& cronMap, ps_astro_map const& astroMap);

    /// Never null; see ps_object_map_t::list.
    ps_object_cron_t* cron(QString const& id) { return crons.list(id); }
    ps_object_astro_t* astro(QString const& id) { return astros.list(id); }

    /// Merge into the entry of that id, a copy for a new id, removal for null;
    /// with _notify the whole schedule is published.
    void update_cron(QString const& id, ps_object_cron_t* cron, bool _notify);
    void update_astro(QString const& id, ps_object_astro_t* astro, bool _notify);

    /// Same entries by content, then name, element, enabled and permission.
    bool compare(ps_object_scheduler_t const* other) const;
    bool compare_cron_map(ps_cron_map const& map) const;
    bool compare_astro_map(ps_astro_map const& map) const;
    /// Same entry objects and the same values.
    bool operator==(ps_object_scheduler_t const& other) const;

    void send_update() { publishSelf(); }
    /// Wires itself, then every clock and sun entry with their actions.
    void initRequestSignals(QObject* receiver, bool connect);

Q_SIGNALS:
    void cron_listChanged(database::persistent::ps_cron_map);
    void astro_listChanged(database::persistent::ps_astro_map);
    void nameChanged(QString);
    void element_idChanged(QString);
    void enabledChanged(bool);
    void permissionChanged(int);

private:
    dbs::ps_object_map_t<ps_object_cron_t> crons{this, QStringLiteral("cron_list")};
    dbs::ps_object_map_t<ps_object_astro_t> astros{this, QStringLiteral("astro_list")};
    QString name;
    QString element_id;
    bool enabled = true;
    int permission = 0;
};

} // namespace objects

typedef QMap<QString, objects::ps_object_scheduler_t*> ps_schedulers_map;

} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_SCHEDULERS_PS_OBJECT_SCHEDULER_T_H
