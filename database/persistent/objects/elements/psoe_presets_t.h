#ifndef DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_PRESETS_T_H
#define DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_PRESETS_T_H

#include <QSet>
#include <QStringList>
#include <QVariant>

#include "database/persistent/objects/elements/ps_object_preset_t.h"
#include "database/persistent/objects/elements/psoe_family_t.h"

namespace database {
namespace persistent {
namespace objects {

/**
 * The elements that keep presets: settings the user stored to recall them with
 * one touch. The presets are children of the element, each under a key, with
 * the topic of the element, "/preset/" and that key. Derived declares the
 * property presets and presetsChanged, and check_same_preset(a, b), which
 * tells when two presets would set the lamp alike.
 */
template<class Derived, int Type>
class psoe_presets_t : public psoe_family_t<Derived, Type>
{
public:
    using psoe_family_t<Derived, Type>::psoe_family_t;
    using psoe_family_t<Derived, Type>::compare;

    psoe_presets_t(psoe_presets_t const& other)
        : psoe_family_t<Derived, Type>(other)
    {
        for (auto it = other.presets.begin(); it != other.presets.end(); ++it)
            insertCopy(it.key(), it.value());
    }

    ps_preset_map getPresets() const { return presets; }
    /// Adopts the map's presets as they are (deserialization); the others are deleted.
    void setPresets(ps_preset_map const& value)
    {
        if (value == presets)
            return;
        QList<ps_object_preset_t*> const kept = value.values();
        QSet<ps_object_preset_t*> const keptSet(kept.begin(), kept.end());
        for (ps_object_preset_t* preset : std::as_const(presets)) {
            if (!keptSet.contains(preset))
                delete preset;
        }
        presets.clear();
        for (auto it = value.begin(); it != value.end(); ++it) {
            if (!it.value())
                continue;
            it.value()->setParent(this);
            it.value()->setTopic(presetTopic(it.key()));
            presets.insert(it.key(), it.value());
        }
        changed();
    }

    QString presetTopic(QString const& key) const { return this->getTopic() + QStringLiteral("/preset/") + key; }

    /// A new copy that the caller owns; null for an unknown key.
    ps_object_preset_t* preset_get_copy(QString const& key) const
    {
        ps_object_preset_t const* preset = presets.value(key);
        return preset ? new ps_object_preset_t(*preset) : nullptr;
    }
    /// A new preset without parent; the caller owns it.
    ps_object_preset_t* preset_create(QVariantMap const& function_map, int order) const
    {
        return new ps_object_preset_t(function_map, order, nullptr);
    }
    QStringList preset_keys() const { return presets.keys(); }

    void update_remove_preset(QString const& _key, bool _notify = false)
    {
        if (ps_object_preset_t* preset = presets.take(_key)) {
            delete preset;
            changed();
        }
        notify(_notify);
    }

    /// Content into the preset of that key, or a copy for a new key; null removes it.
    void update_preset(QString const& _key, ps_object_preset_t* preset, bool _notify = false)
    {
        if (_key.isEmpty())
            return;
        if (!preset) {
            update_remove_preset(_key, _notify);
            return;
        }
        preset->setTopic(presetTopic(_key));
        if (ps_object_preset_t* present = presets.value(_key))
            present->update_preset(_key, preset);
        else
            insertCopy(_key, preset);
        changed();
        notify(_notify);
    }

    void update_preset_order(QString const& _key, int _order, bool _notify = false)
    {
        if (ps_object_preset_t* preset = presets.value(_key))
            preset->update_order(_order);
        notify(_notify);
    }

    void update_clear_presets(bool _notify = false)
    {
        if (!presets.isEmpty()) {
            qDeleteAll(presets);
            presets.clear();
            changed();
        }
        notify(_notify);
    }

    /// Adds key to every preset that lacks it; values already there stay. True on a change.
    bool add_update_key_to_preset(QString const& key, QVariant const& value)
    {
        return editFunctionMaps([&](QVariantMap& map) {
            if (map.contains(key))
                return false;
            map.insert(key, value);
            return true;
        });
    }

    /// Removes key from every preset. True on a change.
    bool delete_key_from_preset(QString const& key)
    {
        return editFunctionMaps([&](QVariantMap& map) { return map.remove(key) > 0; });
    }

    /// The keys of the other presets that check_same_preset finds equal to the one of key.
    QStringList find_same_preset(QString const& key) const
    {
        QStringList same;
        ps_object_preset_t const* preset = presets.value(key);
        if (!preset)
            return same;
        for (auto it = presets.begin(); it != presets.end(); ++it) {
            if (it.key() != key && static_cast<Derived const*>(this)->check_same_preset(preset, it.value()))
                same.append(it.key());
        }
        return same;
    }

    /// Same type, same base properties without the id, and presets alike key by key.
    bool compare(Derived const* other, bool compare_runoptions) const
    {
        if (!ps_object_element_t::compare(other, compare_runoptions, false)
            || presets.keys() != other->presets.keys())
            return false;
        for (auto it = presets.begin(); it != presets.end(); ++it) {
            if (!it.value()->compare(other->presets.value(it.key())))
                return false;
        }
        return true;
    }

protected:
    /// Keeps the first of each group of equal presets, in key order. True on a change.
    bool removeSamePresets()
    {
        bool removed = false;
        for (QString const& key : presets.keys()) {
            if (!presets.contains(key))
                continue;
            for (QString const& same : find_same_preset(key)) {
                delete presets.take(same);
                removed = true;
            }
        }
        if (removed)
            changed();
        return removed;
    }

    /// Runs edit on the function map of every preset; true when any said it changed.
    template<class Edit>
    bool editFunctionMaps(Edit edit)
    {
        bool any = false;
        for (ps_object_preset_t* preset : std::as_const(presets)) {
            QVariantMap map = preset->getFunction_map();
            if (edit(map)) {
                preset->setFunction_map(map);
                any = true;
            }
        }
        return any;
    }

    void changed() { Q_EMIT this->self()->presetsChanged(presets); }

    ps_preset_map presets;

private:
    void insertCopy(QString const& key, ps_object_preset_t const* preset)
    {
        auto* copy = new ps_object_preset_t(*preset);
        copy->setParent(this);
        copy->setTopic(presetTopic(key));
        presets.insert(key, copy);
    }

    void notify(bool _notify)
    {
        if (_notify)
            this->send_update();
    }
};

} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_PRESETS_T_H
