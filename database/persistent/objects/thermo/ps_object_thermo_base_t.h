#ifndef DATABASE_PERSISTENT_OBJECTS_THERMO_PS_OBJECT_THERMO_BASE_T_H
#define DATABASE_PERSISTENT_OBJECTS_THERMO_PS_OBJECT_THERMO_BASE_T_H

#include <QObject>
#include <QString>
#include <QVariantMap>

#include "database/base/topicbase_t.h"
#include "database/definition/type_thermostat_thermo_params_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/**
 * The temperature loop of a thermostat: the items it reads and drives and its
 * protection limits. The control algorithm is chosen by the derived class;
 * this class alone stands for a loop whose algorithm is unknown.
 */
class DATABASE_EXPORT ps_object_thermo_base_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QVariantMap items READ getIds WRITE setIds NOTIFY itemsChanged)
    Q_PROPERTY(QString idactual READ getIdActual WRITE setIdActual NOTIFY idactualChanged)
    Q_PROPERTY(uint bat_threshold READ getBat_threshold WRITE setBat_threshold NOTIFY bat_thresholdChanged STORED false)
    Q_PROPERTY(uint seasontype READ getSeasonType WRITE setSeasonType NOTIFY seasontypeChanged)
    Q_PROPERTY(bool win_enable READ getWinEnable WRITE setWinEnable NOTIFY win_enableChanged)
    Q_PROPERTY(uint antifreezer READ getAntifreezer WRITE setAntifreezer NOTIFY antifreezerChanged)
    Q_PROPERTY(uint antioverheating READ getAntioverheating WRITE setAntioverheating NOTIFY antioverheatingChanged)
    Q_PROPERTY(uint offset_standby READ getOffsetStandby WRITE setOffsetStandby NOTIFY offset_standbyChanged)
    Q_PROPERTY(uint offset_eco READ getOffsetEco WRITE setOffsetEco NOTIFY offset_ecoChanged)
    Q_PROPERTY(uint fantype READ getFantype WRITE setFantype NOTIFY fantypeChanged STORED false)
    Q_PROPERTY(double fanisteresi READ getFanisteresi WRITE setFanisteresi NOTIFY fanisteresiChanged STORED false)
    Q_PROPERTY(double fanthreshold READ getFanthreshold WRITE setFanthreshold NOTIFY fanthresholdChanged STORED false)

public:
    enum THERMO_TYPE { THERMO_UNKNOWN = -1, THERMO_ISTERESI = 0, THERMO_PI = 1, THERMO_PWM = 2 };
    Q_ENUM(THERMO_TYPE)

    enum SEASON_TYPE { HEATING_COOLING = 0, ONLY_HEATING = 1, ONLY_COOLING = 2 };
    Q_ENUM(SEASON_TYPE)

    Q_INVOKABLE explicit ps_object_thermo_base_t(QObject* parent = nullptr);
    ps_object_thermo_base_t(QString const& topic, QObject* parent);
    ps_object_thermo_base_t(ps_object_thermo_base_t const& other);

    /// The algorithm, a THERMO_TYPE value; what everything dispatches on.
    virtual int getType() const;
    int getTypeIndex() const { return getType(); }

    QVariantMap getIds() const { return items; }
    QString getIdActual() const { return idactual; }
    uint getBat_threshold() const { return bat_threshold; }
    uint getSeasonType() const { return seasontype; }
    bool getWinEnable() const { return win_enable; }
    uint getAntifreezer() const { return antifreezer; }
    uint getAntioverheating() const { return antioverheating; }
    uint getOffsetStandby() const { return offset_standby; }
    uint getOffsetEco() const { return offset_eco; }
    uint getFantype() const { return fantype; }
    double getFanisteresi() const { return fanisteresi; }
    double getFanthreshold() const { return fanthreshold; }
    uint getOutputType() const { return outputtype; }

    void setIds(QVariantMap const& value);
    void setIdActual(QString const& value);
    void setBat_threshold(uint value);
    void setSeasonType(uint value);
    void setWinEnable(bool value);
    void setAntifreezer(uint value);
    void setAntioverheating(uint value);
    void setOffsetStandby(uint value);
    void setOffsetEco(uint value);
    void setFantype(uint value);
    void setFanisteresi(double value);
    void setFanthreshold(double value);
    void setOutputType(uint value);

    /// The item id for param, empty when none is set.
    QString getId(::database::definition::type_thermostat_thermo_params_t const& param) const;
    /// Trims value; an empty one removes the reference.
    void setId(::database::definition::type_thermostat_thermo_params_t const& param, QString const& value);
    /// As setId, except that "idactual" goes to its own field as given.
    void update_id(::database::definition::type_thermostat_thermo_params_t const& param, QString const& value,
                   bool _notify);
    /// Drops the reference named key; "idactual" clears its own field too.
    void update_reset_id(QString const& key, bool _notify);
    void update_enable_window(bool value, bool _notify);

    /// Takes the loop's common fields from other; the derived classes add their own.
    void update(ps_object_thermo_base_t const* other, bool _notify);
    /// The common fields that matter to the loop; idactual, offset_standby and
    /// fantype are not among them.
    bool compare(ps_object_thermo_base_t const* other) const;
    /// Same algorithm and the same values for it; two unknown loops are equal
    /// only when they are the same object.
    bool isEqual(ps_object_thermo_base_t const* other) const;
    /// A copy without parent, of the class that handles getType().
    ps_object_thermo_base_t* clone() const;

    void send_update();
    void initRequestSignals(QObject* receiver, bool connect);

Q_SIGNALS:
    void itemsChanged(QVariantMap);
    void idactualChanged(QString);
    void bat_thresholdChanged(uint);
    void seasontypeChanged(uint);
    void win_enableChanged(bool);
    void antifreezerChanged(uint);
    void antioverheatingChanged(uint);
    void offset_standbyChanged(uint);
    void offset_ecoChanged(uint);
    void fantypeChanged(uint);
    void fanisteresiChanged(double);
    void fanthresholdChanged(double);
    void outputtypeChanged(uint);

private:
    QVariantMap items;
    QString idactual;
    uint bat_threshold = 0;
    uint seasontype = HEATING_COOLING;
    bool win_enable = false;
    uint antifreezer = 5;
    uint antioverheating = 45;
    uint offset_standby = 2;
    uint offset_eco = 4;
    uint fantype = 0;
    double fanisteresi = 0.3;
    double fanthreshold = 1.5;
    // Set by the thermostat service; not part of the document.
    uint outputtype = 0;
};

} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_THERMO_PS_OBJECT_THERMO_BASE_T_H
