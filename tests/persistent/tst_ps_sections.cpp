#include <QJsonArray>
#include <QMetaProperty>
#include <QSignalSpy>
#include <QtTest>

#include "database/persistent/dbs/ps_general_t.h"
#include "database/persistent/dbs/ps_information_t.h"
#include "database/persistent/dbs/ps_presencesimulation_t.h"
#include "database/persistent/dbs/ps_smartbutton_t.h"
#include "database/persistent/dbs/ps_storage_t.h"
#include "database/persistent/dbs/ps_users_t.h"
#include "database/persistent/dbs/ps_versions_t.h"
#include "database/utility/utility.h"
#include "platform/logs/classlogs.h"
#include "platform/qjsonserializer/qjsonserializer.h"
#include "support/model_test.h"
#include "support/packet_recorder.h"

using database::persistent::ps_users_map;
using database::persistent::dbs::ps_general_t;
using database::persistent::dbs::ps_information_t;
using database::persistent::dbs::ps_presencesimulation_t;
using database::persistent::dbs::ps_smartbutton_t;
using database::persistent::dbs::ps_storage_t;
using database::persistent::dbs::ps_users_t;
using database::persistent::dbs::ps_versions_t;
using database::persistent::objects::ps_object_user_t;
using database::presencesimulation::definition::psi_type_state_presence_simulation_t;

namespace {



/// The property names a class declares itself, in declaration order.
QStringList ownProperties(QMetaObject const* meta)
{
    QStringList names;
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i)
        names.append(QString::fromLatin1(meta->property(i).name()));
    return names;
}

QJsonObject parse(char const* json)
{
    return QJsonDocument::fromJson(QByteArray(json)).object();
}

} // namespace

class tst_ps_sections : public QObject
{
    Q_OBJECT

private:
    packet_recorder_t* engine = nullptr;
    QList<::utility::logs::logrecord> records;

    /// Captured lines with this text, as (level, message).
    QList<QPair<int, QString>> logged(QString const& prefix) const
    {
        QList<QPair<int, QString>> lines;
        for (auto const& record : records) {
            if (record.message.startsWith(prefix))
                lines.append({int(record.level), record.message});
        }
        return lines;
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(database::utility::getInstance());
        ::utility::logs::classlogs::getInstance()->setCapture(
            [this](::utility::logs::logrecord const& r) { records.append(r); });
    }

    void cleanupTestCase()
    {
        ::utility::logs::classlogs::getInstance()->setCapture({});
    }

    void init()
    {
        engine = new packet_recorder_t;
        records.clear();
    }

    void cleanup()
    {
        delete engine;
        drainEvents();
    }

    void defaultRecords_data()
    {
        QTest::addColumn<QObject*>("section");
        QTest::addColumn<int>("typeId");
        QTest::addColumn<QString>("topic");
        QTest::addColumn<QStringList>("keys");
        QTest::addColumn<QJsonObject>("json");

        QTest::newRow("general") << static_cast<QObject*>(new ps_general_t(this)) << qMetaTypeId<ps_general_t*>()
                                 << "general"
                                 << QStringList{"enable_astro", "identify", "description", "latitude", "longitude",
                                                "timezone", "enable_img_upd"}
                                 << parse(R"({"enable_astro":false,"identify":"","description":"","latitude":46.4556,
                                              "longitude":11.2628,"timezone":2.0,"enable_img_upd":true})");
        QTest::newRow("information") << static_cast<QObject*>(new ps_information_t(this))
                                     << qMetaTypeId<ps_information_t*>() << "information"
                                     << QStringList{"image", "company", "address", "phone", "email", "support", "site"}
                                     << parse(R"({"image":"","company":"","address":"","phone":"","email":"",
                                                  "support":"","site":""})");
        QTest::newRow("versions") << static_cast<QObject*>(new ps_versions_t(this)) << qMetaTypeId<ps_versions_t*>()
                                  << "versions" << QStringList{"general", "server", "database", "comunication"}
                                  << parse(R"({"general":"","server":"","database":"4.0.0","comunication":""})");
        QTest::newRow("smartbutton") << static_cast<QObject*>(new ps_smartbutton_t(this))
                                     << qMetaTypeId<ps_smartbutton_t*>() << "smartbutton"
                                     << QStringList{"id_item_listen_index", "value_item_rgb", "id_item_rgb", "timeout",
                                                    "enabled"}
                                     << parse(R"({"id_item_listen_index":"","value_item_rgb":"FF;FF;FF;",
                                                  "id_item_rgb":"","timeout":120,"enabled":false})");
        QTest::newRow("presencesimulation") << static_cast<QObject*>(new ps_presencesimulation_t(this))
                                            << qMetaTypeId<ps_presencesimulation_t*>() << "presencesimulation"
                                            << QStringList{"state", "idItem"}
                                            << parse(R"({"state":"stop","idItem":""})");
        QTest::newRow("storage") << static_cast<QObject*>(new ps_storage_t(this)) << qMetaTypeId<ps_storage_t*>()
                                 << "storage" << QStringList{"objects_list"} << parse(R"({"objects_list":{}})");
        QTest::newRow("users without enabled") << static_cast<QObject*>(new ps_users_t(this))
                                               << qMetaTypeId<ps_users_t*>() << "users" << QStringList{"objects_list"}
                                               << parse(R"({"objects_list":{}})");
    }

    void defaultRecords()
    {
        QFETCH(QObject*, section);
        QFETCH(int, typeId);
        QFETCH(QString, topic);
        QFETCH(QStringList, keys);
        QFETCH(QJsonObject, json);

        auto* record = qobject_cast<database::base::topicbase_t*>(section);
        QVERIFY(record);
        QCOMPARE(record->getTopic(), topic);
        QCOMPARE(ownProperties(section->metaObject()), keys);
        QCOMPARE(record->toJson(), json);

        // What is written reads back the same.
        QObject* back = serializer()->deserialize(json, typeId, this).value<QObject*>();
        QVERIFY(back);
        QCOMPARE(qobject_cast<database::base::topicbase_t*>(back)->toJson(), json);
        delete back;
    }

    void coordinatesAndTimezone_data()
    {
        QTest::addColumn<QString>("operation");
        QTest::addColumn<double>("ownLatitude");
        QTest::addColumn<double>("ownLongitude");
        QTest::addColumn<double>("ownTimezone");
        QTest::addColumn<double>("latitude");
        QTest::addColumn<double>("longitude");
        QTest::addColumn<double>("timezone");
        QTest::addColumn<bool>("refused");
        QTest::addColumn<double>("sentLatitude");
        QTest::addColumn<double>("sentLongitude");
        QTest::addColumn<double>("sentTimezone");

        QTest::newRow("position keeps own timezone")
            << "position" << 0.0 << 0.0 << -5.0 << 45.0 << 9.0 << 0.0 << false << 45.0 << 9.0 << -5.0;
        QTest::newRow("position bounds included")
            << "position" << 0.0 << 0.0 << 1.0 << -90.0 << 90.0 << 0.0 << false << -90.0 << 90.0 << 1.0;
        QTest::newRow("position longitude 120 refused like a latitude")
            << "position" << 0.0 << 0.0 << 1.0 << 46.5 << 120.0 << 0.0 << true << 0.0 << 0.0 << 0.0;
        QTest::newRow("position latitude past the pole refused")
            << "position" << 0.0 << 0.0 << 1.0 << 90.5 << 9.0 << 0.0 << true << 0.0 << 0.0 << 0.0;
        QTest::newRow("position own timezone out of range goes out as 2.0")
            << "position" << 0.0 << 0.0 << 20.0 << 45.0 << 9.0 << 0.0 << false << 45.0 << 9.0 << 2.0;
        QTest::newRow("astro timezone 15 goes out as 2.0")
            << "astro" << 0.0 << 0.0 << 1.0 << 45.0 << 9.0 << 15.0 << false << 45.0 << 9.0 << 2.0;
        QTest::newRow("astro timezone bounds kept")
            << "astro" << 0.0 << 0.0 << 1.0 << 45.0 << 9.0 << -12.0 << false << 45.0 << 9.0 << -12.0;
        QTest::newRow("astro longitude -91 refused")
            << "astro" << 0.0 << 0.0 << 1.0 << 45.0 << -91.0 << 3.0 << true << 0.0 << 0.0 << 0.0;
        QTest::newRow("enable astro corrects every value out of bounds")
            << "enableAstro" << 100.0 << 200.0 << -13.0 << 0.0 << 0.0 << 0.0 << false << 46.0 << 11.0 << 2.0;
        QTest::newRow("enable astro lets a longitude of 120 pass")
            << "enableAstro" << -90.0 << 120.0 << 14.0 << 0.0 << 0.0 << 0.0 << false << -90.0 << 120.0 << 14.0;
    }

    void coordinatesAndTimezone()
    {
        QFETCH(QString, operation);
        QFETCH(double, ownLatitude);
        QFETCH(double, ownLongitude);
        QFETCH(double, ownTimezone);
        QFETCH(double, latitude);
        QFETCH(double, longitude);
        QFETCH(double, timezone);
        QFETCH(bool, refused);
        QFETCH(double, sentLatitude);
        QFETCH(double, sentLongitude);
        QFETCH(double, sentTimezone);

        ps_general_t general;
        general.setLatitude(ownLatitude);
        general.setLongitude(ownLongitude);
        general.setTimezone(ownTimezone);
        general.setDescription(QStringLiteral("villa"));
        general.initRequestSignals(engine, true);
        QJsonObject const before = general.toJson();

        if (operation == QLatin1String("position"))
            general.requestSetPosition(true, latitude, longitude);
        else if (operation == QLatin1String("astro"))
            general.requestSetAstro(true, latitude, longitude, timezone);
        else
            general.requestSetEnableAstro(true);
        drainEvents();

        QCOMPARE(general.toJson(), before);
        if (refused) {
            QCOMPARE(engine->requests.size(), 0);
            QCOMPARE(engine->errors.size(), 1);
            QCOMPARE(engine->errors.first().first, (QJsonObject{{"topic", "request/DB/persistent/general"}}));
            QCOMPARE(engine->errors.first().second, QStringLiteral("No valid coordinate"));
            return;
        }
        QCOMPARE(engine->errors.size(), 0);
        QCOMPARE(engine->requests.size(), 1);
        QJsonObject const packet = engine->requests.first();
        QCOMPARE(packet.value("topic").toString(), QStringLiteral("request/DB/persistent/general"));
        QJsonObject expected = before;
        expected.insert("enable_astro", true);
        expected.insert("latitude", sentLatitude);
        expected.insert("longitude", sentLongitude);
        expected.insert("timezone", sentTimezone);
        QCOMPARE(packet.value("payload").toObject(), expected);
    }

    void fieldRequestsCarryBareValues()
    {
        ps_general_t general;
        ps_smartbutton_t button;
        ps_presencesimulation_t presence;
        general.initRequestSignals(engine, true);
        button.initRequestSignals(engine, true);
        presence.initRequestSignals(engine, true);

        general.requestSetImageUpdate(false);
        general.requestSetDescription(QStringLiteral("villa"));
        button.requestSetEnabled(true);
        presence.requestSetIdItem(QStringLiteral("I7"));
        presence.requestSetState(psi_type_state_presence_simulation_t::rec);
        drainEvents();

        QList<QJsonObject> const expected{
            {{"topic", "request/DB/persistent/general/enable_img_upd"}, {"payload", false}},
            {{"topic", "request/DB/persistent/general/description"}, {"payload", "villa"}},
            {{"topic", "request/DB/persistent/smartbutton/enabled"}, {"payload", true}},
            {{"topic", "request/DB/persistent/presencesimulation/idItem"}, {"payload", "I7"}},
            {{"topic", "request/DB/persistent/presencesimulation/state"}, {"payload", "rec"}},
        };
        QCOMPARE(engine->requests, expected);
        QVERIFY(general.getEnableImgUpd());
        QVERIFY(!button.getEnabled());
    }

    void updateParam_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QJsonValue>("value");
        QTest::addColumn<bool>("notify");
        QTest::addColumn<bool>("taken");

        QTest::newRow("image update with notify") << "enable_img_upd" << QJsonValue(false) << true << true;
        QTest::newRow("image update silently") << "enable_img_upd" << QJsonValue(false) << false << true;
        QTest::newRow("another key") << "description" << QJsonValue(false) << true << false;
        QTest::newRow("text for the bool") << "enable_img_upd" << QJsonValue("false") << true << false;
    }

    void updateParam()
    {
        QFETCH(QString, key);
        QFETCH(QJsonValue, value);
        QFETCH(bool, notify);
        QFETCH(bool, taken);

        ps_general_t general;
        general.initRequestSignals(engine, true);
        general.update_param(key, value, notify);
        drainEvents();

        QCOMPARE(general.getEnableImgUpd(), !taken);
        QCOMPARE(general.getDescription(), QString());
        if (taken) {
            QCOMPARE(logged("Error to set ").size(), 0);
            QCOMPARE(engine->updated.size(), notify ? 1 : 0);
            if (notify)
                QCOMPARE(engine->updated.first(),
                         (QJsonObject{{"topic", "general/enable_img_upd"}, {"payload", false}}));
        } else {
            QCOMPARE(logged("Error to set "), (QList<QPair<int, QString>>{{2, "Error to set " + key}}));
            QCOMPARE(engine->total(), 0);
        }
    }

    void checkRGB_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<bool>("valid");
        QTest::addColumn<QString>("log");

        QString const format = QStringLiteral("Error to set smart button packet in value rgb - incorrect format");
        QString const range = QStringLiteral("Error to set smart button packet in value rgb - out of range");
        QTest::newRow("trailing semicolon") << "FF;FF;FF;" << true << QString();
        QTest::newRow("without trailing semicolon") << "FF;FF;FF" << true << QString();
        QTest::newRow("lower case and short parts") << "ff;0;a" << true << QString();
        QTest::newRow("two parts") << "FF;FF" << false << format;
        QTest::newRow("four parts") << "FF;FF;FF;FF" << false << format;
        QTest::newRow("only one semicolon is cut") << "FF;FF;FF;;" << false << format;
        QTest::newRow("empty") << "" << false << format;
        QTest::newRow("not hexadecimal") << "FF;GG;FF" << false << range;
        QTest::newRow("empty part") << "FF;;FF" << false << range;
    }

    void checkRGB()
    {
        QFETCH(QString, value);
        QFETCH(bool, valid);
        QFETCH(QString, log);

        QCOMPARE(ps_smartbutton_t::checkRGB(value), valid);
        QList<QPair<int, QString>> expected;
        if (!log.isEmpty())
            expected.append({2, log});
        QCOMPARE(logged("Error to set smart button"), expected);
    }

    void smartButtonRequest_data()
    {
        QTest::addColumn<QString>("rgb");
        QTest::addColumn<bool>("sent");
        QTest::newRow("valid colour is requested") << "00;80;FF" << true;
        QTest::newRow("invalid colour is an error") << "00;80" << false;
    }

    void smartButtonRequest()
    {
        QFETCH(QString, rgb);
        QFETCH(bool, sent);

        ps_smartbutton_t button;
        button.initRequestSignals(engine, true);
        button.requestSetSmartButton(true, QStringLiteral("I1"), rgb, QStringLiteral("I2"), 30);
        drainEvents();

        QJsonObject const payload{{"id_item_listen_index", "I1"}, {"value_item_rgb", rgb}, {"id_item_rgb", "I2"},
                                  {"timeout", 30}, {"enabled", true}};
        QJsonObject const packet{{"topic", "request/DB/persistent/smartbutton"}, {"payload", payload}};
        QCOMPARE(engine->requests, sent ? QList<QJsonObject>{packet} : QList<QJsonObject>());
        QCOMPARE(engine->errors.size(), sent ? 0 : 1);
        if (!sent) {
            QCOMPARE(engine->errors.first().first, packet);
            QCOMPARE(engine->errors.first().second, QStringLiteral("Invalid RGB value"));
        }
        QCOMPARE(button.getValueItemRgb(), QStringLiteral("FF;FF;FF;"));
    }

    void storageRequestsAndPathUpdates()
    {
        ps_storage_t storage;
        storage.initRequestSignals(engine, true);
        QJsonObject const panel{{"order", QJsonArray{1, 2}}};
        storage.requestSetObjectList(QStringLiteral("panel"), panel);

        storage.update(QStringLiteral("objects_list/panel"), panel, false);
        storage.update(QStringLiteral("objects_list/panel/theme/dark"), true, false);
        storage.update(QStringLiteral("objects_list/other"), 5, true);
        drainEvents();

        QJsonObject const request{{"topic", "request/DB/persistent/storage/objects_list/panel"}, {"payload", panel}};
        QCOMPARE(engine->requests, QList<QJsonObject>{request});
        QJsonObject const tree = parse(R"({"panel":{"order":[1,2],"theme":{"dark":true}},"other":5})");
        QCOMPARE(storage.getObjects(), tree);
        QCOMPARE(engine->updated,
                 (QList<QJsonObject>{{{"topic", "storage"}, {"payload", QJsonObject{{"objects_list", tree}}}}}));

        storage.update(QStringLiteral("objects_list/panel"), QJsonValue::Null, false);
        QCOMPARE(storage.getObjects(), parse(R"({"other":5})"));
    }

    void presenceState_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("state");
        QTest::newRow("stop") << "stop" << "stop";
        QTest::newRow("rec with blanks around") << " rec\t" << "rec";
        QTest::newRow("play") << "play" << "play";
        QTest::newRow("case counts, unknown gives play") << "Stop" << "play";
        QTest::newRow("empty gives play") << "" << "play";
    }

    void presenceState()
    {
        QFETCH(QString, text);
        QFETCH(QString, state);
        ps_presencesimulation_t presence;
        presence.setState(text);
        QCOMPARE(presence.getState().ToString(), state);
        QCOMPARE(presence.getStateText(), text);
    }

    void presenceUpdatesAndRequests()
    {
        QCOMPARE(psi_type_state_presence_simulation_t(), psi_type_state_presence_simulation_t::stop);
        QCOMPARE(QVariant::fromValue(psi_type_state_presence_simulation_t::play).toString(), QStringLiteral("play"));
        QCOMPARE(QVariant(QStringLiteral("rec")).value<psi_type_state_presence_simulation_t>(),
                 psi_type_state_presence_simulation_t::rec);

        ps_presencesimulation_t presence;
        presence.initRequestSignals(engine, true);
        presence.requestSetPresenceSimulation(psi_type_state_presence_simulation_t::play, QStringLiteral("I9"));
        presence.update_id_item(QStringLiteral("I3"), false);
        presence.update_state(psi_type_state_presence_simulation_t::rec, true);
        drainEvents();

        QCOMPARE(engine->requests,
                 (QList<QJsonObject>{{{"topic", "request/DB/persistent/presencesimulation"},
                                      {"payload", QJsonObject{{"state", "play"}, {"idItem", "I9"}}}}}));
        QCOMPARE(engine->updated,
                 (QList<QJsonObject>{{{"topic", "presencesimulation"},
                                      {"payload", QJsonObject{{"state", "rec"}, {"idItem", "I3"}}}}}));
    }

    void usersListMissLogsAndReports()
    {
        ps_users_t users;
        users.initRequestSignals(engine, true);
        ps_object_user_t admin(QStringLiteral("admin"), -1, QStringLiteral("hash"), nullptr);
        users.update_user(QStringLiteral("99"), &admin, false);

        QCOMPARE(users.list(QStringLiteral("99"))->getName(), QStringLiteral("admin"));
        ps_object_user_t* temporary = users.list(QStringLiteral("7"));
        QCOMPARE(temporary->getTopic(), QStringLiteral("users/objects_list/7"));
        QCOMPARE(temporary->getPerm(), 0);
        QCOMPARE(users.getObjects().keys(), QStringList{"99"});
        drainEvents();

        QCOMPARE(logged("New key create user"), (QList<QPair<int, QString>>{{6, "New key create user : 7"}}));
        QCOMPARE(engine->notExist, (QList<QJsonObject>{{{"topic", "users/objects_list/7"}}}));
    }

    void permissionFlags_data()
    {
        QTest::addColumn<int>("perm");
        QTest::addColumn<int>("asked");
        QTest::addColumn<bool>("granted");
        QTest::newRow("view granted") << 1 << int(ps_object_user_t::USER_PERMISSION_VIEW) << true;
        QTest::newRow("default user lacks admin pref")
            << 95 << int(ps_object_user_t::USER_PERMISSION_ADMIN_PREF) << false;
        QTest::newRow("default user has presence simulation")
            << 95 << int(ps_object_user_t::USER_PERMISSION_PRESENCE_SIMULATION) << true;
        QTest::newRow("admin has admin pref") << -1 << int(ps_object_user_t::USER_PERMISSION_ADMIN_PREF) << true;
        QTest::newRow("none is false for admin") << -1 << int(ps_object_user_t::USER_PERMISSION_NONE) << false;
        QTest::newRow("any of a combination")
            << 8 << int(ps_object_user_t::USER_PERMISSION_SCENARY | ps_object_user_t::USER_PERMISSION_SCHEDULES)
            << true;
        QTest::newRow("sign bit alone is not granted") << int(0x80000000) << int(0x80000000) << false;
    }

    void permissionFlags()
    {
        QFETCH(int, perm);
        QFETCH(int, asked);
        QFETCH(bool, granted);
        ps_object_user_t user(QStringLiteral("u"), perm, QString(), nullptr);
        QCOMPARE(user.getPermissionFlag(asked), granted);
    }

    void userUpdateAndPin()
    {
        ps_object_user_t user(QStringLiteral("users/objects_list/99"), nullptr);
        user.initRequestSignals(engine, true);
        ps_object_user_t other(QStringLiteral("admin"), -1, QStringLiteral("h1"), nullptr);
        other.setTopic(QStringLiteral("users/objects_list/1"));

        user.update(nullptr, true);
        user.update(&other, false);
        QVERIFY(user == other);
        QCOMPARE(user.getTopic(), QStringLiteral("users/objects_list/99"));
        user.update_pin(QStringLiteral("h2"), true);
        QVERIFY(!(user == other));
        drainEvents();

        QCOMPARE(engine->errors.size(), 1);
        QCOMPARE(engine->errors.first().first,
                 (QJsonObject{{"topic", "users/objects_list/99"}, {"payload", QJsonValue::Null}}));
        QCOMPARE(engine->errors.first().second, QStringLiteral("Not permitted nullptr"));
        QCOMPARE(engine->updated,
                 (QList<QJsonObject>{{{"topic", "users/objects_list/99"},
                                      {"payload", QJsonObject{{"name", "admin"}, {"perm", -1}, {"pin", "h2"}}}}}));
    }

    void usersSurviveJsonRoundTrip()
    {
        ps_users_t users;
        ps_object_user_t user(QStringLiteral("user"), 95, QString(), nullptr);
        ps_object_user_t admin(QStringLiteral("admin"), -1, database::utility::createStringHash("12345"), nullptr);
        users.update_user(QStringLiteral("0"), &user, false);
        users.update_user(QStringLiteral("99"), &admin, false);

        QJsonObject const json = users.toJson();
        QCOMPARE(json.keys(), QStringList{"objects_list"});
        QCOMPARE(json.value("objects_list").toObject().value("99").toObject(),
                 (QJsonObject{{"name", "admin"}, {"perm", -1}, {"pin", admin.getPin()}}));

        QScopedPointer<ps_users_t> back(serializer()->deserialize<ps_users_t*>(json));
        QVERIFY(back);
        QCOMPARE(back->toJson(), json);
        ps_object_user_t* restored = back->getObjects().value("99");
        QVERIFY(restored);
        QCOMPARE(restored->parent(), nullptr);
        QVERIFY(*restored == admin);

        back->initRequestSignals(engine, true);
        QCOMPARE(restored->getTopic(), QStringLiteral("users/objects_list/99"));
    }
};

QTEST_GUILESS_MAIN(tst_ps_sections)
#include "tst_ps_sections.moc"
