// Creates an offline database of the default brand and prints the hash of its
// persistent image: the smallest program that uses the installed library.

#include <QCoreApplication>

#include <cstdio>

#include "database/database_t.h"
#include "database/definition/service_t.h"
#include "database/definition/type_brand_t.h"
#include "database/persistent/persistent_t.h"
#include "platform/logs/classlogs.h"

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    ::utility::logs::classlogs::getInstance()->setThreshold(::utility::logs::exception);
    database::database_t database(database::definition::service_t::offline,
                                  database::definition::type_brand_t::HALDO);
    std::printf("%s\n", qPrintable(database.getPersistent()->getHash()));
    return 0;
}
