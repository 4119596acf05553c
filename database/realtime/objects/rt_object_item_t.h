#ifndef DATABASE_REALTIME_OBJECTS_RT_OBJECT_ITEM_T_H
#define DATABASE_REALTIME_OBJECTS_RT_OBJECT_ITEM_T_H

#include <QMap>
#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace objects {

/**
 * What is now on the bus for the item of the same key in the persistent
 * database: the last feedback and the last value, as the driver wrote them.
 * Drivers fill it through status packets; elements and rules read it.
 */
class DATABASE_EXPORT rt_object_item_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QString feedback READ getFeedback WRITE setFeedback NOTIFY feedbackChanged)
    Q_PROPERTY(QString value READ getValue WRITE setValue NOTIFY valueChanged)

public:
    Q_INVOKABLE explicit rt_object_item_t(QObject* parent = nullptr);
    rt_object_item_t(QString const& topic, QObject* parent);
    rt_object_item_t(QString const& feedback, QString const& value, QObject* parent);
    /// Takes the topic and both values; no parent.
    rt_object_item_t(rt_object_item_t const& other) = default;

    QString getFeedback() const { return feedback; }
    QString getValue() const { return value; }
    void setFeedback(QString const& _value);
    void setValue(QString const& _value);

    /// Takes feedback and value; a null other is refused with onObjectError.
    void update(rt_object_item_t const* other, bool _notify) { updateValues(other, _notify); }
    /// With _notify publishes even when the value was already held.
    void update_value(QString const& _value, bool _notify);
    void update_feedback(QString const& _value, bool _notify);

    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }

    /// Same feedback and value; the topic doesn't count.
    bool operator==(rt_object_item_t const& other) const { return sameValues(&other); }

Q_SIGNALS:
    void feedbackChanged(QString);
    void valueChanged(QString);

private:
    QString feedback;
    QString value;
};

} // namespace objects

typedef QMap<QString, objects::rt_object_item_t*> rt_items_map;

} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_OBJECTS_RT_OBJECT_ITEM_T_H
