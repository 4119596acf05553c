#ifndef DATABASE_DEFAULT_REALTIME_RT_DEFAULT_T_H
#define DATABASE_DEFAULT_REALTIME_RT_DEFAULT_T_H

#include <QJsonObject>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

#include "database/definition/service_t.h"
#include "database/definition/type_brand_t.h"
#include "database/persistent/define/ps_knx_mode_t.h"
#include "platform/logs/classlogs.h"

#include "database/database_export.h"

namespace database {
namespace realtime {

class rt_data_t;

/**
 * The process-wide factory of the default realtime tree. Its only
 * brand-dependent content is the list of KNX access modes the installation
 * may offer, which depends on the role of the process and on KNX Secure.
 *
 * Created once by the façade and never freed; the reset command takes its
 * document.
 */
class DATABASE_EXPORT rt_default_t : public QObject
{
    Q_OBJECT
public:
    using ps_knx_mode_t = persistent::definition::ps_knx_mode_t;

    /// The first call creates the instance; later calls change nothing.
    static rt_default_t* createInstance(::database::definition::type_brand_t const& brand);
    /// Null before createInstance.
    static rt_default_t* getInstance();

    ::database::definition::type_brand_t getBrand() const { return brand; }
    void setBrand(::database::definition::type_brand_t const& _brand) { brand = _brand; }
    bool getKnx_secure_enable() const { return knx_secure_enable; }
    void set_knx_secure_enable(bool enable) { knx_secure_enable = enable; }

    /// The modes a process of this role may offer; remembers secure, which the
    /// one-argument form reads back.
    QList<ps_knx_mode_t> getKnxSupportedMode(::database::definition::service_t const& service, bool secure);
    QList<ps_knx_mode_t> getKnxSupportedMode(::database::definition::service_t const& service);
    QStringList getKnxSupportedModeStringList(::database::definition::service_t const& service);

    void resetData();
    void generateData(::database::definition::service_t const& service);
    /// Rebuilt at every call.
    QPointer<rt_data_t> getData(::database::definition::service_t const& service);
    QJsonObject getJData(::database::definition::service_t const& service);

private:
    explicit rt_default_t(::database::definition::type_brand_t const& brand);
    void log(QString const& message, ::utility::logs::LogLevel level, char const* source) const;

    QString name = QStringLiteral("[Default branding] ");
    ::database::definition::type_brand_t brand;
    QList<ps_knx_mode_t> supported;
    bool knx_secure_enable = false;
    QPointer<rt_data_t> root;

    static rt_default_t* instance;
};

} // namespace realtime
} // namespace database

#endif // DATABASE_DEFAULT_REALTIME_RT_DEFAULT_T_H
