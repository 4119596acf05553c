#include "database/persistent/objects/schedulers/ps_object_cron_t.h"

namespace database {
namespace persistent {
namespace objects {

ps_object_cron_t::ps_object_cron_t(QObject* parent)
    : ps_object_schedule_entry_t(QString(), parent)
{
}

ps_object_cron_t::ps_object_cron_t(QString const& topic, QObject* parent)
    : ps_object_schedule_entry_t(topic, parent)
{
}

ps_object_cron_t::ps_object_cron_t(QString const& minute, QString const& hour, QString const& day,
                                   QString const& month, QString const& dayofweek, QString const& year,
                                   QString const& from, QString const& to, ps_objects_map const* actions,
                                   QObject* parent)
    : ps_object_schedule_entry_t({minute, hour, day, month, dayofweek, year}, from, to, actions, parent)
{
}

ps_object_cron_t::ps_object_cron_t(ps_object_cron_t const& other)
    : ps_object_schedule_entry_t(other)
{
}

void ps_object_cron_t::requestSetCron(QString const& minute, QString const& hour, QString const& day,
                                      QString const& month, QString const& dayofweek, QString const& year)
{
    QStringList const fields{minute, hour, day, month, dayofweek, year};
    // The parts are checked as given: a blank around a value is refused.
    requestChecked(requestPacket(QStringLiteral("pattern"), joinFields(fields)), checkPattern(fields),
                   QStringLiteral("Value not allowed"));
}

void ps_object_cron_t::requestSetValidity(QString const& from, QString const& to)
{
    requestChecked(requestPacket(QStringLiteral("validity"), joinFields({from, to})), checkValidity(from, to),
                   QStringLiteral("Value not allowed"));
}

void ps_object_cron_t::requestSet(QString const& minute, QString const& hour, QString const& day,
                                  QString const& month, QString const& dayofweek, QString const& year,
                                  QString const& from, QString const& to, ps_objects_map const* actions)
{
    ps_object_cron_t temporary(minute, hour, day, month, dayofweek, year, from, to, nullptr);
    temporary.setTopic(topic);
    ps_objects_map const own = getObjects();
    QJsonObject const payload = temporary.requestPayload(actions ? actions : &own);
    bool const valid = checkPattern({minute, hour, day, month, dayofweek, year}) && checkValidity(from, to);
    requestChecked(requestPacket(QString(), payload), valid, QStringLiteral("Value not allowed"));
}

void ps_object_cron_t::update(ps_object_cron_t const* other, bool _notify)
{
    if (mergeFrom(other) && _notify)
        send_update();
}

bool ps_object_cron_t::compare(ps_object_cron_t const* other) const
{
    return other && getPattern() == other->getPattern() && getValidity() == other->getValidity()
        && sameActionContent(other);
}

bool ps_object_cron_t::operator==(ps_object_cron_t const& other) const
{
    return sameActionObjects(other) && getPattern() == other.getPattern() && getValidity() == other.getValidity();
}

ps_object_cron_t* ps_object_cron_t::get() const
{
    auto* copy = new ps_object_cron_t(*this);
    copy->topicActions();
    return copy;
}

} // namespace objects
} // namespace persistent
} // namespace database
