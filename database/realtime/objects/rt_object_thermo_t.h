#ifndef DATABASE_REALTIME_OBJECTS_RT_OBJECT_THERMO_T_H
#define DATABASE_REALTIME_OBJECTS_RT_OBJECT_THERMO_T_H

#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace objects {

/**
 * The live figures of a thermostat's room control: temperatures, season,
 * operation mode, fan and output. Its thermostat owns it; the thermostat
 * process writes it through status packets, user interfaces ask for changes
 * with the requestSet* operations. Fan, forced fan and battery live in
 * memory only.
 */
class DATABASE_EXPORT rt_object_thermo_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(float actual READ getActualTemp WRITE setActualTemp NOTIFY actual_Changed)
    Q_PROPERTY(float setpoint READ getSetpoint WRITE setSetpoint NOTIFY setpoint_Changed)
    Q_PROPERTY(float set_calc READ getSetpointCalculate WRITE setSetpointCalculate NOTIFY setpointCal_Changed)
    Q_PROPERTY(int season READ getSeason WRITE setSeason NOTIFY season_Changed)
    Q_PROPERTY(int mode READ getOperationMode WRITE setOperationMode NOTIFY mode_Changed)
    Q_PROPERTY(int fan READ getFan WRITE setFan NOTIFY fan_Changed STORED false)
    Q_PROPERTY(int forceFan READ getForceFan WRITE setForceFan NOTIFY forceFan_Changed STORED false)
    Q_PROPERTY(float output READ getOutputTemp WRITE setOutputTemp NOTIFY outputChanged)
    Q_PROPERTY(float out_st READ getOutputStTemp WRITE setOutputStTemp NOTIFY out_stChanged)
    Q_PROPERTY(int error READ getError WRITE setError NOTIFY errorChanged)
    Q_PROPERTY(bool battery READ getBattery WRITE setBattery NOTIFY batteryChanged STORED false)

public:
    /// The mode of a new object, and the one update(null) leaves.
    static int const mode_new = 4;
    static int const mode_cleared = 1;

    Q_INVOKABLE explicit rt_object_thermo_t(QObject* parent = nullptr);
    rt_object_thermo_t(QString const& topic, QObject* parent);
    /// Takes the topic and all eleven fields; no parent.
    rt_object_thermo_t(rt_object_thermo_t const& other) = default;

    float getActualTemp() const { return actual; }
    float getSetpoint() const { return setpoint; }
    float getSetpointCalculate() const { return set_calc; }
    int getSeason() const { return season; }
    int getOperationMode() const { return mode; }
    int getFan() const { return fan; }
    int getForceFan() const { return forceFan; }
    float getOutputTemp() const { return output; }
    float getOutputStTemp() const { return out_st; }
    int getError() const { return error; }
    bool getBattery() const { return battery; }

    void setActualTemp(float value);
    void setSetpoint(float value);
    void setSetpointCalculate(float value);
    void setSeason(int value);
    void setOperationMode(int value);
    void setFan(int value);
    void setForceFan(int value);
    void setOutputTemp(float value);
    void setOutputStTemp(float value);
    void setError(int value);
    void setBattery(bool value);

    /// Takes all eleven fields of other; null clears them, with the mode 1.
    void update(rt_object_thermo_t const* other, bool _notify);
    // Each sets its field and with _notify publishes, held value or not.
    void update_actual(float value, bool _notify) { setActualTemp(value); publishSelfIf(_notify); }
    void update_setpoint(float value, bool _notify) { setSetpoint(value); publishSelfIf(_notify); }
    void update_set_calc(float value, bool _notify) { setSetpointCalculate(value); publishSelfIf(_notify); }
    void update_season(int value, bool _notify) { setSeason(value); publishSelfIf(_notify); }
    void update_mode(int value, bool _notify) { setOperationMode(value); publishSelfIf(_notify); }
    void update_fan(int value, bool _notify) { setFan(value); publishSelfIf(_notify); }
    void update_forceFan(int value, bool _notify) { setForceFan(value); publishSelfIf(_notify); }
    void update_output(float value, bool _notify) { setOutputTemp(value); publishSelfIf(_notify); }
    void update_output_st(float value, bool _notify) { setOutputStTemp(value); publishSelfIf(_notify); }
    void update_error(int value, bool _notify) { setError(value); publishSelfIf(_notify); }
    void update_battery(bool value, bool _notify) { setBattery(value); publishSelfIf(_notify); }

    void requestSetSeason(int value);
    void requestSetOperationMode(int value);
    void requestSetFan(int value);
    void requestSetFanForce(int value);
    void requestSetSetPoint(float const& value);

    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }

    /// All eleven fields; the topic doesn't count.
    bool operator==(rt_object_thermo_t const& other) const { return sameValues(&other, all_values); }

Q_SIGNALS:
    void outputChanged(float);
    void out_stChanged(float);
    void actual_Changed(float);
    void setpoint_Changed(float);
    void setpointCal_Changed(float);
    void season_Changed(int);
    void mode_Changed(int);
    void errorChanged(int);
    void fan_Changed(int);
    void forceFan_Changed(int);
    void batteryChanged(bool);

private:
    float actual = 0;
    float setpoint = 0;
    float set_calc = 0;
    int season = 0;
    int mode = mode_new;
    int fan = 0;
    int forceFan = 0;
    float output = 0;
    float out_st = 0;
    int error = 0;
    bool battery = false;
};

} // namespace objects
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_OBJECTS_RT_OBJECT_THERMO_T_H
