#ifndef DATABASE_PERSISTENT_OBJECTS_THERMO_PS_THERMO_IDS_H
#define DATABASE_PERSISTENT_OBJECTS_THERMO_PS_THERMO_IDS_H

#include <QString>
#include <QVariantMap>

/// The item references of both thermostat loops, kept as a map from parameter
/// name to item id, follow one rule: a blank id is no reference at all.
namespace database {
namespace persistent {
namespace objects {
namespace thermo_ids {

/// The item id stored under key, empty when there is none.
inline QString get(QVariantMap const& items, QString const& key)
{
    return items.value(key).toString();
}

/// items with key set to the trimmed value, or without key when that is empty.
inline QVariantMap with(QVariantMap items, QString const& key, QString const& value)
{
    QString const id = value.trimmed();
    if (id.isEmpty())
        items.remove(key);
    else
        items.insert(key, id);
    return items;
}

} // namespace thermo_ids
} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_THERMO_PS_THERMO_IDS_H
