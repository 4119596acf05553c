#ifndef DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_PRES_SIM_H
#define DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_PRES_SIM_H

#include <QObject>
#include <QString>

#include "database/persistent/objects/elements/psoe_family_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/// The control of the presence simulation: stop, play, record.
class DATABASE_EXPORT psoe_pres_sim
    : public psoe_family_t<psoe_pres_sim, ps_object_element_t::ELEMENT_TYPE_PRESENCE_SIMULATION>
{
    Q_OBJECT

public:
    enum PresenceSimulationStatus {
        PRESENCE_SIMULATION_STOPPED = 0,
        PRESENCE_SIMULATION_PLAYING = 1,
        PRESENCE_SIMULATION_RECORDING = 2
    };
    Q_ENUM(PresenceSimulationStatus)

    Q_INVOKABLE explicit psoe_pres_sim(QObject* parent = nullptr);
    psoe_pres_sim(QString const& topic, QObject* parent);
    psoe_pres_sim(QString const& id, QString const& name, QString const& description, QVariantMap const& function_map,
                  QVariantMap const& auth, QStringList const& rooms, int flags, QVariantMap const& runoptions,
                  QVariantMap const& lock_ui_map, QObject* parent);
    psoe_pres_sim(psoe_pres_sim const& other);
};

} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_PRES_SIM_H
