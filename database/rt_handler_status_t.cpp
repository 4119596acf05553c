#include "database/rt_handler_status_t.h"

#include <QDateTime>
#include <QJsonArray>

#include "database/base/literals.h"
#include "database/database_t.h"
#include "database/default/persistent/ps_default_t.h"
#include "database/realtime/dbs/drivers/rt_drivers_baos_t.h"
#include "database/realtime/dbs/drivers/rt_drivers_internal_t.h"
#include "database/realtime/dbs/drivers/rt_drivers_knx_t.h"
#include "database/realtime/dbs/rt_astronomical_t.h"
#include "database/realtime/dbs/rt_drivers_t.h"
#include "database/realtime/dbs/rt_installation_t.h"
#include "database/realtime/dbs/rt_items_t.h"
#include "database/realtime/dbs/rt_notify_t.h"
#include "database/realtime/dbs/rt_presencesimulation_t.h"
#include "database/realtime/dbs/rt_rules_t.h"
#include "database/realtime/dbs/rt_scenary_t.h"
#include "database/realtime/dbs/rt_scheduler_t.h"
#include "database/realtime/dbs/rt_smartbutton_t.h"
#include "database/realtime/dbs/rt_storage_t.h"
#include "database/realtime/dbs/rt_system_t.h"
#include "database/realtime/dbs/rt_thermo_t.h"
#include "database/realtime/objects/system/rt_object_connections_t.h"
#include "database/realtime/realtime_t.h"
#include "database/realtime/rt_data_t.h"
#include "database/utility/utility.h"

namespace database {

using namespace realtime;
using namespace realtime::dbs;
using namespace realtime::objects;
using namespace realtime::objects::drivers;

namespace {

QStringList topicParts(QString const& topic)
{
    return topic.trimmed().split(QLatin1Char('/'), Qt::SkipEmptyParts);
}

/// The last non-empty step of a topic and the one before it, as the end of
/// topicParts() (empty where there is none), without splitting the whole
/// topic of every item's status.
void lastSteps(QStringView topic, QStringView& last, QStringView& before)
{
    topic = topic.trimmed();
    QStringView found[2];
    int count = 0;
    for (qsizetype end = topic.size(); count < 2 && end > 0;) {
        qsizetype const slash = topic.lastIndexOf(QLatin1Char('/'), end - 1);
        QStringView const step = topic.mid(slash + 1, end - slash - 1);
        if (!step.isEmpty())
            found[count++] = step;
        end = slash;
    }
    last = found[0];
    before = found[1];
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

template<class T, class Apply>
void rt_handler_status_t::handleObject(char const* slot, QJsonObject const& packet, Apply apply)
{
    handle(slot, packet, [&](rt_data_t* data) {
        T* object = nullptr;
        if (frame.payloadObject(packet, object, slot, true, false))
            apply(data, object);
    });
}

template<class T, class Apply>
void rt_handler_status_t::handleMap(char const* slot, QJsonObject const& packet, Apply apply)
{
    handle(slot, packet, [&](rt_data_t* data) {
        QMap<QString, T*> map;
        if (frame.payloadMap(packet, map, slot))
            apply(data, map);
    });
}

template<class T, class Apply>
void rt_handler_status_t::handleList(char const* slot, QJsonObject const& packet, Apply apply)
{
    handle(slot, packet, [&](rt_data_t* data) {
        // A payload of the wrong shape throws here; the frame reports it.
        QList<T*> const list = utility::getInstance()->serializer()->deserialize<QList<T*>>(
            packet.value(QStringLiteral("payload")), nullptr);
        for (T* object : list) {
            if (object)
                object->deleteLater();
        }
        apply(data, list);
    });
}

void rt_handler_status_t::onRealtimeStatusDatabase(QJsonObject _packet)
{
    handle("onRealtimeStatusDatabase", _packet, [&](rt_data_t*) {
        engine->update_database(_packet.value(QStringLiteral("payload")).toObject(), true);
    });
}

void rt_handler_status_t::onRealtimeStatusPresenceSimulation(QJsonObject _packet)
{
    handleObject<rt_presencesimulation_t>("onRealtimeStatusPresenceSimulation", _packet,
                                          [](rt_data_t* data, rt_presencesimulation_t* object) {
                                              data->getPresencesimulation()->update(object, true);
                                          });
}

void rt_handler_status_t::onRealtimeStatusSmartButton(QJsonObject _packet)
{
    handleObject<rt_smartbutton_t>("onRealtimeStatusSmartButton", _packet,
                                   [](rt_data_t* data, rt_smartbutton_t* object) {
                                       data->getSmartButton()->update(object, true);
                                   });
}

void rt_handler_status_t::onRealtimeStatusAstronomical(QJsonObject _packet)
{
    handleObject<rt_astronomical_t>("onRealtimeStatusAstronomical", _packet,
                                    [](rt_data_t* data, rt_astronomical_t* object) {
                                        data->getAstronomical()->update(object, true);
                                    });
}

void rt_handler_status_t::onRealtimeStatusInstallation(QJsonObject _packet)
{
    handleObject<rt_installation_t>("onRealtimeStatusInstallation", _packet,
                                    [](rt_data_t* data, rt_installation_t* object) {
                                        data->getInstallation()->update(object, true);
                                    });
}

void rt_handler_status_t::onRealtimeStatusInstallationMqttDevice(QJsonObject _packet, QString _key)
{
    handleObject<rt_object_installation_mqtt_device_t>(
        "onRealtimeStatusInstallationMqttDevice", _packet,
        [&](rt_data_t* data, rt_object_installation_mqtt_device_t* object) {
            data->getInstallation()->update_mqtt_device(_key, object, true);
        });
}

void rt_handler_status_t::onRealtimeStatusNotify(QJsonObject _packet)
{
    handleObject<rt_notify_t>("onRealtimeStatusNotify", _packet, [](rt_data_t* data, rt_notify_t* object) {
        data->getNotify()->update(object, true);
    });
}

void rt_handler_status_t::onRealtimeStatusUserNotify(QJsonObject _packet)
{
    handleMap<rt_object_notify_t>("onRealtimeStatusUserNotify", _packet, [](rt_data_t* data, rt_notify_map const& map) {
        data->getNotify()->update_user_notify(map, true);
    });
}

void rt_handler_status_t::onRealtimeStatusSystemNotify(QJsonObject _packet)
{
    handleMap<rt_object_notify_t>("onRealtimeStatusSystemNotify", _packet, [](rt_data_t* data, rt_notify_map const& map) {
        data->getNotify()->update_sys_notify(map, true);
    });
}

void rt_handler_status_t::onRealtimeStatusUserNotifyObjects(QJsonObject _packet, QString _key)
{
    handle("onRealtimeStatusUserNotifyObjects", _packet, [&](rt_data_t* data) {
        rt_notify_t* notify = data->getNotify();
        if (_packet.value(QStringLiteral("topic")).toString().trimmed().endsWith(QLatin1String("read"))) {
            // Only a JSON boolean marks it read: "true" as text changes nothing.
            QJsonValue const payload = _packet.value(QStringLiteral("payload"));
            if (notify->getUserNotify().contains(_key) && payload.isBool())
                notify->userlist(_key)->update_read(payload.toBool(), true);
            return;
        }
        rt_object_notify_t* object = nullptr;
        if (frame.payloadObject(_packet, object, "onRealtimeStatusUserNotifyObjects", true, false))
            notify->update_user_notify(_key, object, true);
    });
}

void rt_handler_status_t::onRealtimeStatusSystemNotifyObjects(QJsonObject _packet, QString _key)
{
    handleObject<rt_object_notify_t>("onRealtimeStatusSystemNotifyObjects", _packet,
                                     [&](rt_data_t* data, rt_object_notify_t* object) {
                                         data->getNotify()->update_sys_notify(_key, object, true);
                                     });
}

void rt_handler_status_t::onRealtimeStatusStorage(QJsonObject _packet)
{
    handleObject<rt_storage_t>("onRealtimeStatusStorage", _packet, [](rt_data_t* data, rt_storage_t* object) {
        data->getStorage()->update(object, true);
    });
}

void rt_handler_status_t::onRealtimeStatusScenary(QJsonObject _packet)
{
    handleMap<rt_object_scenary_t>("onRealtimeStatusScenary", _packet, [](rt_data_t* data, rt_scenary_map const& map) {
        data->getScenary()->update(map, true);
    });
}

void rt_handler_status_t::onRealtimeStatusScenaryObjects(QJsonObject _packet, QString _key)
{
    handleObject<rt_object_scenary_t>("onRealtimeStatusScenaryObjects", _packet,
                                      [&](rt_data_t* data, rt_object_scenary_t* object) {
                                          data->getScenary()->update_scenary(_key, object, true);
                                      });
}

void rt_handler_status_t::onRealtimeStatusRules(QJsonObject _packet)
{
    handleMap<rt_object_rules_t>("onRealtimeStatusRules", _packet, [](rt_data_t* data, rt_rules_map const& map) {
        data->getRules()->update(map, true);
    });
}

void rt_handler_status_t::onRealtimeStatusRulesObjects(QJsonObject _packet, QString _key)
{
    handleObject<rt_object_rules_t>("onRealtimeStatusRulesObjects", _packet,
                                    [&](rt_data_t* data, rt_object_rules_t* object) {
                                        data->getRules()->update_rule(_key, object, true);
                                    });
}

void rt_handler_status_t::onRealtimeStatusSchedulers(QJsonObject _packet)
{
    handleMap<rt_object_scheduler_t>("onRealtimeStatusSchedulers", _packet,
                                     [](rt_data_t* data, rt_schedulers_map const& map) {
                                         data->getSchedulers()->update(map, true);
                                     });
}

void rt_handler_status_t::onRealtimeStatusScheduler(QJsonObject _packet, QString _key)
{
    handleObject<rt_object_scheduler_t>("onRealtimeStatusScheduler", _packet,
                                        [&](rt_data_t* data, rt_object_scheduler_t* object) {
                                            data->getSchedulers()->update_scheduler(_key, object, true);
                                        });
}

void rt_handler_status_t::onRealtimeStatusDriverStatusKnx(QJsonObject _packet, QString _key)
{
    handleObject<rt_object_driver_knx_status_t>("onRealtimeStatusDriverStatusKnx", _packet,
                                                [&](rt_data_t* data, rt_object_driver_knx_status_t* object) {
                                                    data->getDrivers()->getKnx()->update_status(_key, object, true);
                                                });
}

void rt_handler_status_t::onRealtimeStatusDriverStatusBaos(QJsonObject _packet, QString _key)
{
    handleObject<rt_object_driver_baos_status_t>("onRealtimeStatusDriverStatusBaos", _packet,
                                                 [&](rt_data_t* data, rt_object_driver_baos_status_t* object) {
                                                     data->getDrivers()->getBaos()->update_status(_key, object, true);
                                                 });
}

void rt_handler_status_t::onRealtimeStatusDriverStatusInfoKnx(QJsonObject _packet, QString _key)
{
    handleObject<rt_object_driver_knx_status_detail_t>(
        "onRealtimeStatusDriverStatusInfoKnx", _packet, [&](rt_data_t* data, rt_object_driver_knx_status_detail_t* object) {
            data->getDrivers()->getKnx()->getStatus(_key)->getInfo()->update(object, true);
        });
}

void rt_handler_status_t::onRealtimeStatusDriverStatusInfoBaos(QJsonObject _packet, QString _key)
{
    handleObject<rt_object_driver_baos_status_detail_t>(
        "onRealtimeStatusDriverStatusInfoBaos", _packet,
        [&](rt_data_t* data, rt_object_driver_baos_status_detail_t* object) {
            data->getDrivers()->getBaos()->getStatus(_key)->getInfo()->update(object, true);
        });
}

void rt_handler_status_t::onRealtimeStatusDriverInterfacesKnx(QJsonObject _packet)
{
    handleList<rt_object_driver_knx_interface_t>(
        "onRealtimeStatusDriverInterfacesKnx", _packet,
        [](rt_data_t* data, rt_object_driver_knx_interface_list const& list) {
            data->getDrivers()->getKnx()->update_interface(list, true);
        });
}

void rt_handler_status_t::onRealtimeStatusDriverInterfacesBaos(QJsonObject _packet)
{
    handleList<rt_object_driver_baos_interface_t>(
        "onRealtimeStatusDriverInterfacesBaos", _packet,
        [](rt_data_t* data, rt_object_driver_baos_interface_list const& list) {
            data->getDrivers()->getBaos()->update_interface(list, true);
        });
}

void rt_handler_status_t::onRealtimeStatusDrivers(QJsonObject _packet)
{
    handleObject<rt_drivers_t>("onRealtimeStatusDrivers", _packet, [](rt_data_t* data, rt_drivers_t* object) {
        data->getDrivers()->update(object, true);
    });
}

void rt_handler_status_t::onRealtimeStatusDriversKnxMode(QJsonObject _packet)
{
    handle("onRealtimeStatusDriversKnxMode", _packet, [&](rt_data_t* data) {
        // Anything but an array puts the brand's default mode back alone.
        QStringList modes{persistent::ps_default_t::getInstance()->getDefaultKnxMode().ToString()};
        QJsonValue const payload = _packet.value(QStringLiteral("payload"));
        if (payload.isArray())
            modes = utility::getInstance()->serializer()->deserialize<QStringList>(payload);
        data->getDrivers()->update_knxmode(modes, true);
    });
}

void rt_handler_status_t::onRealtimeStatusDriversInternal(QJsonObject _packet)
{
    handleObject<rt_drivers_internal_t>("onRealtimeStatusDriversInternal", _packet,
                                        [](rt_data_t* data, rt_drivers_internal_t* object) {
                                            data->getDrivers()->update_internal(object, true);
                                        });
}

void rt_handler_status_t::onRealtimeStatusDriversInternalSensors(QJsonObject _packet)
{
    handleObject<rt_object_driver_internal_sensors_t>(
        "onRealtimeStatusDriversInternalSensors", _packet,
        [](rt_data_t* data, rt_object_driver_internal_sensors_t* object) {
            data->getDrivers()->getInternal()->update(object, true);
        });
}

void rt_handler_status_t::onRealtimeStatusDriversKnx(QJsonObject _packet)
{
    handleObject<rt_drivers_knx_t>("onRealtimeStatusDriversKnx", _packet, [](rt_data_t* data, rt_drivers_knx_t* object) {
        data->getDrivers()->update_knx(object, true);
    });
}

void rt_handler_status_t::onRealtimeStatusDriversBaos(QJsonObject _packet)
{
    handleObject<rt_drivers_baos_t>("onRealtimeStatusDriversBaos", _packet,
                                    [](rt_data_t* data, rt_drivers_baos_t* object) {
                                        data->getDrivers()->update_baos(object, true);
                                    });
}

void rt_handler_status_t::onRealtimeStatusSystemDateTime(QJsonObject _packet)
{
    handle("onRealtimeStatusSystemDateTime", _packet, [&](rt_data_t* data) {
        QDateTime const when =
            QDateTime::fromString(_packet.value(QStringLiteral("payload")).toString(), Qt::ISODate);
        if (when.isValid())
            data->getSystem()->update_datetime(when, true);
    });
}

void rt_handler_status_t::onRealtimeStatusSystemConnections(QJsonObject _packet)
{
    handleObject<rt_object_connections_t>("onRealtimeStatusSystemConnections", _packet,
                                          [](rt_data_t* data, rt_object_connections_t* object) {
                                              data->getSystem()->update_connection(object, true);
                                          });
}

void rt_handler_status_t::onRealtimeStatusSystemUrls(QJsonObject _packet)
{
    handleMap<rt_object_url_t>("onRealtimeStatusSystemUrls", _packet, [](rt_data_t* data, rt_url_map const& map) {
        data->getSystem()->update_urls(map, true);
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
        QString const topic = _packet.value(QStringLiteral("topic")).toString();
        QStringView last;
        QStringView next;
        lastSteps(topic, last, next);
        if (last == QLatin1String("value")) {
            if (items->getObjects().contains(_key))
                items->list(_key)->update_value(payload.toString(), true);
            return;
        }
        // The last step is gone already: a topic ending in ".../K/feedback"
        // names the key here and replaces the whole item, as it always has.
        if (next == QLatin1String("feedback")) {
            if (items->getObjects().contains(_key))
                items->list(_key)->update_feedback(payload.toString(), true);
            return;
        }
        // A client hears the status of a twin it has already made itself: the
        // stored item's own JSON changes nothing, so it is only published
        // again, as the update would, without being read into a new item.
        rt_object_item_t const* stored = items->getObjects().value(_key);
        if (stored && payload.isObject() && stored->isOwnJson(payload.toObject())) {
            items->send_update_item(_key);
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
