#include "database/migration/scripts/migration_3_t.h"

namespace database {
namespace migration {

migration_3_t::migration_3_t(QObject* parent)
    : migration_base_t(migration_version, parent)
{
}

} // namespace migration
} // namespace database
