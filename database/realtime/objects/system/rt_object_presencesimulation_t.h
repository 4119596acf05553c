#ifndef DATABASE_REALTIME_OBJECTS_SYSTEM_RT_OBJECT_PRESENCESIMULATION_T_H
#define DATABASE_REALTIME_OBJECTS_SYSTEM_RT_OBJECT_PRESENCESIMULATION_T_H

#include <QMap>
#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace objects {

/// One action of the presence simulation: when, which item, which value.
class DATABASE_EXPORT rt_object_presencesimulation_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QString datetime MEMBER datetime READ getDatetime NOTIFY datetimeChanged)
    Q_PROPERTY(QString item MEMBER item READ getItem NOTIFY itemChanged)
    Q_PROPERTY(QString value MEMBER value READ getValue NOTIFY valueChanged)

public:
    Q_INVOKABLE explicit rt_object_presencesimulation_t(QObject* parent = nullptr);
    rt_object_presencesimulation_t(QString const& topic, QObject* parent);
    rt_object_presencesimulation_t(QString const& datetime, QString const& item, QString const& value,
                                   QObject* parent);
    rt_object_presencesimulation_t(rt_object_presencesimulation_t const& other);

    QString getDatetime() const { return datetime; }
    QString getItem() const { return item; }
    QString getValue() const { return value; }

    /// Takes every field of other; null is refused with "Not permitted nullptr".
    void update(rt_object_presencesimulation_t const* other, bool _notify) { updateValues(other, _notify); }
    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }

    /// Same values; the topic doesn't count.
    bool operator==(rt_object_presencesimulation_t const& other) const { return sameValues(&other); }

Q_SIGNALS:
    void datetimeChanged(QString);
    void itemChanged(QString);
    void valueChanged(QString);

private:
    QString datetime;
    QString item;
    QString value;
};

} // namespace objects

typedef QList<objects::rt_object_presencesimulation_t*> rt_object_presencesimulation_list;

} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_OBJECTS_SYSTEM_RT_OBJECT_PRESENCESIMULATION_T_H
