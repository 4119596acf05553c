#ifndef DATABASE_REALTIME_DBS_DRIVERS_RT_OBJECT_DRIVER_BAOS_INTERFACE_T_H
#define DATABASE_REALTIME_DBS_DRIVERS_RT_OBJECT_DRIVER_BAOS_INTERFACE_T_H

#include <QList>
#include <QObject>
#include <QString>

#include "database/realtime/dbs/drivers/rt_object_driver_interface_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace objects {
namespace drivers {

/**
 * A BAOS device that a scan of the BAOS driver found. Beside its address it
 * can be put in programming mode, reset to its user configuration, and told
 * to write its configuration; all of these are requests to the driver.
 */
class DATABASE_EXPORT rt_object_driver_baos_interface_t
    : public rt_object_driver_interface_t<rt_object_driver_baos_interface_t>
{
    Q_OBJECT
    Q_PROPERTY(int id MEMBER id READ getId NOTIFY idChanged)
    Q_PROPERTY(QString type MEMBER type READ getType NOTIFY typeChanged)
    Q_PROPERTY(QString address MEMBER address READ getAddress NOTIFY addressChanged)
    Q_PROPERTY(QString ip MEMBER ip READ getIp NOTIFY ipChanged)
    Q_PROPERTY(bool isSecure MEMBER isSecure READ getIsSecure NOTIFY isSecureChanged)

public:
    enum BAOS_PROGRAMING_MODE {
        BAOS_PROGRAMING_MODE_OFF = 0,
        BAOS_PROGRAMING_MODE_ON = 1,
        BAOS_PROGRAMING_MODE_TOGLE = 2
    };
    Q_ENUM(BAOS_PROGRAMING_MODE)

    Q_INVOKABLE explicit rt_object_driver_baos_interface_t(QObject* parent = nullptr);
    rt_object_driver_baos_interface_t(QString const& topic, QObject* parent);
    rt_object_driver_baos_interface_t(rt_object_driver_baos_interface_t const& other);

    void requestSetAddressbaos(QString const& value) { requestAddress(value); }
    /// A mode above the last one is refused with "Value not allowed".
    void requestSetProgrammingMode(BAOS_PROGRAMING_MODE mode);
    void requestSetResetUserConfig();
    void requestSetWriteOnDevice();

Q_SIGNALS:
    void idChanged(int);
    void typeChanged(QString);
    void addressChanged(QString);
    void ipChanged(QString);
    void isSecureChanged(bool);
};

} // namespace drivers
} // namespace objects

typedef QList<objects::drivers::rt_object_driver_baos_interface_t*> rt_object_driver_baos_interface_list;

} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_DRIVERS_RT_OBJECT_DRIVER_BAOS_INTERFACE_T_H
