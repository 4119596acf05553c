#include "database/migration/scripts/migration_4_t.h"

namespace database {
namespace migration {

migration_4_t::migration_4_t(QObject* parent)
    : migration_base_t(migration_version, parent)
{
}

} // namespace migration
} // namespace database
