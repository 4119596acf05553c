#ifndef DATABASE_MIGRATION_SCRIPTS_MIGRATION_2_T_H
#define DATABASE_MIGRATION_SCRIPTS_MIGRATION_2_T_H

#include <QJsonObject>
#include <QObject>

#include "database/definition/type_brand_t.h"
#include "database/migration/migration_base_t.h"

#include "database/database_export.h"

namespace database {
namespace migration {

/**
 * Lifts a document of generation 2 to generation 3: the long-text items get
 * their default format, and an RGB element whose three colours are separate
 * one-byte items is marked as driving them one by one.
 */
class DATABASE_EXPORT migration_2_t : public migration_base_t
{
    Q_OBJECT
public:
    static constexpr int migration_version = 2;

    explicit migration_2_t(QObject* parent = nullptr);

    void migrate_persistent(::database::definition::type_brand_t const& brand, QJsonObject& document,
                            int& error) override;

private:
    static void migrateItems(QJsonObject& document);
    static void migrateElements(QJsonObject& document);
    static void migrateElementRgbInterpreted(QJsonObject& document);
};

} // namespace migration
} // namespace database

#endif // DATABASE_MIGRATION_SCRIPTS_MIGRATION_2_T_H
