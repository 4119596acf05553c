#ifndef DATABASE_REALTIME_DBS_RT_MAP_SECTION_T_H
#define DATABASE_REALTIME_DBS_RT_MAP_SECTION_T_H

#include <QString>
#include <QStringList>

#include "database/persistent/dbs/ps_object_map_section_t.h"
#include "database/realtime/rt_request.h"

namespace database {
namespace realtime {
namespace dbs {

/**
 * What the realtime sections made of one "objects_list" and an "updated"
 * date share. Derived declares the properties and the signals
 * objects_listChanged and updatedChanged, which moc has to see in the class
 * itself, and names the per-object operations after its objects.
 *
 * Live state stores what it is sent: an empty key is a key like any other,
 * and a look-up that misses is logged.
 */
template<class Derived, class T>
class rt_map_section_t : public persistent::dbs::ps_object_map_section_t<Derived, T>
{
    using base_t = persistent::dbs::ps_object_map_section_t<Derived, T>;

public:
    using typename base_t::map_t;

    /// The section doesn't write it: it comes and goes with the JSON.
    QString getUpdated() const { return updated; }
    void setUpdated(QString const& value)
    {
        this->assign(updated, value, [this] { Q_EMIT static_cast<Derived*>(this)->updatedChanged(updated); });
    }

    QStringList keys() const { return this->objects.get().keys(); }

    /// The whole map replaced by copies of map's objects.
    void update(map_t const& map, bool _notify) { replaceAll(map, _notify); }

    /// Takes other's objects as update(map) does, and its other fields; null
    /// is refused with "Not permitted nullptr".
    void update(Derived const* other, bool _notify)
    {
        if (!other) {
            this->refuseNull();
            return;
        }
        this->copyValues(other);
        replaceAll(other->getObjects(), _notify);
    }

    using base_t::send_update;
    /// Publishes one object, or null when the key isn't there.
    void send_update(QString const& key) { this->objects.sendUpdateObject(key); }

    /// Same object pointers and the same date: content is compared through the JSON.
    bool operator==(Derived const& other) const { return sameObjects(other); }

protected:
    rt_map_section_t(QString const& topic, QObject* parent)
        : base_t(topic, parent)
    {
        configure();
    }

    /// Deep: every object copied, no parent, no receiver.
    rt_map_section_t(rt_map_section_t const& other)
        : base_t(other)
        , updated(other.updated)
    {
        configure();
    }

    /// Content into the object of that key, a copy for a new key, removal for null.
    void updateObject(QString const& key, T* object, bool _notify) { this->objects.update(key, object, _notify); }

    /// Replaces the whole map by copies of map's objects.
    void replaceAll(map_t const& map, bool _notify)
    {
        this->objects.updateAll(map, _notify, [this](QObject* receiver, bool connect) {
            this->connectRequestSignals(receiver, connect);
            // Also without a receiver, so that every copy takes its topic here.
            this->objects.wireObjects(connect);
        });
    }

    bool sameObjects(rt_map_section_t const& other) const
    {
        return this->objects.get() == other.objects.get() && updated == other.updated;
    }

private:
    void configure()
    {
        realtimeMap(this->objects);
        this->objects.setSkipEmptyId(false);
    }

    QString updated;
};

} // namespace dbs
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_RT_MAP_SECTION_T_H
