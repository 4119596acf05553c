#ifndef DATABASE_PERSISTENT_DBS_PS_DRIVERS_T_H
#define DATABASE_PERSISTENT_DBS_PS_DRIVERS_T_H

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

#include "database/base/topicbase_t.h"
#include "database/persistent/dbs/drivers/ps_drivers_baos_t.h"
#include "database/persistent/dbs/drivers/ps_drivers_clock_t.h"
#include "database/persistent/dbs/drivers/ps_drivers_internal_t.h"
#include "database/persistent/dbs/drivers/ps_drivers_knx_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace dbs {

/**
 * The section of the drivers: one object for each driver of the installation,
 * each a child at "drivers/" and its key, and the KNX access mode in force.
 * Items name their driver by one of the ids of getDriverId().
 */
class DATABASE_EXPORT ps_drivers_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(database::persistent::objects::drivers::ps_drivers_internal_t* driver_internal READ getInternal WRITE
                   setInternal NOTIFY driver_internalChanged)
    Q_PROPERTY(database::persistent::objects::drivers::ps_drivers_knx_t* driver_knx READ getKnx WRITE setKnx NOTIFY
                   driver_knxChanged)
    Q_PROPERTY(database::persistent::objects::drivers::ps_drivers_baos_t* driver_baos READ getBaos WRITE setBaos NOTIFY
                   driver_baosChanged)
    Q_PROPERTY(database::persistent::objects::drivers::ps_drivers_clock_t* driver_clock READ getClock WRITE setClock
                   NOTIFY driver_clockChanged)
    Q_PROPERTY(QString knx_mode READ getKnxMode WRITE setKnxMode NOTIFY knx_modeChanged)

public:
    Q_INVOKABLE explicit ps_drivers_t(QObject* parent = nullptr);
    /// Deep: every driver copied, no parent, no receiver.
    ps_drivers_t(ps_drivers_t const& other);

    objects::drivers::ps_drivers_knx_t* getKnx() const { return knx; }
    objects::drivers::ps_drivers_baos_t* getBaos() const { return baos; }
    objects::drivers::ps_drivers_clock_t* getClock() const { return clock; }
    objects::drivers::ps_drivers_internal_t* getInternal() const { return internal; }
    QString getKnxMode() const { return knx_mode; }

    /// Each adopts value in place of the present driver, which is deleted; null
    /// stands for a default driver.
    void setKnx(objects::drivers::ps_drivers_knx_t* value);
    void setBaos(objects::drivers::ps_drivers_baos_t* value);
    void setClock(objects::drivers::ps_drivers_clock_t* value);
    void setInternal(objects::drivers::ps_drivers_internal_t* value);
    void setKnxMode(QString const& value);

    /// Every id an item may name: the KNX buses, the BAOS buses, the clock, the sensors.
    QStringList getDriverId() const;

    void requestSetKnx(objects::drivers::ps_drivers_knx_t* object);
    void requestSetBaos(objects::drivers::ps_drivers_baos_t* object);
    void requestSetInternal(objects::drivers::ps_drivers_internal_t* object);
    void requestSetClock(objects::drivers::ps_drivers_clock_t* object);

    /// A copy of object takes the place of the present driver, which is
    /// deleted at once; null puts a default driver there.
    void update_knx(objects::drivers::ps_drivers_knx_t* object, bool _notify);
    void update_baos(objects::drivers::ps_drivers_baos_t* object, bool _notify);
    void update_internal(objects::drivers::ps_drivers_internal_t* object, bool _notify);
    /// The clock instead takes the content into the present object.
    void update_clock(objects::drivers::ps_drivers_clock_t* object, bool _notify);
    /// Takes every driver and the mode of other, without publishing.
    void update(ps_drivers_t* other);

    void send_update();
    void initRequestSignals(QObject* receiver, bool connect);

    /// Same driver pointers and the same mode: a deep comparison goes through the JSON.
    bool operator==(ps_drivers_t const& other) const;

Q_SIGNALS:
    void driver_internalChanged(database::persistent::objects::drivers::ps_drivers_internal_t*);
    void driver_knxChanged(database::persistent::objects::drivers::ps_drivers_knx_t*);
    void driver_baosChanged(database::persistent::objects::drivers::ps_drivers_baos_t*);
    void driver_clockChanged(database::persistent::objects::drivers::ps_drivers_clock_t*);
    void knx_modeChanged(QString);

private:
    template<class T>
    bool place(T*& slot, T* value, QString const& key);
    template<class T>
    void requestDriver(T* object, QString const& key);

    QString driverTopic(QString const& key) const;

    objects::drivers::ps_drivers_internal_t* internal = nullptr;
    objects::drivers::ps_drivers_knx_t* knx = nullptr;
    objects::drivers::ps_drivers_baos_t* baos = nullptr;
    objects::drivers::ps_drivers_clock_t* clock = nullptr;
    QString knx_mode;
    QPointer<QObject> receiver;
};

} // namespace dbs
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_PS_DRIVERS_T_H
