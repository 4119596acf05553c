#include "database/persistent/objects/thermo/ps_object_hydro_base_t.h"

#include "database/persistent/objects/thermo/ps_thermo_ids.h"

namespace database {
namespace persistent {
namespace objects {

ps_object_hydro_base_t::ps_object_hydro_base_t(QObject* parent)
    : topicbase_t(parent)
{
}

ps_object_hydro_base_t::ps_object_hydro_base_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
}

ps_object_hydro_base_t::ps_object_hydro_base_t(ps_object_hydro_base_t const& other)
    : topicbase_t(other)
{
    copyValues(&other);
}

void ps_object_hydro_base_t::setIds(QVariantMap const& value)
{
    assign(items, value, [this] { Q_EMIT itemsChanged(items); });
}

void ps_object_hydro_base_t::setIdActual(QString const& value)
{
    assign(idactual, value, [this] { Q_EMIT idactualChanged(idactual); });
}

void ps_object_hydro_base_t::setWinEnable(bool value)
{
    assign(win_enable, value, [this] { Q_EMIT win_enableChanged(win_enable); });
}

void ps_object_hydro_base_t::setIsteresi(uint value)
{
    assign(isteresi, value, [this] { Q_EMIT isteresiChanged(isteresi); });
}

void ps_object_hydro_base_t::setFantype(uint value)
{
    assign(fantype, value, [this] { Q_EMIT fantypeChanged(fantype); });
}

void ps_object_hydro_base_t::setFanisteresi(uint value)
{
    assign(fanisteresi, value, [this] { Q_EMIT fanisteresiChanged(fanisteresi); });
}

void ps_object_hydro_base_t::setFanthreshold(uint value)
{
    assign(fanthreshold, value, [this] { Q_EMIT fanthresholdChanged(fanthreshold); });
}

QString ps_object_hydro_base_t::getId(::database::definition::type_thermostat_hydro_params_t const& param) const
{
    return thermo_ids::get(items, param.ToString());
}

void ps_object_hydro_base_t::setId(::database::definition::type_thermostat_hydro_params_t const& param,
                                   QString const& value)
{
    setIds(thermo_ids::with(items, param.ToString(), value));
}

void ps_object_hydro_base_t::update(ps_object_hydro_base_t const* other, bool _notify)
{
    updateValues(other, _notify);
}

bool ps_object_hydro_base_t::compare(ps_object_hydro_base_t const* other) const
{
    return sameValues(other);
}

bool ps_object_hydro_base_t::isEqual(ps_object_hydro_base_t const* other) const
{
    return compare(other);
}

void ps_object_hydro_base_t::send_update()
{
    publishSelf();
}

void ps_object_hydro_base_t::initRequestSignals(QObject* receiver, bool connect)
{
    connectRequestSignals(receiver, connect);
}

} // namespace objects
} // namespace persistent
} // namespace database
