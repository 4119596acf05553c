#include "host_journal_t.h"

#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

#include "host_json_t.h"
#include "host_store_t.h"

namespace {

QString const journalKey = QStringLiteral("journal");
QString const followsKey = QStringLiteral("follows");

QString systemError()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

bool writeAll(int fd, QByteArray const& bytes, qint64 offset)
{
    qint64 done = 0;
    while (done < bytes.size()) {
        ssize_t const n = ::pwrite(fd, bytes.constData() + done, size_t(bytes.size() - done), offset + done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        done += n;
    }
    return true;
}

QString folderOf(QString const& path)
{
    return QFileInfo(path).absolutePath();
}

} // namespace

host_journal_t::host_journal_t(QString const& path)
    : filePath(path)
{
}

host_journal_t::~host_journal_t()
{
    close();
}

void host_journal_t::close()
{
    if (fd >= 0)
        ::close(fd);
    fd = -1;
}

QByteArray host_journal_t::fileHash(QString const& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(&file);
    return hash.result().toHex();
}

QByteArray host_journal_t::headerLine(QByteArray const& follows)
{
    return QJsonDocument(QJsonObject{{journalKey, 1}, {followsKey, QString::fromLatin1(follows)}})
               .toJson(QJsonDocument::Compact)
           + '\n';
}

host_journal_t::contents_t host_journal_t::read(QString const& path)
{
    contents_t contents;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return contents;
    QByteArray const bytes = file.readAll();
    qsizetype start = 0;
    bool first = true;
    for (;;) {
        qsizetype const end = bytes.indexOf('\n', start);
        // Only a line with its newline was written whole.
        if (end < 0)
            break;
        QJsonParseError error{};
        QJsonDocument const line = QJsonDocument::fromJson(bytes.mid(start, end - start), &error);
        if (error.error != QJsonParseError::NoError || !line.isObject())
            break;
        QJsonObject const object = line.object();
        if (first) {
            if (object.value(journalKey).toInt() != 1 || !object.value(followsKey).isString())
                break;
            contents.header = true;
            contents.follows = object.value(followsKey).toString().toLatin1();
            first = false;
        } else {
            contents.entries.append(object);
        }
        start = end + 1;
        contents.goodBytes = start;
    }
    contents.tornBytes = bytes.size() - contents.goodBytes;
    return contents;
}

QList<QJsonObject> host_journal_t::inspect(QString const& path, QByteArray const& follows, QStringList& notes)
{
    // A compaction cut after the file was replaced: the next journal is the one.
    contents_t const next = read(path + QStringLiteral(".new"));
    if (next.header && next.follows == follows)
        return next.entries;
    if (!QFileInfo::exists(path))
        return {};
    contents_t const contents = read(path);
    if (!contents.header || contents.follows != follows) {
        notes.append(QStringLiteral("the journal ") + path + QStringLiteral(" does not follow the file beside it: not applied"));
        return {};
    }
    if (contents.tornBytes > 0)
        notes.append(QStringLiteral("the last %1 bytes of %2 are an incomplete entry: ignored")
                         .arg(contents.tornBytes)
                         .arg(path));
    return contents.entries;
}

bool host_journal_t::open(QByteArray const& follows, QList<QJsonObject>& entries, QStringList& notes)
{
    close();
    QString const next = nextPath();
    if (QFileInfo::exists(next)) {
        contents_t const contents = read(next);
        if (contents.header && contents.follows == follows) {
            // The save went through and only the journal's turn was cut.
            if (::rename(QFile::encodeName(next).constData(), QFile::encodeName(filePath).constData()) == 0)
                host_store_t::syncFolder(folderOf(filePath));
        } else {
            QFile::remove(next);
        }
    }
    QString error;
    if (QFileInfo::exists(filePath)) {
        contents_t const contents = read(filePath);
        if (!contents.header || contents.follows != follows) {
            QString const aside = host_store_t::putAside(filePath, error);
            notes.append(aside.isEmpty() ? error
                                         : QStringLiteral("the journal ") + QFileInfo(filePath).fileName()
                                               + QStringLiteral(" does not follow the file beside it: not applied, kept as ")
                                               + aside);
            if (aside.isEmpty())
                return false;
        } else {
            if (contents.tornBytes > 0)
                notes.append(QStringLiteral("the last %1 bytes of %2 are an incomplete entry (a write cut short): ignored")
                                 .arg(contents.tornBytes)
                                 .arg(filePath));
            entries = contents.entries;
            if (!reopen(contents.goodBytes, error)) {
                notes.append(error);
                return false;
            }
            durableEntries = contents.entries.size();
            return true;
        }
    }
    if (!create(follows, error)) {
        notes.append(error);
        return false;
    }
    return true;
}

bool host_journal_t::reopen(qint64 length, QString& error)
{
    close();
    fd = ::open(QFile::encodeName(filePath).constData(), O_WRONLY | O_CLOEXEC);
    if (fd < 0) {
        error = QStringLiteral("cannot open the journal ") + filePath + QStringLiteral(": ") + systemError();
        return false;
    }
    struct stat info {};
    if (::fstat(fd, &info) == 0 && info.st_size != length) {
        // What follows the last complete entry was never reported: it goes.
        if (::ftruncate(fd, length) != 0 || ::fdatasync(fd) != 0) {
            error = QStringLiteral("cannot cut the journal ") + filePath + QStringLiteral(": ") + systemError();
            close();
            return false;
        }
    }
    durable = length;
    started = 0;
    dirtyTail = false;
    return true;
}

bool host_journal_t::create(QByteArray const& follows, QString& error)
{
    QList<QJsonObject> const none;
    if (!prepareNext(follows, none, error))
        return false;
    return adoptNext(error);
}

void host_journal_t::append(QJsonObject const& entry)
{
    appendText(host_json_t::text(entry));
}

void host_journal_t::appendText(QByteArray const& entry)
{
    buffer += entry;
    buffer += '\n';
    ++bufferedEntries;
    lastStatus.clear();
}

bool host_journal_t::appendStatus(QByteArray const& entry)
{
    if (!lastStatus.isEmpty() && entry == lastStatus)
        return false;
    appendText(entry);
    lastStatus = entry;
    return true;
}

host_journal_t::batch_t host_journal_t::takeBatch()
{
    batch_t batch;
    batch.journal = this;
    batch.fd = fd;
    batch.offset = durable;
    batch.cutFirst = std::exchange(dirtyTail, false);
    batch.bytes = std::exchange(buffer, QByteArray());
    batch.entries = std::exchange(bufferedEntries, 0);
    takenEntries += batch.entries;
    return batch;
}

void host_journal_t::writeBatch(batch_t& batch)
{
    batch.written = false;
    if (batch.bytes.isEmpty()) {
        batch.written = true;
        return;
    }
    if (batch.fd < 0) {
        batch.error = QStringLiteral("is not open");
        return;
    }
    QElapsedTimer took;
    took.start();
    if (batch.cutFirst && ::ftruncate(batch.fd, batch.offset) != 0) {
        batch.error = systemError();
        return;
    }
    if (!writeAll(batch.fd, batch.bytes, batch.offset) || ::fdatasync(batch.fd) != 0) {
        batch.error = systemError();
        return;
    }
    batch.nanoseconds = took.nsecsElapsed();
    batch.written = true;
}

void host_journal_t::settle(batch_t& batch)
{
    takenEntries -= batch.entries;
    if (batch.written) {
        durable += batch.bytes.size();
        durableEntries += batch.entries;
        return;
    }
    // Written again by the next commit, in the same order, after cutting
    // whatever part of it reached the file.
    buffer.prepend(batch.bytes);
    bufferedEntries += batch.entries;
    dirtyTail = true;
    batch.error = QStringLiteral("cannot write the journal ") + filePath + QStringLiteral(": ") + batch.error;
}

bool host_journal_t::commit(QString& error)
{
    if (buffer.isEmpty())
        return true;
    batch_t batch = takeBatch();
    writeBatch(batch);
    settle(batch);
    error = batch.error;
    return batch.written;
}

bool host_journal_t::prepareNext(QByteArray const& follows, QList<QJsonObject> const& carried, QString& error)
{
    QByteArray text = headerLine(follows);
    for (QJsonObject const& entry : carried) {
        host_json_t::append(text, entry);
        text += '\n';
    }
    QString const next = nextPath();
    // Journals carry what the databases carry: only the owner reads them.
    int const out = ::open(QFile::encodeName(next).constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (out < 0) {
        error = QStringLiteral("cannot write ") + next + QStringLiteral(": ") + systemError();
        return false;
    }
    ::fchmod(out, 0600);
    bool const ok = writeAll(out, text, 0) && ::fdatasync(out) == 0;
    if (!ok)
        error = QStringLiteral("cannot write ") + next + QStringLiteral(": ") + systemError();
    ::close(out);
    if (!ok) {
        QFile::remove(next);
        return false;
    }
    nextCarried = carried.size();
    return true;
}

bool host_journal_t::adoptNext(QString& error)
{
    QString const next = nextPath();
    qint64 const length = QFileInfo(next).size();
    if (::rename(QFile::encodeName(next).constData(), QFile::encodeName(filePath).constData()) != 0) {
        error = QStringLiteral("cannot replace the journal ") + filePath + QStringLiteral(": ") + systemError();
        return false;
    }
    host_store_t::syncFolder(folderOf(filePath));
    // A save writes the engine as it is: what was still buffered is in the file.
    buffer.clear();
    bufferedEntries = 0;
    lastStatus.clear();
    if (!reopen(length, error))
        return false;
    started = length;
    durableEntries = nextCarried;
    return true;
}

void host_journal_t::dropNext()
{
    QFile::remove(nextPath());
}
