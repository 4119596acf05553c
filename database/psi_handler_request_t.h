#ifndef DATABASE_PSI_HANDLER_REQUEST_T_H
#define DATABASE_PSI_HANDLER_REQUEST_T_H

#include <QJsonObject>
#include <QObject>
#include <QString>

#include "database/psi_handler_base_t.h"

#include "database/database_export.h"

namespace database {

/**
 * Applies the requests of the presence simulation database in the process
 * that owns the week: one slot per request route of the router. The façade
 * creates it with the engine it holds; the handler connects itself to the
 * engine's router at once.
 */
class DATABASE_EXPORT psi_handler_request_t : public psi_handler_base_t
{
    Q_OBJECT
public:
    /// database may be null: nothing here reads it.
    psi_handler_request_t(database_t* database, presencesimulation::presencesimulation_t* engine,
                          QObject* parent = nullptr);
    ~psi_handler_request_t() override;

public Q_SLOTS:
    void onPresencesimulationRequestAction(QJsonObject _packet, int _day, int _hour, int _minute, QString _key_item);
    void onPresencesimulationRequestActions(QJsonObject _packet, int _day, int _hour, int _minute);
    void onPresencesimulationRequestMinute(QJsonObject _packet, int _day, int _hour, int _minute);
    void onPresencesimulationRequestMinutes(QJsonObject _packet, int _day, int _hour);
    void onPresencesimulationRequestHour(QJsonObject _packet, int _day, int _hour);
    void onPresencesimulationRequestHours(QJsonObject _packet, int _day);
    void onPresencesimulationRequestDay(QJsonObject _packet, int _day);
    void onPresencesimulationRequestDays(QJsonObject _packet);
    void onPresencesimulationRequestWeek(QJsonObject _packet);
};

} // namespace database

#endif // DATABASE_PSI_HANDLER_REQUEST_T_H
