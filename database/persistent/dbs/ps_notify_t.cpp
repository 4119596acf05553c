#include "database/persistent/dbs/ps_notify_t.h"

#include "database/base/literals.h"
#include "database/persistent/ps_request.h"
#include "platform/logs/classlogs.h"

namespace database {
namespace persistent {
namespace dbs {

using objects::ps_email_notify_t;
using objects::ps_object_notify_t;
using objects::ps_smtp_notify_t;

namespace {

QString const key_smtp = QStringLiteral("smtp");
QString const key_enabled = QStringLiteral("enabled");
QString const key_soundLoop = QStringLiteral("soundLoop");

// A bad length is replaced rather than refused: a short sound is a harmless
// answer to a wrong one.
int soundLoopInRange(int value, QString const& source)
{
    // As unsigned, so that a negative value is out of range too.
    if (uint(value) > uint(ps_notify_t::maxSoundLoop)) {
        CLASSLOGS_LOG(QStringLiteral("Sound len out of range set short"), ::utility::logs::error, source);
        return ps_notify_t::shortSoundLoop;
    }
    return value;
}

} // namespace

ps_notify_t::ps_notify_t(QObject* parent)
    : topicbase_t(literals::key_notify, parent)
    , smtp(new ps_smtp_notify_t(smtpTopic(), this))
{
}

ps_notify_t::ps_notify_t(bool enabled, int soundLoop, ps_notify_map const& objects, ps_notify_email_map const& emails,
                         ps_smtp_notify_t* smtp, QObject* parent)
    : topicbase_t(literals::key_notify, parent)
    , smtp(smtp ? smtp : new ps_smtp_notify_t(this))
    , enabled(enabled)
    , soundLoop(soundLoop)
{
    this->smtp->setParent(this);
    this->smtp->setTopic(smtpTopic());
    notifications.adopt(objects);
    this->emails.adopt(emails);
}

ps_notify_t::ps_notify_t(ps_notify_t const& other)
    : topicbase_t(other)
    , smtp(new ps_smtp_notify_t(*other.smtp))
    , enabled(other.enabled)
    , soundLoop(other.soundLoop)
    , maxUserNotification(other.maxUserNotification)
    , maxSysNotification(other.maxSysNotification)
{
    smtp->setParent(this);
    notifications.copyFrom(other.notifications);
    emails.copyFrom(other.emails);
}

QString ps_notify_t::smtpTopic() const
{
    return topic + QLatin1Char('/') + key_smtp;
}

void ps_notify_t::setObjects(ps_notify_map const& map)
{
    notifications.adopt(map);
    Q_EMIT objects_listChanged(notifications.get());
}

void ps_notify_t::setEmails(ps_notify_email_map const& map)
{
    emails.adopt(map);
    Q_EMIT email_listChanged(emails.get());
}

void ps_notify_t::takeSmtp(ps_smtp_notify_t const* value)
{
    ps_smtp_notify_t const defaults;
    smtp->update(value ? value : &defaults, false);
}

void ps_notify_t::setSmtp(ps_smtp_notify_t* value)
{
    if (value == smtp)
        return;
    takeSmtp(value);
    // The serializer builds the value as our child only to hand it over.
    if (value && value->parent() == this)
        delete value;
    Q_EMIT smtpChanged(smtp);
}

void ps_notify_t::setEnabled(bool value)
{
    assign(enabled, value, [this] { Q_EMIT enabledChanged(enabled); });
}

void ps_notify_t::setSoundLoop(int value)
{
    assign(soundLoop, value, [this] { Q_EMIT soundLoopChanged(soundLoop); });
}

void ps_notify_t::setMaxUserNotification(int value)
{
    assign(maxUserNotification, value, [this] { Q_EMIT maxUserNotificationChanged(maxUserNotification); });
}

void ps_notify_t::setMaxSysNotification(int value)
{
    assign(maxSysNotification, value, [this] { Q_EMIT maxSysNotificationChanged(maxSysNotification); });
}

void ps_notify_t::requestSetEnabled(bool value)
{
    requestField(this, key_enabled, value);
}

void ps_notify_t::requestSetSoundLoop(int value)
{
    requestField(this, key_soundLoop, soundLoopInRange(value, QStringLiteral("requestSetSoundLoop")));
}

void ps_notify_t::requestSetSMTP(ps_smtp_notify_t* object)
{
    QJsonValue payload = QJsonObject();
    if (object) {
        object->setTopic(smtpTopic());
        payload = object->toJson();
    }
    requestAt(this, smtpTopic(), payload);
}

void ps_notify_t::update_enabled(bool value, bool _notify)
{
    setEnabled(value);
    if (_notify)
        publishField(key_enabled, enabled);
}

void ps_notify_t::update_soundLoop(int value, bool _notify)
{
    setSoundLoop(soundLoopInRange(value, QStringLiteral("update_soundLoop")));
    if (_notify)
        publishField(key_soundLoop, soundLoop);
}

void ps_notify_t::update_notify(ps_notify_map const& map, bool _notify)
{
    notifications.updateAll(map, _notify,
                            [this](QObject* receiver, bool connect) { initRequestSignals(receiver, connect); });
}

void ps_notify_t::update_email(ps_notify_email_map const& map, bool _notify)
{
    emails.updateAll(map, _notify, [this](QObject* receiver, bool connect) { initRequestSignals(receiver, connect); });
}

void ps_notify_t::update_smtp(ps_smtp_notify_t* object, bool _notify)
{
    if (object)
        object->setTopic(smtp->getTopic());
    takeSmtp(object);
    if (_notify)
        send_update_smtp();
}

QStringList ps_notify_t::prune_email_dest(QString const& id, bool _notify)
{
    ps_notify_email_map const& book = emails.get();
    QStringList changed;
    for (auto it = notifications.get().begin(); it != notifications.get().end(); ++it) {
        ps_object_notify_t* notification = it.value();
        if (!notification)
            continue;
        QStringList const named = notification->getEmailDst();
        if (!id.isEmpty() && !named.contains(id))
            continue;
        QStringList left;
        for (QString const& address : named) {
            if (book.contains(address))
                left.append(address);
        }
        if (left.size() == named.size())
            continue;
        notification->update_email_dest(left, _notify);
        changed.append(it.key());
    }
    return changed;
}

void ps_notify_t::initRequestSignals(QObject* receiver, bool connect)
{
    if (!receiver)
        return;
    notifications.initRequestSignals(receiver, connect);
    // The second map shares the section's wiring, done just above.
    emails.setReceiver(receiver);
    emails.wireObjects(connect);
    wireChild(smtp, smtpTopic(), receiver, connect);
}

bool ps_notify_t::operator==(ps_notify_t const& other) const
{
    return notifications.get() == other.notifications.get() && emails.get() == other.emails.get()
        && smtp == other.smtp && enabled == other.enabled && soundLoop == other.soundLoop
        && maxUserNotification == other.maxUserNotification && maxSysNotification == other.maxSysNotification;
}

} // namespace dbs
} // namespace persistent
} // namespace database
