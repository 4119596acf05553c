#ifndef DATABASE_PERSISTENT_DBS_PS_NOTIFY_T_H
#define DATABASE_PERSISTENT_DBS_PS_NOTIFY_T_H

#include <QObject>
#include <QString>
#include <QStringList>

#include "database/base/topicbase_t.h"
#include "database/persistent/dbs/ps_object_map_t.h"
#include "database/persistent/objects/ps_email_notify_t.h"
#include "database/persistent/objects/ps_object_notify_t.h"
#include "database/persistent/objects/ps_smtp_notify_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace dbs {

/**
 * What the installation tells people: the notification templates, the
 * address book their e-mail destinations name, the one outgoing mail server,
 * and the limits of the notifications kept live.
 */
class DATABASE_EXPORT ps_notify_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(database::persistent::ps_notify_map objects_list READ getObjects WRITE setObjects NOTIFY
                   objects_listChanged)
    Q_PROPERTY(database::persistent::ps_notify_email_map email_list READ getEmails WRITE setEmails NOTIFY
                   email_listChanged)
    Q_PROPERTY(database::persistent::objects::ps_smtp_notify_t* smtp READ getSmtp WRITE setSmtp NOTIFY smtpChanged)
    Q_PROPERTY(bool enabled READ getEnabled WRITE setEnabled NOTIFY enabledChanged)
    Q_PROPERTY(int soundLoop READ getSoundLoop WRITE setSoundLoop NOTIFY soundLoopChanged)
    Q_PROPERTY(int maxUserNotification READ getMaxUserNotification WRITE setMaxUserNotification NOTIFY
                   maxUserNotificationChanged)
    Q_PROPERTY(int maxSysNotification READ getMaxSysNotification WRITE setMaxSysNotification NOTIFY
                   maxSysNotificationChanged)

public:
    /// Longest sound; anything outside 0 to this becomes shortSoundLoop.
    static constexpr int maxSoundLoop = 3;
    static constexpr int shortSoundLoop = 1;

    Q_INVOKABLE explicit ps_notify_t(QObject* parent = nullptr);
    /// Takes the maps' pointers and smtp as they are; a null smtp stands for the defaults.
    ps_notify_t(bool enabled, int soundLoop, ps_notify_map const& objects, ps_notify_email_map const& emails,
                objects::ps_smtp_notify_t* smtp, QObject* parent);
    /// Deep: every object copied, no parent, no receiver.
    ps_notify_t(ps_notify_t const& other);

    ps_notify_map getObjects() const { return notifications.get(); }
    ps_notify_email_map getEmails() const { return emails.get(); }
    objects::ps_smtp_notify_t* getSmtp() const { return smtp; }
    bool getEnabled() const { return enabled; }
    int getSoundLoop() const { return soundLoop; }
    int getMaxUserNotification() const { return maxUserNotification; }
    int getMaxSysNotification() const { return maxSysNotification; }

    void setObjects(ps_notify_map const& map);
    void setEmails(ps_notify_email_map const& map);
    /// The section keeps its own server object and takes value's content (the
    /// defaults for null); a value made as a child of the section is deleted.
    void setSmtp(objects::ps_smtp_notify_t* value);
    void setEnabled(bool value);
    /// Stores as it comes; the corrections are those of the request and update.
    void setSoundLoop(int value);
    void setMaxUserNotification(int value);
    void setMaxSysNotification(int value);

    /// Never null; see ps_object_map_t::list.
    objects::ps_object_notify_t* list_notify(QString const& id) { return notifications.list(id); }
    objects::ps_email_notify_t* list_email(QString const& id) { return emails.list(id); }

    void requestSetEnabled(bool value);
    /// A value outside 0 to maxSoundLoop is logged and asked as shortSoundLoop.
    void requestSetSoundLoop(int value);
    void requestSetNotification(QString const& id, objects::ps_object_notify_t* object)
    {
        notifications.requestSet(id, object);
    }
    void requestSetNotifications(ps_notify_map const& map) { notifications.requestSetAll(map); }
    void requestSetEmailNotification(QString const& id, objects::ps_email_notify_t* object)
    {
        emails.requestSet(id, object);
    }
    void requestSetSMTP(objects::ps_smtp_notify_t* object);

    void update_enabled(bool value, bool _notify);
    /// Corrects as requestSetSoundLoop does, then stores.
    void update_soundLoop(int value, bool _notify);
    void update_notify(QString const& id, objects::ps_object_notify_t* object, bool _notify)
    {
        notifications.update(id, object, _notify);
    }
    void update_notify(ps_notify_map const& map, bool _notify);
    void update_email(QString const& id, objects::ps_email_notify_t* object, bool _notify)
    {
        emails.update(id, object, _notify);
    }
    void update_email(ps_notify_email_map const& map, bool _notify);
    /// The server object is never replaced: it takes object's content, or the defaults for null.
    void update_smtp(objects::ps_smtp_notify_t* object, bool _notify);

    /// Drops from the notifications' e-mail destinations the ids that are no
    /// longer in the address book, through update_email_dest. Only the
    /// notifications that name id are looked at; an empty id looks at all.
    /// Gives the ids of the notifications that changed.
    QStringList prune_email_dest(QString const& id, bool _notify);

    void send_update_notify(QString const& id) { notifications.sendUpdateObject(id); }
    void send_update_email(QString const& id) { emails.sendUpdateObject(id); }
    void send_update_smtp() { smtp->send_update(); }

    /// The section, then every notification, every address, and the server.
    void initRequestSignals(QObject* receiver, bool connect);

    /// Same object pointers and the same values: a deep comparison goes through the objects' operator==.
    bool operator==(ps_notify_t const& other) const;

Q_SIGNALS:
    void objects_listChanged(database::persistent::ps_notify_map);
    void email_listChanged(database::persistent::ps_notify_email_map);
    void smtpChanged(database::persistent::objects::ps_smtp_notify_t*);
    void enabledChanged(bool);
    void soundLoopChanged(int);
    void maxUserNotificationChanged(int);
    void maxSysNotificationChanged(int);

private:
    QString smtpTopic() const;
    void takeSmtp(objects::ps_smtp_notify_t const* value);

    ps_object_map_t<objects::ps_object_notify_t> notifications{this, QStringLiteral("objects_list")};
    ps_object_map_t<objects::ps_email_notify_t> emails{this, QStringLiteral("email_list")};
    objects::ps_smtp_notify_t* smtp = nullptr;
    bool enabled = false;
    int soundLoop = shortSoundLoop;
    int maxUserNotification = 25;
    int maxSysNotification = 25;
};

} // namespace dbs
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_PS_NOTIFY_T_H
