#ifndef HOST_DBHOST_HOST_LOADING_H
#define HOST_DBHOST_HOST_LOADING_H

#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

#include "host_store_t.h"

namespace database {
class database_t;
}

/**
 * The host's start: the three databases of a data folder go into the façade's
 * engines, each from its file or, when that is bad, from its newest backup that
 * loads. Kept apart from the rest of the host so that the fuzz target of the
 * files runs exactly the host's own loading.
 */
struct host_loading_t {
    host_store_t* persistent = nullptr;
    host_store_t* realtime = nullptr;
    host_store_t* presence = nullptr;

    /// Loads all three into the database; what the user should know goes to
    /// notes. A database without a usable file keeps its factory content.
    /// False, with nothing loaded or changed, when the persistent file comes
    /// from a newer version of the database: the host must not run on it.
    /// With onlyLooking no file is put aside.
    bool load(database::database_t& database, QStringList& notes, bool onlyLooking = false) const;

    /// After load: the changes that each database's journal holds beyond its
    /// file, replayed in order as the status they were reported as,
    /// persistent first, so that the engines hold what was reported before
    /// the last end. The host's own records (entries without a topic) go to
    /// records. Opens the journals for appending, or with onlyLooking only
    /// reads them. Returns the number of changes replayed.
    int replay(database::database_t& database, QStringList& notes, QList<QJsonObject>& records,
               bool onlyLooking = false) const;
};

#endif // HOST_DBHOST_HOST_LOADING_H
