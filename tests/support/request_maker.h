#ifndef TESTS_SUPPORT_REQUEST_MAKER_H
#define TESTS_SUPPORT_REQUEST_MAKER_H

#include <QJsonArray>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QString>

#include "support/dbhost_packets.h"

/// Random requests of the kinds an installation makes all day.
class request_maker_t
{
public:
    explicit request_maker_t(quint32 seed)
        : random(seed)
    {
    }

    QByteArray next()
    {
        int const kind = pick(100);
        if (kind < 40)
            return item();
        if (kind < 65)
            return element();
        if (kind < 80)
            return schedule();
        if (kind < 90)
            return bus();
        if (kind < 95)
            return packetLine(pick(2) ? "request/DB/persistent/drivers/driver_knx/enabled"
                                      : "request/DB/persistent/drivers/driver_baos/enabled",
                              pick(2) == 1);
        return action();
    }

    int pick(int bound) { return int(random.bounded(bound)); }
    /// One of count keys with this letter.
    QString key(char const* letter, int count) { return letter + QString::number(pick(count)); }

private:
    QByteArray item()
    {
        QString const topic = "request/DB/persistent/items/objects_list/" + key("K", 60);
        // A removal is an empty object for the library, null on the wire: both are sent.
        if (pick(100) < 15)
            return packetLine(topic, pick(2) ? QJsonValue(QJsonObject()) : QJsonValue());
        return packetLine(topic, itemPayload("item " + key("", 1000), pick(9)));
    }

    QByteArray element()
    {
        if (pick(100) < 25) {
            QString const id = key("R", 5);
            return packetLine("request/DB/persistent/elements/objects_list/" + id,
                              QJsonObject{{"@class", "psoe_room"}, {"name", "room " + id}, {"description", ""},
                                          {"element_list", QJsonArray()}, {"rooms", QJsonArray()}});
        }
        QString const topic = "request/DB/persistent/elements/objects_list/" + key("E", 20);
        if (pick(100) < 15)
            return packetLine(topic, QJsonObject());
        QString const target = key("K", 60);
        return packetLine(topic, QJsonObject{{"@class", "psoe_onoff"},
                                             {"name", "switch " + key("", 1000)},
                                             {"description", ""},
                                             {"function_map", QJsonObject{{"onoff", target}, {"status", target}}},
                                             {"rooms", QJsonArray{key("R", 5)}}});
    }

    QByteArray schedule()
    {
        QString const id = key("S", 10);
        QString const topic = "request/DB/persistent/schedulers/objects_list/" + id;
        if (pick(100) < 15)
            return packetLine(topic, QJsonValue::Null);
        // "item" isn't a type the consistency check knows: such an entry goes at the next check.
        QJsonObject const action{{"enabled", true}, {"order", 0}, {"delay", 0}, {"type", pick(2) ? "@item" : "item"},
                                 {"id", key("K", 60)}, {"value", key("", 2)}, {"args", ""}};
        QJsonObject const cron{{"pattern", QStringLiteral("%1 %2 * * *").arg(pick(60)).arg(pick(24))},
                               {"validity", ""},
                               {"objects_list", QJsonObject{{"a1", action}}}};
        return packetLine(topic, QJsonObject{{"name", "schedule " + id}, {"element_id", key("E", 20)},
                                             {"enabled", pick(2) == 1}, {"permission", 0},
                                             {"cron_list", QJsonObject{{"c1", cron}}}, {"astro_list", QJsonObject()}});
    }

    QByteArray bus()
    {
        QJsonObject const params{{"address", "15.15." + key("", 250)}};
        return packetLine("request/DB/persistent/drivers/driver_knx/bus/" + QString::number(1 + pick(4)),
                          QJsonObject{{"enabled", pick(2) == 1}, {"init_loop_interval", 5}, {"type", "TUNNELING"},
                                      {"params", params}});
    }

    /// An action of the presence simulation's week, or its removal.
    QByteArray action()
    {
        QString const topic = QStringLiteral("request/DB/presencesimulation/week/days/%1/hours/%2/minutes/%3/actions/")
                                  .arg(1 + pick(7))
                                  .arg(pick(3))
                                  .arg(pick(3))
                              + key("K", 10);
        return packetLine(topic, pick(4) == 0 ? QJsonValue() : QJsonValue(key("", 2)));
    }

    QRandomGenerator random;
};

#endif // TESTS_SUPPORT_REQUEST_MAKER_H
