#ifndef DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_CMDBTN_H
#define DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_CMDBTN_H

#include <QObject>
#include <QString>

#include "database/persistent/objects/elements/psoe_family_t.h"
#include "database/persistent/ps_request.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/// A button that sends one value when pressed and another when released.
class DATABASE_EXPORT psoe_cmdbtn : public psoe_family_t<psoe_cmdbtn, ps_object_element_t::ELEMENT_TYPE_COMMAND_BUTTON>
{
    Q_OBJECT
    Q_PROPERTY(QString press READ getPress WRITE setPress NOTIFY pressChanged)
    Q_PROPERTY(QString release READ getRelease WRITE setRelease NOTIFY releaseChanged)
    Q_PROPERTY(int icon READ getIcon WRITE setIcon NOTIFY iconChanged)
    Q_PROPERTY(QString label READ getLabel WRITE setLabel NOTIFY labelChanged)

public:
    Q_INVOKABLE explicit psoe_cmdbtn(QObject* parent = nullptr);
    psoe_cmdbtn(QString const& topic, QObject* parent);
    psoe_cmdbtn(QString const& id, QString const& name, QString const& description, QVariantMap const& function_map,
                QVariantMap const& auth, QStringList const& rooms, int flags, QVariantMap const& runoptions,
                QVariantMap const& lock_ui_map, QString const& press, QString const& release, int icon,
                QString const& label, QObject* parent);
    psoe_cmdbtn(psoe_cmdbtn const& other);

    QString getPress() const { return press; }
    QString getRelease() const { return release; }
    int getIcon() const { return icon; }
    QString getLabel() const { return label; }
    void setPress(QString const& value)
    {
        assign(press, value, [this] { Q_EMIT pressChanged(press); });
    }
    void setRelease(QString const& value)
    {
        assign(release, value, [this] { Q_EMIT releaseChanged(release); });
    }
    void setIcon(int value)
    {
        assign(icon, value, [this] { Q_EMIT iconChanged(icon); });
    }
    void setLabel(QString const& value)
    {
        assign(label, value, [this] { Q_EMIT labelChanged(label); });
    }

    void requestSetPress(QString const& value) { requestField(this, QStringLiteral("press"), value); }
    void requestSetRelease(QString const& value) { requestField(this, QStringLiteral("release"), value); }
    void requestSetIcon(int value) { requestField(this, QStringLiteral("icon"), value); }
    void requestSetLabel(QString const& value) { requestField(this, QStringLiteral("label"), value); }

Q_SIGNALS:
    void pressChanged(QString);
    void releaseChanged(QString);
    void iconChanged(int);
    void labelChanged(QString);

private:
    QString press;
    QString release;
    int icon = 0;
    QString label;
};

} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_CMDBTN_H
