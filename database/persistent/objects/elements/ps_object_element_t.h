#ifndef DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PS_OBJECT_ELEMENT_T_H
#define DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PS_OBJECT_ELEMENT_T_H

#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantMap>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/**
 * One tile of the user interface: it binds named functions to items by id,
 * carries display options and knows the rooms it stands in. The concrete
 * classes (psoe_*) are told apart by getTypeIndex() and, in the JSON, by
 * "@class"; this base class stands for an element of unknown type.
 */
class DATABASE_EXPORT ps_object_element_t : public base::topicbase_t
{
    Q_OBJECT
    Q_CLASSINFO("polymorphic", "true")
    // The id is the key in the section's map, so it isn't written twice.
    Q_PROPERTY(QString id READ getId WRITE setId NOTIFY idChanged STORED false)
    Q_PROPERTY(QString name READ getName WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(QString description READ getDescription WRITE setDescription NOTIFY descriptionChanged)
    Q_PROPERTY(QVariantMap function_map READ getFunction_map WRITE setFunction_map NOTIFY function_mapChanged)
    Q_PROPERTY(QVariantMap auth READ getAuth WRITE setAuth NOTIFY authChanged)
    Q_PROPERTY(QStringList rooms READ getRooms WRITE setRooms NOTIFY roomsChanged)
    Q_PROPERTY(int flags READ getFlags WRITE setFlags NOTIFY flagsChanged)
    // Options at run time: memory only.
    Q_PROPERTY(QVariantMap runoptions READ getRunoptions WRITE setRunoptions NOTIFY runoptionsChanged STORED false)
    Q_PROPERTY(QVariantMap lock_ui_map READ getLock_ui_map WRITE setLock_ui_map NOTIFY lock_ui_mapChanged)

public:
    enum ELEMENT_TYPE {
        ELEMENT_TYPE_UNKNOWN = -1,
        ELEMENT_TYPE_ONOFF = 0,
        ELEMENT_TYPE_DIMMER = 1,
        ELEMENT_TYPE_RGB = 2,
        ELEMENT_TYPE_SHUTTER_UPDOWN = 3,
        ELEMENT_TYPE_SHUTTER_PERCENT = 4,
        ELEMENT_TYPE_THERMOSTAT = 5,
        ELEMENT_TYPE_MUSIC = 6,
        ELEMENT_TYPE_CUSTOM_SLIDER = 7,
        ELEMENT_TYPE_SCENARIO = 8,
        ELEMENT_TYPE_RAFFSTORE = 9,
        ELEMENT_TYPE_WEATHER = 10,
        ELEMENT_TYPE_ROOM = 11,
        ELEMENT_TYPE_PAGE = 12,
        ELEMENT_TYPE_COMMAND_BUTTON = 13,
        ELEMENT_TYPE_PRESENCE_SIMULATION = 14,
        ELEMENT_TYPE_ASTROCLOCK = 15,
        ELEMENT_TYPE_SCENARIO_KNX = 16,
        ELEMENT_TYPE_THERMO_LOGIC = 17,
        ELEMENT_TYPE_PLACEHOLDER = 18,
        ELEMENT_TYPE_SCHEDULERS = 19,
        ELEMENT_TYPE_TUNABLEWHITE = 20,
        ELEMENT_TYPE_3STATE = 21
    };
    Q_ENUM(ELEMENT_TYPE)

    /// The low bits of flags; the classes keep their own flags in the high bits.
    enum ElementFlag {
        ELEMENT_FLAG_ENABLED = 1,
        ELEMENT_FLAG_VISIBLE = 2,
        ELEMENT_FLAG_ENABLE_SCHEDULING = 4,
        ELEMENT_FLAG_ENABLE_SCENARIO = 8,
        ELEMENT_FLAG_ENABLE_TRACKING = 16,
        ELEMENT_FLAG_STATUSONLY = 32,
        ELEMENT_FLAG_ENABLE_LOCK_UI = 64,
        ELEMENT_FLAG_LOCK_UI_INV = 128
    };
    Q_ENUM(ElementFlag)

    enum NotifyFlag { NOTIFY_FLAG_ENABLE_POPUP = 1, NOTIFY_FLAG_ENABLE_ALARM = 2, NOTIFY_FLAG_ENABLE_PUSH = 4 };
    Q_ENUM(NotifyFlag)

    enum DesignEnum { ELEMENT_DESIGN_CLASSIC = 0, ELEMENT_DESIGN_SLIM = 1 };
    Q_ENUM(DesignEnum)

    Q_INVOKABLE explicit ps_object_element_t(QObject* parent = nullptr);
    ps_object_element_t(QString const& topic, QObject* parent);
    ps_object_element_t(QString const& id, QString const& name, QString const& description,
                        QVariantMap const& function_map, QVariantMap const& auth, QStringList const& rooms, int flags,
                        QVariantMap const& runoptions, QVariantMap const& lock_ui_map, QObject* parent);
    ps_object_element_t(ps_object_element_t const& other);

    /// The ELEMENT_TYPE of the concrete class; -1 here.
    virtual int getTypeIndex() const;

    QString getId() const { return id; }
    QString getName() const { return name; }
    QString getDescription() const { return description; }
    QVariantMap getFunction_map() const { return function_map; }
    QVariantMap getAuth() const { return auth; }
    QStringList getRooms() const { return rooms; }
    int getFlags() const { return flags; }
    QVariantMap getRunoptions() const { return runoptions; }
    QVariantMap getLock_ui_map() const { return lock_ui_map; }

    void setId(QString const& value);
    void setName(QString const& value);
    void setDescription(QString const& value);
    void setFunction_map(QVariantMap const& value);
    void setAuth(QVariantMap const& value);
    void setRooms(QStringList const& value);
    void setFlags(int value);
    void setRunoptions(QVariantMap const& value);
    void setLock_ui_map(QVariantMap const& value);

    /// True when all bits of _flag are set, so that a class flag at the sign bit reads too.
    bool getFlag(int _flag) const;

    /// A default instance of the class of _type; a plain element for a type without one.
    static ps_object_element_t* createElementOfType(int _type, QObject* _parent);
    static ps_object_element_t* createElementOfType(int _type);
    /// A copy of origin by the class of _type; a plain copy for a type without one; null for null.
    static ps_object_element_t* createCopyOfType(int _type, ps_object_element_t* origin);
    /// A copy of this element by its own class; a plain copy, logged, when its type can't be cloned.
    ps_object_element_t* clone() const;

    /// Whether an element of this type can be written and copied by its class.
    static bool isSerializableType(int _type);
    /// A copy of origin by its class, for every type that has one, even where
    /// clone() refuses; null for a type without a class.
    static ps_object_element_t* copyOfClass(ps_object_element_t const* origin);

    /// Same type and same content through the concrete class's compare(); ids don't count.
    /// Types that can't be compared by content compare by identity, logged.
    bool isEqual(ps_object_element_t* other, bool compare_runoptions) const;
    /// The properties of this base class; the topic never counts.
    bool compare(ps_object_element_t const* other, bool compare_runoptions, bool compare_id) const;

    void update_add_function(QString const& key, QVariant const& value, bool _notify);
    /// Removes every entry of that key.
    void update_rm_function(QString const& key, bool _notify);

    void send_update();
    void initRequestSignals(QObject* receiver, bool connect);

    /// Makes every element class creatable from its "@class" name.
    static void registerTypes();

Q_SIGNALS:
    void idChanged(QString);
    void nameChanged(QString);
    void descriptionChanged(QString);
    void function_mapChanged(QVariantMap);
    void authChanged(QVariantMap);
    void roomsChanged(QStringList);
    void flagsChanged(int);
    void runoptionsChanged(QVariantMap);
    void lock_ui_mapChanged(QVariantMap);

protected:
    /// The comparison of a family class: this base's properties without the id,
    /// then the class's own stored values. other must be of this object's class.
    bool compareFamily(ps_object_element_t const* other, bool compare_runoptions) const;

private:
    QString id;
    QString name;
    QString description;
    QVariantMap function_map;
    QVariantMap auth;
    QStringList rooms;
    int flags = 0;
    QVariantMap runoptions;
    QVariantMap lock_ui_map;
};

} // namespace objects

typedef QMap<QString, objects::ps_object_element_t*> ps_elements_map;

} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PS_OBJECT_ELEMENT_T_H
