#ifndef PLATFORM_QJSONSERIALIZER_QJSONDESERIALIZATIONEXCEPTION_H
#define PLATFORM_QJSONSERIALIZER_QJSONDESERIALIZATIONEXCEPTION_H

#include "platform/qjsonserializer/qjsonserializerexception.h"

/**
 * Raised when JSON does not fit the type it is read into. The message names
 * the property path, e.g. "objects_list/K1/label: expected a string, got an
 * array". Nothing built before the failure survives it.
 */
class QJSONSERIALIZER_EXPORT QJsonDeserializationException : public QJsonSerializerException
{
public:
    explicit QJsonDeserializationException(QString const& message);

    void raise() const override;
    QJsonDeserializationException* clone() const override;
};

#endif // PLATFORM_QJSONSERIALIZER_QJSONDESERIALIZATIONEXCEPTION_H
