#ifndef DATABASE_MIGRATION_MIGRATION_BASE_T_H
#define DATABASE_MIGRATION_MIGRATION_BASE_T_H

#include <QJsonObject>
#include <QObject>
#include <QString>

#include <functional>

#include "database/definition/type_brand_t.h"

#include "database/database_export.h"

namespace database {
namespace migration {

/**
 * Base of the numbered scripts that lift a stored document by one generation.
 * A script edits raw JSON in place and leaves its outcome in the int&; the
 * migration driver runs the scripts in ascending order.
 */
class DATABASE_EXPORT migration_base_t : public QObject
{
    Q_OBJECT
public:
    enum ErrorMigration {
        NoError = 0,
        NoMigration = 1,
        AlreadyMigrated = 2,
        VersionTooHigh = -1,
        NoVersionField = -2,
        JsonStucture = -3
    };
    Q_ENUM(ErrorMigration)

    explicit migration_base_t(int migration_version, QObject* parent = nullptr);

    int getMigrationVersion() const { return migration_version; }

    /// The three documents in turn; the persistent one is stamped only when its script succeeded.
    virtual void migrate(::database::definition::type_brand_t const& brand, QJsonObject& persistent,
                         QJsonObject& realtime, QJsonObject& presencesimulation, int& persistentError,
                         int& realtimeError, int& presencesimulationError);
    /// A generation that changes nothing in a document keeps these: they report NoMigration.
    virtual void migrate_persistent(::database::definition::type_brand_t const& brand, QJsonObject& document,
                                    int& error);
    virtual void migrate_realtime(::database::definition::type_brand_t const& brand, QJsonObject& document,
                                  int& error);
    virtual void migrate_presencesimulation(::database::definition::type_brand_t const& brand,
                                            QJsonObject& document, int& error);

    /// Writes this script's generation, "N.0.0", into "versions/database".
    void updateVersion(QJsonObject& document) const;

protected:
    /// Logs at level 4 with the script's prefix.
    void log(QString const& message, char const* source) const;
    void reportNothingToDo(char const* source, QString const& database, int& error) const;
    /// The frame of a script that works on the persistent document: the start
    /// line, work on a copy, the copy written back, the end line.
    void migratingPersistent(QJsonObject& document, std::function<void(QJsonObject&)> const& work) const;

    /// The value at a path of steps joined by "/"; undefined when absent.
    static QJsonValue valueAt(QJsonObject const& document, QString const& path);
    /// Writes value at path, creating the steps on the way.
    static void writeAt(QJsonObject& document, QString const& path, QJsonValue const& value);
    /// The class of a stored object, "@class" after its last "::".
    static QString classOf(QJsonValue const& object);
    /// The "flags" of a stored object, also when a writer put the sign bit as a large number.
    static int flagsOf(QJsonObject const& object);

    QString prefix = QStringLiteral("[Migration script base] ");
    int migration_version = 0;
};

} // namespace migration
} // namespace database

#endif // DATABASE_MIGRATION_MIGRATION_BASE_T_H
