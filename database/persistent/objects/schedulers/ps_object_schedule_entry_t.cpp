#include "database/persistent/objects/schedulers/ps_object_schedule_entry_t.h"

#include <QHash>
#include <QRegExp>

#include <iterator>

#include "database/persistent/ps_request.h"

namespace database {
namespace persistent {
namespace objects {

namespace {

using ::database::definition::type_cron_t;

// The scheduler service parses these fields itself; the expressions are the
// contract with it and are kept exactly, oddities included (the validity day
// refuses 10 and 20, and the "*" after its slash can never match).
QHash<QString, QString> const& fieldExpressions()
{
    static QHash<QString, QString> const table{
        {type_cron_t::minute.ToString(), QStringLiteral(R"(^([0-9]|[0-5][0-9]|^\*)$)")},
        {type_cron_t::hour.ToString(), QStringLiteral(R"(^([0-9]|2[0-3]|1[0-9]|^\*)$)")},
        {type_cron_t::day.ToString(), QStringLiteral(R"(^([1-9]|[0-2][0-9]|3[0-1]|^\*)$)")},
        {type_cron_t::month.ToString(), QStringLiteral(R"(^([1-9]|1[0-2]|^\*)$)")},
        {type_cron_t::dayofweek.ToString(), QStringLiteral(R"(^([0-7]|^\*)$)")},
        {type_cron_t::year.ToString(), QStringLiteral(R"(^(2\d{3}|^\*)$)")},
        {type_cron_t::from.ToString(), QStringLiteral(R"(^([0-2]?[1-9]|3[0-1]|^\*)\/(0?[1-9]|1[0-2]|^\*)$)")},
        {type_cron_t::to.ToString(), QStringLiteral(R"(^([0-2]?[1-9]|3[0-1]|^\*)\/(0?[1-9]|1[0-2]|^\*)$)")},
    };
    return table;
}

QString fieldAt(QString const& text, int index)
{
    return text.split(QLatin1Char(' ')).value(index);
}

} // namespace

ps_object_schedule_entry_t::ps_object_schedule_entry_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
    actions.setMissLog(QStringLiteral("New key create app : "));
}

ps_object_schedule_entry_t::ps_object_schedule_entry_t(QStringList const& fields, QString const& from,
                                                       QString const& to, ps_objects_map const* map, QObject* parent)
    : topicbase_t(parent)
    , pattern(joinFields(fields))
    , validity(makeValidity(from, to))
{
    actions.setMissLog(QStringLiteral("New key create app : "));
    if (map)
        actions.adopt(*map);
}

ps_object_schedule_entry_t::ps_object_schedule_entry_t(ps_object_schedule_entry_t const& other)
    : topicbase_t(other)
    , pattern(other.pattern)
    , validity(other.validity)
{
    actions.setMissLog(QStringLiteral("New key create app : "));
    actions.copyFrom(other.actions);
}

void ps_object_schedule_entry_t::setObjects(ps_objects_map const& map)
{
    actions.adopt(map);
    Q_EMIT objects_listChanged(actions.get());
}

void ps_object_schedule_entry_t::setPattern(QString const& value)
{
    assign(pattern, value, [this] { Q_EMIT patternChanged(pattern); });
}

void ps_object_schedule_entry_t::setValidity(QString const& value)
{
    assign(validity, value, [this] { Q_EMIT validityChanged(validity); });
}

bool ps_object_schedule_entry_t::checkParams(QString const& value, type_cron_t const& field)
{
    auto const found = fieldExpressions().constFind(field.ToString());
    if (found == fieldExpressions().constEnd())
        return false;
    // A QRegExp keeps match state, so each check gets its own.
    return QRegExp(found.value(), Qt::CaseSensitive).exactMatch(value);
}

bool ps_object_schedule_entry_t::checkPattern(QStringList const& fields)
{
    static type_cron_t const* const order[] = {&type_cron_t::minute, &type_cron_t::hour,      &type_cron_t::day,
                                               &type_cron_t::month,  &type_cron_t::dayofweek, &type_cron_t::year};
    if (fields.size() != int(std::size(order)))
        return false;
    for (int i = 0; i < fields.size(); ++i) {
        if (!checkParams(fields.at(i), *order[i]))
            return false;
    }
    return true;
}

bool ps_object_schedule_entry_t::checkValidity(QString const& from, QString const& to)
{
    return checkParams(from, type_cron_t::from) && checkParams(to, type_cron_t::to);
}

void ps_object_schedule_entry_t::update_object(QString const& key, ps_object_t* object, bool _notify)
{
    actions.update(key, object, false);
    if (_notify)
        send_update();
}

void ps_object_schedule_entry_t::update_remove_objects(QStringList const& keys, bool _notify)
{
    if (keys.isEmpty())
        return;
    // A removal of an unknown key changes nothing.
    for (QString const& key : keys)
        actions.update(key, nullptr, false);
    if (_notify)
        send_update();
}

QString ps_object_schedule_entry_t::joinFields(QStringList const& fields)
{
    QStringList trimmed;
    for (QString const& field : fields)
        trimmed.append(field.trimmed());
    return trimmed.join(QLatin1Char(' '));
}

QString ps_object_schedule_entry_t::makeValidity(QString const& from, QString const& to)
{
    QString const made = joinFields({from, to});
    return made.trimmed().isEmpty() ? QStringLiteral("* *") : made;
}

bool ps_object_schedule_entry_t::mergeFrom(ps_object_schedule_entry_t const* other)
{
    if (!other) {
        refuseNull();
        return false;
    }
    ps_objects_map const incoming = other->actions.get();
    for (QString const& key : actions.get().keys()) {
        if (!incoming.contains(key))
            actions.update(key, nullptr, false);
    }
    // Present keys take the content into their own object, new ones a wired copy.
    for (auto it = incoming.begin(); it != incoming.end(); ++it)
        actions.update(it.key(), it.value(), false);
    setPattern(other->pattern);
    setValidity(other->validity);
    return true;
}

bool ps_object_schedule_entry_t::sameActionObjects(ps_object_schedule_entry_t const& other) const
{
    return actions.get() == other.actions.get();
}

bool ps_object_schedule_entry_t::sameActionContent(ps_object_schedule_entry_t const* other) const
{
    return actions.sameContent(actions.get(), other->actions.get());
}

QJsonObject ps_object_schedule_entry_t::requestPayload(ps_objects_map const* map) const
{
    QJsonObject payload = toJson();
    if (map) {
        actions.giveTopics(*map);
        payload.insert(actions.key(), dbs::ps_object_map_t<ps_object_t>::toJson(*map));
    }
    return payload;
}

QJsonObject ps_object_schedule_entry_t::requestPacket(QString const& key, QJsonValue const& payload) const
{
    QString const relative = key.isEmpty() ? topic : topic + QLatin1Char('/') + key;
    return getPacketRequest(requestTopic(relative), payload);
}

void ps_object_schedule_entry_t::requestChecked(QJsonObject const& packet, bool valid, QString const& refusal)
{
    if (valid)
        Q_EMIT onRequest(packet);
    else
        Q_EMIT onObjectError(packet, refusal);
}

QString ps_object_schedule_entry_t::patternField(int index) const
{
    return fieldAt(pattern, index);
}

QString ps_object_schedule_entry_t::validityField(int index) const
{
    return fieldAt(validity, index);
}

} // namespace objects
} // namespace persistent
} // namespace database
