#include "host_store_t.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonObject>
#include <QList>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

host_store_t::host_store_t(QString const& path, QString const& _fileName, int _backups)
    : folder(path)
    , fileName(_fileName)
    , backups(qMax(0, _backups))
    , log(std::make_unique<host_journal_t>(currentPath() + QStringLiteral(".journal")))
{
}

QString host_store_t::journalPath() const
{
    return log->path();
}

bool host_store_t::openJournal(QList<QJsonObject>& entries, QStringList& notes)
{
    journaled = true;
    QByteArray const follows = loaded.isEmpty() ? QByteArray() : host_journal_t::fileHash(loaded);
    return log->open(follows, entries, notes);
}

QList<QJsonObject> host_store_t::inspectJournal(QStringList& notes) const
{
    QByteArray const follows = loaded.isEmpty() ? QByteArray() : host_journal_t::fileHash(loaded);
    return host_journal_t::inspect(log->path(), follows, notes);
}

QString host_store_t::currentPath() const
{
    return folder.filePath(fileName);
}

QString host_store_t::backupPath(int n) const
{
    return currentPath() + QLatin1Char('.') + QString::number(n);
}

QString host_store_t::temporaryPath() const
{
    return currentPath() + QStringLiteral(".tmp");
}

bool host_store_t::prepare(QString& error) const
{
    if (folder.exists() || folder.mkpath(QStringLiteral(".")))
        return true;
    error = QStringLiteral("cannot create the data folder ") + folder.absolutePath();
    return false;
}

QString host_store_t::stamp(QDateTime const& when)
{
    return when.toUTC().toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'"));
}

QString host_store_t::putAside(QString const& path, QString& error)
{
    QString const base = path + QStringLiteral(".corrupt-") + stamp(QDateTime::currentDateTimeUtc());
    QString aside = base;
    for (int n = 1; QFileInfo::exists(aside); ++n)
        aside = base + QLatin1Char('-') + QString::number(n);
    if (!QFile::rename(path, aside)) {
        error = QStringLiteral("cannot move ") + path + QStringLiteral(" aside");
        return QString();
    }
    syncFolder(QFileInfo(path).absolutePath());
    return aside;
}

bool host_store_t::load(loader_t const& loadFile, QStringList& notes, bool onlyLooking)
{
    QString const current = currentPath();
    loaded.clear();
    if (!QFileInfo::exists(current)) {
        notes.append(QStringLiteral("no ") + fileName + QStringLiteral(" in ") + folder.absolutePath()
                     + QStringLiteral(": starting from the factory database"));
        return true;
    }
    auto const loads = [&](QString const& path) { return QFileInfo(path).size() > 0 && loadFile(path); };
    if (loads(current)) {
        loaded = current;
        return true;
    }

    QString error;
    QString const aside = onlyLooking ? QString() : putAside(current, error);
    if (onlyLooking)
        notes.append(QStringLiteral("the database file ") + fileName + QStringLiteral(" is empty or unreadable"));
    else
        notes.append(aside.isEmpty() ? error
                                     : QStringLiteral("the database file ") + fileName
                                           + QStringLiteral(" is empty or unreadable; kept as ") + aside);
    for (int n = 1; n <= backups; ++n) {
        QString const backup = backupPath(n);
        if (!QFileInfo::exists(backup))
            continue;
        if (loads(backup)) {
            loaded = backup;
            notes.append(QStringLiteral("recovered from the backup ") + backup);
            return true;
        }
        notes.append(QStringLiteral("the backup ") + backup + QStringLiteral(" does not load either"));
    }
    notes.append(QStringLiteral("no backup loads: starting from the factory database"));
    return false;
}

void host_store_t::rotateBackups() const
{
    if (backups == 0)
        return;
    // The backups there are, newest first. A save killed halfway through its
    // rotation leaves a gap: closing it here keeps every backup there is.
    QList<int> present;
    for (int n = 1; n <= backups; ++n) {
        if (QFileInfo::exists(backupPath(n)))
            present.append(n);
    }
    // Room for the current file as .1: the oldest beyond the count go.
    while (present.size() > backups - 1)
        QFile::remove(backupPath(present.takeLast()));
    // The i-th newest becomes .(i+2). Those that move down into a gap go first,
    // the newest first; then those that move up, the oldest first: every rename
    // finds its name free, and a kill between two renames loses nothing.
    for (int i = 0; i < present.size(); ++i) {
        if (present.at(i) > i + 2)
            QFile::rename(backupPath(present.at(i)), backupPath(i + 2));
    }
    for (int i = int(present.size()) - 1; i >= 0; --i) {
        if (present.at(i) == i + 1)
            QFile::rename(backupPath(present.at(i)), backupPath(i + 2));
    }
}

bool host_store_t::save(writer_t const& write, QString& error, QList<QJsonObject> const& carried)
{
    QString const temporary = temporaryPath();
    QString const current = currentPath();
    // The databases hold users' PINs and mail passwords: only the owner reads
    // them. The file is made private before the image goes in.
    int const fd = ::open(QFile::encodeName(temporary).constData(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (fd >= 0) {
        ::fchmod(fd, 0600);
        ::close(fd);
    }
    if (!write(temporary)) {
        error = QStringLiteral("cannot write ") + temporary;
        QFile::remove(temporary);
        return false;
    }
    if (QFileInfo(temporary).size() == 0 || !syncFile(temporary)) {
        error = QStringLiteral("the new database file is empty or not on disk");
        QFile::remove(temporary);
        return false;
    }
    // The next journal must be on disk before the file it follows: a start
    // after a kill at any point finds the journal that belongs to its file.
    if (journaled && !log->prepareNext(host_journal_t::fileHash(temporary), carried, error)) {
        QFile::remove(temporary);
        return false;
    }
    if (QFileInfo::exists(current) && backups > 0) {
        rotateBackups();
        // A hard link keeps the current file in place until the rename below
        // replaces it: at every instant a complete database is on disk.
        if (::link(QFile::encodeName(current).constData(), QFile::encodeName(backupPath(1)).constData()) != 0)
            QFile::copy(current, backupPath(1));
    }
    if (::rename(QFile::encodeName(temporary).constData(), QFile::encodeName(current).constData()) != 0) {
        error = QStringLiteral("cannot replace ") + current;
        if (journaled)
            log->dropNext();
        return false;
    }
    syncFolder(folder.absolutePath());
    loaded = current;
    return !journaled || log->adoptNext(error);
}

bool host_store_t::syncFile(QString const& path)
{
    int const fd = ::open(QFile::encodeName(path).constData(), O_RDONLY);
    if (fd < 0)
        return false;
    bool const ok = ::fsync(fd) == 0;
    ::close(fd);
    return ok;
}

bool host_store_t::syncFolder(QString const& path)
{
    int const fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY);
    if (fd < 0)
        return false;
    bool const ok = ::fsync(fd) == 0;
    ::close(fd);
    return ok;
}
