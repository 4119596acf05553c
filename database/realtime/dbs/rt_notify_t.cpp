#include "database/realtime/dbs/rt_notify_t.h"

#include "database/base/literals.h"
#include "database/realtime/rt_request.h"
#include "platform/logs/classlogs.h"

namespace database {
namespace realtime {
namespace dbs {

rt_notify_t::rt_notify_t(QObject* parent)
    : topicbase_t(literals::key_notify, parent)
{
    realtimeMap(user);
    realtimeMap(sys);
}

rt_notify_t::rt_notify_t(rt_notify_t const& other)
    : topicbase_t(other)
{
    realtimeMap(user);
    realtimeMap(sys);
    user.copyFrom(other.user);
    sys.copyFrom(other.sys);
}

void rt_notify_t::setUserNotify(rt_notify_map const& map)
{
    user.adopt(map);
    Q_EMIT userlistChanged(user.get());
}

void rt_notify_t::setSysNotify(rt_notify_map const& map)
{
    sys.adopt(map);
    Q_EMIT syslistChanged(sys.get());
}

void rt_notify_t::update(rt_notify_t* other, bool _notify)
{
    if (other) {
        update_user_notify(other->getUserNotify(), false);
        update_sys_notify(other->getSysNotify(), false);
    } else {
        clean_user_notify();
        clean_sys_notify();
    }
    if (_notify)
        send_update();
}

void rt_notify_t::update_user_notify(rt_notify_map const& map, bool _notify)
{
    user.updateAll(map, _notify, [this](QObject* receiver, bool connect) { initRequestSignals(receiver, connect); });
}

void rt_notify_t::update_sys_notify(rt_notify_map const& map, bool _notify)
{
    sys.updateAll(map, _notify, [this](QObject* receiver, bool connect) { initRequestSignals(receiver, connect); });
}

void rt_notify_t::resizeUserNotification(int size)
{
    resize(user, size, QStringLiteral("resizeUserNotification"), QStringLiteral("user"),
           QStringLiteral("Resize user notification..."));
}

void rt_notify_t::resizeSysNotification(int size)
{
    resize(sys, size, QStringLiteral("resizeSysNotification"), QStringLiteral("system"),
           QStringLiteral("Resize system notification... "));
}

// One entry per call, and the first key in text order ("10" before "9"): the
// consistency check runs often, and trimming slowly is what the hosts expect.
void rt_notify_t::resize(map_t& list, int size, QString const& source, QString const& kind,
                         QString const& resizeText)
{
    if (list.get().size() <= size || list.get().isEmpty())
        return;
    CLASSLOGS_LOG(resizeText, ::utility::logs::warning, source);
    bool isNumber = false;
    qlonglong const number = list.get().firstKey().toLongLong(&isNumber, 10);
    if (!isNumber)
        return;
    // Back to text, so a key such as "007" names "7" and nothing is removed.
    QString const key = QString::number(number);
    list.remove(key);
    CLASSLOGS_LOG(QStringLiteral("Remove ") + kind + QStringLiteral(" notification ") + key,
                  ::utility::logs::warning, source);
    list.sendUpdateObject(key);
}

void rt_notify_t::requestResetAllNotification()
{
    requestResetUserNotification();
    requestResetSysNotification();
}

void rt_notify_t::initRequestSignals(QObject* receiver, bool connect)
{
    if (!receiver)
        return;
    user.initRequestSignals(receiver, connect);
    // The second list shares the section's wiring, done just above.
    sys.setReceiver(receiver);
    sys.wireObjects(connect);
}

bool rt_notify_t::operator==(rt_notify_t const& other) const
{
    return user.get() == other.user.get() && sys.get() == other.sys.get();
}

} // namespace dbs
} // namespace realtime
} // namespace database
