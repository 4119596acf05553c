#include "database/psi_handler_request_t.h"

namespace database {

psi_handler_request_t::psi_handler_request_t(database_t* _database,
                                             presencesimulation::presencesimulation_t* _engine, QObject* parent)
    : psi_handler_base_t(QStringLiteral("psi_handler_request"), "onPresencesimulationRequest", "psi_handler_request_t",
                         _database, _engine, parent)
{
    // Here and not in the base: only now are this class's slots known.
    initRequestEvent(true);
}

psi_handler_request_t::~psi_handler_request_t()
{
    initRequestEvent(false);
}

void psi_handler_request_t::onPresencesimulationRequestAction(QJsonObject _packet, int _day, int _hour, int _minute,
                                                              QString _key_item)
{
    applyAction("onPresencesimulationRequestAction", _packet, _day, _hour, _minute, _key_item);
}

void psi_handler_request_t::onPresencesimulationRequestActions(QJsonObject _packet, int _day, int _hour, int _minute)
{
    applyActions("onPresencesimulationRequestActions", _packet, _day, _hour, _minute);
}

void psi_handler_request_t::onPresencesimulationRequestMinute(QJsonObject _packet, int _day, int _hour, int _minute)
{
    applyMinute("onPresencesimulationRequestMinute", _packet, _day, _hour, _minute);
}

void psi_handler_request_t::onPresencesimulationRequestMinutes(QJsonObject _packet, int _day, int _hour)
{
    applyMinutes("onPresencesimulationRequestMinutes", _packet, _day, _hour);
}

void psi_handler_request_t::onPresencesimulationRequestHour(QJsonObject _packet, int _day, int _hour)
{
    applyHour("onPresencesimulationRequestHour", _packet, _day, _hour);
}

void psi_handler_request_t::onPresencesimulationRequestHours(QJsonObject _packet, int _day)
{
    applyHours("onPresencesimulationRequestHours", _packet, _day);
}

void psi_handler_request_t::onPresencesimulationRequestDay(QJsonObject _packet, int _day)
{
    applyDay("onPresencesimulationRequestDay", _packet, _day);
}

void psi_handler_request_t::onPresencesimulationRequestDays(QJsonObject _packet)
{
    applyDays("onPresencesimulationRequestDays", _packet);
}

void psi_handler_request_t::onPresencesimulationRequestWeek(QJsonObject _packet)
{
    applyWeek("onPresencesimulationRequestWeek", _packet);
}

} // namespace database
