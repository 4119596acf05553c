// Packets handed to update() of one engine (FUZZ_ENGINE) in each role. The
// input is up to sixteen JSON lines, each one packet, so that the fuzzer can
// build sequences (add an object, then change it). Faults: a memory error or
// undefined behaviour, an exception the library caught and logged, and a state
// left behind that doesn't save and load as it is.

#include <QJsonObject>
#include <QList>

#include <array>

#include "database/database_t.h"
#include "database/definition/service_t.h"
#include "database/definition/type_brand_t.h"
#include "fuzz_engines.h"
#include "fuzz_support.h"

using database::definition::service_t;

namespace {

constexpr auto engine = fuzz::engine_t(FUZZ_ENGINE);

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    QList<QJsonObject> const packets = fuzz::objectLines(data, size, 16);
    if (packets.isEmpty())
        return -1; // not worth keeping in the corpus
    // One role per input, chosen by its bytes: a third of the work of trying
    // all three, and every role still reached. Made on first use, never destroyed.
    static fuzz::kept_database_t* databases[3] = {};
    service_t const roles[] = {service_t::server, service_t::client, service_t::offline};
    int const role = fuzz::choose(data, size, 3);
    if (!databases[role])
        databases[role] = new fuzz::kept_database_t(roles[role]);
    fuzz::kept_database_t* const kept = databases[role];
    database::database_t& database = kept->get();
    QJsonObject saved;
    {
        fuzz::exception_watch_t exceptions;
        for (QJsonObject const& packet : packets) {
            fuzz::update(database, engine, packet);
            fuzz::drain();
        }
        // With force: a change that didn't mark the image stale is still seen.
        saved = fuzz::image(database, engine, true);
        fuzz::drain();
        if (!exceptions.first().isEmpty())
            fuzz::fail("an exception was caught inside the library", exceptions.first());
    }
    // What changed must save and load as it is; then the next input starts afresh.
    if (saved != kept->first(engine))
        fuzz::checkRoundTrip(engine, saved);
    std::array<QJsonObject, 3> known;
    known.at(engine) = saved;
    kept->restore(known);
    return 0;
}
