#ifndef HOST_DBHOST_HOST_APPLICATION_T_H
#define HOST_DBHOST_HOST_APPLICATION_T_H

#include <QCoreApplication>

/**
 * The host's application object. Packets come from other processes: an event
 * that ends in an exception is reported on standard error and the loop goes
 * on, instead of the process ending with every other process's data unsaved.
 */
class host_application_t : public QCoreApplication
{
    Q_OBJECT
public:
    host_application_t(int& argc, char** argv);

    bool notify(QObject* receiver, QEvent* event) override;

    /// Exceptions caught so far.
    int caught() const { return exceptions; }

private:
    int exceptions = 0;
};

#endif // HOST_DBHOST_HOST_APPLICATION_T_H
