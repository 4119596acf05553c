#ifndef TESTS_SUPPORT_MODEL_TEST_H
#define TESTS_SUPPORT_MODEL_TEST_H

#include <QCoreApplication>
#include <QEvent>

#include "database/utility/utility.h"
#include "platform/qjsonserializer/qjsonserializer.h"

/// The library's one serializer, as the models use it.
inline QJsonSerializer* serializer()
{
    return database::utility::getInstance()->serializer();
}

/// Delivers what the models queued and deletes what they left for later.
inline void drainEvents()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

#endif // TESTS_SUPPORT_MODEL_TEST_H
