#ifndef DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_3STATE_H
#define DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_3STATE_H

#include <QObject>
#include <QString>

#include "database/persistent/objects/elements/psoe_element_type_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/// A switch with three positions, of the kind told by element_type.
class DATABASE_EXPORT psoe_3state : public psoe_element_type_t<psoe_3state, ps_object_element_t::ELEMENT_TYPE_3STATE>
{
    Q_OBJECT
    Q_PROPERTY(int element_type READ getElement_type WRITE setElement_type NOTIFY element_typeChanged)

public:
    Q_INVOKABLE explicit psoe_3state(QObject* parent = nullptr);
    psoe_3state(QString const& topic, QObject* parent);
    psoe_3state(QString const& id, QString const& name, QString const& description, QVariantMap const& function_map,
                QVariantMap const& auth, QStringList const& rooms, int flags, QVariantMap const& runoptions,
                QVariantMap const& lock_ui_map, int element_type, QObject* parent);
    psoe_3state(psoe_3state const& other);

Q_SIGNALS:
    void element_typeChanged(int);
};

} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_3STATE_H
