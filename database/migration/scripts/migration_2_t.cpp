#include "database/migration/scripts/migration_2_t.h"

#include "database/persistent/objects/elements/psoe_rgb.h"

namespace database {
namespace migration {

using persistent::objects::psoe_rgb;

namespace {

// Flags of generation 3 that this script is the first to know.
constexpr int kRgbDptMode = 0x20000000;
constexpr int kMultipleDptInterpreted = 0x4000000;

} // namespace

migration_2_t::migration_2_t(QObject* parent)
    : migration_base_t(migration_version, parent)
{
}

void migration_2_t::migrate_persistent(::database::definition::type_brand_t const&, QJsonObject& document, int& error)
{
    error = NoError;
    migratingPersistent(document, [](QJsonObject& changed) {
        migrateItems(changed);
        migrateElements(changed);
    });
}

void migration_2_t::migrateItems(QJsonObject& document)
{
    QJsonObject const items = valueAt(document, QStringLiteral("items/objects_list")).toObject();
    for (auto it = items.begin(); it != items.end(); ++it) {
        QJsonObject const item = it.value().toObject();
        QJsonValue const type = item.value(QStringLiteral("type"));
        if (!type.isString())
            continue;
        QString const name = type.toString().trimmed();
        if (name != QLatin1String("dtp_232") && name != QLatin1String("dtp_251"))
            continue;
        if (item.value(QStringLiteral("typeformat")).toString().isEmpty())
            writeAt(document, QStringLiteral("items/objects_list/") + it.key() + QStringLiteral("/typeformat"),
                    QStringLiteral("600"));
    }
}

void migration_2_t::migrateElements(QJsonObject& document)
{
    migrateElementRgbInterpreted(document);
}

void migration_2_t::migrateElementRgbInterpreted(QJsonObject& document)
{
    QString const rgbClass
        = QString::fromLatin1(psoe_rgb::staticMetaObject.className()).section(QStringLiteral("::"), -1);
    QJsonObject const items = valueAt(document, QStringLiteral("items/objects_list")).toObject();
    auto isColourByte = [&](QString const& id) {
        QJsonObject const item = items.value(id).toObject();
        return items.contains(id) && item.value(QStringLiteral("type")).toString() == QLatin1String("dtp_5")
            && item.value(QStringLiteral("typeformat")).toString() == QLatin1String("001");
    };
    QJsonObject const elements = valueAt(document, QStringLiteral("elements/objects_list")).toObject();
    for (auto it = elements.begin(); it != elements.end(); ++it) {
        QJsonObject const element = it.value().toObject();
        if (!element.value(QStringLiteral("@class")).isString() || classOf(element) != rgbClass)
            continue;
        int const flags = flagsOf(element);
        if (flags & kRgbDptMode)
            continue;
        QJsonObject const functions = element.value(QStringLiteral("function_map")).toObject();
        bool const separate = isColourByte(functions.value(QStringLiteral("color_red")).toString())
            && isColourByte(functions.value(QStringLiteral("color_green")).toString())
            && isColourByte(functions.value(QStringLiteral("color_blue")).toString());
        if (separate)
            writeAt(document, QStringLiteral("elements/objects_list/") + it.key() + QStringLiteral("/flags"),
                    flags | kMultipleDptInterpreted);
    }
}

} // namespace migration
} // namespace database
