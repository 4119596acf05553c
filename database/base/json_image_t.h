#ifndef DATABASE_BASE_JSON_IMAGE_T_H
#define DATABASE_BASE_JSON_IMAGE_T_H

#include <QHash>
#include <QJsonObject>
#include <QMap>
#include <QMutex>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QVariant>

#include <atomic>
#include <functional>

#include "platform/qjsonserializer/qjsonserializer.h"

#include "database/database_export.h"

namespace database {
namespace base {

/**
 * What every engine keeps beside its tree: the JSON image with the SHA-1 hash
 * of each section and of the whole, whether the image is fresh, the count of
 * updates since the last rebuild, and the reading and writing of the image as
 * a file; with it, what the engines do alike around the image: the debounce
 * timer's wiring, the comparison of hashes, the request counter and the lines
 * they log about packets. The engines differ in their trees and signals, not
 * in this.
 */
class DATABASE_EXPORT json_image_t
{
public:
    /// A burst of updates can't postpone the rebuild for ever.
    static constexpr int forcedRebuildAt = 21;
    static constexpr int rebuildDelayMs = 2000;

    json_image_t() = default;
    json_image_t(json_image_t const&) = delete;
    json_image_t& operator=(json_image_t const&) = delete;

    bool isFresh() const { return fresh; }
    int updates() const { return updateCount; }
    QJsonObject const& image() const { return jdata; }
    /// The digests are taken when first asked for after a change, each
    /// section's only when that section changed.
    QString const& hash() const;
    QMap<QString, QString> const& hashList() const;
    /// Moves on at every rebuild that may have changed the image's JSON: an
    /// unchanged stamp is an unchanged image, known without hashing it.
    quint64 stamp() const { return contentStamp.load(std::memory_order_relaxed); }

    /// Serializes root into the image and rehashes it; false, after the level 1
    /// line under "serialize", when the serializer throws (the image then stays
    /// stale). The update count starts again either way. The maps that keep
    /// their JSON by object (topicbase_t::jsonCache) are patched where their
    /// objects changed instead of serialized again; with whole, everything is.
    bool rebuild(QVariant const& root, bool whole = false);
    /// Marks the image stale after a change of the tree; true when this change
    /// is the one that must rebuild at once.
    bool noteUpdate();
    void calculateHash();

    /// -1 for a section the hashes don't know (looked up before refresh
    /// brings the image up to date), 0 for the same digest, 1 for another;
    /// with the engines' lines under "checkHash".
    int checkHash(QString const& section, QString const& hash, QString const& name,
                  std::function<void()> const& refresh) const;

    /// The whole database as one status packet under prefix.
    static QJsonObject statusPacket(QString const& prefix, QJsonObject const& image);
    /// Dumps json indented to the plain message logger, then the hash line.
    void print(QString const& name, QJsonObject const& json) const;

    /// Runs work under mutex if no one holds it, also not this thread;
    /// false, without running it, when the mutex is taken.
    static bool whenFree(QMutex* mutex, std::function<void()> const& work);
    /// Connects engine's start_timer_serializer() and stop_timer_serializer()
    /// to the timer, and its timeout to engine's timer_serializer_elepsed(),
    /// queued and unique; sets the interval.
    static void wireTimer(QObject* engine, QTimer& timer);
    /// Advances the request counter and writes it into a copy of packet only:
    /// no packet carries it, and nothing may rely on it.
    static void advanceCounter(int& counter, QJsonObject const& packet);

    /// The line of update(): found, or not valid; returns found.
    static bool logRoute(QString const& name, QString const& topic, bool found);
    static void logUpdateError(QString const& name, QJsonObject const& packet, QString const& message);
    static void logNotExist(QString const& name, QJsonObject const& packet);
    static void logObjectError(QString const& name, QJsonObject const& packet, QString const& message);

    /// Reads and parses path; empty, after the engine's line under source, when
    /// the file is missing or not JSON. With recode, bytes that aren't UTF-8
    /// become replacement characters instead of failing the parse.
    static QJsonObject readFile(QString const& path, QString const& name, char const* source, bool& ok,
                                bool recode = false);
    /// Writes the image, indented, in place at path under the mutex, with the
    /// engines' lines. False when nothing complete was written.
    bool writeFile(QString const& path, QString const& name, QMutex* mutex) const;

private:
    struct patch_t {
        QStringList path;
        QList<QPair<QString, QJsonValue>> entries;
    };

    /// Where the keys of a kept map stand in the image's JSON of it, so that a
    /// changed value is put in its place instead of its key being searched
    /// for among thousands. Taken when searches have cost about as much as
    /// taking it; dropped when a key comes or goes. A digest of the key stands
    /// for it: the key found at the position is compared before it is used.
    struct positions_t {
        QHash<size_t, qsizetype> at;
        qsizetype searched = 0;
        bool valid = false;
    };

    void applyPatch(QJsonObject& object, patch_t const& patch, qsizetype depth);
    static void patchEntries(QJsonObject& map, patch_t const& patch, positions_t& index);
    /// Notes the sections of next whose JSON may differ from previous's.
    void noteChangedSections(QJsonObject const& previous, QJsonObject const& next,
                             QList<QStringList> const& kept, QList<patch_t> const& patches);
    void refreshHashes() const;
    /// The digest of the whole image's compact text.
    QString wholeDigest() const;

    QJsonObject jdata;
    QHash<QStringList, positions_t> positions;
    // The JSON of the tree's objects from the last rebuild, lent to the next.
    QJsonSerializer::TextMemo memo;
    // Counts the successful rebuilds: a map's kept JSON belongs to one of them.
    quint64 serial = 0;
    int updateCount = 0;
    bool fresh = false;

    mutable QMutex hashMutex;
    mutable QString wholeHash;
    mutable QMap<QString, QString> hashes;
    // Each section's compact text as last hashed: the whole's digest is
    // taken over them instead of writing the whole image again.
    mutable QHash<QString, QByteArray> sectionTexts;
    mutable QSet<QString> staleSections;
    mutable bool wholeStale = true;
    std::atomic<quint64> contentStamp{0};
};

} // namespace base
} // namespace database

#endif // DATABASE_BASE_JSON_IMAGE_T_H
