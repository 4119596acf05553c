#ifndef TESTS_SUPPORT_DBHOST_PACKETS_H
#define TESTS_SUPPORT_DBHOST_PACKETS_H

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

/// One packet as a JSON line for a host's standard input.
inline QByteArray packetLine(QString const& topic, QJsonValue const& payload)
{
    return QJsonDocument(QJsonObject{{"topic", topic}, {"payload", payload}}).toJson(QJsonDocument::Compact);
}

/// A KNX item as the configuration holds it; group varies its status address.
inline QJsonObject itemPayload(QString const& name, int group = 1)
{
    return {{"id_driver", "drivers/driver_knx/1"}, {"name", name}, {"description", ""}, {"enabled", true},
            {"status", QStringLiteral("1/1/%1").arg(group)}, {"command", "1/1/1"}, {"feedback", "1/1/3"},
            {"type", "dtp_1"}, {"typeformat", ""}, {"interpreter", ""}, {"tracking", false}, {"flags", 0}};
}

/// The request that adds or changes an item.
inline QByteArray itemLine(QString const& id, QString const& name)
{
    return packetLine("request/DB/persistent/items/objects_list/" + id, itemPayload(name));
}

#endif // TESTS_SUPPORT_DBHOST_PACKETS_H
