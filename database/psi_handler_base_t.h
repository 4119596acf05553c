#ifndef DATABASE_PSI_HANDLER_BASE_T_H
#define DATABASE_PSI_HANDLER_BASE_T_H

#include <QByteArray>
#include <QJsonObject>
#include <QMap>
#include <QObject>
#include <QString>

#include "database/handler_frame_t.h"

#include "database/database_export.h"

namespace database {

class database_t;
namespace presencesimulation {
class presencesimulation_t;
class psi_data_t;
}

/**
 * What the presence simulation request and status handlers share: both apply
 * the packets of the week the same way, and differ only in the router
 * signals they take (and so in the names of their slots) and in their name.
 * Each of their slots hands its packet to one apply operation here, which
 * runs it in the handler frame under the engine's access mutex.
 */
class DATABASE_EXPORT psi_handler_base_t : public QObject
{
    Q_OBJECT
public:
    /// Connects, or disconnects, the router's signals of this handler's kind
    /// to the slots of the same names, queued.
    void initRequestEvent(bool connect);

    database_t* getDatabase() const { return database; }
    presencesimulation::presencesimulation_t* getEngine() const { return engine; }

protected:
    /// signalPrefix selects the router's signals of this kind, "onPresencesimulationRequest" for one.
    psi_handler_base_t(QString const& name, QByteArray const& signalPrefix, char const* source, database_t* database,
                       presencesimulation::presencesimulation_t* engine, QObject* parent);

    void applyAction(char const* slot, QJsonObject const& packet, int day, int hour, int minute,
                     QString const& key);
    void applyActions(char const* slot, QJsonObject const& packet, int day, int hour, int minute);
    void applyMinute(char const* slot, QJsonObject const& packet, int day, int hour, int minute);
    void applyMinutes(char const* slot, QJsonObject const& packet, int day, int hour);
    void applyHour(char const* slot, QJsonObject const& packet, int day, int hour);
    void applyHours(char const* slot, QJsonObject const& packet, int day);
    void applyDay(char const* slot, QJsonObject const& packet, int day);
    void applyDays(char const* slot, QJsonObject const& packet);
    void applyWeek(char const* slot, QJsonObject const& packet);
    void applyDatabase(char const* slot, QJsonObject const& packet);

private:
    /// The frame of every slot: lock, trace, and body with the tree, if there is one.
    template<class Body>
    void handle(char const* slot, QJsonObject const& packet, Body body);
    /// The frame for a payload that is one node of class T, handed to apply;
    /// a null payload is a null node, which removes.
    template<class T, class Apply>
    void handleNode(char const* slot, QJsonObject const& packet, Apply apply);
    /// The frame for a payload of nodes of class T by number, each handed to
    /// apply, then publish once.
    template<class T, class Apply, class Publish>
    void handleNodes(char const* slot, QJsonObject const& packet, Apply apply, Publish publish);

    handler_frame_t frame;
    database_t* database = nullptr;
    presencesimulation::presencesimulation_t* engine = nullptr;
    QByteArray signalPrefix;
};

} // namespace database

#endif // DATABASE_PSI_HANDLER_BASE_T_H
