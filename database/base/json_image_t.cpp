#include "database/base/json_image_t.h"

#include <QCryptographicHash>
#include <QException>
#include <QFile>
#include <QJsonDocument>
#include <QMutexLocker>

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
