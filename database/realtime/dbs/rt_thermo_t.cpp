#include "database/realtime/dbs/rt_thermo_t.h"

#include "database/base/literals.h"

namespace database {
namespace realtime {
namespace dbs {

using objects::rt_object_thermostat_t;

rt_thermo_t::rt_thermo_t(QObject* parent)
    : rt_map_section_t(literals::key_thermo, parent)
{
}

rt_thermo_t::rt_thermo_t(rt_thermostat_map const& map, QObject* parent)
    : rt_map_section_t(literals::key_thermo, parent)
{
    objects.adopt(map);
}

void rt_thermo_t::update_thermo(QString const& key, objects::rt_object_thermo_t* object, bool _notify)
{
    updatePart(key, object, _notify, &rt_object_thermostat_t::update_thermo);
}

void rt_thermo_t::update_hydro(QString const& key, objects::rt_object_hydro_t* object, bool _notify)
{
    updatePart(key, object, _notify, &rt_object_thermostat_t::update_hydro);
}

template<class Part>
void rt_thermo_t::updatePart(QString const& key, Part* object, bool _notify,
                             void (rt_object_thermostat_t::*apply)(Part const*, bool))
{
    rt_object_thermostat_t* thermostat = objects.get().value(key);
    if (object) {
        // The incoming part is addressed under "/thermo" whichever it is, as
        // the peers expect; the stored parts keep their own topics.
        object->setTopic(objects.objectTopic(key) + QLatin1Char('/') + rt_object_thermostat_t::key_thermo);
        if (!thermostat) {
            // A status on one part of an unknown key brings the thermostat into being.
            thermostat = new rt_object_thermostat_t(objects.objectTopic(key), nullptr);
            objects.insert(key, thermostat);
        }
        (thermostat->*apply)(object, false);
        thermostat->initRequestSignals(objects.getReceiver(), true);
    } else if (thermostat) {
        // A null part starts that part afresh: a new part's values (the room
        // control's mode 4), not those of a part's own update(null), which
        // clears the room control to mode 1. The thermostat stays, silent
        // while it changes.
        Part const fresh(nullptr);
        thermostat->initRequestSignals(objects.getReceiver(), false);
        (thermostat->*apply)(&fresh, false);
        thermostat->initRequestSignals(objects.getReceiver(), true);
    }
    if (_notify)
        send_update(key);
}

} // namespace dbs
} // namespace realtime
} // namespace database
