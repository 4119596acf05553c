#ifndef DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_RAFFSTORE_H
#define DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_RAFFSTORE_H

#include <QObject>
#include <QString>

#include "database/persistent/objects/elements/psoe_element_type_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/// A venetian blind: a position and the angle of its lamellae.
class DATABASE_EXPORT psoe_raffstore
    : public psoe_element_type_t<psoe_raffstore, ps_object_element_t::ELEMENT_TYPE_RAFFSTORE>
{
    Q_OBJECT
    Q_PROPERTY(int element_type READ getElement_type WRITE setElement_type NOTIFY element_typeChanged)

public:
    enum RaffstoreFlag {
        RAFFSTORE_FLAG_ENABLE_POS_LAMELLAE = 0x80000000,
        RAFFSTORE_FLAG_ENABLE_POS = 0x40000000,
        RAFFSTORE_FLAG_ENABLE_STEP_LAMELLAE = 0x20000000
    };
    Q_ENUM(RaffstoreFlag)

    Q_INVOKABLE explicit psoe_raffstore(QObject* parent = nullptr);
    psoe_raffstore(QString const& topic, QObject* parent);
    psoe_raffstore(QString const& id, QString const& name, QString const& description, QVariantMap const& function_map,
                   QVariantMap const& auth, QStringList const& rooms, int flags, QVariantMap const& runoptions,
                   QVariantMap const& lock_ui_map, int element_type, QObject* parent);
    psoe_raffstore(psoe_raffstore const& other);

Q_SIGNALS:
    void element_typeChanged(int);
};

} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_RAFFSTORE_H
