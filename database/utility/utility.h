#ifndef DATABASE_UTILITY_UTILITY_H
#define DATABASE_UTILITY_UTILITY_H

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QMap>
#include <QString>
#include <QVariant>

#include "database/database_export.h"

class QJsonSerializer;

namespace database {

/**
 * The library's toolkit, used as a singleton: the one JSON serializer, the
 * JSON path reader and writer, comparison and SHA-1 hashes of JSON trees, and
 * a few small services. The JSON functions keep no state and are reentrant.
 */
class DATABASE_EXPORT utility
{
public:
    /// Created at the first call and never freed; the first call is made by
    /// the façade's constructor, so it is not guarded against concurrent first use.
    static utility* getInstance();
    ~utility();

    QJsonSerializer* serializer() const;

    // Packets.
    static QJsonObject request2status(QJsonObject packet);
    static QJsonObject status2request(QJsonObject packet);

    // JSON paths: steps separated by "/", array elements as "n", "[n]" or "name[n]".
    static QJsonValue getJsonValue(QJsonDocument doc, QString const& path);
    static QJsonValue getJsonSubValue(QJsonValue& value, QString const& path);
    static bool updateJsonValue(QJsonDocument& doc, QString const& path, QJsonValue const& newValue,
                                QString& operation);
    static bool updateJsonSubValue(QJsonValue& value, QString const& path, QJsonValue const& newValue,
                                   QString& operation);
    static void modifyJsonValue(QJsonObject& object, QString const& path, QJsonValue const& newValue);
    static void modifyJsonValue(QJsonValue source, QJsonObject& destination, QList<QString> path,
                                QJsonValue const& newValue);

    // Comparison and hashes.
    static QList<QString> compareJdata(QJsonObject first, QJsonObject second);
    static bool compareVariantMap(QMap<QString, QVariant> first, QMap<QString, QVariant> second);
    static QMap<QString, QString> calcolateHash(QJsonObject object);
    static QString createStringHash(QString text);
    static QString JsonToString(QJsonObject object, QJsonDocument::JsonFormat format);

    // Small services.
    static bool isValidIP(QString const& address);
    static double ConvertDegreeAngleToDouble(double degrees, double minutes, double seconds);
    static QString generateUUId();
    static void aSleep(int seconds);
    static void amSleep(int milliseconds);
    static QList<QString> getMatchRegex(QString text, QString pattern);

    /// Characters hosts allow in free texts, as a piece of a regular expression.
    QString allowedCharacters() const;

    // Registration of the container aliases with the meta-type system, by group.
    static void initGenericType(bool run);
    static void initPersistentType(bool run);
    static void initRealTimeType(bool run);
    static void initPresenceSimulationType(bool run);

private:
    utility();
    utility(utility const&) = delete;
    utility& operator=(utility const&) = delete;

    QJsonSerializer* m_serializer = nullptr;
    QString m_allowedCharacters;

    static utility* m_utility;
    static bool initSerializerType;
};

} // namespace database

#endif // DATABASE_UTILITY_UTILITY_H
