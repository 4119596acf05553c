#ifndef DATABASE_PERSISTENT_OBJECTS_PS_OBJECT_SCENARY_T_H
#define DATABASE_PERSISTENT_OBJECTS_PS_OBJECT_SCENARY_T_H

#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>

#include "database/base/topicbase_t.h"
#include "database/persistent/dbs/ps_object_map_t.h"
#include "database/persistent/objects/ps_object_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/**
 * A scenario: a named list of steps that run as one, each at its order and
 * after its delay. Its steps are owned here, keyed under "objects_list".
 */
class DATABASE_EXPORT ps_object_scenary_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(database::persistent::ps_objects_map objects_list READ getObjects WRITE setObjects
                   NOTIFY objects_listChanged)
    Q_PROPERTY(bool enabled READ getEnabled WRITE setEnabled NOTIFY enabledChanged)
    Q_PROPERTY(QString name READ getName WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(int permission READ getPermission WRITE setPermission NOTIFY permissionChanged)
    Q_PROPERTY(QString smvalue READ getSmartButtonValue WRITE setSmartButtonValue NOTIFY smvalueChanged)

public:
    Q_INVOKABLE explicit ps_object_scenary_t(QObject* parent = nullptr);
    ps_object_scenary_t(QString const& topic, QObject* parent);
    /// Takes the steps' pointers as they are.
    ps_object_scenary_t(bool enabled, ps_objects_map const& objects, int permission, QString const& name,
                        QObject* parent);
    /// A scenario of a single step, whose pointer it takes as it is.
    ps_object_scenary_t(bool enabled, QString const& key, ps_object_t* object, int permission, QString const& name,
                        QObject* parent);
    /// Deep: every step copied, no parent, no receiver.
    ps_object_scenary_t(ps_object_scenary_t const& other);

    ps_objects_map getObjects() const { return steps.get(); }
    bool getEnabled() const { return enabled; }
    QString getName() const { return name; }
    int getPermission() const { return permission; }
    QString getSmartButtonValue() const { return smvalue; }

    /// Takes the map's pointers as they are; steps not kept are deleted at once.
    void setObjects(ps_objects_map const& map);
    void setEnabled(bool value);
    void setName(QString const& value);
    void setPermission(int value);
    void setSmartButtonValue(QString const& value);
    /// Moves the steps along with the scenario.
    void setTopic(QString const& value);

    void requestSetEnabled(bool value);
    void requestSetName(QString const& value);
    void requestSetPermission(int value);
    void requestSetSmartButtonValue(QString const& value);
    /// Runs (true) or stops (false) the scenario; no field of it changes.
    void requestSetExecution(bool value);
    /// A null step asks for its removal.
    void requestSetObject(QString const& key, ps_object_t* object) { steps.requestSet(key, object); }
    void requestSetObjects(ps_objects_map const& map) { steps.requestSetAll(map); }

    /// Never null; see ps_object_map_t::list.
    ps_object_t* objects(QString const& key) { return steps.list(key); }

    /// Content into the step of that key, a copy for a new key, removal for
    /// null; with _notify the whole scenario is published.
    void update_object(QString const& key, ps_object_t* object, bool _notify);
    /// Unknown keys are skipped.
    void update_remove_objects(QStringList const& keys, bool _notify);
    void update_name(QString const& value, bool _notify);
    void update_smart_button_value(QString const& value, bool _notify);

    /// The fields and every step by content; the topic doesn't count.
    bool compare(ps_object_scenary_t const* other) const;
    /// The fields, and the steps by pointer.
    bool operator==(ps_object_scenary_t const& other) const;

    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { steps.initRequestSignals(receiver, connect); }

Q_SIGNALS:
    void objects_listChanged(database::persistent::ps_objects_map);
    void enabledChanged(bool);
    void nameChanged(QString);
    void permissionChanged(int);
    void smvalueChanged(QString);

private:
    bool sameFields(ps_object_scenary_t const& other) const;

    dbs::ps_object_map_t<ps_object_t> steps{this, QStringLiteral("objects_list")};
    bool enabled = true;
    QString name;
    int permission = 0;
    QString smvalue;
};

} // namespace objects

typedef QMap<QString, objects::ps_object_scenary_t*> ps_scenary_map;

} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_PS_OBJECT_SCENARY_T_H
