#ifndef HOST_DBHOST_HOST_STORE_T_H
#define HOST_DBHOST_HOST_STORE_T_H

#include <QDateTime>
#include <QDir>
#include <QString>
#include <QStringList>

namespace database {
namespace persistent {
class persistent_t;
}
}

/**
 * The host's files of the persistent database in one data folder: the current
 * file, its numbered backups, and the files put aside as corrupt. A save goes
 * to a temporary file that replaces the current one only once it is complete
 * on disk; a load that finds a bad file falls back to the newest good backup.
 * Nothing is ever deleted except the backup that rotation pushes past the last.
 */
class host_store_t
{
public:
    host_store_t(QString const& folder, int backups);

    QString currentPath() const;
    QString backupPath(int n) const;
    QString temporaryPath() const;

    /// Creates the folder; false when it can't be made.
    bool prepare(QString& error) const;

    /// Loads the current file into the engine, or the newest backup that loads
    /// when it is bad (and then the bad file is put aside). Messages for the
    /// user go to notes. False only when nothing could be loaded and the
    /// engine keeps its factory content.
    bool load(database::persistent::persistent_t* engine, QStringList& notes);

    /// Writes the image atomically and rotates the backups; false when
    /// nothing was replaced.
    bool save(database::persistent::persistent_t* engine, QString& error);

    /// Stamp used for the names of files put aside: no colons, so that every
    /// file system takes it.
    static QString stamp(QDateTime const& when);

private:
    bool loadFile(database::persistent::persistent_t* engine, QString const& path) const;
    QString putAside(QString const& path, QString& error) const;
    void rotateBackups() const;
    static bool syncFile(QString const& path);
    static bool syncFolder(QString const& path);

    QDir folder;
    int backups = 5;
};

#endif // HOST_DBHOST_HOST_STORE_T_H
