#include "database/base/json_image_t.h"

#include <QCryptographicHash>
#include <QException>
#include <QFile>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QMutexLocker>
#include <QtDebug>

#include "database/utility/utility.h"
#include "platform/logs/classlogs.h"
#include "platform/qjsonserializer/qjsonserializer.h"

namespace database {
namespace base {

namespace {

QString sha1Hex(QByteArray const& bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex());
}

void log(QString const& message, ::utility::logs::LogLevel level, char const* source)
{
    CLASSLOGS_LOG(message, level, QString::fromLatin1(source));
}

} // namespace

bool json_image_t::rebuild(QVariant const& root)
{
    updateCount = 0;
    try {
        jdata = utility::getInstance()->serializer()->serializeImpl(root).toObject();
    } catch (std::exception const& e) {
        log(QString::fromUtf8(e.what()), ::utility::logs::exception, "serialize");
        return false;
    }
    calculateHash();
    fresh = true;
    return true;
}

bool json_image_t::noteUpdate()
{
    fresh = false;
    return ++updateCount >= forcedRebuildAt;
}

void json_image_t::calculateHash()
{
    hashes.clear();
    for (auto it = jdata.constBegin(); it != jdata.constEnd(); ++it) {
        hashes.insert(it.key(),
                      sha1Hex(utility::JsonToString(it.value().toObject(), QJsonDocument::Compact).toUtf8()));
    }
    wholeHash = sha1Hex(utility::JsonToString(jdata, QJsonDocument::Compact).toUtf8());
}

int json_image_t::checkHash(QString const& section, QString const& _hash, QString const& name,
                           std::function<void()> const& refresh) const
{
    if (!hashes.contains(section))
        return -1;
    refresh();
    QString const local = hashes.value(section);
    if (local == _hash) {
        log(name + QStringLiteral("In DB ") + section + QStringLiteral(" not change "), ::utility::logs::warning,
            "checkHash");
        return 0;
    }
    log(name + QStringLiteral("In DB ") + section + QStringLiteral(" change"), ::utility::logs::warning, "checkHash");
    log(name + QStringLiteral("New hash ") + local, ::utility::logs::warning, "checkHash");
    log(name + QStringLiteral("Old hash ") + _hash, ::utility::logs::warning, "checkHash");
    return 1;
}

QJsonObject json_image_t::statusPacket(QString const& prefix, QJsonObject const& image)
{
    return QJsonObject{{QStringLiteral("topic"), prefix + QStringLiteral("/DB")},
                       {QStringLiteral("payload"), image},
                       {QStringLiteral("sender"), QString()},
                       {QStringLiteral("destination"), QString()}};
}

void json_image_t::print(QString const& name, QJsonObject const& json) const
{
    QMessageLogger().info(QLoggingCategory("default")).noquote()
        << QJsonDocument(json).toJson(QJsonDocument::Indented);
    log(name + QStringLiteral("HASH CONFIG: ") + wholeHash, ::utility::logs::trace, "print");
}

bool json_image_t::whenFree(QMutex* mutex, std::function<void()> const& work)
{
    if (!mutex->tryLock())
        return false;
    work();
    mutex->unlock();
    return true;
}

void json_image_t::wireTimer(QObject* engine, QTimer& timer)
{
    timer.setInterval(rebuildDelayMs);
    auto const type = Qt::ConnectionType(Qt::QueuedConnection | Qt::UniqueConnection);
    // By name: the engines' classes are not known here.
    QObject::connect(engine, SIGNAL(start_timer_serializer()), &timer, SLOT(start()), type);
    QObject::connect(engine, SIGNAL(stop_timer_serializer()), &timer, SLOT(stop()), type);
    QObject::connect(&timer, SIGNAL(timeout()), engine, SLOT(timer_serializer_elepsed()), type);
}

void json_image_t::advanceCounter(int& counter, QJsonObject const& packet)
{
    counter = int((qint64(counter) + 1) % 2147483647);
    QJsonObject copy = packet;
    copy.insert(QStringLiteral("counter"), counter);
}

bool json_image_t::logRoute(QString const& name, QString const& topic, bool found)
{
    QString const prefix = QStringLiteral("[") + name + QStringLiteral("] ");
    if (found)
        log(prefix + QStringLiteral("Found database path: ") + topic + QStringLiteral(" update it"),
            ::utility::logs::trace, "update");
    else
        log(prefix + QStringLiteral("Database path or packet not valid: ") + topic + QStringLiteral(" no update"),
            ::utility::logs::error, "update");
    return found;
}

void json_image_t::logUpdateError(QString const& name, QJsonObject const& packet, QString const& message)
{
    log(name + QStringLiteral("UPDATE ERROR - topic: ") + packet.value(QStringLiteral("topic")).toString()
            + QStringLiteral(" msg: ") + message,
        ::utility::logs::error, "updateError");
}

void json_image_t::logNotExist(QString const& name, QJsonObject const& packet)
{
    log(name + QStringLiteral("Receive event: No update db, object not exist: ")
            + packet.value(QStringLiteral("topic")).toString(),
        ::utility::logs::error, "_onObjectNotExist");
}

void json_image_t::logObjectError(QString const& name, QJsonObject const& packet, QString const& message)
{
    log(name + QStringLiteral("Receive event: Error to update ") + packet.value(QStringLiteral("topic")).toString()
            + QStringLiteral(" msg: ") + message,
        ::utility::logs::error, "_onObjectError");
}

QJsonObject json_image_t::readFile(QString const& path, QString const& name, char const* source, bool& ok,
                                   bool recode)
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
    QByteArray bytes = file.readAll();
    if (recode)
        bytes = QString::fromUtf8(bytes).toUtf8();
    QJsonDocument const document = QJsonDocument::fromJson(bytes, &error);
    file.close();
    if (error.error != QJsonParseError::NoError) {
        log(name + QStringLiteral("Error parsing file"), ::utility::logs::error, source);
        return QJsonObject();
    }
    ok = true;
    return document.object();
}

bool json_image_t::writeFile(QString const& path, QString const& name, QMutex* mutex) const
{
    QMutexLocker locker(mutex);
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

} // namespace base
} // namespace database
