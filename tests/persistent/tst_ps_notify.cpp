#include <QPointer>
#include <QSignalSpy>
#include <QtTest>

#include <climits>

#include "database/persistent/dbs/ps_notify_t.h"
#include "database/utility/utility.h"
#include "platform/qjsonserializer/qjsonserializer.h"
#include "support/model_test.h"
#include "support/log_capture.h"
#include "support/packet_recorder.h"

using database::definition::type_notification_verbosity_t;
using database::definition::smtp::type_smtp_auth_type_t;
using database::definition::smtp::type_smtp_connection_type_t;
using database::persistent::ps_notify_email_map;
using database::persistent::ps_notify_map;
using database::persistent::dbs::ps_notify_t;
using database::persistent::objects::ps_email_notify_t;
using database::persistent::objects::ps_object_notify_t;
using database::persistent::objects::ps_smtp_notify_t;

namespace {


QJsonObject parse(char const* json)
{
    return QJsonDocument::fromJson(QByteArray(json)).object();
}


ps_object_notify_t* makeNotification(QString const& name, QStringList const& emaildst = {})
{
    return new ps_object_notify_t(true, 3, {QStringLiteral("panel")}, emaildst, {QStringLiteral("@item[I1]")},
                                  type_notification_verbosity_t::alarm, name, QStringLiteral("Door open %1"), 2,
                                  nullptr);
}

ps_email_notify_t* makeEmail(QString const& address)
{
    return new ps_email_notify_t(QStringLiteral("office"), address, true, false, nullptr);
}

ps_smtp_notify_t* makeSmtp()
{
    return new ps_smtp_notify_t(QStringLiteral("relay"), QStringLiteral("mail.example.com"), 465,
                                type_smtp_connection_type_t::SSL, type_smtp_auth_type_t::LOGIN,
                                QStringLiteral("alerts@example.com"), QStringLiteral("s3cret"), nullptr);
}

// The two maps of the section behind one face, so that one table tests both.
struct list_access_t {
    // Stores a fresh object under the id, or removes it for withObject false.
    std::function<void(ps_notify_t*, QString const&, bool withObject, bool notify)> update;
    std::function<database::base::topicbase_t*(ps_notify_t*, QString const&)> list;
    std::function<void(ps_notify_t*, QStringList const&)> replaceAll; // publishes
    std::function<QStringList(ps_notify_t*)> keys;
};

template<class Map>
Map build(QStringList const& ids, std::function<typename Map::mapped_type(QString const&)> make)
{
    Map map;
    for (QString const& id : ids)
        map.insert(id, make(id));
    return map;
}

list_access_t notificationsAccess()
{
    auto make = [](QString const& id) { return makeNotification(id); };
    return {
        [make](ps_notify_t* s, QString const& id, bool withObject, bool n) {
            QScopedPointer<ps_object_notify_t> o(withObject ? make(id) : nullptr);
            s->update_notify(id, o.data(), n);
        },
        [](ps_notify_t* s, QString const& id) { return s->list_notify(id); },
        [make](ps_notify_t* s, QStringList const& ids) {
            ps_notify_map const map = build<ps_notify_map>(ids, make);
            s->update_notify(map, true);
            qDeleteAll(map);
        },
        [](ps_notify_t* s) { return s->getObjects().keys(); },
    };
}

list_access_t emailsAccess()
{
    auto make = [](QString const& id) { return makeEmail(id + QStringLiteral("@example.com")); };
    return {
        [make](ps_notify_t* s, QString const& id, bool withObject, bool n) {
            QScopedPointer<ps_email_notify_t> o(withObject ? make(id) : nullptr);
            s->update_email(id, o.data(), n);
        },
        [](ps_notify_t* s, QString const& id) { return s->list_email(id); },
        [make](ps_notify_t* s, QStringList const& ids) {
            ps_notify_email_map const map = build<ps_notify_email_map>(ids, make);
            s->update_email(map, true);
            qDeleteAll(map);
        },
        [](ps_notify_t* s) { return s->getEmails().keys(); },
    };
}

} // namespace

Q_DECLARE_METATYPE(list_access_t)

class tst_ps_notify : public QObject
{
    Q_OBJECT

private:
    ps_notify_t* section = nullptr;
    packet_recorder_t* engine = nullptr;

    // One notification naming one address of the book.
    void fillBothMaps()
    {
        QScopedPointer<ps_object_notify_t> notification(makeNotification(QStringLiteral("door"), {"M1"}));
        QScopedPointer<ps_email_notify_t> email(makeEmail(QStringLiteral("office@example.com")));
        section->update_notify(QStringLiteral("N1"), notification.data(), false);
        section->update_email(QStringLiteral("M1"), email.data(), false);
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(database::utility::getInstance());
    }

    void init()
    {
        section = new ps_notify_t;
        engine = new packet_recorder_t;
        section->initRequestSignals(engine, true);
    }

    void cleanup()
    {
        delete section;
        delete engine;
        drainEvents();
    }

    void addressValidity_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<bool>("valid");
        QTest::newRow("plain") << "office@example.com" << true;
        QTest::newRow("hyphen, dot and underscore before the at") << "j-d.office_1@example.com" << true;
        QTest::newRow("sub-domain with hyphen") << "a@mail-1.example.co" << true;
        QTest::newRow("last part of four") << "a@example.info" << true;
        QTest::newRow("last part of five") << "a@example.email" << false;
        QTest::newRow("last part of one") << "a@example.c" << false;
        QTest::newRow("no dot after the at") << "a@localhost" << false;
        QTest::newRow("no at") << "office.example.com" << false;
        QTest::newRow("two ats") << "a@b@example.com" << false;
        QTest::newRow("plus sign") << "a+b@example.com" << false;
        QTest::newRow("trailing text") << "a@example.com x" << false;
        QTest::newRow("empty") << "" << false;
    }

    void addressValidity()
    {
        QFETCH(QString, address);
        QFETCH(bool, valid);
        ps_email_notify_t email(QStringLiteral("d"), address, false, false, nullptr);
        QCOMPARE(email.isValidAddress(), valid);

        // Every way of making an entry must carry the pattern.
        ps_email_notify_t copy(email);
        QCOMPARE(copy.isValidAddress(), valid);
        ps_email_notify_t updated(QStringLiteral("notify/email_list/M"), nullptr);
        updated.update(&email, false);
        QCOMPARE(updated.isValidAddress(), valid);
        QScopedPointer<ps_email_notify_t> back(serializer()->deserialize<ps_email_notify_t*>(email.toJson()));
        QCOMPARE(back->isValidAddress(), valid);
    }

    void soundLengthIsCorrected_data()
    {
        QTest::addColumn<int>("value");
        QTest::addColumn<int>("stored");
        QTest::newRow("longest stays") << 3 << 3;
        QTest::newRow("zero stays") << 0 << 0;
        QTest::newRow("one above becomes short") << 4 << 1;
        QTest::newRow("negative becomes short") << -1 << 1;
        QTest::newRow("lowest int becomes short") << INT_MIN << 1;
    }

    void soundLengthIsCorrected()
    {
        QFETCH(int, value);
        QFETCH(int, stored);
        bool const corrected = value != stored;
        section->setSoundLoop(2);

        log_capture_t logs;
        section->requestSetSoundLoop(value);
        QCOMPARE(section->getSoundLoop(), 2); // a request changes nothing
        section->update_soundLoop(value, true);
        QCOMPARE(section->getSoundLoop(), stored);

        QList<utility::logs::logrecord> const lines = logs.matching("Sound len out of range set short", 2);
        QCOMPARE(lines.size(), corrected ? 2 : 0);
        if (corrected) {
            QCOMPARE(lines.at(0).source, QStringLiteral("requestSetSoundLoop"));
            QCOMPARE(lines.at(1).source, QStringLiteral("update_soundLoop"));
        }

        drainEvents();
        QCOMPARE(engine->requests,
                 (QList<QJsonObject>{{{"topic", "request/DB/persistent/notify/soundLoop"}, {"payload", stored}}}));
        QCOMPARE(engine->updated, (QList<QJsonObject>{{{"topic", "notify/soundLoop"}, {"payload", stored}}}));
    }

    void enabledIsAskedAndPublishedAlone()
    {
        section->requestSetEnabled(true);
        QVERIFY(!section->getEnabled());
        section->update_enabled(true, true);
        QVERIFY(section->getEnabled());
        drainEvents();
        QCOMPARE(engine->requests,
                 (QList<QJsonObject>{{{"topic", "request/DB/persistent/notify/enabled"}, {"payload", true}}}));
        QCOMPARE(engine->updated, (QList<QJsonObject>{{{"topic", "notify/enabled"}, {"payload", true}}}));
    }

    void eachMapHasItsOwnTopics_data()
    {
        QTest::addColumn<list_access_t>("access");
        QTest::addColumn<QString>("listKey");
        QTest::newRow("notifications") << notificationsAccess() << "objects_list";
        QTest::newRow("address book") << emailsAccess() << "email_list";
    }

    void eachMapHasItsOwnTopics()
    {
        QFETCH(list_access_t, access);
        QFETCH(QString, listKey);
        QString const objectTopic = "notify/" + listKey + "/K1";

        access.update(section, QStringLiteral("K1"), true, true);
        database::base::topicbase_t* stored = access.list(section, QStringLiteral("K1"));
        QCOMPARE(stored->getTopic(), objectTopic);
        access.update(section, QStringLiteral("K1"), true, false); // known id: content into the same object
        QCOMPARE(access.list(section, QStringLiteral("K1")), stored);
        QPointer<database::base::topicbase_t> unknown = access.list(section, QStringLiteral("X"));
        QCOMPARE(unknown->getTopic(), "notify/" + listKey + "/X");
        access.update(section, QStringLiteral("K1"), false, true);
        QVERIFY(access.keys(section).isEmpty());

        drainEvents();
        QVERIFY(unknown.isNull());
        QCOMPARE(engine->notExist, (QList<QJsonObject>{{{"topic", "notify/" + listKey + "/X"}}}));
        QCOMPARE(engine->updated.size(), 2);
        QCOMPARE(engine->updated.at(0).value("topic").toString(), objectTopic);
        QVERIFY(engine->updated.at(0).value("payload").isObject());
        QCOMPARE(engine->updated.at(1), (QJsonObject{{"topic", objectTopic}, {"payload", QJsonValue::Null}}));
    }

    void replacingOneListKeepsEverythingElseWired_data()
    {
        eachMapHasItsOwnTopics_data();
    }

    void replacingOneListKeepsEverythingElseWired()
    {
        QFETCH(list_access_t, access);
        QFETCH(QString, listKey);
        fillBothMaps();

        access.replaceAll(section, {QStringLiteral("A"), QStringLiteral("B")});
        QCOMPARE(access.keys(section), (QStringList{"A", "B"}));
        QCOMPARE(access.list(section, QStringLiteral("B"))->getTopic(), "notify/" + listKey + "/B");
        drainEvents();
        QCOMPARE(engine->updated.size(), 1);
        QCOMPARE(engine->updated.first().value("topic").toString(), "notify/" + listKey);
        QCOMPARE(engine->updated.first().value("payload").toObject().keys(), (QStringList{"A", "B"}));

        // The whole section was unwired and wired again: nothing may be left out or doubled.
        engine->clear();
        section->list_notify(section->getObjects().firstKey())->send_update();
        section->list_email(section->getEmails().firstKey())->send_update();
        section->send_update_smtp();
        drainEvents();
        QCOMPARE(engine->updated.size(), 3);
    }

    void smtpTakesContentAndNullResets()
    {
        ps_smtp_notify_t* own = section->getSmtp();
        QScopedPointer<ps_smtp_notify_t> given(makeSmtp());
        section->update_smtp(given.data(), true);
        QCOMPARE(section->getSmtp(), own);
        QVERIFY(*own == *given);
        QCOMPARE(given->getTopic(), QStringLiteral("notify/smtp"));
        QCOMPARE(own->getConnType(), QStringLiteral("SSL"));

        section->update_smtp(nullptr, true);
        QCOMPARE(section->getSmtp(), own);
        QVERIFY(*own == ps_smtp_notify_t());
        QCOMPARE(own->getPort(), 587);

        section->requestSetSMTP(given.data());
        drainEvents();
        QCOMPARE(engine->updated.size(), 2);
        QCOMPARE(engine->updated.at(0).value("payload").toObject(), given->toJson());
        QCOMPARE(engine->updated.at(1),
                 (QJsonObject{{"topic", "notify/smtp"}, {"payload", ps_smtp_notify_t().toJson()}}));
        QCOMPARE(engine->requests,
                 (QList<QJsonObject>{{{"topic", "request/DB/persistent/notify/smtp"}, {"payload", given->toJson()}}}));
    }

    void nullUpdateIsRefusedByEveryObject()
    {
        fillBothMaps();
        section->list_notify(QStringLiteral("N1"))->update(nullptr, true);
        section->list_email(QStringLiteral("M1"))->update(nullptr, true);
        section->getSmtp()->update(nullptr, true);
        QCOMPARE(section->list_notify(QStringLiteral("N1"))->getName(), QStringLiteral("door"));
        QCOMPARE(section->list_email(QStringLiteral("M1"))->getAddress(), QStringLiteral("office@example.com"));

        drainEvents();
        QVERIFY(engine->updated.isEmpty());
        QStringList topics;
        for (auto const& error : std::as_const(engine->errors)) {
            QCOMPARE(error.second, QStringLiteral("Not permitted nullptr"));
            QCOMPARE(error.first.value("payload"), QJsonValue(QJsonValue::Null));
            topics.append(error.first.value("topic").toString());
        }
        QCOMPARE(topics, (QStringList{"notify/objects_list/N1", "notify/email_list/M1", "notify/smtp"}));
    }

    void removedAddressIsDroppedFromNotifications()
    {
        QScopedPointer<ps_object_notify_t> n(makeNotification(QStringLiteral("n")));
        QScopedPointer<ps_email_notify_t> m(makeEmail(QStringLiteral("a@example.com")));
        for (QString const& id : {"M1", "M2"})
            section->update_email(id, m.data(), false);
        n->setEmailDst({"M1", "M2"});
        section->update_notify(QStringLiteral("N1"), n.data(), false);
        n->setEmailDst({"M2"});
        section->update_notify(QStringLiteral("N2"), n.data(), false);
        n->setEmailDst({"M9"}); // already dangling, and not about M2
        section->update_notify(QStringLiteral("N3"), n.data(), false);

        QVERIFY(section->prune_email_dest(QStringLiteral("M2"), true).isEmpty()); // still in the book
        section->update_email(QStringLiteral("M2"), nullptr, false);
        QCOMPARE(section->prune_email_dest(QStringLiteral("M2"), true), (QStringList{"N1", "N2"}));
        QCOMPARE(section->list_notify("N1")->getEmailDst(), QStringList{"M1"});
        QCOMPARE(section->list_notify("N2")->getEmailDst(), QStringList());
        QCOMPARE(section->list_notify("N3")->getEmailDst(), QStringList{"M9"});
        drainEvents();
        QCOMPARE(engine->updated.size(), 2);
        QCOMPARE(engine->updated.at(1).value("topic").toString(), QStringLiteral("notify/objects_list/N2"));
        QCOMPARE(engine->updated.at(1).value("payload").toObject().value("emaildst").toArray(), QJsonArray());

        // With no id every notification is looked at.
        QCOMPARE(section->prune_email_dest(QString(), false), (QStringList{"N3"}));
        QCOMPARE(section->list_notify("N3")->getEmailDst(), QStringList());
    }

    void defaultSectionIsTheFactoryRecord()
    {
        QCOMPARE(section->getTopic(), QStringLiteral("notify"));
        QCOMPARE(section->getSmtp()->getTopic(), QStringLiteral("notify/smtp"));
        QCOMPARE(section->getSmtp()->parent(), section);
        QJsonObject const expected = parse(R"({"objects_list":{},"email_list":{},
            "smtp":{"description":"","server":"","port":587,"connType":"","authType":"","username":"","password":""},
            "enabled":false,"soundLoop":1,"maxUserNotification":25,"maxSysNotification":25})");
        QCOMPARE(section->toJson(), expected);

        QStringList keys;
        for (int i = ps_notify_t::staticMetaObject.propertyOffset(); i < ps_notify_t::staticMetaObject.propertyCount();
             ++i)
            keys.append(QString::fromLatin1(ps_notify_t::staticMetaObject.property(i).name()));
        QCOMPARE(keys, (QStringList{"objects_list", "email_list", "smtp", "enabled", "soundLoop",
                                    "maxUserNotification", "maxSysNotification"}));

        ps_object_notify_t notification;
        QCOMPARE(notification.toJson(), parse(R"({"name":"","verbosity":"info","message":"","enabled":true,
            "pushdst":[],"args":[],"params":0,"permission":0,"emaildst":[]})"));
    }

    void sectionSurvivesJsonRoundTrip()
    {
        fillBothMaps();
        QScopedPointer<ps_smtp_notify_t> smtp(makeSmtp());
        section->update_smtp(smtp.data(), false);
        section->update_enabled(true, false);
        section->update_soundLoop(3, false);
        section->setMaxUserNotification(10);
        section->setMaxSysNotification(40);

        QJsonObject const json = section->toJson();
        QCOMPARE(json.value("objects_list").toObject().value("N1").toObject().value("verbosity").toString(),
                 QStringLiteral("alarm"));
        QScopedPointer<ps_notify_t> back(serializer()->deserialize<ps_notify_t*>(json));
        QVERIFY(back);
        QCOMPARE(back->toJson(), json);
        QCOMPARE(back->findChildren<ps_smtp_notify_t*>().size(), 1); // the server read is not left behind
        QCOMPARE(back->getObjects().value("N1")->parent(), nullptr);

        // Wiring is what gives a freshly read tree its topics.
        packet_recorder_t other;
        back->initRequestSignals(&other, true);
        QCOMPARE(back->getEmails().value("M1")->getTopic(), QStringLiteral("notify/email_list/M1"));
        QCOMPARE(back->getSmtp()->getTopic(), QStringLiteral("notify/smtp"));
    }

    void copiesAreDeepAndComparedByPointer()
    {
        fillBothMaps();
        ps_notify_t copy(*section);
        QCOMPARE(copy.parent(), nullptr);
        QCOMPARE(copy.getSmtp()->parent(), &copy);
        QVERIFY(*copy.getSmtp() == *section->getSmtp());
        QVERIFY(*copy.list_email("M1") == *section->list_email("M1"));
        QVERIFY(!(copy == *section)); // other objects, though equal ones
        QVERIFY(*section == *section);

        copy.list_notify("N1")->update_push_dest({"elsewhere"}, false);
        QVERIFY(!(*copy.list_notify("N1") == *section->list_notify("N1")));
    }
};

QTEST_GUILESS_MAIN(tst_ps_notify)
#include "tst_ps_notify.moc"
