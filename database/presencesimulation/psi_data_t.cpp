#include "database/presencesimulation/psi_data_t.h"

#include "database/presencesimulation/define/psi_type_database_field_t.h"
#include "platform/logs/classlogs.h"

namespace database {
namespace presencesimulation {

namespace {

QString number(int value)
{
    return QString::number(value);
}

QString dayPath(int day)
{
    return QStringLiteral("week/days/") + number(day);
}

QString hourPath(int day, int hour)
{
    return dayPath(day) + QStringLiteral("/hours/") + number(hour);
}

QString minutePath(int day, int hour, int minute)
{
    return hourPath(day, hour) + QStringLiteral("/minutes/") + number(minute);
}

QString actionPath(int day, int hour, int minute, QString const& item)
{
    return minutePath(day, hour, minute) + QStringLiteral("/actions/") + item;
}

QString dayPosition(int day)
{
    return QStringLiteral("day: ") + number(day);
}

QString hourPosition(int day, int hour)
{
    return dayPosition(day) + QStringLiteral(" hour: ") + number(hour);
}

QString minutePosition(int day, int hour, int minute)
{
    return hourPosition(day, hour) + QStringLiteral(" min: ") + number(minute);
}

// The bounds of requests are narrower than those of the nodes: they are
// the ones a topic can carry (but for day 0).
bool requestDay(int day)
{
    return unsigned(day) < 8u;
}

bool requestHour(int day, int hour)
{
    return requestDay(day) && unsigned(hour) < 24u;
}

bool requestMinute(int day, int hour, int minute)
{
    return requestHour(day, hour) && unsigned(minute) < 60u;
}

QString minuteRefusal(int day, int hour, int minute)
{
    return QStringLiteral("Day (") + number(day) + QStringLiteral(") or hour (") + number(hour)
           + QStringLiteral(") or minutes (") + number(minute) + QStringLiteral(") out of range ");
}

template<class Node>
QJsonValue nodeJson(Node* node)
{
    return node ? QJsonValue(node->toJson()) : QJsonValue();
}

} // namespace

psi_data_t::psi_data_t(QObject* parent)
    : topicbase_t(definition::psi_type_database_field_t::presencesimulation.ToString(), parent)
{
    setWeek(nullptr);
}

psi_data_t::psi_data_t(psi_data_t const& other)
    : topicbase_t(other)
{
    setWeek(new week_t(*other.week));
}

void psi_data_t::setWeek(week_t* _week)
{
    if (!_week)
        _week = new week_t;
    if (week != _week)
        delete week;
    week = _week;
    week->setParent(this);
    week->retopic(getTopic() + QStringLiteral("/week"));
    Q_EMIT weekChanged(week);
}

psi_data_t::day_t* psi_data_t::getDay(int day) const
{
    return week->getDay(day);
}

psi_data_t::hour_t* psi_data_t::getHour(int day, int hour) const
{
    day_t* node = getDay(day);
    return node ? node->getHour(hour) : nullptr;
}

psi_data_t::minute_t* psi_data_t::getMinute(int day, int hour, int minute) const
{
    hour_t* node = getHour(day, hour);
    return node ? node->getMinute(minute) : nullptr;
}

map_string psi_data_t::getActions(QDateTime const& when, int& result, QDateTime& found) const
{
    QDateTime moment = when;
    for (int depth = 0; depth < 7; ++depth) {
        if (hour_t* hour = getHour(moment.date().dayOfWeek(), moment.time().hour())) {
            minute_t* minute = hour->getMinute(moment.time().minute());
            if (!minute)
                return map_string();
            found = moment;
            result = 0;
            return minute->getActions();
        }
        moment = moment.addDays(-1);
    }
    found = moment;
    result = -1;
    return map_string();
}

QMap<QDateTime, map_string> psi_data_t::getNextActions(QDateTime const& from, int count) const
{
    QMap<QDateTime, map_string> actions;
    if (count < 1)
        return actions;
    QDateTime cursor = from;
    int sum = 0;
    // The walk goes to earlier minutes and stops as soon as it is back on the
    // weekday of from, which is at once unless from is a day's first minute.
    do {
        int result = 0;
        QDateTime found;
        map_string const minute = getActions(cursor, result, found);
        actions.insert(cursor, minute);
        sum += int(minute.size());
        cursor = cursor.addSecs(-60);
        if (cursor.date().dayOfWeek() == from.date().dayOfWeek())
            break;
    } while (sum < count);
    return actions;
}

void psi_data_t::request(QString const& relative, QJsonValue const& payload, bool inRange, QString const& message)
{
    QJsonObject const packet =
        getPacketRequest(QStringLiteral("request/") + getTopic() + QLatin1Char('/') + relative, payload);
    if (inRange)
        Q_EMIT onRequest(packet);
    else
        Q_EMIT onObjectError(packet, message);
}

void psi_data_t::requestSetAction(int day, int hour, int minute, QString const& item, QString const& value)
{
    request(actionPath(day, hour, minute, item), value, requestMinute(day, hour, minute),
            minuteRefusal(day, hour, minute));
}

void psi_data_t::requestDeleteAction(int day, int hour, int minute, QString const& item)
{
    request(actionPath(day, hour, minute, item), QJsonValue(), requestMinute(day, hour, minute),
            minuteRefusal(day, hour, minute));
}

void psi_data_t::requestDeleteMinute(int day, int hour, int minute)
{
    request(minutePath(day, hour, minute), QJsonValue(), requestMinute(day, hour, minute),
            minuteRefusal(day, hour, minute));
}

void psi_data_t::requestDeleteHour(int day, int hour)
{
    request(hourPath(day, hour), QJsonValue(), requestHour(day, hour),
            QStringLiteral("Day (") + number(day) + QStringLiteral(") or hour (") + number(hour)
                + QStringLiteral(")  out of range "));
}

void psi_data_t::requestDeleteDay(int day)
{
    request(dayPath(day), QJsonValue(), requestDay(day),
            QStringLiteral("Day (") + number(day) + QStringLiteral(") out of range "));
}

void psi_data_t::requestDelete()
{
    request(QStringLiteral("week"), QJsonValue(), true, QString());
}

void psi_data_t::requestgetData()
{
    request(QStringLiteral("getData"), QJsonValue(), true, QString());
}

psi_data_t::day_t* psi_data_t::ensureDay(int day)
{
    day_t* node = getDay(day);
    if (!node) {
        node = new day_t;
        week->add(day, node);
    }
    return node;
}

psi_data_t::hour_t* psi_data_t::ensureHour(int day, int hour)
{
    day_t* parent = ensureDay(day);
    hour_t* node = parent->getHour(hour);
    if (!node) {
        node = new hour_t;
        parent->add(hour, node);
    }
    return node;
}

psi_data_t::minute_t* psi_data_t::ensureMinute(int day, int hour, int minute)
{
    hour_t* parent = ensureHour(day, hour);
    minute_t* node = parent->getMinute(minute);
    if (!node) {
        node = new minute_t;
        parent->add(minute, node);
    }
    return node;
}

void psi_data_t::refuseInsert(QString const& position)
{
    Q_EMIT onObjectError(getPacketUpdated(getTopic(), QJsonValue()),
                         QStringLiteral("Error to insert new action: out of range ") + position);
}

void psi_data_t::update_action(int day, int hour, int minute, QString const& item, QString const& value,
                               bool notify)
{
    if (value.trimmed().isEmpty()) {
        minute_t* node = getMinute(day, hour, minute);
        if (node && node->remove(item) > 0) {
            if (notify)
                send_update_action(day, hour, minute, item);
            clean(day, hour, minute, notify);
        }
        return;
    }
    QString const position = minutePosition(day, hour, minute) + QStringLiteral(" item: ") + item
                             + QStringLiteral(" value: ") + value;
    if (!week_t::isValid(day) || !day_t::isValid(hour) || !hour_t::isValid(minute) || item.trimmed().isEmpty()) {
        refuseInsert(position);
        return;
    }
    minute_t* node = ensureMinute(day, hour, minute);
    CLASSLOGS_LOG(QStringLiteral("Added new action: ") + position, ::utility::logs::info,
                  QStringLiteral("update_action"));
    node->add(item, value);
    if (notify)
        send_update_action(day, hour, minute, item);
}

template<class Parent, class Node, class Find, class Ensure, class Publish, class Clean>
void psi_data_t::updateNode(Node* object, int number, bool valid, QString const& position, char const* source,
                            char const* added, bool notify, Find find, Ensure ensure, Publish publish, Clean cleanUp)
{
    if (!object) {
        if (Parent* parent = find()) {
            if (parent->remove(number) && notify)
                publish();
            cleanUp();
        }
        return;
    }
    if (!valid) {
        refuseInsert(position);
        return;
    }
    Parent* parent = ensure();
    CLASSLOGS_LOG(QString::fromLatin1(added) + position, ::utility::logs::info, QString::fromLatin1(source));
    parent->add(number, new Node(*object));
    if (notify)
        publish();
    cleanUp();
}

void psi_data_t::update_minute(int day, int hour, int minute, minute_t* object, bool notify)
{
    bool const valid = week_t::isValid(day) && day_t::isValid(hour) && hour_t::isValid(minute);
    updateNode<hour_t>(
        object, minute, valid, minutePosition(day, hour, minute), "update_minute", "Added new minute: ", notify,
        [&] { return getHour(day, hour); }, [&] { return ensureHour(day, hour); },
        [&] { send_update_minute(day, hour, minute); }, [&] { clean(day, hour, minute, notify); });
}

void psi_data_t::update_hour(int day, int hour, hour_t* object, bool notify)
{
    bool const valid = week_t::isValid(day) && day_t::isValid(hour);
    updateNode<day_t>(
        object, hour, valid, hourPosition(day, hour), "update_hour", "Added new hour: ", notify,
        [&] { return getDay(day); }, [&] { return ensureDay(day); }, [&] { send_update_hour(day, hour); },
        [&] { clean(day, hour, notify); });
}

void psi_data_t::update_day(int day, day_t* object, bool notify)
{
    // The words of update_hour's line, with this position: other processes' logs have them so.
    updateNode<week_t>(
        object, day, week_t::isValid(day), dayPosition(day), "update_day", "Added new hour: ", notify,
        [&] { return week; }, [&] { return week; }, [&] { send_update_day(day); },
        [&] { clean(day, -1, notify); });
}

void psi_data_t::update(week_t* object, bool notify)
{
    setWeek(object ? new week_t(*object) : nullptr);
    if (notify)
        send_update();
}

void psi_data_t::update_remove_item(QString const& item, bool notify)
{
    int removed = 0;
    for (day_t* day : week->getDays()) {
        for (hour_t* hour : day->getHours()) {
            for (minute_t* minute : hour->getMinutes())
                removed += minute->remove(item);
        }
    }
    if (removed == 0)
        return;
    week->clean();
    if (notify)
        send_update();
}

void psi_data_t::clean(bool notify)
{
    QJsonObject const before = week->toJson();
    week->clean();
    if (notify && week->toJson() != before)
        send_update();
}

void psi_data_t::clean(int day, int hour, bool notify)
{
    clean(day, hour, -1, notify);
}

void psi_data_t::clean(int day, int hour, int minute, bool notify)
{
    day_t* dayNode = getDay(day);
    if (!dayNode)
        return;
    hour_t* hourNode = hour >= 0 ? dayNode->getHour(hour) : nullptr;
    if (hourNode && minute >= 0) {
        minute_t* minuteNode = hourNode->getMinute(minute);
        if (minuteNode && minuteNode->getActions().isEmpty()) {
            hourNode->remove(minute);
            if (notify)
                send_update_minute(day, hour, minute);
        }
    }
    if (hourNode && hourNode->clean() == 0) {
        dayNode->remove(hour);
        if (notify)
            send_update_hour(day, hour);
    }
    if (dayNode->clean() == 0) {
        week->remove(day);
        if (notify)
            send_update_day(day);
    }
}

void psi_data_t::send_update()
{
    Q_EMIT onUpdated(getPacketUpdated(QStringLiteral("week"), week->toJson()));
}

void psi_data_t::send_update_day(int day)
{
    Q_EMIT onUpdated(getPacketUpdated(dayPath(day), nodeJson(getDay(day))));
}

void psi_data_t::send_update_hour(int day, int hour)
{
    Q_EMIT onUpdated(getPacketUpdated(hourPath(day, hour), nodeJson(getHour(day, hour))));
}

void psi_data_t::send_update_minute(int day, int hour, int minute)
{
    Q_EMIT onUpdated(getPacketUpdated(minutePath(day, hour, minute), nodeJson(getMinute(day, hour, minute))));
}

void psi_data_t::send_update_action(int day, int hour, int minute, QString const& item)
{
    minute_t* node = getMinute(day, hour, minute);
    QJsonValue const value = node && node->getActions().contains(item) ? QJsonValue(node->getActions().value(item))
                                                                      : QJsonValue();
    Q_EMIT onUpdated(getPacketUpdated(actionPath(day, hour, minute, item), value));
}

void psi_data_t::initRequestSignals(QObject* target, bool connect)
{
    connectRequestSignals(target, connect);
}

} // namespace presencesimulation
} // namespace database
