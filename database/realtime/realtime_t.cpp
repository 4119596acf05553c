#include "database/realtime/realtime_t.h"

#include <QDateTime>
#include <QException>
#include <QJsonArray>

#include "database/base/literals.h"
#include "database/migration/migration_t.h"
#include "database/realtime/dbs/rt_system_t.h"
#include "database/utility/utility.h"
#include "platform/logs/classlogs.h"
#include "platform/qjsonserializer/qjsondeserializationexception.h"
#include "platform/qjsonserializer/qjsonserializer.h"

namespace database {
namespace realtime {

realtime_t::realtime_t(::database::definition::service_t const& _service)
{
    log(QStringLiteral("Starting realtime database engine ..."), ::utility::logs::trace, "realtime_t");
    service = _service;
    handler_topic = new rt_handler_topic_t(this);
    initSerializer();
    initTimer();
}

realtime_t::realtime_t(realtime_t& other)
    : QObject(nullptr)
    , service(other.service)
{
    handler_topic = new rt_handler_topic_t(this);
    initSerializer();
    initTimer();
    deserialize(other.getJdata());
}

realtime_t::~realtime_t()
{
    dropTree();
    delete handler_topic;
    delete access_mutex;
    delete save_mutex;
}

void realtime_t::initTimer()
{
    base::json_image_t::wireTimer(this, timer_serializer);
}

void realtime_t::dropTree()
{
    if (!data)
        return;
    data->initRequestSignals(this, false);
    delete data;
    data = nullptr;
}

void realtime_t::adopt(rt_data_t* tree)
{
    data = tree;
    serialize(true);
    data->initRequestSignals(this, true);
}

void realtime_t::initSerializer()
{
    dropTree();
    if (!access_mutex)
        access_mutex = new QMutex;
    if (!save_mutex)
        save_mutex = new QMutex;
    adopt(new rt_data_t(this));
}

void realtime_t::initRequestGeneralSignals(bool connect)
{
    if (data)
        data->initRequestSignals(this, connect);
}

bool realtime_t::update(QJsonObject const& packet)
{
    QString const topic = packet.value(QStringLiteral("topic")).toString();
    return base::json_image_t::logRoute(
        name, topic, topic.startsWith(literals::status_realtime) && handler_topic->whoIsStatus(packet, true));
}

void realtime_t::updateError(QJsonObject const& packet, QString const& message)
{
    base::json_image_t::logUpdateError(name, packet, message);
}

bool realtime_t::updateDateTime(QJsonDocument& doc, QString const& path)
{
    if (path.isEmpty())
        return false;
    QJsonValue value = doc.object();
    QString operation;
    QString const now = QDateTime::currentDateTime().toString(Qt::TextDate);
    if (!utility::updateJsonSubValue(value, path + QStringLiteral("/updated"), now, operation))
        return false;
    doc.setObject(value.toObject());
    return true;
}

void realtime_t::requestSetDB(rt_data_t* _data)
{
    QJsonObject payload;
    if (_data) {
        _data->setTopic(literals::topic_database);
        payload = _data->toJson();
    }
    _onRequest(base::topicbase_t::getPacketRequest(
        literals::request_realtime + QLatin1Char('/') + literals::topic_database, payload));
}

void realtime_t::update_database(QJsonObject json, bool notify)
{
    rt_data_t* incoming = nullptr;
    if (!json.isEmpty()) {
        try {
            incoming = utility::getInstance()->serializer()->deserialize<rt_data_t*>(json, nullptr);
        } catch (std::exception const& e) {
            // A database that can't be read replaces nothing.
            log(QStringLiteral("Error to deserialize realtime: ") + QString::fromUtf8(e.what()),
                ::utility::logs::error, "update_database");
            return;
        }
        if (incoming)
            incoming->deleteLater();
    }
    QList<QString> const change_list = utility::compareJdata(serialize(false), json);
    dropTree();
    adopt(incoming ? new rt_data_t(*incoming) : new rt_data_t(this));
    if (notify)
        send_update_database(change_list);
}

void realtime_t::send_update_database(QList<QString> change_list)
{
    QJsonObject packet = base::topicbase_t::getPacketUpdated(literals::topic_database, serialize(false));
    packet.insert(QStringLiteral("change_list"), QJsonArray::fromStringList(change_list));
    _onUpdated(packet);
}

QJsonObject realtime_t::getStatusDatabasePacket()
{
    if (data)
        data->getSystem()->update_datetime(QDateTime::currentDateTime(), false);
    return base::json_image_t::statusPacket(literals::status_realtime, serialize(true));
}

QJsonObject realtime_t::serialize(bool force)
{
    if (image.isFresh() && !force)
        return image.image();
    if (!image.rebuild(QVariant::fromValue(static_cast<rt_data_t*>(data))))
        return QJsonObject();
    Q_EMIT onSaveRequest();
    return image.image();
}

void realtime_t::deserialize(QJsonObject const& json)
{
    dropTree();
    rt_data_t* tree = nullptr;
    try {
        tree = utility::getInstance()->serializer()->deserialize<rt_data_t*>(json, nullptr);
    } catch (QJsonDeserializationException const& e) {
        log(QStringLiteral("Error to deserialize realtime: ") + QString::fromUtf8(e.what()), ::utility::logs::error,
            "deserialize");
        // A bad file gives an empty, working store; its image is that of the empty tree.
        adopt(new rt_data_t(nullptr));
        return;
    } catch (std::exception const& e) {
        log(QStringLiteral("Handling exception: ") + QString::fromUtf8(e.what()), ::utility::logs::exception,
            "deserialize");
        return;
    }
    if (tree)
        adopt(tree);
}

QJsonObject realtime_t::getJdata()
{
    return serialize(false);
}

QJsonObject realtime_t::getJdata(definition::rt_type_database_field_t const& field)
{
    return getJdata().value(field.ToString()).toObject();
}

QString realtime_t::getHash()
{
    serialize(false);
    return image.hash();
}

quint64 realtime_t::getImageStamp()
{
    serialize(false);
    return image.stamp();
}

QMap<QString, QString> realtime_t::getHashList(bool refresh)
{
    if (refresh)
        serialize(false);
    return image.hashList();
}

QMap<QString, QString> realtime_t::calculateHash()
{
    image.calculateHash();
    return image.hashList();
}

int realtime_t::checkHash(QString const& path, QString const& hash)
{
    if (!image.hashList().contains(path))
        return -1;
    QString const stored = image.hashList().value(path);
    if (stored == hash) {
        log(QStringLiteral("In DB ") + path + QStringLiteral(" not change ") + hash, ::utility::logs::warning,
            "checkHash");
        return 0;
    }
    log(QStringLiteral("In DB ") + path + QStringLiteral(" change"), ::utility::logs::warning, "checkHash");
    log(QStringLiteral("New hash ") + hash, ::utility::logs::warning, "checkHash");
    log(QStringLiteral("Old hash ") + stored, ::utility::logs::warning, "checkHash");
    QJsonObject const packet = base::topicbase_t::getPacketUpdated(
        literals::status_realtime + QLatin1Char('/') + path,
        utility::getJsonValue(QJsonDocument(serialize(false)), path));
    handler_topic->whoIsStatus(packet, true);
    return 1;
}

bool realtime_t::saveToFile(QString const& path, bool force)
{
    if (force || !image.isFresh())
        serialize(false);
    if (!image.writeFile(path, name, save_mutex))
        return false;
    log(name + QStringLiteral("Save to file ") + path, ::utility::logs::trace, "saveToFile");
    return true;
}

QJsonObject realtime_t::loadFromFile(QString const& path, int version, int& result)
{
    bool ok = false;
    QJsonObject json = base::json_image_t::readFile(path, name, "loadFromFile", ok, true);
    if (!ok)
        return QJsonObject();
    return loadFromJson(json, version, result);
}

QJsonObject realtime_t::loadFromJson(QJsonObject& json, int version, int& result)
{
    try {
        migration::migration_t::getInstance()->migrate_realtime(version, json, result);
        if (result < 0 || QJsonDocument(json).isNull())
            return QJsonObject();
        deserialize(json);
        return json;
    } catch (std::exception const& e) {
        log(QStringLiteral("Handling exception: ") + QString::fromUtf8(e.what()), ::utility::logs::exception,
            "loadFromJson");
    }
    return QJsonObject();
}

QJsonObject realtime_t::readFromFile(QString const& path)
{
    bool ok = false;
    return base::json_image_t::readFile(path, name, "readFromFile", ok, true);
}

void realtime_t::timer_serializer_elepsed()
{
    Q_EMIT stop_timer_serializer();
    if (!serializeUnlessBusy(false))
        Q_EMIT start_timer_serializer();
}

void realtime_t::_onUpdated(QJsonObject _packet)
{
    if (!image.noteUpdate() || !serializeUnlessBusy(true))
        Q_EMIT start_timer_serializer();
    handler_topic->whoIsChange(_packet, true, true);
}

bool realtime_t::serializeUnlessBusy(bool force)
{
    // A consistency check on the pool may be walking the tree under the
    // access mutex, or a handler of this thread holds it: the timer tries again.
    return base::json_image_t::whenFree(access_mutex, [&] { serialize(force); });
}

void realtime_t::_onRequest(QJsonObject _packet)
{
    if (service == ::database::definition::service_t::offline) {
        if (!handler_topic->whoIsRequestOffline(_packet, true))
            Q_EMIT eventOfflineRequest(_packet);
        return;
    }
    // The server's live state changes only by status packets.
    if (service != ::database::definition::service_t::server)
        Q_EMIT onRealtimeRequest(_packet);
}

void realtime_t::_onObjectNotExist(QJsonObject _packet)
{
    base::json_image_t::logNotExist(name, _packet);
    Q_EMIT onRealtimeObjectNotExist(_packet);
}

void realtime_t::_onObjectError(QJsonObject _packet, QString _message)
{
    base::json_image_t::logObjectError(name, _packet, _message);
    Q_EMIT onRealtimeObjectError(_packet, _message);
}

void realtime_t::log(QString const& message, ::utility::logs::LogLevel level, char const* source) const
{
    CLASSLOGS_LOG(message, level, QString::fromLatin1(source));
}

} // namespace realtime
} // namespace database
