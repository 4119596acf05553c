#ifndef DATABASE_REALTIME_OBJECTS_SYSTEM_RT_OBJECT_URL_T_H
#define DATABASE_REALTIME_OBJECTS_SYSTEM_RT_OBJECT_URL_T_H

#include <QMap>
#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace objects {

/// An address the installation offers, with its name.
class DATABASE_EXPORT rt_object_url_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QString name MEMBER name READ getName NOTIFY nameChanged)
    Q_PROPERTY(QString url MEMBER url READ getUrl NOTIFY urlChanged)

public:
    Q_INVOKABLE explicit rt_object_url_t(QObject* parent = nullptr);
    rt_object_url_t(QString const& topic, QObject* parent);
    rt_object_url_t(rt_object_url_t const& other);

    QString getName() const { return name; }
    QString getUrl() const { return url; }

    /// Takes every field of other; null is refused with "Not permitted nullptr".
    void update(rt_object_url_t const* other, bool _notify) { updateValues(other, _notify); }
    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }

    /// Same values; the topic doesn't count.
    bool operator==(rt_object_url_t const& other) const { return sameValues(&other); }

Q_SIGNALS:
    void nameChanged(QString);
    void urlChanged(QString);

private:
    QString name;
    QString url;
};

} // namespace objects

typedef QMap<QString, objects::rt_object_url_t*> rt_url_map;

} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_OBJECTS_SYSTEM_RT_OBJECT_URL_T_H
