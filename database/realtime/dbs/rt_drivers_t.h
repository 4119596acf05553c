#ifndef DATABASE_REALTIME_DBS_RT_DRIVERS_T_H
#define DATABASE_REALTIME_DBS_RT_DRIVERS_T_H

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

#include "database/base/topicbase_t.h"
#include "database/persistent/define/ps_knx_mode_t.h"
#include "database/realtime/dbs/drivers/rt_drivers_baos_t.h"
#include "database/realtime/dbs/drivers/rt_drivers_internal_t.h"
#include "database/realtime/dbs/drivers/rt_drivers_knx_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace dbs {

/**
 * What the drivers report about themselves: one object for each driver, each
 * a child at "drivers/" and its key, and the KNX modes this installation may
 * choose from. The drivers' hosts fill it by status packets; its requests go
 * back to them.
 */
class DATABASE_EXPORT rt_drivers_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(database::realtime::objects::drivers::rt_drivers_internal_t* driver_internal READ getInternal WRITE
                   setInternal NOTIFY driver_internalChanged)
    Q_PROPERTY(database::realtime::objects::drivers::rt_drivers_knx_t* driver_knx READ getKnx WRITE setKnx NOTIFY
                   driver_knxChanged)
    Q_PROPERTY(database::realtime::objects::drivers::rt_drivers_baos_t* driver_baos READ getBaos WRITE setBaos NOTIFY
                   driver_baosChanged)
    Q_PROPERTY(QString updated MEMBER updated READ getUpdated NOTIFY updatedChanged)
    Q_PROPERTY(QStringList knx_mode MEMBER knx_mode READ getKnxMode NOTIFY knx_modeChanged)

public:
    Q_INVOKABLE explicit rt_drivers_t(QObject* parent = nullptr);
    /// Deep: every driver copied, no parent, no receiver.
    rt_drivers_t(rt_drivers_t const& other);

    objects::drivers::rt_drivers_internal_t* getInternal() const { return internal; }
    objects::drivers::rt_drivers_knx_t* getKnx() const { return knx; }
    objects::drivers::rt_drivers_baos_t* getBaos() const { return baos; }
    QString getUpdated() const { return updated; }
    QStringList getKnxMode() const { return knx_mode; }

    /// Each adopts value in place of the present driver, which is deleted; null
    /// stands for an empty driver.
    void setInternal(objects::drivers::rt_drivers_internal_t* value);
    void setKnx(objects::drivers::rt_drivers_knx_t* value);
    void setBaos(objects::drivers::rt_drivers_baos_t* value);

    /// Asks for the KNX mode, if it is one of those on offer; otherwise logs and sends nothing.
    void requestSetKnxMode(persistent::definition::ps_knx_mode_t const& mode);

    /// A copy of object takes the place of the present driver, which is
    /// deleted at once; null puts an empty driver there. With _notify the new
    /// driver is published.
    void update_internal(objects::drivers::rt_drivers_internal_t const* object, bool _notify);
    void update_knx(objects::drivers::rt_drivers_knx_t const* object, bool _notify);
    void update_baos(objects::drivers::rt_drivers_baos_t const* object, bool _notify);
    /// The modes on offer, published alone on "/knx_mode".
    void update_knxmode(QList<QString> const& modes, bool _notify);
    /// Takes the three drivers of other; the modes and the date stay. Null is
    /// refused with "Not permitted nullptr".
    void update(rt_drivers_t* other, bool _notify);

    void send_update() { publishSelf(); }
    void send_update_knx_mode();
    void initRequestSignals(QObject* receiver, bool connect);

    /// Same driver pointers, date and modes: a deep comparison goes through the JSON.
    bool operator==(rt_drivers_t const& other) const;

Q_SIGNALS:
    void driver_internalChanged(database::realtime::objects::drivers::rt_drivers_internal_t*);
    void driver_knxChanged(database::realtime::objects::drivers::rt_drivers_knx_t*);
    void driver_baosChanged(database::realtime::objects::drivers::rt_drivers_baos_t*);
    void updatedChanged(QString);
    void knx_modeChanged(QStringList);

private:
    QString driverTopic(QString const& key) const;

    objects::drivers::rt_drivers_internal_t* internal = nullptr;
    objects::drivers::rt_drivers_knx_t* knx = nullptr;
    objects::drivers::rt_drivers_baos_t* baos = nullptr;
    QString updated;
    QStringList knx_mode;
    QPointer<QObject> receiver;
};

} // namespace dbs
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_RT_DRIVERS_T_H
