#ifndef DATABASE_PERSISTENT_DBS_PS_SCHEDULER_T_H
#define DATABASE_PERSISTENT_DBS_PS_SCHEDULER_T_H

#include <QObject>
#include <QString>
#include <QStringList>

#include "database/base/topicbase_t.h"
#include "database/persistent/dbs/ps_object_map_t.h"
#include "database/persistent/objects/schedulers/ps_object_scheduler_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace dbs {

/// The section of the schedules by id. A schedule is never merged: an update
/// replaces it whole.
class DATABASE_EXPORT ps_scheduler_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(database::persistent::ps_schedulers_map objects_list READ getObjects WRITE setObjects NOTIFY objects_listChanged)
    Q_PROPERTY(bool enabled READ getEnabled WRITE setEnabled NOTIFY enabledChanged)

public:
    Q_INVOKABLE explicit ps_scheduler_t(QObject* parent = nullptr);
    /// Takes the map's pointers as they are.
    ps_scheduler_t(ps_schedulers_map const& objects, QObject* parent);
    /// Deep: every schedule copied, no parent, no receiver.
    ps_scheduler_t(ps_scheduler_t const& other);

    ps_schedulers_map getObjects() const { return objects.get(); }
    void setObjects(ps_schedulers_map const& map);
    bool getEnabled() const { return enabled; }
    void setEnabled(bool value);

    /// Never null; see ps_object_map_t::list.
    objects::ps_object_scheduler_t* list(QString const& id) { return objects.list(id); }
    QStringList keys() const { return objects.get().keys(); }

    void requestSetEnabled(bool value);
    /// A null schedule asks for its removal.
    void requestSetSchedulers(QString const& id, objects::ps_object_scheduler_t* object)
    {
        objects.requestSet(id, object);
    }

    /// Publishes the bare flag on "schedulers/enabled" when _notify.
    void update_enabled(bool value, bool _notify);
    /// A copy of object replaces the schedule of that id; null removes it.
    void update_scheduler(QString const& id, objects::ps_object_scheduler_t* object, bool _notify)
    {
        objects.replace(id, object, _notify);
    }

    void send_update() { objects.sendUpdate(); }
    void send_update_scheduler(QString const& id) { objects.sendUpdateObject(id); }

    void initRequestSignals(QObject* receiver, bool connect) { objects.initRequestSignals(receiver, connect); }

    /// Same schedule pointers and the same enabled: a deep comparison goes through compare().
    bool operator==(ps_scheduler_t const& other) const;

Q_SIGNALS:
    void objects_listChanged(database::persistent::ps_schedulers_map);
    void enabledChanged(bool);

private:
    ps_object_map_t<objects::ps_object_scheduler_t> objects{this, QStringLiteral("objects_list")};
    bool enabled = true;
};

} // namespace dbs
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_PS_SCHEDULER_T_H
