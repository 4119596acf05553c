#ifndef HOST_DBHOST_HOST_STORE_T_H
#define HOST_DBHOST_HOST_STORE_T_H

#include <QDateTime>
#include <QDir>
#include <QString>
#include <QStringList>

#include <functional>

/**
 * The host's files of one database in the data folder: the current file
 * (persistent.json, realtime.json), its numbered backups, and the files put
 * aside as corrupt. A save goes
 * to a temporary file that replaces the current one only once it is complete
 * on disk; a load that finds a bad file falls back to the newest good backup.
 * Nothing is ever deleted except the backup that rotation pushes past the last.
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
    /// when it is bad (and then the bad file is put aside). Messages for the
    /// user go to notes. False only when nothing could be loaded and the
    /// engine keeps its factory content.
    bool load(loader_t const& loadFile, QStringList& notes);

    /// Writes the image atomically and rotates the backups; false when
    /// nothing was replaced.
    bool save(writer_t const& write, QString& error);

    /// Stamp used for the names of files put aside: no colons, so that every
    /// file system takes it.
    static QString stamp(QDateTime const& when);

private:
    QString putAside(QString const& path, QString& error) const;
    void rotateBackups() const;
    static bool syncFile(QString const& path);
    static bool syncFolder(QString const& path);

    QDir folder;
    QString fileName;
    int backups = 5;
};

#endif // HOST_DBHOST_HOST_STORE_T_H
