#ifndef DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_ROOM_H
#define DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_ROOM_H

#include <QJsonArray>
#include <QObject>
#include <QString>
#include <QStringList>

#include "database/persistent/objects/elements/psoe_family_t.h"
#include "database/persistent/ps_request.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/**
 * A room: it lists the elements that stand in it, and its rooms property names
 * the pages it stands on. The section keeps both directions in step.
 */
class DATABASE_EXPORT psoe_room : public psoe_family_t<psoe_room, ps_object_element_t::ELEMENT_TYPE_ROOM>
{
    Q_OBJECT
    Q_PROPERTY(QStringList element_list READ getElement_list WRITE setElement_list NOTIFY element_listChanged)
    Q_PROPERTY(QString room_picture READ getRoom_picture WRITE setRoom_picture NOTIFY room_pictureChanged)
    Q_PROPERTY(int design READ getDesign WRITE setDesign NOTIFY designChanged)
    // The page object of the panels, if they set one: memory only.
    Q_PROPERTY(QObject* pagePtr READ getPagePtr WRITE setPagePtr NOTIFY pagePtrChanged STORED false)

public:
    enum RoomFlag {
        ROOM_FLAG_CUSTOM_PIC = 0x80000000,
        ROOM_FLAG_LIGHT_ENABLED = 0x40000000,
        ROOM_FLAG_MUSIC_ENABLED = 0x20000000,
        ROOM_FLAG_SHUTTER_ENABLED = 0x10000000,
        ROOM_FLAG_TEMPERATURE_ENABLED = 0x08000000,
        ROOM_FLAG_SHOW_CENTRAL_FUNC_ON_PINLOCKED = 0x04000000
    };
    Q_ENUM(RoomFlag)

    Q_INVOKABLE explicit psoe_room(QObject* parent = nullptr);
    psoe_room(QString const& topic, QObject* parent);
    psoe_room(QString const& id, QString const& name, QString const& description, QVariantMap const& function_map,
              QVariantMap const& auth, QStringList const& rooms, int flags, QVariantMap const& runoptions,
              QVariantMap const& lock_ui_map, QStringList const& element_list, QString const& room_picture, int design,
              QObject* parent);
    psoe_room(psoe_room const& other);

    QStringList getElement_list() const { return element_list; }
    QString getRoom_picture() const { return room_picture; }
    int getDesign() const { return design; }
    void setElement_list(QStringList const& value)
    {
        assign(element_list, value, [this] { Q_EMIT element_listChanged(element_list); });
    }
    void setRoom_picture(QString const& value)
    {
        assign(room_picture, value, [this] { Q_EMIT room_pictureChanged(room_picture); });
    }
    void setDesign(int value)
    {
        assign(design, value, [this] { Q_EMIT designChanged(design); });
    }

    void requestSetElement_list(QStringList const& value)
    {
        requestField(this, QStringLiteral("element_list"), QJsonArray::fromStringList(value));
    }

    QObject* getPagePtr() const { return pagePtr; }
    void setPagePtr(QObject* value)
    {
        assign(pagePtr, value, [this] { Q_EMIT pagePtrChanged(pagePtr); });
    }

    void update_design(int value, bool _notify);

Q_SIGNALS:
    void element_listChanged(QStringList);
    void room_pictureChanged(QString);
    void designChanged(int);
    void pagePtrChanged(QObject*);

private:
    QStringList element_list;
    QString room_picture;
    int design = 0;
    QObject* pagePtr = nullptr;
};

} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_ROOM_H
