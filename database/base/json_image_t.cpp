#include "database/base/json_image_t.h"

#include <QCryptographicHash>
#include <QException>
#include <QFile>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QMutexLocker>
#include <QtDebug>

#include <atomic>

#include "database/base/json_map_cache_t.h"
#include "database/base/topicbase_t.h"
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

/// The bytes a digest is taken over: those a round trip through QString
/// gives, the same bytes unless the text is not valid UTF-8.
QByteArray hashedBytes(QByteArray bytes)
{
    if (!bytes.isValidUtf8())
        bytes = QString::fromUtf8(bytes).toUtf8();
    return bytes;
}

/// The digest of the compact text.
QString compactHash(QJsonObject const& object)
{
    return sha1Hex(hashedBytes(QJsonDocument(object).toJson(QJsonDocument::Compact)));
}

/// A key that the compact text writes as it stands between its quotes.
bool plainKey(QString const& key)
{
    for (QChar const c : key) {
        if (c.unicode() < 0x20 || c.unicode() >= 0x7f || c == QLatin1Char('"') || c == QLatin1Char('\\'))
            return false;
    }
    return true;
}

QJsonValue valueAt(QJsonObject const& root, QStringList const& path)
{
    QJsonValue value = root;
    for (QString const& key : path) {
        if (!value.isObject())
            return QJsonValue(QJsonValue::Undefined);
        value = value.toObject().value(key);
    }
    return value;
}

/// Equal JSON, not looking at the kept maps below (paths relative to a and b),
/// which are equal by construction.
bool sameExcept(QJsonValue const& a, QJsonValue const& b, QList<QStringList> const& kept, qsizetype depth)
{
    if (kept.isEmpty())
        return a == b;
    if (!a.isObject() || !b.isObject())
        return false;
    QJsonObject const left = a.toObject();
    QJsonObject const right = b.toObject();
    if (left.keys() != right.keys())
        return false;
    for (auto it = left.constBegin(); it != left.constEnd(); ++it) {
        QList<QStringList> below;
        bool skip = false;
        for (QStringList const& path : kept) {
            if (path.at(depth) != it.key())
                continue;
            if (path.size() == depth + 1)
                skip = true;
            else
                below.append(path);
        }
        if (skip)
            continue;
        if (!sameExcept(it.value(), right.value(it.key()), below, depth + 1))
            return false;
    }
    return true;
}

void log(QString const& message, ::utility::logs::LogLevel level, char const* source)
{
    CLASSLOGS_LOG(message, level, QString::fromLatin1(source));
}

} // namespace

bool json_image_t::rebuild(QVariant const& root, bool whole)
{
    updateCount = 0;
    QList<patch_t> patches;
    QList<QStringList> kept; // where a map's JSON is taken over from the present image
    QList<QPair<json_cached_map_t*, QStringList>> maps;
    auto const substitute = [&](QObject const* owner, QStringList const& path, QJsonValue& out) {
        auto* object = qobject_cast<topicbase_t*>(const_cast<QObject*>(owner));
        json_cached_map_t* cache = object ? object->jsonCache(path.constLast()) : nullptr;
        if (!cache)
            return false;
        maps.append({cache, path});
        if (whole || !cache->patchable(this, serial, path))
            return false;
        QJsonValue const present = valueAt(jdata, path);
        if (!present.isObject())
            return false;
        patch_t patch{path, cache->changedEntries()};
        if (!patch.entries.isEmpty())
            patches.append(std::move(patch));
        kept.append(path);
        out = present;
        return true;
    };
    QJsonObject next;
    try {
        next = utility::getInstance()->serializer()->serializeImpl(root, substitute, &memo).toObject();
    } catch (std::exception const& e) {
        log(QString::fromUtf8(e.what()), ::utility::logs::exception, "serialize");
        return false;
    }
    noteChangedSections(jdata, next, kept, patches);
    // The previous image goes first, so that the kept maps are held once and
    // patched in place rather than copied.
    jdata = std::move(next);
    // Qt's move assignment swaps: without this the previous image lives on in
    // next, shares the kept maps, and the patch below copies each of them whole.
    next = QJsonObject();
    // A map written anew has other positions, or none to keep.
    for (auto it = positions.begin(); it != positions.end();) {
        if (kept.contains(it.key()))
            ++it;
        else
            it = positions.erase(it);
    }
    for (patch_t const& patch : std::as_const(patches))
        applyPatch(jdata, patch, 0);
    // Unique across images, so that a map never mistakes another image's JSON for its own.
    static std::atomic<quint64> rebuilds{0};
    serial = ++rebuilds;
    for (auto const& map : std::as_const(maps))
        map.first->stamp(this, serial, map.second);
    fresh = true;
    return true;
}

void json_image_t::applyPatch(QJsonObject& object, patch_t const& patch, qsizetype depth)
{
    QString const& key = patch.path.at(depth);
    QJsonObject child = object.take(key).toObject();
    if (depth + 1 < patch.path.size())
        applyPatch(child, patch, depth + 1);
    else
        patchEntries(child, patch, positions[patch.path]);
    object.insert(key, child);
}

void json_image_t::patchEntries(QJsonObject& map, patch_t const& patch, positions_t& index)
{
    // Below this size a search is as cheap as the digest of its key.
    constexpr qsizetype smallestIndexed = 64;
    for (auto const& entry : patch.entries) {
        if (index.valid && !entry.second.isUndefined()) {
            auto const found = index.at.constFind(qHash(entry.first));
            if (found != index.at.constEnd() && found.value() < map.size()) {
                // Not shared, so begin() copies nothing.
                QJsonObject::iterator const place = map.begin() + found.value();
                if (place.key() == entry.first) {
                    place.value() = entry.second;
                    continue;
                }
            }
        }
        qsizetype const size = map.size();
        if (entry.second.isUndefined())
            map.remove(entry.first);
        else
            map.insert(entry.first, entry.second);
        if (map.size() != size) {
            index.valid = false;
            index.at.clear();
        } else {
            ++index.searched;
        }
    }
    // Taking the positions costs about as much as searching for a sixteenth
    // of the keys; only searches that the positions would have spared count,
    // so a map that mostly grows or shrinks isn't indexed at every patch.
    if (!index.valid && map.size() >= smallestIndexed && index.searched >= map.size() / 16) {
        index.at.reserve(map.size());
        qsizetype position = 0;
        for (auto it = map.constBegin(); it != map.constEnd(); ++it, ++position)
            index.at.insert(qHash(it.key()), position);
        index.valid = true;
        index.searched = 0;
    }
}

void json_image_t::noteChangedSections(QJsonObject const& previous, QJsonObject const& next,
                                       QList<QStringList> const& kept, QList<patch_t> const& patches)
{
    QMutexLocker locker(&hashMutex);
    QSet<QString> patched;
    for (patch_t const& patch : patches)
        patched.insert(patch.path.constFirst());
    // Both images hold their sections in key order: one walk pairs them,
    // where a search per section and two lists of keys cost several times as
    // much at every rebuild. Should the orders ever differ, a section is only
    // taken as changed and hashed again.
    bool changed = previous.size() != next.size();
    auto before = previous.constBegin();
    for (auto it = next.constBegin(); it != next.constEnd(); ++it) {
        QString const key = it.key();
        QString earlier;
        while (before != previous.constEnd() && (earlier = before.key()) < key) {
            changed = true;
            ++before;
        }
        bool const known = before != previous.constEnd() && earlier == key;
        QList<QStringList> below;
        for (QStringList const& path : kept) {
            if (path.constFirst() == key)
                below.append(path);
        }
        if (!known || patched.contains(key) || !sameExcept(before.value(), it.value(), below, 1)) {
            staleSections.insert(key);
            changed = true;
        }
        if (known)
            ++before;
    }
    changed = changed || before != previous.constEnd();
    for (auto it = hashes.begin(); it != hashes.end();) {
        if (next.contains(it.key())) {
            ++it;
        } else {
            sectionTexts.remove(it.key());
            it = hashes.erase(it);
        }
    }
    if (changed) {
        wholeStale = true;
        contentStamp.fetch_add(1, std::memory_order_relaxed);
    }
}

void json_image_t::refreshHashes() const
{
    for (auto it = jdata.constBegin(); it != jdata.constEnd(); ++it) {
        if (staleSections.contains(it.key()) || !hashes.contains(it.key())) {
            QByteArray text = QJsonDocument(it.value().toObject()).toJson(QJsonDocument::Compact);
            hashes.insert(it.key(), sha1Hex(hashedBytes(text)));
            sectionTexts.insert(it.key(), std::move(text));
        }
    }
    staleSections.clear();
    if (wholeStale) {
        wholeHash = wholeDigest();
        wholeStale = false;
    }
}

QString json_image_t::wholeDigest() const
{
    // The whole's compact text is its sections' texts between their keys:
    // the digest is taken over those pieces, without writing the whole again.
    // Where that may not hold byte for byte, the whole is written.
    QCryptographicHash digest(QCryptographicHash::Sha1);
    digest.addData(QByteArrayView("{", 1));
    bool first = true;
    for (auto it = jdata.constBegin(); it != jdata.constEnd(); ++it) {
        auto const text = sectionTexts.constFind(it.key());
        if (!it.value().isObject() || text == sectionTexts.constEnd() || !plainKey(it.key())
            || !text->isValidUtf8())
            return compactHash(jdata);
        QByteArray const key = (first ? "\"" : ",\"") + it.key().toLatin1() + "\":";
        first = false;
        digest.addData(key);
        digest.addData(*text);
    }
    digest.addData(QByteArrayView("}", 1));
    return QString::fromLatin1(digest.result().toHex());
}

QString const& json_image_t::hash() const
{
    QMutexLocker locker(&hashMutex);
    refreshHashes();
    return wholeHash;
}

QMap<QString, QString> const& json_image_t::hashList() const
{
    QMutexLocker locker(&hashMutex);
    refreshHashes();
    return hashes;
}

bool json_image_t::noteUpdate()
{
    fresh = false;
    return ++updateCount >= forcedRebuildAt;
}

void json_image_t::calculateHash()
{
    QMutexLocker locker(&hashMutex);
    hashes.clear();
    sectionTexts.clear();
    staleSections.clear();
    wholeStale = true;
    refreshHashes();
}

int json_image_t::checkHash(QString const& section, QString const& _hash, QString const& name,
                           std::function<void()> const& refresh) const
{
    // The sections of the image are those the digests cover.
    if (!jdata.contains(section))
        return -1;
    refresh();
    QString const local = hashList().value(section);
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
    log(name + QStringLiteral("HASH CONFIG: ") + hash(), ::utility::logs::trace, "print");
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
    // Every packet passes here: the line is only composed when it is written.
    if (!::utility::logs::classlogs::getInstance()->isEnabled(found ? ::utility::logs::trace
                                                                     : ::utility::logs::error))
        return found;
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
