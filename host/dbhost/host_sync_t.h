#ifndef HOST_DBHOST_HOST_SYNC_T_H
#define HOST_DBHOST_HOST_SYNC_T_H

#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

namespace database {
class database_t;
}

/**
 * Brings a client's databases in step with the server's by the hashes of
 * their sections. The client sends the hash of every section; the server
 * answers with the content of the sections whose hash differs (null for one
 * it doesn't have); the client takes them over as the status of each
 * database that differs. A section that matches costs its hash and nothing
 * more, and a client in step receives no section at all.
 */
class host_sync_t
{
public:
    /// The databases compared, by the name that follows "DB/" in their topics.
    static QStringList const& databaseNames();

    explicit host_sync_t(database::database_t* database);

    /// Client: {"persistent": {"items": "<sha1>", ...}, "realtime": {...}, ...}.
    QJsonObject hashes() const;
    /// Server: for each database, the sections that differ from the client's
    /// hashes with the server's content, or null where the server has none.
    QJsonObject answer(QJsonObject const& clientHashes) const;
    /// Client: the status packets that take an answer over, one per database
    /// with sections in it: the whole database as this process holds it, with
    /// the server's sections in place. names gets "database/section" of each.
    QList<QJsonObject> takeOver(QJsonObject const& answer, QStringList& names) const;

private:
    QMap<QString, QString> hashList(QString const& name) const;
    QJsonObject image(QString const& name) const;

    database::database_t* database = nullptr;
};

#endif // HOST_DBHOST_HOST_SYNC_T_H
