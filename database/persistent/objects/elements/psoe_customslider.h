#ifndef DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_CUSTOMSLIDER_H
#define DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_CUSTOMSLIDER_H

#include <QObject>
#include <QString>

#include "database/persistent/objects/elements/psoe_family_t.h"
#include "database/persistent/ps_request.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/// A slider over a value with its own scale, steps and labels.
class DATABASE_EXPORT psoe_customslider
    : public psoe_family_t<psoe_customslider, ps_object_element_t::ELEMENT_TYPE_CUSTOM_SLIDER>
{
    Q_OBJECT
    Q_PROPERTY(QString measure_unit READ getMeasure_unit WRITE setMeasure_unit NOTIFY measure_unitChanged)
    Q_PROPERTY(QString label_min READ getLabel_min WRITE setLabel_min NOTIFY label_minChanged)
    Q_PROPERTY(QString label_max READ getLabel_max WRITE setLabel_max NOTIFY label_maxChanged)
    Q_PROPERTY(double slider_maxvalue READ getSlider_maxvalue WRITE setSlider_maxvalue NOTIFY slider_maxvalueChanged)
    Q_PROPERTY(double slider_minvalue READ getSlider_minvalue WRITE setSlider_minvalue NOTIFY slider_minvalueChanged)
    Q_PROPERTY(double slider_tickstep READ getSlider_tickstep WRITE setSlider_tickstep NOTIFY slider_tickstepChanged)
    Q_PROPERTY(
        double slider_valuestep READ getSlider_valuestep WRITE setSlider_valuestep NOTIFY slider_valuestepChanged)
    Q_PROPERTY(int icon_id READ getIcon_id WRITE setIcon_id NOTIFY icon_idChanged)
    Q_PROPERTY(int decimals READ getDecimals WRITE setDecimals NOTIFY decimalsChanged)
    Q_PROPERTY(int controls READ getControls WRITE setControls NOTIFY controlsChanged)

public:
    enum CustomSliderControls {
        CUSTOM_SLIDER_CONTROLS_ALL = 0,
        CUSTOM_SLIDER_CONTROLS_SLIDERONLY = 1,
        CUSTOM_SLIDER_CONTROLS_VALUEONLY = 2
    };
    Q_ENUM(CustomSliderControls)

    Q_INVOKABLE explicit psoe_customslider(QObject* parent = nullptr);
    psoe_customslider(QString const& topic, QObject* parent);
    psoe_customslider(QString const& id, QString const& name, QString const& description,
                      QVariantMap const& function_map, QVariantMap const& auth, QStringList const& rooms, int flags,
                      QVariantMap const& runoptions, QVariantMap const& lock_ui_map, QString const& measure_unit,
                      QString const& label_min, QString const& label_max, double slider_maxvalue,
                      double slider_minvalue, double slider_tickstep, double slider_valuestep, int icon_id,
                      int decimals, int controls, QObject* parent);
    psoe_customslider(psoe_customslider const& other);

    QString getMeasure_unit() const { return measure_unit; }
    QString getLabel_min() const { return label_min; }
    QString getLabel_max() const { return label_max; }
    double getSlider_maxvalue() const { return slider_maxvalue; }
    double getSlider_minvalue() const { return slider_minvalue; }
    double getSlider_tickstep() const { return slider_tickstep; }
    double getSlider_valuestep() const { return slider_valuestep; }
    int getIcon_id() const { return icon_id; }
    int getDecimals() const { return decimals; }
    int getControls() const { return controls; }
    void setMeasure_unit(QString const& value)
    {
        assign(measure_unit, value, [this] { Q_EMIT measure_unitChanged(measure_unit); });
    }
    void setLabel_min(QString const& value)
    {
        assign(label_min, value, [this] { Q_EMIT label_minChanged(label_min); });
    }
    void setLabel_max(QString const& value)
    {
        assign(label_max, value, [this] { Q_EMIT label_maxChanged(label_max); });
    }
    void setSlider_maxvalue(double value)
    {
        assign(slider_maxvalue, value, [this] { Q_EMIT slider_maxvalueChanged(slider_maxvalue); });
    }
    void setSlider_minvalue(double value)
    {
        assign(slider_minvalue, value, [this] { Q_EMIT slider_minvalueChanged(slider_minvalue); });
    }
    void setSlider_tickstep(double value)
    {
        assign(slider_tickstep, value, [this] { Q_EMIT slider_tickstepChanged(slider_tickstep); });
    }
    void setSlider_valuestep(double value)
    {
        assign(slider_valuestep, value, [this] { Q_EMIT slider_valuestepChanged(slider_valuestep); });
    }
    void setIcon_id(int value)
    {
        assign(icon_id, value, [this] { Q_EMIT icon_idChanged(icon_id); });
    }
    void setDecimals(int value)
    {
        assign(decimals, value, [this] { Q_EMIT decimalsChanged(decimals); });
    }
    void setControls(int value)
    {
        assign(controls, value, [this] { Q_EMIT controlsChanged(controls); });
    }

    void requestSetMeasureUnit(QString const& value) { requestField(this, QStringLiteral("measure_unit"), value); }
    void requestSetLabelMin(QString const& value) { requestField(this, QStringLiteral("label_min"), value); }
    void requestSetLabelMax(QString const& value) { requestField(this, QStringLiteral("label_max"), value); }
    void requestSetMaxValue(double value) { requestField(this, QStringLiteral("slider_maxvalue"), value); }
    void requestSetMinValue(double value) { requestField(this, QStringLiteral("slider_minvalue"), value); }
    void requestSetSliderTickStep(double value) { requestField(this, QStringLiteral("slider_tickstep"), value); }
    void requestSetSliderValueStep(double value) { requestField(this, QStringLiteral("slider_valuestep"), value); }
    void requestSetIconId(int value) { requestField(this, QStringLiteral("icon_id"), value); }
    void requestSetDecimals(int value) { requestField(this, QStringLiteral("decimals"), value); }
    void requestSetControls(int value) { requestField(this, QStringLiteral("controls"), value); }

Q_SIGNALS:
    void measure_unitChanged(QString);
    void label_minChanged(QString);
    void label_maxChanged(QString);
    void slider_maxvalueChanged(double);
    void slider_minvalueChanged(double);
    void slider_tickstepChanged(double);
    void slider_valuestepChanged(double);
    void icon_idChanged(int);
    void decimalsChanged(int);
    void controlsChanged(int);

private:
    QString measure_unit;
    QString label_min;
    QString label_max;
    double slider_maxvalue = 0;
    double slider_minvalue = 0;
    double slider_tickstep = 0;
    double slider_valuestep = 0;
    int icon_id = 0;
    int decimals = 0;
    int controls = 0;
};

} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_CUSTOMSLIDER_H
