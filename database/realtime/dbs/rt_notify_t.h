#ifndef DATABASE_REALTIME_DBS_RT_NOTIFY_T_H
#define DATABASE_REALTIME_DBS_RT_NOTIFY_T_H

#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"
#include "database/persistent/dbs/ps_object_map_t.h"
#include "database/realtime/objects/rt_object_notify_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace dbs {

/**
 * The notifications that exist now: one list for the user and one for the
 * system, each by a key that the hosts choose (decimal numbers by convention).
 * The realtime consistency check trims them to the lengths the persistent
 * notify section allows.
 */
class DATABASE_EXPORT rt_notify_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(database::realtime::rt_notify_map user_list READ getUserNotify WRITE setUserNotify NOTIFY
                   userlistChanged)
    Q_PROPERTY(database::realtime::rt_notify_map sys_list READ getSysNotify WRITE setSysNotify NOTIFY syslistChanged)

public:
    Q_INVOKABLE explicit rt_notify_t(QObject* parent = nullptr);
    /// Deep: every notification copied, no parent, no receiver.
    rt_notify_t(rt_notify_t const& other);

    rt_notify_map getUserNotify() const { return user.get(); }
    rt_notify_map getSysNotify() const { return sys.get(); }
    /// Take the map's pointers as they are.
    void setUserNotify(rt_notify_map const& map);
    void setSysNotify(rt_notify_map const& map);

    /// Never null; see ps_object_map_t::list.
    objects::rt_object_notify_t* userlist(QString const& key) { return user.list(key); }
    objects::rt_object_notify_t* syslist(QString const& key) { return sys.list(key); }

    /// Both lists taken from other; null empties them. With _notify the whole
    /// section is published.
    void update(rt_notify_t* other, bool _notify);
    /// Content into the notification of that key, a copy for a new key, removal for null.
    void update_user_notify(QString const& key, objects::rt_object_notify_t* object, bool _notify)
    {
        user.update(key, object, _notify);
    }
    void update_sys_notify(QString const& key, objects::rt_object_notify_t* object, bool _notify)
    {
        sys.update(key, object, _notify);
    }
    /// The whole list replaced by copies of map's notifications.
    void update_user_notify(rt_notify_map const& map, bool _notify);
    void update_sys_notify(rt_notify_map const& map, bool _notify);
    /// Empties the list without publishing.
    void clean_user_notify() { user.clear(); }
    void clean_sys_notify() { sys.clear(); }

    /// Drops at most one notification per call when the list is longer than
    /// size: the one of the first key in text order, if that key is a number.
    void resizeUserNotification(int size);
    void resizeSysNotification(int size);

    void requestSetUserNotification(QString const& key, objects::rt_object_notify_t* object)
    {
        user.requestSet(key, object);
    }
    void requestSetSysNotification(QString const& key, objects::rt_object_notify_t* object)
    {
        sys.requestSet(key, object);
    }
    /// Asks for an empty list.
    void requestResetUserNotification() { user.requestSetAll({}); }
    void requestResetSysNotification() { sys.requestSetAll({}); }
    void requestResetAllNotification();

    void send_update() { publishSelf(); }
    void send_update_user_notify() { user.sendUpdate(); }
    void send_update_sys_notify() { sys.sendUpdate(); }
    /// One notification, or null when the key isn't there.
    void send_update_user_notify(QString const& key) { user.sendUpdateObject(key); }
    void send_update_sys_notify(QString const& key) { sys.sendUpdateObject(key); }

    void initRequestSignals(QObject* receiver, bool connect);

    /// Same notification objects in both lists.
    bool operator==(rt_notify_t const& other) const;

Q_SIGNALS:
    void userlistChanged(database::realtime::rt_notify_map);
    void syslistChanged(database::realtime::rt_notify_map);

private:
    using map_t = persistent::dbs::ps_object_map_t<objects::rt_object_notify_t>;

    void resize(map_t& list, int size, QString const& source, QString const& kind, QString const& resizeText);

    map_t user{this, QStringLiteral("user_list")};
    map_t sys{this, QStringLiteral("sys_list")};
};

} // namespace dbs
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_RT_NOTIFY_T_H
