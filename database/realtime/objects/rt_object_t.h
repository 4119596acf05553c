#ifndef DATABASE_REALTIME_OBJECTS_RT_OBJECT_T_H
#define DATABASE_REALTIME_OBJECTS_RT_OBJECT_T_H

#include <QMap>
#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"
#include "database/definition/type_object_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace objects {

/**
 * One step of a schedule or scenario in its live form: which object it acts
 * on, with what value, in which order and after what delay.
 */
class DATABASE_EXPORT rt_object_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(bool enabled READ getEnabled WRITE setEnabled NOTIFY enabledChanged)
    Q_PROPERTY(int order READ getOrder WRITE setOrder NOTIFY orderChanged)
    Q_PROPERTY(int delay READ getDelay WRITE setDelay NOTIFY delayChanged)
    Q_PROPERTY(QString type READ getType WRITE setType NOTIFY typeChanged)
    Q_PROPERTY(QString id READ getId WRITE setId NOTIFY idChanged)
    Q_PROPERTY(QString value READ getValue WRITE setValue NOTIFY valueChanged)

public:
    Q_INVOKABLE explicit rt_object_t(QObject* parent = nullptr);
    rt_object_t(QString const& topic, QObject* parent);
    rt_object_t(bool enabled, int order, int delay, ::database::definition::type_object_t const& type,
                QString const& id, QString const& value, QObject* parent);
    rt_object_t(rt_object_t const& other) = default;

    bool getEnabled() const { return enabled; }
    int getOrder() const { return order; }
    int getDelay() const { return delay; }
    QString getType() const { return type; }
    QString getId() const { return id; }
    QString getValue() const { return value; }

    void setEnabled(bool _value);
    void setOrder(int _value);
    void setDelay(int _value);
    void setType(QString const& _value);
    void setId(QString const& _value);
    void setValue(QString const& _value);

    /// All six fields; the topic doesn't count.
    bool operator==(rt_object_t const& other) const { return sameValues(&other); }

Q_SIGNALS:
    void enabledChanged(bool);
    void orderChanged(int);
    void delayChanged(int);
    void typeChanged(QString);
    void idChanged(QString);
    void valueChanged(QString);

private:
    bool enabled = false;
    int order = 0;
    int delay = 0;
    QString type;
    QString id;
    QString value;
};

} // namespace objects

typedef QMap<QString, objects::rt_object_t*> rt_objects_map;

} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_OBJECTS_RT_OBJECT_T_H
