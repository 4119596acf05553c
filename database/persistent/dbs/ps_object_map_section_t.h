#ifndef DATABASE_PERSISTENT_DBS_PS_OBJECT_MAP_SECTION_T_H
#define DATABASE_PERSISTENT_DBS_PS_OBJECT_MAP_SECTION_T_H

#include <QMap>
#include <QString>

#include "database/base/topicbase_t.h"
#include "database/persistent/dbs/ps_object_map_t.h"

namespace database {
namespace persistent {
namespace dbs {

/**
 * A section whose JSON holds one map of objects under "objects_list": the map
 * as a property, its never-null look-up, its publication and its wiring. The
 * map sections of both databases build on it and add their other fields.
 * Derived declares the signal objects_listChanged, which moc has to see in the
 * class itself.
 */
template<class Derived, class T>
class ps_object_map_section_t : public base::topicbase_t
{
public:
    using map_t = QMap<QString, T*>;

    map_t getObjects() const { return objects.get(); }
    /// Takes the map's pointers as they are.
    void setObjects(map_t const& map)
    {
        objects.adopt(map);
        Q_EMIT static_cast<Derived*>(this)->objects_listChanged(objects.get());
    }

    /// Never null; see ps_object_map_t::list.
    T* list(QString const& id) { return objects.list(id); }

    /// Publishes the whole map.
    void send_update() { objects.sendUpdate(); }

    /// Remembers the receiver for the objects stored later.
    void initRequestSignals(QObject* receiver, bool connect) { objects.initRequestSignals(receiver, connect); }

protected:
    ps_object_map_section_t(QString const& topic, QObject* parent)
        : topicbase_t(topic, parent)
    {
    }

    /// Deep: every object copied, no parent, no receiver.
    ps_object_map_section_t(ps_object_map_section_t const& other)
        : topicbase_t(other)
    {
        objects.copyFrom(other.objects);
    }

    ps_object_map_t<T> objects{this, QStringLiteral("objects_list")};
};

} // namespace dbs
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_PS_OBJECT_MAP_SECTION_T_H
