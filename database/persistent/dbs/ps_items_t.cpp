#include "database/persistent/dbs/ps_items_t.h"

#include "database/base/literals.h"

namespace database {
namespace persistent {
namespace dbs {

ps_items_t::ps_items_t(QObject* parent)
    : topicbase_t(literals::key_items, parent)
{
}

ps_items_t::ps_items_t(ps_items_map const& map, QObject* parent)
    : topicbase_t(literals::key_items, parent)
{
    objects.adopt(map);
}

ps_items_t::ps_items_t(ps_items_t const& other)
    : topicbase_t(other)
    , enabled(other.enabled)
{
    objects.copyFrom(other.objects);
}

void ps_items_t::setObjects(ps_items_map const& map)
{
    objects.adopt(map);
    Q_EMIT objects_listChanged(objects.get());
}

void ps_items_t::setEnabled(bool value)
{
    assign(enabled, value, [this] { Q_EMIT enabledChanged(enabled); });
}

void ps_items_t::update_items(ps_items_map const& map, bool _notify)
{
    objects.updateAll(map, _notify, [this](QObject* receiver, bool connect) { initRequestSignals(receiver, connect); });
}

bool ps_items_t::operator==(ps_items_t const& other) const
{
    return objects.get() == other.objects.get() && enabled == other.enabled;
}

} // namespace dbs
} // namespace persistent
} // namespace database
