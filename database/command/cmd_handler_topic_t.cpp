#include "database/command/cmd_handler_topic_t.h"

#include "database/base/json_image_t.h"
#include "database/base/literals.h"
#include "database/command/command_t.h"
#include "database/command/define/cmd_type_database_reset_t.h"
#include "database/database_t.h"
#include "database/default/persistent/ps_default_t.h"
#include "database/default/realtime/rt_default_t.h"
#include "database/migration/migration_t.h"
#include "database/persistent/persistent_t.h"
#include "database/presencesimulation/presencesimulation_t.h"
#include "database/realtime/realtime_t.h"

namespace database {
namespace command {

using definition::cmd_type_database_reset_t;
using persistent::persistent_t;
using presencesimulation::presencesimulation_t;
using realtime::realtime_t;

namespace {

/// The façade's engines, read before any of their locks is taken: the
/// façade's accessors take the same locks for a moment.
struct engines_t {
    explicit engines_t(database_t* database)
        : persistent(database ? database->getPersistent() : nullptr)
        , realtime(database ? database->getRealtime() : nullptr)
        , presencesimulation(database ? database->getPresenceSimulation() : nullptr)
    {
    }

    bool complete() const { return persistent && realtime && presencesimulation; }

    persistent_t* persistent;
    realtime_t* realtime;
    presencesimulation_t* presencesimulation;
};

/// Runs body on the engines under the three locks, in the order every code
/// that takes more than one of them keeps: persistent, realtime, presence
/// simulation. Status slots wait meanwhile, so none sees a half-replaced store.
template<class Body>
void underAllLocks(database_t* database, handler_frame_t const& frame, char const* slot, QJsonObject const& packet,
                   Body body)
{
    engines_t const engines(database);
    if (!engines.complete())
        return;
    frame.run(
        engines.persistent->getAccessMutex(), slot, packet,
        [&] {
            body(engines);
            return false;
        },
        engines.realtime->getAccessMutex(), engines.presencesimulation->getAccessMutex());
}

} // namespace

cmd_handler_topic_t::cmd_handler_topic_t(database_t* _database, QObject* parent)
    : QObject(parent)
    , database(_database)
    , requestRoutes(literals::request_command)
{
    frame.log(QStringLiteral("Starting command topic handler engine ..."), ::utility::logs::trace,
              "cmd_handler_topic_t");
    initUpdateSignals();
}

base::topic_routes_t const& cmd_handler_topic_t::routes(form_t form) const
{
    return form == Change ? changeRoutes : requestRoutes;
}

void cmd_handler_topic_t::initUpdateSignals()
{
    using T = cmd_handler_topic_t;
    QString const request = QLatin1Char('^') + literals::request_command;
    requestRoutes.insert(request + QStringLiteral("/persistent/load/database$"), this,
                         &T::onCommandRequestPersistentLoadDatabase);
    requestRoutes.insert(request + QStringLiteral("/presencesimulation/load/database$"), this,
                         &T::onCommandRequestPresencesimulationLoadDatabase);
    requestRoutes.insert(request + QStringLiteral("/smtp/test$"), this, &T::onCommandRequestSMTPTest);
    // Stands behind the request gate, so it never matches; the table keeps the
    // status form of pairing where other processes have always looked for it.
    requestRoutes.insert(QLatin1Char('^') + literals::status_command + QStringLiteral(R"(/pairing/(\w+)$)"), this,
                         &T::onCommandStatusPairing);
    requestRoutes.insert(request + QStringLiteral(R"(/pairing/(\w+)$)"), this, &T::onCommandRequestPairing);
    requestRoutes.insert(request + QStringLiteral(R"(/reset/(\w+)$)"), this, &T::onCommandRequestResetDatabase);
}

bool cmd_handler_topic_t::whoIsRequest(QJsonObject const& packet, bool emitSignal)
{
    return requestRoutes.dispatch("whoIsRequest", packet, emitSignal);
}

bool cmd_handler_topic_t::whoIsChange(QJsonObject const& packet, bool emitSignal)
{
    return changeRoutes.dispatch("whoIsChange", packet, emitSignal,
                                 [this](QJsonObject const& p) { Q_EMIT onCommandUpdatedSomething(p); });
}

void cmd_handler_topic_t::initInternalEvent(bool connect)
{
    using T = cmd_handler_topic_t;
    auto const wire = [this, connect](auto signal, auto slot) {
        if (connect)
            QObject::connect(this, signal, this, slot, Qt::ConnectionType(Qt::QueuedConnection | Qt::UniqueConnection));
        else
            QObject::disconnect(this, signal, this, slot);
    };
    wire(&T::onCommandRequestPersistentLoadDatabase, &T::execCommandRequestPersistentLoadDatabase);
    wire(&T::onCommandRequestPresencesimulationLoadDatabase, &T::execCommandRequestPresencesimulationLoadDatabase);
    wire(&T::onCommandRequestResetDatabase, &T::execCommandRequestResetDatabase);
    internalEvents = connect;
}

void cmd_handler_topic_t::execCommandRequestResetDatabase(QJsonObject _packet, QString _wath)
{
    char const* const slot = "execCommandRequestResetDatabase";
    underAllLocks(database, frame, slot, _packet, [&](engines_t const& engines) {
        QString const kind = _wath.trimmed();
        bool const all = kind == cmd_type_database_reset_t::all.ToString();
        if (all || kind == cmd_type_database_reset_t::presencesimulation.ToString()) {
            frame.log(QStringLiteral("Reset presence simulation ...."), ::utility::logs::warning, slot);
            engines.presencesimulation->getData()->update(nullptr, true);
        }
        if (!all)
            return;
        frame.log(QStringLiteral("Reset realtime ...."), ::utility::logs::warning, slot);
        engines.realtime->update_database(realtime::rt_default_t::getInstance()->getJData(database->getService()),
                                          true);
        frame.log(QStringLiteral("Reset persistent ...."), ::utility::logs::warning, slot);
        engines.persistent->update_database(persistent::ps_default_t::getInstance()->getJData(), true);
    });
}

void cmd_handler_topic_t::execCommandRequestPersistentLoadDatabase(QJsonObject _packet)
{
    char const* const slot = "execCommandRequestPersistentLoadDatabase";
    underAllLocks(database, frame, slot, _packet, [&](engines_t const& engines) {
        QString refusal;
        persistent::ps_data_t* tree = acceptedTree(_packet, refusal);
        if (!tree) {
            refuse(_packet, refusal);
            return;
        }
        tree->deleteLater();
        // Live state and recorded actions of the old configuration aren't carried over.
        frame.log(QStringLiteral("Reset realtime ...."), ::utility::logs::warning, slot);
        engines.realtime->update_database(QJsonObject(), true);
        frame.log(QStringLiteral("Reset presence simulation ...."), ::utility::logs::warning, slot);
        engines.presencesimulation->getData()->update(nullptr, true);
        // By the road of a request, like any replacement of the configuration.
        frame.log(QStringLiteral("Load persistent ...."), ::utility::logs::warning, slot);
        engines.persistent->requestSetDB(tree);
    });
}

void cmd_handler_topic_t::execCommandRequestPresencesimulationLoadDatabase(QJsonObject _packet)
{
    engines_t const engines(database);
    if (!engines.complete())
        return;
    frame.run(engines.presencesimulation->getAccessMutex(), "execCommandRequestPresencesimulationLoadDatabase",
              _packet, [&] {
                  // The week sent along is not read: this order empties the week.
                  presencesimulation::psi_data_t const empty;
                  engines.presencesimulation->deserialize(empty.toJson());
                  return false;
              });
}

persistent::ps_data_t* cmd_handler_topic_t::acceptedTree(QJsonObject const& packet, QString& refusal) const
{
    QJsonValue const payload = packet.value(QStringLiteral("payload"));
    if (!payload.isObject()) {
        refusal = QStringLiteral("The database to load is not a JSON object");
        return nullptr;
    }
    QJsonObject document = payload.toObject();
    // Unknown keys are skipped by the serializer: without one section this
    // would load an empty configuration.
    bool configuration = false;
    for (QString const& key : document.keys())
        configuration = configuration || persistent::ps_data_t::staticMetaObject.indexOfProperty(key.toUtf8()) > 0;
    if (!configuration) {
        refusal = QStringLiteral("The database to load holds no section of the configuration");
        return nullptr;
    }
    // Read before checkData stamps this library's versions over it.
    bool readable = false;
    int const major = migration::migration_t::versions(document).value(0).toInt(&readable);
    auto* migration = migration::migration_t::getInstance();
    if (readable && migration && migration->checkVersion(major) < 0) {
        refusal = QStringLiteral("The database to load is of a newer version");
        return nullptr;
    }
    try {
        persistent::ps_default_t::getInstance()->checkData(document);
        if (auto* tree = utility::getInstance()->serializer()->deserialize<persistent::ps_data_t*>(document, nullptr))
            return tree;
        refusal = QStringLiteral("The database to load does not fit the configuration");
    } catch (QException const& e) {
        refusal = QStringLiteral("The database to load does not fit the configuration: ") + QString::fromUtf8(e.what());
    }
    return nullptr;
}

void cmd_handler_topic_t::refuse(QJsonObject const& packet, QString const& message) const
{
    command_t* command = database ? database->getCommand() : nullptr;
    if (command && command->getData())
        command->getData()->refuse(packet, message);
    else
        base::json_image_t::logObjectError(QString(), packet, message);
}

} // namespace command
} // namespace database
