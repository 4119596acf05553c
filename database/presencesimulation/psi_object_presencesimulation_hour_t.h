#ifndef DATABASE_PRESENCESIMULATION_PSI_OBJECT_PRESENCESIMULATION_HOUR_T_H
#define DATABASE_PRESENCESIMULATION_PSI_OBJECT_PRESENCESIMULATION_HOUR_T_H

#include <QMap>
#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"
#include "database/presencesimulation/psi_node_map_t.h"
#include "database/presencesimulation/psi_object_presencesimulation_minute_t.h"

#include "database/database_export.h"

namespace database {
namespace presencesimulation {

/// One hour of the recorded week: its minutes that hold actions, by minute number.
class DATABASE_EXPORT psi_object_presencesimulation_hour_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(database::presencesimulation::presencesimulation_minute_map minutes READ getMinutes WRITE setMinutes
                   NOTIFY minutesChanged)

public:
    Q_INVOKABLE explicit psi_object_presencesimulation_hour_t(QObject* parent = nullptr);
    /// Deep; the copy has no parent.
    psi_object_presencesimulation_hour_t(psi_object_presencesimulation_hour_t const& other);

    /// Minute numbers below 60.
    static bool isValid(int minute);

    presencesimulation_minute_map getMinutes() const { return minutes.get(); }
    void setMinutes(presencesimulation_minute_map const& map);

    psi_object_presencesimulation_minute_t* getMinute(int minute) const { return minutes.get(minute); }
    /// 0 for an invalid minute; otherwise the hour owns child from now on.
    int add(int minute, psi_object_presencesimulation_minute_t* child) { return minutes.add(minute, child); }
    /// Sets one action, creating the minute when needed; 0 for an invalid minute.
    int add(int minute, QString const& item, QString const& value);
    int remove(int minute) { return minutes.remove(minute); }
    /// Drops the minutes without actions; how many remain.
    int clean() { return minutes.clean(); }

    void retopic(QString const& _topic);

    bool operator==(psi_object_presencesimulation_hour_t const& other) const { return minutes == other.minutes; }

Q_SIGNALS:
    void minutesChanged(database::presencesimulation::presencesimulation_minute_map);

private:
    psi_node_map_t<psi_object_presencesimulation_minute_t> minutes{this, QStringLiteral("minutes"), &isValid};
};

typedef QMap<QString, psi_object_presencesimulation_hour_t*> presencesimulation_hour_map;

} // namespace presencesimulation
} // namespace database

#endif // DATABASE_PRESENCESIMULATION_PSI_OBJECT_PRESENCESIMULATION_HOUR_T_H
