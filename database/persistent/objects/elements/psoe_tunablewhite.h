#ifndef DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_TUNABLEWHITE_H
#define DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_TUNABLEWHITE_H

#include <QObject>
#include <QString>
#include <QStringList>

#include "database/persistent/objects/elements/psoe_presets_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/**
 * A lamp whose white can be tuned from warm to cold. The element type table
 * doesn't compare it by content: two of them are equal only when they are one.
 */
class DATABASE_EXPORT psoe_tunablewhite
    : public psoe_presets_t<psoe_tunablewhite, ps_object_element_t::ELEMENT_TYPE_TUNABLEWHITE>
{
    Q_OBJECT
    Q_PROPERTY(database::persistent::ps_preset_map presets READ getPresets WRITE setPresets NOTIFY presetsChanged)
    Q_PROPERTY(QStringList white_tune_par READ getWhite_tune_par WRITE setWhite_tune_par NOTIFY white_tune_parChanged)

public:
    enum TunableWhiteFlag { TUNABLE_WHITE_FLAG_ENABLE_DIMMING = 0x80000000 };
    Q_ENUM(TunableWhiteFlag)

    Q_INVOKABLE explicit psoe_tunablewhite(QObject* parent = nullptr);
    psoe_tunablewhite(QString const& topic, QObject* parent);
    psoe_tunablewhite(QString const& id, QString const& name, QString const& description,
                      QVariantMap const& function_map, QVariantMap const& auth, QStringList const& rooms, int flags,
                      QVariantMap const& runoptions, QVariantMap const& lock_ui_map, ps_preset_map const& presets,
                      QStringList const& white_tune_par, QObject* parent);
    psoe_tunablewhite(psoe_tunablewhite const& other);

    QStringList getWhite_tune_par() const { return white_tune_par; }
    void setWhite_tune_par(QStringList const& value);

    /// The colour of a white of that temperature, "#RRGGBB", from a fitted curve.
    Q_INVOKABLE QString kelvinToRgbHex(int kelvin) const;

    /// Adds or removes "dimming" in the presets as the flags ask; true when something changed.
    Q_INVOKABLE bool update_to_adjust_preset(bool _notify);
    /// Drops presets with the same white and dimming as an earlier one; true when any went.
    Q_INVOKABLE bool adjust_white_tune();

    /// Same dimming and the same white, read as a number.
    bool check_same_preset(ps_object_preset_t const* a, ps_object_preset_t const* b) const;

    bool compare(psoe_tunablewhite const* other, bool compare_runoptions) const;
    using psoe_presets_t::compare;

Q_SIGNALS:
    void presetsChanged(database::persistent::ps_preset_map);
    void white_tune_parChanged(QStringList);

private:
    QStringList white_tune_par{QStringLiteral("0"), QStringLiteral("0"), QStringLiteral("0"), QStringLiteral("0")};
};

} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_TUNABLEWHITE_H
