#include "database/rt_handler_status_t.h"

#include "database/base/literals.h"
#include "database/database_t.h"
#include "database/realtime/dbs/rt_items_t.h"
#include "database/realtime/dbs/rt_thermo_t.h"
#include "database/realtime/realtime_t.h"
#include "database/realtime/rt_data_t.h"

namespace database {

using namespace realtime;
using namespace realtime::dbs;
using namespace realtime::objects;

namespace {

QStringList topicParts(QString const& topic)
{
    return topic.trimmed().split(QLatin1Char('/'), Qt::SkipEmptyParts);
}

} // namespace

rt_handler_status_t::rt_handler_status_t(database_t* _database, QObject* parent)
    : QObject(parent)
    , database(_database)
    , engine(_database ? _database->getRealtime() : nullptr)
{
    // The word "persistent" is what other processes' logs have always shown here.
    frame.log(QStringLiteral("Starting persistent topic handler engine ..."), ::utility::logs::trace,
              "rt_handler_status_t");
    initStatusEvent(true);
}

rt_handler_status_t::rt_handler_status_t(rt_handler_status_t const& other)
    : QObject(nullptr)
    , database(other.database)
    , engine(other.engine)
{
    initStatusEvent(true);
}

rt_handler_status_t::~rt_handler_status_t()
{
    initStatusEvent(false);
}

void rt_handler_status_t::initStatusEvent(bool connect)
{
    frame.log(connect ? QStringLiteral("Connection signal-slots database part")
                      : QStringLiteral("Disconnection signal-slots database part"),
              ::utility::logs::trace, "initStatusEvent");
    if (!engine)
        return;
    handler_frame_t::connectByName(engine->getHandlerTopic(), this, "onRealtimeStatus", connect, {},
                                   Qt::ConnectionType(Qt::QueuedConnection | Qt::UniqueConnection));
}

template<class Body>
void rt_handler_status_t::handle(char const* slot, QJsonObject const& packet, Body body)
{
    frame.run(engine->getAccessMutex(), slot, packet, [&] {
        if (engine->getData())
            body(engine->getData());
        return false;
    });
}

void rt_handler_status_t::onRealtimeStatusDatabase(QJsonObject _packet)
{
    handle("onRealtimeStatusDatabase", _packet, [&](rt_data_t*) {
        engine->update_database(_packet.value(QStringLiteral("payload")).toObject(), true);
    });
}

void rt_handler_status_t::onRealtimeStatusItems(QJsonObject _packet)
{
    handle("onRealtimeStatusItems", _packet, [&](rt_data_t* data) {
        rt_items_map map;
        if (frame.payloadMap(_packet, map, "onRealtimeStatusItems"))
            data->getItems()->update_item(map, true);
    });
}

void rt_handler_status_t::onRealtimeStatusItem(QJsonObject _packet, QString _key)
{
    handle("onRealtimeStatusItem", _packet, [&](rt_data_t* data) {
        rt_items_t* items = data->getItems();
        QJsonValue const payload = _packet.value(QStringLiteral("payload"));
        QStringList parts = topicParts(_packet.value(QStringLiteral("topic")).toString());
        QString const last = parts.isEmpty() ? QString() : parts.takeLast();
        if (last == QLatin1String("value")) {
            if (items->getObjects().contains(_key))
                items->list(_key)->update_value(payload.toString(), true);
            return;
        }
        // The last step is gone already: a topic ending in ".../K/feedback"
        // names the key here and replaces the whole item, as it always has.
        QString const next = parts.isEmpty() ? QString() : parts.takeLast();
        if (next == QLatin1String("feedback")) {
            if (items->getObjects().contains(_key))
                items->list(_key)->update_feedback(payload.toString(), true);
            return;
        }
        rt_object_item_t* object = nullptr;
        if (frame.payloadObject(_packet, object, "onRealtimeStatusItem", true, false))
            items->update_item(_key, object, true);
    });
}

void rt_handler_status_t::onRealtimeStatusThermos(QJsonObject _packet)
{
    handle("onRealtimeStatusThermos", _packet, [&](rt_data_t* data) {
        rt_thermostat_map map;
        if (frame.payloadMap(_packet, map, "onRealtimeStatusThermos"))
            data->getThermo()->update(map, true);
    });
}

void rt_handler_status_t::onRealtimeStatusThermo(QJsonObject _packet, QString _key)
{
    handle("onRealtimeStatusThermo", _packet, [&](rt_data_t* data) {
        rt_thermo_t* thermo = data->getThermo();
        QString const topic = _packet.value(QStringLiteral("topic")).toString().trimmed().replace(
            literals::status_realtime + QLatin1Char('/'), QString());
        QStringList const parts = topicParts(topic);
        QJsonValue const payload = _packet.value(QStringLiteral("payload"));
        if (thermo->getObjects().contains(_key) && parts.size() == 5) {
            float const value = float(payload.toDouble(-1.0));
            if (value < 0)
                return;
            QString const& group = parts.at(3);
            QString const& field = parts.at(4);
            bool const isMode = field == QLatin1String("mode") || field == QLatin1String("forceFan");
            if (group == QLatin1String("thermo")) {
                rt_object_thermo_t* half = thermo->list(_key)->getThermo();
                if (field == QLatin1String("setpoint"))
                    half->update_setpoint(value, true);
                else if (field == QLatin1String("season"))
                    half->update_season(int(value), true);
                else if (field == QLatin1String("fan"))
                    half->update_fan(int(value), true);
                else if (isMode) // "forceFan" sets the mode: other processes rely on it
                    half->update_mode(int(value), true);
            } else if (group == QLatin1String("hydro")) {
                rt_object_hydro_t* half = thermo->list(_key)->getHydro();
                if (field == QLatin1String("setpoint"))
                    half->update_set(value, true);
                else if (field == QLatin1String("fan"))
                    half->update_fan(int(value), true);
                else if (isMode)
                    half->update_mode(int(value), true);
            }
            return;
        }
        if (!topic.startsWith(literals::key_thermo + QStringLiteral("/objects_list")))
            return;
        if (parts.size() == 4 && parts.at(3) == QLatin1String("thermo")) {
            rt_object_thermo_t* object = nullptr;
            if (frame.payloadObject(_packet, object, "onRealtimeStatusThermo", true, false))
                thermo->update_thermo(_key, object, true);
        } else if (parts.size() == 4 && parts.at(3) == QLatin1String("hydro")) {
            rt_object_hydro_t* object = nullptr;
            if (frame.payloadObject(_packet, object, "onRealtimeStatusThermo", true, false))
                thermo->update_hydro(_key, object, true);
        } else if (parts.size() == 3) {
            rt_object_thermostat_t* object = nullptr;
            if (frame.payloadObject(_packet, object, "onRealtimeStatusThermo", true, false))
                thermo->update(_key, object, true);
        }
    });
}

} // namespace database
