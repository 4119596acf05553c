// Packets of the command channel handed to its router the way the host does:
// an offline process carries out resets and loads, the others pass every
// order on. Up to four JSON lines, each one packet. Faults as for the engines'
// packets: a memory error, undefined behaviour, an exception the library
// caught, and any database left in a state that doesn't save and load as it is.

#include <QJsonObject>
#include <QList>

#include <array>

#include "database/command/cmd_handler_topic_t.h"
#include "database/command/command_t.h"
#include "database/database_t.h"
#include "database/definition/service_t.h"
#include "fuzz_engines.h"
#include "fuzz_support.h"

using database::definition::service_t;

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    // Fewer lines than for the engines: a load of a whole database is one line.
    QList<QJsonObject> const packets = fuzz::objectLines(data, size, 4);
    if (packets.isEmpty())
        return -1;
    // One role per input, chosen by its bytes: a third of the work of trying
    // all three, and every role still reached. Made on first use, never destroyed.
    static fuzz::kept_database_t* databases[3] = {};
    service_t const roles[] = {service_t::server, service_t::client, service_t::offline};
    int const role = fuzz::choose(data, size, 3);
    if (!databases[role])
        databases[role] = new fuzz::kept_database_t(roles[role]);
    fuzz::kept_database_t* const kept = databases[role];
    database::database_t& database = kept->get();
    database::command::cmd_handler_topic_t* router = database.getCommand()->getHandlerTopic();
    std::array<QJsonObject, 3> saved;
    {
        fuzz::exception_watch_t exceptions;
        for (QJsonObject const& packet : packets) {
            if (router->whoIsRequest(packet, false) && database.getService() == service_t::offline)
                router->whoIsRequest(packet, true);
            fuzz::drain();
        }
        for (fuzz::engine_t engine : {fuzz::persistent, fuzz::realtime, fuzz::presencesimulation})
            saved.at(engine) = fuzz::image(database, engine); // a reset or a load rebuilt it already
        fuzz::drain();
        if (!exceptions.first().isEmpty())
            fuzz::fail("an exception was caught inside the library", exceptions.first());
    }
    for (fuzz::engine_t engine : {fuzz::persistent, fuzz::realtime, fuzz::presencesimulation}) {
        if (saved.at(engine) != kept->first(engine))
            fuzz::checkRoundTrip(engine, saved.at(engine));
    }
    kept->restore(saved);
    return 0;
}
