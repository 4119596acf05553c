#ifndef DATABASE_PRESENCESIMULATION_PSI_OBJECT_PRESENCESIMULATION_DAY_T_H
#define DATABASE_PRESENCESIMULATION_PSI_OBJECT_PRESENCESIMULATION_DAY_T_H

#include <QMap>
#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"
#include "database/presencesimulation/psi_node_map_t.h"
#include "database/presencesimulation/psi_object_presencesimulation_hour_t.h"

#include "database/database_export.h"

namespace database {
namespace presencesimulation {

/// One day of the recorded week: its hours that hold minutes, by hour number.
class DATABASE_EXPORT psi_object_presencesimulation_day_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(database::presencesimulation::presencesimulation_hour_map hours READ getHours WRITE setHours
                   NOTIFY hoursChanged)

public:
    Q_INVOKABLE explicit psi_object_presencesimulation_day_t(QObject* parent = nullptr);
    /// Deep; the copy has no parent.
    psi_object_presencesimulation_day_t(psi_object_presencesimulation_day_t const& other);

    /// Hour numbers below 25: hour 24 is accepted here, though no topic reaches it.
    static bool isValid(int hour);

    presencesimulation_hour_map getHours() const { return hours.get(); }
    void setHours(presencesimulation_hour_map const& map);

    psi_object_presencesimulation_hour_t* getHour(int hour) const { return hours.get(hour); }
    /// 0 for an invalid hour; otherwise the day owns child from now on.
    int add(int hour, psi_object_presencesimulation_hour_t* child) { return hours.add(hour, child); }
    int remove(int hour) { return hours.remove(hour); }
    /// Drops the hours that are empty once cleaned; how many remain.
    int clean() { return hours.clean(); }

    void retopic(QString const& _topic);

    bool operator==(psi_object_presencesimulation_day_t const& other) const { return hours == other.hours; }

Q_SIGNALS:
    void hoursChanged(database::presencesimulation::presencesimulation_hour_map);

private:
    psi_node_map_t<psi_object_presencesimulation_hour_t> hours{this, QStringLiteral("hours"), &isValid};
};

typedef QMap<QString, psi_object_presencesimulation_day_t*> presencesimulation_days_map;

} // namespace presencesimulation
} // namespace database

#endif // DATABASE_PRESENCESIMULATION_PSI_OBJECT_PRESENCESIMULATION_DAY_T_H
