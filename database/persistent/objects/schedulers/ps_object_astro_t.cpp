#include "database/persistent/objects/schedulers/ps_object_astro_t.h"

#include <QRegExp>

#include "database/persistent/ps_request.h"

namespace database {
namespace persistent {
namespace objects {

using ::database::definition::type_sun_t;

ps_object_astro_t::ps_object_astro_t(QObject* parent)
    : ps_object_schedule_entry_t(QString(), parent)
{
}

ps_object_astro_t::ps_object_astro_t(QString const& topic, QObject* parent)
    : ps_object_schedule_entry_t(topic, parent)
{
}

ps_object_astro_t::ps_object_astro_t(type_sun_t const& type, int offset, QString const& minute, QString const& hour,
                                     QString const& day, QString const& month, QString const& dayofweek,
                                     QString const& year, QString const& from, QString const& to,
                                     ps_objects_map const* actions, QObject* parent)
    : ps_object_schedule_entry_t({minute, hour, day, month, dayofweek, year}, from, to, actions, parent)
    , offset(offset)
    , type(type.ToString())
{
}

ps_object_astro_t::ps_object_astro_t(type_sun_t const& type, int offset, QString const& day, QString const& month,
                                     QString const& dayofweek, QString const& year, QString const& from,
                                     QString const& to, ps_objects_map const* actions, QObject* parent)
    : ps_object_astro_t(type, offset, QStringLiteral("*"), QStringLiteral("*"), day, month, dayofweek, year, from,
                        to, actions, parent)
{
}

ps_object_astro_t::ps_object_astro_t(ps_object_astro_t const& other)
    : ps_object_schedule_entry_t(other)
    , offset(other.offset)
    , type(other.type)
{
}

void ps_object_astro_t::setOffset(int value)
{
    assign(offset, value, [this] { Q_EMIT offsetChanged(offset); });
}

void ps_object_astro_t::setType(QString const& value)
{
    assign(type, value, [this] { Q_EMIT typeChanged(type); });
}

bool ps_object_astro_t::checkParamsFromTo(QString const& value)
{
    // Unlike a clock entry, a sun entry takes any day and a bare "*", but no "*" within a date.
    return QRegExp(QStringLiteral(R"(^(([1-9]|[0-2][0-9]|3[0-1])\/(0?[1-9]|1[0-2])|^\*)$)"), Qt::CaseSensitive)
        .exactMatch(value);
}

void ps_object_astro_t::requestSetType(type_sun_t const& value)
{
    requestField(this, QStringLiteral("type"), value.ToString());
}

void ps_object_astro_t::requestSetOffset(int value)
{
    requestChecked(requestPacket(QStringLiteral("offset"), value), offsetAllowed(value),
                   QStringLiteral("Offset not allowed"));
}

void ps_object_astro_t::requestSetValidity(QString const& from, QString const& to)
{
    // The request handler knows the validity of a sun entry by the key "from".
    requestChecked(requestPacket(QStringLiteral("from"), joinFields({from, to})),
                   checkParamsFromTo(from) && checkParamsFromTo(to), QStringLiteral("Validity not allowed"));
}

void ps_object_astro_t::requestSetPattern(QString const& day, QString const& month, QString const& dayofweek,
                                          QString const& year)
{
    QStringList const fields{QStringLiteral("*"), QStringLiteral("*"), day, month, dayofweek, year};
    requestChecked(requestPacket(QStringLiteral("pattern"), joinFields(fields)), checkPattern(fields),
                   QStringLiteral("Value not allowed"));
}

void ps_object_astro_t::requestSetAstro(type_sun_t const& _type, int _offset, QString const& day,
                                        QString const& month, QString const& dayofweek, QString const& year,
                                        QString const& from, QString const& to)
{
    requestSet(_type, _offset, day, month, dayofweek, year, from, to, nullptr);
}

void ps_object_astro_t::requestSet(type_sun_t const& _type, int _offset, QString const& day, QString const& month,
                                   QString const& dayofweek, QString const& year, QString const& from,
                                   QString const& to, ps_objects_map const* actions)
{
    ps_object_astro_t temporary(_type, _offset, day, month, dayofweek, year, from, to, nullptr);
    temporary.setTopic(topic);
    ps_objects_map const own = getObjects();
    QJsonObject const packet = requestPacket(QString(), temporary.requestPayload(actions ? actions : &own));
    bool const valid = offsetAllowed(_offset)
        && checkPattern({QStringLiteral("*"), QStringLiteral("*"), day, month, dayofweek, year})
        && checkValidity(from, to);
    // Kept as other processes meet it: twice when valid, and once all the same
    // after a refusal, since the handler has the last word on a whole sun entry.
    if (!valid)
        Q_EMIT onObjectError(packet, QStringLiteral("Value not allowed"));
    else
        Q_EMIT onRequest(packet);
    Q_EMIT onRequest(packet);
}

void ps_object_astro_t::update(ps_object_astro_t const* other, bool _notify)
{
    if (!mergeFrom(other))
        return;
    setOffset(other->offset);
    setType(other->type);
    if (_notify)
        send_update();
}

bool ps_object_astro_t::compare(ps_object_astro_t const* other) const
{
    return other && getPattern() == other->getPattern() && getValidity() == other->getValidity()
        && offset == other->offset && type == other->type && sameActionContent(other);
}

bool ps_object_astro_t::operator==(ps_object_astro_t const& other) const
{
    return sameActionObjects(other) && getPattern() == other.getPattern() && getValidity() == other.getValidity()
        && offset == other.offset && type == other.type;
}

ps_object_astro_t* ps_object_astro_t::get() const
{
    auto* copy = new ps_object_astro_t(*this);
    copy->topicActions();
    return copy;
}

} // namespace objects
} // namespace persistent
} // namespace database
