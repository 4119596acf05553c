#ifndef DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_SCENARIO_H
#define DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_SCENARIO_H

#include <QObject>
#include <QString>

#include "database/persistent/objects/elements/psoe_family_t.h"
#include "database/persistent/ps_request.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/**
 * The button of a scenario. Unless SCENARIO_FLAG_KNX_SCENARIO is set, it owns the
 * scenario named by scenario_id, which the request handler keeps in step with it.
 */
class DATABASE_EXPORT psoe_scenario : public psoe_family_t<psoe_scenario, ps_object_element_t::ELEMENT_TYPE_SCENARIO>
{
    Q_OBJECT
    Q_PROPERTY(QString scenario_id READ getScenario_id WRITE setScenario_id NOTIFY scenario_idChanged)
    Q_PROPERTY(QString knx_nr READ getKnx_nr WRITE setKnx_nr NOTIFY knx_nrChanged)

public:
    enum ScenarioFlag {
        SCENARIO_FLAG_KNX_SCENARIO = 0x80000000,
        SCENARIO_FLAG_LEARN_ENABLED = 0x40000000,
        SCENARIO_FLAG_STOPPABLE = 0x20000000,
        SCENARIO_FLAG_SMARTBUTTON_ENABLED = 0x10000000
    };
    Q_ENUM(ScenarioFlag)

    enum ScenarioSmartbuttonStatus { SCENARIO_SMARTBUTTON_STATUS_STOP = 0, SCENARIO_SMARTBUTTON_STATUS_RECORD = 1 };
    Q_ENUM(ScenarioSmartbuttonStatus)

    Q_INVOKABLE explicit psoe_scenario(QObject* parent = nullptr);
    psoe_scenario(QString const& topic, QObject* parent);
    psoe_scenario(QString const& id, QString const& name, QString const& description, QVariantMap const& function_map,
                  QVariantMap const& auth, QStringList const& rooms, int flags, QVariantMap const& runoptions,
                  QVariantMap const& lock_ui_map, QString const& scenario_id, QString const& knx_nr, QObject* parent);
    psoe_scenario(psoe_scenario const& other);

    QString getScenario_id() const { return scenario_id; }
    QString getKnx_nr() const { return knx_nr; }
    void setScenario_id(QString const& value)
    {
        assign(scenario_id, value, [this] { Q_EMIT scenario_idChanged(scenario_id); });
    }
    void setKnx_nr(QString const& value)
    {
        assign(knx_nr, value, [this] { Q_EMIT knx_nrChanged(knx_nr); });
    }

    void requestSetScenario_id(QString const& value) { requestField(this, QStringLiteral("scenario_id"), value); }
    void requestSetKnx_nr(QString const& value) { requestField(this, QStringLiteral("knx_nr"), value); }

    void update_scenario_id(QString const& value, bool _notify);

Q_SIGNALS:
    void scenario_idChanged(QString);
    void knx_nrChanged(QString);

private:
    QString scenario_id;
    QString knx_nr;
};

} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_SCENARIO_H
