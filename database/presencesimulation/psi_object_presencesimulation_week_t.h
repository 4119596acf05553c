#ifndef DATABASE_PRESENCESIMULATION_PSI_OBJECT_PRESENCESIMULATION_WEEK_T_H
#define DATABASE_PRESENCESIMULATION_PSI_OBJECT_PRESENCESIMULATION_WEEK_T_H

#include <QMap>
#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"
#include "database/presencesimulation/psi_node_map_t.h"
#include "database/presencesimulation/psi_object_presencesimulation_day_t.h"

#include "database/database_export.h"

namespace database {
namespace presencesimulation {

/// The recorded week: its days that hold hours, by weekday number (Monday 1).
class DATABASE_EXPORT psi_object_presencesimulation_week_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(database::presencesimulation::presencesimulation_days_map days READ getDays WRITE setDays
                   NOTIFY daysChanged)

public:
    Q_INVOKABLE explicit psi_object_presencesimulation_week_t(QObject* parent = nullptr);
    /// Deep; the copy has no parent.
    psi_object_presencesimulation_week_t(psi_object_presencesimulation_week_t const& other);

    /// Day numbers below 8: day 0 is accepted here, though no topic reaches it.
    static bool isValid(int day);

    presencesimulation_days_map getDays() const { return days.get(); }
    void setDays(presencesimulation_days_map const& map);

    psi_object_presencesimulation_day_t* getDay(int day) const { return days.get(day); }
    /// 0 for an invalid day; otherwise the week owns child from now on.
    int add(int day, psi_object_presencesimulation_day_t* child) { return days.add(day, child); }
    int remove(int day) { return days.remove(day); }
    /// Drops the days that are empty once cleaned; how many remain.
    int clean() { return days.clean(); }

    void retopic(QString const& _topic);

    bool operator==(psi_object_presencesimulation_week_t const& other) const { return days == other.days; }

Q_SIGNALS:
    void daysChanged(database::presencesimulation::presencesimulation_days_map);

private:
    psi_node_map_t<psi_object_presencesimulation_day_t> days{this, QStringLiteral("days"), &isValid};
};

} // namespace presencesimulation
} // namespace database

#endif // DATABASE_PRESENCESIMULATION_PSI_OBJECT_PRESENCESIMULATION_WEEK_T_H
