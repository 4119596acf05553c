#ifndef DATABASE_PERSISTENT_OBJECTS_THERMO_PS_OBJECT_HYDRO_BASE_T_H
#define DATABASE_PERSISTENT_OBJECTS_THERMO_PS_OBJECT_HYDRO_BASE_T_H

#include <QObject>
#include <QString>
#include <QVariantMap>

#include "database/base/topicbase_t.h"
#include "database/definition/type_thermostat_hydro_params_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/// The humidity loop of a thermostat: the items it reads and drives and its
/// switching margins.
class DATABASE_EXPORT ps_object_hydro_base_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QVariantMap items READ getIds WRITE setIds NOTIFY itemsChanged)
    Q_PROPERTY(QString idactual READ getIdActual WRITE setIdActual NOTIFY idactualChanged)
    Q_PROPERTY(bool win_enable READ getWinEnable WRITE setWinEnable NOTIFY win_enableChanged)
    Q_PROPERTY(uint isteresi READ getIsteresi WRITE setIsteresi NOTIFY isteresiChanged)
    Q_PROPERTY(uint fantype READ getFantype WRITE setFantype NOTIFY fantypeChanged)
    Q_PROPERTY(uint fanisteresi READ getFanisteresi WRITE setFanisteresi NOTIFY fanisteresiChanged)
    Q_PROPERTY(uint fanthreshold READ getFanthreshold WRITE setFanthreshold NOTIFY fanthresholdChanged)

public:
    Q_INVOKABLE explicit ps_object_hydro_base_t(QObject* parent = nullptr);
    ps_object_hydro_base_t(QString const& topic, QObject* parent);
    ps_object_hydro_base_t(ps_object_hydro_base_t const& other);

    QVariantMap getIds() const { return items; }
    QString getIdActual() const { return idactual; }
    bool getWinEnable() const { return win_enable; }
    uint getIsteresi() const { return isteresi; }
    uint getFantype() const { return fantype; }
    uint getFanisteresi() const { return fanisteresi; }
    uint getFanthreshold() const { return fanthreshold; }

    void setIds(QVariantMap const& value);
    void setIdActual(QString const& value);
    void setWinEnable(bool value);
    void setIsteresi(uint value);
    void setFantype(uint value);
    void setFanisteresi(uint value);
    void setFanthreshold(uint value);

    /// The item id for param, empty when none is set.
    QString getId(::database::definition::type_thermostat_hydro_params_t const& param) const;
    /// Trims value; an empty one removes the reference.
    void setId(::database::definition::type_thermostat_hydro_params_t const& param, QString const& value);

    /// Takes all seven fields; the topic stays.
    void update(ps_object_hydro_base_t const* other, bool _notify);
    /// All seven fields equal; the topic doesn't count.
    bool compare(ps_object_hydro_base_t const* other) const;
    /// compare, with null never equal.
    bool isEqual(ps_object_hydro_base_t const* other) const;

    void send_update();
    void initRequestSignals(QObject* receiver, bool connect);

Q_SIGNALS:
    void itemsChanged(QVariantMap);
    void idactualChanged(QString);
    void win_enableChanged(bool);
    void isteresiChanged(uint);
    void fantypeChanged(uint);
    void fanisteresiChanged(uint);
    void fanthresholdChanged(uint);

private:
    QVariantMap items;
    QString idactual;
    bool win_enable = false;
    uint isteresi = 5;
    uint fantype = 0;
    uint fanisteresi = 5;
    uint fanthreshold = 3;
};

} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_THERMO_PS_OBJECT_HYDRO_BASE_T_H
