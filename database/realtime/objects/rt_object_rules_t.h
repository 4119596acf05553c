#ifndef DATABASE_REALTIME_OBJECTS_RT_OBJECT_RULES_T_H
#define DATABASE_REALTIME_OBJECTS_RT_OBJECT_RULES_T_H

#include <QMap>
#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace objects {

/// The live state of one rule: the last value it gave.
class DATABASE_EXPORT rt_object_rules_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QString value MEMBER value READ getValue NOTIFY valueChanged)

public:
    Q_INVOKABLE explicit rt_object_rules_t(QObject* parent = nullptr);
    rt_object_rules_t(QString const& topic, QObject* parent);
    rt_object_rules_t(rt_object_rules_t const& other);

    QString getValue() const { return value; }

    /// Takes the value of other; null is refused with "Not permitted nullptr".
    void update(rt_object_rules_t const* other, bool _notify) { updateValues(other, _notify); }
    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }

    /// Same value; the topic doesn't count.
    bool operator==(rt_object_rules_t const& other) const { return value == other.value; }

Q_SIGNALS:
    void valueChanged(QString);

private:
    QString value;
};

} // namespace objects

typedef QMap<QString, objects::rt_object_rules_t*> rt_rules_map;

} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_OBJECTS_RT_OBJECT_RULES_T_H
