#include <QJsonObject>
#include <QtTest>

#include "bench_serializer_items.h"
#include "platform/qjsonserializer/qjsonserializer.h"

using namespace bench;

class bench_serializer : public QObject
{
    Q_OBJECT

    static constexpr int itemCount = 10000;

    QObject m_owner;
    map_bench_items m_items;
    QJsonObject m_json;

    static void withClass_data()
    {
        QTest::addColumn<bool>("withClass");
        QTest::newRow("without @class") << false;
        QTest::newRow("with @class") << true;
    }

    /// "@class" is written for every class only when polymorphing is forced.
    static void configure(QJsonSerializer& serializer, bool withClass)
    {
        serializer.setPolymorphing(withClass ? QJsonSerializer::Forced : QJsonSerializer::Enabled);
        serializer.setPolymorphingMode(QJsonSerializer::ShortName);
    }

private Q_SLOTS:
    void initTestCase()
    {
        QJsonSerializer::registerMapAlias<bench_item>("map_bench_items");
        m_items = makeItems(itemCount, &m_owner);
        m_json = byHand(m_items, false);
        // The same check holds in the test suite (tst_bench_references), with fewer items.
        QJsonSerializer serializer;
        configure(serializer, false);
        QCOMPARE(serializer.serialize(m_items), QJsonValue(m_json));
    }

    void serializeWithSerializer_data() { withClass_data(); }
    void serializeWithSerializer()
    {
        QFETCH(bool, withClass);
        QJsonSerializer serializer;
        configure(serializer, withClass);
        QVariant const data = QVariant::fromValue(m_items);
        QBENCHMARK {
            QJsonValue const json = serializer.serializeImpl(data);
            Q_UNUSED(json);
        }
    }

    void serializeByHand_data() { withClass_data(); }
    void serializeByHand()
    {
        QFETCH(bool, withClass);
        QBENCHMARK {
            QJsonObject const json = byHand(m_items, withClass);
            Q_UNUSED(json);
        }
    }

    void deserializeWithSerializer()
    {
        QJsonSerializer serializer;
        QBENCHMARK {
            QObject parent;
            map_bench_items const items = serializer.deserialize<map_bench_items>(m_json, &parent);
            Q_UNUSED(items);
        }
    }

    void deserializeByHand()
    {
        QBENCHMARK {
            QObject parent;
            map_bench_items const items = byHand(m_json, &parent);
            Q_UNUSED(items);
        }
    }
};

QTEST_GUILESS_MAIN(bench_serializer)
#include "bench_serializer.moc"
