#include "database/migration/scripts/migration_4_t.h"

namespace database {
namespace migration {

namespace {

// The generation-4 meanings of these bits.
constexpr int kThermostatWinSum = 0x8000000;
constexpr int kThermoLogicWinSum = 0x10000000;
// Marks a thermo-logic element whose season type has moved.
constexpr int kThermoLogicMigrated = 0x20000000;

} // namespace

migration_4_t::migration_4_t(QObject* parent)
    : migration_base_t(migration_version, parent)
{
}

void migration_4_t::migrate_persistent(::database::definition::type_brand_t const&, QJsonObject& document, int& error)
{
    char const* source = "migrate_persistent";
    error = NoMigration;
    migratingPersistent(document, [&](QJsonObject& changed) {
        QJsonObject const elements = valueAt(changed, QStringLiteral("elements/objects_list")).toObject();
        QJsonObject const thermostats = valueAt(changed, QStringLiteral("thermo/objects_list")).toObject();
        for (auto it = elements.begin(); it != elements.end(); ++it) {
            QJsonObject element = it.value().toObject();
            if (!element.contains(QStringLiteral("@class")))
                continue;
            QString const path = QStringLiteral("elements/objects_list/") + it.key();
            QString const name = element.value(QStringLiteral("name")).toString();
            int const flags = flagsOf(element);
            QString const type = classOf(element);
            if (type == QLatin1String("psoe_thermostat")) {
                // 1 or 0, the truth of the test: the loader reads the field as a number.
                element.insert(QStringLiteral("seasontype"), int(!getFlag(flags, kThermostatWinSum)));
                writeAt(changed, path, element);
                log(QStringLiteral("Migrated element ") + name, source);
            } else if (type == QLatin1String("psoe_thermo_logic")) {
                QString const thermoId = element.value(QStringLiteral("thermo_id")).toString();
                if (thermostats.contains(thermoId)) {
                    QJsonObject thermo
                        = thermostats.value(thermoId).toObject().value(QStringLiteral("thermo")).toObject();
                    thermo.insert(QStringLiteral("seasontype"), int(!getFlag(flags, kThermoLogicWinSum)));
                    writeAt(changed, QStringLiteral("thermo/objects_list/") + thermoId + QStringLiteral("/thermo"),
                            thermo);
                    log(QStringLiteral("Migrated thermo ") + thermoId + QStringLiteral(" related to element ") + name,
                        source);
                }
                // Marked even without its thermostat: the flag says the move was made.
                element.insert(QStringLiteral("flags"), flags | kThermoLogicMigrated);
                writeAt(changed, path, element);
                log(QStringLiteral("Migrated element ") + name, source);
            }
        }
        error = NoError;
    });
}

} // namespace migration
} // namespace database
