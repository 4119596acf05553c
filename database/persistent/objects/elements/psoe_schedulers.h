#ifndef DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_SCHEDULERS_H
#define DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_SCHEDULERS_H

#include <QObject>
#include <QString>

#include "database/persistent/objects/elements/psoe_family_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/// The entry to the schedules of the installation.
class DATABASE_EXPORT psoe_schedulers
    : public psoe_family_t<psoe_schedulers, ps_object_element_t::ELEMENT_TYPE_SCHEDULERS>
{
    Q_OBJECT

public:
    /// No class flags yet.
    enum SchedulersFlag {};

    Q_INVOKABLE explicit psoe_schedulers(QObject* parent = nullptr);
    psoe_schedulers(QString const& topic, QObject* parent);
    psoe_schedulers(QString const& id, QString const& name, QString const& description, QVariantMap const& function_map,
                    QVariantMap const& auth, QStringList const& rooms, int flags, QVariantMap const& runoptions,
                    QVariantMap const& lock_ui_map, QObject* parent);
    psoe_schedulers(psoe_schedulers const& other);
};

} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_SCHEDULERS_H
