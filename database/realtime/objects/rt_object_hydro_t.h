#ifndef DATABASE_REALTIME_OBJECTS_RT_OBJECT_HYDRO_T_H
#define DATABASE_REALTIME_OBJECTS_RT_OBJECT_HYDRO_T_H

#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace objects {

/**
 * The live figures of a thermostat's hydronic (humidity) control. Its
 * thermostat owns it and keeps it out of the JSON; written and asked for as
 * the room control is. Unlike there, fan and forced fan are stored here.
 */
class DATABASE_EXPORT rt_object_hydro_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(float actual READ getActual WRITE setActual NOTIFY actual_Changed)
    Q_PROPERTY(float set READ getSetpoint WRITE setSetpoint NOTIFY setpoint_Changed)
    Q_PROPERTY(float set_calc READ getSetpointCalculate WRITE setSetpointCalculate NOTIFY setpointCal_Changed)
    Q_PROPERTY(int mode READ getOperationMode WRITE setOperationMode NOTIFY mode_Changed)
    Q_PROPERTY(float output READ getOutput WRITE setOutput NOTIFY outputChanged)
    Q_PROPERTY(int error READ getError WRITE setError NOTIFY errorChanged)
    Q_PROPERTY(int fan READ getFan WRITE setFan NOTIFY fan_Changed)
    Q_PROPERTY(int forceFan READ getForceFan WRITE setForceFan NOTIFY forceFan_Changed)

public:
    /// The mode of a new object and of a cleared one alike.
    static int const mode_new = 4;

    Q_INVOKABLE explicit rt_object_hydro_t(QObject* parent = nullptr);
    rt_object_hydro_t(QString const& topic, QObject* parent);
    /// Takes the topic and all eight fields; no parent.
    rt_object_hydro_t(rt_object_hydro_t const& other) = default;

    float getActual() const { return actual; }
    float getSetpoint() const { return set; }
    float getSetpointCalculate() const { return set_calc; }
    int getOperationMode() const { return mode; }
    float getOutput() const { return output; }
    int getError() const { return error; }
    int getFan() const { return fan; }
    int getForceFan() const { return forceFan; }

    void setActual(float value);
    void setSetpoint(float value);
    void setSetpointCalculate(float value);
    void setOperationMode(int value);
    void setOutput(float value);
    void setError(int value);
    void setFan(int value);
    void setForceFan(int value);

    /// Takes all eight fields of other; null restores the defaults, mode 4 included.
    void update(rt_object_hydro_t const* other, bool _notify);
    // Each sets its field and with _notify publishes, held value or not.
    void update_actual(float value, bool _notify) { setActual(value); publishSelfIf(_notify); }
    void update_set(float value, bool _notify) { setSetpoint(value); publishSelfIf(_notify); }
    void update_set_calc(float value, bool _notify) { setSetpointCalculate(value); publishSelfIf(_notify); }
    void update_mode(int value, bool _notify) { setOperationMode(value); publishSelfIf(_notify); }
    void update_output(float value, bool _notify) { setOutput(value); publishSelfIf(_notify); }
    void update_error(int value, bool _notify) { setError(value); publishSelfIf(_notify); }
    void update_fan(int value, bool _notify) { setFan(value); publishSelfIf(_notify); }
    void update_forceFan(int value, bool _notify) { setForceFan(value); publishSelfIf(_notify); }

    void requestSetOperationMode(int value);
    void requestSetFan(int value);
    void requestSetFanForce(int value);
    /// Asked for on "/setpoint", though the field's key is "set".
    void requestSetSetPoint(float const& value);

    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }

    /// All eight fields; the topic doesn't count.
    bool operator==(rt_object_hydro_t const& other) const { return sameValues(&other); }

Q_SIGNALS:
    void outputChanged(float);
    void actual_Changed(float);
    void setpoint_Changed(float);
    void setpointCal_Changed(float);
    void mode_Changed(int);
    void errorChanged(int);
    void fan_Changed(int);
    void forceFan_Changed(int);

private:
    float actual = 0;
    float set = 0;
    float set_calc = 0;
    int mode = mode_new;
    float output = 0;
    int error = 0;
    int fan = 0;
    int forceFan = 0;
};

} // namespace objects
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_OBJECTS_RT_OBJECT_HYDRO_T_H
