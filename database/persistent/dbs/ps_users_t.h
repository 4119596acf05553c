#ifndef DATABASE_PERSISTENT_DBS_PS_USERS_T_H
#define DATABASE_PERSISTENT_DBS_PS_USERS_T_H

#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"
#include "database/persistent/dbs/ps_object_map_t.h"
#include "database/persistent/objects/ps_object_user_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace dbs {

/// The section of the users by id. It is always in force, so it has no enabled flag.
class DATABASE_EXPORT ps_users_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(ps_users_map objects_list READ getObjects WRITE setObjects NOTIFY objects_listChanged)

public:
    Q_INVOKABLE explicit ps_users_t(QObject* parent = nullptr);
    /// Takes the map's pointers as they are.
    ps_users_t(ps_users_map const& objects, QObject* parent);
    /// Deep: every user copied, no parent, no receiver.
    ps_users_t(ps_users_t const& other);

    ps_users_map getObjects() const { return objects.get(); }
    void setObjects(ps_users_map const& map);

    /// Never null; see ps_object_map_t::list.
    objects::ps_object_user_t* list(QString const& id) { return objects.list(id); }

    void requestSetUser(QString const& id, objects::ps_object_user_t* object) { objects.requestSet(id, object); }
    void requestSetUsers(ps_users_map const& map) { objects.requestSetAll(map); }

    void update_user(QString const& id, objects::ps_object_user_t* object, bool _notify)
    {
        objects.update(id, object, _notify);
    }
    void update_user(ps_users_map const& map, bool _notify);

    void send_update() { objects.sendUpdate(); }
    void send_update_user(QString const& id) { objects.sendUpdateObject(id); }

    void initRequestSignals(QObject* receiver, bool connect) { objects.initRequestSignals(receiver, connect); }

    /// Same user pointers: a deep comparison goes through the users' operator==.
    bool operator==(ps_users_t const& other) const;

Q_SIGNALS:
    void objects_listChanged(ps_users_map);

private:
    ps_object_map_t<objects::ps_object_user_t> objects{this, QStringLiteral("objects_list")};
};

} // namespace dbs
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_PS_USERS_T_H
