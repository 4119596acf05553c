#ifndef DATABASE_PSI_HANDLER_STATUS_T_H
#define DATABASE_PSI_HANDLER_STATUS_T_H

#include <QJsonObject>
#include <QObject>
#include <QString>

#include "database/psi_handler_base_t.h"

#include "database/database_export.h"

namespace database {

/**
 * Applies the status packets of the presence simulation database in the
 * processes that follow the owner of the week: one slot per status route of
 * the router, the whole database included. The façade creates it with the
 * engine it holds; the handler connects itself to the engine's router at once.
 */
class DATABASE_EXPORT psi_handler_status_t : public psi_handler_base_t
{
    Q_OBJECT
public:
    /// database may be null: nothing here reads it.
    psi_handler_status_t(database_t* database, presencesimulation::presencesimulation_t* engine,
                         QObject* parent = nullptr);
    ~psi_handler_status_t() override;

public Q_SLOTS:
    void onPresencesimulationStatusAction(QJsonObject _packet, int _day, int _hour, int _minute, QString _key_item);
    void onPresencesimulationStatusActions(QJsonObject _packet, int _day, int _hour, int _minute);
    void onPresencesimulationStatusMinute(QJsonObject _packet, int _day, int _hour, int _minute);
    void onPresencesimulationStatusMinutes(QJsonObject _packet, int _day, int _hour);
    void onPresencesimulationStatusHour(QJsonObject _packet, int _day, int _hour);
    void onPresencesimulationStatusHours(QJsonObject _packet, int _day);
    void onPresencesimulationStatusDay(QJsonObject _packet, int _day);
    void onPresencesimulationStatusDays(QJsonObject _packet);
    void onPresencesimulationStatusWeek(QJsonObject _packet);
    void onPresencesimulationStatusDB(QJsonObject _packet);
};

} // namespace database

#endif // DATABASE_PSI_HANDLER_STATUS_T_H
