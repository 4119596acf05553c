#ifndef DATABASE_PERSISTENT_OBJECTS_SCHEDULERS_PS_OBJECT_ASTRO_T_H
#define DATABASE_PERSISTENT_OBJECTS_SCHEDULERS_PS_OBJECT_ASTRO_T_H

#include <QMap>
#include <QObject>
#include <QString>

#include "database/definition/type_sun_t.h"
#include "database/persistent/objects/schedulers/ps_object_schedule_entry_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/// A sun entry of a schedule: its actions fire at sunrise or sunset, shifted
/// by an offset in minutes, on the days the pattern and validity allow.
class DATABASE_EXPORT ps_object_astro_t : public ps_object_schedule_entry_t
{
    Q_OBJECT
    Q_PROPERTY(int offset READ getOffset WRITE setOffset NOTIFY offsetChanged)
    Q_PROPERTY(QString type READ getType WRITE setType NOTIFY typeChanged)
    Q_PROPERTY(QString pattern READ getPattern WRITE setPattern NOTIFY patternChanged)
    Q_PROPERTY(QString validity READ getValidity WRITE setValidity NOTIFY validityChanged)

public:
    /// Offsets beyond a day either way are refused.
    static constexpr int maxOffset = 1439;

    Q_INVOKABLE explicit ps_object_astro_t(QObject* parent = nullptr);
    ps_object_astro_t(QString const& topic, QObject* parent);
    /// Every part trimmed; actions, when given, are taken as they are.
    ps_object_astro_t(::database::definition::type_sun_t const& type, int offset, QString const& minute,
                      QString const& hour, QString const& day, QString const& month, QString const& dayofweek,
                      QString const& year, QString const& from, QString const& to, ps_objects_map const* actions,
                      QObject* parent = nullptr);
    /// As above with minute and hour "*": the sun decides the time of day.
    ps_object_astro_t(::database::definition::type_sun_t const& type, int offset, QString const& day,
                      QString const& month, QString const& dayofweek, QString const& year, QString const& from,
                      QString const& to, ps_objects_map const* actions, QObject* parent = nullptr);
    ps_object_astro_t(ps_object_astro_t const& other);

    int getOffset() const { return offset; }
    QString getType() const { return type; }
    void setOffset(int value);
    void setType(QString const& value);
    void setType(::database::definition::type_sun_t const& value) { setType(value.ToString()); }

    /// A validity date of a sun entry: day "/" month in numbers, or a bare "*".
    static bool checkParamsFromTo(QString const& value);

    void requestSetType(::database::definition::type_sun_t const& value);
    /// Refused with "Offset not allowed" beyond maxOffset either way.
    void requestSetOffset(int value);
    /// Refused with "Validity not allowed" when a date fails checkParamsFromTo.
    void requestSetValidity(QString const& from, QString const& to);
    /// Minute and hour are always "*"; refused with "Value not allowed".
    void requestSetPattern(QString const& day, QString const& month, QString const& dayofweek, QString const& year);
    /// The whole entry with its present actions; see requestSet.
    void requestSetAstro(::database::definition::type_sun_t const& type, int offset, QString const& day,
                         QString const& month, QString const& dayofweek, QString const& year, QString const& from,
                         QString const& to);
    /// The whole entry; without actions the present ones are asked for. The
    /// request goes out twice when valid, and once after "Value not allowed"
    /// when not: the handler decides.
    void requestSet(::database::definition::type_sun_t const& type, int offset, QString const& day,
                    QString const& month, QString const& dayofweek, QString const& year, QString const& from,
                    QString const& to, ps_objects_map const* actions);

    /// Merges other in: actions key by key, then pattern, validity, offset, type.
    void update(ps_object_astro_t const* other, bool _notify);
    /// Same pattern, validity, offset, type and actions of equal content.
    bool compare(ps_object_astro_t const* other) const;
    /// Same action objects, pattern, validity, offset and type.
    bool operator==(ps_object_astro_t const& other) const;

    /// A deep copy with the same topic, its actions under it; the caller owns it.
    ps_object_astro_t* get() const;

Q_SIGNALS:
    void offsetChanged(int);
    void typeChanged(QString);

private:
    static bool offsetAllowed(int value) { return value >= -maxOffset && value <= maxOffset; }

    int offset = 0;
    QString type = ::database::definition::type_sun_t::sunrise.ToString();
};

} // namespace objects

typedef QMap<QString, objects::ps_object_astro_t*> ps_astro_map;

} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_SCHEDULERS_PS_OBJECT_ASTRO_T_H
