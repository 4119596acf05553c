#ifndef DATABASE_PERSISTENT_OBJECTS_SCHEDULERS_PS_OBJECT_SCHEDULE_ENTRY_T_H
#define DATABASE_PERSISTENT_OBJECTS_SCHEDULERS_PS_OBJECT_SCHEDULE_ENTRY_T_H

#include <QJsonObject>
#include <QJsonValue>
#include <QObject>
#include <QString>
#include <QStringList>

#include "database/base/topicbase_t.h"
#include "database/definition/type_cron_t.h"
#include "database/persistent/dbs/ps_object_map_t.h"
#include "database/persistent/objects/ps_object_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/**
 * What a clock entry and a sun entry of a schedule share: the actions to fire
 * (merged key by key on update, so unchanged actions keep their object), the
 * six-field pattern, the validity period and the grammar of their fields.
 * The concrete entries declare pattern and validity as properties themselves,
 * so that each puts them where its JSON wants them.
 */
class DATABASE_EXPORT ps_object_schedule_entry_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(database::persistent::ps_objects_map objects_list READ getObjects WRITE setObjects NOTIFY objects_listChanged)

public:
    ps_objects_map getObjects() const { return actions.get(); }
    /// Takes the map's pointers as they are.
    void setObjects(ps_objects_map const& map);

    QString getPattern() const { return pattern; }
    QString getValidity() const { return validity; }
    void setPattern(QString const& value);
    void setValidity(QString const& value);

    QString getMinute() const { return patternField(0); }
    QString getHour() const { return patternField(1); }
    QString getDay() const { return patternField(2); }
    QString getMonth() const { return patternField(3); }
    QString getWeekday() const { return patternField(4); }
    QString getYear() const { return patternField(5); }
    QString getFrom() const { return validityField(0); }
    QString getTo() const { return validityField(1); }

    /// True when the whole of value is allowed for that field; "from" and "to"
    /// are the clock entries' validity dates.
    static bool checkParams(QString const& value, ::database::definition::type_cron_t const& field);
    /// The six pattern fields, minute to year, all allowed.
    static bool checkPattern(QStringList const& fields);
    /// Both validity dates allowed.
    static bool checkValidity(QString const& from, QString const& to);

    /// Never null; see ps_object_map_t::list.
    ps_object_t* objects(QString const& key) { return actions.list(key); }

    void requestSetObject(QString const& key, ps_object_t* object) { actions.requestSet(key, object); }
    void requestSetObjects(ps_objects_map const& map) { actions.requestSetAll(map); }

    /// Content into the action of that key, a copy for a new key, removal for
    /// null; with _notify the whole entry is published.
    void update_object(QString const& key, ps_object_t* object, bool _notify = false);
    /// Drops the actions of these keys; unknown keys are skipped.
    void update_remove_objects(QStringList const& keys, bool _notify);

    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { actions.initRequestSignals(receiver, connect); }

Q_SIGNALS:
    void objects_listChanged(database::persistent::ps_objects_map);
    // The entries name these as NOTIFY of their own properties; moc checks an
    // inherited notify signal by calling it without arguments, hence the defaults.
    void patternChanged(QString pattern = QString());
    void validityChanged(QString validity = QString());

protected:
    ps_object_schedule_entry_t(QString const& topic, QObject* parent);
    /// From the six pattern fields and the two validity dates, each trimmed;
    /// actions, when given, are taken as they are.
    ps_object_schedule_entry_t(QStringList const& fields, QString const& from, QString const& to,
                               ps_objects_map const* actions, QObject* parent);
    /// Deep: every action copied, no parent, no receiver.
    ps_object_schedule_entry_t(ps_object_schedule_entry_t const& other);

    /// The fields trimmed and joined by one blank.
    static QString joinFields(QStringList const& fields);
    /// "from to", or the default when both are blank.
    static QString makeValidity(QString const& from, QString const& to);

    /// The shared half of update(): null is refused; otherwise the actions are
    /// merged key by key and pattern and validity taken. False for null.
    bool mergeFrom(ps_object_schedule_entry_t const* other);
    /// Same keys and the same action objects.
    bool sameActionObjects(ps_object_schedule_entry_t const& other) const;
    /// Same keys and actions with equal content.
    bool sameActionContent(ps_object_schedule_entry_t const* other) const;
    /// Gives every action its topic under this entry.
    void topicActions() { actions.giveTopics(actions.get()); }

    /// The payload of a whole-entry request: the entry's JSON, with the given
    /// actions in place of its own when there are any.
    QJsonObject requestPayload(ps_objects_map const* map) const;
    /// The request packet on this entry's topic, or on its field key when given.
    QJsonObject requestPacket(QString const& key, QJsonValue const& payload) const;
    /// Raises the request when valid, otherwise the refusal with that message.
    void requestChecked(QJsonObject const& packet, bool valid, QString const& refusal);

private:
    QString patternField(int index) const;
    QString validityField(int index) const;

    dbs::ps_object_map_t<ps_object_t> actions{this, QStringLiteral("objects_list")};
    QString pattern = QStringLiteral("* * * * * *");
    QString validity = QStringLiteral("* *");
};

} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_SCHEDULERS_PS_OBJECT_SCHEDULE_ENTRY_T_H
