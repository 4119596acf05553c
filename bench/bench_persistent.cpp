// What a large installation costs the persistent engine: rebuilding the image
// with its hashes, and applying a burst of item requests.

#include <QtTest>

#include "database/database_t.h"
#include "database/definition/service_t.h"
#include "database/definition/type_brand_t.h"
#include "database/persistent/persistent_t.h"
#include "platform/logs/classlogs.h"

using database::database_t;
using database::definition::service_t;
using database::definition::type_brand_t;

namespace {

QJsonObject itemRequest(int n)
{
    QJsonObject const item{{"id_driver", ""}, {"name", QStringLiteral("item %1").arg(n)}, {"enabled", true},
                           {"status", "1/1/1"}, {"command", "1/1/2"}, {"feedback", "1/1/3"}, {"type", "dtp_1"}};
    return QJsonObject{{"topic", QStringLiteral("request/DB/persistent/items/objects_list/I%1").arg(n)},
                       {"payload", item}};
}

} // namespace

class bench_persistent : public QObject
{
    Q_OBJECT

    static constexpr int itemCount = 2000;
    database_t* db = nullptr;

private Q_SLOTS:
    void initTestCase()
    {
        ::utility::logs::classlogs::getInstance()->setThreshold(::utility::logs::exception);
        db = new database_t(service_t::server, type_brand_t::HALDO);
        for (int n = 0; n < itemCount; ++n)
            db->getPersistent()->update(itemRequest(n));
        QTRY_COMPARE_WITH_TIMEOUT(db->getPersistent()->getData()->getItems()->getObjects().size(), itemCount, 60000);
    }

    void cleanupTestCase() { delete db; }

    /// The image and its digests (each section and the whole) with 2000 items.
    void serializeAndHash()
    {
        QBENCHMARK {
            db->getPersistent()->serialize(true);
        }
    }

    /// 100 item requests from the host to their change signals.
    void applyBurstOfItemRequests()
    {
        int round = 0;
        QBENCHMARK {
            for (int n = 0; n < 100; ++n)
                db->getPersistent()->update(itemRequest(itemCount + round * 100 + n));
            QCoreApplication::processEvents();
            QCoreApplication::processEvents();
            ++round;
        }
    }
};

QTEST_GUILESS_MAIN(bench_persistent)
#include "bench_persistent.moc"
