#include "platform/qjsonserializer/qjsonserializerexception.h"

QJsonSerializerException::QJsonSerializerException(QString const& message)
    : m_message(message)
    , m_what(message.toUtf8())
{
}

char const* QJsonSerializerException::what() const noexcept
{
    return m_what.constData();
}

QString QJsonSerializerException::message() const
{
    return m_message;
}

void QJsonSerializerException::raise() const
{
    throw *this;
}

QJsonSerializerException* QJsonSerializerException::clone() const
{
    return new QJsonSerializerException(*this);
}
