#include "database/migration/migration_base_t.h"

#include <QJsonDocument>

#include "database/utility/utility.h"
#include "platform/logs/classlogs.h"

namespace database {
namespace migration {

migration_base_t::migration_base_t(int _migration_version, QObject* parent)
    : QObject(parent)
    , migration_version(_migration_version)
{
    prefix = QStringLiteral("[Migration script %1] ").arg(migration_version);
    CLASSLOGS_LOG(prefix + QStringLiteral("Starting migration database engine ..."), ::utility::logs::trace,
                  QStringLiteral("migration_base_t"));
}

void migration_base_t::migrate(::database::definition::type_brand_t const& brand, QJsonObject& persistent,
                               QJsonObject& realtime, QJsonObject& presencesimulation, int& persistentError,
                               int& realtimeError, int& presencesimulationError)
{
    migrate_persistent(brand, persistent, persistentError);
    migrate_realtime(brand, realtime, realtimeError);
    migrate_presencesimulation(brand, presencesimulation, presencesimulationError);
    if (persistentError == NoError)
        updateVersion(persistent);
}

void migration_base_t::migrate_persistent(::database::definition::type_brand_t const&, QJsonObject&, int& error)
{
    reportNothingToDo("migrate_persistent", QStringLiteral("persistent"), error);
}

void migration_base_t::migrate_realtime(::database::definition::type_brand_t const&, QJsonObject&, int& error)
{
    reportNothingToDo("migrate_realtime", QStringLiteral("realtime"), error);
}

void migration_base_t::migrate_presencesimulation(::database::definition::type_brand_t const&, QJsonObject&,
                                                  int& error)
{
    reportNothingToDo("migrate_presencesimulation", QStringLiteral("presence simulation"), error);
}

void migration_base_t::updateVersion(QJsonObject& document) const
{
    QJsonDocument json(document);
    QString operation;
    if (utility::updateJsonValue(json, QStringLiteral("versions/database"),
                                 QStringLiteral("%1.0.0").arg(migration_version), operation))
        document = json.object();
}

void migration_base_t::migratingPersistent(QJsonObject& document,
                                           std::function<void(QJsonObject&)> const& work) const
{
    log(QStringLiteral("Migrating persistent database for version %1 ...").arg(migration_version),
        "migrate_persistent");
    QJsonObject changed = document;
    work(changed);
    document = changed;
    log(QStringLiteral("Migrating persistent database for version %1 done").arg(migration_version),
        "migrate_persistent");
}

QJsonValue migration_base_t::valueAt(QJsonObject const& document, QString const& path)
{
    return utility::getJsonValue(QJsonDocument(document), path);
}

void migration_base_t::writeAt(QJsonObject& document, QString const& path, QJsonValue const& value)
{
    QJsonDocument json(document);
    QString operation;
    if (utility::updateJsonValue(json, path, value, operation))
        document = json.object();
}

QString migration_base_t::classOf(QJsonValue const& object)
{
    return object.toObject().value(QStringLiteral("@class")).toString().section(QStringLiteral("::"), -1);
}

int migration_base_t::flagsOf(QJsonObject const& object)
{
    return int(object.value(QStringLiteral("flags")).toVariant().toLongLong());
}

void migration_base_t::log(QString const& message, char const* source) const
{
    CLASSLOGS_LOG(prefix + message, ::utility::logs::info, QString::fromLatin1(source));
}

void migration_base_t::reportNothingToDo(char const* source, QString const& database, int& error) const
{
    error = NoMigration;
    log(QStringLiteral("No migration required for %1 database for version %2").arg(database).arg(migration_version),
        source);
}

} // namespace migration
} // namespace database
