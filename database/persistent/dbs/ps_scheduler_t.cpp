#include "database/persistent/dbs/ps_scheduler_t.h"

#include "database/base/literals.h"
#include "database/persistent/ps_request.h"

namespace database {
namespace persistent {
namespace dbs {

ps_scheduler_t::ps_scheduler_t(QObject* parent)
    : topicbase_t(literals::key_schedulers, parent)
{
}

ps_scheduler_t::ps_scheduler_t(ps_schedulers_map const& map, QObject* parent)
    : topicbase_t(literals::key_schedulers, parent)
{
    objects.adopt(map);
}

ps_scheduler_t::ps_scheduler_t(ps_scheduler_t const& other)
    : topicbase_t(other)
    , enabled(other.enabled)
{
    objects.copyFrom(other.objects);
}

void ps_scheduler_t::setObjects(ps_schedulers_map const& map)
{
    objects.adopt(map);
    Q_EMIT objects_listChanged(objects.get());
}

void ps_scheduler_t::setEnabled(bool value)
{
    assign(enabled, value, [this] { Q_EMIT enabledChanged(enabled); });
}

void ps_scheduler_t::requestSetEnabled(bool value)
{
    requestField(this, QStringLiteral("enabled"), value);
}

void ps_scheduler_t::update_enabled(bool value, bool _notify)
{
    setEnabled(value);
    if (_notify)
        // The routers have a change route of its own for the flag.
        publishField(QStringLiteral("enabled"), value);
}

bool ps_scheduler_t::operator==(ps_scheduler_t const& other) const
{
    return objects.get() == other.objects.get() && enabled == other.enabled;
}

} // namespace dbs
} // namespace persistent
} // namespace database
