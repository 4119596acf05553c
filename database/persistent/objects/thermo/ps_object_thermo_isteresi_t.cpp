#include "database/persistent/objects/thermo/ps_object_thermo_isteresi_t.h"

namespace database {
namespace persistent {
namespace objects {

ps_object_thermo_isteresi_t::ps_object_thermo_isteresi_t(QObject* parent)
    : ps_object_thermo_base_t(parent)
{
}

ps_object_thermo_isteresi_t::ps_object_thermo_isteresi_t(QString const& topic, QObject* parent)
    : ps_object_thermo_base_t(topic, parent)
{
}

ps_object_thermo_isteresi_t::ps_object_thermo_isteresi_t(ps_object_thermo_isteresi_t const& other)
    : ps_object_thermo_base_t(other)
    , isteresi_up(other.isteresi_up)
    , isteresi_down(other.isteresi_down)
{
}

int ps_object_thermo_isteresi_t::getType() const
{
    return THERMO_ISTERESI;
}

void ps_object_thermo_isteresi_t::setIsteresiUp(double value)
{
    assign(isteresi_up, value, [this] { Q_EMIT isteresi_upChanged(isteresi_up); });
}

void ps_object_thermo_isteresi_t::setIsteresiDown(double value)
{
    assign(isteresi_down, value, [this] { Q_EMIT isteresi_downChanged(isteresi_down); });
}

void ps_object_thermo_isteresi_t::update(ps_object_thermo_isteresi_t const* other, bool _notify)
{
    ps_object_thermo_base_t::update(other, false);
    if (!other)
        return;
    setIsteresiUp(other->isteresi_up);
    setIsteresiDown(other->isteresi_down);
    if (_notify)
        send_update();
}

bool ps_object_thermo_isteresi_t::compare(ps_object_thermo_isteresi_t const* other) const
{
    return ps_object_thermo_base_t::compare(other) && isteresi_up == other->isteresi_up
        && isteresi_down == other->isteresi_down;
}

} // namespace objects
} // namespace persistent
} // namespace database
