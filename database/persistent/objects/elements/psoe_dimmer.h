#ifndef DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_DIMMER_H
#define DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_DIMMER_H

#include <QObject>
#include <QString>

#include "database/persistent/objects/elements/psoe_family_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/// A dimmable light: its functions are all there is to it.
class DATABASE_EXPORT psoe_dimmer : public psoe_family_t<psoe_dimmer, ps_object_element_t::ELEMENT_TYPE_DIMMER>
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit psoe_dimmer(QObject* parent = nullptr);
    psoe_dimmer(QString const& topic, QObject* parent);
    psoe_dimmer(QString const& id, QString const& name, QString const& description, QVariantMap const& function_map,
                QVariantMap const& auth, QStringList const& rooms, int flags, QVariantMap const& runoptions,
                QVariantMap const& lock_ui_map, QObject* parent);
    psoe_dimmer(psoe_dimmer const& other);
};

} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_DIMMER_H
