// The host of the library for one process: it keeps the persistent database in
// a data folder and talks packets as JSON lines on standard input and output.

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

#include "database/database_t.h"
#include "database/definition/service_t.h"
#include "database/definition/type_brand_t.h"
#include "database/persistent/define/ps_knx_mode_t.h"
#include "host_application_t.h"
#include "host_loading.h"
#include "host_session_t.h"
#include "host_store_t.h"
#include "platform/logs/classlogs.h"

using database::definition::service_t;
using database::definition::type_brand_t;
using database::persistent::definition::ps_knx_mode_t;

namespace {

int fail(QString const& message)
{
    std::fprintf(stderr, "dbhost: %s\n", qPrintable(message));
    return 2;
}

/// Prints one section of the stored file, or all of it: a look at what was saved.
int dump(host_store_t const& store, QString const& section)
{
    QFile file(store.currentPath());
    if (!file.open(QIODevice::ReadOnly))
        return fail(QStringLiteral("no database file in the data folder"));
    QJsonObject const document = QJsonDocument::fromJson(file.readAll()).object();
    QJsonValue const value = section.isEmpty() ? QJsonValue(document) : document.value(section);
    QByteArray const text = value.isObject() ? QJsonDocument(value.toObject()).toJson(QJsonDocument::Indented)
                                             : QByteArray("null\n");
    std::fwrite(text.constData(), 1, size_t(text.size()), stdout);
    return 0;
}

} // namespace

int main(int argc, char* argv[])
{
    host_application_t app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("dbhost"));
    QCoreApplication::setApplicationVersion(database::database_t::getVersion());

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Keeps the persistent and realtime databases of one process in a data folder. Packets are read as JSON "
        "lines on "
        "standard input; what the library gives its host is written as JSON lines on standard output."));
    parser.addHelpOption();
    parser.addVersionOption();
    QCommandLineOption const role(QStringLiteral("role"), QStringLiteral("server, client or offline."),
                                  QStringLiteral("role"), QStringLiteral("offline"));
    QCommandLineOption const brand(QStringLiteral("brand"), QStringLiteral("HALDO, VESTRA, TOLVER or ARDENWALL."),
                                   QStringLiteral("brand"), QStringLiteral("HALDO"));
    QCommandLineOption const knxMode(QStringLiteral("knx-mode"), QStringLiteral("kdrive, baos or automatic."),
                                     QStringLiteral("mode"), QStringLiteral("automatic"));
    QCommandLineOption const data(QStringLiteral("data"), QStringLiteral("The data folder, created when missing."),
                                  QStringLiteral("folder"), QStringLiteral("data"));
    QCommandLineOption const backups(QStringLiteral("backups"), QStringLiteral("Number of backups kept."),
                                     QStringLiteral("n"), QStringLiteral("5"));
    QCommandLineOption const logLevel(QStringLiteral("log-level"),
                                      QStringLiteral("1 exceptions only ... 6 trace; lines go to standard error."),
                                      QStringLiteral("level"), QStringLiteral("2"));
    QCommandLineOption const dumpSection(QStringLiteral("dump"),
                                         QStringLiteral("Print a section of the saved database (\"all\" for "
                                                        "everything; \"realtime/<section>\" or \"realtime\" "
                                                        "for the live one) and leave."),
                                         QStringLiteral("section"));
    parser.addOptions({role, brand, knxMode, data, backups, logLevel, dumpSection});
    parser.process(app);

    bool ok = false;
    int const level = parser.value(logLevel).toInt(&ok);
    if (!ok || level < 1 || level > 6)
        return fail(QStringLiteral("--log-level takes a number from 1 to 6"));
    ::utility::logs::classlogs::getInstance()->setThreshold(::utility::logs::LogLevel(level));

    int const backupCount = parser.value(backups).toInt(&ok);
    if (!ok || backupCount < 0)
        return fail(QStringLiteral("--backups takes a number from 0 up"));
    host_store_t store(parser.value(data), QStringLiteral("persistent.json"), backupCount);
    host_store_t liveStore(parser.value(data), QStringLiteral("realtime.json"), backupCount);
    host_store_t presenceStore(parser.value(data), QStringLiteral("presencesimulation.json"), backupCount);
    if (parser.isSet(dumpSection)) {
        QString section = parser.value(dumpSection);
        // "realtime" alone is the whole live database, "realtime/items" one section of it.
        host_store_t* dumped = &store;
        for (auto* other : {&liveStore, &presenceStore}) {
            QString const name = other->currentPath().section(QLatin1Char('/'), -1).section(QLatin1Char('.'), 0, 0);
            if (section == name || section.startsWith(name + QLatin1Char('/'))) {
                dumped = other;
                section = section.mid(name.size() + 1);
            }
        }
        return dump(*dumped, section == QLatin1String("all") ? QString() : section);
    }

    service_t const service(parser.value(role));
    if (service != service_t::server && service != service_t::client && service != service_t::offline)
        return fail(QStringLiteral("unknown role ") + parser.value(role));
    type_brand_t const chosenBrand = type_brand_t::getType(parser.value(brand));
    ps_knx_mode_t const mode(parser.value(knxMode));
    if (mode != ps_knx_mode_t::kdrive && mode != ps_knx_mode_t::baos && mode != ps_knx_mode_t::automatic)
        return fail(QStringLiteral("unknown KNX mode ") + parser.value(knxMode));

    QString error;
    if (!store.prepare(error))
        return fail(error);

    database::database_t database(service, chosenBrand, mode);
    QStringList notes;
    bool const loaded = host_loading_t{&store, &liveStore, &presenceStore}.load(database, notes);
    for (QString const& note : std::as_const(notes))
        std::fprintf(stderr, "dbhost: %s\n", qPrintable(note));
    if (!loaded) {
        ::utility::logs::classlogs::getInstance()->flush();
        return 2;
    }

    host_session_t session(&database, &store, &liveStore, &presenceStore);
    session.saveNow(); // the first run leaves the factory database in the folder
    host_session_t::installSignalHandlers();
    session.start();
    int const status = app.exec();
    ::utility::logs::classlogs::getInstance()->flush();
    return status;
}
