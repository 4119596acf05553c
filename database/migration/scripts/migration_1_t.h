#ifndef DATABASE_MIGRATION_SCRIPTS_MIGRATION_1_T_H
#define DATABASE_MIGRATION_SCRIPTS_MIGRATION_1_T_H

#include <QJsonObject>
#include <QObject>
#include <QString>

#include "database/definition/type_brand_t.h"
#include "database/migration/migration_base_t.h"

#include "database/database_export.h"

namespace database {
namespace migration {

/**
 * Lifts a document of generation 1 to generation 2. Generation 1 kept the
 * passwords of a few roles in "elements/credentials" and gave each element the
 * name of the role it needed; generation 2 has a section of users, and each
 * element names the users allowed on it.
 */
class DATABASE_EXPORT migration_1_t : public migration_base_t
{
    Q_OBJECT
public:
    static constexpr int migration_version = 1;

    explicit migration_1_t(QObject* parent = nullptr);

    void migrate_persistent(::database::definition::type_brand_t const& brand, QJsonObject& document,
                            int& error) override;

private:
    QJsonObject migrateUsers(::database::definition::type_brand_t const& brand, QJsonObject document,
                             int version) const;
    QJsonObject migrateAuthInElements(::database::definition::type_brand_t const& brand, QJsonObject document,
                                      int version) const;
    static bool checkExistElementsCredentials(QJsonObject const& document);
    /// The section "users" made of the credentials.
    QJsonObject createObjectUsers(::database::definition::type_brand_t const& brand, QJsonObject const& document,
                                  int version) const;
    static QJsonObject createObjectUser(QString const& name, int perm, QString const& pin);
    /// Writes user at "users/objects_list/" + id of users.
    static void updateObjectUser(QJsonObject& users, QString const& id, QJsonObject const& user);

    static void createAdmin(QJsonObject& users, QJsonObject const& credentials);
    static void createAdminBaos(QJsonObject& users, QJsonObject const& credentials);
    static void createDefaultAdmin(QJsonObject& users, QString const& pin);
    static void createManager(QJsonObject& users, QJsonObject const& credentials);
    static void createUser(QJsonObject& users, QJsonObject const& credentials);
    static void createOperator(QJsonObject& users, QJsonObject const& credentials);
    static void createPowerUser(QJsonObject& users, QJsonObject const& credentials);
    /// The key of the first user called name, empty when there is none.
    static QString getKeyOfUsers(QJsonObject const& document, QString const& name);
};

} // namespace migration
} // namespace database

#endif // DATABASE_MIGRATION_SCRIPTS_MIGRATION_1_T_H
