// Logs a given number of lines to a file and returns from main at once, so a
// test can check that the queue is drained at exit.
#include "platform/logs/classlogs.h"

#include <QString>

#include <cstdlib>

int main(int argc, char** argv)
{
    if (argc < 3)
        return 2;
    auto* logs = utility::logs::classlogs::getInstance();
    if (!logs->setFile(QString::fromLocal8Bit(argv[1])))
        return 3;
    logs->setThreshold(utility::logs::trace);
    int const count = std::atoi(argv[2]);
    for (int i = 0; i < count; ++i)
        logs->log_asynch(QStringLiteral("line %1").arg(i), utility::logs::trace,
                         QStringLiteral("helper"), __FILE__, __LINE__);
    return 0;
}
