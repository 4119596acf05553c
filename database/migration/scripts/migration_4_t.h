#ifndef DATABASE_MIGRATION_SCRIPTS_MIGRATION_4_T_H
#define DATABASE_MIGRATION_SCRIPTS_MIGRATION_4_T_H

#include <QObject>

#include "database/migration/migration_base_t.h"

#include "database/database_export.h"

namespace database {
namespace migration {

/// Lifts a document of generation 4 to generation 5.
class DATABASE_EXPORT migration_4_t : public migration_base_t
{
    Q_OBJECT
public:
    static constexpr int migration_version = 4;

    explicit migration_4_t(QObject* parent = nullptr);
};

} // namespace migration
} // namespace database

#endif // DATABASE_MIGRATION_SCRIPTS_MIGRATION_4_T_H
