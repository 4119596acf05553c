#include "database/presencesimulation/psi_handler_topic_t.h"

#include <QRegExp>

#include "database/base/literals.h"
#include "platform/logs/classlogs.h"

namespace database {
namespace presencesimulation {

psi_handler_topic_t::psi_handler_topic_t(QObject* parent)
    : QObject(parent)
    , statusRoutes(literals::status_presencesimulation)
    , requestRoutes(literals::request_presencesimulation)
{
    CLASSLOGS_LOG(QStringLiteral("Starting presencesimulation topic handler engine ..."), ::utility::logs::trace,
                  QStringLiteral("psi_handler_topic_t"));
    initUpdateSignals();
}

base::topic_routes_t const& psi_handler_topic_t::routes(form_t form) const
{
    switch (form) {
    case Change: return changeRoutes;
    case Status: return statusRoutes;
    case Request: break;
    }
    return requestRoutes;
}

template<class Signal>
void psi_handler_topic_t::addRoute(QString const& shape, Signal change, Signal status, Signal request)
{
    QString const tail = QLatin1Char('/') + shape + QLatin1Char('$');
    changeRoutes.insertCaptures(QLatin1Char('^') + shape + QLatin1Char('$'), this, change);
    statusRoutes.insertCaptures(literals::status_presencesimulation + tail, this, status);
    requestRoutes.insertCaptures(literals::request_presencesimulation + tail, this, request);
}

void psi_handler_topic_t::initUpdateSignals()
{
    using T = psi_handler_topic_t;
    // Each shape is the one before it cut at its end. Their numbers of steps
    // differ, so no topic matches two of them and the order of trial, the
    // order of the patterns' texts, decides nothing.
    QString const week = QStringLiteral("week");
    QString const days = week + QStringLiteral("/days");
    QString const day = days + QStringLiteral("/([1-7])");
    QString const hours = day + QStringLiteral("/hours");
    QString const hour = hours + QStringLiteral("/([0-9]|[0-1][0-9]|2[0-3])");
    QString const minutes = hour + QStringLiteral("/minutes");
    QString const minute = minutes + QStringLiteral("/([0-5]?[0-9])");
    QString const actions = minute + QStringLiteral("/actions");
    QString const action = actions + QStringLiteral("/([\\w]+)");

    addRoute(action, &T::onPresencesimulationChangeAction, &T::onPresencesimulationStatusAction,
             &T::onPresencesimulationRequestAction);
    addRoute(actions, &T::onPresencesimulationChangeActions, &T::onPresencesimulationStatusActions,
             &T::onPresencesimulationRequestActions);
    addRoute(minute, &T::onPresencesimulationChangeMinute, &T::onPresencesimulationStatusMinute,
             &T::onPresencesimulationRequestMinute);
    addRoute(minutes, &T::onPresencesimulationChangeMinutes, &T::onPresencesimulationStatusMinutes,
             &T::onPresencesimulationRequestMinutes);
    addRoute(hour, &T::onPresencesimulationChangeHour, &T::onPresencesimulationStatusHour,
             &T::onPresencesimulationRequestHour);
    addRoute(hours, &T::onPresencesimulationChangeHours, &T::onPresencesimulationStatusHours,
             &T::onPresencesimulationRequestHours);
    addRoute(day, &T::onPresencesimulationChangeDay, &T::onPresencesimulationStatusDay,
             &T::onPresencesimulationRequestDay);
    addRoute(days, &T::onPresencesimulationChangeDays, &T::onPresencesimulationStatusDays,
             &T::onPresencesimulationRequestDays);
    addRoute(week, &T::onPresencesimulationChangeWeek, &T::onPresencesimulationStatusWeek,
             &T::onPresencesimulationRequestWeek);
    addRoute(literals::topic_database, &T::onPresencesimulationChangeDB, &T::onPresencesimulationStatusDB,
             &T::onPresencesimulationRequestDB);
    // Only asked for, never a change nor a status.
    requestRoutes.insertCaptures(literals::request_presencesimulation + QStringLiteral("/getData$"), this,
                                 &T::onPresencesimulationRequestGetData);
}

bool psi_handler_topic_t::whoIsRequest(QJsonObject const& packet, bool emitSignal)
{
    return requestRoutes.dispatch("whoIsRequest", packet, emitSignal);
}

bool psi_handler_topic_t::whoIsStatus(QJsonObject const& packet, bool emitSignal)
{
    return statusRoutes.dispatch("whoIsStatus", packet, emitSignal);
}

bool psi_handler_topic_t::whoIsChange(QJsonObject const& packet, bool emitSignal, bool emitSomething)
{
    base::topic_routes_t::on_match_t something;
    if (emitSomething)
        something = [this](QJsonObject const& p) { Q_EMIT onPresencesimulationUpdatedSomething(p); };
    return changeRoutes.dispatch("whoIsChange", packet, emitSignal, something);
}

bool psi_handler_topic_t::execRegex(QString const& regex, QString const& topic, QStringList& captures)
{
    QRegExp pattern(regex, Qt::CaseSensitive, QRegExp::RegExp);
    if (!pattern.exactMatch(topic))
        return false;
    captures = pattern.capturedTexts();
    return true;
}

} // namespace presencesimulation
} // namespace database
