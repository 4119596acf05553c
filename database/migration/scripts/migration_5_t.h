#ifndef DATABASE_MIGRATION_SCRIPTS_MIGRATION_5_T_H
#define DATABASE_MIGRATION_SCRIPTS_MIGRATION_5_T_H

#include <QObject>

#include "database/migration/migration_base_t.h"

#include "database/database_export.h"

namespace database {
namespace migration {

/// Lifts a document of generation 5 to generation 6.
class DATABASE_EXPORT migration_5_t : public migration_base_t
{
    Q_OBJECT
public:
    static constexpr int migration_version = 5;

    explicit migration_5_t(QObject* parent = nullptr);

    // The next generation is not defined yet: each operation says so.
    void migrate_persistent(::database::definition::type_brand_t const& brand, QJsonObject& document,
                            int& error) override;
    void migrate_realtime(::database::definition::type_brand_t const& brand, QJsonObject& document,
                          int& error) override;
    void migrate_presencesimulation(::database::definition::type_brand_t const& brand, QJsonObject& document,
                                    int& error) override;
};

} // namespace migration
} // namespace database

#endif // DATABASE_MIGRATION_SCRIPTS_MIGRATION_5_T_H
