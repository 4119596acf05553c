#ifndef DATABASE_PERSISTENT_OBJECTS_THERMO_PS_OBJECT_THERMO_PI_T_H
#define DATABASE_PERSISTENT_OBJECTS_THERMO_PS_OBJECT_THERMO_PI_T_H

#include <QObject>
#include <QString>

#include "database/persistent/objects/thermo/ps_object_thermo_pwm_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/**
 * A proportional-integral temperature loop. It keeps its own class name in
 * the document, but answers THERMO_PWM and is updated, compared and copied as
 * the modulating loop whose fields it shares: a copy of it is a
 * ps_object_thermo_pwm_t.
 */
class DATABASE_EXPORT ps_object_thermo_pi_t : public ps_object_thermo_pwm_t
{
    Q_OBJECT
    Q_CLASSINFO("polymorphic", "true")

public:
    Q_INVOKABLE explicit ps_object_thermo_pi_t(QObject* parent = nullptr);
    ps_object_thermo_pi_t(QString const& topic, QObject* parent);
    ps_object_thermo_pi_t(ps_object_thermo_pi_t const& other);
};

} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_THERMO_PS_OBJECT_THERMO_PI_T_H
