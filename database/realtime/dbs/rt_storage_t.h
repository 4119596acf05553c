#ifndef DATABASE_REALTIME_DBS_RT_STORAGE_T_H
#define DATABASE_REALTIME_DBS_RT_STORAGE_T_H

#include <QJsonObject>
#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {
namespace dbs {

/// Free live data that the hosts keep in the realtime database, as one JSON tree.
class DATABASE_EXPORT rt_storage_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QJsonObject objects_list MEMBER objects_list READ getObjects NOTIFY objects_listChanged)
    Q_PROPERTY(QString updated MEMBER updated READ getUpdated NOTIFY updatedChanged)

public:
    Q_INVOKABLE explicit rt_storage_t(QObject* parent = nullptr);
    explicit rt_storage_t(rt_storage_t const* other);
    rt_storage_t(rt_storage_t const& other);

    QJsonObject getObjects() const { return objects_list; }
    QString getUpdated() const { return updated; }
    QString getListKey() const { return listKey; }

    /// Takes other's tree, not its date; null is refused with "Not permitted nullptr".
    void update(rt_storage_t const* other, bool _notify);

    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }

    /// Same tree and date; the topic doesn't count.
    bool operator==(rt_storage_t const& other) const { return sameValues(&other); }

Q_SIGNALS:
    void objects_listChanged(QJsonObject);
    void updatedChanged(QString);

private:
    QString listKey = QStringLiteral("objects_list");
    QJsonObject objects_list;
    QString updated;
};

} // namespace dbs
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_RT_STORAGE_T_H
