#ifndef DATABASE_PERSISTENT_DBS_PS_ELEMENTS_T_H
#define DATABASE_PERSISTENT_DBS_PS_ELEMENTS_T_H

#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include "database/base/topicbase_t.h"
#include "database/definition/type_object_t.h"
#include "database/persistent/dbs/ps_object_map_t.h"
#include "database/persistent/objects/elements/ps_object_element_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {

/// Lists of ids by key: the page stack, rooms with their elements.
typedef QMap<QString, QStringList> map_stringlist;

namespace dbs {

/**
 * The section of the user interface: all elements by id, the page stack (the
 * rooms on each page) and the interface's options. Elements list their rooms
 * and rooms list their elements and pages; the update_add_* and
 * update_remove_* operations keep both directions in step.
 */
class DATABASE_EXPORT ps_elements_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(database::persistent::ps_elements_map objects_list READ getObjects WRITE setObjects NOTIFY
                   objects_listChanged)
    Q_PROPERTY(database::persistent::map_stringlist page_stack READ getPage_stack WRITE setPage_stack NOTIFY
                   page_stackChanged)
    Q_PROPERTY(QVariantMap options READ getOptions WRITE setOptions NOTIFY optionsChanged)

public:
    /// Keys of options; the clients choose how they write them.
    enum ElementsOptionsKeyEnum {
        OPTIONS_FLAGS = 0,
        OPTIONS_DESIGN = 1,
        OPTIONS_DESIGN_DEFAULT = 2,
        OPTIONS_DESIGN_HOME_PAGE = 3,
        OPTIONS_DESIGN_FAVORITES_PAGE = 4,
        OPTIONS_DESIGN_PLUGINS_PAGE = 5,
        OPTIONS_DESIGN_SINGLEROOM_PAGE = 6
    };
    Q_ENUM(ElementsOptionsKeyEnum)

    /// Bits of the value under OPTIONS_FLAGS.
    enum ElementsOptionsFlagsEnum {
        OPTIONS_FLAG_RESPONSIVE_DESIGN = 1,
        OPTIONS_FLAG_HEADER_DISABLE_DATE_TIME = 2,
        OPTIONS_FLAG_SINGLE_ROOM_MODE = 4
    };
    Q_ENUM(ElementsOptionsFlagsEnum)

    Q_INVOKABLE explicit ps_elements_t(QObject* parent = nullptr);
    /// Takes the map's pointers as they are.
    ps_elements_t(ps_elements_map const& objects, QObject* parent);
    /// Deep: every element copied by its class, no parent, no receiver.
    ps_elements_t(ps_elements_t const& other);

    ps_elements_map getObjects() const { return objects.get(); }
    void setObjects(ps_elements_map const& map);
    map_stringlist getPage_stack() const { return page_stack; }
    void setPage_stack(map_stringlist const& value);
    QVariantMap getOptions() const { return options; }
    void setOptions(QVariantMap const& value);
    QString getDesktopKey() const { return desktopKey; }

    /// Never null; an unknown id gives a temporary plain element, see ps_object_map_t::list.
    objects::ps_object_element_t* list(QString const& id);

    /// Asks for one element, written by its class; null asks for its removal.
    void requestSetElement(QString const& id, objects::ps_object_element_t* element);
    void requestSetElements(ps_elements_map const& map) { objects.requestSetAll(map); }
    /// An empty stack is sent as page "0" without rooms, so that it is never empty.
    void requestSetPageStack(map_stringlist map);
    void requestSetOptions(QVariantMap const& map);

    /// Replace the whole value and publish it.
    void update_page_stack(map_stringlist const& map);
    void update_options(QVariantMap const& map);

    void send_update() { objects.sendUpdate(); }
    void send_update_element(QString const& id) { objects.sendUpdateObject(id); }
    void send_update_page_stack();
    void send_update_option();

    /// Applies an element with its links: replaced, added, or removed for null.
    /// Takes ownership of element, which is stored as it is (a page is deleted later).
    void update_with_dependency(QString const& id, objects::ps_object_element_t* element);
    /// Adds an element with its links to rooms and pages; a page only enters the
    /// page stack. Takes ownership of element.
    void update_add_element(QString const& id, objects::ps_object_element_t* element);
    /// Stores element itself (no copy) under id, replacing the present one through update_add_element.
    void update_element_to_list(QString const& id, objects::ps_object_element_t* element);
    /// Removes an element and its links; a room takes its last-room elements with it.
    void update_remove_element(QString const& id);
    /// Removes only the element itself, and publishes null for it.
    void update_remove_element_from_list(QString const& id);
    void update_add_elements_in_room(QString const& element_id, QStringList const& room_ids);
    void update_remove_elements_in_room(QString const& element_id, QStringList const& room_ids);
    void update_add_room_in_floor(QString const& room_id, QStringList const& page_ids);
    void update_remove_room_in_floor(QString const& room_id);
    void update_remove_room_from_element(QString const& room_id, QStringList const& element_ids);

    /// Rooms with their element lists, and the ids of everything but rooms and pages, in key order.
    void getElements(map_stringlist& rooms, QStringList& others) const;
    /// The ids of the elements that refer to the object of that kind and id.
    QStringList getDependency(::database::definition::type_object_t const& type, QString const& id) const;

    /// A copy by the element's class; a plain copy, logged, for a type without one; null for null.
    static objects::ps_object_element_t* copyObjectElement(objects::ps_object_element_t* element);

    void initRequestSignals(QObject* receiver, bool connect) { objects.initRequestSignals(receiver, connect); }

    /// Page stacks, options, and elements of the same type that are equal by content.
    bool operator==(ps_elements_t const& other) const;

Q_SIGNALS:
    void objects_listChanged(database::persistent::ps_elements_map);
    void page_stackChanged(database::persistent::map_stringlist);
    void optionsChanged(QVariantMap);
    void updatedChanged(QString);

private:
    objects::ps_object_element_t* stored(QString const& id) const { return objects.get().value(id); }

    ps_object_map_t<objects::ps_object_element_t> objects{this, QStringLiteral("objects_list")};
    QString const desktopKey = QStringLiteral("desktop");
    map_stringlist page_stack;
    QVariantMap options;
};

} // namespace dbs
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_PS_ELEMENTS_T_H
