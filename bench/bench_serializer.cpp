#include <QJsonObject>
#include <QtTest>

#include "platform/qjsonserializer/qjsonserializer.h"

namespace bench {

class bench_item : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString name MEMBER m_name)
    Q_PROPERTY(QString code MEMBER m_code)
    Q_PROPERTY(int count MEMBER m_count)
    Q_PROPERTY(bool active MEMBER m_active)
    Q_PROPERTY(double ratio MEMBER m_ratio)

public:
    Q_INVOKABLE explicit bench_item(QObject* parent = nullptr) : QObject(parent) {}

    QString m_name;
    QString m_code;
    int m_count = 0;
    bool m_active = false;
    double m_ratio = 0;
};

using map_bench_items = QMap<QString, bench_item*>;

} // namespace bench

using namespace bench;

class bench_serializer : public QObject
{
    Q_OBJECT

    static constexpr int itemCount = 10000;

    QObject m_owner;
    map_bench_items m_items;
    QJsonObject m_json;

    /// What a developer would write for this one class, without the serializer.
    static QJsonObject byHand(map_bench_items const& items, bool withClass)
    {
        QJsonObject out;
        for (auto it = items.cbegin(); it != items.cend(); ++it) {
            bench_item const* item = it.value();
            QJsonObject o;
            if (withClass)
                o.insert(QStringLiteral("@class"), QStringLiteral("bench_item"));
            o.insert(QStringLiteral("name"), item->m_name);
            o.insert(QStringLiteral("code"), item->m_code);
            o.insert(QStringLiteral("count"), item->m_count);
            o.insert(QStringLiteral("active"), item->m_active);
            o.insert(QStringLiteral("ratio"), item->m_ratio);
            out.insert(it.key(), o);
        }
        return out;
    }

    static map_bench_items byHand(QJsonObject const& json, QObject* parent)
    {
        map_bench_items out;
        for (auto it = json.constBegin(); it != json.constEnd(); ++it) {
            QJsonObject const o = it.value().toObject();
            auto* item = new bench_item(parent);
            item->m_name = o.value(QLatin1String("name")).toString();
            item->m_code = o.value(QLatin1String("code")).toString();
            item->m_count = o.value(QLatin1String("count")).toInt();
            item->m_active = o.value(QLatin1String("active")).toBool();
            item->m_ratio = o.value(QLatin1String("ratio")).toDouble();
            out.insert(it.key(), item);
        }
        return out;
    }

    static void withClass_data()
    {
        QTest::addColumn<bool>("withClass");
        QTest::newRow("without @class") << false;
        QTest::newRow("with @class") << true;
    }

private Q_SLOTS:
    void initTestCase()
    {
        QJsonSerializer::registerMapAlias<bench_item>("map_bench_items");
        for (int i = 0; i < itemCount; ++i) {
            auto* item = new bench_item(&m_owner);
            item->m_name = QStringLiteral("item number %1").arg(i);
            item->m_code = QStringLiteral("C%1").arg(i * 7919 % 100000, 5, 10, QLatin1Char('0'));
            item->m_count = i;
            item->m_active = i % 3 == 0;
            item->m_ratio = i / 7.0;
            m_items.insert(QStringLiteral("K%1").arg(i, 5, 10, QLatin1Char('0')), item);
        }
        m_json = byHand(m_items, true);

        QJsonSerializer serializer;
        serializer.setPolymorphingMode(QJsonSerializer::ShortName);
        QCOMPARE(serializer.serialize(m_items), QJsonValue(m_json));
    }

    void serializeWithSerializer_data() { withClass_data(); }
    void serializeWithSerializer()
    {
        QFETCH(bool, withClass);
        QJsonSerializer serializer;
        serializer.setPolymorphing(withClass ? QJsonSerializer::Enabled : QJsonSerializer::Disabled);
        serializer.setPolymorphingMode(QJsonSerializer::ShortName);
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
