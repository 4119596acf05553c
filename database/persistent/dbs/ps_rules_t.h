#ifndef DATABASE_PERSISTENT_DBS_PS_RULES_T_H
#define DATABASE_PERSISTENT_DBS_PS_RULES_T_H

#include <QObject>
#include <QString>
#include <QStringList>

#include "database/definition/type_object_t.h"
#include "database/persistent/dbs/ps_map_section_t.h"
#include "database/persistent/objects/ps_object_rules_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace dbs {

/**
 * The section of the rules by id. It also finds which rules refer to an
 * object, so that a removal elsewhere can be followed into the rule texts.
 */
class DATABASE_EXPORT ps_rules_t : public ps_map_section_t<ps_rules_t, objects::ps_object_rules_t>
{
    Q_OBJECT
    Q_PROPERTY(database::persistent::ps_rules_map objects_list READ getObjects WRITE setObjects
                   NOTIFY objects_listChanged)
    Q_PROPERTY(bool enabled READ getEnabled WRITE setEnabled NOTIFY enabledChanged)

public:
    /// The references a rule text may hold: word, "[", an id of letters and
    /// digits (possibly empty), "]". Rules are named "@rule" here, unlike the
    /// "@rules" that getDependency searches for.
    static const QString pattern_item;
    static const QString pattern_scenary;
    static const QString pattern_rule;

    Q_INVOKABLE explicit ps_rules_t(QObject* parent = nullptr);
    /// Takes the map's pointers as they are.
    ps_rules_t(ps_rules_map const& objects, QObject* parent);
    /// Deep: every rule copied, no parent, no receiver.
    ps_rules_t(ps_rules_t const& other);

    /// A null rule asks for its removal.
    void requestSetRules(QString const& id, objects::ps_object_rules_t* object) { objects.requestSet(id, object); }
    void requestSetRules(ps_rules_map const& map) { objects.requestSetAll(map); }

    /// Content into the rule of that id, a copy for a new id, removal for null.
    void update_rule(QString const& id, objects::ps_object_rules_t* object, bool _notify)
    {
        objects.update(id, object, _notify);
    }

    /// Publishes one rule, or null when it isn't there.
    void send_update_rule(QString const& id) { objects.sendUpdateObject(id); }

    /// What the capture groups of pattern catch in text, group by group and
    /// match by match; the whole matches when it has no group. Empty captures
    /// are dropped, repeats kept. An invalid pattern is logged and gives nothing.
    static QStringList getMatch(QString const& text, QString const& pattern);

    /// Appends to when, then and _else the ids of the rules whose condition,
    /// action or alternative refers to the object of that type and id; each
    /// rule at most once per list, in key order.
    void getDependency(::database::definition::type_object_t const& type, QString const& id, QStringList& when,
                       QStringList& then, QStringList& _else) const;

Q_SIGNALS:
    void objects_listChanged(database::persistent::ps_rules_map);
    void enabledChanged(bool);
};

} // namespace dbs
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_PS_RULES_T_H
