#include "database/migration/scripts/migration_2_t.h"

namespace database {
namespace migration {

migration_2_t::migration_2_t(QObject* parent)
    : migration_base_t(migration_version, parent)
{
}

} // namespace migration
} // namespace database
