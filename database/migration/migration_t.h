#ifndef DATABASE_MIGRATION_MIGRATION_T_H
#define DATABASE_MIGRATION_MIGRATION_T_H

#include <QJsonObject>
#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>

#include "database/definition/type_brand_t.h"
#include "database/migration/migration_base_t.h"
#include "database/migration/scripts/migration_1_t.h"
#include "database/migration/scripts/migration_2_t.h"
#include "database/migration/scripts/migration_3_t.h"
#include "database/migration/scripts/migration_4_t.h"
#include "database/migration/scripts/migration_5_t.h"
#include "platform/logs/classlogs.h"

#include "database/database_export.h"

namespace database {
namespace migration {

/**
 * The process-wide driver that brings stored documents of older generations up
 * to the one this library writes, before any object tree is built from them.
 * The three engines' loaders call it; a host may ask needMigration first.
 */
class DATABASE_EXPORT migration_t : public QObject
{
    Q_OBJECT
public:
    enum NeedMigration { NoMigration = 0, MigrationRequired = 1, GenericError = -1, VersionTooHigh = -2 };
    Q_ENUM(NeedMigration)

    using script_map_t = QMap<int, migration_base_t*>;

    /// The first call creates the driver; later calls return it unchanged.
    static migration_t* createInstance(::database::definition::type_brand_t const& brand);
    static migration_t* getInstance();

    /// "versions/database" of a persistent document, split at ".".
    static QStringList versions(QJsonObject const& persistent);
    int needMigration(QJsonObject const& persistent) const;
    int checkVersion(int const& major) const;
    int checkVersion(QString const& version) const;
    script_map_t::const_iterator findStartObject(int major) const;
    script_map_t::const_iterator endObject() const { return scripts.constEnd(); }

    /// Stamps the current generation into "versions/database".
    void updateVersion(QJsonObject& persistent) const;

    void migrate_persistent(QJsonObject& persistent, int& error);
    void migrate_realtime(int storedMajor, QJsonObject& realtime, int& error);
    void migrate_presencesimulation(int storedMajor, QJsonObject& presencesimulation, int& error);
    void migrate(QJsonObject& persistent, QJsonObject& realtime, QJsonObject& presencesimulation,
                 int& persistentError, int& realtimeError, int& presencesimulationError);

    QString getCurrentVersion() const { return current_version; }

private:
    explicit migration_t(::database::definition::type_brand_t const& brand);
    void initMapMigrationScripts();

    /// The major of "versions/database"; false when it doesn't read as a number.
    static bool storedMajor(QJsonObject const& persistent, int& major);
    void logUnreadable(QJsonObject const& persistent, char const* source) const;
    void logTooHigh(int major, char const* source) const;
    void logMigrate(int major, char const* source) const;
    /// Runs the scripts from major up to the current one, calling run on each;
    /// traced runs announce themselves and log a separator before each script.
    template<class Run>
    bool runScripts(int major, char const* source, bool traced, Run run);
    using script_operation_t = void (migration_base_t::*)(::database::definition::type_brand_t const&, QJsonObject&,
                                                          int&);
    /// The realtime and presence simulation documents: the same road without a version of their own.
    void migrateFollower(int major, QJsonObject& document, int& error, char const* source,
                         script_operation_t operation);
    void log(QString const& message, ::utility::logs::LogLevel level, char const* source) const;

    ::database::definition::type_brand_t brand = ::database::definition::type_brand_t::HALDO;
    QString current_version = QStringLiteral("4.0.0");
    int current_major = 0;
    int current_minor = 0;
    int current_patch = 0;
    QString prefix = QStringLiteral("[Migration database] ");
    migration_1_t migration_1;
    migration_2_t migration_2;
    migration_3_t migration_3;
    migration_4_t migration_4;
    migration_5_t migration_5;
    script_map_t scripts;

    static migration_t* m_migration;
};

} // namespace migration
} // namespace database

#endif // DATABASE_MIGRATION_MIGRATION_T_H
