#ifndef DATABASE_PERSISTENT_DBS_PS_STORAGE_T_H
#define DATABASE_PERSISTENT_DBS_PS_STORAGE_T_H

#include <QJsonObject>
#include <QJsonValue>
#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace dbs {

/// A free JSON tree that clients keep in the database, addressed by paths.
class DATABASE_EXPORT ps_storage_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QJsonObject objects_list READ getObjects WRITE setObjects NOTIFY objects_listChanged)

public:
    Q_INVOKABLE explicit ps_storage_t(QObject* parent = nullptr);
    ps_storage_t(ps_storage_t const& other);

    QJsonObject getObjects() const { return objects_list; }
    void setObjects(QJsonObject const& value);
    QString getListKey() const { return listKey; }

    /// Asks that the subtree under key become object.
    void requestSetObjectList(QString const& key, QJsonObject const& object);
    /// Changes the section's JSON at path, which starts with the list key.
    void update(QString const& path, QJsonValue const& value, bool _notify);
    /// Same tree; the topic doesn't count.
    bool operator==(ps_storage_t const& other) const { return sameValues(&other); }

    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }

Q_SIGNALS:
    void objects_listChanged(QJsonObject);

private:
    QString listKey = QStringLiteral("objects_list");
    QJsonObject objects_list;
};

} // namespace dbs
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_PS_STORAGE_T_H
