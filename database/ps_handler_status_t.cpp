#include "database/ps_handler_status_t.h"

#include "database/base/literals.h"
#include "database/database_t.h"
#include "database/default/persistent/ps_default_t.h"
#include "database/persistent/persistent_t.h"

namespace database {

using namespace persistent;
using namespace persistent::dbs;
using namespace persistent::objects;
using namespace persistent::objects::drivers;

ps_handler_status_t::ps_handler_status_t(database_t* _database, QObject* parent)
    : QObject(parent)
    , database(_database)
    , engine(_database ? _database->getPersistent() : nullptr)
{
    frame.log(QStringLiteral("Starting persistent topic handler engine ..."), ::utility::logs::trace,
              "ps_handler_status_t");
    initRequestEvent(true);
}

ps_handler_status_t::ps_handler_status_t(ps_handler_status_t const& other)
    : QObject(nullptr)
    , database(other.database)
    , engine(other.engine)
{
    initRequestEvent(true);
}

ps_handler_status_t::~ps_handler_status_t()
{
    initRequestEvent(false);
}

void ps_handler_status_t::initRequestEvent(bool connect)
{
    frame.log(QStringLiteral("[") + frame.getName() + QStringLiteral("] ")
                  + QStringLiteral("Connection signal-slots database part"),
              ::utility::logs::trace, "initRequestEvent");
    if (!engine)
        return;
    handler_frame_t::connectByName(engine->getHandlerTopic(), this, "onPersistentStatus", connect,
                                   {{"onPersistentStatusGeneralParam", "onPersistentStatustGeneralParam"}});
}

template<class Body>
void ps_handler_status_t::handle(char const* slot, QJsonObject const& packet, Body body)
{
    frame.run(engine->getAccessMutex(), slot, packet, [&] {
        if (engine->getData())
            body(engine->getData());
        return false;
    });
}

template<class T, class Apply>
void ps_handler_status_t::handleObject(char const* slot, QJsonObject const& packet, Apply apply)
{
    handle(slot, packet, [&](ps_data_t* data) {
        T* object = nullptr;
        if (frame.payloadObject(packet, object, slot))
            apply(data, object);
    });
}

void ps_handler_status_t::handlePersistentStatusItem(ps_object_item_t* item, QString const& id)
{
    engine->getData()->getItems()->update_items(id, item, true);
}

void ps_handler_status_t::handlePersistentStatusItem(ps_items_map const& map)
{
    engine->getData()->getItems()->update_items(map, true);
}

void ps_handler_status_t::onPersistentStatusDatabase(QJsonObject _packet)
{
    handle("onPersistentStatusDatabase", _packet, [&](ps_data_t*) {
        QJsonValue payload;
        if (!frame.payloadValue(_packet, QJsonValue::Object, payload, "onPersistentStatusDatabase"))
            return;
        QJsonObject json = payload.toObject();
        if (json.isEmpty()) {
            engine->update_database(ps_default_t::getInstance()->getJData(), true);
            return;
        }
        ps_default_t::getInstance()->checkData(json);
        engine->update_database(json, true);
    });
}

void ps_handler_status_t::onPersistentStatusGeneral(QJsonObject _packet)
{
    handleObject<ps_general_t>("onPersistentStatusGeneral", _packet,
                               [](ps_data_t* data, ps_general_t* object) { data->getGeneral()->update(object, true); });
}

void ps_handler_status_t::onPersistentStatustGeneralParam(QJsonObject _packet)
{
    handle("onPersistentStatustGeneralParam", _packet, [&](ps_data_t* data) {
        data->getGeneral()->update_param(ps_general_t::param_enable_img_upd,
                                         _packet.value(QStringLiteral("payload")), true);
    });
}

void ps_handler_status_t::onPersistentStatusInformation(QJsonObject _packet)
{
    handleObject<ps_information_t>(
        "onPersistentStatusInformation", _packet,
        [](ps_data_t* data, ps_information_t* object) { data->getInformation()->update(object, true); });
}

void ps_handler_status_t::onPersistentStatusStorage(QJsonObject _packet)
{
    handle("onPersistentStatusStorage", _packet, [&](ps_data_t* data) {
        data->getStorage()->update(handler_frame_t::pathUnder(_packet, literals::key_storage),
                                   _packet.value(QStringLiteral("payload")), true);
    });
}

void ps_handler_status_t::onPersistentStatusUsers(QJsonObject _packet)
{
    handle("onPersistentStatusUsers", _packet, [&](ps_data_t* data) {
        ps_users_map map;
        if (!frame.payloadMap(_packet, map, "onPersistentStatusUsers"))
            return;
        for (auto it = map.begin(); it != map.end(); ++it)
            data->getUsers()->update_user(it.key(), it.value(), true);
    });
}

void ps_handler_status_t::onPersistentStatusUser(QJsonObject _packet, QString _key)
{
    handleObject<ps_object_user_t>("onPersistentStatusUser", _packet, [&](ps_data_t* data, ps_object_user_t* object) {
        data->getUsers()->update_user(_key, object, true);
    });
}

void ps_handler_status_t::onPersistentStatusDrivers(QJsonObject _packet)
{
    handleObject<ps_drivers_t>("onPersistentStatusDrivers", _packet,
                               [](ps_data_t* data, ps_drivers_t* object) { data->getDrivers()->update(object); });
}

void ps_handler_status_t::onPersistentStatusDriversInternal(QJsonObject _packet)
{
    handleObject<ps_drivers_internal_t>("onPersistentStatusDriversInternal", _packet,
                                        [](ps_data_t* data, ps_drivers_internal_t* object) {
                                            data->getDrivers()->update_internal(object, true);
                                        });
}

void ps_handler_status_t::onPersistentStatusDriversInternalSensors(QJsonObject _packet)
{
    handleObject<ps_object_driver_internal_sensors_t>(
        "onPersistentStatusDriversInternalSensors", _packet,
        [](ps_data_t* data, ps_object_driver_internal_sensors_t* object) {
            data->getDrivers()->getInternal()->update(object, true);
        });
}

void ps_handler_status_t::onPersistentStatusDriversKnx(QJsonObject _packet)
{
    handleObject<ps_drivers_knx_t>("onPersistentStatusDriversKnx", _packet, [](ps_data_t* data, ps_drivers_knx_t* object) {
        data->getDrivers()->update_knx(object, true);
    });
}

void ps_handler_status_t::onPersistentStatusDriverKnxBus(QJsonObject _packet, QString _key)
{
    handleObject<ps_object_drivers_knx_bus_t>("onPersistentStatusDriverKnxBus", _packet,
                                              [&](ps_data_t* data, ps_object_drivers_knx_bus_t* object) {
                                                  data->getDrivers()->getKnx()->update_driver(_key, object, true);
                                              });
}

void ps_handler_status_t::onPersistentStatusDriversBaos(QJsonObject _packet)
{
    handleObject<ps_drivers_baos_t>("onPersistentStatusDriversBaos", _packet,
                                    [](ps_data_t* data, ps_drivers_baos_t* object) {
                                        data->getDrivers()->update_baos(object, true);
                                    });
}

void ps_handler_status_t::onPersistentStatusDriverBaosBus(QJsonObject _packet, QString _key)
{
    handleObject<ps_object_drivers_baos_bus_t>("onPersistentStatusDriverBaosBus", _packet,
                                               [&](ps_data_t* data, ps_object_drivers_baos_bus_t* object) {
                                                   data->getDrivers()->getBaos()->update_bus(_key, object, true);
                                               });
}

void ps_handler_status_t::onPersistentStatusDriversClock(QJsonObject _packet)
{
    handleObject<ps_drivers_clock_t>("onPersistentStatusDriversClock", _packet,
                                     [](ps_data_t* data, ps_drivers_clock_t* object) {
                                         data->getDrivers()->update_clock(object, true);
                                     });
}

void ps_handler_status_t::onPersistentStatusDriversKnxEnabled(QJsonObject _packet)
{
    handle("onPersistentStatusDriversKnxEnabled", _packet, [&](ps_data_t* data) {
        QJsonValue value;
        if (!frame.payloadValue(_packet, QJsonValue::Bool, value, "onPersistentStatusDriversKnxEnabled"))
            return;
        if (value.toBool())
            data->getDrivers()->getBaos()->update_enabled(false, true);
        data->getDrivers()->getKnx()->update_enabled(value.toBool(), true);
    });
}

void ps_handler_status_t::onPersistentStatusDriversBaosEnabled(QJsonObject _packet)
{
    handle("onPersistentStatusDriversBaosEnabled", _packet, [&](ps_data_t* data) {
        QJsonValue value;
        if (!frame.payloadValue(_packet, QJsonValue::Bool, value, "onPersistentStatusDriversBaosEnabled"))
            return;
        if (value.toBool())
            data->getDrivers()->getKnx()->update_enabled(false, true);
        data->getDrivers()->getBaos()->update_enabled(value.toBool(), true);
    });
}

void ps_handler_status_t::onPersistentStatusDriversClockEnabled(QJsonObject _packet)
{
    handle("onPersistentStatusDriversClockEnabled", _packet, [&](ps_data_t* data) {
        QJsonValue value;
        if (frame.payloadValue(_packet, QJsonValue::Bool, value, "onPersistentStatusDriversClockEnabled"))
            data->getDrivers()->getClock()->update_enabled(value.toBool(), true);
    });
}

void ps_handler_status_t::onPersistentStatusPresenceSimulation(QJsonObject _packet)
{
    handleObject<ps_presencesimulation_t>("onPersistentStatusPresenceSimulation", _packet,
                                          [](ps_data_t* data, ps_presencesimulation_t* object) {
                                              data->getPresenceSimulation()->update(object, true);
                                          });
}

void ps_handler_status_t::onPersistentStatusSmartButton(QJsonObject _packet)
{
    handleObject<ps_smartbutton_t>("onPersistentStatusSmartButton", _packet,
                                   [](ps_data_t* data, ps_smartbutton_t* object) {
                                       data->getSmartButton()->update(object, true);
                                   });
}

void ps_handler_status_t::onPersistentStatusItems(QJsonObject _packet)
{
    handle("onPersistentStatusItems", _packet, [&](ps_data_t*) {
        ps_items_map map;
        if (frame.payloadMap(_packet, map, "onPersistentStatusItems"))
            handlePersistentStatusItem(map);
    });
}

void ps_handler_status_t::onPersistentStatusItem(QJsonObject _packet, QString _key)
{
    handleObject<ps_object_item_t>("onPersistentStatusItem", _packet, [&](ps_data_t*, ps_object_item_t* object) {
        handlePersistentStatusItem(object, _key);
    });
}

} // namespace database
