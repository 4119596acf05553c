#include "database/persistent/objects/elements/psoe_rgb.h"

#include <QRegularExpression>

#include <cmath>

namespace database {
namespace persistent {
namespace objects {

namespace {

QString const key_color_rgbw = QStringLiteral("color_rgbw");
QString const key_color_white = QStringLiteral("color_white");
QString const key_color_hue = QStringLiteral("color_hue");
QString const key_dimming = QStringLiteral("dimming");

// A preset that gains dimming shows its colour at full level, as it did before.
QString const default_dimming = QStringLiteral("100");

QString hexByte(int value)
{
    return QString::number(value, 16).toUpper().rightJustified(2, QLatin1Char('0'));
}

// Each part read in base, written as two hex digits, joined by ";"; empty when a part doesn't read.
QString partsToDbFormat(QStringList const& parts, int base)
{
    QStringList bytes;
    for (QString const& part : parts) {
        bool ok = false;
        int const value = part.toInt(&ok, base);
        if (!ok)
            return QString();
        bytes.append(hexByte(value));
    }
    return bytes.join(QLatin1Char(';'));
}

// The clients write colours in many ways; the first separator that yields count parts wins.
QString toDbFormat(QString const& text, int base, int count)
{
    static QString const separators[] = {QStringLiteral(";"), QStringLiteral("-"), QStringLiteral(" "),
                                         QStringLiteral(":"), QStringLiteral("#")};
    for (QString const& separator : separators) {
        QStringList const parts = text.split(separator);
        if (parts.size() == count)
            return partsToDbFormat(parts, base);
    }
    static QRegularExpression const blanks(QStringLiteral("\\s"));
    QString compact = text;
    compact.remove(QLatin1Char('#')).remove(blanks);
    if (compact.size() != 2 * count)
        return QString();
    QStringList pairs;
    for (int i = 0; i < count; ++i)
        pairs.append(compact.mid(2 * i, 2).toUpper());
    return pairs.join(QLatin1Char(';'));
}

// The parts of a colour in the database format, as text in base 16 or 10; empty when it doesn't read.
QStringList fromDbFormat(QString text, int base, int count)
{
    if (base != 16 && base != 10)
        return QStringList();
    text.remove(QLatin1Char(' ')).remove(QLatin1Char(':')).remove(QLatin1Char('#'));
    QStringList const parts = text.split(QLatin1Char(';'));
    if (parts.size() != count)
        return QStringList();
    QStringList out;
    for (QString const& part : parts) {
        bool ok = false;
        int const value = part.toInt(&ok, 16);
        if (!ok)
            return QStringList();
        out.append(base == 16 ? hexByte(value) : QString::number(value));
    }
    return out;
}

QString fromDbFormatText(QString const& text, int base, int count)
{
    QStringList const parts = fromDbFormat(text, base, count);
    if (parts.isEmpty())
        return QString();
    return base == 16 ? QLatin1Char('#') + parts.join(QString()) : parts.join(QLatin1Char(','));
}

QString listToDbFormat(QStringList const& parts, int base, int count)
{
    if (parts.size() != count || (base != 10 && base != 16))
        return QString();
    return partsToDbFormat(parts, base);
}

// The scale of a function's interpreted value: percent, degrees for the hue, 0 when it has none.
float interpretedScale(QString const& func_key)
{
    static QStringList const percent{QStringLiteral("color_red"), QStringLiteral("color_green"),
                                     QStringLiteral("color_blue"), QStringLiteral("color_saturation"),
                                     QStringLiteral("color_value")};
    if (func_key == key_color_hue)
        return 360.0f;
    return percent.contains(func_key) ? 100.0f : 0.0f;
}

} // namespace

psoe_rgb::psoe_rgb(QObject* parent)
    : psoe_presets_t(parent)
{
}

psoe_rgb::psoe_rgb(QString const& topic, QObject* parent)
    : psoe_presets_t(topic, parent)
{
}

psoe_rgb::psoe_rgb(QString const& id, QString const& name, QString const& description, QVariantMap const& function_map,
                   QVariantMap const& auth, QStringList const& rooms, int flags, QVariantMap const& runoptions,
                   QVariantMap const& lock_ui_map, ps_preset_map const& presets, QObject* parent)
    : psoe_presets_t(id, name, description, function_map, auth, rooms, flags, runoptions, lock_ui_map, parent)
{
    for (auto it = presets.begin(); it != presets.end(); ++it)
        update_preset(it.key(), it.value());
}

psoe_rgb::psoe_rgb(psoe_rgb const& other)
    : psoe_presets_t(other)
{
}

QString psoe_rgb::rgb_stringTodbformat(QString const& rgb, int base) const
{
    return toDbFormat(rgb, base, 3);
}

QString psoe_rgb::rgb_stringFromdbformat(QString const& rgb, int base) const
{
    return fromDbFormatText(rgb, base, 3);
}

QStringList psoe_rgb::rgb_listFromdbformat(QString const& rgb, int base) const
{
    return fromDbFormat(rgb, base, 3);
}

QString psoe_rgb::rgb_listTodbformat(QStringList const& rgb, int base) const
{
    return listToDbFormat(rgb, base, 3);
}

QString psoe_rgb::rgbw_stringTodbformat(QString const& rgbw, int base) const
{
    return toDbFormat(rgbw, base, 4);
}

QString psoe_rgb::rgbw_stringFromdbformat(QString const& rgbw, int base) const
{
    return fromDbFormatText(rgbw, base, 4);
}

QStringList psoe_rgb::rgbw_listFromdbformat(QString const& rgbw, int base) const
{
    return fromDbFormat(rgbw, base, 4);
}

QString psoe_rgb::rgbw_listTodbformat(QStringList const& rgbw, int base) const
{
    return listToDbFormat(rgbw, base, 4);
}

QString psoe_rgb::listToRgbHex(QStringList const& rgb, int base) const
{
    if (rgb.size() != 3)
        return QString();
    QString const parts = partsToDbFormat(rgb, base);
    return parts.isEmpty() ? QString() : QLatin1Char('#') + parts.split(QLatin1Char(';')).join(QString());
}

int psoe_rgb::interpreted2ByteValue(int interpreted, QString const& func_key) const
{
    float const scale = interpretedScale(func_key);
    if (!getFlag(RGB_FLAG_MULTIPLE_DPT_INTERPRETED) || scale == 0.0f)
        return interpreted;
    return int(std::lround(float(interpreted) / scale * 255.0f));
}

int psoe_rgb::byte2InterpretedValue(int byte_value, QString const& func_key) const
{
    float const scale = interpretedScale(func_key);
    if (!getFlag(RGB_FLAG_MULTIPLE_DPT_INTERPRETED) || scale == 0.0f)
        return byte_value;
    return int(std::lround(float(byte_value) / 255.0f * scale));
}

bool psoe_rgb::update_to_adjust_preset(bool _notify)
{
    QStringList colourKeys{QStringLiteral("color_rgb"), key_color_rgbw, QStringLiteral("color_red"),
                           QStringLiteral("color_green"), QStringLiteral("color_blue")};
    if (getFlag(RGB_FLAG_RGB_HSV))
        colourKeys << QStringLiteral("color_hsv") << QStringLiteral("color_hsvw") << key_color_hue
                   << QStringLiteral("color_saturation") << QStringLiteral("color_value");

    bool adjusted = getFlag(RGB_FLAG_ENABLE_DIMMING) ? add_update_key_to_preset(key_dimming, default_dimming)
                                                     : delete_key_from_preset(key_dimming);

    if (!getFlag(RGB_FLAG_ENABLE_COLOR_WHITE)) {
        adjusted |= delete_key_from_preset(key_color_white);
        // Both bus modes at once send RGBW: without white its part must stay dark.
        if (getFlag(RGB_FLAG_RGB_DPT_MODE | RGB_FLAG_RGBW_DPT_MODE)) {
            adjusted |= editFunctionMaps([](QVariantMap& map) {
                QString const rgbw = map.value(key_color_rgbw).toString();
                if (rgbw.size() != 11 || rgbw.mid(9, 2) == QLatin1String("00"))
                    return false;
                map.insert(key_color_rgbw, rgbw.left(9) + QStringLiteral("00"));
                return true;
            });
        }
    }

    // A preset that holds no colour this mode can use would recall nothing.
    bool dropped = false;
    for (QString const& key : presets.keys()) {
        QVariantMap const map = presets.value(key)->getFunction_map();
        bool const usable = std::any_of(colourKeys.begin(), colourKeys.end(),
                                        [&map](QString const& colourKey) { return map.contains(colourKey); });
        if (!usable) {
            delete presets.take(key);
            dropped = true;
        }
    }
    if (dropped)
        changed();
    adjusted |= dropped;
    adjusted |= adjust_rgb();

    if (adjusted && _notify)
        send_update();
    return adjusted;
}

bool psoe_rgb::check_same_preset(ps_object_preset_t const* a, ps_object_preset_t const* b) const
{
    return a && b && a->getFunction_map() == b->getFunction_map();
}

bool psoe_rgb::adjust_rgb()
{
    return removeSamePresets();
}

} // namespace objects
} // namespace persistent
} // namespace database
