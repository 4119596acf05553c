#ifndef DATABASE_REALTIME_OBJECTS_RT_OBJECT_THERMOSTAT_T_H
#define DATABASE_REALTIME_OBJECTS_RT_OBJECT_THERMOSTAT_T_H

#include <QMap>
#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"
#include "database/realtime/objects/rt_object_hydro_t.h"
#include "database/realtime/objects/rt_object_thermo_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace objects {

/**
 * The live state of one thermostat: window contact, dew point and its
 * protection, and the figures of its room control ("thermo") and hydronic
 * control ("hydro"). It owns exactly one part of each, never null, and gives
 * them its topic followed by "/thermo" and "/hydro". Only the window contact
 * and the room control reach the JSON.
 */
class DATABASE_EXPORT rt_object_thermostat_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(bool win_open READ getWin_open WRITE setWin_open NOTIFY win_openChanged)
    Q_PROPERTY(float dew_point READ getDew_point WRITE setDew_point NOTIFY dew_point_Changed STORED false)
    Q_PROPERTY(bool prot_dew_poin READ getProt_dew_poin WRITE setProt_dew_poin NOTIFY prot_dew_poinChanged
                   STORED false)
    Q_PROPERTY(database::realtime::objects::rt_object_thermo_t* thermo READ getThermo WRITE setThermo
                   NOTIFY thermoChanged)
    Q_PROPERTY(database::realtime::objects::rt_object_hydro_t* hydro READ getHydro WRITE setHydro
                   NOTIFY hydroChanged STORED false)

public:
    /// The words that follow the thermostat's topic in its parts' topics.
    static QString const key_thermo;
    static QString const key_hydro;

    Q_INVOKABLE explicit rt_object_thermostat_t(QObject* parent = nullptr);
    /// Builds both parts.
    rt_object_thermostat_t(QString const& topic, QObject* parent);
    /// Adopts both parts; a null one is replaced by a new part.
    rt_object_thermostat_t(bool win_open, float dew_point, bool prot_dew_poin, rt_object_thermo_t* thermo,
                           rt_object_hydro_t* hydro, QObject* parent);
    /// Deep: takes the topic and copies both parts; no parent.
    rt_object_thermostat_t(rt_object_thermostat_t const& other);
    ~rt_object_thermostat_t() override;

    bool getWin_open() const { return win_open; }
    float getDew_point() const { return dew_point; }
    bool getProt_dew_poin() const { return prot_dew_poin; }
    /// Never null.
    rt_object_thermo_t* getThermo() const { return thermo; }
    /// Never null.
    rt_object_hydro_t* getHydro() const { return hydro; }

    void setWin_open(bool value);
    void setDew_point(float value);
    void setProt_dew_poin(bool value);
    /// Adopts value and deletes the part it replaces; null keeps the present part.
    void setThermo(rt_object_thermo_t* value);
    /// Adopts value and deletes the part it replaces; null keeps the present part.
    void setHydro(rt_object_hydro_t* value);

    /// Takes the fields and both parts' contents from other; null clears all
    /// of them. Publishes once, the whole thermostat.
    void update(rt_object_thermostat_t const* other, bool _notify);
    void update_windows_open(bool const& value, bool _notify);
    void update_protection_dew_point(bool const& value, bool _notify);
    void update_dew_point(float value, bool _notify);
    /// The part takes value's content (null clears it); with _notify the
    /// whole thermostat is published.
    void update_thermo(rt_object_thermo_t const* value, bool _notify);
    void update_hydro(rt_object_hydro_t const* value, bool _notify);

    void send_update() { publishSelf(); }
    /// Gives the parts their topics, then wires the thermostat and both parts.
    void initRequestSignals(QObject* receiver, bool connect);

    /// All three fields and both parts' contents; the topics don't count.
    bool operator==(rt_object_thermostat_t const& other) const;

Q_SIGNALS:
    void win_openChanged(bool);
    void dew_point_Changed(float);
    void prot_dew_poinChanged(bool);
    void thermoChanged(database::realtime::objects::rt_object_thermo_t*);
    void hydroChanged(database::realtime::objects::rt_object_hydro_t*);

private:
    void giveTopicsToParts();

    bool win_open = false;
    float dew_point = 0;
    bool prot_dew_poin = false;
    // Owned without QObject parent, deleted by the destructor.
    rt_object_thermo_t* thermo = nullptr;
    rt_object_hydro_t* hydro = nullptr;
};

} // namespace objects

typedef QMap<QString, objects::rt_object_thermostat_t*> rt_thermostat_map;

} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_OBJECTS_RT_OBJECT_THERMOSTAT_T_H
