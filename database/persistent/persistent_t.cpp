#include "database/persistent/persistent_t.h"

#include <QCryptographicHash>
#include <QException>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMutexLocker>
#include <QLoggingCategory>
#include <QtDebug>

#include "database/base/literals.h"
#include "database/default/persistent/ps_default_t.h"
#include "database/migration/migration_t.h"
#include "database/utility/utility.h"
#include "platform/logs/classlogs.h"
#include "platform/qjsonserializer/qjsondeserializationexception.h"
#include "platform/qjsonserializer/qjsonserializer.h"

namespace database {
namespace persistent {

namespace {

// A long burst of updates can't postpone the image for ever.
constexpr int kForcedSerializeAt = 21;
constexpr int kSerializeDelayMs = 2000;

QString sha1Hex(QByteArray const& bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex());
}

} // namespace

persistent_t::persistent_t(::database::definition::service_t const& _service)
{
    log(name + QStringLiteral("Starting persistent database engine ..."), ::utility::logs::trace, "persistent_t");
    service = _service;
    handler_topic = new ps_handler_topic_t(this);
    initSerializer();
    initTimer();
}

persistent_t::persistent_t(persistent_t const& other)
    : QObject(nullptr)
    , jdata(other.jdata)
    , counter(other.counter)
    , service(other.service)
    , hash(other.hash)
    , hash_list(other.hash_list)
{
    handler_topic = new ps_handler_topic_t(this);
    initSerializer();
    deserialize(other.jdata);
    initTimer();
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

void persistent_t::initTimer()
{
    timer_serializer.setInterval(kSerializeDelayMs);
    auto const type = Qt::ConnectionType(Qt::QueuedConnection | Qt::UniqueConnection);
    connect(this, &persistent_t::start_timer_serializer, &timer_serializer, qOverload<>(&QTimer::start), type);
    connect(this, &persistent_t::stop_timer_serializer, &timer_serializer, &QTimer::stop, type);
    connect(&timer_serializer, &QTimer::timeout, this, &persistent_t::timer_serializer_elepsed, type);
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
    if (found) {
        CLASSLOGS_LOG(QStringLiteral("[") + name + QStringLiteral("] ") + QStringLiteral("Found database path: ")
                          + topic + QStringLiteral(" update it"),
                      ::utility::logs::trace, QStringLiteral("update"));
        return true;
    }
    log(QStringLiteral("[") + name + QStringLiteral("] ") + QStringLiteral("Database path or packet not valid: ")
            + topic + QStringLiteral(" no update"),
        ::utility::logs::error, "update");
    return false;
}

void persistent_t::updateError(QJsonObject packet, QString const& message)
{
    log(name + QStringLiteral("UPDATE ERROR - topic: ") + packet.value(QStringLiteral("topic")).toString()
            + QStringLiteral(" msg: ") + message,
        ::utility::logs::error, "updateError");
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
    if (!jdata_valid)
        serialize(false);
    QList<QString> const changes = utility::compareJdata(jdata, json);

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
    serialize(false);
    QJsonObject packet = base::topicbase_t::getPacketUpdated(literals::topic_database, jdata);
    packet.insert(QStringLiteral("change_list"), QJsonArray::fromStringList(changes));
    _onUpdated(packet);
}

QJsonObject persistent_t::getStatusDatabasePacket()
{
    if (!jdata_valid)
        serialize(false);
    QJsonObject packet = base::topicbase_t::getPacketUpdated(
        literals::status_persistent + QLatin1Char('/') + literals::topic_database, jdata);
    packet.insert(QStringLiteral("sender"), QString());
    packet.insert(QStringLiteral("destination"), QString());
    return packet;
}

QJsonObject persistent_t::serialize(bool force)
{
    if (jdata_valid && !force)
        return jdata;
    update_count = 0;
    try {
        QJsonObject const image = utility::getInstance()
                                      ->serializer()
                                      ->serializeImpl(QVariant::fromValue(static_cast<ps_data_t*>(data)))
                                      .toObject();
        jdata = image;
    } catch (QException const& e) {
        CLASSLOGS_LOG(QString::fromUtf8(e.what()), ::utility::logs::exception, QStringLiteral("serialize"));
        return QJsonObject();
    }
    calculateHash();
    jdata_valid = true;
    Q_EMIT onSaveRequest();
    return jdata;
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
    if (!jdata_valid)
        serialize(false);
    return hash;
}

QMap<QString, QString> persistent_t::getHashList()
{
    if (!jdata_valid)
        serialize(false);
    return hash_list;
}

int persistent_t::checkHash(QString const& section, QString const& _hash, bool send)
{
    // The list is read before the image is refreshed: a section unknown so far stays unknown.
    auto const found = hash_list.constFind(section);
    if (found == hash_list.constEnd())
        return -1;
    if (!jdata_valid)
        serialize(false);
    QString const local = hash_list.value(section);
    if (local == _hash) {
        CLASSLOGS_LOG(name + QStringLiteral("In DB ") + section + QStringLiteral(" not change "),
                      ::utility::logs::warning, QStringLiteral("checkHash"));
        return 0;
    }
    CLASSLOGS_LOG(name + QStringLiteral("In DB ") + section + QStringLiteral(" change"), ::utility::logs::warning,
                  QStringLiteral("checkHash"));
    CLASSLOGS_LOG(name + QStringLiteral("New hash ") + local, ::utility::logs::warning, QStringLiteral("checkHash"));
    CLASSLOGS_LOG(name + QStringLiteral("Old hash ") + _hash, ::utility::logs::warning, QStringLiteral("checkHash"));
    if (send) {
        QJsonObject const packet = base::topicbase_t::getPacketUpdated(
            literals::status_persistent + QLatin1Char('/') + section, getJsonValue(section));
        handler_topic->whoIsStatus(packet, true);
    }
    return 1;
}

void persistent_t::calculateHash()
{
    hash_list.clear();
    for (auto it = jdata.constBegin(); it != jdata.constEnd(); ++it) {
        hash_list.insert(it.key(), sha1Hex(utility::JsonToString(it.value().toObject(), QJsonDocument::Compact)
                                               .toUtf8()));
    }
    hash = sha1Hex(utility::JsonToString(jdata, QJsonDocument::Compact).toUtf8());
}

QJsonObject persistent_t::getJdata()
{
    if (!jdata_valid)
        serialize(false);
    return jdata;
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
    QMessageLogger().info(QLoggingCategory("default")).noquote()
        << QJsonDocument(getJdata()).toJson(QJsonDocument::Indented);
    CLASSLOGS_LOG(name + QStringLiteral("HASH CONFIG: ") + hash, ::utility::logs::trace, QStringLiteral("print"));
}

void persistent_t::initRequestGeneralSignals(bool connect)
{
    if (data)
        data->initRequestSignals(this, connect);
}

void persistent_t::timer_serializer_elepsed()
{
    Q_EMIT stop_timer_serializer();
    serialize(false);
}

void persistent_t::_onUpdated(QJsonObject _packet)
{
    jdata_valid = false;
    ++update_count;
    if (update_count >= kForcedSerializeAt)
        serialize(true);
    else
        Q_EMIT start_timer_serializer();
    handler_topic->whoIsChange(_packet, true, true);
}

void persistent_t::_onRequest(QJsonObject _packet)
{
    if (service == ::database::definition::service_t::offline) {
        Q_EMIT eventOfflineRequest(_packet);
        return;
    }
    // The counter is advanced and written into a copy only: no packet carries
    // it, and nothing may rely on it.
    counter = int((qint64(counter) + 1) % 2147483647);
    QJsonObject copy = _packet;
    copy.insert(QStringLiteral("counter"), counter);
    Q_EMIT onPersistentRequest(_packet);
}

void persistent_t::_onObjectNotExist(QJsonObject _packet)
{
    log(name + QStringLiteral("Receive event: No update db, object not exist: ")
            + _packet.value(QStringLiteral("topic")).toString(),
        ::utility::logs::error, "_onObjectNotExist");
    Q_EMIT onPersistentObjectNotExist(_packet);
}

void persistent_t::_onObjectError(QJsonObject _packet, QString _message)
{
    log(name + QStringLiteral("Receive event: Error to update ") + _packet.value(QStringLiteral("topic")).toString()
            + QStringLiteral(" msg: ") + _message,
        ::utility::logs::error, "_onObjectError");
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

QJsonObject persistent_t::readJsonFile(QString const& path, char const* source, bool& ok)
{
    ok = false;
    QFile file(path);
    if (!file.exists()) {
        log(name + QStringLiteral("File not exist ... ") + path, ::utility::logs::error, source);
        return QJsonObject();
    }
    if (!file.open(QIODevice::ReadOnly))
        return QJsonObject();
    QJsonParseError error;
    QJsonDocument const document = QJsonDocument::fromJson(file.readAll(), &error);
    file.close();
    if (error.error != QJsonParseError::NoError) {
        log(name + QStringLiteral("Error parsing file"), ::utility::logs::error, source);
        return QJsonObject();
    }
    ok = true;
    return document.object();
}

QJsonObject persistent_t::loadFromFile(QString const& path, int& result)
{
    bool ok = false;
    QJsonObject json = readJsonFile(path, "loadFromFile", ok);
    if (!ok)
        return QJsonObject();
    return loadFromJson(json, result);
}

QJsonObject persistent_t::readFromFile(QString const& path)
{
    bool ok = false;
    return readJsonFile(path, "readFromFile", ok);
}

bool persistent_t::saveToFile(QString const& path, bool force)
{
    QMutexLocker locker(save_mutex);
    if (force || !jdata_valid)
        serialize(false);
    QFile file(path);
    if (!file.exists())
        log(name + QStringLiteral("File not foud write ") + path, ::utility::logs::warning, "saveToFile");
    // Written in place: the host that wants atomic saves gives a temporary path and renames it.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        log(name + QStringLiteral("Unable to open file: ") + path, ::utility::logs::error, "saveToFile");
        return false;
    }
    QByteArray const bytes = QJsonDocument(jdata).toJson(QJsonDocument::Indented);
    if (file.write(bytes) != bytes.size() || !file.flush()) {
        file.close();
        locker.unlock();
        log(name + QStringLiteral("Unable to write file: ") + path, ::utility::logs::error, "saveToFile");
        return false;
    }
    file.close();
    return true;
}

void persistent_t::log(QString const& message, ::utility::logs::LogLevel level, char const* source) const
{
    CLASSLOGS_LOG(message, level, QString::fromLatin1(source));
}

} // namespace persistent
} // namespace database
