#include "database/migration/migration_t.h"

#include <QJsonDocument>

#include "database/utility/utility.h"
#include "platform/logs/classlogs.h"

namespace database {
namespace migration {

migration_t* migration_t::m_migration = nullptr;

namespace {

QString const kLibraryVersion = QStringLiteral("4.0.0");

int firstNumber(QString const& version, bool* ok)
{
    return version.split(QLatin1Char('.')).value(0).toInt(ok);
}

} // namespace

migration_t* migration_t::createInstance(::database::definition::type_brand_t const& brand)
{
    if (!m_migration)
        m_migration = new migration_t(brand);
    return m_migration;
}

migration_t* migration_t::getInstance()
{
    return m_migration;
}

migration_t::migration_t(::database::definition::type_brand_t const& _brand)
    : brand(_brand)
{
    QStringList const parts = current_version.split(QLatin1Char('.'));
    current_major = parts.value(0).toInt();
    current_minor = parts.value(1).toInt();
    current_patch = parts.value(2).toInt();
    log(QStringLiteral("Starting migration database engine ..."), ::utility::logs::trace, "migration_t");
    initMapMigrationScripts();
}

void migration_t::initMapMigrationScripts()
{
    scripts.insert(migration_1_t::migration_version, &migration_1);
    scripts.insert(migration_2_t::migration_version, &migration_2);
    scripts.insert(migration_3_t::migration_version, &migration_3);
    scripts.insert(migration_4_t::migration_version, &migration_4);
    scripts.insert(migration_5_t::migration_version, &migration_5);
}

QStringList migration_t::versions(QJsonObject const& persistent)
{
    return persistent.value(QStringLiteral("versions")).toObject().value(QStringLiteral("database")).toString()
        .split(QLatin1Char('.'));
}

int migration_t::needMigration(QJsonObject const& persistent) const
{
    bool ok = false;
    int const stored = versions(persistent).value(0).toInt(&ok);
    if (!ok) {
        log(QStringLiteral("Not a valid persistent database "), ::utility::logs::error, "needMigration");
        return GenericError;
    }
    bool referenceOk = false;
    int reference = firstNumber(kLibraryVersion, &referenceOk);
    if (!referenceOk)
        reference = 0;
    if (stored > reference)
        return VersionTooHigh;
    if (stored < reference)
        return MigrationRequired;
    return NoMigration;
}

int migration_t::checkVersion(int const& major) const
{
    bool ok = false;
    int const supported = firstNumber(kLibraryVersion, &ok);
    if (major > supported) {
        // The two numbers are filled in this order on purpose: readers of the
        // logs already know the line as it is.
        CLASSLOGS_LOG(QStringLiteral("Check database compatibility: database major version \"%1\" higher than "
                                     "supported version \"%2\", plase update application")
                          .arg(supported)
                          .arg(major),
                      ::utility::logs::warning, QStringLiteral("checkVersion"));
        return -1;
    }
    return 0;
}

int migration_t::checkVersion(QString const&) const
{
    // The stored text is not consulted: only the library's own version counts.
    bool ok = false;
    int const major = firstNumber(kLibraryVersion, &ok);
    if (!ok) {
        CLASSLOGS_LOG(QStringLiteral("Unable to read version ..."), ::utility::logs::warning,
                      QStringLiteral("checkVersion"));
        return -2;
    }
    return checkVersion(major);
}

migration_t::script_map_t::const_iterator migration_t::findStartObject(int major) const
{
    return scripts.lowerBound(major);
}

void migration_t::updateVersion(QJsonObject& persistent) const
{
    persistent.value(QStringLiteral("versions"));
    QJsonDocument document(persistent);
    QString operation;
    if (utility::updateJsonValue(document, QStringLiteral("versions/database"), current_version, operation))
        persistent = document.object();
}

bool migration_t::storedMajor(QJsonObject const& persistent, int& major)
{
    bool ok = false;
    major = versions(persistent).value(0).toInt(&ok);
    return ok;
}

void migration_t::logUnreadable(QJsonObject const& persistent, char const* source) const
{
    log(QStringLiteral(" Unable to read database version from persistent part ")
            + utility::JsonToString(persistent.value(QStringLiteral("versions")).toObject(), QJsonDocument::Compact),
        ::utility::logs::error, source);
}

void migration_t::logTooHigh(int major, char const* source) const
{
    log(QStringLiteral(" The database version is too high compared to the current one %1 > %2 (%3)")
            .arg(major)
            .arg(current_major)
            .arg(current_version),
        ::utility::logs::error, source);
}

void migration_t::logMigrate(int major, char const* source) const
{
    log(QStringLiteral("Migrate database %1 from version %2 to %3 (%4)")
            .arg(brand.ToString())
            .arg(major)
            .arg(current_major)
            .arg(current_version),
        ::utility::logs::info, source);
}

template<class Run>
bool migration_t::runScripts(int major, char const* source, bool traced, Run run)
{
    auto script = findStartObject(major);
    if (script == scripts.constEnd()) {
        log(QStringLiteral("No migration script to apply..."), ::utility::logs::info, source);
        return false;
    }
    // The whole-set migration announces itself before it looks for a script.
    if (traced)
        logMigrate(major, source);
    // The loop ends at the current generation: a script above it is registered
    // for the next one and must not run yet.
    for (; script != scripts.constEnd() && script.key() <= current_major; ++script) {
        if (traced)
            log(QStringLiteral("-------------------------------------------------------"), ::utility::logs::trace,
                source);
        log(QStringLiteral("Apply migration version %1").arg(script.key()), ::utility::logs::info, source);
        run(script.value());
        log(QStringLiteral("Save new version version %1").arg(script.key()), ::utility::logs::info, source);
    }
    return true;
}

void migration_t::migrate_persistent(QJsonObject& persistent, int& error)
{
    char const* source = "migrate_persistent";
    int major = 0;
    if (!storedMajor(persistent, major)) {
        logUnreadable(persistent, source);
    } else if (major > current_major) {
        logTooHigh(major, source);
    } else if (major == current_major) {
        log(QStringLiteral("No migration to apply... same version..."), ::utility::logs::trace, source);
    } else {
        runScripts(major, source, true, [&](migration_base_t* script) {
            script->migrate_persistent(brand, persistent, error);
            CLASSLOGS_LOG(utility::JsonToString(persistent, QJsonDocument::Compact), ::utility::logs::trace,
                          QString::fromLatin1(source));
        });
    }
    // Stamped on every path: the next load sees the document as current.
    updateVersion(persistent);
}

void migration_t::migrate_realtime(int major, QJsonObject& realtime, int& error)
{
    migrateFollower(major, realtime, error, "migrate_realtime", &migration_base_t::migrate_realtime);
}

void migration_t::migrate_presencesimulation(int major, QJsonObject& presencesimulation, int& error)
{
    migrateFollower(major, presencesimulation, error, "migrate_presencesimulation",
                    &migration_base_t::migrate_presencesimulation);
}

void migration_t::migrateFollower(int major, QJsonObject& document, int& error, char const* source,
                                  script_operation_t operation)
{
    // These documents carry no version: the persistent side's major decides.
    if (major > current_major)
        logTooHigh(major, source);
    else if (major == current_major)
        log(QStringLiteral("No migration to apply... same version..."), ::utility::logs::trace, source);
    else
        runScripts(major, source, true, [&](migration_base_t* script) {
            (script->*operation)(brand, document, error);
            CLASSLOGS_LOG(utility::JsonToString(document, QJsonDocument::Compact), ::utility::logs::trace,
                          QString::fromLatin1(source));
        });
}

void migration_t::migrate(QJsonObject& persistent, QJsonObject& realtime, QJsonObject& presencesimulation,
                          int& persistentError, int& realtimeError, int& presencesimulationError)
{
    char const* source = "migrate";
    auto setAll = [&](int value) { persistentError = realtimeError = presencesimulationError = value; };
    int major = 0;
    if (!storedMajor(persistent, major)) {
        logUnreadable(persistent, source);
        setAll(migration_base_t::NoVersionField);
        return;
    }
    if (major > current_major) {
        logTooHigh(major, source);
        setAll(migration_base_t::VersionTooHigh);
        return;
    }
    // No same-version test here: a current document runs its own generation's
    // script once more. Hosts that don't want that ask needMigration first.
    logMigrate(major, source);
    bool const ran = runScripts(major, source, false, [&](migration_base_t* script) {
        script->migrate(brand, persistent, realtime, presencesimulation, persistentError, realtimeError,
                        presencesimulationError);
    });
    if (!ran)
        setAll(migration_base_t::NoMigration);
    updateVersion(persistent);
}

void migration_t::log(QString const& message, ::utility::logs::LogLevel level, char const* source) const
{
    CLASSLOGS_LOG(prefix + message, level, QString::fromLatin1(source));
}

} // namespace migration
} // namespace database
