#include "host_application_t.h"

#include <cstdio>
#include <exception>

host_application_t::host_application_t(int& argc, char** argv)
    : QCoreApplication(argc, argv)
{
}

bool host_application_t::notify(QObject* receiver, QEvent* event)
{
    try {
        return QCoreApplication::notify(receiver, event);
    } catch (std::exception const& e) {
        ++exceptions;
        std::fprintf(stderr, "dbhost: an event ended in an exception, skipped: %s\n", e.what());
    } catch (...) {
        ++exceptions;
        std::fprintf(stderr, "dbhost: an event ended in an unknown exception, skipped\n");
    }
    return false;
}
