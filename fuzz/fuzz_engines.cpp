#include "fuzz_engines.h"

#include <QCryptographicHash>
#include <QJsonDocument>

#include <cstring>
#include <vector>

#include "database/database_t.h"
#include "database/definition/service_t.h"
#include "database/definition/type_brand_t.h"
#include "database/persistent/persistent_t.h"
#include "database/presencesimulation/presencesimulation_t.h"
#include "database/realtime/realtime_t.h"
#include "fuzz_support.h"

namespace fuzz {

QString engineName(engine_t engine)
{
    switch (engine) {
    case realtime: return QStringLiteral("realtime");
    case presencesimulation: return QStringLiteral("presencesimulation");
    default: return QStringLiteral("persistent");
    }
}

bool update(database::database_t& database, engine_t engine, QJsonObject const& packet)
{
    switch (engine) {
    case realtime: return database.getRealtime()->update(packet);
    case presencesimulation: return database.getPresenceSimulation()->update(packet);
    default: return database.getPersistent()->update(packet);
    }
}

QJsonObject image(database::database_t& database, engine_t engine, bool force)
{
    switch (engine) {
    case realtime: return database.getRealtime()->serialize(force);
    case presencesimulation: return database.getPresenceSimulation()->serialize(force);
    default: return database.getPersistent()->serialize(force);
    }
}

bool loadFromJson(database::database_t& database, engine_t engine, QJsonObject document, int storedMajor)
{
    int result = 0;
    bool loaded = false;
    switch (engine) {
    case realtime:
        loaded = !database.getRealtime()->loadFromJson(document, storedMajor, result).isEmpty();
        return loaded && result >= 0 && database.getRealtime()->getData();
    case presencesimulation:
        loaded = !database.getPresenceSimulation()->loadFromJson(document, storedMajor, result).isEmpty();
        return loaded && result >= 0 && database.getPresenceSimulation()->getData();
    default:
        loaded = !database.getPersistent()->loadFromJson(document, result).isEmpty();
        return loaded && result >= 0 && database.getPersistent()->getData();
    }
}

namespace {

/// The digests of the images whose round trip passed, in one table allocated
/// once: a table that grew during an input would make libFuzzer run that input
/// again to look for a leak. When it is full, new images are checked every time.
class checked_images_t
{
public:
    bool contains(quint64 digest) const { return table.at(slotOf(digest)) == digest; }
    void insert(quint64 digest) { table.at(slotOf(digest)) = digest; }

private:
    static constexpr std::size_t count = std::size_t(1) << 20;
    std::size_t slotOf(quint64 digest) const { return std::size_t(digest) & (count - 1); }
    std::vector<quint64> table = std::vector<quint64>(count, 0);
};

quint64 digestOf(engine_t engine, QJsonObject const& image)
{
    QByteArray const sha = QCryptographicHash::hash(QJsonDocument(image).toJson(QJsonDocument::Compact),
                                                    QCryptographicHash::Sha1);
    quint64 digest = 0;
    std::memcpy(&digest, sha.constData(), sizeof digest);
    // Zero marks an empty slot; the engine keeps equal images of two engines apart.
    return (digest | 1) ^ (quint64(engine) << 1);
}

} // namespace

void checkRoundTrip(engine_t engine, QJsonObject const& saved)
{
    static checked_images_t* const checked = new checked_images_t;
    quint64 const digest = digestOf(engine, saved);
    if (checked->contains(digest))
        return;
    static kept_database_t* const reloaded = new kept_database_t(database::definition::service_t::offline);
    int const current = database::database_t::getVersion().section(QLatin1Char('.'), 0, 0).toInt();
    if (!loadFromJson(reloaded->get(), engine, saved, current))
        fail("a saved image does not load", QString::fromUtf8(QJsonDocument(saved).toJson()));
    QJsonObject const again = image(reloaded->get(), engine);
    drain();
    if (again != saved)
        fail("a saved image loads as another",
             QString::fromUtf8(QJsonDocument(saved).toJson(QJsonDocument::Compact)) + QStringLiteral("\n---\n")
                 + QString::fromUtf8(QJsonDocument(again).toJson(QJsonDocument::Compact)));
    checked->insert(digest);
}

kept_database_t::kept_database_t(database::definition::service_t const& role)
    : database(std::make_unique<database::database_t>(role, database::definition::type_brand_t::HALDO))
{
    drain();
    for (engine_t engine : {persistent, realtime, presencesimulation})
        images.at(engine) = image(*database, engine, true);
    drain();
}

kept_database_t::~kept_database_t() = default;

void kept_database_t::keepPresent()
{
    for (engine_t engine : {persistent, realtime, presencesimulation})
        images.at(engine) = image(*database, engine, true);
    drain();
}

void kept_database_t::restore(std::array<QJsonObject, 3> const& known)
{
    for (engine_t engine : {persistent, realtime, presencesimulation}) {
        // An engine that nothing changed since it was put back has a fresh
        // image: taking it costs no serialization.
        QJsonObject const present = known.at(engine).isEmpty() ? image(*database, engine) : known.at(engine);
        if (present == images.at(engine))
            continue;
        // The first image was made from a checked tree of this version: taking
        // it back needs neither the migration nor the check of a load, which
        // would cost more than most inputs.
        switch (engine) {
        case realtime: database->getRealtime()->deserialize(images.at(engine)); break;
        case presencesimulation: database->getPresenceSimulation()->deserialize(images.at(engine)); break;
        default: database->getPersistent()->deserialize(images.at(engine)); break;
        }
        drain();
        if (image(*database, engine) != images.at(engine))
            fail("an engine does not load back its first image", engineName(engine));
    }
    drain();
}

} // namespace fuzz
