#ifndef DATABASE_REALTIME_DBS_RT_SCHEDULER_T_H
#define DATABASE_REALTIME_DBS_RT_SCHEDULER_T_H

#include <QObject>
#include <QString>

#include "database/realtime/dbs/rt_map_section_t.h"
#include "database/realtime/objects/schedulers/rt_object_scheduler_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace dbs {

/// How the schedules went, by the keys of the persistent schedules, and whether scheduling runs at all.
class DATABASE_EXPORT rt_scheduler_t : public rt_map_section_t<rt_scheduler_t, objects::rt_object_scheduler_t>
{
    Q_OBJECT
    Q_PROPERTY(database::realtime::rt_schedulers_map objects_list READ getObjects WRITE setObjects NOTIFY
                   objects_listChanged)
    Q_PROPERTY(QString updated READ getUpdated WRITE setUpdated NOTIFY updatedChanged)
    Q_PROPERTY(bool enabled MEMBER enabled READ getEnabled NOTIFY enabledChanged)

public:
    Q_INVOKABLE explicit rt_scheduler_t(QObject* parent = nullptr);
    /// Takes the map's pointers as they are.
    rt_scheduler_t(bool enabled, rt_schedulers_map const& objects, QObject* parent);
    /// Deep: every object copied, no parent, no receiver.
    rt_scheduler_t(rt_scheduler_t const& other);

    bool getEnabled() const { return enabled; }

    /// Content into the object of that key, a copy for a new key, removal for null.
    void update_scheduler(QString const& key, objects::rt_object_scheduler_t* object, bool _notify)
    {
        updateObject(key, object, _notify);
    }

    /// Same object pointers, date and switch: a deep comparison goes through the objects.
    bool operator==(rt_scheduler_t const& other) const
    {
        return sameObjects(other) && enabled == other.enabled;
    }

Q_SIGNALS:
    void objects_listChanged(database::realtime::rt_schedulers_map);
    void updatedChanged(QString);
    void enabledChanged(bool);

private:
    bool enabled = true;
};

} // namespace dbs
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_RT_SCHEDULER_T_H
