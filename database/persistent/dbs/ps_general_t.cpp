#include "database/persistent/dbs/ps_general_t.h"

#include "database/base/literals.h"
#include "database/persistent/ps_request.h"
#include "platform/logs/classlogs.h"

namespace database {
namespace persistent {
namespace dbs {

namespace {

constexpr double fallbackTimezone = 2.0;

bool validTimezone(double value)
{
    return value >= -12.0 && value <= 14.0;
}

// Latitude bounds, which requestSetPosition and requestSetAstro apply to the
// longitude as well: clients have always been held to them.
bool validCoordinate(double value)
{
    return value >= -90.0 && value <= 90.0;
}

} // namespace

const QString ps_general_t::param_enable_img_upd = literals::enable_img_upd;

ps_general_t::ps_general_t(QObject* parent)
    : topicbase_t(literals::key_general, parent)
{
}

ps_general_t::ps_general_t(ps_general_t const& other)
    : topicbase_t(other)
{
    copyValues(&other);
}

void ps_general_t::setEnableAstro(bool value)
{
    assign(enable_astro, value, [this] { Q_EMIT enable_astroChanged(enable_astro); });
}

void ps_general_t::setIdentify(QString const& value)
{
    assign(identify, value, [this] { Q_EMIT identifyChanged(identify); });
}

void ps_general_t::setDescription(QString const& value)
{
    assign(description, value, [this] { Q_EMIT descriptionChanged(description); });
}

void ps_general_t::setLatitude(double value)
{
    assign(latitude, value, [this] { Q_EMIT latitudeChanged(latitude); });
}

void ps_general_t::setLongitude(double value)
{
    assign(longitude, value, [this] { Q_EMIT longitudeChanged(longitude); });
}

void ps_general_t::setTimezone(double value)
{
    assign(timezone, value, [this] { Q_EMIT timezoneChanged(timezone); });
}

void ps_general_t::setEnableImgUpd(bool value)
{
    assign(enable_img_upd, value, [this] { Q_EMIT enable_img_updChanged(enable_img_upd); });
}

void ps_general_t::requestSetDescription(QString const& value)
{
    requestField(this, QStringLiteral("description"), value);
}

void ps_general_t::requestSetImageUpdate(bool value)
{
    requestField(this, param_enable_img_upd, value);
}

void ps_general_t::requestSetEnableAstro(bool flag)
{
    ps_general_t copy(*this);
    copy.setEnableAstro(flag);
    if (!validTimezone(copy.timezone))
        copy.setTimezone(fallbackTimezone);
    if (!validCoordinate(copy.latitude))
        copy.setLatitude(46.0);
    // Here the longitude has its natural bounds.
    if (copy.longitude < -180.0 || copy.longitude > 180.0)
        copy.setLongitude(11.0);
    requestAt(this, topic, copy.toJson());
}

void ps_general_t::requestSetPosition(bool flag, double _latitude, double _longitude)
{
    requestSetAstro(flag, _latitude, _longitude, timezone);
}

void ps_general_t::requestSetAstro(bool flag, double _latitude, double _longitude, double _timezone)
{
    if (!validCoordinate(_latitude) || !validCoordinate(_longitude)) {
        Q_EMIT onObjectError(QJsonObject{{QStringLiteral("topic"), requestTopic(topic)}},
                             QStringLiteral("No valid coordinate"));
        return;
    }
    ps_general_t copy(*this);
    copy.setEnableAstro(flag);
    copy.setLatitude(_latitude);
    copy.setLongitude(_longitude);
    copy.setTimezone(validTimezone(_timezone) ? _timezone : fallbackTimezone);
    requestAt(this, topic, copy.toJson());
}

void ps_general_t::update_param(QString const& key, QJsonValue const& value, bool _notify)
{
    if (key != param_enable_img_upd || !value.isBool()) {
        CLASSLOGS_LOG(QStringLiteral("Error to set ") + key, ::utility::logs::error, QStringLiteral("update_param"));
        return;
    }
    setEnableImgUpd(value.toBool());
    if (_notify)
        send_update_param(key, value);
}

void ps_general_t::send_update_param(QString const& key, QJsonValue const& value)
{
    Q_EMIT onUpdated(getPacketUpdated(topic + QLatin1Char('/') + key, value));
}

void ps_general_t::update_astro(bool flag, double _latitude, double _longitude, double _timezone, bool _notify)
{
    setEnableAstro(flag);
    setLatitude(_latitude);
    setLongitude(_longitude);
    setTimezone(_timezone);
    if (_notify)
        send_update();
}

void ps_general_t::update(ps_general_t const* other, bool _notify)
{
    updateValues(other, _notify);
}

} // namespace dbs
} // namespace persistent
} // namespace database
