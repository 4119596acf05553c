#include "database/migration/scripts/migration_1_t.h"

namespace database {
namespace migration {

migration_1_t::migration_1_t(QObject* parent)
    : migration_base_t(migration_version, parent)
{
}

} // namespace migration
} // namespace database
