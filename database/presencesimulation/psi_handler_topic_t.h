#ifndef DATABASE_PRESENCESIMULATION_PSI_HANDLER_TOPIC_T_H
#define DATABASE_PRESENCESIMULATION_PSI_HANDLER_TOPIC_T_H

#include <QJsonObject>
#include <QObject>
#include <QString>
#include <QStringList>

#include "database/base/topic_routes_t.h"

#include "database/database_export.h"

namespace database {
namespace presencesimulation {

/**
 * Decides what a packet of the presence simulation database is about, and
 * raises one signal for it with the day, hour and minute of the topic as
 * numbers and, for a single action, the item's key.
 *
 * The request signals feed psi_handler_request_t, the status signals
 * psi_handler_status_t; the change signals are for the host. Each shape of
 * topic has a relative change pattern and the same tail under
 * "status/DB/presencesimulation" and "request/DB/presencesimulation".
 */
class DATABASE_EXPORT psi_handler_topic_t : public QObject
{
    Q_OBJECT
public:
    /// The routing tables, one per form of topic.
    enum form_t { Change, Status, Request };

    explicit psi_handler_topic_t(QObject* parent = nullptr);

    /// Routes a request packet; with emitSignal false it only tells whether it can.
    bool whoIsRequest(QJsonObject const& packet, bool emitSignal = true);
    /// Routes a status packet; with emitSignal false it only tells whether it can.
    bool whoIsStatus(QJsonObject const& packet, bool emitSignal = true);
    /// Routes a change packet; emitSomething also raises onPresencesimulationUpdatedSomething.
    bool whoIsChange(QJsonObject const& packet, bool emitSignal = true, bool emitSomething = true);

    /// Whether regex matches the whole topic; captures then holds the whole
    /// topic at index 0 and the captures after it.
    static bool execRegex(QString const& regex, QString const& topic, QStringList& captures);

    /// The table of one form, as tests read it.
    base::topic_routes_t const& routes(form_t form) const;

Q_SIGNALS:
    void onPresencesimulationUpdatedSomething(QJsonObject _packet);

    // Changes of this process, for the host.
    void onPresencesimulationChangeAction(QJsonObject _packet, int _day, int _hour, int _minute, QString _key_item);
    void onPresencesimulationChangeActions(QJsonObject _packet, int _day, int _hour, int _minute);
    void onPresencesimulationChangeMinute(QJsonObject _packet, int _day, int _hour, int _minute);
    void onPresencesimulationChangeMinutes(QJsonObject _packet, int _day, int _hour);
    void onPresencesimulationChangeHour(QJsonObject _packet, int _day, int _hour);
    void onPresencesimulationChangeHours(QJsonObject _packet, int _day);
    void onPresencesimulationChangeDay(QJsonObject _packet, int _day);
    void onPresencesimulationChangeDays(QJsonObject _packet);
    void onPresencesimulationChangeWeek(QJsonObject _packet);
    void onPresencesimulationChangeDB(QJsonObject _packet);
    // Status packets from the owner of the week.
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
    // Requests to change the week.
    void onPresencesimulationRequestAction(QJsonObject _packet, int _day, int _hour, int _minute, QString _key_item);
    void onPresencesimulationRequestActions(QJsonObject _packet, int _day, int _hour, int _minute);
    void onPresencesimulationRequestMinute(QJsonObject _packet, int _day, int _hour, int _minute);
    void onPresencesimulationRequestMinutes(QJsonObject _packet, int _day, int _hour);
    void onPresencesimulationRequestHour(QJsonObject _packet, int _day, int _hour);
    void onPresencesimulationRequestHours(QJsonObject _packet, int _day);
    void onPresencesimulationRequestDay(QJsonObject _packet, int _day);
    void onPresencesimulationRequestDays(QJsonObject _packet);
    void onPresencesimulationRequestWeek(QJsonObject _packet);
    void onPresencesimulationRequestDB(QJsonObject _packet);
    void onPresencesimulationRequestGetData(QJsonObject _packet);

private:
    template<class Signal>
    void addRoute(QString const& shape, Signal change, Signal status, Signal request);
    void initUpdateSignals();

    base::topic_routes_t changeRoutes;
    base::topic_routes_t statusRoutes;
    base::topic_routes_t requestRoutes;
};

} // namespace presencesimulation
} // namespace database

#endif // DATABASE_PRESENCESIMULATION_PSI_HANDLER_TOPIC_T_H
