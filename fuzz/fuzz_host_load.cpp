// A file in the host's data folder: the input is written as persistent.json,
// realtime.json and presencesimulation.json, each beside a good backup, and the
// host's own loading runs on them. Faults: a memory error or undefined
// behaviour, and anything lost: a file that doesn't load must be kept aside as
// it was and the backup used, a file that loads must stay as it was, and a
// start refused for a newer version's file must leave every file alone.

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonObject>

#include <array>
#include <optional>

#include "database/database_t.h"
#include "database/definition/service_t.h"
#include "database/definition/type_brand_t.h"
#include "database/persistent/persistent_t.h"
#include "database/presencesimulation/presencesimulation_t.h"
#include "database/realtime/realtime_t.h"
#include "fuzz_engines.h"
#include "fuzz_support.h"
#include "host_loading.h"
#include "host_store_t.h"

namespace {

QStringList const fileNames{QStringLiteral("persistent.json"), QStringLiteral("realtime.json"),
                            QStringLiteral("presencesimulation.json")};

QByteArray readAll(QString const& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeAll(QString const& path, QByteArray const& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size())
        fuzz::fail("cannot write the fuzz folder", path);
}

/// A folder of this process in memory, so that the files cost no disk.
QString folder()
{
    static QString const path = (QDir(QStringLiteral("/dev/shm")).exists() ? QStringLiteral("/dev/shm")
                                                                              : QDir::tempPath())
                                + QStringLiteral("/dbhost-fuzz-") + QString::number(QCoreApplication::applicationPid());
    return path;
}

/// The files of a fresh database, saved once: the good backups of every input.
std::array<QByteArray, 3> const& goodFiles()
{
    static std::array<QByteArray, 3> const files = [] {
        database::database_t database{database::definition::service_t::offline,
                                      database::definition::type_brand_t::HALDO};
        QString const path = folder() + QStringLiteral("/good.json");
        std::array<QByteArray, 3> saved;
        database.getPersistent()->saveToFile(path, true);
        saved[0] = readAll(path);
        database.getRealtime()->saveToFile(path, true);
        saved[1] = readAll(path);
        database.getPresenceSimulation()->saveToFile(path, true);
        saved[2] = readAll(path);
        fuzz::drain();
        return saved;
    }();
    return files;
}

/// Empties the folder and writes each file beside its good backup: the
/// input as every current file, or the good files themselves without one.
void writeFolder(QDir const& dir, std::optional<QByteArray> const& input)
{
    for (QString const& name : dir.entryList(QDir::Files))
        QFile::remove(dir.filePath(name));
    for (int n = 0; n < 3; ++n) {
        writeAll(dir.filePath(fileNames.at(n)), input.value_or(goodFiles().at(n)));
        writeAll(dir.filePath(fileNames.at(n) + QStringLiteral(".1")), goodFiles().at(n));
    }
}

/// The host's own loading of the three files of the folder.
bool load(database::database_t& database, QStringList& notes)
{
    host_store_t persistent(folder(), fileNames.at(0), 2);
    host_store_t realtime(folder(), fileNames.at(1), 2);
    host_store_t presence(folder(), fileNames.at(2), 2);
    return host_loading_t{&persistent, &realtime, &presence}.load(database, notes);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    QByteArray const input(reinterpret_cast<char const*>(data), qsizetype(size));
    static bool const prepared = QDir().mkpath(folder()) && !goodFiles().at(0).isEmpty();
    if (!prepared)
        fuzz::fail("cannot prepare the fuzz folder", folder());
    QDir dir(folder());
    writeFolder(dir, input);

    {
        // Every input starts from the databases as the good files load: the
        // state a good backup gives back, so that putting it back is rare.
        static fuzz::kept_database_t* const kept = [&dir, &input] {
            auto* made = new fuzz::kept_database_t(database::definition::service_t::offline);
            writeFolder(dir, std::nullopt);
            QStringList notes;
            if (!load(made->get(), notes))
                fuzz::fail("the good files do not load", notes.join(QLatin1Char('\n')));
            fuzz::drain();
            made->keepPresent();
            writeFolder(dir, input);
            return made;
        }();
        kept->restore();
        database::database_t& database = kept->get();
        QStringList notes;
        bool const loaded = load(database, notes);
        fuzz::drain();
        if (!loaded) {
            // A file of a newer version: the host doesn't start and touches nothing.
            for (int n = 0; n < 3; ++n) {
                if (readAll(dir.filePath(fileNames.at(n))) != input
                    || readAll(dir.filePath(fileNames.at(n) + QStringLiteral(".1"))) != goodFiles().at(n))
                    fuzz::fail("a refused start changed a file", fileNames.at(n));
            }
            return 0;
        }
        // Each load has serialized its tree already; the consistency checks it asked for run here.
        fuzz::drain();

        for (int n = 0; n < 3; ++n) {
            QString const current = dir.filePath(fileNames.at(n));
            if (readAll(current + QStringLiteral(".1")) != goodFiles().at(n))
                fuzz::fail("a backup changed on load", fileNames.at(n));
            if (QFile::exists(current)) {
                if (readAll(current) != input)
                    fuzz::fail("a file that loads changed on load", fileNames.at(n));
                continue;
            }
            QStringList const aside = dir.entryList({fileNames.at(n) + QStringLiteral(".corrupt-*")}, QDir::Files);
            if (aside.size() != 1 || readAll(dir.filePath(aside.first())) != input)
                fuzz::fail("a file that does not load was not kept aside as it was", fileNames.at(n));
            if (!notes.contains(QStringLiteral("recovered from the backup ") + current + QStringLiteral(".1")))
                fuzz::fail("a good backup was not used", notes.join(QLatin1Char('\n')));
        }
    }
    fuzz::drain();
    return 0;
}
