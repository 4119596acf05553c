#ifndef DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_PLACEHOLDER_H
#define DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_PLACEHOLDER_H

#include <QObject>
#include <QString>

#include "database/persistent/objects/elements/psoe_family_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/// An empty tile that keeps a place on a page, with an optional picture.
class DATABASE_EXPORT psoe_placeholder
    : public psoe_family_t<psoe_placeholder, ps_object_element_t::ELEMENT_TYPE_PLACEHOLDER>
{
    Q_OBJECT
    Q_PROPERTY(QString picture READ getPicture WRITE setPicture NOTIFY pictureChanged)

public:
    enum PlaceholderFlag {
        PLACEHOLDER_FLAG_ENABLE_BACKGROUND = 0x80000000,
        PLACEHOLDER_FLAG_ENABLE_TITLE = 0x40000000,
        PLACEHOLDER_FLAG_SHOW_ON_PRODUCT_ONLY = 0x20000000
    };
    Q_ENUM(PlaceholderFlag)

    Q_INVOKABLE explicit psoe_placeholder(QObject* parent = nullptr);
    psoe_placeholder(QString const& topic, QObject* parent);
    psoe_placeholder(QString const& id, QString const& name, QString const& description,
                     QVariantMap const& function_map, QVariantMap const& auth, QStringList const& rooms, int flags,
                     QVariantMap const& runoptions, QVariantMap const& lock_ui_map, QString const& picture,
                     QObject* parent);
    psoe_placeholder(psoe_placeholder const& other);

    QString getPicture() const { return picture; }
    void setPicture(QString const& value)
    {
        assign(picture, value, [this] { Q_EMIT pictureChanged(picture); });
    }

Q_SIGNALS:
    void pictureChanged(QString);

private:
    QString picture;
};

} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_PLACEHOLDER_H
