#ifndef DATABASE_REALTIME_DBS_RT_MAP_SECTION_T_H
#define DATABASE_REALTIME_DBS_RT_MAP_SECTION_T_H

#include <QMap>
#include <QString>

#include "database/base/topicbase_t.h"
#include "database/persistent/dbs/ps_object_map_t.h"

namespace database {
namespace realtime {
namespace dbs {

/**
 * What the realtime sections made of one "objects_list" and an "updated"
 * date share: the map with its never-null look-up, its publication and its
 * wiring. Derived declares the properties and the signals objects_listChanged
 * and updatedChanged, which moc has to see in the class itself, and names the
 * per-object operations after its objects.
 *
 * Unlike the configuration, live state stores what it is sent: an empty key
 * is a key like any other.
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
    /// The section doesn't write it: it comes and goes with the JSON.
    QString getUpdated() const { return updated; }
    void setUpdated(QString const& value)
    {
        assign(updated, value, [this] { Q_EMIT self()->updatedChanged(updated); });
    }

    /// Never null: an unknown key gives a new object, already scheduled for
    /// deletion, and raises onObjectNotExist.
    T* list(QString const& key) { return objects.list(key); }

    /// Publishes the whole map on "section/objects_list".
    void send_update() { objects.sendUpdate(); }

    /// Remembers the receiver for the objects stored later.
    void initRequestSignals(QObject* receiver, bool connect) { objects.initRequestSignals(receiver, connect); }

    /// Same object pointers and the same date: content is compared through the JSON.
    bool operator==(Derived const& other) const
    {
        return objects.get() == other.objects.get() && updated == other.updated;
    }

protected:
    rt_map_section_t(QString const& topic, QObject* parent)
        : topicbase_t(topic, parent)
    {
        configure();
    }

    /// Deep: every object copied, no parent, no receiver.
    rt_map_section_t(rt_map_section_t const& other)
        : topicbase_t(other)
        , updated(other.updated)
    {
        configure();
        objects.copyFrom(other.objects);
    }

    /// Replaces the whole map by copies of map's objects.
    void replaceAll(map_t const& map, bool _notify)
    {
        objects.updateAll(map, _notify, [this](QObject* receiver, bool connect) {
            connectRequestSignals(receiver, connect);
            // Also without a receiver, so that every copy takes its topic here.
            objects.wireObjects(connect);
        });
    }

    persistent::dbs::ps_object_map_t<T> objects{this, QStringLiteral("objects_list")};
    QString updated;

private:
    Derived* self() { return static_cast<Derived*>(this); }

    void configure()
    {
        objects.setMissLog(QStringLiteral("New key create app : "));
        objects.setSkipEmptyId(false);
    }
};

} // namespace dbs
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_RT_MAP_SECTION_T_H
