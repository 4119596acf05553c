#include "database/persistent/dbs/ps_users_t.h"

#include "database/base/literals.h"

namespace database {
namespace persistent {
namespace dbs {

namespace {

// A miss is how a new user's id first shows up, so it is worth a trace line.
void logMisses(ps_object_map_t<objects::ps_object_user_t>& objects)
{
    objects.setMissLog(QStringLiteral("New key create user : "));
}

} // namespace

ps_users_t::ps_users_t(QObject* parent)
    : topicbase_t(literals::key_users, parent)
{
    logMisses(objects);
}

ps_users_t::ps_users_t(ps_users_map const& map, QObject* parent)
    : topicbase_t(literals::key_users, parent)
{
    logMisses(objects);
    objects.adopt(map);
}

ps_users_t::ps_users_t(ps_users_t const& other)
    : topicbase_t(other)
{
    logMisses(objects);
    objects.copyFrom(other.objects);
}

void ps_users_t::setObjects(ps_users_map const& map)
{
    objects.adopt(map);
    Q_EMIT objects_listChanged(objects.get());
}

void ps_users_t::update_user(ps_users_map const& map, bool _notify)
{
    objects.updateAll(map, _notify, [this](QObject* receiver, bool connect) { initRequestSignals(receiver, connect); });
}

bool ps_users_t::operator==(ps_users_t const& other) const
{
    return objects.get() == other.objects.get();
}

} // namespace dbs
} // namespace persistent
} // namespace database
