#ifndef BENCH_BENCH_SERIALIZER_ITEMS_H
#define BENCH_BENCH_SERIALIZER_ITEMS_H

// The objects bench_serializer measures, and what a developer would write by
// hand for them without the serializer: the benchmark's reference, which the
// test suite holds to the serializer's output (tst_bench_references).

#include <QJsonObject>
#include <QMap>
#include <QObject>
#include <QString>

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
    Q_INVOKABLE explicit bench_item(QObject* parent = nullptr)
        : QObject(parent)
    {
    }

    QString m_name;
    QString m_code;
    int m_count = 0;
    bool m_active = false;
    double m_ratio = 0;
};

using map_bench_items = QMap<QString, bench_item*>;

/// count items with varied values, owned by owner.
inline map_bench_items makeItems(int count, QObject* owner)
{
    map_bench_items items;
    for (int i = 0; i < count; ++i) {
        auto* item = new bench_item(owner);
        item->m_name = QStringLiteral("item number %1").arg(i);
        item->m_code = QStringLiteral("C%1").arg(i * 7919 % 100000, 5, 10, QLatin1Char('0'));
        item->m_count = i;
        item->m_active = i % 3 == 0;
        item->m_ratio = i / 7.0;
        items.insert(QStringLiteral("K%1").arg(i, 5, 10, QLatin1Char('0')), item);
    }
    return items;
}

/// The JSON by hand; withClass as the serializer writes it when polymorphing is forced.
inline QJsonObject byHand(map_bench_items const& items, bool withClass)
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

/// The objects by hand from that JSON.
inline map_bench_items byHand(QJsonObject const& json, QObject* parent)
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

} // namespace bench

#endif // BENCH_BENCH_SERIALIZER_ITEMS_H
