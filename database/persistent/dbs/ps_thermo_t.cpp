#include "database/persistent/dbs/ps_thermo_t.h"

#include "database/base/literals.h"
#include "platform/logs/classlogs.h"

namespace database {
namespace persistent {
namespace dbs {

ps_thermo_t::ps_thermo_t(QObject* parent)
    : topicbase_t(literals::key_thermo, parent)
{
}

ps_thermo_t::ps_thermo_t(ps_thermostat_map const& map, QObject* parent)
    : topicbase_t(literals::key_thermo, parent)
{
    objects.adopt(map);
}

ps_thermo_t::ps_thermo_t(ps_thermo_t const& other)
    : topicbase_t(other)
    , enabled(other.enabled)
{
    objects.copyFrom(other.objects);
}

void ps_thermo_t::setObjects(ps_thermostat_map const& map)
{
    objects.adopt(map);
    Q_EMIT objects_listChanged(objects.get());
}

void ps_thermo_t::setEnabled(bool value)
{
    assign(enabled, value, [this] { Q_EMIT enabledChanged(enabled); });
}

void ps_thermo_t::requestSetEnabled(bool value)
{
    requestField(this, QStringLiteral("enabled"), value);
}

void ps_thermo_t::requestSetThermo(QString const& id, objects::ps_object_thermostat_t* object)
{
    if (object) {
        if (object->getThermo()->getIdActual().trimmed().isEmpty()) {
            object->setThermoEnabled(false);
            CLASSLOGS_LOG(QStringLiteral("Disable thermo because id actual temp is not set"),
                          ::utility::logs::warning, QStringLiteral("requestSetThermo"));
        }
        if (object->getHydro()->getIdActual().trimmed().isEmpty()) {
            object->setHydroEnabled(false);
            CLASSLOGS_LOG(QStringLiteral("Disable hydro because id actual hydro is not set"),
                          ::utility::logs::warning, QStringLiteral("requestSetThermo"));
        }
    }
    objects.requestSet(id, object);
}

void ps_thermo_t::update_thermos(ps_thermostat_map const& map, bool _notify)
{
    objects.updateAll(map, _notify, [this](QObject* receiver, bool connect) { initRequestSignals(receiver, connect); });
}

bool ps_thermo_t::operator==(ps_thermo_t const& other) const
{
    return objects.get() == other.objects.get() && enabled == other.enabled;
}

} // namespace dbs
} // namespace persistent
} // namespace database
