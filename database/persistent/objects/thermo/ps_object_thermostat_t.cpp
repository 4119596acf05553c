#include "database/persistent/objects/thermo/ps_object_thermostat_t.h"

#include "database/persistent/objects/thermo/ps_object_thermo_isteresi_t.h"
#include "database/persistent/objects/thermo/ps_object_thermo_pi_t.h"
#include "database/persistent/objects/thermo/ps_object_thermo_pwm_t.h"
#include "platform/logs/classlogs.h"

namespace database {
namespace persistent {
namespace objects {

namespace {

// The update of the class T when both parts are of it. Parts of different
// classes share only the common fields, so only those are taken then.
template<class T>
void updateAs(ps_object_thermo_base_t* mine, ps_object_thermo_base_t const* theirs)
{
    auto* typed = qobject_cast<T*>(mine);
    auto const* other = qobject_cast<T const*>(theirs);
    if (typed && other)
        typed->update(other, false);
    else
        mine->update(theirs, false);
}

} // namespace

QString const ps_object_thermostat_t::key_thermo = QStringLiteral("thermo");
QString const ps_object_thermostat_t::key_hydro = QStringLiteral("hydro");

ps_object_thermostat_t::ps_object_thermostat_t(QObject* parent)
    : ps_object_thermostat_t(QString(), parent)
{
}

ps_object_thermostat_t::ps_object_thermostat_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
    , thermo(new ps_object_thermo_isteresi_t(topic, this))
    , hydro(new ps_object_hydro_base_t(topic, this))
{
}

ps_object_thermostat_t::ps_object_thermostat_t(QString const& name, QString const& id_win, bool win_nc,
                                               bool prot_drew, bool alarm_drew, bool thermo_enabled,
                                               bool hydro_enabled, ps_object_thermo_base_t* thermo,
                                               ps_object_hydro_base_t* hydro, QObject* parent)
    : ps_object_thermostat_t(parent)
{
    this->name = name;
    this->id_win = id_win;
    this->win_nc = win_nc;
    this->prot_drew = prot_drew;
    this->alarm_drew = alarm_drew;
    this->thermo_enabled = thermo_enabled;
    this->hydro_enabled = hydro_enabled;
    setThermo(thermo);
    setHydro(hydro);
}

ps_object_thermostat_t::ps_object_thermostat_t(ps_object_thermostat_t const& other)
    : topicbase_t(other)
    , name(other.name)
    , id_win(other.id_win)
    , win_nc(other.win_nc)
    , prot_drew(other.prot_drew)
    , alarm_drew(other.alarm_drew)
    , thermo_enabled(other.thermo_enabled)
    , hydro_enabled(other.hydro_enabled)
    , thermo(other.thermo->clone())
    , hydro(new ps_object_hydro_base_t(*other.hydro))
{
    thermo->setParent(this);
    hydro->setParent(this);
}

void ps_object_thermostat_t::setName(QString const& value)
{
    assign(name, value, [this] { Q_EMIT nameChanged(name); });
}

void ps_object_thermostat_t::setIdWindowsContact(QString const& value)
{
    assign(id_win, value, [this] { Q_EMIT id_winChanged(id_win); });
}

void ps_object_thermostat_t::setWinNc(bool value)
{
    assign(win_nc, value, [this] { Q_EMIT win_ncChanged(win_nc); });
}

void ps_object_thermostat_t::setProtDrew(bool value)
{
    assign(prot_drew, value, [this] { Q_EMIT prot_drewChanged(prot_drew); });
}

void ps_object_thermostat_t::setAlarmDrew(bool value)
{
    assign(alarm_drew, value, [this] { Q_EMIT alarm_drewChanged(alarm_drew); });
}

void ps_object_thermostat_t::setThermoEnabled(bool value)
{
    assign(thermo_enabled, value, [this] { Q_EMIT thermo_enabledChanged(thermo_enabled); });
}

void ps_object_thermostat_t::setHydroEnabled(bool value)
{
    assign(hydro_enabled, value, [this] { Q_EMIT hydro_enabledChanged(hydro_enabled); });
}

void ps_object_thermostat_t::setThermo(ps_object_thermo_base_t* value)
{
    if (!value || value == thermo)
        return;
    delete thermo;
    thermo = value;
    thermo->setParent(this);
    thermo->setTopic(topic);
    Q_EMIT thermoChanged(thermo);
}

void ps_object_thermostat_t::setHydro(ps_object_hydro_base_t* value)
{
    if (!value || value == hydro)
        return;
    delete hydro;
    hydro = value;
    hydro->setParent(this);
    hydro->setTopic(topic);
    Q_EMIT hydroChanged(hydro);
}

void ps_object_thermostat_t::update(ps_object_thermostat_t const* other, bool _notify)
{
    if (!other) {
        refuseNull();
        return;
    }
    setName(other->name);
    setIdWindowsContact(other->id_win);
    setWinNc(other->win_nc);
    setProtDrew(other->prot_drew);
    setAlarmDrew(other->alarm_drew);
    setThermoEnabled(other->thermo_enabled);
    setHydroEnabled(other->hydro_enabled);
    switch (other->thermo->getType()) {
    case ps_object_thermo_base_t::THERMO_ISTERESI: updateAs<ps_object_thermo_isteresi_t>(thermo, other->thermo); break;
    case ps_object_thermo_base_t::THERMO_PI: updateAs<ps_object_thermo_pi_t>(thermo, other->thermo); break;
    case ps_object_thermo_base_t::THERMO_PWM: updateAs<ps_object_thermo_pwm_t>(thermo, other->thermo); break;
    default:
        CLASSLOGS_LOG(QStringLiteral("Not implemted operator == "), ::utility::logs::error, QStringLiteral("update"));
        break;
    }
    hydro->update(other->hydro, false);
    if (_notify)
        send_update();
}

void ps_object_thermostat_t::update_name(QString const& value, bool _notify)
{
    setName(value);
    if (_notify)
        send_update();
}

void ps_object_thermostat_t::update_id_win(QString const& value, bool _notify)
{
    setIdWindowsContact(value);
    if (_notify)
        send_update();
}

void ps_object_thermostat_t::update_thermo_type(ps_object_thermo_base_t::THERMO_TYPE, bool _notify)
{
    if (_notify)
        send_update();
}

bool ps_object_thermostat_t::compare(ps_object_thermostat_t const* other) const
{
    return other && thermo->compare(other->thermo) && hydro->isEqual(other->hydro) && name == other->name
        && id_win == other->id_win && win_nc == other->win_nc && prot_drew == other->prot_drew
        && alarm_drew == other->alarm_drew && thermo_enabled == other->thermo_enabled
        && hydro_enabled == other->hydro_enabled;
}

void ps_object_thermostat_t::send_update()
{
    publishSelf();
}

void ps_object_thermostat_t::initRequestSignals(QObject* receiver, bool connect)
{
    thermo->setTopic(topic);
    hydro->setTopic(topic);
    connectRequestSignals(receiver, connect);
    thermo->initRequestSignals(receiver, connect);
    hydro->initRequestSignals(receiver, connect);
}

} // namespace objects
} // namespace persistent
} // namespace database
