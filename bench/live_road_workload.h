#ifndef BENCH_LIVE_ROAD_WORKLOAD_H
#define BENCH_LIVE_ROAD_WORKLOAD_H

#include <QJsonObject>
#include <QString>

#include <functional>
#include <vector>

#include "database/database_t.h"
#include "database/persistent/dbs/ps_items_t.h"
#include "database/persistent/objects/ps_object_item_t.h"
#include "database/persistent/persistent_t.h"
#include "database/realtime/dbs/rt_items_t.h"
#include "database/realtime/objects/rt_object_item_t.h"
#include "database/realtime/realtime_t.h"

// The workload of the live road, shared by the library's benchmark and the
// host's; the peer (bench/peer/live_road.js) draws the same sequence.
namespace live_road {

/// The random changes: key index and value of each, from xorshift32 as in bench/peer/live_road.js.
struct workload_t {
    std::vector<int> keys;
    std::vector<int> values;
    qint64 checksum = 0;
};

inline workload_t workload(int items, int changes)
{
    workload_t w;
    quint32 x = 2463534242u;
    auto next = [&x] {
        x ^= x << 13;
        x ^= x >> 17;
        x ^= x << 5;
        return x;
    };
    for (int i = 0; i < changes; ++i) {
        w.keys.push_back(int(next() % quint32(items)));
        w.values.push_back(int(next() % 1000u));
        w.checksum = (w.checksum * 31 + w.keys.back() * 1000 + w.values.back()) % 1000000007;
    }
    return w;
}

inline QJsonObject itemPayload(int n, int value)
{
    return QJsonObject{{"id_driver", ""},        {"name", QStringLiteral("item %1").arg(value)},
                       {"enabled", true},        {"status", QStringLiteral("1/1/%1").arg(n)},
                       {"command", "1/1/2"},     {"feedback", "1/1/3"},
                       {"type", "dtp_1"}};
}

inline QJsonObject realtimePacket(int n, int value)
{
    return QJsonObject{{"topic", QStringLiteral("status/DB/realtime/items/objects_list/I%1/value").arg(n)},
                       {"payload", QString::number(value)}};
}

inline QJsonObject persistentPacket(int n, int value)
{
    return QJsonObject{{"topic", QStringLiteral("status/DB/persistent/items/objects_list/I%1").arg(n)},
                       {"payload", itemPayload(n, value)}};
}

/// Items I0 ... of the realtime tree with value "0".
inline void fillRealtime(database::database_t& db, int items)
{
    auto* tree = db.getRealtime()->getData()->getItems();
    for (int n = 0; n < items; ++n) {
        database::realtime::objects::rt_object_item_t item(QStringLiteral("1/1/%1").arg(n), QStringLiteral("0"), nullptr);
        tree->update_item(QStringLiteral("I%1").arg(n), &item, false);
    }
    db.getRealtime()->serialize(true);
}

/// Items I0 ... of the persistent tree as payloadOf(n) gives them (itemPayload(n, 0) by default).
inline void fillPersistent(database::database_t& db, int items,
                           std::function<QJsonObject(int)> const& payloadOf = [](int n) { return itemPayload(n, 0); })
{
    auto* tree = db.getPersistent()->getData()->getItems();
    for (int n = 0; n < items; ++n) {
        QJsonObject const payload = payloadOf(n);
        database::persistent::objects::ps_object_item_t item;
        for (auto it = payload.begin(); it != payload.end(); ++it)
            item.setProperty(it.key().toLatin1().constData(), it.value().toVariant());
        tree->update_items(QStringLiteral("I%1").arg(n), &item, false);
    }
    db.getPersistent()->serialize(true);
}

} // namespace live_road

#endif // BENCH_LIVE_ROAD_WORKLOAD_H
