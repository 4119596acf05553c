#include "database/persistent/dbs/ps_elements_t.h"

#include <memory>

#include "database/base/literals.h"
#include "database/persistent/objects/elements/psoe_room.h"
#include "database/persistent/objects/elements/psoe_scenario.h"
#include "database/persistent/objects/elements/psoe_thermo_logic.h"
#include "database/persistent/ps_request.h"

namespace database {
namespace persistent {
namespace dbs {

using objects::ps_object_element_t;
using objects::psoe_room;

namespace {

QString const key_page_stack = QStringLiteral("page_stack");
QString const key_options = QStringLiteral("options");

template<class T>
QJsonValue jsonOf(T const& value)
{
    return utility::getInstance()->serializer()->serialize(value);
}

bool isType(ps_object_element_t const* element, int type)
{
    return element && element->getTypeIndex() == type;
}

} // namespace

ps_elements_t::ps_elements_t(QObject* parent)
    : topicbase_t(literals::key_elements, parent)
{
    objects.setMissLog(QStringLiteral("New key create app : "));
}

ps_elements_t::ps_elements_t(ps_elements_map const& map, QObject* parent)
    : ps_elements_t(parent)
{
    objects.adopt(map);
}

ps_elements_t::ps_elements_t(ps_elements_t const& other)
    : topicbase_t(other)
    , page_stack(other.page_stack)
    , options(other.options)
{
    objects.setMissLog(QStringLiteral("New key create app : "));
    ps_elements_map copies;
    for (auto it = other.objects.get().begin(); it != other.objects.get().end(); ++it)
        copies.insert(it.key(), copyObjectElement(it.value()));
    objects.adopt(copies);
}

void ps_elements_t::setObjects(ps_elements_map const& map)
{
    objects.adopt(map);
    Q_EMIT objects_listChanged(objects.get());
}

void ps_elements_t::setPage_stack(map_stringlist const& value)
{
    assign(page_stack, value, [this] { Q_EMIT page_stackChanged(page_stack); });
}

void ps_elements_t::setOptions(QVariantMap const& value)
{
    assign(options, value, [this] { Q_EMIT optionsChanged(options); });
}

ps_object_element_t* ps_elements_t::list(QString const& id)
{
    ps_object_element_t* element = objects.list(id);
    element->setTopic(objects.objectTopic(id));
    return element;
}

void ps_elements_t::requestSetElement(QString const& id, ps_object_element_t* element)
{
    if (element && !ps_object_element_t::isSerializableType(element->getTypeIndex())) {
        CLASSLOGS_LOG(QStringLiteral("Cannot deserialize unknwon element type %1, aborting.")
                          .arg(element->getTypeIndex()),
                      ::utility::logs::error, QStringLiteral("requestSetElement"));
        return;
    }
    objects.requestSet(id, element);
}

void ps_elements_t::requestSetPageStack(map_stringlist map)
{
    if (map.isEmpty())
        map.insert(QStringLiteral("0"), QStringList());
    requestAt(this, topic + QLatin1Char('/') + key_page_stack, jsonOf(map));
}

void ps_elements_t::requestSetOptions(QVariantMap const& map)
{
    requestAt(this, topic + QLatin1Char('/') + key_options, jsonOf(map));
}

void ps_elements_t::update_page_stack(map_stringlist const& map)
{
    setPage_stack(map);
    send_update_page_stack();
}

void ps_elements_t::update_options(QVariantMap const& map)
{
    setOptions(map);
    send_update_option();
}

void ps_elements_t::send_update_page_stack()
{
    publishField(key_page_stack, jsonOf(page_stack));
}

void ps_elements_t::send_update_option()
{
    publishField(key_options, jsonOf(options));
}

void ps_elements_t::update_with_dependency(QString const& id, ps_object_element_t* element)
{
    bool const present = objects.get().contains(id);
    if (element) {
        element->setTopic(objects.objectTopic(id));
        if (present)
            update_element_to_list(id, element);
        else
            update_add_element(id, element);
    } else if (present) {
        update_remove_element(id);
    }
}

void ps_elements_t::update_element_to_list(QString const& id, ps_object_element_t* element)
{
    if (objects.get().contains(id)) {
        ps_object_element_t* present = stored(id);
        if (present == element) {
            // Storing the stored element again must not schedule it for deletion.
            objects.insert(id, element);
        } else {
            objects.remove(id);
            if (element) {
                // Comes back here with the key gone, and publishes there.
                update_add_element(id, element);
                return;
            }
        }
    } else if (element) {
        element->setId(id);
        objects.insert(id, element);
    }
    send_update_element(id);
}

void ps_elements_t::update_add_element(QString const& id, ps_object_element_t* element)
{
    if (!element) {
        CLASSLOGS_LOG(QStringLiteral("Unable to add element null"), ::utility::logs::error,
                      QStringLiteral("update_add_element"));
        return;
    }
    element->setId(id);
    switch (element->getTypeIndex()) {
    case ps_object_element_t::ELEMENT_TYPE_ROOM:
        update_element_to_list(id, element);
        update_add_room_in_floor(id, element->getRooms());
        break;
    case ps_object_element_t::ELEMENT_TYPE_PAGE:
        if (!page_stack.contains(id)) {
            map_stringlist stack = page_stack;
            stack.insert(id, QStringList());
            setPage_stack(stack);
            send_update_page_stack();
        }
        // A page lives in the page stack only; the element handed over isn't kept.
        element->deleteLater();
        break;
    default:
        update_add_elements_in_room(id, element->getRooms());
        update_element_to_list(id, element);
        break;
    }
}

void ps_elements_t::update_add_room_in_floor(QString const& room_id, QStringList const& page_ids)
{
    map_stringlist stack = page_stack;
    bool appended = false;
    for (QString const& page_id : page_ids) {
        QStringList& rooms = stack[page_id];
        if (!rooms.contains(room_id)) {
            rooms.append(room_id);
            appended = true;
        }
    }
    setPage_stack(stack);
    if (appended)
        send_update_page_stack();
}

void ps_elements_t::update_add_elements_in_room(QString const& element_id, QStringList const& room_ids)
{
    bool appended = false;
    for (QString const& room_id : room_ids) {
        if (room_id.trimmed().isEmpty()) {
            CLASSLOGS_LOG(QStringLiteral("Cannot add element ") + element_id
                              + QStringLiteral(" in the room because idroom is empty, the rooms are: ")
                              + room_ids.join(QStringLiteral("; ")),
                          ::utility::logs::error, QStringLiteral("update_add_elements_in_room"));
            continue;
        }
        // Rooms aren't created here: an unknown id gets a stand-in that stays outside the map.
        psoe_room* room = qobject_cast<psoe_room*>(stored(room_id));
        std::unique_ptr<psoe_room> standIn;
        if (!room) {
            standIn = std::make_unique<psoe_room>(objects.objectTopic(room_id), nullptr);
            standIn->setId(room_id);
            room = standIn.get();
        }
        QStringList elements = room->getElement_list();
        if (!elements.contains(element_id)) {
            elements.append(element_id);
            room->setElement_list(elements);
            appended = true;
        }
        if (appended)
            send_update_element(room_id);
        update_add_room_in_floor(room_id, room->getRooms());
    }
}

void ps_elements_t::update_remove_element(QString const& id)
{
    ps_object_element_t* element = stored(id);
    if (!element)
        return;
    map_stringlist rooms;
    QStringList others;
    switch (element->getTypeIndex()) {
    case ps_object_element_t::ELEMENT_TYPE_ROOM:
        getElements(rooms, others);
        update_remove_room_from_element(id, others);
        break;
    case ps_object_element_t::ELEMENT_TYPE_PAGE:
        break;
    default:
        getElements(rooms, others);
        update_remove_elements_in_room(id, rooms.keys());
        break;
    }
}

void ps_elements_t::update_remove_elements_in_room(QString const& element_id, QStringList const& room_ids)
{
    for (QString const& room_id : room_ids) {
        psoe_room* room = qobject_cast<psoe_room*>(stored(room_id));
        if (!room)
            continue;
        QStringList elements = room->getElement_list();
        if (elements.removeAll(element_id) > 0) {
            room->setElement_list(elements);
            send_update_element(room_id);
        }
    }
    update_remove_element_from_list(element_id);
}

void ps_elements_t::update_remove_room_from_element(QString const& room_id, QStringList const& element_ids)
{
    for (QString const& element_id : element_ids) {
        ps_object_element_t* element = stored(element_id);
        if (!element)
            continue;
        QStringList rooms = element->getRooms();
        bool const removed = rooms.removeAll(room_id) > 0;
        element->setRooms(rooms);
        // An element doesn't outlive its last room.
        if (rooms.isEmpty())
            update_remove_element_from_list(element_id);
        else if (removed)
            send_update_element(element_id);
    }
    update_remove_room_in_floor(room_id);
    update_remove_element_from_list(room_id);
}

void ps_elements_t::update_remove_room_in_floor(QString const& room_id)
{
    map_stringlist stack = page_stack;
    bool removed = false;
    for (QStringList& rooms : stack) {
        if (rooms.removeAll(room_id) > 0)
            removed = true;
    }
    if (!removed)
        return;
    setPage_stack(stack);
    send_update_page_stack();
}

void ps_elements_t::update_remove_element_from_list(QString const& id)
{
    if (objects.remove(id))
        send_update_element(id);
}

void ps_elements_t::getElements(map_stringlist& rooms, QStringList& others) const
{
    for (auto it = objects.get().begin(); it != objects.get().end(); ++it) {
        ps_object_element_t const* element = it.value();
        if (isType(element, ps_object_element_t::ELEMENT_TYPE_PAGE))
            continue;
        if (isType(element, ps_object_element_t::ELEMENT_TYPE_ROOM))
            rooms.insert(it.key(), static_cast<psoe_room const*>(element)->getElement_list());
        else
            others.append(it.key());
    }
}

QStringList ps_elements_t::getDependency(::database::definition::type_object_t const& type, QString const& id) const
{
    using ::database::definition::type_object_t;
    QStringList dependent;
    for (auto it = objects.get().begin(); it != objects.get().end(); ++it) {
        ps_object_element_t const* element = it.value();
        if (!element)
            continue;
        bool depends = false;
        if (type == type_object_t::item) {
            QVariantMap const functions = element->getFunction_map();
            depends = std::any_of(functions.begin(), functions.end(),
                                  [&id](QVariant const& value) { return value.toString() == id; });
        } else if (type == type_object_t::scenary) {
            auto const* scenario = qobject_cast<objects::psoe_scenario const*>(element);
            depends = scenario && scenario->getScenario_id() == id;
        } else if (type == type_object_t::thermo) {
            auto const* thermo = qobject_cast<objects::psoe_thermo_logic const*>(element);
            depends = thermo && thermo->getThermo_id() == id;
        }
        if (depends)
            dependent.append(it.key());
    }
    return dependent;
}

ps_object_element_t* ps_elements_t::copyObjectElement(ps_object_element_t* element)
{
    if (!element)
        return nullptr;
    if (ps_object_element_t* copy = ps_object_element_t::copyOfClass(element))
        return copy;
    CLASSLOGS_LOG(QStringLiteral("Cannot copy unknwon element type %1, aborting.").arg(element->getTypeIndex()),
                  ::utility::logs::error, QStringLiteral("copyObjectElement"));
    return new ps_object_element_t(*element);
}

bool ps_elements_t::operator==(ps_elements_t const& other) const
{
    if (page_stack != other.page_stack || options != other.options)
        return false;
    ps_elements_map const& mine = objects.get();
    ps_elements_map const& theirs = other.objects.get();
    if (mine.keys() != theirs.keys())
        return false;
    for (auto it = mine.begin(); it != mine.end(); ++it) {
        ps_object_element_t* their = theirs.value(it.key());
        if (!it.value() || !their || !it.value()->isEqual(their, false))
            return false;
    }
    return true;
}

} // namespace dbs
} // namespace persistent
} // namespace database
