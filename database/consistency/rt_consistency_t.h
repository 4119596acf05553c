#ifndef DATABASE_CONSISTENCY_RT_CONSISTENCY_T_H
#define DATABASE_CONSISTENCY_RT_CONSISTENCY_T_H

#include <QObject>
#include <QString>

#include "platform/logs/classlogs.h"

#include "database/database_export.h"

namespace database {

class database_t;
class rt_twin_t;
namespace persistent {
class ps_data_t;
}
namespace realtime {
class realtime_t;
class rt_data_t;
} // namespace realtime

/**
 * Brings the realtime tree in step with the persistent one: every configured
 * item, thermostat, scenario and bus has its live twin, and no twin outlives
 * its configuration; live values stay where the twin stays. It never touches
 * the persistent side.
 *
 * It runs on the caller's thread and holds both engines' access mutexes, in
 * their order, while it walks.
 */
class DATABASE_EXPORT rt_consistency_t : public QObject
{
    Q_OBJECT
public:
    explicit rt_consistency_t(database_t* database, QObject* parent = nullptr);

Q_SIGNALS:
    void onRealtimeConsistencyStep(int _step, int _numberstep, QString _field, QString _message);

public Q_SLOTS:
    /// softreset first empties the sections that a twin may be rebuilt in;
    /// _save asks the host to save when a check changed something.
    void check(bool softreset, bool _save);

private:
    // Each answers whether it changed the live tree.
    bool check_item(bool softreset);
    bool check_thermo(bool softreset);
    bool check_astronomical(bool softreset);
    bool check_driver_knx(bool softreset, bool save);
    bool check_driver_baos(bool softreset, bool save);
    bool check_driver_internal(bool softreset, bool save);
    bool check_notify();
    bool check_rules(bool softreset, bool save);
    bool check_scenary(bool softreset, bool save);
    bool check_schedulers(bool softreset, bool save);
    bool check_system(bool softreset, bool save);

    /// Asks the host to save the realtime database.
    void requestSave() const;
    /// Asks for the save when save is set and something changed; gives changed.
    bool saveIf(bool save, bool changed) const;
    void log(QString const& message, ::utility::logs::LogLevel level, char const* source) const;

    database_t* database = nullptr;
    // The trees and the twin keeper of the run in progress, under both mutexes.
    persistent::ps_data_t* configured = nullptr;
    realtime::realtime_t* engine = nullptr;
    realtime::rt_data_t* live = nullptr;
    rt_twin_t const* twin = nullptr;
};

} // namespace database

#endif // DATABASE_CONSISTENCY_RT_CONSISTENCY_T_H
