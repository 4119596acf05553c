#ifndef DATABASE_DEFAULT_PERSISTENT_PS_DEFAULT_T_H
#define DATABASE_DEFAULT_PERSISTENT_PS_DEFAULT_T_H

#include <QJsonObject>
#include <QObject>
#include <QPointer>
#include <QString>

#include "database/definition/type_brand_t.h"
#include "database/persistent/define/ps_knx_mode_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {

class ps_data_t;
namespace dbs {
class ps_versions_t;
}
namespace objects {
namespace drivers {
class ps_drivers_knx_t;
class ps_drivers_baos_t;
}
}

/**
 * The process-wide factory of the brand's persistent content: the factory
 * document, the version record stamped on every stored document, the KNX
 * access mode of the brand, and the fitting of received documents to the brand.
 *
 * Created once by the façade, before the persistent engine, and never freed.
 */
class DATABASE_EXPORT ps_default_t : public QObject
{
    Q_OBJECT
public:
    /// The first call creates the instance; later calls change nothing.
    static ps_default_t* createInstance(::database::definition::type_brand_t const& brand, QString const& version);
    /// Null before createInstance.
    static ps_default_t* getInstance();

    ::database::definition::type_brand_t getBrand() const;
    void setBrand(::database::definition::type_brand_t const& brand);

    void setVsersions(QString const& general, QString const& server, QString const& database,
                      QString const& comunication);
    dbs::ps_versions_t* getVersions() const;

    void setLast_knx_address(QString const& address);

    /// The brand's default mode; the mode set by setKnx_mode doesn't count here.
    definition::ps_knx_mode_t getDefaultKnxMode() const;
    /// The mode held now.
    definition::ps_knx_mode_t getSettedtKnxMode() const;
    void setKnx_mode(definition::ps_knx_mode_t mode);

    QString getAdminPin(::database::definition::type_brand_t const& brand) const;

    void resetData();
    void generateData();
    /// Rebuilt at every call: the root of an earlier call is gone by then.
    QPointer<ps_data_t> getData();
    QJsonObject getJData();

    void checkData(QJsonObject& jdata);
    void checkVersion(QJsonObject& jdata);
    void checkKnxDriver(QJsonObject& jdata, bool knx, bool baos);

    void setDefaultVersions();
    void setDefaultInformation(QString const& image, QString const& company, QString const& address,
                               QString const& phone, QString const& email, QString const& support,
                               QString const& site);
    void setDefaultGeneral(double latitude, double longitude, double timezone);
    void setDefaultUsers(QJsonObject const& json);
    void setDefaultDriversKNX(bool knx, bool baos);

private:
    objects::drivers::ps_drivers_knx_t* createDefaultKnxDriver() const;
    objects::drivers::ps_drivers_baos_t* createDefaultBaosDriver() const;

    explicit ps_default_t(::database::definition::type_brand_t const& brand, QString const& version);

    void log(QString const& message, int level, char const* source) const;

    QString const _name = QStringLiteral("[Default branding] ");
    ::database::definition::type_brand_t brand = ::database::definition::type_brand_t::HALDO;
    QString last_knx_address = QStringLiteral("15.15.255");
    definition::ps_knx_mode_t knx_mode = definition::ps_knx_mode_t::kdrive;
    QPointer<ps_data_t> data;
    QPointer<dbs::ps_versions_t> versions;

    static ps_default_t* ps_default;
};

} // namespace persistent
} // namespace database

#endif // DATABASE_DEFAULT_PERSISTENT_PS_DEFAULT_T_H
