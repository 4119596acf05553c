#ifndef DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_SHUTTERPERCENT_H
#define DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_SHUTTERPERCENT_H

#include <QObject>
#include <QString>

#include "database/persistent/objects/elements/psoe_element_type_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/// A shutter driven to a position in percent.
class DATABASE_EXPORT psoe_shutterpercent
    : public psoe_element_type_t<psoe_shutterpercent, ps_object_element_t::ELEMENT_TYPE_SHUTTER_PERCENT>
{
    Q_OBJECT
    Q_PROPERTY(int element_type READ getElement_type WRITE setElement_type NOTIFY element_typeChanged)

public:
    Q_INVOKABLE explicit psoe_shutterpercent(QObject* parent = nullptr);
    psoe_shutterpercent(QString const& topic, QObject* parent);
    psoe_shutterpercent(QString const& id, QString const& name, QString const& description,
                        QVariantMap const& function_map, QVariantMap const& auth, QStringList const& rooms, int flags,
                        QVariantMap const& runoptions, QVariantMap const& lock_ui_map, int element_type,
                        QObject* parent);
    psoe_shutterpercent(psoe_shutterpercent const& other);

Q_SIGNALS:
    void element_typeChanged(int);
};

} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_SHUTTERPERCENT_H
