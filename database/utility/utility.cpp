#include "database/utility/utility.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QHostAddress>
#include <QJsonArray>
#include <QRegularExpression>
#include <QSet>
#include <QTime>
#include <QUuid>

#include "database/persistent/dbs/drivers/ps_object_drivers_baos_bus_t.h"
#include "database/persistent/dbs/drivers/ps_object_drivers_knx_bus_t.h"
#include "database/persistent/objects/ps_email_notify_t.h"
#include "database/persistent/objects/elements/ps_object_element_t.h"
#include "database/persistent/objects/elements/ps_object_preset_t.h"
#include "database/persistent/objects/ps_object_desktop_t.h"
#include "database/persistent/objects/ps_object_item_t.h"
#include "database/persistent/objects/ps_object_rules_t.h"
#include "database/persistent/objects/ps_object_scenary_t.h"
#include "database/persistent/objects/ps_object_notify_t.h"
#include "database/persistent/objects/ps_object_t.h"
#include "database/persistent/objects/ps_object_user_t.h"
#include "database/persistent/objects/thermo/ps_object_thermo_isteresi_t.h"
#include "database/persistent/objects/thermo/ps_object_thermo_pi_t.h"
#include "database/persistent/objects/thermo/ps_object_thermo_pwm_t.h"
#include "database/persistent/objects/thermo/ps_object_thermostat_t.h"
#include "database/persistent/objects/schedulers/ps_object_scheduler_t.h"
#include "database/realtime/objects/rt_object_item_t.h"
#include "database/realtime/objects/rt_object_t.h"
#include "database/realtime/objects/rt_object_thermostat_t.h"
#include "database/presencesimulation/psi_object_presencesimulation_day_t.h"
#include "database/presencesimulation/psi_object_presencesimulation_hour_t.h"
#include "database/presencesimulation/psi_object_presencesimulation_minute_t.h"
#include "database/realtime/dbs/drivers/rt_drivers_internal_t.h"
#include "database/realtime/dbs/drivers/rt_drivers_knx_t.h"
#include "database/realtime/dbs/drivers/rt_object_driver_baos_interface_t.h"
#include "database/realtime/dbs/drivers/rt_object_driver_baos_status_t.h"
#include "database/realtime/dbs/drivers/rt_object_driver_knx_interface_t.h"
#include "database/realtime/dbs/drivers/rt_object_driver_knx_status_t.h"
#include "database/realtime/objects/rt_object_notify_t.h"
#include "database/realtime/objects/rt_object_rules_t.h"
#include "database/realtime/objects/rt_object_scenary_t.h"
#include "database/realtime/objects/schedulers/rt_object_scheduler_t.h"
#include "database/realtime/objects/system/rt_object_connection_t.h"
#include "database/realtime/objects/system/rt_object_installation_mqtt_device_t.h"
#include "database/realtime/objects/system/rt_object_presencesimulation_t.h"
#include "database/realtime/objects/system/rt_object_url_t.h"
#include "platform/logs/classlogs.h"
#include "platform/qjsonserializer/qjsonserializer.h"

namespace database {

utility* utility::m_utility = nullptr;
bool utility::initSerializerType = false;

namespace {

// A path step, cut either at its first "/" or around "[n]".
struct path_step_t {
    QString name;  // the step's name
    QString rest;  // the path after it
    int index = 0; // the number between the brackets, 0 when there is none
};

path_step_t analysePath(QString const& path)
{
    qsizetype const slash = path.indexOf(QLatin1Char('/'));
    qsizetype const open = path.indexOf(QLatin1Char('['));
    qsizetype const close = path.indexOf(QLatin1Char(']'));

    path_step_t step;
    bool ok = false;
    int const index = path.mid(open + 1, close - open - 1).toInt(&ok, 10);
    step.index = ok ? index : 0;

    if (open >= 0 && (slash < 0 || slash > open)) {
        step.name = path.left(open);
        if (close >= 1) {
            step.rest = path.mid(close + 1);
            if (step.rest.startsWith(QLatin1Char('/')))
                step.rest.remove(0, 1);
        }
    } else {
        step.name = slash < 0 ? path : path.left(slash);
        if (slash >= 1)
            step.rest = path.mid(slash + 1);
    }
    return step;
}

bool isNullish(QJsonValue const& value)
{
    return value.isNull() || value.isUndefined();
}

QJsonValue childOf(QJsonValue const& value, QString const& name)
{
    QJsonValue child;
    if (value.isArray())
        child = value.toArray().at(name.toInt());
    else if (value.isObject())
        child = value.toObject().value(name);
    return child.isUndefined() ? QJsonValue() : child;
}

// Reads the array index from the first step of rest and leaves the others in rest.
bool takeArrayIndex(QString& rest, int& index)
{
    QStringList parts = rest.split(QLatin1Char('/'));
    QString first = parts.takeFirst();
    first.remove(QLatin1Char('[')).remove(QLatin1Char(']'));
    bool ok = false;
    index = first.toInt(&ok);
    rest = parts.join(QLatin1Char('/'));
    return ok;
}

void setOperation(QString& operation, char const* text)
{
    if (operation.isEmpty())
        operation = QString::fromLatin1(text);
}

void logMessage(QString const& message, ::utility::logs::LogLevel level, char const* source)
{
    auto* logs = ::utility::logs::classlogs::getInstance();
    if (logs->isEnabled(level))
        logs->log_asynch(message, level, QString::fromLatin1(source), __FILE__, __LINE__);
}

} // namespace

utility::utility()
    : m_allowedCharacters(QStringLiteral(R"(\w-_{}\[\]\(\)\?\^\$£!:.,=;@+')"))
{
    if (!initSerializerType) {
        initSerializerType = true;
        initGenericType(true);
        initPersistentType(true);
        initRealTimeType(true);
        initPresenceSimulationType(true);
    }
    m_serializer = new QJsonSerializer(nullptr);
    m_serializer->setPolymorphing(QJsonSerializer::Polymorphing(1));
    m_serializer->setPolymorphingMode(QJsonSerializer::PolymorphingMode(1));
}

utility::~utility()
{
    m_serializer->deleteLater();
}

utility* utility::getInstance()
{
    if (!m_utility)
        m_utility = new utility;
    return m_utility;
}

QJsonSerializer* utility::serializer() const
{
    return m_serializer;
}

QString utility::allowedCharacters() const
{
    return m_allowedCharacters;
}

void utility::initGenericType(bool run)
{
    if (!run)
        return;
    QJsonSerializer::registerAlias<QMap<QString, QList<QString>>>("map_stringlist");
    QJsonSerializer::registerAlias<QMap<QString, QString>>("map_string");
    QJsonSerializer::registerAlias<QList<QString>>("QStringList");
}

void utility::initPersistentType(bool run)
{
    if (!run)
        return;
    using namespace persistent::objects;
    QJsonSerializer::registerMapAlias<ps_object_scenary_t>("ps_scenary_map");
    QJsonSerializer::registerMapAlias<ps_object_rules_t>("ps_rules_map");
    QJsonSerializer::registerMapAlias<ps_object_item_t>("ps_items_map");
    QJsonSerializer::registerMapAlias<ps_object_t>("ps_objects_map");
    QJsonSerializer::registerMapAlias<ps_object_user_t>("ps_users_map");
    QJsonSerializer::registerMapAlias<ps_object_scheduler_t>("ps_schedulers_map");
    QJsonSerializer::registerMapAlias<ps_object_cron_t>("ps_cron_map");
    QJsonSerializer::registerMapAlias<ps_object_astro_t>("ps_astro_map");
    QJsonSerializer::registerMapAlias<drivers::ps_object_drivers_knx_bus_t>("ps_drivers_knx_bus_map");
    QJsonSerializer::registerMapAlias<drivers::ps_object_drivers_baos_bus_t>("ps_drivers_baos_bus_map");
    QJsonSerializer::registerMapAlias<ps_object_thermostat_t>("ps_thermostat_map");
    // The parts of a thermostat, created from their "@class".
    QJsonSerializer::registerObjectType<ps_object_thermo_base_t>();
    QJsonSerializer::registerObjectType<ps_object_thermo_isteresi_t>();
    QJsonSerializer::registerObjectType<ps_object_thermo_pi_t>();
    QJsonSerializer::registerObjectType<ps_object_thermo_pwm_t>();
    QJsonSerializer::registerObjectType<ps_object_hydro_base_t>();
    QJsonSerializer::registerMapAlias<ps_object_notify_t>("ps_notify_map");
    QJsonSerializer::registerMapAlias<ps_email_notify_t>("ps_notify_email_map");
    QJsonSerializer::registerMapAlias<ps_object_element_t>("ps_elements_map");
    QJsonSerializer::registerMapAlias<ps_object_desktop_t>("ps_desktop_map");
    QJsonSerializer::registerMapAlias<ps_object_preset_t>("ps_preset_map");
    ps_object_element_t::registerTypes();
}

void utility::initRealTimeType(bool run)
{
    if (!run)
        return;
    using namespace realtime::objects;
    QJsonSerializer::registerMapAlias<rt_object_item_t>("rt_items_map");
    QJsonSerializer::registerMapAlias<rt_object_thermostat_t>("rt_thermostat_map");
    QJsonSerializer::registerMapAlias<rt_object_t>("rt_objects_map");
    QJsonSerializer::registerMapAlias<rt_object_scheduler_t>("rt_schedulers_map");
    QJsonSerializer::registerMapAlias<rt_object_scenary_t>("rt_scenary_map");
    QJsonSerializer::registerMapAlias<rt_object_rules_t>("rt_rules_map");
    QJsonSerializer::registerMapAlias<rt_object_installation_mqtt_device_t>("rt_mqtt_devices_map");
    QJsonSerializer::registerMapAlias<rt_object_notify_t>("rt_notify_map");
    QJsonSerializer::registerMapAlias<rt_object_cron_t>("rt_cron_map");
    QJsonSerializer::registerMapAlias<rt_object_astro_t>("rt_astro_map");
    QJsonSerializer::registerMapAlias<rt_object_connection_t>("rt_connection_map");
    // The map of the system's addresses goes by the name of its element.
    QJsonSerializer::registerMapAlias<rt_object_url_t>("rt_object_url_t");
    QJsonSerializer::registerListAlias<drivers::rt_object_driver_knx_interface_t>(
        "rt_object_driver_knx_interface_list");
    QJsonSerializer::registerMapAlias<drivers::rt_object_driver_knx_status_t>("rt_object_driver_knx_map");
    QJsonSerializer::registerListAlias<drivers::rt_object_driver_baos_interface_t>(
        "rt_object_driver_baos_interface_list");
    QJsonSerializer::registerMapAlias<drivers::rt_object_driver_baos_status_t>("rt_object_driver_baos_map");
    QJsonSerializer::registerListAlias<rt_object_presencesimulation_t>("rt_object_presencesimulation_list");
    QJsonSerializer::registerMapAlias<drivers::rt_drivers_internal_t>("rt_drivers_internal_map");
    QJsonSerializer::registerMapAlias<drivers::rt_drivers_knx_t>("rt_drivers_knx_map");
}

void utility::initPresenceSimulationType(bool run)
{
    if (!run)
        return;
    using namespace presencesimulation;
    QJsonSerializer::registerMapAlias<psi_object_presencesimulation_day_t>("presencesimulation_days_map");
    QJsonSerializer::registerMapAlias<psi_object_presencesimulation_hour_t>("presencesimulation_hour_map");
    QJsonSerializer::registerMapAlias<psi_object_presencesimulation_minute_t>("presencesimulation_minute_map");
}

QJsonObject utility::request2status(QJsonObject packet)
{
    if (!packet.contains(QStringLiteral("topic")) || !packet.contains(QStringLiteral("payload")))
        return QJsonObject();
    QString topic = packet.value(QStringLiteral("topic")).toString();
    packet.insert(QStringLiteral("topic"), topic.replace(QStringLiteral("request"), QStringLiteral("status")));
    return packet;
}

QJsonObject utility::status2request(QJsonObject packet)
{
    if (!packet.contains(QStringLiteral("topic")) || !packet.contains(QStringLiteral("payload")))
        return QJsonObject();
    QString topic = packet.value(QStringLiteral("topic")).toString();
    packet.insert(QStringLiteral("topic"), topic.replace(QStringLiteral("status"), QStringLiteral("request")));
    return packet;
}

QJsonValue utility::getJsonValue(QJsonDocument doc, QString const& path)
{
    QJsonValue value = doc.isArray() ? QJsonValue(doc.array()) : QJsonValue(doc.object());
    return getJsonSubValue(value, path);
}

QJsonValue utility::getJsonSubValue(QJsonValue& value, QString const& path)
{
    path_step_t const step = analysePath(path);
    QJsonValue child = childOf(value, step.name);

    // The index of a last "name[n]" step is not applied: the whole array comes back.
    if (step.rest.isEmpty())
        return child;

    if (child.isArray()) {
        QString rest = step.rest;
        int index = 0;
        if (!takeArrayIndex(rest, index))
            return QJsonValue(false);
        QJsonArray const array = child.toArray();
        if (index >= array.size())
            return QJsonValue(false);
        QJsonValue element = array.at(index);
        return rest.isEmpty() ? element : getJsonSubValue(element, rest);
    }
    if (child.isObject())
        return getJsonSubValue(child, step.rest);
    return child;
}

bool utility::updateJsonValue(QJsonDocument& doc, QString const& path, QJsonValue const& newValue,
                              QString& operation)
{
    QJsonValue value = doc.isArray() ? QJsonValue(doc.array()) : QJsonValue(doc.object());
    bool const changed = updateJsonSubValue(value, path, newValue, operation);
    if (changed) {
        if (value.isArray())
            doc.setArray(value.toArray());
        else
            doc.setObject(value.toObject());
    }
    return changed;
}

bool utility::updateJsonSubValue(QJsonValue& value, QString const& path, QJsonValue const& newValue,
                                 QString& operation)
{
    path_step_t const step = analysePath(path);
    QJsonValue child = childOf(value, step.name);

    if (step.rest.isEmpty()) {
        child = newValue;
    } else if (child.isArray()) {
        QString rest = step.rest;
        int index = 0;
        if (!takeArrayIndex(rest, index) || index < 0)
            return false;
        QJsonArray array = child.toArray();
        qsizetype const size = array.size();
        QJsonValue element;
        if (index == size) {
            if (rest.isEmpty() && isNullish(newValue))
                return false;
            setOperation(operation, "add");
            array.insert(index, QJsonObject());
            element = array.at(index);
        } else if (index > size) {
            return false;
        } else if (rest.isEmpty() && isNullish(newValue)) {
            setOperation(operation, "remove");
            array.removeAt(index);
            return updateJsonSubValue(value, step.name, array, operation);
        } else {
            element = array.at(index);
        }
        updateJsonSubValue(element, rest, newValue, operation);
        array.replace(index, rest.isEmpty() ? newValue : element);
        child = array;
    } else if (child.isObject()) {
        if (!updateJsonSubValue(child, step.rest, newValue, operation))
            return false;
    } else {
        // A scalar in the middle of the path is replaced whole.
        child = newValue;
    }

    if (value.isArray()) {
        QJsonArray array = value.toArray();
        if (step.index < 0 || step.index > array.size())
            return false;
        if (isNullish(child)) {
            if (step.index >= array.size())
                return false;
            setOperation(operation, "remove");
            array.removeAt(step.index);
        } else if (step.index == array.size()) {
            setOperation(operation, "add");
            array.append(child);
        } else {
            setOperation(operation, isNullish(array.at(step.index)) ? "add" : "update");
            array.replace(step.index, child);
        }
        value = array;
        return true;
    }

    if (value.isObject()) {
        QJsonObject object = value.toObject();
        if (!object.contains(step.name) && isNullish(newValue)) {
            qInfo().noquote() << QStringLiteral("No updatable because: ") + step.name + QStringLiteral(" not exist");
            return false;
        }
        if (isNullish(child)) {
            setOperation(operation, "remove");
            object.remove(step.name);
        } else if (step.name.isEmpty()) {
            object = child.toObject();
        } else if (isNullish(object.value(step.name))) {
            setOperation(operation, "add");
            if (!step.rest.isEmpty()) {
                QJsonValue created = QJsonObject();
                updateJsonSubValue(created, step.rest, newValue, operation);
                object.insert(step.name, created);
            } else {
                object.insert(step.name, child);
            }
        } else {
            setOperation(operation, "update");
            object.insert(step.name, child);
        }
        value = object;
        return true;
    }

    value = newValue;
    return true;
}

void utility::modifyJsonValue(QJsonObject& object, QString const& path, QJsonValue const& newValue)
{
    QList<QString> parts = path.split(QLatin1Char('/'), Qt::KeepEmptyParts);
    if (!parts.isEmpty() && parts.first() == QStringLiteral("[root]"))
        parts.removeFirst();
    QJsonObject rebuilt;
    modifyJsonValue(QJsonValue(object), rebuilt, parts, newValue);
    object = rebuilt;
}

void utility::modifyJsonValue(QJsonValue source, QJsonObject& destination, QList<QString> path,
                              QJsonValue const& newValue)
{
    // The path is consumed as the members go by and is not restored, so later
    // members are compared with the next part: this writer has always worked so.
    QJsonObject const object = source.toObject();
    for (auto it = object.begin(); it != object.end(); ++it) {
        QString const& key = it.key();
        QJsonValue const member = it.value();
        bool const addressed = !path.isEmpty() && path.first() == key;

        if (member.isObject()) {
            if (!addressed) {
                if (!member.toObject().isEmpty())
                    destination.insert(key, member);
                continue;
            }
            path.removeFirst();
            QJsonValue replacement;
            if (path.isEmpty()) {
                replacement = isNullish(newValue) ? QJsonValue() : newValue;
            } else {
                QJsonObject rebuilt;
                modifyJsonValue(member, rebuilt, path, newValue);
                replacement = rebuilt;
            }
            if (!replacement.toObject().isEmpty())
                destination.insert(key, replacement);
        } else if (member.isArray()) {
            if (!addressed) {
                if (!member.toArray().isEmpty())
                    destination.insert(key, member);
                continue;
            }
            path.removeFirst();
            if (!path.isEmpty() && path.first().startsWith(QLatin1Char('['))
                && path.first().endsWith(QLatin1Char(']')))
                path.removeFirst();
            QJsonArray rebuiltArray;
            QJsonArray const elements = member.toArray();
            for (QJsonValue const& element : elements) {
                QJsonValue replacement;
                if (path.isEmpty()) {
                    if (isNullish(newValue))
                        continue;
                    replacement = newValue;
                } else {
                    QJsonObject rebuilt;
                    modifyJsonValue(element, rebuilt, path, newValue);
                    replacement = rebuilt;
                }
                if (!replacement.toObject().isEmpty())
                    rebuiltArray.append(replacement);
            }
            destination.insert(key, rebuiltArray);
        } else {
            if (!addressed) {
                destination.insert(key, member);
                continue;
            }
            path.removeFirst();
            if (!path.isEmpty())
                destination.insert(key, member);
            else if (!isNullish(newValue))
                destination.insert(key, newValue);
        }
    }
}

QList<QString> utility::compareJdata(QJsonObject first, QJsonObject second)
{
    QMap<QString, QString> const firstHash = calcolateHash(first);
    QMap<QString, QString> const secondHash = calcolateHash(second);
    QSet<QString> const firstKeys(firstHash.keyBegin(), firstHash.keyEnd());
    QSet<QString> const secondKeys(secondHash.keyBegin(), secondHash.keyEnd());

    QSet<QString> onlyFirst = firstKeys;
    onlyFirst.subtract(secondKeys);
    QSet<QString> onlySecond = secondKeys;
    onlySecond.subtract(firstKeys);

    QList<QString> differences;
    for (QString const& key : std::as_const(onlyFirst))
        differences.append(key);
    for (QString const& key : std::as_const(onlySecond))
        differences.append(key);
    for (auto it = secondHash.begin(); it != secondHash.end(); ++it) {
        auto const other = firstHash.constFind(it.key());
        if (other != firstHash.constEnd() && other.value() != it.value() && !differences.contains(it.key()))
            differences.append(it.key());
    }
    return differences;
}

bool utility::compareVariantMap(QMap<QString, QVariant> first, QMap<QString, QVariant> second)
{
    if (first.size() != second.size())
        return false;
    // QMap keys come sorted already.
    if (first.keys() != second.keys())
        return false;
    for (auto it = first.begin(); it != first.end(); ++it) {
        if (it.value() != second.value(it.key()))
            return false;
    }
    return true;
}

QMap<QString, QString> utility::calcolateHash(QJsonObject object)
{
    QMap<QString, QString> hashes;
    for (auto it = object.begin(); it != object.end(); ++it) {
        QByteArray const text = JsonToString(it.value().toObject(), QJsonDocument::Compact).toUtf8();
        hashes.insert(it.key(),
                      QString::fromLatin1(QCryptographicHash::hash(text, QCryptographicHash::Sha1).toHex()));
    }
    return hashes;
}

QString utility::createStringHash(QString text)
{
    // The digest goes through a lossy UTF-8 decoding on purpose: stored PIN
    // hashes have this form, and a clean Base64 of the digest would not match them.
    QByteArray const digest = QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha1);
    return QString::fromLatin1(QString::fromUtf8(digest).toUtf8().toBase64());
}

QString utility::JsonToString(QJsonObject object, QJsonDocument::JsonFormat format)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(format));
}

bool utility::isValidIP(QString const& address)
{
    QHostAddress host;
    return host.setAddress(address);
}

double utility::ConvertDegreeAngleToDouble(double degrees, double minutes, double seconds)
{
    return minutes / 60 + degrees + seconds / 3600;
}

QString utility::generateUUId()
{
    QString text = QUuid::createUuid().toString();
    static QRegularExpression const braces(QStringLiteral("[}{]"));
    text.remove(braces);
    text.remove(QLatin1Char('-'));
    return QString::fromLatin1(text.toUtf8().toBase64());
}

void utility::aSleep(int seconds)
{
    logMessage(QStringLiteral("Wait ") + QString::number(seconds) + QStringLiteral(" sec...."),
               ::utility::logs::trace, "aSleep");
    // QTime wraps at midnight, so a wait across it ends at once.
    QTime const end = QTime::currentTime().addSecs(seconds);
    while (QTime::currentTime() < end)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 100);
}

void utility::amSleep(int milliseconds)
{
    logMessage(QStringLiteral("Wait ") + QString::number(milliseconds) + QStringLiteral(" millisec...."),
               ::utility::logs::trace, "amSleep");
    QTime const end = QTime::currentTime().addMSecs(milliseconds);
    while (QTime::currentTime() < end)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 100);
}

QList<QString> utility::getMatchRegex(QString text, QString pattern)
{
    QRegularExpression const expression(pattern);
    if (!expression.isValid()) {
        logMessage(QStringLiteral("Invalid regex pattern: ") + pattern, ::utility::logs::error, "getMatchRegex");
        return {};
    }
    QList<QString> captures;
    int const groups = expression.captureCount();
    for (int group = groups == 0 ? 0 : 1; group <= groups; ++group) {
        QRegularExpressionMatchIterator it = expression.globalMatch(text);
        while (it.hasNext()) {
            QString const captured = it.next().captured(group);
            if (!captured.isEmpty())
                captures.append(captured);
        }
    }
    return captures;
}

} // namespace database
