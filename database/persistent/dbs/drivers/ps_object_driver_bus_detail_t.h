#ifndef DATABASE_PERSISTENT_DBS_DRIVERS_PS_OBJECT_DRIVER_BUS_DETAIL_T_H
#define DATABASE_PERSISTENT_DBS_DRIVERS_PS_OBJECT_DRIVER_BUS_DETAIL_T_H

#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {
namespace drivers {

/// The address of the interface through which a bus is reached: the "params" of
/// a bus, the same record for both bus drivers.
class DATABASE_EXPORT ps_object_driver_bus_detail_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QString address READ getAddress WRITE setAddress NOTIFY addressChanged)

public:
    Q_INVOKABLE explicit ps_object_driver_bus_detail_t(QObject* parent = nullptr);
    ps_object_driver_bus_detail_t(QString const& topic, QObject* parent);
    ps_object_driver_bus_detail_t(ps_object_driver_bus_detail_t const& other);

    QString getAddress() const { return address; }
    void setAddress(QString const& value);

    void requestSetAddress(QString const& value);
    /// Asks for the whole record on this object's topic; null asks with an empty object.
    void requestSet(ps_object_driver_bus_detail_t* other);
    /// Takes the address of other; the topic stays.
    void update(ps_object_driver_bus_detail_t const* other, bool _notify);
    void send_update();
    void initRequestSignals(QObject* receiver, bool connect);

Q_SIGNALS:
    void addressChanged(QString);

private:
    QString address;
};

} // namespace drivers
} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_DRIVERS_PS_OBJECT_DRIVER_BUS_DETAIL_T_H
