#include "database/persistent/objects/elements/ps_object_element_t.h"

#include <QHash>

#include "database/persistent/objects/elements/psoe_3state.h"
#include "database/persistent/objects/elements/psoe_cmdbtn.h"
#include "database/persistent/objects/elements/psoe_customslider.h"
#include "database/persistent/objects/elements/psoe_dimmer.h"
#include "database/persistent/objects/elements/psoe_music.h"
#include "database/persistent/objects/elements/psoe_onoff.h"
#include "database/persistent/objects/elements/psoe_placeholder.h"
#include "database/persistent/objects/elements/psoe_pres_sim.h"
#include "database/persistent/objects/elements/psoe_raffstore.h"
#include "database/persistent/objects/elements/psoe_rgb.h"
#include "database/persistent/objects/elements/psoe_room.h"
#include "database/persistent/objects/elements/psoe_scenario.h"
#include "database/persistent/objects/elements/psoe_schedulers.h"
#include "database/persistent/objects/elements/psoe_shutter.h"
#include "database/persistent/objects/elements/psoe_shutterpercent.h"
#include "database/persistent/objects/elements/psoe_thermo_logic.h"
#include "database/persistent/objects/elements/psoe_thermostat.h"
#include "database/persistent/objects/elements/psoe_tunablewhite.h"
#include "database/persistent/objects/elements/psoe_weather.h"
#include "platform/logs/classlogs.h"
#include "platform/qjsonserializer/qjsonserializer.h"

namespace database {
namespace persistent {
namespace objects {

namespace {

// What each element type may do through its class. The gaps are deliberate:
// stored files and other processes rely on weather and tunable white elements
// being handled by identity, and on pages having no class at all.
struct element_class_t {
    ps_object_element_t* (*make)(QObject* parent);
    ps_object_element_t* (*copy)(ps_object_element_t const* origin);
    bool (*same)(ps_object_element_t const* a, ps_object_element_t const* b, bool compare_runoptions);
    void (*registerType)();
    bool byType = true;    // createElementOfType, createCopyOfType, clone
    bool byContent = true; // isEqual
};

template<class T>
element_class_t entry(bool byType = true, bool byContent = true)
{
    return element_class_t{
        [](QObject* parent) -> ps_object_element_t* { return new T(parent); },
        [](ps_object_element_t const* origin) -> ps_object_element_t* { return new T(*static_cast<T const*>(origin)); },
        [](ps_object_element_t const* a, ps_object_element_t const* b, bool compare_runoptions) {
            return static_cast<T const*>(a)->compare(static_cast<T const*>(b), compare_runoptions);
        },
        [] { QJsonSerializer::registerObjectType<T>(); }, byType, byContent};
}

QHash<int, element_class_t> const& classes()
{
    using E = ps_object_element_t;
    static QHash<int, element_class_t> const table{
        {E::ELEMENT_TYPE_ONOFF, entry<psoe_onoff>()},
        {E::ELEMENT_TYPE_DIMMER, entry<psoe_dimmer>()},
        {E::ELEMENT_TYPE_RGB, entry<psoe_rgb>()},
        {E::ELEMENT_TYPE_SHUTTER_UPDOWN, entry<psoe_shutter>()},
        {E::ELEMENT_TYPE_SHUTTER_PERCENT, entry<psoe_shutterpercent>()},
        {E::ELEMENT_TYPE_THERMOSTAT, entry<psoe_thermostat>()},
        {E::ELEMENT_TYPE_MUSIC, entry<psoe_music>()},
        {E::ELEMENT_TYPE_CUSTOM_SLIDER, entry<psoe_customslider>()},
        {E::ELEMENT_TYPE_SCENARIO, entry<psoe_scenario>()},
        {E::ELEMENT_TYPE_RAFFSTORE, entry<psoe_raffstore>()},
        {E::ELEMENT_TYPE_WEATHER, entry<psoe_weather>(false, false)},
        {E::ELEMENT_TYPE_ROOM, entry<psoe_room>()},
        {E::ELEMENT_TYPE_COMMAND_BUTTON, entry<psoe_cmdbtn>()},
        {E::ELEMENT_TYPE_PRESENCE_SIMULATION, entry<psoe_pres_sim>()},
        {E::ELEMENT_TYPE_THERMO_LOGIC, entry<psoe_thermo_logic>()},
        {E::ELEMENT_TYPE_PLACEHOLDER, entry<psoe_placeholder>()},
        {E::ELEMENT_TYPE_SCHEDULERS, entry<psoe_schedulers>()},
        {E::ELEMENT_TYPE_TUNABLEWHITE, entry<psoe_tunablewhite>(true, false)},
        {E::ELEMENT_TYPE_3STATE, entry<psoe_3state>()},
    };
    return table;
}

element_class_t const* classOf(int type, bool element_class_t::*ability = nullptr)
{
    auto const found = classes().constFind(type);
    if (found == classes().constEnd() || (ability && !(found.value().*ability)))
        return nullptr;
    return &found.value();
}

} // namespace

ps_object_element_t::ps_object_element_t(QObject* parent)
    : topicbase_t(parent)
{
}

ps_object_element_t::ps_object_element_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
}

ps_object_element_t::ps_object_element_t(QString const& id, QString const& name, QString const& description,
                                         QVariantMap const& function_map, QVariantMap const& auth,
                                         QStringList const& rooms, int flags, QVariantMap const& runoptions,
                                         QVariantMap const& lock_ui_map, QObject* parent)
    : topicbase_t(parent)
    , id(id)
    , name(name)
    , description(description)
    , function_map(function_map)
    , auth(auth)
    , rooms(rooms)
    , flags(flags)
    , runoptions(runoptions)
    , lock_ui_map(lock_ui_map)
{
}

ps_object_element_t::ps_object_element_t(ps_object_element_t const& other)
    : topicbase_t(other)
    , id(other.id)
    , name(other.name)
    , description(other.description)
    , function_map(other.function_map)
    , auth(other.auth)
    , rooms(other.rooms)
    , flags(other.flags)
    , runoptions(other.runoptions)
    , lock_ui_map(other.lock_ui_map)
{
}

int ps_object_element_t::getTypeIndex() const
{
    return ELEMENT_TYPE_UNKNOWN;
}

void ps_object_element_t::setId(QString const& value)
{
    assign(id, value, [this] { Q_EMIT idChanged(id); });
}

void ps_object_element_t::setName(QString const& value)
{
    assign(name, value, [this] { Q_EMIT nameChanged(name); });
}

void ps_object_element_t::setDescription(QString const& value)
{
    assign(description, value, [this] { Q_EMIT descriptionChanged(description); });
}

void ps_object_element_t::setFunction_map(QVariantMap const& value)
{
    assign(function_map, value, [this] { Q_EMIT function_mapChanged(function_map); });
}

void ps_object_element_t::setAuth(QVariantMap const& value)
{
    assign(auth, value, [this] { Q_EMIT authChanged(auth); });
}

void ps_object_element_t::setRooms(QStringList const& value)
{
    assign(rooms, value, [this] { Q_EMIT roomsChanged(rooms); });
}

void ps_object_element_t::setFlags(int value)
{
    assign(flags, value, [this] { Q_EMIT flagsChanged(flags); });
}

void ps_object_element_t::setRunoptions(QVariantMap const& value)
{
    assign(runoptions, value, [this] { Q_EMIT runoptionsChanged(runoptions); });
}

void ps_object_element_t::setLock_ui_map(QVariantMap const& value)
{
    assign(lock_ui_map, value, [this] { Q_EMIT lock_ui_mapChanged(lock_ui_map); });
}

bool ps_object_element_t::getFlag(int _flag) const
{
    return (flags & _flag) == _flag;
}

ps_object_element_t* ps_object_element_t::createElementOfType(int _type, QObject* _parent)
{
    if (element_class_t const* found = classOf(_type, &element_class_t::byType))
        return found->make(_parent);
    return new ps_object_element_t(_parent);
}

ps_object_element_t* ps_object_element_t::createElementOfType(int _type)
{
    return createElementOfType(_type, nullptr);
}

ps_object_element_t* ps_object_element_t::createCopyOfType(int _type, ps_object_element_t* origin)
{
    if (!origin)
        return nullptr;
    // The class of _type must be the origin's own, or the cast in copy() would lie.
    element_class_t const* found = classOf(_type, &element_class_t::byType);
    if (found && origin->getTypeIndex() == _type)
        return found->copy(origin);
    return new ps_object_element_t(*origin);
}

ps_object_element_t* ps_object_element_t::clone() const
{
    if (element_class_t const* found = classOf(getTypeIndex(), &element_class_t::byType))
        return found->copy(this);
    CLASSLOGS_LOG(QStringLiteral("Cannot create element of unknown type"), ::utility::logs::error,
                  QStringLiteral("clone"));
    return new ps_object_element_t(*this);
}

bool ps_object_element_t::isSerializableType(int _type)
{
    return classOf(_type) != nullptr;
}

ps_object_element_t* ps_object_element_t::copyOfClass(ps_object_element_t const* origin)
{
    element_class_t const* found = origin ? classOf(origin->getTypeIndex()) : nullptr;
    return found ? found->copy(origin) : nullptr;
}

bool ps_object_element_t::isEqual(ps_object_element_t* other, bool compare_runoptions) const
{
    if (!other || other->getTypeIndex() != getTypeIndex())
        return false;
    if (element_class_t const* found = classOf(getTypeIndex(), &element_class_t::byContent))
        return found->same(this, other, compare_runoptions);
    CLASSLOGS_LOG(QStringLiteral("Cannot compare element of unknown type"), ::utility::logs::error,
                  QStringLiteral("isEqual"));
    return this == other;
}

bool ps_object_element_t::compare(ps_object_element_t const* other, bool compare_runoptions, bool compare_id) const
{
    if (!other)
        return false;
    if (compare_runoptions && runoptions != other->runoptions)
        return false;
    if (compare_id && id != other->id)
        return false;
    return name == other->name && description == other->description && function_map == other->function_map
        && auth == other->auth && rooms == other->rooms && flags == other->flags && lock_ui_map == other->lock_ui_map;
}

bool ps_object_element_t::compareFamily(ps_object_element_t const* other, bool compare_runoptions) const
{
    return compare(other, compare_runoptions, false) && sameValues(other);
}

void ps_object_element_t::update_add_function(QString const& key, QVariant const& value, bool _notify)
{
    QVariantMap map = function_map;
    map.insert(key, value);
    setFunction_map(map);
    if (_notify)
        send_update();
}

void ps_object_element_t::update_rm_function(QString const& key, bool _notify)
{
    QVariantMap map = function_map;
    map.remove(key);
    setFunction_map(map);
    if (_notify)
        send_update();
}

void ps_object_element_t::send_update()
{
    publishSelf();
}

void ps_object_element_t::initRequestSignals(QObject* receiver, bool connect)
{
    connectRequestSignals(receiver, connect);
}

void ps_object_element_t::registerTypes()
{
    QJsonSerializer::registerObjectType<ps_object_element_t>();
    for (element_class_t const& entry : classes())
        entry.registerType();
}

} // namespace objects
} // namespace persistent
} // namespace database
