#include <QJsonArray>
#include <QPointer>
#include <QSignalSpy>
#include <QtTest>

#include <functional>

#include "database/realtime/dbs/rt_notify_t.h"
#include "database/utility/utility.h"
#include "support/log_capture.h"
#include "support/model_test.h"
#include "support/packet_recorder.h"

using database::realtime::rt_notify_map;
using database::realtime::dbs::rt_notify_t;
using database::realtime::objects::rt_object_notify_t;

namespace {

rt_object_notify_t* makeNotification(QString const& name)
{
    return new rt_object_notify_t(QDateTime(QDate(2024, 3, 1), QTime(8, 30), Qt::UTC), 1, name,
                                  QStringLiteral("alarm"), QStringLiteral("Door %1 open"), {QStringLiteral("hall")},
                                  nullptr);
}

// The two lists of the section behind one face, so that one table tests both.
struct list_access_t {
    QString key;        // "user_list" or "sys_list"
    QString kind;       // the word of the log lines
    QString resizeLine; // the first log line of a resize
    std::function<void(rt_notify_t*, QString const&, rt_object_notify_t*, bool)> update;
    std::function<void(rt_notify_t*, rt_notify_map const&, bool)> updateAll;
    std::function<rt_object_notify_t*(rt_notify_t*, QString const&)> list;
    std::function<rt_notify_map(rt_notify_t*)> get;
    std::function<void(rt_notify_t*, int)> resize;
    std::function<void(rt_notify_t*, QString const&, rt_object_notify_t*)> requestSet;
    std::function<void(rt_notify_t*)> requestReset;
    std::function<void(rt_notify_t*)> clean;
};

list_access_t userAccess()
{
    return {"user_list",
            "user",
            "Resize user notification...",
            [](rt_notify_t* s, QString const& k, rt_object_notify_t* o, bool n) { s->update_user_notify(k, o, n); },
            [](rt_notify_t* s, rt_notify_map const& m, bool n) { s->update_user_notify(m, n); },
            [](rt_notify_t* s, QString const& k) { return s->userlist(k); },
            [](rt_notify_t* s) { return s->getUserNotify(); },
            [](rt_notify_t* s, int size) { s->resizeUserNotification(size); },
            [](rt_notify_t* s, QString const& k, rt_object_notify_t* o) { s->requestSetUserNotification(k, o); },
            [](rt_notify_t* s) { s->requestResetUserNotification(); },
            [](rt_notify_t* s) { s->clean_user_notify(); }};
}

list_access_t sysAccess()
{
    return {"sys_list",
            "system",
            "Resize system notification... ",
            [](rt_notify_t* s, QString const& k, rt_object_notify_t* o, bool n) { s->update_sys_notify(k, o, n); },
            [](rt_notify_t* s, rt_notify_map const& m, bool n) { s->update_sys_notify(m, n); },
            [](rt_notify_t* s, QString const& k) { return s->syslist(k); },
            [](rt_notify_t* s) { return s->getSysNotify(); },
            [](rt_notify_t* s, int size) { s->resizeSysNotification(size); },
            [](rt_notify_t* s, QString const& k, rt_object_notify_t* o) { s->requestSetSysNotification(k, o); },
            [](rt_notify_t* s) { s->requestResetSysNotification(); },
            [](rt_notify_t* s) { s->clean_sys_notify(); }};
}

QStringList numbers(int from, int to)
{
    QStringList keys;
    for (int i = from; i <= to; ++i)
        keys.append(QString::number(i));
    return keys;
}

QStringList inTextOrder(QStringList keys)
{
    keys.sort();
    return keys;
}

} // namespace

Q_DECLARE_METATYPE(list_access_t)

class tst_rt_notify : public QObject
{
    Q_OBJECT

private:
    rt_notify_t* section = nullptr;
    packet_recorder_t* engine = nullptr;

    void fill(list_access_t const& access, QStringList const& keys)
    {
        QScopedPointer<rt_object_notify_t> notification(makeNotification(QStringLiteral("n")));
        for (QString const& key : keys)
            access.update(section, key, notification.data(), false);
    }

    static void addBothLists()
    {
        QTest::addColumn<list_access_t>("access");
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(database::utility::getInstance()); }

    void init()
    {
        section = new rt_notify_t;
        engine = new packet_recorder_t;
        section->initRequestSignals(engine, true);
    }

    void cleanup()
    {
        delete section;
        delete engine;
        drainEvents();
    }

    void resizeDropsAtMostOneEntryPerCall_data()
    {
        QTest::addColumn<list_access_t>("access");
        QTest::addColumn<QStringList>("keys");
        QTest::addColumn<int>("size");
        QTest::addColumn<QStringList>("left");
        QTest::addColumn<QString>("removed"); // the key logged and published; empty when nothing is
        for (list_access_t const& access : {userAccess(), sysAccess()}) {
            QByteArray const list = access.key.toLatin1();
            char const* name = list.constData();
            QTest::addRow("%s: at the limit nothing happens", name) << access << QStringList{"1", "2"} << 2
                                                                 << QStringList{"1", "2"} << QString();
            QTest::addRow("%s: first in text order, 10 before 9", name)
                << access << QStringList{"9", "10"} << 1 << QStringList{"9"} << "10";
            QTest::addRow("%s: twenty over loses only one", name)
                << access << numbers(1, 21) << 1 << inTextOrder(numbers(2, 21)) << "1";
            QTest::addRow("%s: first key not a number ends it", name)
                << access << QStringList{"abc", "xyz"} << 1 << QStringList{"abc", "xyz"} << QString();
            QTest::addRow("%s: leading zeros name another key", name)
                << access << QStringList{"007", "8"} << 1 << QStringList{"007", "8"} << "7";
            QTest::addRow("%s: empty limit still one per call", name)
                << access << QStringList{"3", "4"} << 0 << QStringList{"4"} << "3";
            QTest::addRow("%s: empty list below a negative limit", name)
                << access << QStringList() << -1 << QStringList() << QString();
        }
    }

    void resizeDropsAtMostOneEntryPerCall()
    {
        QFETCH(list_access_t, access);
        QFETCH(QStringList, keys);
        QFETCH(int, size);
        QFETCH(QStringList, left);
        QFETCH(QString, removed);
        fill(access, keys);
        bool const over = keys.size() > size && !keys.isEmpty();

        log_capture_t logs;
        access.resize(section, size);
        QCOMPARE(access.get(section).keys(), left);

        QStringList expectedLines;
        if (over)
            expectedLines.append(access.resizeLine);
        if (!removed.isEmpty())
            expectedLines.append("Remove " + access.kind + " notification " + removed);
        QCOMPARE(logs.messages(), expectedLines);
        QString const source = access.key == "user_list" ? "resizeUserNotification" : "resizeSysNotification";
        for (auto const& record : std::as_const(logs.records))
            QCOMPARE(record.source, source);

        drainEvents();
        QList<QJsonObject> expectedPackets;
        if (!removed.isEmpty())
            expectedPackets.append({{"topic", "notify/" + access.key + "/" + removed}, {"payload", QJsonValue::Null}});
        QCOMPARE(engine->updated, expectedPackets);
    }

    void oneKeyUpdateMergesCopiesAndRemoves_data()
    {
        addBothLists();
        QTest::newRow("user list") << userAccess();
        QTest::newRow("system list") << sysAccess();
    }

    void oneKeyUpdateMergesCopiesAndRemoves()
    {
        QFETCH(list_access_t, access);
        QString const topic = "notify/" + access.key + "/5";
        QScopedPointer<rt_object_notify_t> given(makeNotification(QStringLiteral("first")));

        access.update(section, QStringLiteral("5"), given.data(), true);
        rt_object_notify_t* stored = access.list(section, QStringLiteral("5"));
        QVERIFY(stored != given.data());
        QCOMPARE(stored->getTopic(), topic);
        QCOMPARE(given->getTopic(), topic);

        given->update_read(true, false);
        access.update(section, QStringLiteral("5"), given.data(), true);
        QCOMPARE(access.list(section, QStringLiteral("5")), stored); // a known key keeps its object
        QVERIFY(stored->getRead());

        access.update(section, QStringLiteral("5"), nullptr, true);
        access.update(section, QStringLiteral("6"), nullptr, true); // unknown: nothing to remove, still published
        QVERIFY(access.get(section).isEmpty());

        drainEvents();
        QCOMPARE(engine->updated.size(), 4);
        QCOMPARE(engine->updated.at(1).value("payload").toObject().value("read"), QJsonValue(true));
        QCOMPARE(engine->updated.at(2), (QJsonObject{{"topic", topic}, {"payload", QJsonValue::Null}}));
        QCOMPARE(engine->updated.at(3),
                 (QJsonObject{{"topic", "notify/" + access.key + "/6"}, {"payload", QJsonValue::Null}}));
    }

    void unknownKeyGivesTemporaryAndReportsIt_data() { oneKeyUpdateMergesCopiesAndRemoves_data(); }

    void unknownKeyGivesTemporaryAndReportsIt()
    {
        QFETCH(list_access_t, access);
        log_capture_t logs;
        QPointer<rt_object_notify_t> temporary = access.list(section, QStringLiteral("42"));
        QVERIFY(temporary);
        temporary->update_read(true, false);
        QVERIFY(access.get(section).isEmpty());
        QCOMPARE(logs.matching("New key create app : 42", 6).size(), 1);
        QCOMPARE(logs.records.first().source, QStringLiteral("list"));

        drainEvents();
        QVERIFY(temporary.isNull());
        QCOMPARE(engine->notExist, (QList<QJsonObject>{{{"topic", "notify/" + access.key + "/42"}}}));
    }

    void wholeListIsReplacedByCopies_data() { oneKeyUpdateMergesCopiesAndRemoves_data(); }

    void wholeListIsReplacedByCopies()
    {
        QFETCH(list_access_t, access);
        fill(access, {"1", "2"});
        rt_notify_map map{{"7", makeNotification("a")}, {"8", makeNotification("b")}};
        access.updateAll(section, map, true);
        QCOMPARE(access.get(section).keys(), (QStringList{"7", "8"}));
        QVERIFY(access.get(section).value("7") != map.value("7"));
        QCOMPARE(access.list(section, "8")->getTopic(), "notify/" + access.key + "/8");
        qDeleteAll(map);

        drainEvents();
        QCOMPARE(engine->updated.size(), 1);
        QCOMPARE(engine->updated.first().value("topic").toString(), "notify/" + access.key);
        QCOMPARE(engine->updated.first().value("payload").toObject().keys(), (QStringList{"7", "8"}));

        // Cleaning empties without a word.
        engine->clear();
        access.clean(section);
        QVERIFY(access.get(section).isEmpty());
        drainEvents();
        QCOMPARE(engine->total(), 0);
    }

    void requestsAskAndChangeNothing_data() { oneKeyUpdateMergesCopiesAndRemoves_data(); }

    void requestsAskAndChangeNothing()
    {
        QFETCH(list_access_t, access);
        QString const base = "request/DB/realtime/notify/" + access.key;
        QScopedPointer<rt_object_notify_t> given(makeNotification(QStringLiteral("n")));

        access.requestSet(section, QStringLiteral("3"), given.data());
        access.requestSet(section, QStringLiteral("4"), nullptr);
        access.requestReset(section);
        QVERIFY(access.get(section).isEmpty());

        drainEvents();
        QCOMPARE(engine->requests,
                 (QList<QJsonObject>{{{"topic", base + "/3"}, {"payload", given->toJson()}},
                                     {{"topic", base + "/4"}, {"payload", QJsonObject()}},
                                     {{"topic", base}, {"payload", QJsonObject()}}}));
        QCOMPARE(given->getTopic(), "notify/" + access.key + "/3");
        QCOMPARE(engine->updated.size(), 0);
    }

    void resetAllAsksUserThenSystem()
    {
        section->requestResetAllNotification();
        drainEvents();
        QCOMPARE(engine->requests,
                 (QList<QJsonObject>{{{"topic", "request/DB/realtime/notify/user_list"}, {"payload", QJsonObject()}},
                                     {{"topic", "request/DB/realtime/notify/sys_list"}, {"payload", QJsonObject()}}}));
    }

    void sectionUpdateTakesBothListsOrEmptiesThem()
    {
        rt_notify_t other;
        QScopedPointer<rt_object_notify_t> given(makeNotification(QStringLiteral("n")));
        other.update_user_notify(QStringLiteral("1"), given.data(), false);
        other.update_sys_notify(QStringLiteral("2"), given.data(), false);
        fill(userAccess(), {"9"});

        section->update(&other, true);
        QCOMPARE(section->getUserNotify().keys(), QStringList{"1"});
        QCOMPARE(section->getSysNotify().keys(), QStringList{"2"});
        QVERIFY(section->getUserNotify().value("1") != other.getUserNotify().value("1"));

        section->update(nullptr, true);
        QVERIFY(section->getUserNotify().isEmpty());
        QVERIFY(section->getSysNotify().isEmpty());

        drainEvents();
        QCOMPARE(engine->updated.size(), 2);
        QCOMPARE(engine->updated.at(0).value("topic").toString(), QStringLiteral("notify"));
        QCOMPARE(engine->updated.at(0).value("payload").toObject(), other.toJson());
        QCOMPARE(engine->updated.at(1),
                 (QJsonObject{{"topic", "notify"},
                              {"payload", QJsonObject{{"user_list", QJsonObject()}, {"sys_list", QJsonObject()}}}}));
    }

    void notificationReadIsAskedAndPublishedWhole()
    {
        fill(userAccess(), {"1"});
        rt_object_notify_t* stored = section->userlist(QStringLiteral("1"));
        QSignalSpy readSpy(stored, &rt_object_notify_t::readChanged);
        QVERIFY(readSpy.isValid());
        QCOMPARE(readSpy.count(), 0);

        stored->requestSetRead(true);
        QVERIFY(!stored->getRead());
        stored->update_read(true, true);
        stored->update_read(true, true); // no comparison: published again
        QCOMPARE(readSpy.count(), 1);

        drainEvents();
        QCOMPARE(engine->requests,
                 (QList<QJsonObject>{{{"topic", "request/DB/realtime/notify/user_list/1/read"}, {"payload", true}}}));
        QCOMPARE(engine->updated.size(), 2);
        QCOMPARE(engine->updated.at(1), (QJsonObject{{"topic", "notify/user_list/1"}, {"payload", stored->toJson()}}));
    }

    void nullNotificationUpdateIsRefused()
    {
        fill(sysAccess(), {"1"});
        rt_object_notify_t* stored = section->syslist(QStringLiteral("1"));
        QJsonObject const before = stored->toJson();
        stored->update(nullptr, true);
        QCOMPARE(stored->toJson(), before);
        drainEvents();
        QCOMPARE(engine->updated.size(), 0);
        QCOMPARE(engine->errors.size(), 1);
        QCOMPARE(engine->errors.first().first.value("topic").toString(), QStringLiteral("notify/sys_list/1"));
        QCOMPARE(engine->errors.first().second, QStringLiteral("Not permitted nullptr"));
    }

    void notificationJsonHasItsFieldsInOrder()
    {
        QScopedPointer<rt_object_notify_t> notification(makeNotification(QStringLiteral("door")));
        QJsonObject const json = notification->toJson();
        QCOMPARE(json, (QJsonObject{{"name", "door"},
                                    {"verbosity", "alarm"},
                                    {"message", "Door %1 open"},
                                    {"datetime", "2024-03-01T08:30:00Z"},
                                    {"params", 1},
                                    {"read", false},
                                    {"args", QJsonArray{"hall"}}}));
        QStringList order;
        QMetaObject const& meta = rt_object_notify_t::staticMetaObject;
        for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i)
            order.append(QString::fromLatin1(meta.property(i).name()));
        QCOMPARE(order, (QStringList{"name", "verbosity", "message", "datetime", "params", "read", "args"}));
    }

    void sectionSurvivesJsonRoundTrip()
    {
        fill(userAccess(), {"1", "2"});
        fill(sysAccess(), {"3"});
        section->userlist(QStringLiteral("2"))->update_read(true, false);
        QJsonObject const json = section->toJson();
        QCOMPARE(json.keys(), (QStringList{"sys_list", "user_list"}));

        QScopedPointer<rt_notify_t> back(serializer()->deserialize<rt_notify_t*>(json));
        QVERIFY(back);
        QCOMPARE(back->toJson(), json);
        QCOMPARE(back->getUserNotify().value("2")->parent(), nullptr); // the section owns them

        rt_notify_t copy(*section);
        QCOMPARE(copy.toJson(), json);
        QVERIFY(!(copy == *section)); // deep: other objects
        QVERIFY(*copy.getUserNotify().value("1") == *section->getUserNotify().value("1"));
    }
};

QTEST_GUILESS_MAIN(tst_rt_notify)
#include "tst_rt_notify.moc"
