#ifndef DATABASE_REALTIME_DBS_RT_ITEMS_T_H
#define DATABASE_REALTIME_DBS_RT_ITEMS_T_H

#include <QObject>
#include <QString>

#include "database/realtime/dbs/rt_map_section_t.h"
#include "database/realtime/objects/rt_object_item_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace dbs {

/**
 * The live values of the items, by the key of their persistent twin. Drivers
 * write it through status packets; the realtime consistency check adds and
 * removes keys as the configuration changes.
 */
class DATABASE_EXPORT rt_items_t : public rt_map_section_t<rt_items_t, objects::rt_object_item_t>
{
    Q_OBJECT
    Q_PROPERTY(database::realtime::rt_items_map objects_list READ getObjects WRITE setObjects
                   NOTIFY objects_listChanged)
    Q_PROPERTY(QString updated READ getUpdated WRITE setUpdated NOTIFY updatedChanged)

public:
    Q_INVOKABLE explicit rt_items_t(QObject* parent = nullptr);
    /// Takes the map's pointers as they are.
    rt_items_t(rt_items_map const& objects, QObject* parent);
    /// Deep: every item copied, no parent, no receiver.
    rt_items_t(rt_items_t const& other) = default;

    /// Content into the item of that key, a copy for a new key, removal for
    /// null; with _notify the key is published, null payload included.
    void update_item(QString const& key, objects::rt_object_item_t* object, bool _notify)
    {
        objects.update(key, object, _notify);
    }
    /// Replaces every item by copies of map's.
    void update_item(rt_items_map const& map, bool _notify) { replaceAll(map, _notify); }

    /// Publishes one item, or null when the key isn't there.
    void send_update_item(QString const& key) { objects.sendUpdateObject(key); }

    /// Live values are flat records whose values all pass through assign(): the image keeps them by item.
    base::json_cached_map_t* jsonCache(QString const& property) override
    {
        return property == objects.key() ? &objects : nullptr;
    }

Q_SIGNALS:
    void objects_listChanged(database::realtime::rt_items_map);
    void updatedChanged(QString);
};

} // namespace dbs
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_RT_ITEMS_T_H
