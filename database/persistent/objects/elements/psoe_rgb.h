#ifndef DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_RGB_H
#define DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_RGB_H

#include <QObject>
#include <QString>
#include <QStringList>

#include "database/persistent/objects/elements/psoe_presets_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/**
 * A coloured lamp. Its colour travels in three forms: the clients' ("#FF000A",
 * "255,0,10"), the bus's (numbers, possibly as percent and degrees), and the
 * database's ("FF;00;0A", or four parts with white); the conversions never
 * fail loudly, an empty string stands for a colour that doesn't read.
 */
class DATABASE_EXPORT psoe_rgb : public psoe_presets_t<psoe_rgb, ps_object_element_t::ELEMENT_TYPE_RGB>
{
    Q_OBJECT
    Q_PROPERTY(database::persistent::ps_preset_map presets READ getPresets WRITE setPresets NOTIFY presetsChanged)

public:
    enum RgbFlag {
        RGB_FLAG_ENABLE_COLOR_WHITE = 0x80000000,
        RGB_FLAG_ENABLE_DIMMING = 0x40000000,
        RGB_FLAG_RGB_DPT_MODE = 0x20000000,
        RGB_FLAG_RGBW_DPT_MODE = 0x10000000,
        RGB_FLAG_RGB_HSV = 0x08000000,
        RGB_FLAG_MULTIPLE_DPT_INTERPRETED = 0x04000000
    };
    Q_ENUM(RgbFlag)

    Q_INVOKABLE explicit psoe_rgb(QObject* parent = nullptr);
    psoe_rgb(QString const& topic, QObject* parent);
    psoe_rgb(QString const& id, QString const& name, QString const& description, QVariantMap const& function_map,
             QVariantMap const& auth, QStringList const& rooms, int flags, QVariantMap const& runoptions,
             QVariantMap const& lock_ui_map, ps_preset_map const& presets, QObject* parent);
    psoe_rgb(psoe_rgb const& other);

    /// Three numbers in base, split by ";", "-", " ", ":" or "#", or six hex digits, into "RR;GG;BB".
    Q_INVOKABLE QString rgb_stringTodbformat(QString const& rgb, int base) const;
    /// "RR;GG;BB" into "#RRGGBB" (base 16) or "r,g,b" (base 10).
    Q_INVOKABLE QString rgb_stringFromdbformat(QString const& rgb, int base) const;
    Q_INVOKABLE QStringList rgb_listFromdbformat(QString const& rgb, int base) const;
    Q_INVOKABLE QString rgb_listTodbformat(QStringList const& rgb, int base) const;
    Q_INVOKABLE QString rgbw_stringTodbformat(QString const& rgbw, int base) const;
    Q_INVOKABLE QString rgbw_stringFromdbformat(QString const& rgbw, int base) const;
    Q_INVOKABLE QStringList rgbw_listFromdbformat(QString const& rgbw, int base) const;
    Q_INVOKABLE QString rgbw_listTodbformat(QStringList const& rgbw, int base) const;
    /// Three numbers in base into "#RRGGBB".
    Q_INVOKABLE QString listToRgbHex(QStringList const& rgb, int base) const;

    /// A bus value in percent or degrees into a byte, when the element's items are interpreted.
    Q_INVOKABLE int interpreted2ByteValue(int interpreted, QString const& func_key) const;
    Q_INVOKABLE int byte2InterpretedValue(int byte_value, QString const& func_key) const;

    /// Brings the presets into line with the flags; true when something changed.
    Q_INVOKABLE bool update_to_adjust_preset(bool _notify);

    /// Equal function maps: the order of the presets doesn't make them differ.
    bool check_same_preset(ps_object_preset_t const* a, ps_object_preset_t const* b) const;
    /// Drops presets equal to an earlier one; true when any went.
    bool adjust_rgb();

Q_SIGNALS:
    void presetsChanged(database::persistent::ps_preset_map);
};

} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_RGB_H
