#ifndef DATABASE_PERSISTENT_OBJECTS_THERMO_PS_OBJECT_THERMO_PWM_T_H
#define DATABASE_PERSISTENT_OBJECTS_THERMO_PS_OBJECT_THERMO_PWM_T_H

#include <QObject>
#include <QString>

#include "database/persistent/objects/thermo/ps_object_thermo_base_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/**
 * A temperature loop that modulates its output over a calculation period,
 * tuned by the kind of heating and cooling system. The proportional-integral
 * loop has the same fields and is handled through this class.
 */
class DATABASE_EXPORT ps_object_thermo_pwm_t : public ps_object_thermo_base_t
{
    Q_OBJECT
    Q_CLASSINFO("polymorphic", "true")
    Q_PROPERTY(QString heat_sys READ getHeatSys WRITE setHeatSys NOTIFY heat_sysChanged)
    Q_PROPERTY(QString cool_sys READ getCoolSys WRITE setCoolSys NOTIFY cool_sysChanged)
    Q_PROPERTY(int calc_time READ getCalcTime WRITE setCalcTime NOTIFY calc_timeChanged)

public:
    Q_INVOKABLE explicit ps_object_thermo_pwm_t(QObject* parent = nullptr);
    ps_object_thermo_pwm_t(QString const& topic, QObject* parent);
    ps_object_thermo_pwm_t(ps_object_thermo_pwm_t const& other);

    /// THERMO_PWM, for this class and the proportional-integral one alike.
    int getType() const override;

    QString getHeatSys() const { return heat_sys; }
    QString getCoolSys() const { return cool_sys; }
    int getCalcTime() const { return calc_time; }
    void setHeatSys(QString const& value);
    void setCoolSys(QString const& value);
    void setCalcTime(int value);

    /// The common fields, both systems and the period.
    void update(ps_object_thermo_pwm_t const* other, bool _notify);
    bool compare(ps_object_thermo_pwm_t const* other) const;

Q_SIGNALS:
    void heat_sysChanged(QString);
    void cool_sysChanged(QString);
    void calc_timeChanged(int);

private:
    QString heat_sys = QStringLiteral("floor");
    QString cool_sys = QStringLiteral("floor");
    int calc_time = 900;
};

} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_THERMO_PS_OBJECT_THERMO_PWM_T_H
