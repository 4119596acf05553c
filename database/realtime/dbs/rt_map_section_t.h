#ifndef DATABASE_REALTIME_DBS_RT_MAP_SECTION_T_H
#define DATABASE_REALTIME_DBS_RT_MAP_SECTION_T_H

#include <QMap>
#include <QString>
#include <QStringList>

#include "database/base/topicbase_t.h"
#include "database/persistent/dbs/ps_object_map_t.h"
#include "database/realtime/rt_request.h"

namespace database {
namespace realtime {
namespace dbs {

/**
 * What the realtime sections made of one "objects_list" share: the map with
 * its never-null look-up, its updates and publication, and the date of the
 * last change, which comes and goes with the JSON. Derived declares the
 * properties and signals (objects_listChanged, updatedChanged), which moc has
 * to see in the class itself, and names the per-object update after its objects.
 */
template<class Derived, class T>
class rt_map_section_t : public base::topicbase_t
{
public:
    using map_t = QMap<QString, T*>;

    map_t getObjects() const { return objects.get(); }
    /// Takes the map's pointers as they are.
    void setObjects(map_t const& map)
    {
        objects.adopt(map);
        Q_EMIT self()->objects_listChanged(objects.get());
    }
    QString getUpdated() const { return updated; }
    void setUpdated(QString const& value)
    {
        assign(updated, value, [this] { Q_EMIT self()->updatedChanged(updated); });
    }

    QStringList keys() const { return objects.get().keys(); }

    /// Never null; see ps_object_map_t::list.
    T* list(QString const& key) { return objects.list(key); }

    /// The whole map replaced by copies of map's objects.
    void update(map_t const& map, bool _notify)
    {
        objects.updateAll(map, _notify,
                          [this](QObject* receiver, bool connect) { self()->initRequestSignals(receiver, connect); });
    }

    /// Takes other's objects as update(map) does, and its other fields; null
    /// is refused with "Not permitted nullptr".
    void update(Derived const* other, bool _notify)
    {
        if (!other) {
            refuseNull();
            return;
        }
        copyValues(other);
        update(other->getObjects(), _notify);
    }

    /// Publishes the whole map, or one object (null when the key isn't there).
    void send_update() { objects.sendUpdate(); }
    void send_update(QString const& key) { objects.sendUpdateObject(key); }

    void initRequestSignals(QObject* receiver, bool connect) { objects.initRequestSignals(receiver, connect); }

protected:
    rt_map_section_t(QString const& topic, QObject* parent)
        : topicbase_t(topic, parent)
    {
        realtimeMap(objects);
    }

    /// Deep: every object copied, no parent, no receiver.
    rt_map_section_t(rt_map_section_t const& other)
        : topicbase_t(other)
        , updated(other.updated)
    {
        realtimeMap(objects);
        objects.copyFrom(other.objects);
    }

    /// Content into the object of that key, a copy for a new key, removal for null.
    void updateObject(QString const& key, T* object, bool _notify) { objects.update(key, object, _notify); }

    /// Same object pointers and the same date.
    bool sameObjects(rt_map_section_t const& other) const
    {
        return objects.get() == other.objects.get() && updated == other.updated;
    }

private:
    Derived* self() { return static_cast<Derived*>(this); }

    persistent::dbs::ps_object_map_t<T> objects{this, QStringLiteral("objects_list")};
    QString updated;
};

} // namespace dbs
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_RT_MAP_SECTION_T_H
