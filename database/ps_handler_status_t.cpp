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
    , twin(_database)
{
    frame.log(QStringLiteral("Starting persistent topic handler engine ..."), ::utility::logs::trace,
              "ps_handler_status_t");
    initRequestEvent(true);
}

ps_handler_status_t::ps_handler_status_t(ps_handler_status_t const& other)
    : QObject(nullptr)
    , database(other.database)
    , engine(other.engine)
    , twin(other.twin)
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
void ps_handler_status_t::handle(char const* slot, QJsonObject const& packet, Body body, bool live)
{
    frame.run(
        engine->getAccessMutex(), slot, packet,
        [&] {
            if (engine->getData())
                body(engine->getData());
            return false;
        },
        live ? twin.mutex() : nullptr);
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

template<class T, class Apply>
void ps_handler_status_t::handleMap(char const* slot, QJsonObject const& packet, Apply apply)
{
    handle(slot, packet, [&](ps_data_t* data) {
        QMap<QString, T*> map;
        if (!frame.payloadMap(packet, map, slot))
            return;
        for (auto it = map.begin(); it != map.end(); ++it)
            apply(data, it.key(), it.value());
    });
}

template<class Apply>
void ps_handler_status_t::handleValue(char const* slot, QJsonObject const& packet, QJsonValue::Type type, Apply apply)
{
    handle(slot, packet, [&](ps_data_t* data) {
        QJsonValue value;
        if (frame.payloadValue(packet, type, value, slot))
            apply(data, value);
    });
}

void ps_handler_status_t::handlePersistentStatusItem(ps_object_item_t* item, QString const& id,
                                                     QJsonObject const& json)
{
    engine->getData()->getItems()->update_items(id, item, true, json);
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
        if (!frame.payloadMap(_packet, map, "onPersistentStatusItems"))
            return;
        handlePersistentStatusItem(map);
        handleRealtimeItem(map);
    }, true);
}

void ps_handler_status_t::onPersistentStatusItem(QJsonObject _packet, QString _key)
{
    handle("onPersistentStatusItem", _packet, [&](ps_data_t*) {
        ps_object_item_t* object = nullptr;
        if (!frame.payloadObject(_packet, object, "onPersistentStatusItem"))
            return;
        handlePersistentStatusItem(object, _key, _packet.value(QStringLiteral("payload")).toObject());
        handleRealtimeItem(_key);
    }, true);
}

void ps_handler_status_t::handleRealtimeItem(QString const& id)
{
    twin.item(id);
}

void ps_handler_status_t::handleRealtimeItem(ps_items_map const& map)
{
    twin.items(map);
}

void ps_handler_status_t::handleRealtimeThermostat(QString const& id)
{
    twin.thermostat(id);
}

// Notifications: the owner sends the notifications that an address change touches.

void ps_handler_status_t::onPersistentStatusNotify(QJsonObject _packet)
{
    handleMap<ps_object_notify_t>("onPersistentStatusNotify", _packet,
                                  [](ps_data_t* data, QString const& key, ps_object_notify_t* object) {
                                      data->getNotify()->update_notify(key, object, true);
                                  });
}

void ps_handler_status_t::onPersistentStatusNotifyObjects(QJsonObject _packet, QString _key)
{
    handleObject<ps_object_notify_t>("onPersistentStatusNotifyObjects", _packet,
                                     [&](ps_data_t* data, ps_object_notify_t* object) {
                                         data->getNotify()->update_notify(_key, object, true);
                                     });
}

void ps_handler_status_t::onPersistentStatusNotifyEmail(QJsonObject _packet, QString _key)
{
    handleObject<ps_email_notify_t>("onPersistentStatusNotifyEmail", _packet,
                                    [&](ps_data_t* data, ps_email_notify_t* object) {
                                        data->getNotify()->update_email(_key, object, true);
                                    });
}

void ps_handler_status_t::onPersistentStatusNotifySMTP(QJsonObject _packet)
{
    handleObject<ps_smtp_notify_t>("onPersistentStatusNotifySMTP", _packet,
                                   [](ps_data_t* data, ps_smtp_notify_t* object) {
                                       data->getNotify()->update_smtp(object, true);
                                   });
}

void ps_handler_status_t::onPersistentStatusNotifyEnabled(QJsonObject _packet)
{
    handleValue("onPersistentStatusNotifyEnabled", _packet, QJsonValue::Bool,
                [](ps_data_t* data, QJsonValue const& value) { data->getNotify()->update_enabled(value.toBool(), true); });
}

void ps_handler_status_t::onPersistentStatusNotifySoundLen(QJsonObject _packet)
{
    handleValue("onPersistentStatusNotifySoundLen", _packet, QJsonValue::Double,
                [](ps_data_t* data, QJsonValue const& value) { data->getNotify()->update_soundLoop(value.toInt(), true); });
}

// Scenarios and rules.

void ps_handler_status_t::onPersistentStatusScenary(QJsonObject _packet)
{
    handleMap<ps_object_scenary_t>("onPersistentStatusScenary", _packet,
                                   [](ps_data_t* data, QString const& key, ps_object_scenary_t* object) {
                                       data->getScenary()->update_scene(key, object, true);
                                   });
}

void ps_handler_status_t::onPersistentStatusScenaryObjects(QJsonObject _packet, QString _key)
{
    handleObject<ps_object_scenary_t>("onPersistentStatusScenaryObjects", _packet,
                                      [&](ps_data_t* data, ps_object_scenary_t* object) {
                                          data->getScenary()->update_scene(_key, object, true);
                                      });
}

void ps_handler_status_t::onPersistentStatusScenaryEnabled(QJsonObject _packet)
{
    handleValue("onPersistentStatusScenaryEnabled", _packet, QJsonValue::Bool,
                [](ps_data_t* data, QJsonValue const& value) { data->getScenary()->update_enabled(value.toBool(), true); });
}

void ps_handler_status_t::onPersistentStatusRules(QJsonObject _packet)
{
    handleMap<ps_object_rules_t>("onPersistentStatusRules", _packet,
                                 [](ps_data_t* data, QString const& key, ps_object_rules_t* object) {
                                     data->getRules()->update_rule(key, object, true);
                                 });
}

void ps_handler_status_t::onPersistentStatusRulesObjects(QJsonObject _packet, QString _key)
{
    handleObject<ps_object_rules_t>("onPersistentStatusRulesObjects", _packet,
                                    [&](ps_data_t* data, ps_object_rules_t* object) {
                                        data->getRules()->update_rule(_key, object, true);
                                    });
}

void ps_handler_status_t::onPersistentStatusRulesEnabled(QJsonObject _packet)
{
    handleValue("onPersistentStatusRulesEnabled", _packet, QJsonValue::Bool,
                [](ps_data_t* data, QJsonValue const& value) { data->getRules()->update_enabled(value.toBool(), true); });
}

// Schedules.

void ps_handler_status_t::onPersistentStatusSchedulers(QJsonObject _packet)
{
    handleMap<ps_object_scheduler_t>("onPersistentStatusSchedulers", _packet,
                                     [](ps_data_t* data, QString const& key, ps_object_scheduler_t* object) {
                                         data->getSchedulers()->update_scheduler(key, object, true);
                                     });
}

void ps_handler_status_t::onPersistentStatusScheduler(QJsonObject _packet, QString _key)
{
    if (!handler_frame_t::isObjectTopic(_packet, literals::key_schedulers, _key)) {
        frame.log(QStringLiteral("[") + frame.getName() + QStringLiteral("] Payload not valid for ")
                      + _packet.value(QStringLiteral("topic")).toString() + QStringLiteral(": not a whole schedule"),
                  ::utility::logs::error, "onPersistentStatusScheduler");
        return;
    }
    handleObject<ps_object_scheduler_t>("onPersistentStatusScheduler", _packet,
                                        [&](ps_data_t* data, ps_object_scheduler_t* object) {
                                            data->getSchedulers()->update_scheduler(_key, object, true);
                                        });
}

void ps_handler_status_t::onPersistentStatusSchedulersEnabled(QJsonObject _packet)
{
    handleValue("onPersistentStatusSchedulersEnabled", _packet, QJsonValue::Bool,
                [](ps_data_t* data, QJsonValue const& value) {
                    data->getSchedulers()->update_enabled(value.toBool(), true);
                });
}

// Elements: their scenes and thermostats arrive by their own status.

void ps_handler_status_t::onPersistentStatusPageStack(QJsonObject _packet)
{
    handleValue("onPersistentStatusPageStack", _packet, QJsonValue::Object,
                [](ps_data_t* data, QJsonValue const& value) {
                    data->getElements()->update_page_stack(
                        ::database::utility::getInstance()->serializer()->deserialize<map_stringlist>(value));
                });
}

void ps_handler_status_t::onPersistentStatusOptions(QJsonObject _packet)
{
    handleValue("onPersistentStatusOptions", _packet, QJsonValue::Object,
                [](ps_data_t* data, QJsonValue const& value) {
                    data->getElements()->update_options(value.toObject().toVariantMap());
                });
}

void ps_handler_status_t::onPersistentStatusElements(QJsonObject _packet)
{
    handle("onPersistentStatusElements", _packet, [&](ps_data_t* data) {
        ps_elements_map map;
        if (!frame.payloadMap(_packet, map, "onPersistentStatusElements", false))
            return;
        for (auto it = map.begin(); it != map.end(); ++it)
            data->getElements()->update_with_dependency(it.key(), it.value());
    });
}

void ps_handler_status_t::onPersistentStatusElement(QJsonObject _packet, QString _key)
{
    handle("onPersistentStatusElement", _packet, [&](ps_data_t* data) {
        frame.log(QStringLiteral("Request to update/insert/remove element ") + _key, ::utility::logs::trace,
                  "onPersistentStatusElement");
        ps_object_element_t* element = nullptr;
        if (frame.payloadObject(_packet, element, "onPersistentStatusElement", false))
            data->getElements()->update_element_to_list(_key, element);
    });
}

// Thermostats.

void ps_handler_status_t::onPersistentStatusThermos(QJsonObject _packet)
{
    handle("onPersistentStatusThermos", _packet, [&](ps_data_t* data) {
        ps_thermostat_map map;
        if (!frame.payloadMap(_packet, map, "onPersistentStatusThermos"))
            return;
        for (auto it = map.begin(); it != map.end(); ++it) {
            data->getThermo()->update_thermos(it.key(), it.value(), true);
            handleRealtimeThermostat(it.key());
        }
    }, true);
}

void ps_handler_status_t::onPersistentStatusThermo(QJsonObject _packet, QString _key)
{
    handle("onPersistentStatusThermo", _packet, [&](ps_data_t* data) {
        ps_object_thermostat_t* object = nullptr;
        if (!frame.payloadObject(_packet, object, "onPersistentStatusThermo"))
            return;
        data->getThermo()->update_thermos(_key, object, true);
        handleRealtimeThermostat(_key);
    }, true);
}

} // namespace database
