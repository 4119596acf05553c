#include "database/realtime/dbs/rt_astronomical_t.h"

#include <QDateTime>

#include "database/base/literals.h"

namespace database {
namespace realtime {
namespace dbs {

rt_astronomical_t::rt_astronomical_t(QObject* parent)
    : topicbase_t(literals::key_astronomical, parent)
{
}

rt_astronomical_t::rt_astronomical_t(rt_astronomical_t const& other)
    : topicbase_t(other)
{
    copyValues(&other);
}

void rt_astronomical_t::update(QString const& _sunset, QString const& _sunrice, QString const& _daylen,
                               QString const& _azimuth, QString const& _altitude, QString const& _declination,
                               QString const& _timezone, QString const& _updated, bool _notify)
{
    // Through one record, so that each field raises its own change signal.
    rt_astronomical_t record;
    record.sunset = _sunset;
    record.sunrice = _sunrice;
    record.daylen = _daylen;
    record.azimuth = _azimuth;
    record.altitude = _altitude;
    record.declination = _declination;
    record.timezone = _timezone;
    record.updated = _updated;
    updateValues(&record, _notify);
}

void rt_astronomical_t::update_reset(bool _notify)
{
    rt_astronomical_t record;
    record.updated = QDateTime::currentDateTime().toString(Qt::ISODate);
    updateValues(&record, _notify);
}

} // namespace dbs
} // namespace realtime
} // namespace database
