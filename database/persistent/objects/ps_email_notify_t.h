#ifndef DATABASE_PERSISTENT_OBJECTS_PS_EMAIL_NOTIFY_T_H
#define DATABASE_PERSISTENT_OBJECTS_PS_EMAIL_NOTIFY_T_H

#include <QMap>
#include <QObject>
#include <QRegExp>
#include <QString>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/**
 * One entry of the e-mail address book that notifications name by id. The
 * address is kept as it came: validity is a question the request handler and
 * the clients ask through isValidAddress(), it refuses nothing here.
 */
class DATABASE_EXPORT ps_email_notify_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QString description READ getDescription WRITE setDescription NOTIFY descriptionChanged)
    Q_PROPERTY(QString address READ getAddress WRITE setAddress NOTIFY addressChanged)
    Q_PROPERTY(bool def READ getDef WRITE setDef NOTIFY defChanged)
    Q_PROPERTY(bool system READ getSystem WRITE setSystem NOTIFY systemChanged)

public:
    Q_INVOKABLE explicit ps_email_notify_t(QObject* parent = nullptr);
    ps_email_notify_t(QString const& topic, QObject* parent);
    ps_email_notify_t(QString const& description, QString const& address, bool def, bool system, QObject* parent);
    ps_email_notify_t(ps_email_notify_t const& other);
    /// Takes the four properties; topic and parent stay.
    ps_email_notify_t& operator=(ps_email_notify_t const& other);

    QString getDescription() const { return description; }
    QString getAddress() const { return address; }
    bool getDef() const { return def; }
    bool getSystem() const { return system; }

    void setDescription(QString const& value);
    void setAddress(QString const& value);
    void setDef(bool value);
    void setSystem(bool value);

    /// True when the whole address has the form name@domain.tld, with a last
    /// part of two to four characters.
    bool isValidAddress() const;

    /// Takes the four properties of other, not the topic.
    void update(ps_email_notify_t const* other, bool _notify) { updateValues(other, _notify); }
    /// Same values; the topic doesn't count.
    bool operator==(ps_email_notify_t const& other) const { return sameValues(&other); }

    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }

Q_SIGNALS:
    void descriptionChanged(QString);
    void addressChanged(QString);
    void defChanged(bool);
    void systemChanged(bool);

private:
    QString description;
    QString address;
    bool def = false;
    bool system = false;
    QRegExp validity;
};

} // namespace objects

typedef QMap<QString, objects::ps_email_notify_t*> ps_notify_email_map;

} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_PS_EMAIL_NOTIFY_T_H
