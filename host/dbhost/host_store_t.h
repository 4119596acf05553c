#ifndef HOST_DBHOST_HOST_STORE_T_H
#define HOST_DBHOST_HOST_STORE_T_H

#include <QDateTime>
#include <QDir>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

#include "host_journal_t.h"

/**
 * The host's files of one database in the data folder: the current file
 * (persistent.json, realtime.json), its numbered backups, and the files put
 * aside as corrupt. A save goes
 * to a temporary file that replaces the current one only once it is complete
 * on disk; a load that finds a bad file falls back to the newest good backup.
 * Nothing is ever deleted except the backup that rotation pushes past the last.
 * Beside the current file lives its journal (host_journal_t): the changes
 * since the last save, which a save makes unnecessary and starts anew.
 */
class host_store_t
{
public:
    /// Loads the file at a path into the engine; true when it gave a working tree.
    using loader_t = std::function<bool(QString const& path)>;
    /// Writes the engine's image to a path; false when it could not.
    using writer_t = std::function<bool(QString const& path)>;

    host_store_t(QString const& folder, QString const& fileName, int backups);

    QString currentPath() const;
    QString backupPath(int n) const;
    QString temporaryPath() const;

    /// Creates the folder; false when it can't be made.
    bool prepare(QString& error) const;

    /// Loads the current file into the engine, or the newest backup that loads
    /// when it is bad (and then the bad file is put aside, unless only
    /// looking). Messages for the user go to notes. False only when nothing
    /// could be loaded and the engine keeps its factory content.
    bool load(loader_t const& loadFile, QStringList& notes, bool onlyLooking = false);
    /// The file the last load took, current or backup; empty for none.
    QString loadedPath() const { return loaded; }

    QString journalPath() const;
    host_journal_t& journal() { return *log; }
    /// Opens the journal that follows the loaded file; its entries, to be
    /// replayed, go to entries. From then on every save starts it anew.
    bool openJournal(QList<QJsonObject>& entries, QStringList& notes);
    /// The entries a start would replay, touching nothing.
    QList<QJsonObject> inspectJournal(QStringList& notes) const;
    /// Changes of the journal replayed at start, which the file doesn't hold yet.
    int replayedChanges() const { return replayed; }
    void setReplayedChanges(int count) { replayed = count; }

    /// Writes the image atomically and rotates the backups; false when
    /// nothing was replaced. With the journal open, the next journal (holding
    /// carried) is made durable before the file is replaced and takes over
    /// after it.
    bool save(writer_t const& write, QString& error, QList<QJsonObject> const& carried = {});

    /// Stamp used for the names of files put aside: no colons, so that every
    /// file system takes it.
    static QString stamp(QDateTime const& when);

    static bool syncFile(QString const& path);
    static bool syncFolder(QString const& path);
    /// Renames a file that must not be used, and must not be lost, to
    /// "<name>.corrupt-<UTC time>"; its new path, or empty with the reason.
    static QString putAside(QString const& path, QString& error);

private:
    void rotateBackups() const;

    QDir folder;
    QString fileName;
    int backups = 5;
    QString loaded;
    std::unique_ptr<host_journal_t> log;
    bool journaled = false;
    int replayed = 0;
};

#endif // HOST_DBHOST_HOST_STORE_T_H
