#include "database/persistent/objects/elements/ps_object_preset_t.h"

namespace database {
namespace persistent {
namespace objects {

ps_object_preset_t::ps_object_preset_t(QObject* parent)
    : topicbase_t(parent)
{
}

ps_object_preset_t::ps_object_preset_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
}

ps_object_preset_t::ps_object_preset_t(QVariantMap const& function_map, int order, QObject* parent)
    : topicbase_t(parent)
    , function_map(function_map)
    , order(order)
{
}

ps_object_preset_t::ps_object_preset_t(ps_object_preset_t const& other)
    : topicbase_t(other)
    , function_map(other.function_map)
    , order(other.order)
{
}

void ps_object_preset_t::setFunction_map(QVariantMap const& value)
{
    assign(function_map, value, [this] { Q_EMIT function_mapChanged(function_map); });
}

void ps_object_preset_t::setOrder(int value)
{
    assign(order, value, [this] { Q_EMIT orderChanged(order); });
}

bool ps_object_preset_t::compare(ps_object_preset_t const* other) const
{
    return sameValues(other);
}

void ps_object_preset_t::update_preset(QString const& key, ps_object_preset_t const* preset)
{
    Q_UNUSED(key)
    if (!preset) {
        refuseNull();
        return;
    }
    copyValues(preset);
}

void ps_object_preset_t::update_order(int value)
{
    setOrder(value);
}

} // namespace objects
} // namespace persistent
} // namespace database
