#ifndef DATABASE_PERSISTENT_OBJECTS_PS_OBJECT_T_H
#define DATABASE_PERSISTENT_OBJECTS_PS_OBJECT_T_H

#include <QMap>
#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"
#include "database/definition/type_object_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/**
 * One step that acts on another object (an item, a scenario, a rule, ...):
 * the actions of schedules and scenarios are made of these.
 */
class DATABASE_EXPORT ps_object_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(bool enabled READ getEnabled WRITE setEnabled NOTIFY enabledChanged)
    Q_PROPERTY(int order READ getOrder WRITE setOrder NOTIFY orderChanged)
    Q_PROPERTY(int delay READ getDelay WRITE setDelay NOTIFY delayChanged)
    Q_PROPERTY(QString type READ getType WRITE setType NOTIFY typeChanged)
    Q_PROPERTY(QString id READ getId WRITE setId NOTIFY idChanged)
    Q_PROPERTY(QString value READ getValue WRITE setValue NOTIFY valueChanged)
    Q_PROPERTY(QString args READ getArgs WRITE setArgs NOTIFY argsChanged)

public:
    Q_INVOKABLE explicit ps_object_t(QObject* parent = nullptr);
    ps_object_t(QString const& topic, QObject* parent);
    ps_object_t(bool enabled, int order, int delay, ::database::definition::type_object_t const& type, QString const& id,
                QString const& value, QString const& args, QObject* parent);
    ps_object_t(ps_object_t const& other);

    bool getEnabled() const { return enabled; }
    int getOrder() const { return order; }
    int getDelay() const { return delay; }
    QString getType() const { return type; }
    QString getId() const { return id; }
    QString getValue() const { return value; }
    QString getArgs() const { return args; }

    void setEnabled(bool value);
    void setOrder(int value);
    void setDelay(int value);
    void setType(::database::definition::type_object_t const& value);
    void setType(QString const& value);
    void setId(QString const& value);
    void setValue(QString const& value);
    void setArgs(QString const& value);

    /// Takes all seven properties of other, not the topic.
    void update(ps_object_t const* other, bool _notify);
    bool compare(ps_object_t const* other) const;
    bool operator==(ps_object_t const& other) const;

    void send_update();
    void initRequestSignals(QObject* receiver, bool connect);

Q_SIGNALS:
    void enabledChanged(bool);
    void orderChanged(int);
    void delayChanged(int);
    void typeChanged(QString);
    void idChanged(QString);
    void valueChanged(QString);
    void argsChanged(QString);

private:
    bool enabled = false;
    int order = 0;
    int delay = 0;
    QString type;
    QString id;
    QString value;
    QString args;
};

} // namespace objects

typedef QMap<QString, objects::ps_object_t*> ps_objects_map;

} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_PS_OBJECT_T_H
