// A stored document handed to loadFromJson() of one engine (FUZZ_ENGINE), as
// the host does with a file, through the migration of every older generation
// and of the current one. Faults: a memory error or undefined behaviour, and a
// document that loads but whose image doesn't save and load as it is.

#include <QJsonObject>

#include "database/database_t.h"
#include "database/definition/service_t.h"
#include "database/definition/type_brand_t.h"
#include "database/migration/migration_t.h"
#include "fuzz_engines.h"
#include "fuzz_support.h"

namespace {

constexpr auto engine = fuzz::engine_t(FUZZ_ENGINE);

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    QJsonObject document;
    if (!fuzz::parseObject(data, size, document))
        return -1;
    // One façade for the run: each load replaces the engine's tree.
    static fuzz::kept_database_t* const kept = new fuzz::kept_database_t(database::definition::service_t::offline);
    database::database_t& database = kept->get();
    int const current = database::database_t::getVersion().section(QLatin1Char('.'), 0, 0).toInt();

    // The driver on its own: the persistent document decides the generation of all three.
    {
        QJsonObject persistent = document, realtime = document, presence = document;
        int errors[3] = {};
        database::migration::migration_t::getInstance()->needMigration(persistent);
        database::migration::migration_t::getInstance()->migrate(persistent, realtime, presence, errors[0],
                                                                 errors[1], errors[2]);
    }
    // Every stored generation the engines that follow the persistent file may
    // be given; the persistent document carries its generation itself.
    int const first = engine == fuzz::persistent ? current : 1;
    int const last = engine == fuzz::persistent ? current : current + 1;
    for (int storedMajor = first; storedMajor <= last; ++storedMajor) {
        bool const loaded = fuzz::loadFromJson(database, engine, document, storedMajor);
        fuzz::drain();
        if (loaded && storedMajor == current) {
            QJsonObject const saved = fuzz::image(database, engine);
            fuzz::drain();
            fuzz::checkRoundTrip(engine, saved);
        }
    }
    return 0;
}
