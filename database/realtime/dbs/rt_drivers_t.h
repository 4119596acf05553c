#ifndef DATABASE_REALTIME_DBS_RT_DRIVERS_T_H
#define DATABASE_REALTIME_DBS_RT_DRIVERS_T_H

#include <QJsonArray>
#include <QObject>
#include <QStringList>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace dbs {

/// What the drivers report about themselves, and the KNX modes this installation may use.
class DATABASE_EXPORT rt_drivers_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QStringList knx_mode READ getKnxMode WRITE setKnxMode NOTIFY knx_modeChanged)

public:
    Q_INVOKABLE explicit rt_drivers_t(QObject* parent = nullptr);
    rt_drivers_t(rt_drivers_t const& other) = default;

    /// Takes other's fields; null is refused with onObjectError.
    void update(rt_drivers_t const* other, bool _notify) { updateValues(other, _notify); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }
    bool operator==(rt_drivers_t const& other) const { return sameValues(&other); }

    /// The KNX modes that may be chosen, as text.
    QStringList getKnxMode() const { return knx_mode; }
    void setKnxMode(QStringList const& value)
    {
        assign(knx_mode, value, [this] { Q_EMIT knx_modeChanged(knx_mode); });
    }
    void update_knxmode(QList<QString> const& value, bool _notify)
    {
        setKnxMode(value);
        if (_notify)
            send_update_knx_mode();
    }
    void send_update_knx_mode() { publishField(QStringLiteral("knx_mode"), QJsonArray::fromStringList(knx_mode)); }

Q_SIGNALS:
    void knx_modeChanged(QStringList);

private:
    QStringList knx_mode;
};

} // namespace dbs
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_RT_DRIVERS_T_H
