#ifndef DATABASE_PERSISTENT_OBJECTS_SCHEDULERS_PS_OBJECT_CRON_T_H
#define DATABASE_PERSISTENT_OBJECTS_SCHEDULERS_PS_OBJECT_CRON_T_H

#include <QMap>
#include <QObject>
#include <QString>

#include "database/persistent/objects/schedulers/ps_object_schedule_entry_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/// A clock entry of a schedule: its actions fire when the pattern matches,
/// within the validity period.
class DATABASE_EXPORT ps_object_cron_t : public ps_object_schedule_entry_t
{
    Q_OBJECT
    Q_PROPERTY(QString pattern READ getPattern WRITE setPattern NOTIFY patternChanged)
    Q_PROPERTY(QString validity READ getValidity WRITE setValidity NOTIFY validityChanged)

public:
    Q_INVOKABLE explicit ps_object_cron_t(QObject* parent = nullptr);
    ps_object_cron_t(QString const& topic, QObject* parent);
    /// Every part trimmed; actions, when given, are taken as they are.
    ps_object_cron_t(QString const& minute, QString const& hour, QString const& day, QString const& month,
                     QString const& dayofweek, QString const& year, QString const& from, QString const& to,
                     ps_objects_map const* actions, QObject* parent = nullptr);
    ps_object_cron_t(ps_object_cron_t const& other);

    /// Asks for a new pattern; refused with "Value not allowed" when a field is.
    void requestSetCron(QString const& minute, QString const& hour, QString const& day, QString const& month,
                        QString const& dayofweek, QString const& year);
    /// Asks for a new validity; refused with "Value not allowed" when a date is.
    void requestSetValidity(QString const& from, QString const& to);
    /// Asks for the whole entry; without actions the present ones are asked for.
    void requestSet(QString const& minute, QString const& hour, QString const& day, QString const& month,
                    QString const& dayofweek, QString const& year, QString const& from, QString const& to,
                    ps_objects_map const* actions);

    /// Merges other in: actions key by key, then pattern and validity.
    void update(ps_object_cron_t const* other, bool _notify);
    /// Same pattern, validity and actions of equal content.
    bool compare(ps_object_cron_t const* other) const;
    /// Same action objects, pattern and validity.
    bool operator==(ps_object_cron_t const& other) const;

    /// A deep copy with the same topic, its actions under it; the caller owns it.
    ps_object_cron_t* get() const;
};

} // namespace objects

typedef QMap<QString, objects::ps_object_cron_t*> ps_cron_map;

} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_SCHEDULERS_PS_OBJECT_CRON_T_H
