#include "database/persistent/objects/schedulers/ps_object_scheduler_t.h"

#include "database/persistent/ps_request.h"

namespace database {
namespace persistent {
namespace objects {

ps_object_scheduler_t::ps_object_scheduler_t(QObject* parent)
    : topicbase_t(parent)
{
}

ps_object_scheduler_t::ps_object_scheduler_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
}

ps_object_scheduler_t::ps_object_scheduler_t(QString const& name, bool enabled, ps_cron_map const& cronMap,
                                             ps_astro_map const& astroMap, QString const& element_id, int permission,
                                             QObject* parent)
    : topicbase_t(parent)
    , name(name)
    , element_id(element_id)
    , enabled(enabled)
    , permission(permission)
{
    crons.adopt(cronMap);
    astros.adopt(astroMap);
}

ps_object_scheduler_t::ps_object_scheduler_t(ps_object_scheduler_t const& other)
    : topicbase_t(other)
    , name(other.name)
    , element_id(other.element_id)
    , enabled(other.enabled)
    , permission(other.permission)
{
    crons.copyFrom(other.crons);
    astros.copyFrom(other.astros);
}

void ps_object_scheduler_t::setCrons(ps_cron_map const& map)
{
    crons.adopt(map);
    Q_EMIT cron_listChanged(crons.get());
}

void ps_object_scheduler_t::setAstros(ps_astro_map const& map)
{
    astros.adopt(map);
    Q_EMIT astro_listChanged(astros.get());
}

void ps_object_scheduler_t::setName(QString const& value)
{
    assign(name, value, [this] { Q_EMIT nameChanged(name); });
}

void ps_object_scheduler_t::setElementId(QString const& value)
{
    assign(element_id, value, [this] { Q_EMIT element_idChanged(element_id); });
}

void ps_object_scheduler_t::setEnabled(bool value)
{
    assign(enabled, value, [this] { Q_EMIT enabledChanged(enabled); });
}

void ps_object_scheduler_t::setPermission(int value)
{
    assign(permission, value, [this] { Q_EMIT permissionChanged(permission); });
}

void ps_object_scheduler_t::requestSetEnabled(bool value)
{
    requestField(this, QStringLiteral("enabled"), value);
}

void ps_object_scheduler_t::requestSetName(QString const& value)
{
    requestField(this, QStringLiteral("name"), value);
}

void ps_object_scheduler_t::requestSetElemetId(QString const& value)
{
    requestField(this, QStringLiteral("element_id"), value);
}

void ps_object_scheduler_t::requestSetPermission(int value)
{
    requestField(this, QStringLiteral("permission"), value);
}

void ps_object_scheduler_t::requestSetScheduler(ps_cron_map const& cronMap, ps_astro_map const& astroMap)
{
    // This schedule's own JSON with both lists swapped: no temporary has to
    // take, and then give back, the caller's entries.
    QJsonObject payload = toJson();
    crons.giveTopics(cronMap);
    astros.giveTopics(astroMap);
    payload.insert(crons.key(), crons.toJson(cronMap));
    payload.insert(astros.key(), astros.toJson(astroMap));
    requestAt(this, topic, payload);
}

void ps_object_scheduler_t::update_cron(QString const& id, ps_object_cron_t* cron, bool _notify)
{
    crons.update(id, cron, false);
    if (_notify)
        send_update();
}

void ps_object_scheduler_t::update_astro(QString const& id, ps_object_astro_t* astro, bool _notify)
{
    astros.update(id, astro, false);
    if (_notify)
        send_update();
}

bool ps_object_scheduler_t::compare(ps_object_scheduler_t const* other) const
{
    return other && compare_cron_map(other->getCrons()) && compare_astro_map(other->getAstros())
        && name == other->name && element_id == other->element_id && enabled == other->enabled
        && permission == other->permission;
}

bool ps_object_scheduler_t::compare_cron_map(ps_cron_map const& map) const
{
    return crons.sameContent(crons.get(), map);
}

bool ps_object_scheduler_t::compare_astro_map(ps_astro_map const& map) const
{
    return astros.sameContent(astros.get(), map);
}

bool ps_object_scheduler_t::operator==(ps_object_scheduler_t const& other) const
{
    return crons.get() == other.crons.get() && astros.get() == other.astros.get() && sameValues(&other);
}

void ps_object_scheduler_t::initRequestSignals(QObject* receiver, bool connect)
{
    if (!receiver)
        return;
    crons.initRequestSignals(receiver, connect);
    astros.setReceiver(receiver);
    astros.wireObjects(connect);
}

} // namespace objects
} // namespace persistent
} // namespace database
