#ifndef DATABASE_MIGRATION_SCRIPTS_MIGRATION_4_T_H
#define DATABASE_MIGRATION_SCRIPTS_MIGRATION_4_T_H

#include <QJsonObject>
#include <QObject>

#include "database/definition/type_brand_t.h"
#include "database/migration/migration_base_t.h"

#include "database/database_export.h"

namespace database {
namespace migration {

/**
 * Lifts a document of generation 4 to generation 5: the season type, kept by
 * generation 4 in flag bits of the thermostat elements, moves into the
 * elements and into the thermostats that the thermostat-logic elements own.
 */
class DATABASE_EXPORT migration_4_t : public migration_base_t
{
    Q_OBJECT
public:
    static constexpr int migration_version = 4;

    explicit migration_4_t(QObject* parent = nullptr);

    void migrate_persistent(::database::definition::type_brand_t const& brand, QJsonObject& document,
                            int& error) override;

    /// True when all bits of flag are set in value.
    static bool getFlag(int value, int flag) { return (value & flag) == flag; }
};

} // namespace migration
} // namespace database

#endif // DATABASE_MIGRATION_SCRIPTS_MIGRATION_4_T_H
