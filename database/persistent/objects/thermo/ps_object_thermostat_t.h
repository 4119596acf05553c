#ifndef DATABASE_PERSISTENT_OBJECTS_THERMO_PS_OBJECT_THERMOSTAT_T_H
#define DATABASE_PERSISTENT_OBJECTS_THERMO_PS_OBJECT_THERMOSTAT_T_H

#include <QMap>
#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"
#include "database/persistent/objects/thermo/ps_object_hydro_base_t.h"
#include "database/persistent/objects/thermo/ps_object_thermo_base_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/**
 * One thermostat: a temperature loop, whose class is its algorithm, and a
 * humidity loop, with the window contact and the protections they share.
 * It always owns exactly one part of each kind, as its QObject children, and
 * the parts carry the thermostat's own topic.
 */
class DATABASE_EXPORT ps_object_thermostat_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QString name READ getName WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(QString id_win READ getIdWindowsContact WRITE setIdWindowsContact NOTIFY id_winChanged)
    Q_PROPERTY(bool win_nc READ getWinNc WRITE setWinNc NOTIFY win_ncChanged STORED false)
    Q_PROPERTY(bool prot_drew READ getProtDrew WRITE setProtDrew NOTIFY prot_drewChanged STORED false)
    Q_PROPERTY(bool alarm_drew READ getAlarmDrew WRITE setAlarmDrew NOTIFY alarm_drewChanged STORED false)
    Q_PROPERTY(bool thermo_enabled READ getThermoEnabled WRITE setThermoEnabled NOTIFY thermo_enabledChanged)
    Q_PROPERTY(bool hydro_enabled READ getHydroEnabled WRITE setHydroEnabled NOTIFY hydro_enabledChanged STORED false)
    Q_PROPERTY(database::persistent::objects::ps_object_thermo_base_t* thermo READ getThermo WRITE setThermo
                   NOTIFY thermoChanged)
    Q_PROPERTY(database::persistent::objects::ps_object_hydro_base_t* hydro READ getHydro WRITE setHydro
                   NOTIFY hydroChanged STORED false)

public:
    /// The keys under which the two parts are known.
    static QString const key_thermo;
    static QString const key_hydro;

    /// A hysteresis temperature loop and an empty humidity loop.
    Q_INVOKABLE explicit ps_object_thermostat_t(QObject* parent = nullptr);
    ps_object_thermostat_t(QString const& topic, QObject* parent);
    /// Adopts both parts; a null one is replaced by a default part.
    ps_object_thermostat_t(QString const& name, QString const& id_win, bool win_nc, bool prot_drew, bool alarm_drew,
                           bool thermo_enabled, bool hydro_enabled, ps_object_thermo_base_t* thermo,
                           ps_object_hydro_base_t* hydro, QObject* parent);
    /// Deep: the temperature part is copied by its clone(), so a
    /// proportional-integral loop comes back as a modulating one.
    ps_object_thermostat_t(ps_object_thermostat_t const& other);

    QString getName() const { return name; }
    QString getIdWindowsContact() const { return id_win; }
    bool getWinNc() const { return win_nc; }
    bool getProtDrew() const { return prot_drew; }
    bool getAlarmDrew() const { return alarm_drew; }
    bool getThermoEnabled() const { return thermo_enabled; }
    bool getHydroEnabled() const { return hydro_enabled; }
    /// Never null.
    ps_object_thermo_base_t* getThermo() const { return thermo; }
    /// Never null.
    ps_object_hydro_base_t* getHydro() const { return hydro; }

    void setName(QString const& value);
    void setIdWindowsContact(QString const& value);
    void setWinNc(bool value);
    void setProtDrew(bool value);
    void setAlarmDrew(bool value);
    void setThermoEnabled(bool value);
    void setHydroEnabled(bool value);
    /// Adopts value and deletes the part it replaces; null keeps the present part.
    void setThermo(ps_object_thermo_base_t* value);
    /// Adopts value and deletes the part it replaces; null keeps the present part.
    void setHydro(ps_object_hydro_base_t* value);

    /// Takes the fields and both parts' contents from other. The temperature
    /// part keeps its class: a new algorithm needs a new thermostat.
    void update(ps_object_thermostat_t const* other, bool _notify);
    void update_name(QString const& value, bool _notify);
    void update_id_win(QString const& value, bool _notify);
    /// Changes nothing, for the reason given at update(); with _notify it
    /// publishes the thermostat as it is.
    void update_thermo_type(ps_object_thermo_base_t::THERMO_TYPE type, bool _notify);

    /// The temperature part's common fields, the humidity part, and the fields.
    bool compare(ps_object_thermostat_t const* other) const;
    bool operator==(ps_object_thermostat_t const& other) const { return compare(&other); }

    void send_update();
    /// Gives both parts this topic and wires them with the thermostat.
    void initRequestSignals(QObject* receiver, bool connect);

Q_SIGNALS:
    void nameChanged(QString);
    void id_winChanged(QString);
    void win_ncChanged(bool);
    void prot_drewChanged(bool);
    void alarm_drewChanged(bool);
    void thermo_enabledChanged(bool);
    void hydro_enabledChanged(bool);
    void thermoChanged(database::persistent::objects::ps_object_thermo_base_t*);
    void hydroChanged(database::persistent::objects::ps_object_hydro_base_t*);

private:
    QString name;
    QString id_win;
    bool win_nc = true;
    bool prot_drew = false;
    bool alarm_drew = false;
    bool thermo_enabled = false;
    bool hydro_enabled = false;
    ps_object_thermo_base_t* thermo = nullptr;
    ps_object_hydro_base_t* hydro = nullptr;
};

} // namespace objects

typedef QMap<QString, objects::ps_object_thermostat_t*> ps_thermostat_map;

} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_THERMO_PS_OBJECT_THERMOSTAT_T_H
