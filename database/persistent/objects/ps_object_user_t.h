#ifndef DATABASE_PERSISTENT_OBJECTS_PS_OBJECT_USER_T_H
#define DATABASE_PERSISTENT_OBJECTS_PS_OBJECT_USER_T_H

#include <QMap>
#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/**
 * A user of the installation's panels: a name, what the user may do, and the
 * hash of the PIN that unlocks it. The PIN itself is never kept.
 */
class DATABASE_EXPORT ps_object_user_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QString name READ getName WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(int perm READ getPerm WRITE setPerm NOTIFY permChanged)
    Q_PROPERTY(QString pin READ getPin WRITE setPin NOTIFY pinChanged)

public:
    enum PermissionFlag {
        USER_PERMISSION_NONE = 0,
        USER_PERMISSION_VIEW = 1,
        USER_PERMISSION_OPERATION = 2,
        USER_PERMISSION_SCHEDULES = 4,
        USER_PERMISSION_SCENARY = 8,
        USER_PERMISSION_PRESENCE_SIMULATION = 16,
        USER_PERMISSION_USER_PREF = 32,
        USER_PERMISSION_ADMIN_PREF = 32768
    };
    Q_ENUM(PermissionFlag)

    Q_INVOKABLE explicit ps_object_user_t(QObject* parent = nullptr);
    ps_object_user_t(QString const& topic, QObject* parent);
    /// pin is already hashed.
    ps_object_user_t(QString const& name, int perm, QString const& pin, QObject* parent);
    ps_object_user_t(ps_object_user_t const& other);

    QString getName() const { return name; }
    int getPerm() const { return perm; }
    QString getPin() const { return pin; }

    void setName(QString const& value);
    void setPerm(int value);
    void setPin(QString const& value);

    /// True when any of the given bits is granted.
    bool getPermissionFlag(int _permissionFlag) const;

    /// pin is already hashed.
    void update_pin(QString const& value, bool _notify);
    /// Takes name, perm and pin, but not the topic.
    void update(ps_object_user_t const* other, bool _notify);
    /// Same name, perm and pin; the topic doesn't count.
    bool operator==(ps_object_user_t const& other) const;

    void send_update();
    void initRequestSignals(QObject* receiver, bool connect);

Q_SIGNALS:
    void nameChanged(QString);
    void permChanged(int);
    void pinChanged(QString);

private:
    QString name;
    int perm = 0;
    QString pin;
};

} // namespace objects

typedef QMap<QString, objects::ps_object_user_t*> ps_users_map;

} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_PS_OBJECT_USER_T_H
