#include "fuzz_support.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QThreadPool>

#include <cstdio>
#include <cstdlib>

#include "database/utility/utility.h"
#include "platform/logs/classlogs.h"

namespace fuzz {

namespace {

void quietMessages(QtMsgType type, QMessageLogContext const&, QString const& message)
{
    // Warnings of Qt are part of refusing bad input; fatal ones still end the run.
    if (type == QtFatalMsg) {
        std::fprintf(stderr, "qFatal: %s\n", qPrintable(message));
        std::abort();
    }
}

} // namespace

void start()
{
    static QCoreApplication* application = nullptr;
    if (application)
        return;
    static int argc = 1;
    static char name[] = "fuzz";
    static char* argv[] = {name, nullptr};
    application = new QCoreApplication(argc, argv);
    qInstallMessageHandler(quietMessages);
    // Refusals are logged by the thousand; nothing of them is worth the time to print.
    ::utility::logs::classlogs::getInstance()->setThreshold(::utility::logs::LogLevel(0));
    database::utility::getInstance();
}

void drain()
{
    for (int round = 0; round < 8; ++round) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    QThreadPool::globalInstance()->waitForDone();
}

bool parseObject(uint8_t const* data, size_t size, QJsonObject& object)
{
    QJsonParseError error{};
    QJsonDocument const document =
        QJsonDocument::fromJson(QByteArray::fromRawData(reinterpret_cast<char const*>(data), qsizetype(size)), &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return false;
    object = document.object();
    return true;
}

QList<QJsonObject> objectLines(uint8_t const* data, size_t size, int limit)
{
    QList<QJsonObject> objects;
    QByteArray const text(reinterpret_cast<char const*>(data), qsizetype(size));
    for (QByteArray const& line : text.split('\n')) {
        QJsonObject object;
        if (objects.size() < limit && parseObject(reinterpret_cast<uint8_t const*>(line.constData()),
                                                  size_t(line.size()), object))
            objects.append(object);
    }
    return objects;
}

int choose(uint8_t const* data, size_t size, int count)
{
    quint32 hash = 2166136261u; // FNV-1a
    for (size_t i = 0; i < size; ++i)
        hash = (hash ^ data[i]) * 16777619u;
    return int(hash % quint32(count));
}

void fail(char const* what, QString const& detail)
{
    std::fprintf(stderr, "FUZZ FINDING: %s\n%s\n", what, qPrintable(detail));
    std::abort();
}

exception_watch_t::exception_watch_t()
{
    ::utility::logs::classlogs::getInstance()->setCapture([this](::utility::logs::logrecord const& record) {
        if (record.level == ::utility::logs::exception && firstException.isEmpty())
            firstException = record.source + QStringLiteral(": ") + record.message;
    });
}

exception_watch_t::~exception_watch_t()
{
    ::utility::logs::classlogs::getInstance()->setCapture(nullptr);
}

} // namespace fuzz

// Every target starts the same way; libFuzzer calls this once before the first input.
extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    fuzz::start();
    return 0;
}
