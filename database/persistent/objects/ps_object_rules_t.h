#ifndef DATABASE_PERSISTENT_OBJECTS_PS_OBJECT_RULES_T_H
#define DATABASE_PERSISTENT_OBJECTS_PS_OBJECT_RULES_T_H

#include <QMap>
#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"
#include "database/definition/type_rules_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/**
 * A rule: a condition and the actions for when it holds and when it doesn't,
 * as texts of the rule engine's own language. The database keeps them opaque
 * and only looks into them for references to other objects.
 */
class DATABASE_EXPORT ps_object_rules_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(bool enabled READ getEnabled WRITE setEnabled NOTIFY enabledChanged)
    Q_PROPERTY(QString type READ getType WRITE setType NOTIFY typeChanged)
    Q_PROPERTY(QString name READ getName WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(QString when_ READ getWhen WRITE setWhen NOTIFY when_Changed)
    Q_PROPERTY(QString then_ READ getThen WRITE setThen NOTIFY then_Changed)
    Q_PROPERTY(QString else_ READ getElse WRITE setElse NOTIFY else_Changed)
    Q_PROPERTY(int permission READ getPermission WRITE setPermission NOTIFY permissionChanged)

public:
    Q_INVOKABLE explicit ps_object_rules_t(QObject* parent = nullptr);
    ps_object_rules_t(QString const& topic, QObject* parent);
    ps_object_rules_t(bool enabled, ::database::definition::type_rules_t const& type, QString const& name,
                      QString const& when, QString const& then, QString const& _else, int permission,
                      QObject* parent);
    ps_object_rules_t(ps_object_rules_t const& other);

    bool getEnabled() const { return enabled; }
    QString getType() const { return type; }
    QString getName() const { return name; }
    QString getWhen() const { return when_; }
    QString getThen() const { return then_; }
    QString getElse() const { return else_; }
    int getPermission() const { return permission; }

    void setEnabled(bool value);
    void setType(::database::definition::type_rules_t const& value);
    void setType(QString const& value);
    void setName(QString const& value);
    void setWhen(QString const& value);
    void setThen(QString const& value);
    void setElse(QString const& value);
    void setPermission(int value);

    /// Takes all seven properties, not the topic. A rule is published by its
    /// section, so by default it stays silent.
    void update(ps_object_rules_t const* other, bool _notify = false) { updateValues(other, _notify); }
    /// All seven properties equal; the topic doesn't count.
    bool operator==(ps_object_rules_t const& other) const { return sameValues(&other); }

    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }

Q_SIGNALS:
    void enabledChanged(bool);
    void typeChanged(QString);
    void nameChanged(QString);
    void when_Changed(QString);
    void then_Changed(QString);
    void else_Changed(QString);
    void permissionChanged(int);

private:
    bool enabled = true;
    QString type;
    QString name;
    QString when_;
    QString then_;
    QString else_;
    int permission = 0;
};

} // namespace objects

typedef QMap<QString, objects::ps_object_rules_t*> ps_rules_map;

} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_PS_OBJECT_RULES_T_H
