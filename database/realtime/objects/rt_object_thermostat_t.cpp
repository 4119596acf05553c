#include "database/realtime/objects/rt_object_thermostat_t.h"

namespace database {
namespace realtime {
namespace objects {

QString const rt_object_thermostat_t::key_thermo = QStringLiteral("thermo");
QString const rt_object_thermostat_t::key_hydro = QStringLiteral("hydro");

rt_object_thermostat_t::rt_object_thermostat_t(QObject* parent)
    : rt_object_thermostat_t(QString(), parent)
{
}

rt_object_thermostat_t::rt_object_thermostat_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
    , thermo(new rt_object_thermo_t(nullptr))
    , hydro(new rt_object_hydro_t(nullptr))
{
    giveTopicsToParts();
}

rt_object_thermostat_t::rt_object_thermostat_t(bool win_open, float dew_point, bool prot_dew_poin,
                                               rt_object_thermo_t* thermo, rt_object_hydro_t* hydro,
                                               QObject* parent)
    : rt_object_thermostat_t(parent)
{
    this->win_open = win_open;
    this->dew_point = dew_point;
    this->prot_dew_poin = prot_dew_poin;
    setThermo(thermo);
    setHydro(hydro);
}

rt_object_thermostat_t::rt_object_thermostat_t(rt_object_thermostat_t const& other)
    : topicbase_t(other)
    , win_open(other.win_open)
    , dew_point(other.dew_point)
    , prot_dew_poin(other.prot_dew_poin)
    , thermo(other.thermo ? new rt_object_thermo_t(*other.thermo) : new rt_object_thermo_t(nullptr))
    , hydro(other.hydro ? new rt_object_hydro_t(*other.hydro) : new rt_object_hydro_t(nullptr))
{
    giveTopicsToParts();
}

rt_object_thermostat_t::~rt_object_thermostat_t()
{
    delete thermo;
    delete hydro;
}

void rt_object_thermostat_t::setWin_open(bool value)
{
    assign(win_open, value, [this] { Q_EMIT win_openChanged(win_open); });
}

void rt_object_thermostat_t::setDew_point(float value)
{
    assign(dew_point, value, [this] { Q_EMIT dew_point_Changed(dew_point); });
}

void rt_object_thermostat_t::setProt_dew_poin(bool value)
{
    assign(prot_dew_poin, value, [this] { Q_EMIT prot_dew_poinChanged(prot_dew_poin); });
}

void rt_object_thermostat_t::setThermo(rt_object_thermo_t* value)
{
    if (!value || value == thermo)
        return;
    delete thermo;
    thermo = value;
    // The serializer hands parts over as children; ownership stays with the pointer.
    thermo->setParent(nullptr);
    giveTopicsToParts();
    Q_EMIT thermoChanged(thermo);
}

void rt_object_thermostat_t::setHydro(rt_object_hydro_t* value)
{
    if (!value || value == hydro)
        return;
    delete hydro;
    hydro = value;
    hydro->setParent(nullptr);
    giveTopicsToParts();
    Q_EMIT hydroChanged(hydro);
}

void rt_object_thermostat_t::update(rt_object_thermostat_t const* other, bool _notify)
{
    setWin_open(other ? other->win_open : false);
    setDew_point(other ? other->dew_point : 0);
    setProt_dew_poin(other ? other->prot_dew_poin : false);
    thermo->update(other ? other->thermo : nullptr, false);
    hydro->update(other ? other->hydro : nullptr, false);
    publishSelfIf(_notify);
}

void rt_object_thermostat_t::update_windows_open(bool const& value, bool _notify)
{
    setWin_open(value);
    publishSelfIf(_notify);
}

void rt_object_thermostat_t::update_protection_dew_point(bool const& value, bool _notify)
{
    setProt_dew_poin(value);
    publishSelfIf(_notify);
}

void rt_object_thermostat_t::update_dew_point(float value, bool _notify)
{
    setDew_point(value);
    publishSelfIf(_notify);
}

void rt_object_thermostat_t::update_thermo(rt_object_thermo_t const* value, bool _notify)
{
    thermo->update(value, false);
    publishSelfIf(_notify);
}

void rt_object_thermostat_t::update_hydro(rt_object_hydro_t const* value, bool _notify)
{
    hydro->update(value, false);
    publishSelfIf(_notify);
}

void rt_object_thermostat_t::initRequestSignals(QObject* receiver, bool connect)
{
    giveTopicsToParts();
    connectRequestSignals(receiver, connect);
    thermo->initRequestSignals(receiver, connect);
    hydro->initRequestSignals(receiver, connect);
}

bool rt_object_thermostat_t::operator==(rt_object_thermostat_t const& other) const
{
    return sameValues(&other, all_values) && *thermo == *other.thermo && *hydro == *other.hydro;
}

void rt_object_thermostat_t::giveTopicsToParts()
{
    thermo->setTopic(topic + QLatin1Char('/') + key_thermo);
    hydro->setTopic(topic + QLatin1Char('/') + key_hydro);
}

} // namespace objects
} // namespace realtime
} // namespace database
