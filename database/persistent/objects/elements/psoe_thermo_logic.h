#ifndef DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_THERMO_LOGIC_H
#define DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_THERMO_LOGIC_H

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

/**
 * The panel of a thermostat that this system regulates itself: the thermostat
 * object named by thermo_id, which the request handler keeps in step with it.
 */
class DATABASE_EXPORT psoe_thermo_logic
    : public psoe_family_t<psoe_thermo_logic, ps_object_element_t::ELEMENT_TYPE_THERMO_LOGIC>
{
    Q_OBJECT
    Q_PROPERTY(QString thermo_id READ getThermo_id WRITE setThermo_id NOTIFY thermo_idChanged)
    Q_PROPERTY(int opm_type READ getOpm_type WRITE setOpm_type NOTIFY opm_typeChanged)
    Q_PROPERTY(QStringList setpoint_par READ getSetpoint_par WRITE setSetpoint_par NOTIFY setpoint_parChanged)

public:
    enum OPM_TYPE {
        OPM_TYPE_NONE = 0,
        OPM_TYPE_COM_PRE_ECO_OFF = 2,
        OPM_TYPE_COM_STBY_NIGHT_PROTECTION = 3,
        OPM_TYPE_ON_OFF = 4,
        OPM_TYPE_COM_STBY_ECO_PROT = 6
    };
    Q_ENUM(OPM_TYPE)

    enum OPM_MODE { OPM_MODE_COM = 1, OPM_MODE_PRE = 2, OPM_MODE_ECO = 3, OPM_MODE_OFF = 4, OPM_MODE_ON = 5 };
    Q_ENUM(OPM_MODE)

    /// Indexes into setpoint_par.
    enum SETPOINT_PARAMETER_ENUM { SETPOINT_PARAMETER_MINVALUE = 0, SETPOINT_PARAMETER_MAXVALUE = 1 };
    Q_ENUM(SETPOINT_PARAMETER_ENUM)

    enum THERMO_RT_CMD_ENUM { THERMO_RT_CMD_OPM = 0, THERMO_RT_CMD_SP_SHARED = 1, THERMO_RT_CMD_WIN_SUM = 2 };
    Q_ENUM(THERMO_RT_CMD_ENUM)

    enum ThermoFlag {
        THERMO_FLAG_ENABLE_HEAT_COOL_STATUS = 0x80000000,
        THERMO_FLAG_ENABLE_SP_CALC = 0x40000000,
        THERMO_FLAG_ENABLE_SP_HEAT_COOL = 0x20000000,
        THERMO_FLAG_ENABLE_WINSUM = 0x10000000,
        THERMO_FLAG_DISABLE_UI_HEATING_COOLING_SWITCH_BUTTON = 0x08000000,
        THERMO_FLAG_ENABLE_WINDOWS_STATUS = 0x04000000,
        THERMO_FLAG_INVERT_WINDOWS_STATUS = 0x02000000
    };
    Q_ENUM(ThermoFlag)

    Q_INVOKABLE explicit psoe_thermo_logic(QObject* parent = nullptr);
    psoe_thermo_logic(QString const& topic, QObject* parent);
    psoe_thermo_logic(QString const& id, QString const& name, QString const& description,
                      QVariantMap const& function_map, QVariantMap const& auth, QStringList const& rooms, int flags,
                      QVariantMap const& runoptions, QVariantMap const& lock_ui_map, QString const& thermo_id,
                      int opm_type, QStringList const& setpoint_par, QObject* parent);
    psoe_thermo_logic(psoe_thermo_logic const& other);

    QString getThermo_id() const { return thermo_id; }
    int getOpm_type() const { return opm_type; }
    QStringList getSetpoint_par() const { return setpoint_par; }
    void setThermo_id(QString const& value)
    {
        assign(thermo_id, value, [this] { Q_EMIT thermo_idChanged(thermo_id); });
    }
    void setOpm_type(int value)
    {
        assign(opm_type, value, [this] { Q_EMIT opm_typeChanged(opm_type); });
    }
    void setSetpoint_par(QStringList const& value)
    {
        assign(setpoint_par, value, [this] { Q_EMIT setpoint_parChanged(setpoint_par); });
    }

    void requestSetThermo_id(QString const& value) { requestField(this, QStringLiteral("thermo_id"), value); }
    void requestSetSetpoint_par(QStringList const& value)
    {
        requestField(this, QStringLiteral("setpoint_par"), QJsonArray::fromStringList(value));
    }

    void update_thermo_id(QString const& value, bool _notify);

Q_SIGNALS:
    void thermo_idChanged(QString);
    void opm_typeChanged(int);
    void setpoint_parChanged(QStringList);

private:
    QString thermo_id;
    int opm_type = 0;
    QStringList setpoint_par = { QStringLiteral("5"), QStringLiteral("35") };
};

} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_THERMO_LOGIC_H
