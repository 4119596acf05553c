// The host of the library for one process: it keeps the databases in a data
// folder and talks packets as JSON lines on standard input and output, or
// through an MQTT broker with the other processes of the installation.

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>
#include <functional>
#include <memory>

#include "database/database_t.h"
#include "database/definition/service_t.h"
#include "database/definition/type_brand_t.h"
#include "database/persistent/define/ps_knx_mode_t.h"
#include "database/persistent/persistent_t.h"
#include "database/presencesimulation/presencesimulation_t.h"
#include "database/realtime/realtime_t.h"
#include "host_application_t.h"
#include "host_http_link_t.h"
#include "host_mqtt_link_t.h"
#include "host_loading.h"
#include "host_session_t.h"
#include "host_stdio_link_t.h"
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

/// Reads "HOST[:PORT]" (or "[v6 address]:PORT"); false when the port isn't a number.
bool parseBroker(QString const& text, host_mqtt_client_t::options_t& options)
{
    QString host = text;
    int const colon = int(text.lastIndexOf(QLatin1Char(':')));
    bool const bracketed = text.startsWith(QLatin1Char('['));
    if (colon > 0 && (bracketed ? text.at(colon - 1) == QLatin1Char(']') : text.count(QLatin1Char(':')) == 1)) {
        bool ok = false;
        options.port = text.mid(colon + 1).toInt(&ok);
        if (!ok || options.port <= 0 || options.port > 65535)
            return false;
        host = text.left(colon);
    }
    if (bracketed)
        host = host.mid(1, host.size() - 2);
    options.host = host;
    return !host.isEmpty();
}

/// Prints one section of what a start would load, or all of it: the stored
/// file, with the changes its journal holds beyond it.
int dump(host_store_t const& store, QString const& section, std::function<QJsonObject()> const& replayed)
{
    QFile file(store.currentPath());
    if (!file.open(QIODevice::ReadOnly))
        return fail(QStringLiteral("no database file in the data folder"));
    QJsonObject const document = replayed ? replayed() : QJsonDocument::fromJson(file.readAll()).object();
    QJsonValue const value = section.isEmpty() ? QJsonValue(document) : document.value(section);
    QByteArray const text = value.isObject() ? QJsonDocument(value.toObject()).toJson(QJsonDocument::Indented)
                                             : QByteArray("null\n");
    std::fwrite(text.constData(), 1, size_t(text.size()), stdout);
    return 0;
}

} // namespace

int main(int argc, char* argv[])
{
    // Qt's own Unix event dispatcher, unless asked otherwise: it wakes the
    // loop once for all the events posted meanwhile, where the GLib one writes
    // its wake-up descriptor for each, and the library posts about fifteen
    // events for every change a message brings.
    if (!qEnvironmentVariableIsSet("QT_NO_GLIB"))
        qputenv("QT_NO_GLIB", "1");
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
    QCommandLineOption const mqtt(QStringLiteral("mqtt"),
                                  QStringLiteral("Talk with the other processes through the MQTT broker at HOST[:PORT] "
                                                 "(port 1883 by default) instead of standard input; standard input "
                                                 "then carries this process's own packets."),
                                  QStringLiteral("host[:port]"));
    QCommandLineOption const mqttClientId(
        QStringLiteral("mqtt-client-id"),
        QStringLiteral("MQTT client id (dbhost-server, or dbhost-client-<host>-<pid>)."), QStringLiteral("id"));
    QCommandLineOption const mqttUser(QStringLiteral("mqtt-user"), QStringLiteral("User name at the broker."),
                                      QStringLiteral("name"));
    QCommandLineOption const mqttPasswordFile(QStringLiteral("mqtt-password-file"),
                                              QStringLiteral("File whose first line is the password at the broker."),
                                              QStringLiteral("file"));
    QCommandLineOption const mqttCaFile(QStringLiteral("mqtt-cafile"),
                                        QStringLiteral("CA certificate of the broker: talk TLS."),
                                        QStringLiteral("file"));
    QCommandLineOption const mqttCert(QStringLiteral("mqtt-cert"), QStringLiteral("Client certificate for TLS."),
                                      QStringLiteral("file"));
    QCommandLineOption const mqttKey(QStringLiteral("mqtt-key"), QStringLiteral("Key of the client certificate."),
                                     QStringLiteral("file"));
    QCommandLineOption const mqttPrefix(QStringLiteral("mqtt-prefix"),
                                        QStringLiteral("Topic prefix of this installation (none by default), so that "
                                                       "several share a broker."),
                                        QStringLiteral("prefix"));
    QCommandLineOption const http(QStringLiteral("http"),
                                  QStringLiteral("Serve the read-only inspector (page, change feed, /api, /metrics) at "
                                                 "[ADDR:]PORT; ADDR is 127.0.0.1 by default, PORT 0 takes a free one."),
                                  QStringLiteral("[addr:]port"));
    QCommandLineOption const httpTokenFile(
        QStringLiteral("http-token-file"),
        QStringLiteral("File whose first line is the token every request to the inspector must bring; needed to "
                       "bind beyond loopback."),
        QStringLiteral("file"));
    parser.addOptions({role, brand, knxMode, data, backups, logLevel, dumpSection, mqtt, mqttClientId, mqttUser,
                       mqttPasswordFile, mqttCaFile, mqttCert, mqttKey, mqttPrefix, http, httpTokenFile});
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
    service_t const service(parser.value(role));
    if (service != service_t::server && service != service_t::client && service != service_t::offline)
        return fail(QStringLiteral("unknown role ") + parser.value(role));
    type_brand_t const chosenBrand = type_brand_t::getType(parser.value(brand));
    ps_knx_mode_t const mode(parser.value(knxMode));
    if (mode != ps_knx_mode_t::kdrive && mode != ps_knx_mode_t::baos && mode != ps_knx_mode_t::automatic)
        return fail(QStringLiteral("unknown KNX mode ") + parser.value(knxMode));

    if (parser.isSet(dumpSection)) {
        QString section = parser.value(dumpSection);
        // "realtime" alone is the whole live database, "realtime/items" one section of it.
        host_store_t* dumped = &store;
        for (auto* other : {&liveStore, &presenceStore}) {
            QString const name = other->currentPath().section(QLatin1Char('/'), -1).section(QLatin1Char('.'), 0, 0);
            if (section == name || section.startsWith(name + QLatin1Char('/'))) {
                dumped = other;
                section = section.mid(name.size() + 1);
                break; // "realtime/presencesimulation" is a section of the live database
            }
        }
        // Only when a journal holds changes do the engines have to rebuild the state.
        std::function<QJsonObject()> replayed;
        QStringList unused;
        bool journaled = false;
        for (host_store_t* each : {&store, &liveStore, &presenceStore}) {
            each->load([](QString const&) { return true; }, unused, true);
            for (QJsonObject const& entry : each->inspectJournal(unused))
                journaled = journaled || entry.contains(QStringLiteral("topic"));
        }
        if (journaled) {
            replayed = [&]() {
                database::database_t database(service, chosenBrand, mode);
                QStringList notes;
                QList<QJsonObject> records;
                host_loading_t loading{&store, &liveStore, &presenceStore};
                if (loading.load(database, notes, true))
                    loading.replay(database, notes, records, true);
                for (QString const& note : std::as_const(notes))
                    std::fprintf(stderr, "dbhost: %s\n", qPrintable(note));
                if (dumped == &liveStore)
                    return database.getRealtime()->serialize(false);
                if (dumped == &presenceStore)
                    return database.getPresenceSimulation()->serialize(false);
                return database.getPersistent()->serialize(false);
            };
        }
        return dump(*dumped, section == QLatin1String("all") ? QString() : section, replayed);
    }

    host_mqtt_client_t::options_t broker;
    if (parser.isSet(mqtt)) {
        if (service == service_t::offline)
            return fail(QStringLiteral("--mqtt needs --role server or client"));
        if (!parseBroker(parser.value(mqtt), broker))
            return fail(QStringLiteral("--mqtt takes HOST[:PORT]"));
        broker.clientId = parser.value(mqttClientId);
        broker.user = parser.value(mqttUser);
        if (parser.isSet(mqttPasswordFile)) {
            QFile file(parser.value(mqttPasswordFile));
            if (!file.open(QIODevice::ReadOnly))
                return fail(QStringLiteral("cannot read the password file ") + file.fileName());
            broker.password = QString::fromUtf8(file.readLine()).remove(QLatin1Char('\n')).remove(QLatin1Char('\r'));
        }
        broker.caFile = parser.value(mqttCaFile);
        broker.certFile = parser.value(mqttCert);
        broker.keyFile = parser.value(mqttKey);
    }

    host_http_link_t::options_t inspector;
    if (parser.isSet(http) && !host_http_link_t::parseAddress(parser.value(http), inspector.address, inspector.port))
        return fail(QStringLiteral("--http takes [ADDR:]PORT, such as 8080 or 127.0.0.1:8080"));
    if (parser.isSet(httpTokenFile)) {
        QFile file(parser.value(httpTokenFile));
        if (!file.open(QIODevice::ReadOnly))
            return fail(QStringLiteral("cannot read the token file ") + file.fileName());
        inspector.token = QString::fromUtf8(file.readLine()).trimmed();
        if (inspector.token.isEmpty())
            return fail(QStringLiteral("the token file %1 has no token on its first line").arg(file.fileName()));
    }

    QString error;
    if (parser.isSet(http) && !host_http_link_t::allowed(inspector, error))
        return fail(error);
    if (!store.prepare(error))
        return fail(error);

    // A SIGTERM during a long load and replay is taken once the session runs, not by dying.
    host_session_t::installSignalHandlers();
    database::database_t database(service, chosenBrand, mode);
    QStringList notes;
    host_loading_t const loading{&store, &liveStore, &presenceStore};
    bool const loaded = loading.load(database, notes);
    // The changes reported before the last end that no file holds yet.
    QList<QJsonObject> records;
    int const replayed = loaded ? loading.replay(database, notes, records) : 0;
    for (QString const& note : std::as_const(notes))
        std::fprintf(stderr, "dbhost: %s\n", qPrintable(note));
    if (!loaded) {
        ::utility::logs::classlogs::getInstance()->flush();
        return 2;
    }
    if (replayed > 0)
        std::fprintf(stderr, "dbhost: %d changes replayed from the journals\n", replayed);

    host_session_t session(&database, &store, &liveStore, &presenceStore);
    // Beside a broker, standard input is this process's own: its end ends nothing.
    host_stdio_link_t stdio(parser.isSet(mqtt), parser.isSet(mqtt) && service == service_t::server);
    session.addLink(&stdio);
    std::unique_ptr<host_mqtt_link_t> network;
    if (parser.isSet(mqtt)) {
        network = std::make_unique<host_mqtt_link_t>(service == service_t::server, parser.value(mqttPrefix), broker,
                                                     &database);
        if (!network->open(error))
            return fail(error);
        session.addLink(network.get());
    }
    std::unique_ptr<host_http_link_t> window;
    if (parser.isSet(http)) {
        QString const folder = QFileInfo(parser.value(data)).absoluteFilePath();
        QString const roleName = parser.value(role);
        host_mqtt_link_t const* const broker = network.get();
        QString const brokerAddress = parser.value(mqtt);
        window = std::make_unique<host_http_link_t>(inspector, &database, [=] {
            QJsonObject state{{QStringLiteral("role"), roleName},
                              {QStringLiteral("data"), folder},
                              {QStringLiteral("saves"), host_http_link_t::savesStatus()},
                              {QStringLiteral("journal"), host_http_link_t::journalStatus()}};
            state.insert(QStringLiteral("broker"),
                         broker ? QJsonValue(QJsonObject{{QStringLiteral("address"), brokerAddress},
                                                         {QStringLiteral("connected"), broker->connected()},
                                                         {QStringLiteral("in_step"), broker->inStep()}})
                                : QJsonValue(QJsonValue::Null));
            return state;
        });
        if (!window->listen(error))
            return fail(error);
        std::fprintf(stderr, "dbhost: inspector at http://%s:%d/\n",
                     qPrintable(inspector.address.protocol() == QAbstractSocket::IPv6Protocol
                                    ? QLatin1Char('[') + inspector.address.toString() + QLatin1Char(']')
                                    : inspector.address.toString()),
                     int(window->port()));
        session.addLink(window.get());
    }
    session.restoreRecords(records);
    // The first run leaves the factory database in the folder; after a
    // replay the files take over what the journals held.
    session.saveNow();
    session.start();
    int const status = app.exec();
    ::utility::logs::classlogs::getInstance()->flush();
    return status;
}
