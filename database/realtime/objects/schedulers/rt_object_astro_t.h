#ifndef DATABASE_REALTIME_OBJECTS_SCHEDULERS_RT_OBJECT_ASTRO_T_H
#define DATABASE_REALTIME_OBJECTS_SCHEDULERS_RT_OBJECT_ASTRO_T_H

#include <QMap>
#include <QObject>
#include <QString>

#include "database/realtime/objects/schedulers/rt_object_schedule_entry_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace objects {

/// The state of one sun entry of a schedule: when it last ran and how often.
class DATABASE_EXPORT rt_object_astro_t : public rt_object_schedule_entry_t
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit rt_object_astro_t(QObject* parent = nullptr);
    rt_object_astro_t(QString const& topic, QObject* parent);
    rt_object_astro_t(QString const& executed, int counter, QObject* parent);
    rt_object_astro_t(rt_object_astro_t const& other);
};

} // namespace objects

typedef QMap<QString, objects::rt_object_astro_t*> rt_astro_map;

} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_OBJECTS_SCHEDULERS_RT_OBJECT_ASTRO_T_H
