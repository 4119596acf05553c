#ifndef HOST_DBHOST_HOST_JOURNAL_T_H
#define HOST_DBHOST_HOST_JOURNAL_T_H

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

/**
 * The journal beside a database file: every change the host is about to
 * report is appended here and made durable first, so that a crash takes
 * nothing away that anyone has seen. One JSON object per line; the first
 * line names the file the journal follows by the SHA-1 of its bytes, so that
 * a journal is never replayed onto another file. Only complete lines count:
 * a write cut short leaves a tail that is ignored.
 *
 * A full save of the file makes the journal's entries unnecessary. The next
 * journal is written whole under ".new" before the file is replaced, and
 * takes over once the file is in place; a start finds out which of the two
 * follows the file that is there.
 */
class host_journal_t
{
public:
    explicit host_journal_t(QString const& path);
    ~host_journal_t();
    host_journal_t(host_journal_t const&) = delete;
    host_journal_t& operator=(host_journal_t const&) = delete;

    QString path() const { return filePath; }
    QString nextPath() const { return filePath + QStringLiteral(".new"); }
    bool isOpen() const { return fd >= 0; }

    /// SHA-1 (hex) of a file's bytes; empty when it can't be read.
    static QByteArray fileHash(QString const& path);

    /// Opens the journal of the file whose bytes hash to follows (empty: no
    /// file, the factory content) for appending: finishes or drops a
    /// compaction that was cut, sets aside a journal that follows another
    /// file, cuts off an incomplete last entry. The entries to replay go to
    /// entries, what the user should know to notes. False when the journal
    /// can't be created; appends then fail until a save starts a new one.
    bool open(QByteArray const& follows, QList<QJsonObject>& entries, QStringList& notes);
    /// The entries a start would replay, touching nothing.
    static QList<QJsonObject> inspect(QString const& path, QByteArray const& follows, QStringList& notes);

    /// What one commit writes to one journal. Taken from the journal on its
    /// owner's thread, written on any thread (nothing but system calls on
    /// the descriptor), handed back to the journal on its owner's thread.
    struct batch_t {
        host_journal_t* journal = nullptr;
        int fd = -1;
        qint64 offset = 0;
        /// A write that failed may have left bytes past the durable end.
        bool cutFirst = false;
        QByteArray bytes;
        int entries = 0;
        bool written = false;
        QString error;
        qint64 nanoseconds = 0;
    };

    /// Buffers an entry; it is written by the next commit.
    void append(QJsonObject const& entry);
    /// The same for an entry already written as one line of JSON (no newline).
    void appendText(QByteArray const& entry);
    /// The same for a status, which replayed sets what its topic names to its
    /// payload: one that repeats the entry just before it would change nothing,
    /// and is left out (a client hears the server's status of a live twin that
    /// its own engine has just made alike). False when it was left out.
    bool appendStatus(QByteArray const& entry);
    bool pending() const { return !buffer.isEmpty(); }
    /// Entries not yet durable: buffered, or taken by a commit still under way.
    int pendingCount() const { return bufferedEntries + takenEntries; }
    /// Takes what is buffered for a commit; until settle(), nothing else may
    /// write to the journal (saves wait for the commit first).
    batch_t takeBatch();
    /// Writes the batch and waits for the disk (fdatasync).
    static void writeBatch(batch_t& batch);
    /// The batch's outcome: durable, or back in front of the buffer.
    void settle(batch_t& batch);
    /// takeBatch(), writeBatch() and settle() in one go; false with the
    /// reason when it could not, and then the entries stay buffered.
    bool commit(QString& error);
    /// Bytes on disk, header included.
    qint64 size() const { return durable; }
    /// Bytes written since the journal was started: without its header and
    /// the entries a save carried into it (all of it for a journal found at
    /// the start).
    qint64 grown() const { return durable - started; }
    /// Entries on disk since the journal was started.
    qint64 entries() const { return durableEntries; }

    /// A save is about to replace the file by one whose bytes hash to
    /// follows: writes the next journal, with the carried entries, durably
    /// under nextPath(). Nothing buffered may be pending.
    bool prepareNext(QByteArray const& follows, QList<QJsonObject> const& carried, QString& error);
    /// The file is replaced: the next journal takes over.
    bool adoptNext(QString& error);
    /// The save failed: the next journal goes, this one stays.
    void dropNext();

private:
    struct contents_t {
        bool header = false;
        QByteArray follows;
        QList<QJsonObject> entries;
        qint64 goodBytes = 0;
        qint64 tornBytes = 0;
    };

    static contents_t read(QString const& path);
    static QByteArray headerLine(QByteArray const& follows);
    bool create(QByteArray const& follows, QString& error);
    bool reopen(qint64 length, QString& error);
    void close();

    QString filePath;
    int fd = -1;
    qint64 durable = 0;
    qint64 started = 0;
    qint64 durableEntries = 0;
    qint64 nextCarried = 0;
    QByteArray buffer;
    /// The status appended last, while nothing has been appended after it.
    QByteArray lastStatus;
    int bufferedEntries = 0;
    int takenEntries = 0;
    /// A failed write may have left bytes past the durable end: cut before the next.
    bool dirtyTail = false;
};

#endif // HOST_DBHOST_HOST_JOURNAL_T_H
