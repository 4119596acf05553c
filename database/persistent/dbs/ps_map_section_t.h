#ifndef DATABASE_PERSISTENT_DBS_PS_MAP_SECTION_T_H
#define DATABASE_PERSISTENT_DBS_PS_MAP_SECTION_T_H

#include <QString>

#include "database/persistent/dbs/ps_object_map_section_t.h"
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
class ps_map_section_t : public ps_object_map_section_t<Derived, T>
{
public:
    bool getEnabled() const { return enabled; }
    void setEnabled(bool value)
    {
        this->assign(enabled, value, [this] { Q_EMIT static_cast<Derived*>(this)->enabledChanged(enabled); });
    }

    void requestSetEnabled(bool value) { requestField(this, QStringLiteral("enabled"), value); }
    void update_enabled(bool value, bool _notify)
    {
        setEnabled(value);
        if (_notify)
            // The routers have a change route of their own for the switch.
            this->publishField(QStringLiteral("enabled"), value);
    }

    /// Same object pointers and the same switch: a deep comparison goes through the objects.
    bool operator==(Derived const& other) const
    {
        return this->objects.get() == other.objects.get() && enabled == other.enabled;
    }

protected:
    ps_map_section_t(QString const& topic, QObject* parent)
        : ps_object_map_section_t<Derived, T>(topic, parent)
    {
    }

    /// Deep: every object copied, no parent, no receiver.
    ps_map_section_t(ps_map_section_t const& other)
        : ps_object_map_section_t<Derived, T>(other)
        , enabled(other.enabled)
    {
    }

private:
    bool enabled = true;
};

} // namespace dbs
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_PS_MAP_SECTION_T_H
