#ifndef FUZZ_FUZZ_SUPPORT_H
#define FUZZ_FUZZ_SUPPORT_H

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <cstddef>
#include <cstdint>

// What every fuzz target shares: one application for the whole run, a silent
// log, the delivery of queued events, and the way a target reports a fault.
namespace fuzz {

/// Creates the application and the library's singletons once; later calls do nothing.
void start();

/// Delivers what the models queued, in as many hops as they take, and deletes
/// what they left for later: each input ends with nothing pending.
void drain();

/// The input as one JSON object; false when it is not one.
bool parseObject(uint8_t const* data, size_t size, QJsonObject& object);

/// The non-empty lines of the input that are JSON objects, at most limit of them.
QList<QJsonObject> objectLines(uint8_t const* data, size_t size, int limit);

/// A choice among count made by the input's bytes: the same input always
/// makes the same choice, and mutations spread inputs over every choice.
int choose(uint8_t const* data, size_t size, int count);

/// Ends the run as a finding: libFuzzer keeps the input that led here.
[[noreturn]] void fail(char const* what, QString const& detail = QString());

/// Counts the log lines of exceptions caught inside the library while it lives.
class exception_watch_t
{
public:
    exception_watch_t();
    ~exception_watch_t();
    exception_watch_t(exception_watch_t const&) = delete;
    exception_watch_t& operator=(exception_watch_t const&) = delete;

    /// The first exception logged, empty when none was.
    QString first() const { return firstException; }

private:
    QString firstException;
};

} // namespace fuzz

#endif // FUZZ_FUZZ_SUPPORT_H
