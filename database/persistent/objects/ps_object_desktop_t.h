#ifndef DATABASE_PERSISTENT_OBJECTS_PS_OBJECT_DESKTOP_T_H
#define DATABASE_PERSISTENT_OBJECTS_PS_OBJECT_DESKTOP_T_H

#include <QMap>
#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/// A desktop of the panels; the elements section reserves a key for a map of them.
class DATABASE_EXPORT ps_object_desktop_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QString id READ getId WRITE setId NOTIFY idChanged)
    Q_PROPERTY(QString name READ getName WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(QString type READ getType WRITE setType NOTIFY typeChanged)
    Q_PROPERTY(bool enabled READ getEnabled WRITE setEnabled NOTIFY enabledChanged)

public:
    Q_INVOKABLE explicit ps_object_desktop_t(QObject* parent = nullptr);
    ps_object_desktop_t(QString const& topic, QObject* parent);
    ps_object_desktop_t(QString const& id, QString const& name, QString const& type, bool enabled, QObject* parent);
    ps_object_desktop_t(ps_object_desktop_t const& other);

    QString getId() const { return id; }
    QString getName() const { return name; }
    QString getType() const { return type; }
    bool getEnabled() const { return enabled; }
    void setId(QString const& value);
    void setName(QString const& value);
    void setType(QString const& value);
    void setEnabled(bool value);

    void requestSetName(QString const& value);
    /// The id is asked for on the desktop's own topic, with no key after it.
    void requestSetId(QString const& value);
    void requestSetEnabled(bool value);
    void requestSetType(QString const& value);

    /// All four properties; the topic doesn't count.
    bool operator==(ps_object_desktop_t const& other) const;

Q_SIGNALS:
    void idChanged(QString);
    void nameChanged(QString);
    void typeChanged(QString);
    void enabledChanged(bool);

private:
    QString id;
    QString name;
    QString type;
    bool enabled = false;
};

} // namespace objects

typedef QMap<QString, objects::ps_object_desktop_t*> ps_desktop_map;

} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_PS_OBJECT_DESKTOP_T_H
