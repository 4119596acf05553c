#include "database/persistent/objects/thermo/ps_object_thermo_base_t.h"

#include "database/persistent/objects/thermo/ps_object_thermo_isteresi_t.h"
#include "database/persistent/objects/thermo/ps_object_thermo_pi_t.h"
#include "database/persistent/objects/thermo/ps_object_thermo_pwm_t.h"
#include "database/persistent/objects/thermo/ps_thermo_ids.h"
#include "platform/logs/classlogs.h"

namespace database {
namespace persistent {
namespace objects {

namespace {

// Compares two loops as the class T, when both are of it.
template<class T>
bool compareAs(ps_object_thermo_base_t const* one, ps_object_thermo_base_t const* other)
{
    auto const* first = qobject_cast<T const*>(one);
    auto const* second = qobject_cast<T const*>(other);
    return first && second && first->compare(second);
}

// A copy by the class T; a loop that only claims the type is copied as the base.
template<class T>
ps_object_thermo_base_t* copyAs(ps_object_thermo_base_t const* loop)
{
    if (auto const* typed = qobject_cast<T const*>(loop))
        return new T(*typed);
    return new ps_object_thermo_base_t(*loop);
}

} // namespace

ps_object_thermo_base_t::ps_object_thermo_base_t(QObject* parent)
    : topicbase_t(parent)
{
}

ps_object_thermo_base_t::ps_object_thermo_base_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
}

ps_object_thermo_base_t::ps_object_thermo_base_t(ps_object_thermo_base_t const& other)
    : topicbase_t(other)
    , items(other.items)
    , idactual(other.idactual)
    , bat_threshold(other.bat_threshold)
    , seasontype(other.seasontype)
    , win_enable(other.win_enable)
    , antifreezer(other.antifreezer)
    , antioverheating(other.antioverheating)
    , offset_standby(other.offset_standby)
    , offset_eco(other.offset_eco)
    , fantype(other.fantype)
    , fanisteresi(other.fanisteresi)
    , fanthreshold(other.fanthreshold)
    , outputtype(other.outputtype)
{
}

int ps_object_thermo_base_t::getType() const
{
    return THERMO_UNKNOWN;
}

void ps_object_thermo_base_t::setIds(QVariantMap const& value)
{
    assign(items, value, [this] { Q_EMIT itemsChanged(items); });
}

void ps_object_thermo_base_t::setIdActual(QString const& value)
{
    assign(idactual, value, [this] { Q_EMIT idactualChanged(idactual); });
}

void ps_object_thermo_base_t::setBat_threshold(uint value)
{
    assign(bat_threshold, value, [this] { Q_EMIT bat_thresholdChanged(bat_threshold); });
}

void ps_object_thermo_base_t::setSeasonType(uint value)
{
    assign(seasontype, value, [this] { Q_EMIT seasontypeChanged(seasontype); });
}

void ps_object_thermo_base_t::setWinEnable(bool value)
{
    assign(win_enable, value, [this] { Q_EMIT win_enableChanged(win_enable); });
}

void ps_object_thermo_base_t::setAntifreezer(uint value)
{
    assign(antifreezer, value, [this] { Q_EMIT antifreezerChanged(antifreezer); });
}

void ps_object_thermo_base_t::setAntioverheating(uint value)
{
    assign(antioverheating, value, [this] { Q_EMIT antioverheatingChanged(antioverheating); });
}

void ps_object_thermo_base_t::setOffsetStandby(uint value)
{
    assign(offset_standby, value, [this] { Q_EMIT offset_standbyChanged(offset_standby); });
}

void ps_object_thermo_base_t::setOffsetEco(uint value)
{
    assign(offset_eco, value, [this] { Q_EMIT offset_ecoChanged(offset_eco); });
}

void ps_object_thermo_base_t::setFantype(uint value)
{
    assign(fantype, value, [this] { Q_EMIT fantypeChanged(fantype); });
}

void ps_object_thermo_base_t::setFanisteresi(double value)
{
    assign(fanisteresi, value, [this] { Q_EMIT fanisteresiChanged(fanisteresi); });
}

void ps_object_thermo_base_t::setFanthreshold(double value)
{
    assign(fanthreshold, value, [this] { Q_EMIT fanthresholdChanged(fanthreshold); });
}

void ps_object_thermo_base_t::setOutputType(uint value)
{
    assign(outputtype, value, [this] { Q_EMIT outputtypeChanged(outputtype); });
}

QString ps_object_thermo_base_t::getId(::database::definition::type_thermostat_thermo_params_t const& param) const
{
    return thermo_ids::get(items, param.ToString());
}

void ps_object_thermo_base_t::setId(::database::definition::type_thermostat_thermo_params_t const& param,
                                    QString const& value)
{
    setIds(thermo_ids::with(items, param.ToString(), value));
}

void ps_object_thermo_base_t::update_id(::database::definition::type_thermostat_thermo_params_t const& param,
                                        QString const& value, bool _notify)
{
    if (param == ::database::definition::type_thermostat_thermo_params_t::idactual)
        setIdActual(value);
    else
        setId(param, value);
    if (_notify)
        send_update();
}

void ps_object_thermo_base_t::update_reset_id(QString const& key, bool _notify)
{
    if (key == ::database::definition::type_thermostat_thermo_params_t::idactual.ToString())
        setIdActual(QString());
    QVariantMap remaining = items;
    remaining.remove(key);
    setIds(remaining);
    if (_notify)
        send_update();
}

void ps_object_thermo_base_t::update_enable_window(bool value, bool _notify)
{
    setWinEnable(value);
    if (_notify)
        send_update();
}

void ps_object_thermo_base_t::update(ps_object_thermo_base_t const* other, bool _notify)
{
    if (!other) {
        refuseNull();
        return;
    }
    // Field by field: other may be of another algorithm class than this one.
    setIds(other->items);
    setIdActual(other->idactual);
    setBat_threshold(other->bat_threshold);
    setSeasonType(other->seasontype);
    setWinEnable(other->win_enable);
    setAntifreezer(other->antifreezer);
    setAntioverheating(other->antioverheating);
    setOffsetStandby(other->offset_standby);
    setOffsetEco(other->offset_eco);
    setFantype(other->fantype);
    setFanisteresi(other->fanisteresi);
    setFanthreshold(other->fanthreshold);
    setOutputType(other->outputtype);
    if (_notify)
        send_update();
}

bool ps_object_thermo_base_t::compare(ps_object_thermo_base_t const* other) const
{
    return other && win_enable == other->win_enable && seasontype == other->seasontype
        && bat_threshold == other->bat_threshold && antifreezer == other->antifreezer
        && antioverheating == other->antioverheating && offset_eco == other->offset_eco
        && fanisteresi == other->fanisteresi && fanthreshold == other->fanthreshold
        && outputtype == other->outputtype && items == other->items;
}

bool ps_object_thermo_base_t::isEqual(ps_object_thermo_base_t const* other) const
{
    if (!other || other->getType() != getType())
        return false;
    switch (getType()) {
    case THERMO_ISTERESI: return compareAs<ps_object_thermo_isteresi_t>(this, other);
    case THERMO_PI: return compareAs<ps_object_thermo_pi_t>(this, other);
    case THERMO_PWM: return compareAs<ps_object_thermo_pwm_t>(this, other);
    case THERMO_UNKNOWN: return this == other;
    default:
        CLASSLOGS_LOG(QStringLiteral("Not implemted operator == "), ::utility::logs::error, QStringLiteral("isEqual"));
        return false;
    }
}

ps_object_thermo_base_t* ps_object_thermo_base_t::clone() const
{
    switch (getType()) {
    case THERMO_ISTERESI: return copyAs<ps_object_thermo_isteresi_t>(this);
    case THERMO_PI: return copyAs<ps_object_thermo_pi_t>(this);
    // A proportional-integral loop answers THERMO_PWM, so it is copied as one.
    case THERMO_PWM: return copyAs<ps_object_thermo_pwm_t>(this);
    case THERMO_UNKNOWN: return new ps_object_thermo_base_t(*this);
    default:
        CLASSLOGS_LOG(QStringLiteral("Cannot create element of unknown type"), ::utility::logs::error,
                      QStringLiteral("clone"));
        return new ps_object_thermo_base_t(*this);
    }
}

void ps_object_thermo_base_t::send_update()
{
    publishSelf();
}

void ps_object_thermo_base_t::initRequestSignals(QObject* receiver, bool connect)
{
    connectRequestSignals(receiver, connect);
}

} // namespace objects
} // namespace persistent
} // namespace database
