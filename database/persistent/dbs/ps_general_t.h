#ifndef DATABASE_PERSISTENT_DBS_PS_GENERAL_T_H
#define DATABASE_PERSISTENT_DBS_PS_GENERAL_T_H

#include <QJsonValue>
#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace dbs {

/**
 * General data of the installation: its identification, and the position and
 * time zone from which the sun's times are calculated.
 */
class DATABASE_EXPORT ps_general_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(bool enable_astro READ getEnableAstro WRITE setEnableAstro NOTIFY enable_astroChanged)
    Q_PROPERTY(QString identify READ getIdentify WRITE setIdentify NOTIFY identifyChanged)
    Q_PROPERTY(QString description READ getDescription WRITE setDescription NOTIFY descriptionChanged)
    Q_PROPERTY(double latitude READ getLatitude WRITE setLatitude NOTIFY latitudeChanged)
    Q_PROPERTY(double longitude READ getLongitude WRITE setLongitude NOTIFY longitudeChanged)
    Q_PROPERTY(double timezone READ getTimezone WRITE setTimezone NOTIFY timezoneChanged)
    Q_PROPERTY(bool enable_img_upd READ getEnableImgUpd WRITE setEnableImgUpd NOTIFY enable_img_updChanged)

public:
    /// The one parameter that can be set alone, by its JSON key.
    static const QString param_enable_img_upd;

    Q_INVOKABLE explicit ps_general_t(QObject* parent = nullptr);
    ps_general_t(ps_general_t const& other);

    bool getEnableAstro() const { return enable_astro; }
    QString getIdentify() const { return identify; }
    QString getDescription() const { return description; }
    double getLatitude() const { return latitude; }
    double getLongitude() const { return longitude; }
    double getTimezone() const { return timezone; }
    bool getEnableImgUpd() const { return enable_img_upd; }

    void setEnableAstro(bool value);
    void setIdentify(QString const& value);
    void setDescription(QString const& value);
    void setLatitude(double value);
    void setLongitude(double value);
    void setTimezone(double value);
    void setEnableImgUpd(bool value);

    void requestSetDescription(QString const& value);
    void requestSetImageUpdate(bool value);
    /// Never refused: values out of bounds go out as the fallbacks.
    void requestSetEnableAstro(bool flag);
    /// Keeps the section's time zone; refused with "No valid coordinate".
    void requestSetPosition(bool flag, double _latitude, double _longitude);
    /// Refused with "No valid coordinate"; a time zone out of bounds goes out as 2.0.
    void requestSetAstro(bool flag, double _latitude, double _longitude, double _timezone);

    /// Sets one parameter by its JSON key; only param_enable_img_upd with a bool is taken.
    void update_param(QString const& key, QJsonValue const& value, bool _notify);
    void send_update_param(QString const& key, QJsonValue const& value);
    void update_astro(bool flag, double _latitude, double _longitude, double _timezone, bool _notify);
    void update(ps_general_t const* other, bool _notify);
    /// Same values; the topic doesn't count.
    bool compare(ps_general_t const* other) const { return sameValues(other); }
    bool operator==(ps_general_t const& other) const { return sameValues(&other); }

    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }

Q_SIGNALS:
    void enable_astroChanged(bool);
    void identifyChanged(QString);
    void descriptionChanged(QString);
    void latitudeChanged(double);
    void longitudeChanged(double);
    void timezoneChanged(double);
    void enable_img_updChanged(bool);

private:
    bool enable_astro = false;
    QString identify;
    QString description;
    double latitude = 46.4556;
    double longitude = 11.2628;
    double timezone = 2.0;
    bool enable_img_upd = true;
};

} // namespace dbs
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_PS_GENERAL_T_H
