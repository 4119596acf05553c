#ifndef DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_THERMOSTAT_H
#define DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_THERMOSTAT_H

#include <QJsonArray>
#include <QObject>
#include <QString>
#include <QStringList>

#include "database/persistent/objects/elements/psoe_family_t.h"
#include "database/persistent/ps_request.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/// A room thermostat on the bus: setpoints, operating modes and fan.
class DATABASE_EXPORT psoe_thermostat
    : public psoe_family_t<psoe_thermostat, ps_object_element_t::ELEMENT_TYPE_THERMOSTAT>
{
    Q_OBJECT
    Q_PROPERTY(int fan_type READ getFan_type WRITE setFan_type NOTIFY fan_typeChanged)
    Q_PROPERTY(int opm_type READ getOpm_type WRITE setOpm_type NOTIFY opm_typeChanged)
    Q_PROPERTY(int seasontype READ getSeasontype WRITE setSeasontype NOTIFY seasontypeChanged)
    Q_PROPERTY(QStringList offset_par READ getOffset_par WRITE setOffset_par NOTIFY offset_parChanged)
    Q_PROPERTY(QStringList setpoint_par READ getSetpoint_par WRITE setSetpoint_par NOTIFY setpoint_parChanged)

public:
    enum OPM_TYPE {
        OPM_TYPE_NONE = 0,
        OPM_TYPE_AUTO_COM_PRE_ECO_OFF = 1,
        OPM_TYPE_COM_PRE_ECO_OFF = 2,
        OPM_TYPE_COM_STBY_NIGHT_PROTECTION = 3,
        OPM_TYPE_ON_OFF = 4,
        OPM_TYPE_AUTO_COM_STBY_ECO_PROT = 5,
        OPM_TYPE_COM_STBY_ECO_PROT = 6,
        OPM_TYPE_COM_STBY_NIGHT_PROTECTION_ANALOG_RTH = 100
    };
    Q_ENUM(OPM_TYPE)

    enum SEASON_TYPE { HEATING_COOLING = 0, ONLY_HEATING = 1, ONLY_COOLING = 2 };
    Q_ENUM(SEASON_TYPE)

    /// Indexes into offset_par.
    enum OFFSET_PARAMETER_ENUM {
        OFFSET_PARAMETER_STEP = 0,
        OFFSET_PARAMETER_MINVALUE = 1,
        OFFSET_PARAMETER_MAXVALUE = 2
    };
    Q_ENUM(OFFSET_PARAMETER_ENUM)

    /// Indexes into setpoint_par.
    enum SETPOINT_PARAMETER_ENUM { SETPOINT_PARAMETER_MINVALUE = 0, SETPOINT_PARAMETER_MAXVALUE = 1 };
    Q_ENUM(SETPOINT_PARAMETER_ENUM)

    enum FAN_TYPE_ENUM {
        FAN_TYPE_NONE = 0,
        FAN_TYPE_ONOFF = 1,
        FAN_TYPE_OFF_SPEED1_3 = 2,
        FAN_TYPE_AUTOMAN_ONOFF = 3,
        FAN_TYPE_AUTOMAN_OFF_SPEED1_3 = 4,
        FAN_TYPE_AUTOMAN_SWITCH = 5
    };
    Q_ENUM(FAN_TYPE_ENUM)

    enum OPM_MODE {
        OPM_MODE_AUTO = 0,
        OPM_MODE_COM = 1,
        OPM_MODE_PRE = 2,
        OPM_MODE_ECO = 3,
        OPM_MODE_OFF = 4,
        OPM_MODE_ON = 5
    };
    Q_ENUM(OPM_MODE)

    /// 0x04000000 is not in use.
    enum ThermostatFlag {
        THERMOSTAT_FLAG_FAN_AUTOMAN_INVERT = 0x80000000,
        THERMOSTAT_FLAG_WIN_SUM_INVERT = 0x40000000,
        THERMOSTAT_FLAG_ENABLE_SP_OFFSET = 0x20000000,
        THERMOSTAT_FLAG_ENABLE_HUMIDITY = 0x10000000,
        THERMOSTAT_FLAG_ENABLE_WINSUM = 0x08000000,
        THERMOSTAT_FLAG_ENABLE_HEAT_COOL_STATUS = 0x02000000,
        THERMOSTAT_FLAG_ENABLE_SP_CALC = 0x01000000,
        THERMOSTAT_FLAG_ENABLE_SP_HEAT_COOL = 0x00800000,
        THERMOSTAT_FLAG_SHARED_SP_HEAT_COOL = 0x00400000,
        THERMOSTAT_FLAG_ENABLE_OPM_BITS = 0x00200000,
        THERMOSTAT_FLAG_DISABLE_UI_HEATING_COOLING_SWITCH_BUTTON = 0x00100000,
        THERMOSTAT_FLAG_ENABLE_WINDOWS_STATUS = 0x00080000,
        THERMOSTAT_FLAG_INVERT_WINDOWS_STATUS = 0x00040000,
        THERMOSTAT_FLAG_ENABLE_PRESENCE_STATUS = 0x00020000,
        THERMOSTAT_FLAG_INVERT_PRESENCE_STATUS = 0x00010000,
        THERMOSTAT_FLAG_ENABLE_DEW_POINT_STATUS = 0x00008000
    };
    Q_ENUM(ThermostatFlag)

    Q_INVOKABLE explicit psoe_thermostat(QObject* parent = nullptr);
    psoe_thermostat(QString const& topic, QObject* parent);
    psoe_thermostat(QString const& id, QString const& name, QString const& description, QVariantMap const& function_map,
                    QVariantMap const& auth, QStringList const& rooms, int flags, QVariantMap const& runoptions,
                    QVariantMap const& lock_ui_map, int fan_type, int opm_type, int seasontype,
                    QStringList const& offset_par, QStringList const& setpoint_par, QObject* parent);
    psoe_thermostat(psoe_thermostat const& other);

    int getFan_type() const { return fan_type; }
    int getOpm_type() const { return opm_type; }
    int getSeasontype() const { return seasontype; }
    QStringList getOffset_par() const { return offset_par; }
    QStringList getSetpoint_par() const { return setpoint_par; }
    void setFan_type(int value)
    {
        assign(fan_type, value, [this] { Q_EMIT fan_typeChanged(fan_type); });
    }
    void setOpm_type(int value)
    {
        assign(opm_type, value, [this] { Q_EMIT opm_typeChanged(opm_type); });
    }
    void setSeasontype(int value)
    {
        assign(seasontype, value, [this] { Q_EMIT seasontypeChanged(seasontype); });
    }
    void setOffset_par(QStringList const& value)
    {
        assign(offset_par, value, [this] { Q_EMIT offset_parChanged(offset_par); });
    }
    void setSetpoint_par(QStringList const& value)
    {
        assign(setpoint_par, value, [this] { Q_EMIT setpoint_parChanged(setpoint_par); });
    }

    void requestSetFan_type(int value) { requestField(this, QStringLiteral("fan_type"), value); }
    void requestSetOffset_par(QStringList const& value)
    {
        requestField(this, QStringLiteral("offset_par"), QJsonArray::fromStringList(value));
    }
    void requestSetSetpoint_par(QStringList const& value)
    {
        requestField(this, QStringLiteral("setpoint_par"), QJsonArray::fromStringList(value));
    }

Q_SIGNALS:
    void fan_typeChanged(int);
    void opm_typeChanged(int);
    void seasontypeChanged(int);
    void offset_parChanged(QStringList);
    void setpoint_parChanged(QStringList);

private:
    int fan_type = 0;
    int opm_type = 0;
    int seasontype = 0;
    QStringList offset_par = { QStringLiteral("0"), QStringLiteral("0"), QStringLiteral("0") };
    QStringList setpoint_par = { QStringLiteral("5"), QStringLiteral("35") };
};

} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_THERMOSTAT_H
