#include "host_loading.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <exception>
#include <functional>

#include "database/database_t.h"
#include "database/default/realtime/rt_default_t.h"
#include "database/persistent/persistent_t.h"
#include "database/presencesimulation/presencesimulation_t.h"
#include "database/presencesimulation/psi_data_t.h"
#include "database/realtime/realtime_t.h"
#include "database/realtime/rt_data_t.h"
#include "database/utility/utility.h"
#include "platform/qjsonserializer/qjsonserializer.h"

namespace {

int currentMajor()
{
    return database::database_t::getVersion().section(QLatin1Char('.'), 0, 0).toInt();
}

/// The version a persistent file was written with, as its text and its major;
/// false when it has none that reads as a number. Read here, and not by the
/// engine, so that a file that doesn't parse is reported once, by its load.
bool storedVersion(QString const& path, QString& version, int& major)
{
    QFile file(path);
    QJsonObject const document =
        file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
    version = document.value(QStringLiteral("versions")).toObject().value(QStringLiteral("database")).toString();
    bool known = false;
    major = version.section(QLatin1Char('.'), 0, 0).toInt(&known);
    return known;
}

/// Loads a persistent file; the major of the version it was stored with goes
/// to storedMajor, since the realtime file follows the persistent one.
bool loadPersistent(database::persistent::persistent_t* engine, QString const& path, int& storedMajor)
{
    QString version;
    int major = 0;
    bool const known = storedVersion(path, version, major);
    // The library would take a newer generation's file as its own and write it
    // back as such, dropping what it doesn't know: such a file is never loaded.
    if (known && major > currentMajor())
        return false;
    int result = 0;
    bool const loaded = !engine->loadFromFile(path, result).isEmpty() && result >= 0;
    // A document that parses but doesn't fit the model leaves the engine without a tree.
    if (loaded && engine->getData()) {
        if (known)
            storedMajor = major;
        return true;
    }
    if (!engine->getData())
        engine->initSerializer();
    return false;
}

/// Loads the file of a database that follows the persistent one (realtime,
/// presence simulation). A document that doesn't fit the model would leave an
/// empty or an unchanged tree: it counts as unreadable, so that a good backup
/// is used instead.
template<class Tree, class Engine>
bool loadFollower(Engine* engine, QString const& path, int storedMajor)
{
    QJsonObject document = engine->readFromFile(path);
    if (document.isEmpty())
        return false;
    try {
        delete database::utility::getInstance()->serializer()->deserialize<Tree*>(document, nullptr);
    } catch (std::exception const&) {
        return false;
    }
    int result = 0;
    return !engine->loadFromJson(document, storedMajor, result).isEmpty() && result >= 0 && engine->getData();
}

} // namespace

bool host_loading_t::load(database::database_t& database, QStringList& notes, bool onlyLooking) const
{
    int storedMajor = currentMajor();
    QString version;
    int major = 0;
    if (QFileInfo::exists(persistent->currentPath())
        && storedVersion(persistent->currentPath(), version, major)
        && major > storedMajor) {
        notes.append(persistent->currentPath() + QStringLiteral(" was written by a newer version of the database (")
                     + version + QStringLiteral("; this one is ") + database::database_t::getVersion()
                     + QStringLiteral("): not started, nothing changed"));
        return false;
    }
    persistent->load([&](QString const& path) { return loadPersistent(database.getPersistent(), path, storedMajor); },
                     notes, onlyLooking);
    // A first run starts the live database from the defaults of its role.
    if (!QFileInfo::exists(realtime->currentPath()))
        database.getRealtime()->update_database(
            database::realtime::rt_default_t::getInstance()->getJData(database.getService()), false);
    realtime->load(
        [&](QString const& path) {
            return loadFollower<database::realtime::rt_data_t>(database.getRealtime(), path, storedMajor);
        },
        notes, onlyLooking);
    presence->load(
        [&](QString const& path) {
            return loadFollower<database::presencesimulation::psi_data_t>(database.getPresenceSimulation(), path,
                                                                        storedMajor);
        },
        notes, onlyLooking);
    return true;
}

int host_loading_t::replay(database::database_t& database, QStringList& notes, QList<QJsonObject>& records,
                           bool onlyLooking) const
{
    // The library's hops are queued: each chunk is carried through before the
    // next, so that a long journal doesn't pile up posted events.
    auto const settle = [] {
        for (int round = 0; round < 16; ++round)
            QCoreApplication::sendPostedEvents();
    };
    using update_t = std::function<bool(QJsonObject const&)>;
    struct road_t {
        host_store_t* store;
        update_t update;
    };
    road_t const roads[] = {
        {persistent, [&](QJsonObject const& packet) { return database.getPersistent()->update(packet); }},
        {realtime, [&](QJsonObject const& packet) { return database.getRealtime()->update(packet); }},
        {presence, [&](QJsonObject const& packet) { return database.getPresenceSimulation()->update(packet); }},
    };
    int replayed = 0;
    for (road_t const& road : roads) {
        QList<QJsonObject> entries;
        if (onlyLooking)
            entries = road.store->inspectJournal(notes);
        else
            road.store->openJournal(entries, notes);
        int count = 0;
        for (QJsonObject const& entry : std::as_const(entries)) {
            if (!entry.contains(QStringLiteral("topic"))) {
                records.append(entry);
                continue;
            }
            // A removal is reported with a null payload; the handlers take it as an empty object.
            if (entry.value(QStringLiteral("payload")).isNull()) {
                QJsonObject removal = entry;
                removal.insert(QStringLiteral("payload"), QJsonObject());
                road.update(removal);
            } else {
                road.update(entry);
            }
            if (++count % 512 == 0)
                settle();
        }
        settle();
        road.store->setReplayedChanges(count);
        replayed += count;
    }
    return replayed;
}
