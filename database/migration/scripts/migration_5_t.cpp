#include "database/migration/scripts/migration_5_t.h"

namespace database {
namespace migration {

migration_5_t::migration_5_t(QObject* parent)
    : migration_base_t(migration_version, parent)
{
}

void migration_5_t::migrate_persistent(::database::definition::type_brand_t const&, QJsonObject&, int&)
{
    log(QStringLiteral("You must implement migration script for version %1").arg(migration_version),
        "migrate_persistent");
}

void migration_5_t::migrate_realtime(::database::definition::type_brand_t const&, QJsonObject&, int&)
{
    log(QStringLiteral("You must implement migration script for version %1").arg(migration_version),
        "migrate_realtime");
}

void migration_5_t::migrate_presencesimulation(::database::definition::type_brand_t const&, QJsonObject&, int&)
{
    log(QStringLiteral("You must implement migration script for version %1").arg(migration_version),
        "migrate_presencesimulation");
}

} // namespace migration
} // namespace database
