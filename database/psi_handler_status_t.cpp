#include "database/psi_handler_status_t.h"

namespace database {

psi_handler_status_t::psi_handler_status_t(database_t* _database,
                                           presencesimulation::presencesimulation_t* _engine, QObject* parent)
    : psi_handler_base_t(QStringLiteral("psi_handler_status"), "onPresencesimulationStatus", "psi_handler_status_t",
                         _database, _engine, parent)
{
    // Here and not in the base: only now are this class's slots known.
    initRequestEvent(true);
}

psi_handler_status_t::~psi_handler_status_t()
{
    initRequestEvent(false);
}

void psi_handler_status_t::onPresencesimulationStatusAction(QJsonObject _packet, int _day, int _hour, int _minute,
                                                            QString _key_item)
{
    applyAction("onPresencesimulationStatusAction", _packet, _day, _hour, _minute, _key_item);
}

void psi_handler_status_t::onPresencesimulationStatusActions(QJsonObject _packet, int _day, int _hour, int _minute)
{
    applyActions("onPresencesimulationStatusActions", _packet, _day, _hour, _minute);
}

void psi_handler_status_t::onPresencesimulationStatusMinute(QJsonObject _packet, int _day, int _hour, int _minute)
{
    applyMinute("onPresencesimulationStatusMinute", _packet, _day, _hour, _minute);
}

void psi_handler_status_t::onPresencesimulationStatusMinutes(QJsonObject _packet, int _day, int _hour)
{
    applyMinutes("onPresencesimulationStatusMinutes", _packet, _day, _hour);
}

void psi_handler_status_t::onPresencesimulationStatusHour(QJsonObject _packet, int _day, int _hour)
{
    applyHour("onPresencesimulationStatusHour", _packet, _day, _hour);
}

void psi_handler_status_t::onPresencesimulationStatusHours(QJsonObject _packet, int _day)
{
    applyHours("onPresencesimulationStatusHours", _packet, _day);
}

void psi_handler_status_t::onPresencesimulationStatusDay(QJsonObject _packet, int _day)
{
    applyDay("onPresencesimulationStatusDay", _packet, _day);
}

void psi_handler_status_t::onPresencesimulationStatusDays(QJsonObject _packet)
{
    applyDays("onPresencesimulationStatusDays", _packet);
}

void psi_handler_status_t::onPresencesimulationStatusWeek(QJsonObject _packet)
{
    applyWeek("onPresencesimulationStatusWeek", _packet);
}

void psi_handler_status_t::onPresencesimulationStatusDB(QJsonObject _packet)
{
    applyDatabase("onPresencesimulationStatusDB", _packet);
}

} // namespace database
