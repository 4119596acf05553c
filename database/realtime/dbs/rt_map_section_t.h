#ifndef DATABASE_REALTIME_DBS_RT_MAP_SECTION_T_H
#define DATABASE_REALTIME_DBS_RT_MAP_SECTION_T_H

#include <QString>

#include "database/persistent/dbs/ps_object_map_section_t.h"

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
    /// The section doesn't write it: it comes and goes with the JSON.
    QString getUpdated() const { return updated; }
    void setUpdated(QString const& value)
    {
        this->assign(updated, value, [this] { Q_EMIT static_cast<Derived*>(this)->updatedChanged(updated); });
    }

    /// Same object pointers and the same date: content is compared through the JSON.
    bool operator==(Derived const& other) const
    {
        return this->objects.get() == other.objects.get() && updated == other.updated;
    }

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

    /// Replaces the whole map by copies of map's objects.
    void replaceAll(typename base_t::map_t const& map, bool _notify)
    {
        this->objects.updateAll(map, _notify, [this](QObject* receiver, bool connect) {
            this->connectRequestSignals(receiver, connect);
            // Also without a receiver, so that every copy takes its topic here.
            this->objects.wireObjects(connect);
        });
    }

private:
    void configure()
    {
        this->objects.setMissLog(QStringLiteral("New key create app : "));
        this->objects.setSkipEmptyId(false);
    }

    QString updated;
};

} // namespace dbs
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_RT_MAP_SECTION_T_H
