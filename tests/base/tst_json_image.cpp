// The image that is patched where objects changed against the image made
// from scratch: after thousands of random changes of every kind, both
// engines' images, section digests and whole digest must be what a full
// serialization of the tree gives.

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QMetaProperty>
#include <QMutexLocker>
#include <QRandomGenerator>
#include <QtTest>

#include "database/base/json_image_t.h"
#include "database/database_t.h"
#include "database/definition/service_t.h"
#include "database/definition/type_brand_t.h"
#include "database/persistent/dbs/ps_items_t.h"
#include "database/persistent/objects/ps_object_item_t.h"
#include "database/persistent/persistent_t.h"
#include "database/realtime/dbs/rt_items_t.h"
#include "database/realtime/objects/rt_object_item_t.h"
#include "database/realtime/realtime_t.h"
#include "database/utility/utility.h"
#include "platform/logs/classlogs.h"
#include "platform/qjsonserializer/qjsonserializer.h"

using database::database_t;
using database::base::json_image_t;
using database::definition::service_t;
using database::definition::type_brand_t;
using database::persistent::ps_items_map;
using database::persistent::objects::ps_object_item_t;
using database::realtime::rt_items_map;
using database::realtime::objects::rt_object_item_t;

namespace {

QString digest(QJsonObject const& json)
{
    QByteArray const text = database::utility::JsonToString(json, QJsonDocument::Compact).toUtf8();
    return QString::fromLatin1(QCryptographicHash::hash(text, QCryptographicHash::Sha1).toHex());
}

/// What the image must be: the whole tree serialized, each section and the whole hashed.
struct reference_t {
    QJsonObject image;
    QMap<QString, QString> hashes;
    QString hash;

    explicit reference_t(QObject* root)
    {
        image = database::utility::getInstance()->serializer()->serializeImpl(QVariant::fromValue(root)).toObject();
        for (auto it = image.constBegin(); it != image.constEnd(); ++it)
            hashes.insert(it.key(), digest(it.value().toObject()));
        hash = digest(image);
    }
};

/// Texts that JSON escapes, and some it doesn't.
QString randomText(QRandomGenerator& random)
{
    static QStringList const pieces{"a", "Z", "0", " ", "\"", "\\", "/", "\n", "\t", "é", "ß", "€", "\u0001",
                                    QString(QChar(0xD83D)) + QChar(0xDE00), "item", "1/1/"};
    QString text;
    int const length = random.bounded(6);
    for (int i = 0; i < length; ++i)
        text += pieces.at(random.bounded(pieces.size()));
    return text;
}

/// Sets a random stored value property of a random section to a random value.
void changeSomeSection(QObject* root, QRandomGenerator& random)
{
    QList<QObject*> sections;
    QMetaObject const* meta = root->metaObject();
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
        if (QObject* section = meta->property(i).read(root).value<QObject*>())
            sections.append(section);
    }
    if (sections.isEmpty())
        return;
    QObject* section = sections.at(random.bounded(sections.size()));
    QList<QMetaProperty> values;
    for (int i = QObject::staticMetaObject.propertyCount(); i < section->metaObject()->propertyCount(); ++i) {
        QMetaProperty const property = section->metaObject()->property(i);
        int const type = property.metaType().id();
        if (property.isStored() && property.isWritable()
            && (type == QMetaType::QString || type == QMetaType::Bool || type == QMetaType::Int))
            values.append(property);
    }
    if (values.isEmpty())
        return;
    QMetaProperty const property = values.at(random.bounded(values.size()));
    switch (property.metaType().id()) {
    case QMetaType::QString: property.write(section, randomText(random)); break;
    case QMetaType::Bool: property.write(section, random.bounded(2) == 1); break;
    default: property.write(section, random.bounded(5)); break;
    }
}

ps_object_item_t* persistentItem(QRandomGenerator& random)
{
    auto* item = new ps_object_item_t;
    item->setName(randomText(random));
    item->setEnabled(random.bounded(2) == 1);
    item->setStatus(QStringLiteral("1/1/%1").arg(random.bounded(50)));
    item->setFlags(random.bounded(4));
    return item;
}

QString key(QRandomGenerator& random, int keys)
{
    // Now and then a key that needs escaping.
    return random.bounded(20) == 0 ? QStringLiteral("K\"%1é").arg(random.bounded(keys))
                                   : QStringLiteral("K%1").arg(random.bounded(keys));
}

/// Puts object under id, freeing what a key drawn twice held before.
template<class Map, class Object>
void putFresh(Map& map, QString const& id, Object* object)
{
    delete map.value(id);
    map.insert(id, object);
}

/// Counts the packets of single items that a section publishes with other
/// JSON than the object has at that moment; follows the section into new trees.
template<class Section>
class published_t
{
public:
    template<class Current>
    void follow(Current current)
    {
        Section* section = current();
        if (section == watched)
            return;
        watched = section;
        QObject::connect(section, &database::base::topicbase_t::onUpdated, section,
                         [this, section](QJsonObject const& packet) {
                             QStringList const steps = packet.value("topic").toString().split(QLatin1Char('/'));
                             if (steps.size() != 3)
                                 return;
                             auto* object = section->getObjects().value(steps.at(2));
                             QJsonValue const now = object ? QJsonValue(object->toJson()) : QJsonValue();
                             if (packet.value("payload") != now)
                                 ++stale;
                         });
    }

    int stale = 0;

private:
    QPointer<Section> watched;
};

} // namespace

QMap<QString, QString> hashList(database::persistent::persistent_t* engine)
{
    return engine->getHashList();
}

QMap<QString, QString> hashList(database::realtime::realtime_t* engine)
{
    return engine->getHashList(true);
}

class tst_json_image : public QObject
{
    Q_OBJECT

    /// The image and stamp of the last comparison.
    struct seen_t {
        QJsonObject image;
        quint64 stamp = 0;
    };

    template<class Engine>
    static void compareWithFull(Engine* engine, QObject* root, int step, seen_t& seen)
    {
        QMutexLocker lock(engine->getAccessMutex());
        // Whatever changed the image moved its stamp on: a save that finds the
        // stamp it saved with writes nothing.
        QJsonObject const current = engine->serialize(false);
        quint64 const stamp = engine->getImageStamp();
        if (current != seen.image)
            QVERIFY2(stamp != seen.stamp, qPrintable(QStringLiteral("the stamp stayed after change %1").arg(step)));
        QJsonObject const image = engine->serialize(true);
        seen = {image, engine->getImageStamp()};
        if (image != current)
            QVERIFY2(seen.stamp != stamp, qPrintable(QStringLiteral("a whole rebuild kept the stamp at %1").arg(step)));
        reference_t const reference(root);
        QVERIFY2(image == reference.image, qPrintable(QStringLiteral("image differs after change %1").arg(step)));
        QCOMPARE(hashList(engine), reference.hashes);
        QCOMPARE(engine->getHash(), reference.hash);
    }

private Q_SLOTS:
    void initTestCase() { ::utility::logs::classlogs::getInstance()->setThreshold(::utility::logs::exception); }

    void persistentItems_data()
    {
        QTest::addColumn<quint32>("seed");
        QTest::addColumn<int>("keys");
        QTest::newRow("few keys, many changes of each") << 1u << 12;
        QTest::newRow("many keys") << 2u << 400;
    }

    void persistentItems()
    {
        QFETCH(quint32, seed);
        QFETCH(int, keys);
        QRandomGenerator random(seed);
        database_t db(service_t::client, type_brand_t::HALDO);
        auto* engine = db.getPersistent();
        seen_t seen;
        published_t<database::persistent::dbs::ps_items_t> published;
        for (int step = 0; step < 3000; ++step) {
            published.follow([engine] { return engine->getData()->getItems(); });
            int const kind = random.bounded(12);
            QString const id = key(random, keys);
            if (kind < 3) {
                // A status packet of a whole item: a new key or new values; now
                // and then with JSON that is not quite the item's own.
                QScopedPointer<ps_object_item_t> item(persistentItem(random));
                QJsonObject payload = item->toJson();
                switch (random.bounded(8)) {
                case 0: payload.remove(QStringLiteral("name")); break;
                case 1: payload.insert(QStringLiteral("unknown"), 1); break;
                case 2: payload.insert(QStringLiteral("flags"), payload.value(QStringLiteral("flags")).toDouble() + 0.5); break;
                case 3: payload.insert(QStringLiteral("enabled"), 1); break;
                default: break;
                }
                engine->update(QJsonObject{{"topic", "status/DB/persistent/items/objects_list/" + id},
                                           {"payload", payload}});
            } else {
                QMutexLocker lock(engine->getAccessMutex());
                auto* items = engine->getData()->getItems();
                switch (kind) {
                case 3:
                case 4:
                    // One value of an item in place.
                    if (items->getObjects().contains(id)) {
                        ps_object_item_t* item = items->list(id);
                        if (random.bounded(2))
                            item->setName(randomText(random));
                        else
                            item->update_status(QStringLiteral("2/2/%1").arg(random.bounded(9)), false);
                    }
                    break;
                case 5: items->update_items(id, nullptr, false); break;
                case 6: {
                    QScopedPointer<ps_object_item_t> item(persistentItem(random));
                    items->update_items(id, item.data(), random.bounded(2) == 1);
                    break;
                }
                case 7:
                    if (random.bounded(8) == 0) {
                        // The whole map replaced, by copies or by adoption.
                        ps_items_map map;
                        for (int n = random.bounded(keys); n > 0; --n)
                            putFresh(map, key(random, keys), persistentItem(random));
                        if (random.bounded(2)) {
                            items->update_items(map, false);
                            qDeleteAll(map);
                        } else {
                            items->setObjects(map);
                        }
                    }
                    break;
                case 8: items->setEnabled(random.bounded(2) == 1); break;
                case 9: changeSomeSection(engine->getData(), random); break;
                case 10:
                    if (random.bounded(20) == 0) {
                        // A new tree: a status of the whole database.
                        lock.unlock();
                        QJsonObject json = engine->serialize(false);
                        json.remove(QStringLiteral("items"));
                        engine->update(QJsonObject{{"topic", "status/DB/persistent/DB"}, {"payload", json}});
                    }
                    break;
                default: break;
                }
            }
            if (random.bounded(3) == 0)
                QCoreApplication::processEvents();
            if (random.bounded(25) == 0) {
                compareWithFull(engine, engine->getData(), step, seen);
                if (QTest::currentTestFailed())
                    return;
            }
        }
        compareWithFull(engine, engine->getData(), -1, seen);
        QCOMPARE(published.stale, 0);
    }

    void realtimeItems_data() { persistentItems_data(); }

    void realtimeItems()
    {
        QFETCH(quint32, seed);
        QFETCH(int, keys);
        QRandomGenerator random(seed);
        database_t db(service_t::client, type_brand_t::HALDO);
        auto* engine = db.getRealtime();
        seen_t seen;
        published_t<database::realtime::dbs::rt_items_t> published;
        for (int step = 0; step < 3000; ++step) {
            published.follow([engine] { return engine->getData()->getItems(); });
            int const kind = random.bounded(10);
            QString const id = key(random, keys);
            if (kind < 3) {
                char const* field = random.bounded(2) ? "value" : "feedback";
                engine->update(QJsonObject{{"topic", "status/DB/realtime/items/objects_list/" + id + "/" + field},
                                           {"payload", randomText(random)}});
            } else {
                QMutexLocker lock(engine->getAccessMutex());
                auto* items = engine->getData()->getItems();
                switch (kind) {
                case 3: {
                    rt_object_item_t item(randomText(random), randomText(random), nullptr);
                    items->update_item(id, &item, random.bounded(2) == 1);
                    break;
                }
                case 4: items->update_item(id, nullptr, false); break;
                case 5:
                    if (items->getObjects().contains(id))
                        items->list(id)->update_value(randomText(random), random.bounded(2) == 1);
                    break;
                case 6:
                    if (random.bounded(8) == 0) {
                        rt_items_map map;
                        for (int n = random.bounded(keys); n > 0; --n)
                            putFresh(map, key(random, keys), new rt_object_item_t(randomText(random), "1", nullptr));
                        if (random.bounded(2)) {
                            items->update_item(map, false);
                            qDeleteAll(map);
                        } else {
                            items->setObjects(map);
                        }
                    }
                    break;
                case 7: items->setUpdated(randomText(random)); break;
                case 8: changeSomeSection(engine->getData(), random); break;
                default: break;
                }
            }
            if (random.bounded(3) == 0)
                QCoreApplication::processEvents();
            if (random.bounded(25) == 0) {
                compareWithFull(engine, engine->getData(), step, seen);
                if (QTest::currentTestFailed())
                    return;
            }
        }
        compareWithFull(engine, engine->getData(), -1, seen);
        QCOMPARE(published.stale, 0);
    }

    void patchedValuesLandUnderTheirKeysAmongMany_data()
    {
        QTest::addColumn<int>("comeEvery");
        QTest::addColumn<int>("goEvery");
        QTest::addColumn<int>("replaceEvery");
        QTest::newRow("values only") << 0 << 0 << 0;
        QTest::newRow("a key comes now and then") << 37 << 0 << 0;
        QTest::newRow("a key goes now and then") << 0 << 41 << 0;
        QTest::newRow("keys come and go at every rebuild") << 1 << 1 << 0;
        QTest::newRow("the whole map replaced now and then") << 0 << 0 << 97;
    }

    /// Among a few hundred keys a changed value is put in its place without a
    /// search once the places are known; whatever keys come and go, the
    /// patched image stays the one made from scratch.
    void patchedValuesLandUnderTheirKeysAmongMany()
    {
        QFETCH(int, comeEvery);
        QFETCH(int, goEvery);
        QFETCH(int, replaceEvery);
        QRandomGenerator random(7);
        database_t db(service_t::client, type_brand_t::HALDO);
        auto* items = db.getRealtime()->getData()->getItems();
        QVariant const root = QVariant::fromValue(static_cast<QObject*>(db.getRealtime()->getData()));
        int next = 0;
        auto const fill = [&](int count) {
            rt_items_map map;
            for (int n = 0; n < count; ++n, ++next)
                map.insert(QStringLiteral("K%1").arg(next), new rt_object_item_t(QString::number(next), "0", nullptr));
            items->update_item(map, false);
            qDeleteAll(map);
        };
        fill(300);
        json_image_t image;
        QVERIFY(image.rebuild(root));
        for (int step = 1; step <= 400; ++step) {
            for (int n = random.bounded(1, 4); n > 0; --n) {
                QStringList const keys = items->getObjects().keys();
                items->list(keys.at(random.bounded(keys.size())))->update_value(randomText(random), false);
            }
            if (comeEvery && step % comeEvery == 0) {
                rt_object_item_t item(QStringLiteral("new"), QStringLiteral("1"), nullptr);
                items->update_item(QStringLiteral("K%1").arg(next++), &item, false);
            }
            if (goEvery && step % goEvery == 0) {
                QStringList const keys = items->getObjects().keys();
                items->update_item(keys.at(random.bounded(keys.size())), nullptr, false);
            }
            if (replaceEvery && step % replaceEvery == 0) {
                items->setObjects({});
                fill(300);
            }
            QVERIFY(image.rebuild(root));
            // Not another image: that would take the map over, and this one would write it whole.
            reference_t const reference(db.getRealtime()->getData());
            QVERIFY2(image.image() == reference.image, qPrintable(QStringLiteral("image differs at step %1").arg(step)));
            QCOMPARE(image.hash(), reference.hash);
        }
    }

    void stampStaysWhileTheImageDoes_data()
    {
        QTest::addColumn<bool>("whole");
        QTest::newRow("rebuilt by patches") << false;
        QTest::newRow("rebuilt whole") << true;
    }

    /// A rebuild that finds the same JSON keeps the stamp, one that doesn't moves it.
    void stampStaysWhileTheImageDoes()
    {
        QFETCH(bool, whole);
        database_t db(service_t::client, type_brand_t::HALDO);
        auto* items = db.getRealtime()->getData()->getItems();
        QVariant const root = QVariant::fromValue(static_cast<QObject*>(db.getRealtime()->getData()));
        for (int n = 0; n < 20; ++n) {
            rt_object_item_t item(QString::number(n), QStringLiteral("0"), nullptr);
            items->update_item(QStringLiteral("K%1").arg(n), &item, false);
        }
        json_image_t image;
        QVERIFY(image.rebuild(root));
        quint64 const first = image.stamp();
        QVERIFY(image.rebuild(root, whole));
        QCOMPARE(image.stamp(), first);

        items->list(QStringLiteral("K3"))->update_value(QStringLiteral("7"), false);
        QVERIFY(image.rebuild(root, whole));
        quint64 const second = image.stamp();
        QVERIFY(second != first);
        QVERIFY(image.rebuild(root, whole));
        QCOMPARE(image.stamp(), second);

        items->update_item(QStringLiteral("K3"), nullptr, false);
        QVERIFY(image.rebuild(root, whole));
        QVERIFY(image.stamp() != second);
    }

    /// A rebuild that patches gives what one from scratch gives, also when
    /// another image of the same tree came in between.
    void twoImagesOfOneTree()
    {
        database_t db(service_t::client, type_brand_t::HALDO);
        auto* items = db.getRealtime()->getData()->getItems();
        QVariant const root = QVariant::fromValue(static_cast<QObject*>(db.getRealtime()->getData()));
        json_image_t first;
        json_image_t second;
        QVERIFY(first.rebuild(root));
        for (int n = 0; n < 50; ++n) {
            rt_object_item_t item(QStringLiteral("f%1").arg(n), QString::number(n), nullptr);
            items->update_item(QStringLiteral("K%1").arg(n % 7), &item, false);
            json_image_t& image = n % 3 ? first : second;
            QVERIFY(image.rebuild(root));
            json_image_t whole;
            QVERIFY(whole.rebuild(root, true));
            QCOMPARE(image.image(), whole.image());
            QCOMPARE(image.hashList(), whole.hashList());
            QCOMPARE(image.hash(), whole.hash());
        }
    }
};

QTEST_GUILESS_MAIN(tst_json_image)
#include "tst_json_image.moc"
