#ifndef PLATFORM_QJSONSERIALIZER_QJSONSERIALIZEREXCEPTION_H
#define PLATFORM_QJSONSERIALIZER_QJSONSERIALIZEREXCEPTION_H

#include <QByteArray>
#include <QException>
#include <QString>

#include "platform/qjsonserializer/qjsonserializer_export.h"

/**
 * Raised when a value cannot be turned into JSON (a type without a JSON
 * form, or an object tree nested too deep). The message starts with the
 * property path where it happened, e.g. "objects/K1/colour: ...".
 */
class QJSONSERIALIZER_EXPORT QJsonSerializerException : public QException
{
public:
    explicit QJsonSerializerException(QString const& message);

    /// The message in UTF-8; valid as long as the exception lives.
    char const* what() const noexcept override;
    QString message() const;

    void raise() const override;
    QJsonSerializerException* clone() const override;

private:
    QString m_message;
    QByteArray m_what; // kept so what() can hand out a stable pointer
};

#endif // PLATFORM_QJSONSERIALIZER_QJSONSERIALIZEREXCEPTION_H
