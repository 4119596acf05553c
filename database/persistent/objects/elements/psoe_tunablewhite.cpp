#include "database/persistent/objects/elements/psoe_tunablewhite.h"

#include <algorithm>
#include <cmath>

namespace database {
namespace persistent {
namespace objects {

namespace {

QString const key_dimming = QStringLiteral("dimming");
QString const key_white_tune = QStringLiteral("white_tune");

// A preset that gains dimming shows its white at full level, as it did before.
QString const default_dimming = QStringLiteral("100");

QString colourByte(float value)
{
    if (std::isnan(value))
        value = 0.0f;
    long const byte = std::lround(std::clamp(value, 0.0f, 255.0f));
    return QString::number(byte, 16).toUpper().rightJustified(2, QLatin1Char('0'));
}

} // namespace

psoe_tunablewhite::psoe_tunablewhite(QObject* parent)
    : psoe_presets_t(parent)
{
}

psoe_tunablewhite::psoe_tunablewhite(QString const& topic, QObject* parent)
    : psoe_presets_t(topic, parent)
{
}

psoe_tunablewhite::psoe_tunablewhite(QString const& id, QString const& name, QString const& description,
                                     QVariantMap const& function_map, QVariantMap const& auth,
                                     QStringList const& rooms, int flags, QVariantMap const& runoptions,
                                     QVariantMap const& lock_ui_map, ps_preset_map const& presets,
                                     QStringList const& white_tune_par, QObject* parent)
    : psoe_presets_t(id, name, description, function_map, auth, rooms, flags, runoptions, lock_ui_map, parent)
    , white_tune_par(white_tune_par)
{
    for (auto it = presets.begin(); it != presets.end(); ++it)
        update_preset(it.key(), it.value());
}

psoe_tunablewhite::psoe_tunablewhite(psoe_tunablewhite const& other)
    : psoe_presets_t(other)
    , white_tune_par(other.white_tune_par)
{
}

void psoe_tunablewhite::setWhite_tune_par(QStringList const& value)
{
    assign(white_tune_par, value, [this] { Q_EMIT white_tune_parChanged(white_tune_par); });
}

QString psoe_tunablewhite::kelvinToRgbHex(int kelvin) const
{
    // The panels and the earlier releases agree on these exact figures: single
    // precision, with the products of the fitted constants in double.
    float const t = float(kelvin / 100);
    float red = 255.0f;
    float green = 0.0f;
    float blue = 255.0f;
    if (t <= 66.0f) {
        green = float(99.4708025861 * std::log(t) - 161.1195681661);
        blue = t <= 19.0f ? 0.0f : float(138.5177312231 * std::log(t - 10.0f) - 305.0447927307);
    } else {
        red = float(329.698727446 * std::pow(t - 60.0f, -0.1332047592));
        green = float(288.1221695283 * std::pow(t - 60.0f, -0.0755148492));
    }
    return QLatin1Char('#') + colourByte(red) + colourByte(green) + colourByte(blue);
}

bool psoe_tunablewhite::update_to_adjust_preset(bool _notify)
{
    bool const adjusted = getFlag(TUNABLE_WHITE_FLAG_ENABLE_DIMMING)
        ? add_update_key_to_preset(key_dimming, default_dimming)
        : delete_key_from_preset(key_dimming);
    if (adjusted && _notify)
        send_update();
    return adjusted;
}

bool psoe_tunablewhite::adjust_white_tune()
{
    return removeSamePresets();
}

bool psoe_tunablewhite::check_same_preset(ps_object_preset_t const* a, ps_object_preset_t const* b) const
{
    if (!a || !b)
        return false;
    QVariantMap const first = a->getFunction_map();
    QVariantMap const second = b->getFunction_map();
    return first.value(key_dimming) == second.value(key_dimming)
        && first.value(key_white_tune).toString().toDouble() == second.value(key_white_tune).toString().toDouble();
}

bool psoe_tunablewhite::compare(psoe_tunablewhite const* other, bool compare_runoptions) const
{
    return psoe_presets_t::compare(other, compare_runoptions) && white_tune_par == other->white_tune_par;
}

} // namespace objects
} // namespace persistent
} // namespace database
