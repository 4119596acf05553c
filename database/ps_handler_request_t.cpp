#include "database/ps_handler_request_t.h"

#include "database/base/literals.h"
#include "database/database_t.h"
#include "database/default/persistent/ps_default_t.h"
#include "database/persistent/objects/elements/psoe_rgb.h"
#include "database/persistent/objects/elements/psoe_scenario.h"
#include "database/persistent/objects/elements/psoe_thermo_logic.h"
#include "database/persistent/objects/elements/psoe_tunablewhite.h"
#include "database/persistent/persistent_t.h"

namespace database {

using namespace persistent;
using namespace persistent::dbs;
using namespace persistent::objects;
using namespace persistent::objects::drivers;

namespace {

QStringList const kCheckAll{QStringLiteral("ALL")};

} // namespace

ps_handler_request_t::ps_handler_request_t(database_t* _database, QObject* parent)
    : QObject(parent)
    , database(_database)
    , engine(_database ? _database->getPersistent() : nullptr)
    , twin(_database)
{
    frame.log(QStringLiteral("Starting persistent topic handler engine ..."), ::utility::logs::trace,
              "ps_handler_request_t");
    initRequestEvent(true);
}

ps_handler_request_t::ps_handler_request_t(ps_handler_request_t const& other)
    : QObject(nullptr)
    , database(other.database)
    , engine(other.engine)
    , twin(other.twin)
{
    initRequestEvent(true);
}

ps_handler_request_t::~ps_handler_request_t()
{
    initRequestEvent(false);
}

void ps_handler_request_t::initRequestEvent(bool connect)
{
    frame.log(QStringLiteral("[") + frame.getName() + QStringLiteral("] ")
                  + QStringLiteral("Connection signal-slots database part"),
              ::utility::logs::trace, "initRequestEvent");
    if (!engine)
        return;
    handler_frame_t::connectByName(engine->getHandlerTopic(), this, "onPersistentRequest",
                                   connect);
}

template<class Body>
void ps_handler_request_t::handle(char const* slot, QJsonObject const& packet, Body body, bool live)
{
    bool const check = frame.run(
        engine->getAccessMutex(), slot, packet,
        [&] { return engine->getData() ? body(engine, engine->getData()) : false; },
        live ? twin.mutex() : nullptr);
    if (check)
        Q_EMIT consistency_check_async(kCheckAll, true, true);
}

template<class T, class Apply>
void ps_handler_request_t::handleObject(char const* slot, QJsonObject const& packet, bool check, Apply apply)
{
    handle(slot, packet, [&](persistent_t*, ps_data_t* data) {
        T* object = nullptr;
        if (!frame.payloadObject(packet, object, slot))
            return false;
        apply(data, object);
        return check;
    });
}

template<class T, class Apply>
void ps_handler_request_t::handleMap(char const* slot, QJsonObject const& packet, bool check, Apply apply)
{
    handle(slot, packet, [&](persistent_t*, ps_data_t* data) {
        QMap<QString, T*> map;
        if (!frame.payloadMap(packet, map, slot))
            return false;
        for (auto it = map.begin(); it != map.end(); ++it)
            apply(data, it.key(), it.value());
        return check;
    });
}

template<class Apply>
void ps_handler_request_t::handleValue(char const* slot, QJsonObject const& packet, QJsonValue::Type type,
                                       Apply apply)
{
    handle(slot, packet, [&](persistent_t*, ps_data_t* data) {
        QJsonValue value;
        if (frame.payloadValue(packet, type, value, slot))
            apply(data, value);
        return false;
    });
}

bool ps_handler_request_t::itemExists(QString const& id) const
{
    return engine->getData() && engine->getData()->getItems()->getObjects().contains(id);
}

// Handling shared by the single and the list slots.

void ps_handler_request_t::handlePersistentRequestItem(ps_object_item_t* item, QString const& id,
                                                       bool& _consistency)
{
    _consistency = false;
    ps_data_t* data = engine->getData();
    if (!item) {
        // Removal may leave references behind; a change keeps them intact.
        _consistency = true;
    } else {
        QString const driver = item->getIdDriver().trimmed();
        // An item never points to a driver that doesn't exist.
        if (!driver.isEmpty() && !data->getDrivers()->getDriverId().contains(driver))
            item->setIdDriver(QString());
    }
    data->getItems()->update_items(id, item, true);
}

void ps_handler_request_t::handleRequestItem(ps_items_map const& map, bool& _consistency)
{
    _consistency = false;
    for (auto it = map.begin(); it != map.end(); ++it) {
        bool removed = false;
        handlePersistentRequestItem(it.value(), it.key(), removed);
        handleRealtimeItem(it.key());
        _consistency = _consistency || removed;
    }
}

void ps_handler_request_t::handlePersistentRequestUsers(ps_object_user_t* user, QString const& id,
                                                        bool& _consistency)
{
    _consistency = true;
    engine->getData()->getUsers()->update_user(id, user, true);
}

void ps_handler_request_t::handlePersistentRequestPresenceSimulation(ps_presencesimulation_t* object,
                                                                     bool& _consistency)
{
    _consistency = false;
    ps_data_t* data = engine->getData();
    if (object && !object->getIdItem().isEmpty() && !itemExists(object->getIdItem()))
        object->update_id_item(QString(), false);
    data->getPresenceSimulation()->update(object, true);
}

void ps_handler_request_t::handlePersistentRequestSmartButton(ps_smartbutton_t* object, bool& _consistency)
{
    _consistency = false;
    ps_data_t* data = engine->getData();
    if (object) {
        if (!object->getIdItemRgb().isEmpty() && !itemExists(object->getIdItemRgb()))
            object->update_id_item_rgb(QString(), false);
        if (!object->getIdItemListenIndex().isEmpty() && !itemExists(object->getIdItemListenIndex()))
            object->update_id_item_listen_index(QString(), false);
    }
    data->getSmartButton()->update(object, true);
    data->getSmartButton()->send_update();
}

// The slots.

void ps_handler_request_t::onPersistentRequestDatabase(QJsonObject _packet)
{
    handle("onPersistentRequestDatabase", _packet, [&](persistent_t* engine, ps_data_t*) {
        QJsonValue payload;
        if (!frame.payloadValue(_packet, QJsonValue::Object, payload, "onPersistentRequestDatabase"))
            return false;
        QJsonObject json = payload.toObject();
        if (json.isEmpty()) {
            engine->update_database(ps_default_t::getInstance()->getJData(), true);
        } else {
            ps_default_t::getInstance()->checkData(json);
            engine->update_database(json, true);
        }
        return true;
    });
}

void ps_handler_request_t::onPersistentRequestGeneral(QJsonObject _packet)
{
    handle("onPersistentRequestGeneral", _packet, [&](persistent_t*, ps_data_t* data) {
        ps_general_t* object = nullptr;
        if (!frame.payloadObject(_packet, object, "onPersistentRequestGeneral"))
            return false;
        bool const astroBefore = data->getGeneral()->getEnableAstro();
        data->getGeneral()->update(object, true);
        if (astroBefore && !data->getGeneral()->getEnableAstro()) {
            frame.log(QStringLiteral("[") + frame.getName()
                          + QStringLiteral("] Astronomical watch has been disabled! Run consistency!"),
                      ::utility::logs::warning, "onPersistentRequestGeneral");
            return true;
        }
        return false;
    });
}

void ps_handler_request_t::onPersistentRequestGeneralParam(QJsonObject _packet)
{
    handle("onPersistentRequestGeneralParam", _packet, [&](persistent_t*, ps_data_t* data) {
        data->getGeneral()->update_param(ps_general_t::param_enable_img_upd,
                                         _packet.value(QStringLiteral("payload")), true);
        return false;
    });
}

void ps_handler_request_t::onPersistentRequestInformation(QJsonObject _packet)
{
    handleObject<ps_information_t>("onPersistentRequestInformation", _packet, false,
                                   [](ps_data_t* data, ps_information_t* object) {
                                       data->getInformation()->update(object, true);
                                   });
}

void ps_handler_request_t::onPersistentRequestStorage(QJsonObject _packet)
{
    handle("onPersistentRequestStorage", _packet, [&](persistent_t*, ps_data_t* data) {
        data->getStorage()->update(handler_frame_t::pathUnder(_packet, literals::key_storage),
                                   _packet.value(QStringLiteral("payload")), true);
        return false;
    });
}

void ps_handler_request_t::onPersistentRequestUsers(QJsonObject _packet)
{
    handle("onPersistentRequestUsers", _packet, [&](persistent_t*, ps_data_t*) {
        ps_users_map map;
        if (!frame.payloadMap(_packet, map, "onPersistentRequestUsers"))
            return false;
        bool check = false;
        for (auto it = map.begin(); it != map.end(); ++it)
            handlePersistentRequestUsers(it.value(), it.key(), check);
        return true;
    });
}

void ps_handler_request_t::onPersistentRequestUser(QJsonObject _packet, QString _key)
{
    handle("onPersistentRequestUser", _packet, [&](persistent_t*, ps_data_t*) {
        ps_object_user_t* object = nullptr;
        if (!frame.payloadObject(_packet, object, "onPersistentRequestUser"))
            return false;
        bool check = false;
        handlePersistentRequestUsers(object, _key, check);
        return check;
    });
}

void ps_handler_request_t::onPersistentRequestDrivers(QJsonObject _packet)
{
    handleObject<ps_drivers_t>("onPersistentRequestDrivers", _packet, true, [](ps_data_t* data, ps_drivers_t* object) {
        data->getDrivers()->update(object);
    });
}

void ps_handler_request_t::onPersistentRequestDriversInternal(QJsonObject _packet)
{
    handleObject<ps_drivers_internal_t>("onPersistentRequestDriversInternal", _packet, true, [](ps_data_t* data, ps_drivers_internal_t* object) {
        data->getDrivers()->update_internal(object, true);
    });
}

void ps_handler_request_t::onPersistentRequestDriversInternalSensors(QJsonObject _packet)
{
    handleObject<ps_object_driver_internal_sensors_t>("onPersistentRequestDriversInternalSensors", _packet, true, [](ps_data_t* data, ps_object_driver_internal_sensors_t* object) {
        data->getDrivers()->getInternal()->update(object, true);
    });
}

void ps_handler_request_t::onPersistentRequestDriversKnx(QJsonObject _packet)
{
    handleObject<ps_drivers_knx_t>("onPersistentRequestDriversKnx", _packet, true, [](ps_data_t* data, ps_drivers_knx_t* object) {
        data->getDrivers()->update_knx(object, true);
    });
}

void ps_handler_request_t::onPersistentRequestDriverKnxBus(QJsonObject _packet, QString _key)
{
    handleObject<ps_object_drivers_knx_bus_t>("onPersistentRequestDriverKnxBus", _packet, true, [&](ps_data_t* data, ps_object_drivers_knx_bus_t* object) {
        data->getDrivers()->getKnx()->update_driver(_key, object, true);
    });
}

void ps_handler_request_t::onPersistentRequestDriversBaos(QJsonObject _packet)
{
    handleObject<ps_drivers_baos_t>("onPersistentRequestDriversBaos", _packet, true, [](ps_data_t* data, ps_drivers_baos_t* object) {
        data->getDrivers()->update_baos(object, true);
    });
}

void ps_handler_request_t::onPersistentRequestDriverBaosBus(QJsonObject _packet, QString _key)
{
    handleObject<ps_object_drivers_baos_bus_t>("onPersistentRequestDriverBaosBus", _packet, true, [&](ps_data_t* data, ps_object_drivers_baos_bus_t* object) {
        data->getDrivers()->getBaos()->update_bus(_key, object, true);
    });
}

void ps_handler_request_t::onPersistentRequestDriversClock(QJsonObject _packet)
{
    handleObject<ps_drivers_clock_t>("onPersistentRequestDriversClock", _packet, true, [](ps_data_t* data, ps_drivers_clock_t* object) {
        data->getDrivers()->update_clock(object, true);
    });
}

void ps_handler_request_t::onPersistentRequestDriversKnxEnabled(QJsonObject _packet)
{
    handle("onPersistentRequestDriversKnxEnabled", _packet, [&](persistent_t*, ps_data_t* data) {
        QJsonValue value;
        if (!frame.payloadValue(_packet, QJsonValue::Bool, value, "onPersistentRequestDriversKnxEnabled"))
            return false;
        // Only one KNX access may be on at a time; switching one off touches nothing else.
        if (value.toBool())
            data->getDrivers()->getBaos()->update_enabled(false, true);
        data->getDrivers()->getKnx()->update_enabled(value.toBool(), true);
        return false;
    });
}

void ps_handler_request_t::onPersistentRequestDriversBaosEnabled(QJsonObject _packet)
{
    handle("onPersistentRequestDriversBaosEnabled", _packet, [&](persistent_t*, ps_data_t* data) {
        QJsonValue value;
        if (!frame.payloadValue(_packet, QJsonValue::Bool, value, "onPersistentRequestDriversBaosEnabled"))
            return false;
        if (value.toBool())
            data->getDrivers()->getKnx()->update_enabled(false, true);
        data->getDrivers()->getBaos()->update_enabled(value.toBool(), true);
        return false;
    });
}

void ps_handler_request_t::onPersistentRequestDriversClockEnabled(QJsonObject _packet)
{
    handle("onPersistentRequestDriversClockEnabled", _packet, [&](persistent_t*, ps_data_t* data) {
        QJsonValue value;
        if (frame.payloadValue(_packet, QJsonValue::Bool, value, "onPersistentRequestDriversClockEnabled"))
            data->getDrivers()->getClock()->update_enabled(value.toBool(), true);
        return false;
    });
}

void ps_handler_request_t::onPersistentRequestPresenceSimulation(QJsonObject _packet)
{
    handle("onPersistentRequestPresenceSimulation", _packet, [&](persistent_t*, ps_data_t*) {
        ps_presencesimulation_t* object = nullptr;
        bool check = false;
        if (frame.payloadObject(_packet, object, "onPersistentRequestPresenceSimulation"))
            handlePersistentRequestPresenceSimulation(object, check);
        return check;
    });
}

void ps_handler_request_t::onPersistentRequestSmartButton(QJsonObject _packet)
{
    handle("onPersistentRequestSmartButton", _packet, [&](persistent_t*, ps_data_t*) {
        ps_smartbutton_t* object = nullptr;
        bool check = false;
        if (frame.payloadObject(_packet, object, "onPersistentRequestSmartButton"))
            handlePersistentRequestSmartButton(object, check);
        return check;
    });
}

void ps_handler_request_t::onPersistentRequestItems(QJsonObject _packet)
{
    handle("onPersistentRequestItems", _packet, [&](persistent_t*, ps_data_t*) {
        ps_items_map map;
        bool check = false;
        if (frame.payloadMap(_packet, map, "onPersistentRequestItems"))
            handleRequestItem(map, check);
        return check;
    }, true);
}

void ps_handler_request_t::onPersistentRequestItem(QJsonObject _packet, QString _key)
{
    handle("onPersistentRequestItem", _packet, [&](persistent_t*, ps_data_t*) {
        ps_object_item_t* object = nullptr;
        bool check = false;
        if (!frame.payloadObject(_packet, object, "onPersistentRequestItem"))
            return false;
        handlePersistentRequestItem(object, _key, check);
        handleRealtimeItem(_key);
        return check;
    }, true);
}

void ps_handler_request_t::handleRealtimeItem(QString const& id)
{
    twin.item(id);
}

void ps_handler_request_t::handleRealtimeThermostat(QString const& id)
{
    twin.thermostat(id);
}

// Elements and their companions.

void ps_handler_request_t::handleElementCheck(QString const& id, ps_object_element_t* element)
{
    Q_UNUSED(id);
    if (!element)
        return;
    int const type = element->getTypeIndex();
    if (type == 2) {
        if (auto* rgb = qobject_cast<psoe_rgb*>(element))
            rgb->update_to_adjust_preset(true);
    } else if (type == 20) {
        if (auto* white = qobject_cast<psoe_tunablewhite*>(element))
            white->update_to_adjust_preset(true);
    } else if (type == 8 || type == 11 || type == 12 || type == 17) {
        return;
    }
    // A function that names no item would command nothing.
    QVariantMap functions = element->getFunction_map();
    ps_items_map const& items = engine->getData()->getItems()->getObjects();
    for (auto it = functions.begin(); it != functions.end();) {
        if (items.contains(it.value().toString()))
            ++it;
        else
            it = functions.erase(it);
    }
    if (functions != element->getFunction_map())
        element->setFunction_map(functions);
}

bool ps_handler_request_t::handlePersistentRequestElementScenary(ps_object_element_t* element, QString const& id)
{
    ps_data_t* data = engine->getData();
    auto owned = [](ps_object_element_t* e) {
        return e && e->getTypeIndex() == 8 && !e->getFlag(int(psoe_scenario::SCENARIO_FLAG_KNX_SCENARIO));
    };
    if (!element) {
        auto* stored = qobject_cast<psoe_scenario*>(data->getElements()->getObjects().value(id));
        if (!owned(stored))
            return false;
        QString const scene = stored->getScenario_id();
        data->getElements()->update_with_dependency(id, nullptr);
        data->getScenary()->update_scene(scene, nullptr, true);
        return true;
    }
    auto* scenario = qobject_cast<psoe_scenario*>(element);
    if (!owned(element) || !scenario)
        return false;
    QString const name = element->getName();
    QString const scene = scenario->getScenario_id();
    data->getElements()->update_with_dependency(id, element);
    if (scene.isEmpty())
        return true;
    if (ps_object_scenary_t* existing = data->getScenary()->getObjects().value(scene)) {
        if (existing->getName() != name)
            existing->update_name(name, true);
    } else {
        ps_object_scenary_t created;
        created.setName(name);
        data->getScenary()->update_scene(scene, &created, true);
    }
    return true;
}

bool ps_handler_request_t::handlePersistentRequestElementThermostat(ps_object_element_t* element, QString const& id)
{
    ps_data_t* data = engine->getData();
    if (!element) {
        auto* stored = qobject_cast<psoe_thermo_logic*>(data->getElements()->getObjects().value(id));
        if (!stored)
            return false;
        QString const thermostat = stored->getThermo_id();
        data->getElements()->update_with_dependency(id, nullptr);
        data->getThermo()->update_thermos(thermostat, nullptr, true);
        return true;
    }
    auto* logic = qobject_cast<psoe_thermo_logic*>(element);
    if (!logic)
        return false;
    QString const name = element->getName();
    QString const thermostat = logic->getThermo_id();
    data->getElements()->update_with_dependency(id, element);
    if (thermostat.isEmpty())
        return true;
    if (ps_object_thermostat_t* existing = data->getThermo()->getObjects().value(thermostat)) {
        if (existing->getName() != name)
            existing->update_name(name, true);
    } else {
        ps_object_thermostat_t created(nullptr);
        created.setName(name);
        data->getThermo()->update_thermos(thermostat, &created, true);
    }
    return true;
}

void ps_handler_request_t::handlePersistentRequestElement(ps_object_element_t* element, QString const& id,
                                                          bool& _consistency)
{
    _consistency = true;
    if (handlePersistentRequestElementScenary(element, id))
        return;
    if (handlePersistentRequestElementThermostat(element, id))
        return;
    ps_elements_t* elements = engine->getData()->getElements();
    if (element)
        element->setTopic(elements->getTopic() + QStringLiteral("/objects_list/") + id);
    elements->update_with_dependency(id, element);
}

// Notifications.

void ps_handler_request_t::onPersistentRequestNotify(QJsonObject _packet)
{
    handleMap<ps_object_notify_t>("onPersistentRequestNotify", _packet, false,
                                  [](ps_data_t* data, QString const& key, ps_object_notify_t* object) {
                                      data->getNotify()->update_notify(key, object, true);
                                  });
}

void ps_handler_request_t::onPersistentRequestNotifyObjects(QJsonObject _packet, QString _key)
{
    handleObject<ps_object_notify_t>("onPersistentRequestNotifyObjects", _packet, false,
                                     [&](ps_data_t* data, ps_object_notify_t* object) {
                                         data->getNotify()->update_notify(_key, object, true);
                                     });
}

void ps_handler_request_t::onPersistentRequestNotifyEmail(QJsonObject _packet, QString _key)
{
    handleObject<ps_email_notify_t>("onPersistentRequestNotifyEmail", _packet, false,
                                    [&](ps_data_t* data, ps_email_notify_t* object) {
                                        data->getNotify()->update_email(_key, object, true);
                                        // Notifications never keep an address that is gone.
                                        data->getNotify()->prune_email_dest(_key, true);
                                    });
}

void ps_handler_request_t::onPersistentRequestNotifySMTP(QJsonObject _packet)
{
    handleObject<ps_smtp_notify_t>("onPersistentRequestNotifySMTP", _packet, false,
                                   [](ps_data_t* data, ps_smtp_notify_t* object) {
                                       data->getNotify()->update_smtp(object, true);
                                   });
}

void ps_handler_request_t::onPersistentRequestNotifyEnabled(QJsonObject _packet)
{
    handleValue("onPersistentRequestNotifyEnabled", _packet, QJsonValue::Bool,
                [](ps_data_t* data, QJsonValue const& value) { data->getNotify()->update_enabled(value.toBool(), true); });
}

void ps_handler_request_t::onPersistentRequestNotifySoundLen(QJsonObject _packet)
{
    handleValue("onPersistentRequestNotifySoundLen", _packet, QJsonValue::Double,
                [](ps_data_t* data, QJsonValue const& value) { data->getNotify()->update_soundLoop(value.toInt(), true); });
}

// Scenarios and rules.

void ps_handler_request_t::onPersistentRequestScenary(QJsonObject _packet)
{
    handleMap<ps_object_scenary_t>("onPersistentRequestScenary", _packet, true,
                                   [](ps_data_t* data, QString const& key, ps_object_scenary_t* object) {
                                       data->getScenary()->update_scene(key, object, true);
                                   });
}

void ps_handler_request_t::onPersistentRequestScenaryObjects(QJsonObject _packet, QString _key)
{
    handleObject<ps_object_scenary_t>("onPersistentRequestScenaryObjects", _packet, true,
                                      [&](ps_data_t* data, ps_object_scenary_t* object) {
                                          data->getScenary()->update_scene(_key, object, true);
                                      });
}

void ps_handler_request_t::onPersistentRequestScenaryEnabled(QJsonObject _packet)
{
    handleValue("onPersistentRequestScenaryEnabled", _packet, QJsonValue::Bool,
                [](ps_data_t* data, QJsonValue const& value) { data->getScenary()->update_enabled(value.toBool(), true); });
}

void ps_handler_request_t::onPersistentRequestRules(QJsonObject _packet)
{
    handleMap<ps_object_rules_t>("onPersistentRequestRules", _packet, false,
                                 [](ps_data_t* data, QString const& key, ps_object_rules_t* object) {
                                     data->getRules()->update_rule(key, object, true);
                                 });
}

void ps_handler_request_t::onPersistentRequestRulesObjects(QJsonObject _packet, QString _key)
{
    handleObject<ps_object_rules_t>("onPersistentRequestRulesObjects", _packet, false,
                                    [&](ps_data_t* data, ps_object_rules_t* object) {
                                        data->getRules()->update_rule(_key, object, true);
                                    });
}

void ps_handler_request_t::onPersistentRequestRulesEnabled(QJsonObject _packet)
{
    handleValue("onPersistentRequestRulesEnabled", _packet, QJsonValue::Bool,
                [](ps_data_t* data, QJsonValue const& value) { data->getRules()->update_enabled(value.toBool(), true); });
}

// Schedules.

void ps_handler_request_t::onPersistentRequestSchedulers(QJsonObject _packet)
{
    handleMap<ps_object_scheduler_t>("onPersistentRequestSchedulers", _packet, true,
                                     [](ps_data_t* data, QString const& key, ps_object_scheduler_t* object) {
                                         data->getSchedulers()->update_scheduler(key, object, true);
                                     });
}

void ps_handler_request_t::onPersistentRequestScheduler(QJsonObject _packet, QString _key)
{
    // The route also takes the topics of a schedule's entries; only a whole
    // schedule is read as one.
    if (!handler_frame_t::isObjectTopic(_packet, literals::key_schedulers, _key)) {
        frame.log(QStringLiteral("[") + frame.getName() + QStringLiteral("] Payload not valid for ")
                      + _packet.value(QStringLiteral("topic")).toString() + QStringLiteral(": not a whole schedule"),
                  ::utility::logs::error, "onPersistentRequestScheduler");
        return;
    }
    handleObject<ps_object_scheduler_t>("onPersistentRequestScheduler", _packet, true,
                                        [&](ps_data_t* data, ps_object_scheduler_t* object) {
                                            data->getSchedulers()->update_scheduler(_key, object, true);
                                        });
}

void ps_handler_request_t::onPersistentRequestSchedulersEnabled(QJsonObject _packet)
{
    handleValue("onPersistentRequestSchedulersEnabled", _packet, QJsonValue::Bool,
                [](ps_data_t* data, QJsonValue const& value) {
                    data->getSchedulers()->update_enabled(value.toBool(), true);
                });
}

// Elements.

void ps_handler_request_t::onPersistentRequestPageStack(QJsonObject _packet)
{
    handleValue("onPersistentRequestPageStack", _packet, QJsonValue::Object,
                [](ps_data_t* data, QJsonValue const& value) {
                    data->getElements()->update_page_stack(
                        ::database::utility::getInstance()->serializer()->deserialize<map_stringlist>(value));
                });
}

void ps_handler_request_t::onPersistentRequestOptions(QJsonObject _packet)
{
    handleValue("onPersistentRequestOptions", _packet, QJsonValue::Object,
                [](ps_data_t* data, QJsonValue const& value) {
                    data->getElements()->update_options(value.toObject().toVariantMap());
                });
}

void ps_handler_request_t::onPersistentRequestElements(QJsonObject _packet)
{
    handle("onPersistentRequestElements", _packet, [&](persistent_t*, ps_data_t* data) {
        ps_elements_map map;
        // The section keeps the elements themselves.
        if (!frame.payloadMap(_packet, map, "onPersistentRequestElements", false))
            return false;
        for (auto it = map.begin(); it != map.end(); ++it)
            data->getElements()->update_with_dependency(it.key(), it.value());
        return true;
    });
}

void ps_handler_request_t::onPersistentRequestElement(QJsonObject _packet, QString _key)
{
    handle("onPersistentRequestElement", _packet, [&](persistent_t*, ps_data_t*) {
        frame.log(QStringLiteral("Request to update/insert/remove element ") + _key, ::utility::logs::trace,
                  "onPersistentRequestElement");
        ps_object_element_t* element = nullptr;
        if (!frame.payloadObject(_packet, element, "onPersistentRequestElement", false))
            return false;
        if (element)
            handleElementCheck(_key, element);
        bool check = false;
        handlePersistentRequestElement(element, _key, check);
        return check;
    });
}

// Thermostats.

void ps_handler_request_t::onPersistentRequestThermos(QJsonObject _packet)
{
    handle("onPersistentRequestThermos", _packet, [&](persistent_t*, ps_data_t* data) {
        ps_thermostat_map map;
        if (!frame.payloadMap(_packet, map, "onPersistentRequestThermos"))
            return false;
        for (auto it = map.begin(); it != map.end(); ++it) {
            data->getThermo()->update_thermos(it.key(), it.value(), true);
            handleRealtimeThermostat(it.key());
        }
        return true;
    }, true);
}

void ps_handler_request_t::onPersistentRequestThermo(QJsonObject _packet, QString _key)
{
    handle("onPersistentRequestThermo", _packet, [&](persistent_t*, ps_data_t* data) {
        ps_object_thermostat_t* object = nullptr;
        if (!frame.payloadObject(_packet, object, "onPersistentRequestThermo"))
            return false;
        data->getThermo()->update_thermos(_key, object, true);
        handleRealtimeThermostat(_key);
        // Only a removal can leave references behind.
        return object == nullptr;
    }, true);
}

} // namespace database
