#include "database/persistent/objects/ps_object_scenary_t.h"

#include "database/persistent/ps_request.h"

namespace database {
namespace persistent {
namespace objects {

ps_object_scenary_t::ps_object_scenary_t(QObject* parent)
    : topicbase_t(parent)
{
}

ps_object_scenary_t::ps_object_scenary_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
}

ps_object_scenary_t::ps_object_scenary_t(bool enabled, ps_objects_map const& objects, int permission,
                                         QString const& name, QObject* parent)
    : topicbase_t(parent)
    , enabled(enabled)
    , name(name)
    , permission(permission)
{
    steps.adopt(objects);
}

ps_object_scenary_t::ps_object_scenary_t(bool enabled, QString const& key, ps_object_t* object, int permission,
                                         QString const& name, QObject* parent)
    : ps_object_scenary_t(enabled, ps_objects_map{{key, object}}, permission, name, parent)
{
}

ps_object_scenary_t::ps_object_scenary_t(ps_object_scenary_t const& other)
    : topicbase_t(other)
    , enabled(other.enabled)
    , name(other.name)
    , permission(other.permission)
    , smvalue(other.smvalue)
{
    steps.copyFrom(other.steps);
}

void ps_object_scenary_t::setObjects(ps_objects_map const& map)
{
    steps.adopt(map);
    Q_EMIT objects_listChanged(steps.get());
}

void ps_object_scenary_t::setEnabled(bool value)
{
    assign(enabled, value, [this] { Q_EMIT enabledChanged(enabled); });
}

void ps_object_scenary_t::setName(QString const& value)
{
    assign(name, value, [this] { Q_EMIT nameChanged(name); });
}

void ps_object_scenary_t::setPermission(int value)
{
    assign(permission, value, [this] { Q_EMIT permissionChanged(permission); });
}

void ps_object_scenary_t::setSmartButtonValue(QString const& value)
{
    assign(smvalue, value, [this] { Q_EMIT smvalueChanged(smvalue); });
}

void ps_object_scenary_t::setTopic(QString const& value)
{
    topicbase_t::setTopic(value);
    steps.retopic();
}

void ps_object_scenary_t::requestSetEnabled(bool value)
{
    requestField(this, QStringLiteral("enabled"), value);
}

void ps_object_scenary_t::requestSetName(QString const& value)
{
    requestField(this, QStringLiteral("name"), value);
}

void ps_object_scenary_t::requestSetPermission(int value)
{
    requestField(this, QStringLiteral("permission"), value);
}

void ps_object_scenary_t::requestSetSmartButtonValue(QString const& value)
{
    requestField(this, QStringLiteral("smvalue"), value);
}

void ps_object_scenary_t::requestSetExecution(bool value)
{
    requestField(this, QStringLiteral("execution"), value);
}

void ps_object_scenary_t::update_object(QString const& key, ps_object_t* object, bool _notify)
{
    steps.update(key, object, false);
    if (_notify)
        send_update();
}

void ps_object_scenary_t::update_remove_objects(QStringList const& keys, bool _notify)
{
    for (QString const& key : keys)
        steps.update(key, nullptr, false);
    if (_notify)
        send_update();
}

void ps_object_scenary_t::update_name(QString const& value, bool _notify)
{
    setName(value);
    if (_notify)
        send_update();
}

void ps_object_scenary_t::update_smart_button_value(QString const& value, bool _notify)
{
    setSmartButtonValue(value);
    if (_notify)
        send_update();
}

bool ps_object_scenary_t::sameFields(ps_object_scenary_t const& other) const
{
    return enabled == other.enabled && name == other.name && permission == other.permission
        && smvalue == other.smvalue;
}

bool ps_object_scenary_t::compare(ps_object_scenary_t const* other) const
{
    if (!other || !sameFields(*other))
        return false;
    ps_objects_map const& mine = steps.get();
    ps_objects_map const& theirs = other->steps.get();
    if (mine.keys() != theirs.keys())
        return false;
    for (auto it = mine.begin(); it != mine.end(); ++it) {
        ps_object_t const* step = it.value();
        ps_object_t const* otherStep = theirs.value(it.key());
        if (step != otherStep && !(step && step->compare(otherStep)))
            return false;
    }
    return true;
}

bool ps_object_scenary_t::operator==(ps_object_scenary_t const& other) const
{
    return sameFields(other) && steps.get() == other.steps.get();
}

} // namespace objects
} // namespace persistent
} // namespace database
