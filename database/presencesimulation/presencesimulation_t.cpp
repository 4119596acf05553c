#include "database/presencesimulation/presencesimulation_t.h"

#include <QException>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QtDebug>

#include "database/base/literals.h"
#include "database/migration/migration_t.h"
#include "database/utility/utility.h"
#include "platform/qjsonserializer/qjsonserializer.h"

namespace database {
namespace presencesimulation {

namespace {

psi_data_t* readTree(QJsonObject const& json)
{
    return utility::getInstance()->serializer()->deserialize<psi_data_t*>(json, nullptr);
}

} // namespace

presencesimulation_t::presencesimulation_t(::database::definition::service_t const& _service)
{
    log(name + QStringLiteral("Starting presencesimulation database engine ..."), ::utility::logs::trace,
        "presencesimulation_t");
    service = _service;
    handler_topic = new psi_handler_topic_t(this);
    initSerializer();
    base::json_image_t::wireTimer(this, timer_serializer);
}

presencesimulation_t::~presencesimulation_t()
{
    if (data)
        data->initRequestSignals(this, false);
    delete access_mutex;
    delete save_mutex;
    delete handler_topic;
    delete data;
}

void presencesimulation_t::dropTree()
{
    if (!data)
        return;
    data->initRequestSignals(this, false);
    delete data;
    data = nullptr;
}

void presencesimulation_t::adopt(psi_data_t* tree)
{
    dropTree();
    data = tree;
    serialize(true);
    data->initRequestSignals(this, true);
}

bool presencesimulation_t::update(QJsonObject const& packet)
{
    QString const topic = packet.value(QStringLiteral("topic")).toString();
    bool found = false;
    if (topic.startsWith(literals::request_presencesimulation))
        found = handler_topic->whoIsRequest(packet, true);
    else if (topic.startsWith(literals::status_presencesimulation))
        found = handler_topic->whoIsStatus(packet, true);
    return base::json_image_t::logRoute(name, topic, found);
}

void presencesimulation_t::updateError(QJsonObject packet, QString const& message)
{
    base::json_image_t::logUpdateError(name, packet, message);
}

psi_data_t* presencesimulation_t::createdata() const
{
    return new psi_data_t(nullptr);
}

QJsonObject presencesimulation_t::getPacketSetDB(psi_data_t* tree) const
{
    return base::topicbase_t::getPacketRequest(
        literals::request_presencesimulation + QLatin1Char('/') + literals::topic_database,
        tree ? tree->toJson() : QJsonObject());
}

void presencesimulation_t::requestSetDB(psi_data_t* tree)
{
    _onRequest(getPacketSetDB(tree));
}

void presencesimulation_t::update_database(QJsonObject json, bool send)
{
    psi_data_t* incoming = nullptr;
    if (!json.isEmpty()) {
        try {
            incoming = readTree(json);
        } catch (QException const& e) {
            log(QStringLiteral("Error to deserialize presence simulation: ") + QString::fromUtf8(e.what()),
                ::utility::logs::error, "update_database");
        }
        if (incoming)
            incoming->deleteLater();
    }
    if (!image.isFresh())
        serialize(false);
    QList<QString> const changes = utility::compareJdata(image.image(), json);
    adopt(incoming ? new psi_data_t(*incoming) : new psi_data_t(nullptr));
    if (send)
        send_update_database(changes);
}

void presencesimulation_t::send_update_database(QList<QString> changes)
{
    QJsonObject packet = base::topicbase_t::getPacketUpdated(literals::topic_database, serialize(false));
    packet.insert(QStringLiteral("change_list"), QJsonArray::fromStringList(changes));
    _onUpdated(packet);
}

QJsonObject presencesimulation_t::getStatusDatabasePacket()
{
    return image.statusPacket(literals::status_presencesimulation, serialize(false));
}

QJsonObject presencesimulation_t::serialize(bool force)
{
    log(QStringLiteral("Serialize databse presence simulation"), ::utility::logs::trace, "serialize");
    if (image.isFresh() && !force)
        return image.image();
    if (!image.rebuild(QVariant::fromValue(static_cast<psi_data_t*>(data))))
        return QJsonObject();
    Q_EMIT onSaveRequest();
    return image.image();
}

void presencesimulation_t::deserialize(QJsonObject const& json)
{
    // The new week is read before the old one goes, so a bad document costs nothing.
    psi_data_t* tree = nullptr;
    try {
        tree = readTree(json);
    } catch (QException const& e) {
        log(QStringLiteral("Error to deserialize presence simulation: ") + QString::fromUtf8(e.what()),
            ::utility::logs::error, "deserialize");
    } catch (std::exception const& e) {
        log(QStringLiteral("Handling exception: ") + QString::fromUtf8(e.what()), ::utility::logs::exception,
            "deserialize");
    }
    if (tree)
        adopt(tree);
}

void presencesimulation_t::initSerializer()
{
    if (!access_mutex)
        access_mutex = new QMutex;
    if (!save_mutex)
        save_mutex = new QMutex;
    adopt(new psi_data_t(nullptr));
}

QString presencesimulation_t::getHash()
{
    serialize(false);
    return image.hash();
}

quint64 presencesimulation_t::getImageStamp()
{
    serialize(false);
    return image.stamp();
}

QMap<QString, QString> presencesimulation_t::getHashList()
{
    serialize(false);
    return image.hashList();
}

int presencesimulation_t::checkHash(QString const& section, QString const& _hash, bool send)
{
    int const outcome = image.checkHash(section, _hash, name, [this] { serialize(false); });
    if (outcome == 1 && send) {
        handler_topic->whoIsStatus(base::topicbase_t::getPacketUpdated(
                                       literals::status_presencesimulation + QLatin1Char('/') + section,
                                       getJsonValue(section)),
                                   true);
    }
    return outcome;
}

void presencesimulation_t::calculateHash()
{
    image.calculateHash();
}

QJsonObject presencesimulation_t::getJdata()
{
    return serialize(false);
}

QJsonObject presencesimulation_t::getJdata(definition::psi_type_database_field_t const& field)
{
    return getJdata().value(field.ToString()).toObject();
}

QJsonValue presencesimulation_t::getJsonValue(QString const& path)
{
    return utility::getJsonValue(QJsonDocument(getJdata()), path);
}

void presencesimulation_t::print()
{
    image.print(name, getJdata());
}

void presencesimulation_t::initRequestGeneralSignals(bool connect)
{
    if (data)
        data->initRequestSignals(this, connect);
}

void presencesimulation_t::timer_serializer_elepsed()
{
    Q_EMIT stop_timer_serializer();
    serialize(false);
}

void presencesimulation_t::_onUpdated(QJsonObject _packet)
{
    if (image.noteUpdate())
        serialize(true);
    else
        Q_EMIT start_timer_serializer();
    handler_topic->whoIsChange(_packet, true, true);
}

void presencesimulation_t::_onRequest(QJsonObject _packet)
{
    if (service == ::database::definition::service_t::offline) {
        Q_EMIT eventOfflineRequest(_packet);
        return;
    }
    base::json_image_t::advanceCounter(counter, _packet);
    Q_EMIT onPresencesimulationRequest(_packet);
}

void presencesimulation_t::_onObjectNotExist(QJsonObject _packet)
{
    base::json_image_t::logNotExist(name, _packet);
    Q_EMIT onPresencesimulationObjectNotExist(_packet);
}

void presencesimulation_t::_onObjectError(QJsonObject _packet, QString _message)
{
    base::json_image_t::logObjectError(name, _packet, _message);
    Q_EMIT onPresencesimulationObjectError(_packet, _message);
}

QJsonObject presencesimulation_t::loadFromJson(QJsonObject& json, int storedMajor, int& result)
{
    try {
        migration::migration_t::getInstance()->migrate_presencesimulation(storedMajor, json, result);
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

QJsonObject presencesimulation_t::loadFromFile(QString const& path, int storedMajor, int& result)
{
    bool ok = false;
    QJsonObject json = base::json_image_t::readFile(path, name, "loadFromFile", ok);
    if (!ok)
        return QJsonObject();
    return loadFromJson(json, storedMajor, result);
}

QJsonObject presencesimulation_t::readFromFile(QString const& path)
{
    bool ok = false;
    return base::json_image_t::readFile(path, name, "readFromFile", ok);
}

bool presencesimulation_t::saveToFile(QString const& path, bool force)
{
    if (force || !image.isFresh())
        serialize(false);
    return image.writeFile(path, name, save_mutex);
}

void presencesimulation_t::log(QString const& message, ::utility::logs::LogLevel level, char const* source) const
{
    CLASSLOGS_LOG(message, level, QString::fromLatin1(source));
}

} // namespace presencesimulation
} // namespace database
