#include "database/psi_handler_base_t.h"

#include <QJsonValue>

#include "database/presencesimulation/presencesimulation_t.h"

namespace database {

using namespace presencesimulation;

namespace {

// What the week stores of any payload: a null one, or one without a text
// form, is the empty text that removes the action.
QString asText(QJsonValue const& value)
{
    return value.toVariant().toString();
}

} // namespace

psi_handler_base_t::psi_handler_base_t(QString const& name, QByteArray const& _signalPrefix, char const* source,
                                       database_t* _database, presencesimulation_t* _engine, QObject* parent)
    : QObject(parent)
    , frame(name)
    , database(_database)
    , engine(_engine)
    , signalPrefix(_signalPrefix)
{
    frame.log(QStringLiteral("Starting presencesimulation topic handler engine ..."), ::utility::logs::trace, source);
}

void psi_handler_base_t::initRequestEvent(bool connect)
{
    frame.log(QStringLiteral("[") + frame.getName() + QStringLiteral("] ")
                  + (connect ? QStringLiteral("Connection signal-slots database part")
                             : QStringLiteral("Disconnection signal-slots database part")),
              ::utility::logs::trace, "initRequestEvent");
    if (engine)
        handler_frame_t::connectByName(engine->getHandlerTopic(), this, signalPrefix, connect);
}

template<class Body>
void psi_handler_base_t::handle(char const* slot, QJsonObject const& packet, Body body)
{
    frame.run(engine->getAccessMutex(), slot, packet, [&] {
        if (psi_data_t* tree = engine->getData())
            body(tree);
        return false;
    });
}

template<class T, class Apply>
void psi_handler_base_t::handleNode(char const* slot, QJsonObject const& packet, Apply apply)
{
    handle(slot, packet, [&](psi_data_t* tree) {
        T* object = nullptr;
        // A null payload is a null node, which removes.
        if (packet.value(QStringLiteral("payload")).isNull() || frame.payloadObject(packet, object, slot))
            apply(tree, object);
    });
}

template<class T, class Apply, class Publish>
void psi_handler_base_t::handleNodes(char const* slot, QJsonObject const& packet, Apply apply, Publish publish)
{
    handle(slot, packet, [&](psi_data_t* tree) {
        QMap<QString, T*> nodes;
        if (!packet.value(QStringLiteral("payload")).isNull() && !frame.payloadMap(packet, nodes, slot))
            return;
        for (auto it = nodes.begin(); it != nodes.end(); ++it) {
            bool ok = false;
            int const number = it.key().toInt(&ok, 10);
            // Out of every node's range, so the week refuses it rather than taking it for 0.
            apply(tree, ok ? number : -1, it.value());
        }
        publish(tree);
    });
}

void psi_handler_base_t::applyAction(char const* slot, QJsonObject const& packet, int day, int hour, int minute,
                                     QString const& key)
{
    handle(slot, packet, [&](psi_data_t* tree) {
        tree->update_action(day, hour, minute, key, asText(packet.value(QStringLiteral("payload"))), true);
    });
}

void psi_handler_base_t::applyActions(char const* slot, QJsonObject const& packet, int day, int hour, int minute)
{
    handle(slot, packet, [&](psi_data_t* tree) {
        QJsonObject const actions = packet.value(QStringLiteral("payload")).toObject();
        for (auto it = actions.begin(); it != actions.end(); ++it)
            tree->update_action(day, hour, minute, it.key(), asText(it.value()), false);
        tree->send_update_minute(day, hour, minute);
    });
}

void psi_handler_base_t::applyMinute(char const* slot, QJsonObject const& packet, int day, int hour, int minute)
{
    handleNode<psi_data_t::minute_t>(slot, packet, [&](psi_data_t* tree, psi_data_t::minute_t* object) {
        tree->update_minute(day, hour, minute, object, true);
    });
}

void psi_handler_base_t::applyMinutes(char const* slot, QJsonObject const& packet, int day, int hour)
{
    handleNodes<psi_data_t::minute_t>(
        slot, packet,
        [&](psi_data_t* tree, int minute, psi_data_t::minute_t* object) {
            tree->update_minute(day, hour, minute, object, false);
        },
        [&](psi_data_t* tree) { tree->send_update_hour(day, hour); });
}

void psi_handler_base_t::applyHour(char const* slot, QJsonObject const& packet, int day, int hour)
{
    handleNode<psi_data_t::hour_t>(slot, packet, [&](psi_data_t* tree, psi_data_t::hour_t* object) {
        tree->update_hour(day, hour, object, true);
    });
}

void psi_handler_base_t::applyHours(char const* slot, QJsonObject const& packet, int day)
{
    handleNodes<psi_data_t::hour_t>(
        slot, packet,
        [&](psi_data_t* tree, int hour, psi_data_t::hour_t* object) { tree->update_hour(day, hour, object, false); },
        [&](psi_data_t* tree) { tree->send_update_day(day); });
}

void psi_handler_base_t::applyDay(char const* slot, QJsonObject const& packet, int day)
{
    handleNode<psi_data_t::day_t>(slot, packet, [&](psi_data_t* tree, psi_data_t::day_t* object) {
        tree->update_day(day, object, true);
    });
}

void psi_handler_base_t::applyDays(char const* slot, QJsonObject const& packet)
{
    handleNodes<psi_data_t::day_t>(
        slot, packet,
        [&](psi_data_t* tree, int day, psi_data_t::day_t* object) { tree->update_day(day, object, false); },
        [&](psi_data_t* tree) { tree->send_update(); });
}

void psi_handler_base_t::applyWeek(char const* slot, QJsonObject const& packet)
{
    handleNode<psi_data_t::week_t>(slot, packet, [&](psi_data_t* tree, psi_data_t::week_t* object) {
        tree->update(object, true);
    });
}

void psi_handler_base_t::applyDatabase(char const* slot, QJsonObject const& packet)
{
    // Replaces the tree as a whole, so it doesn't need one to be there.
    frame.run(engine->getAccessMutex(), slot, packet, [&] {
        engine->update_database(packet.value(QStringLiteral("payload")).toObject(), true);
        return false;
    });
}

} // namespace database
