#ifndef DATABASE_REALTIME_DBS_RT_ASTRONOMICAL_T_H
#define DATABASE_REALTIME_DBS_RT_ASTRONOMICAL_T_H

#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace dbs {

/**
 * The sun of today at the installation's place, as texts that the process
 * computing them writes: the sun entries of the schedules fire by these.
 */
class DATABASE_EXPORT rt_astronomical_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QString sunset MEMBER sunset READ getSunset NOTIFY sunsetChanged)
    Q_PROPERTY(QString sunrice MEMBER sunrice READ getSunrice NOTIFY sunriceChanged)
    Q_PROPERTY(QString daylen MEMBER daylen READ getDaylen NOTIFY daylenChanged)
    Q_PROPERTY(QString azimuth MEMBER azimuth READ getAzimuth NOTIFY azimuthChanged)
    Q_PROPERTY(QString altitude MEMBER altitude READ getAltitude NOTIFY altitudeChanged)
    Q_PROPERTY(QString declination MEMBER declination READ getDeclination NOTIFY declinationChanged)
    Q_PROPERTY(QString timezone MEMBER timezone READ getTimezone NOTIFY timezoneChanged)
    Q_PROPERTY(QString updated MEMBER updated READ getUpdated NOTIFY updatedChanged)

public:
    Q_INVOKABLE explicit rt_astronomical_t(QObject* parent = nullptr);
    rt_astronomical_t(rt_astronomical_t const& other);

    QString getSunset() const { return sunset; }
    QString getSunrice() const { return sunrice; }
    QString getDaylen() const { return daylen; }
    QString getAzimuth() const { return azimuth; }
    QString getAltitude() const { return altitude; }
    QString getDeclination() const { return declination; }
    QString getTimezone() const { return timezone; }
    QString getUpdated() const { return updated; }

    /// Takes all eight fields of other; null is refused with "Not permitted nullptr".
    void update(rt_astronomical_t const* other, bool _notify) { updateValues(other, _notify); }
    void update(QString const& _sunset, QString const& _sunrice, QString const& _daylen, QString const& _azimuth,
                QString const& _altitude, QString const& _declination, QString const& _timezone,
                QString const& _updated, bool _notify);
    /// Forgets the sun times and stamps updated with the present moment.
    void update_reset(bool _notify);

    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }

    /// Same values; the topic doesn't count.
    bool operator==(rt_astronomical_t const& other) const { return sameValues(&other); }

Q_SIGNALS:
    void sunsetChanged(QString);
    void sunriceChanged(QString);
    void daylenChanged(QString);
    void azimuthChanged(QString);
    void altitudeChanged(QString);
    void declinationChanged(QString);
    void timezoneChanged(QString);
    void updatedChanged(QString);

private:
    QString sunset;
    QString sunrice;
    QString daylen;
    QString azimuth;
    QString altitude;
    QString declination;
    QString timezone;
    QString updated;
};

} // namespace dbs
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_RT_ASTRONOMICAL_T_H
