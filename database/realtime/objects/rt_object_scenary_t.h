#ifndef DATABASE_REALTIME_OBJECTS_RT_OBJECT_SCENARY_T_H
#define DATABASE_REALTIME_OBJECTS_RT_OBJECT_SCENARY_T_H

#include <QMap>
#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace objects {

/// The live state of one scenario: whether it is running.
class DATABASE_EXPORT rt_object_scenary_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(bool execution MEMBER execution READ getExecution NOTIFY executionChanged)

public:
    Q_INVOKABLE explicit rt_object_scenary_t(QObject* parent = nullptr);
    rt_object_scenary_t(QString const& topic, QObject* parent);
    rt_object_scenary_t(rt_object_scenary_t const& other);

    bool getExecution() const { return execution; }

    /// Takes the state of other; null means not running.
    void update(rt_object_scenary_t const* other, bool _notify);
    void update_execution(bool value, bool _notify);
    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }

    /// Same state; the topic doesn't count.
    bool operator==(rt_object_scenary_t const& other) const { return execution == other.execution; }

Q_SIGNALS:
    void executionChanged(bool);

private:
    bool execution = false;
};

} // namespace objects

typedef QMap<QString, objects::rt_object_scenary_t*> rt_scenary_map;

} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_OBJECTS_RT_OBJECT_SCENARY_T_H
