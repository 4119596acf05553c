#include "platform/qjsonserializer/qjsondeserializationexception.h"

QJsonDeserializationException::QJsonDeserializationException(QString const& message)
    : QJsonSerializerException(message)
{
}

void QJsonDeserializationException::raise() const
{
    throw *this;
}

QJsonDeserializationException* QJsonDeserializationException::clone() const
{
    return new QJsonDeserializationException(*this);
}
