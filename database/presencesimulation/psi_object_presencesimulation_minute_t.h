#ifndef DATABASE_PRESENCESIMULATION_PSI_OBJECT_PRESENCESIMULATION_MINUTE_T_H
#define DATABASE_PRESENCESIMULATION_PSI_OBJECT_PRESENCESIMULATION_MINUTE_T_H

#include <QMap>
#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace presencesimulation {

typedef QMap<QString, QString> map_string;

/**
 * One minute of the recorded week: the value each item took in it, by item
 * id. The leaf of the tree that psi_data_t holds.
 */
class DATABASE_EXPORT psi_object_presencesimulation_minute_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(database::presencesimulation::map_string actions READ getActions WRITE setActions NOTIFY actionsChanged)

public:
    Q_INVOKABLE explicit psi_object_presencesimulation_minute_t(QObject* parent = nullptr);
    /// A copy has no parent.
    psi_object_presencesimulation_minute_t(psi_object_presencesimulation_minute_t const& other);

    map_string getActions() const { return actions; }
    void setActions(map_string const& value);

    void add(QString const& item, QString const& value);
    /// How many entries went: 0 for an item that isn't there.
    int remove(QString const& item);
    void clear();

    void retopic(QString const& _topic) { setTopic(_topic); }

    bool operator==(psi_object_presencesimulation_minute_t const& other) const { return actions == other.actions; }

Q_SIGNALS:
    void actionsChanged(database::presencesimulation::map_string);

private:
    map_string actions;
};

typedef QMap<QString, psi_object_presencesimulation_minute_t*> presencesimulation_minute_map;

} // namespace presencesimulation
} // namespace database

#endif // DATABASE_PRESENCESIMULATION_PSI_OBJECT_PRESENCESIMULATION_MINUTE_T_H
