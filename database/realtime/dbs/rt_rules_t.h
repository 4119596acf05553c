#ifndef DATABASE_REALTIME_DBS_RT_RULES_T_H
#define DATABASE_REALTIME_DBS_RT_RULES_T_H

#include <QObject>
#include <QString>

#include "database/realtime/dbs/rt_map_section_t.h"
#include "database/realtime/objects/rt_object_rules_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace dbs {

/// The live state of the rules, by the keys of the persistent rules.
class DATABASE_EXPORT rt_rules_t : public rt_map_section_t<rt_rules_t, objects::rt_object_rules_t>
{
    Q_OBJECT
    Q_PROPERTY(database::realtime::rt_rules_map objects_list READ getObjects WRITE setObjects NOTIFY
                   objects_listChanged)
    Q_PROPERTY(QString updated READ getUpdated WRITE setUpdated NOTIFY updatedChanged)

public:
    Q_INVOKABLE explicit rt_rules_t(QObject* parent = nullptr);
    /// Takes the map's pointers as they are.
    rt_rules_t(rt_rules_map const& objects, QObject* parent);
    /// Deep: every object copied, no parent, no receiver.
    rt_rules_t(rt_rules_t const& other);

    /// Content into the object of that key, a copy for a new key, removal for null.
    void update_rule(QString const& key, objects::rt_object_rules_t* object, bool _notify)
    {
        updateObject(key, object, _notify);
    }

    /// Same object pointers and the same date: a deep comparison goes through the objects.
    bool operator==(rt_rules_t const& other) const { return sameObjects(other); }

Q_SIGNALS:
    void objects_listChanged(database::realtime::rt_rules_map);
    void updatedChanged(QString);
};

} // namespace dbs
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_RT_RULES_T_H
