#ifndef FUZZ_FUZZ_ENGINES_H
#define FUZZ_FUZZ_ENGINES_H

#include <QJsonObject>
#include <QString>

#include <array>
#include <memory>

#include "database/definition/service_t.h"

namespace database {
class database_t;
}

namespace fuzz {

/// The three engines, chosen by a number where the targets are built: one
/// source serves the targets of every engine.
enum engine_t { persistent = 0, realtime = 1, presencesimulation = 2 };

/// The name of an engine in its topics: "persistent", "realtime", "presencesimulation".
QString engineName(engine_t engine);

/// What a target does with one engine of a façade.
bool update(database::database_t& database, engine_t engine, QJsonObject const& packet);
/// The engine's image: rebuilt now with force, otherwise only when a change
/// since the last rebuild left it stale.
QJsonObject image(database::database_t& database, engine_t engine, bool force = false);
/// Loads a stored document the way the host does; false when the engine refused it.
/// storedMajor is the generation of the persistent file for the engines that follow it.
bool loadFromJson(database::database_t& database, engine_t engine, QJsonObject document, int storedMajor);

/// Loads an image into an offline façade and compares the image it makes:
/// what a save and a restart would keep. A fault when the two differ. An
/// image checked before is not checked again: the outcome would be the same.
void checkRoundTrip(engine_t engine, QJsonObject const& saved);

/// A façade kept for the whole run, since making one costs far more than an
/// input: after each input, the engines whose image changed are loaded back
/// from their first image, so that every input starts from the same state.
class kept_database_t
{
public:
    explicit kept_database_t(database::definition::service_t const& role);
    ~kept_database_t();

    database::database_t& get() { return *database; }
    /// The image the engine had when the façade was made.
    QJsonObject const& first(engine_t engine) const { return images.at(engine); }
    /// Makes the present images the state every input starts from.
    void keepPresent();
    /// Puts the changed engines back; a fault when one can't be. known holds
    /// the images an input already took after its last change, by engine
    /// (empty where it took none): those engines are not serialized again.
    void restore(std::array<QJsonObject, 3> const& known = {});

private:
    std::unique_ptr<database::database_t> database;
    std::array<QJsonObject, 3> images;
};

} // namespace fuzz

#endif // FUZZ_FUZZ_ENGINES_H
