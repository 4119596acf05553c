#ifndef DATABASE_PERSISTENT_DBS_PS_MAP_SECTION_T_H
#define DATABASE_PERSISTENT_DBS_PS_MAP_SECTION_T_H

#include <QMap>
#include <QString>

#include "database/base/topicbase_t.h"
#include "database/persistent/dbs/ps_object_map_t.h"
#include "database/persistent/ps_request.h"

namespace database {
namespace persistent {
namespace dbs {

/**
 * What the sections made of one "objects_list" and an "enabled" switch share:
 * the map with its look-up and publication, the switch with its request and
 * update. Derived declares the properties and signals (objects_listChanged,
 * enabledChanged), which moc has to see in the class itself, and names the
 * per-object operations after its own objects.
 */
template<class Derived, class T>
class ps_map_section_t : public base::topicbase_t
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
    bool getEnabled() const { return enabled; }
    void setEnabled(bool value)
    {
        assign(enabled, value, [this] { Q_EMIT self()->enabledChanged(enabled); });
    }

    /// Never null; see ps_object_map_t::list.
    T* list(QString const& id) { return objects.list(id); }

    void requestSetEnabled(bool value) { requestField(this, QStringLiteral("enabled"), value); }
    void update_enabled(bool value, bool _notify)
    {
        setEnabled(value);
        if (_notify)
            // The routers have a change route of their own for the switch.
            publishField(QStringLiteral("enabled"), value);
    }

    /// Publishes the whole map.
    void send_update() { objects.sendUpdate(); }

    void initRequestSignals(QObject* receiver, bool connect) { objects.initRequestSignals(receiver, connect); }

    /// Same object pointers and the same switch: a deep comparison goes through the objects.
    bool operator==(Derived const& other) const
    {
        return objects.get() == other.objects.get() && enabled == other.enabled;
    }

protected:
    ps_map_section_t(QString const& topic, QObject* parent)
        : topicbase_t(topic, parent)
    {
    }

    /// Deep: every object copied, no parent, no receiver.
    ps_map_section_t(ps_map_section_t const& other)
        : topicbase_t(other)
        , enabled(other.enabled)
    {
        objects.copyFrom(other.objects);
    }

    ps_object_map_t<T> objects{this, QStringLiteral("objects_list")};

private:
    Derived* self() { return static_cast<Derived*>(this); }

    bool enabled = true;
};

} // namespace dbs
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_PS_MAP_SECTION_T_H
