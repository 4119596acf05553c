// The hottest road of the library: live values of items arriving as status
// packets, from realtime_t::update to the change signal, with 100, 1,000 and
// 10,000 items in the tree; and the image rebuild the engine requires.

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QtTest>

#include "database/database_t.h"
#include "database/definition/service_t.h"
#include "database/definition/type_brand_t.h"
#include "database/realtime/dbs/rt_items_t.h"
#include "database/realtime/objects/rt_object_item_t.h"
#include "database/realtime/realtime_t.h"
#include "platform/logs/classlogs.h"

using database::database_t;
using database::definition::service_t;
using database::definition::type_brand_t;
using database::realtime::rt_handler_topic_t;
using database::realtime::objects::rt_object_item_t;

namespace {

void fill(database_t& db, int items)
{
    auto* tree = db.getRealtime()->getData()->getItems();
    for (int n = 0; n < items; ++n) {
        rt_object_item_t item(QStringLiteral("1/1/%1").arg(n), QStringLiteral("0"), nullptr);
        tree->update_item(QStringLiteral("I%1").arg(n), &item, false);
    }
    db.getRealtime()->serialize(true);
}

} // namespace

class bench_realtime : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { ::utility::logs::classlogs::getInstance()->setThreshold(::utility::logs::exception); }

    void liveValues_data()
    {
        QTest::addColumn<int>("items");
        QTest::newRow("100 items") << 100;
        QTest::newRow("1000 items") << 1000;
        QTest::newRow("10000 items") << 10000;
    }

    /// Status packets of item values per second, every image rebuild included.
    void liveValues()
    {
        QFETCH(int, items);
        database_t db(service_t::client, type_brand_t::HALDO);
        fill(db, items);
        int changes = 0;
        connect(db.getRealtime()->getHandlerTopic(), &rt_handler_topic_t::onRealtimeChangeItem, this,
                [&changes] { ++changes; });
        QRandomGenerator random(7);
        int const packets = 2100;
        QElapsedTimer clock;
        clock.start();
        for (int n = 0; n < packets; ++n) {
            QJsonObject const packet{
                {"topic", QStringLiteral("status/DB/realtime/items/objects_list/I%1/value").arg(random.bounded(items))},
                {"payload", QString::number(random.bounded(1000))}};
            db.getRealtime()->update(packet);
            // A host's event loop turns between packets.
            QCoreApplication::processEvents();
        }
        while (changes < packets)
            QCoreApplication::processEvents();
        qint64 const elapsed = clock.nsecsElapsed();
        qInfo("%d items: %.0f live values per second (%.1f us each)", items, packets * 1e9 / double(elapsed),
              double(elapsed) / packets / 1000.0);
    }

    void imageRebuild_data() { liveValues_data(); }

    /// One rebuild of the image and its hashes, which every 21st update forces.
    void imageRebuild()
    {
        QFETCH(int, items);
        database_t db(service_t::client, type_brand_t::HALDO);
        fill(db, items);
        QBENCHMARK {
            db.getRealtime()->serialize(true);
        }
    }
};

QTEST_GUILESS_MAIN(bench_realtime)
#include "bench_realtime.moc"
