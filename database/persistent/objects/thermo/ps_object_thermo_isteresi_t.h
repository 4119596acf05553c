#ifndef DATABASE_PERSISTENT_OBJECTS_THERMO_PS_OBJECT_THERMO_ISTERESI_T_H
#define DATABASE_PERSISTENT_OBJECTS_THERMO_PS_OBJECT_THERMO_ISTERESI_T_H

#include <QObject>
#include <QString>

#include "database/persistent/objects/thermo/ps_object_thermo_base_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/// A temperature loop that switches its output on and off around the setpoint,
/// with separate margins above and below it.
class DATABASE_EXPORT ps_object_thermo_isteresi_t : public ps_object_thermo_base_t
{
    Q_OBJECT
    Q_CLASSINFO("polymorphic", "true")
    Q_PROPERTY(double isteresi_up READ getIsteresiUp WRITE setIsteresiUp NOTIFY isteresi_upChanged)
    Q_PROPERTY(double isteresi_down READ getIsteresiDown WRITE setIsteresiDown NOTIFY isteresi_downChanged)

public:
    Q_INVOKABLE explicit ps_object_thermo_isteresi_t(QObject* parent = nullptr);
    ps_object_thermo_isteresi_t(QString const& topic, QObject* parent);
    ps_object_thermo_isteresi_t(ps_object_thermo_isteresi_t const& other);

    int getType() const override;

    double getIsteresiUp() const { return isteresi_up; }
    double getIsteresiDown() const { return isteresi_down; }
    void setIsteresiUp(double value);
    void setIsteresiDown(double value);

    /// The common fields and both margins.
    void update(ps_object_thermo_isteresi_t const* other, bool _notify);
    bool compare(ps_object_thermo_isteresi_t const* other) const;

Q_SIGNALS:
    void isteresi_upChanged(double);
    void isteresi_downChanged(double);

private:
    double isteresi_up = 0.5;
    double isteresi_down = 0.5;
};

} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_THERMO_PS_OBJECT_THERMO_ISTERESI_T_H
