// The references the benchmarks measure against must give what is measured:
// a benchmark whose hand-written reference differs measures nothing.

#include <QtTest>

#include "bench/bench_serializer_items.h"
#include "platform/qjsonserializer/qjsonserializer.h"

using namespace bench;

class tst_bench_references : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QJsonSerializer::registerMapAlias<bench_item>("map_bench_items"); }

    void serializerWritesTheHandWrittenJson_data()
    {
        QTest::addColumn<bool>("withClass");
        QTest::newRow("polymorphing enabled: no @class for a plain class") << false;
        QTest::newRow("polymorphing forced") << true;
    }

    void serializerWritesTheHandWrittenJson()
    {
        QFETCH(bool, withClass);
        QObject owner;
        map_bench_items const items = makeItems(300, &owner);
        QJsonSerializer serializer;
        serializer.setPolymorphing(withClass ? QJsonSerializer::Forced : QJsonSerializer::Enabled);
        serializer.setPolymorphingMode(QJsonSerializer::ShortName);
        QCOMPARE(serializer.serialize(items), QJsonValue(byHand(items, withClass)));
    }

    void serializerReadsWhatTheHandWrittenReaderReads()
    {
        QObject owner;
        QJsonObject const json = byHand(makeItems(300, &owner), false);
        QObject parent;
        map_bench_items const read = QJsonSerializer().deserialize<map_bench_items>(json, &parent);
        map_bench_items const expected = byHand(json, &parent);
        QCOMPARE(read.keys(), expected.keys());
        for (auto it = read.cbegin(); it != read.cend(); ++it) {
            bench_item const* mine = expected.value(it.key());
            QCOMPARE(it.value()->m_name, mine->m_name);
            QCOMPARE(it.value()->m_code, mine->m_code);
            QCOMPARE(it.value()->m_count, mine->m_count);
            QCOMPARE(it.value()->m_active, mine->m_active);
            QCOMPARE(it.value()->m_ratio, mine->m_ratio);
        }
    }
};

QTEST_GUILESS_MAIN(tst_bench_references)
#include "tst_bench_references.moc"
