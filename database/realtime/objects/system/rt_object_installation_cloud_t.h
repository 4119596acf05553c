#ifndef DATABASE_REALTIME_OBJECTS_SYSTEM_RT_OBJECT_INSTALLATION_CLOUD_T_H
#define DATABASE_REALTIME_OBJECTS_SYSTEM_RT_OBJECT_INSTALLATION_CLOUD_T_H

#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace objects {

/// The installation's link to the cloud: the token of its interface.
class DATABASE_EXPORT rt_object_installation_cloud_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QString cloud_api_token MEMBER cloud_api_token READ getCloudApiToken NOTIFY cloud_api_tokenChanged)

public:
    Q_INVOKABLE explicit rt_object_installation_cloud_t(QObject* parent = nullptr);
    rt_object_installation_cloud_t(QString const& topic, QObject* parent);
    rt_object_installation_cloud_t(rt_object_installation_cloud_t const& other);

    QString getCloudApiToken() const { return cloud_api_token; }

    void requestSetCloudAPIToken(QString const& value);

    /// Takes every field of other; null is refused with "Not permitted nullptr".
    void update(rt_object_installation_cloud_t const* other, bool _notify) { updateValues(other, _notify); }
    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }

    /// Same values; the topic doesn't count.
    bool operator==(rt_object_installation_cloud_t const& other) const { return sameValues(&other); }

Q_SIGNALS:
    void cloud_api_tokenChanged(QString);

private:
    QString cloud_api_token;
};

} // namespace objects
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_OBJECTS_SYSTEM_RT_OBJECT_INSTALLATION_CLOUD_T_H
