#include "database/persistent/persistent_t.h"

#include <QException>
#include <QJsonArray>
#include <QJsonDocument>

#include "database/base/literals.h"
#include "database/default/persistent/ps_default_t.h"
#include "database/migration/migration_t.h"
#include "database/utility/utility.h"
#include "platform/logs/classlogs.h"
#include "platform/qjsonserializer/qjsondeserializationexception.h"
#include "platform/qjsonserializer/qjsonserializer.h"

namespace database {
namespace persistent {

persistent_t::persistent_t(::database::definition::service_t const& _service)
{
    log(name + QStringLiteral("Starting persistent database engine ..."), ::utility::logs::trace, "persistent_t");
    service = _service;
    handler_topic = new ps_handler_topic_t(this);
    initSerializer();
    base::json_image_t::wireTimer(this, timer_serializer);
}

persistent_t::persistent_t(persistent_t const& other)
    : QObject(nullptr)
    , counter(other.counter)
    , service(other.service)
{
    handler_topic = new ps_handler_topic_t(this);
    initSerializer();
    deserialize(other.image.image());
    base::json_image_t::wireTimer(this, timer_serializer);
}

persistent_t::~persistent_t()
{
    if (data)
        data->initRequestSignals(this, false);
    delete access_mutex;
    delete save_mutex;
    delete handler_topic;
    delete data;
}

void persistent_t::dropTree()
{
    if (!data)
        return;
    data->initRequestSignals(this, false);
    delete data;
    data = nullptr;
}

bool persistent_t::update(QJsonObject const& packet)
{
    QString const topic = packet.value(QStringLiteral("topic")).toString();
    bool found = false;
    if (topic.startsWith(literals::request_persistent))
        found = handler_topic->whoIsRequest(packet, true);
    else if (topic.startsWith(literals::status_persistent))
        found = handler_topic->whoIsStatus(packet, true);
    return base::json_image_t::logRoute(name, topic, found);
}

void persistent_t::updateError(QJsonObject packet, QString const& message)
{
    base::json_image_t::logUpdateError(name, packet, message);
}

void persistent_t::requestSetDB(ps_data_t* _data)
{
    QJsonObject payload;
    if (_data) {
        _data->setTopic(literals::topic_database);
        payload = _data->toJson();
    }
    update(base::topicbase_t::getPacketRequest(literals::request_persistent + QLatin1Char('/') + literals::topic_database,
                                               payload));
}

void persistent_t::update_database(QJsonObject json, bool send)
{
    ps_data_t* incoming = nullptr;
    if (!json.isEmpty()) {
        try {
            incoming = utility::getInstance()->serializer()->deserialize<ps_data_t*>(json, nullptr);
        } catch (QException const& e) {
            log(QStringLiteral("Error to deserialize peristent: ") + QString::fromUtf8(e.what()),
                ::utility::logs::error, "update_database");
            incoming = nullptr;
        }
        if (incoming)
            incoming->deleteLater();
    }
    if (!image.isFresh())
        serialize(false);
    QList<QString> const changes = utility::compareJdata(image.image(), json);

    dropTree();
    if (incoming) {
        data = new ps_data_t(*incoming);
    } else {
        QPointer<ps_data_t> defaults = ps_default_t::getInstance()->getData();
        data = defaults ? new ps_data_t(*defaults) : new ps_data_t(nullptr);
    }
    // A replacement never brings its own versions: this library's are the truth.
    data->getVersions()->update(ps_default_t::getInstance()->getVersions(), true);
    serialize(true);
    data->initRequestSignals(this, true);
    if (send)
        send_update_database(changes);
}

void persistent_t::send_update_database(QList<QString> changes)
{
    QJsonObject packet = base::topicbase_t::getPacketUpdated(literals::topic_database, serialize(false));
    packet.insert(QStringLiteral("change_list"), QJsonArray::fromStringList(changes));
    _onUpdated(packet);
}

QJsonObject persistent_t::getStatusDatabasePacket()
{
    return base::json_image_t::statusPacket(literals::status_persistent, serialize(false));
}

QJsonObject persistent_t::serialize(bool force)
{
    if (image.isFresh() && !force)
        return image.image();
    if (!image.rebuild(QVariant::fromValue(static_cast<ps_data_t*>(data))))
        return QJsonObject();
    Q_EMIT onSaveRequest();
    return image.image();
}

void persistent_t::deserialize(QJsonObject const& json)
{
    dropTree();
    try {
        data = utility::getInstance()->serializer()->deserialize<ps_data_t*>(json, nullptr);
    } catch (QJsonDeserializationException const& e) {
        log(QStringLiteral("Error to deserialize peristent: ") + QString::fromUtf8(e.what()), ::utility::logs::error,
            "deserialize");
    } catch (QException const& e) {
        log(QStringLiteral("Error to deserialize peristent: ") + QString::fromUtf8(e.what()), ::utility::logs::error,
            "deserialize");
    } catch (std::exception const& e) {
        log(QStringLiteral("Handling exception: ") + QString::fromUtf8(e.what()), ::utility::logs::exception,
            "deserialize");
    } catch (...) {
        log(QStringLiteral("Handling exception: unknown"), ::utility::logs::exception, "deserialize");
    }
    if (data) {
        serialize(true);
        data->initRequestSignals(this, true);
    }
}

void persistent_t::initSerializer()
{
    dropTree();
    deserialize(ps_default_t::getInstance()->getJData());
    if (!access_mutex)
        access_mutex = new QMutex;
    if (!save_mutex)
        save_mutex = new QMutex;
    serialize(true);
}

QString persistent_t::getHash()
{
    serialize(false);
    return image.hash();
}

quint64 persistent_t::getImageStamp()
{
    serialize(false);
    return image.stamp();
}

QMap<QString, QString> persistent_t::getHashList()
{
    serialize(false);
    return image.hashList();
}

int persistent_t::checkHash(QString const& section, QString const& _hash, bool send)
{
    // A section unknown so far stays unknown: the list is read before the refresh.
    int const outcome = image.checkHash(section, _hash, name, [this] { serialize(false); });
    if (outcome == 1 && send) {
        QJsonObject const packet = base::topicbase_t::getPacketUpdated(
            literals::status_persistent + QLatin1Char('/') + section, getJsonValue(section));
        handler_topic->whoIsStatus(packet, true);
    }
    return outcome;
}

void persistent_t::calculateHash()
{
    image.calculateHash();
}

QJsonObject persistent_t::getJdata()
{
    return serialize(false);
}

QJsonObject persistent_t::getJdata(definition::ps_type_database_field_t const& field)
{
    return getJdata().value(field.ToString()).toObject();
}

QJsonValue persistent_t::getJsonValue(QString const& path)
{
    return utility::getJsonValue(QJsonDocument(getJdata()), path);
}

void persistent_t::setVersions(QString const& general, QString const& server, QString const& comunication)
{
    ps_default_t::getInstance()->setVsersions(general, server, QStringLiteral("4.0.0"), comunication);
    if (data) {
        data->getVersions()->update(ps_default_t::getInstance()->getVersions(), true);
        serialize(false);
    }
}

void persistent_t::print()
{
    image.print(name, getJdata());
}

void persistent_t::initRequestGeneralSignals(bool connect)
{
    if (data)
        data->initRequestSignals(this, connect);
}

void persistent_t::timer_serializer_elepsed()
{
    Q_EMIT stop_timer_serializer();
    if (!serializeUnlessBusy(false))
        Q_EMIT start_timer_serializer();
}

void persistent_t::_onUpdated(QJsonObject _packet)
{
    if (!image.noteUpdate() || !serializeUnlessBusy(true))
        Q_EMIT start_timer_serializer();
    handler_topic->whoIsChange(_packet, true, true);
}

bool persistent_t::serializeUnlessBusy(bool force)
{
    // A consistency check on the pool may be walking the tree under the
    // access mutex, or a handler of this thread holds it: the timer tries again.
    return base::json_image_t::whenFree(access_mutex, [&] { serialize(force); });
}

void persistent_t::_onRequest(QJsonObject _packet)
{
    if (service == ::database::definition::service_t::offline) {
        Q_EMIT eventOfflineRequest(_packet);
        return;
    }
    base::json_image_t::advanceCounter(counter, _packet);
    Q_EMIT onPersistentRequest(_packet);
}

void persistent_t::_onObjectNotExist(QJsonObject _packet)
{
    base::json_image_t::logNotExist(name, _packet);
    Q_EMIT onPersistentObjectNotExist(_packet);
}

void persistent_t::_onObjectError(QJsonObject _packet, QString _message)
{
    base::json_image_t::logObjectError(name, _packet, _message);
    Q_EMIT onPersistentObjectError(_packet, _message);
}

QJsonObject persistent_t::loadFromJson(QJsonObject& json, int& result)
{
    try {
        migration::migration_t::getInstance()->migrate_persistent(json, result);
        if (result < 0)
            return QJsonObject();
        if (QJsonDocument(json).isNull())
            return QJsonObject();
        deserialize(json);
        Q_EMIT consistency_check_sync(QStringList{QStringLiteral("ALL")}, true, true);
        return json;
    } catch (QException const& e) {
        log(QStringLiteral("Handling exception: ") + QString::fromUtf8(e.what()), ::utility::logs::exception,
            "loadFromJson");
    } catch (std::exception const& e) {
        log(QStringLiteral("Handling exception: ") + QString::fromUtf8(e.what()), ::utility::logs::exception,
            "loadFromJson");
    }
    return QJsonObject();
}

QJsonObject persistent_t::loadFromFile(QString const& path, int& result)
{
    bool ok = false;
    QJsonObject json = base::json_image_t::readFile(path, name, "loadFromFile", ok);
    if (!ok)
        return QJsonObject();
    return loadFromJson(json, result);
}

QJsonObject persistent_t::readFromFile(QString const& path)
{
    bool ok = false;
    return base::json_image_t::readFile(path, name, "readFromFile", ok);
}

bool persistent_t::saveToFile(QString const& path, bool force)
{
    if (force || !image.isFresh())
        serialize(false);
    return image.writeFile(path, name, save_mutex);
}

void persistent_t::log(QString const& message, ::utility::logs::LogLevel level, char const* source) const
{
    CLASSLOGS_LOG(message, level, QString::fromLatin1(source));
}

} // namespace persistent
} // namespace database
