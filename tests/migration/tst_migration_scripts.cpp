#include <QJsonArray>
#include <QTemporaryDir>
#include <QtTest>

#include "database/database_t.h"
#include "database/default/persistent/ps_default_t.h"
#include "database/definition/service_t.h"
#include "database/definition/type_brand_t.h"
#include "database/migration/migration_t.h"
#include "database/persistent/persistent_t.h"
#include "database/utility/utility.h"
#include "support/log_capture.h"
#include "support/ps_document.h"

using database::database_t;
using database::definition::service_t;
using database::definition::type_brand_t;
using database::migration::migration_base_t;

namespace {

QString factoryPin()
{
    return database::persistent::ps_default_t::getInstance()->getAdminPin(type_brand_t::HALDO);
}

bool absent(QJsonValue const& value)
{
    return value.isUndefined() || value.isNull();
}

QJsonValue at(QJsonObject const& document, QString const& path)
{
    return database::utility::getJsonValue(QJsonDocument(document), path);
}

/// A stored document as generation major wrote it, holding what each script
/// lifts: role passwords in the elements and roles as element rights (up to
/// 1), a long-text item without format and an RGB element on three one-byte
/// items (up to 2), season types in flag bits (up to 3). It also keeps a
/// schedule on an element that doesn't exist, for the check after the load.
QJsonObject generationDocument(int major)
{
    QJsonObject document = consistentDocument();
    applyChanges(document, jsonObject(R"({
        "items/objects_list/C1": {"name": "red", "type": "dtp_5", "typeformat": "001"},
        "items/objects_list/C2": {"name": "green", "type": "dtp_5", "typeformat": "001"},
        "items/objects_list/C3": {"name": "blue", "type": "dtp_5", "typeformat": "001"},
        "items/objects_list/TX": {"name": "display", "type": "dtp_232", "typeformat": "600"},
        "elements/objects_list/RGB1": {"@class": "psoe_rgb", "name": "strip", "flags": 67108864,
            "function_map": {"color_red": "C1", "color_green": "C2", "color_blue": "C3"}},
        "elements/objects_list/TS1": {"@class": "psoe_thermostat", "name": "wall", "flags": 134217728,
                                      "seasontype": 0},
        "elements/objects_list/T1/flags": 805306368,
        "thermo/objects_list/TH1/thermo/seasontype": 0,
        "schedulers/objects_list/SCH9": {"name": "lost", "element_id": "E9"}
    })"));
    if (major <= 3)
        applyChanges(document, jsonObject(R"({"elements/objects_list/TS1/seasontype": null,
                                              "elements/objects_list/T1/flags": 268435456,
                                              "thermo/objects_list/TH1/thermo/seasontype": null})"));
    if (major <= 2)
        applyChanges(document, jsonObject(R"({"items/objects_list/TX/typeformat": "",
                                              "elements/objects_list/RGB1/flags": 0})"));
    if (major <= 1) {
        applyChanges(document, jsonObject(R"({"users": null,
            "elements/credentials": {"admin": "a", "manager": "m", "user": "u", "operator": "o"},
            "elements/objects_list/E1/auth": "operator", "elements/objects_list/R1/auth": " none "})"));
    }
    applyChanges(document, QJsonObject{{"versions/database", QStringLiteral("%1.0.0").arg(major)}});
    return document;
}

QJsonObject user(char const* name, int perm, QString const& pin)
{
    return QJsonObject{{"name", name}, {"perm", perm}, {"pin", pin}};
}

} // namespace

class tst_migration_scripts : public QObject
{
    Q_OBJECT

private:
    database_t* db = nullptr;

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(database::utility::getInstance());
        db = new database_t(service_t::server, type_brand_t::HALDO);
    }

    void cleanupTestCase() { delete db; }

    void rolePasswordsBecomeUsers_data()
    {
        QTest::addColumn<type_brand_t>("brand");
        QTest::addColumn<QJsonObject>("credentials");
        QTest::addColumn<QJsonObject>("users");
        QJsonObject const every{{"admin", "a"}, {"manager", "m"}, {"user", "u"}, {"operator", "o"}};
        QTest::newRow("every role") << type_brand_t::HALDO << every
                                    << QJsonObject{{"99", user("admin", -1, "a")}, {"3", user("manager", 63, "m")},
                                                   {"0", user("user", 1, "")}, {"1", user("operator", 3, "o")},
                                                   {"2", user("power user", 63, "u")}};
        QTest::newRow("no administrator password") << type_brand_t::HALDO << QJsonObject{{"operator", "o"}}
                                                   << QJsonObject{{"99", user("admin", -1, factoryPin())},
                                                                  {"0", user("user", 63, "")},
                                                                  {"1", user("operator", 63, "o")}};
        QTest::newRow("operator and user") << type_brand_t::HALDO
                                           << QJsonObject{{"admin", "a"}, {"user", " "}, {"operator", "o"}}
                                           << QJsonObject{{"99", user("admin", -1, "a")}, {"0", user("user", 3, "")},
                                                          {"1", user("operator", 63, "o")}};
        QTest::newRow("the manager administers a bus panel") << type_brand_t::VESTRA << every
                                                             << QJsonObject{{"99", user("admin", -1, "m")},
                                                                            {"0", user("user", 1, "")},
                                                                            {"1", user("operator", 3, "o")},
                                                                            {"2", user("power user", 63, "u")}};
        QTest::newRow("bus panel without manager") << type_brand_t::VESTRA << QJsonObject{{"manager", " "}}
                                                   << QJsonObject{{"99", user("admin", -1, factoryPin())},
                                                                  {"0", user("user", 63, "")}};
        QTest::newRow("other brands keep no administrator") << type_brand_t::TOLVER << every
                                                            << QJsonObject{{"0", user("user", 1, "")},
                                                                           {"1", user("operator", 3, "o")},
                                                                           {"2", user("power user", 63, "u")}};
    }

    void rolePasswordsBecomeUsers()
    {
        QFETCH(type_brand_t, brand);
        QFETCH(QJsonObject, credentials);
        QFETCH(QJsonObject, users);
        QJsonObject document{{"elements", QJsonObject{{"credentials", credentials}, {"objects_list", QJsonObject()}}}};
        log_capture_t logs;
        database::migration::migration_1_t script;
        int error = -9;
        script.migrate_persistent(brand, document, error);
        QCOMPARE(error, int(migration_base_t::NoError));
        QCOMPARE(at(document, "users/objects_list").toObject(), users);
        QVERIFY(!document.value("elements").toObject().contains("credentials"));
        QCOMPARE(logs.messages().filter("Migrating persistent database for version 1").size(), 2);
    }

    void rolesBecomeRights_data()
    {
        QTest::addColumn<QJsonObject>("credentials");
        QTest::addColumn<QString>("role");
        QTest::addColumn<QJsonObject>("rights");
        QJsonObject const every{{"admin", "a"}, {"manager", "m"}, {"user", "u"}, {"operator", "o"}};
        QJsonObject const noUser{{"admin", "a"}, {"manager", "m"}, {"operator", "o"}};
        QJsonObject const all{{"1", 1}, {"2", 1}, {"3", 1}};
        QTest::newRow("none") << every << " none " << QJsonObject();
        QTest::newRow("empty") << every << "" << QJsonObject();
        QTest::newRow("manager") << every << "manager" << all;
        QTest::newRow("operator") << every << "operator" << all;
        QTest::newRow("user") << every << " user" << all;
        QTest::newRow("user without power user") << noUser << "user" << QJsonObject();
        QTest::newRow("operator without power user") << noUser << "operator" << QJsonObject{{"1", 1}, {"3", 1}};
        QTest::newRow("manager without any role") << QJsonObject() << "manager" << QJsonObject{{"1", 1}};
        QTest::newRow("operator without operator") << QJsonObject() << "operator" << QJsonObject();
    }

    void rolesBecomeRights()
    {
        QFETCH(QJsonObject, credentials);
        QFETCH(QString, role);
        QFETCH(QJsonObject, rights);
        QJsonObject document{{"elements", QJsonObject{{"credentials", credentials},
                                                      {"objects_list", QJsonObject{{"E1", QJsonObject{{"auth", role}}},
                                                                                   {"E2", QJsonObject{{"auth", QJsonObject{{"7", 1}}}}}}}}}};
        database::migration::migration_1_t script;
        int error = 0;
        script.migrate_persistent(type_brand_t::HALDO, document, error);
        QCOMPARE(at(document, "elements/objects_list/E1/auth").toObject(), rights);
        // Rights that are already users stay as they are.
        QCOMPARE(at(document, "elements/objects_list/E2/auth").toObject(), (QJsonObject{{"7", 1}}));
    }

    void itemsAndColourElements_data()
    {
        QTest::addColumn<QJsonObject>("changes");
        QTest::addColumn<QString>("path");
        QTest::addColumn<QJsonValue>("expected");
        QTest::newRow("long text gets its format") << jsonObject(R"({"items/objects_list/T/type": " dtp_232 "})")
                                                   << "items/objects_list/T/typeformat" << QJsonValue("600");
        QTest::newRow("long text of the other kind too") << jsonObject(R"({"items/objects_list/T/type": "dtp_251"})")
                                                         << "items/objects_list/T/typeformat" << QJsonValue("600");
        QTest::newRow("a set format stays") << jsonObject(R"({"items/objects_list/T/typeformat": "abc"})")
                                            << "items/objects_list/T/typeformat" << QJsonValue("abc");
        QTest::newRow("other items keep no format") << jsonObject(R"({"items/objects_list/T/type": "dtp_1"})")
                                                    << "items/objects_list/T/typeformat" << QJsonValue("");
        QTest::newRow("three colour bytes") << QJsonObject() << "elements/objects_list/RGB/flags"
                                            << QJsonValue(0x4000000 | 1);
        QTest::newRow("full class name") << jsonObject(R"({"elements/objects_list/RGB/@class":
                                                              "database::persistent::objects::psoe_rgb"})")
                                         << "elements/objects_list/RGB/flags" << QJsonValue(0x4000000 | 1);
        QTest::newRow("a colour of another type") << jsonObject(R"({"items/objects_list/C2/type": "dtp_6"})")
                                                  << "elements/objects_list/RGB/flags" << QJsonValue(1);
        QTest::newRow("a colour that doesn't exist") << jsonObject(R"({"items/objects_list/C3": null})")
                                                     << "elements/objects_list/RGB/flags" << QJsonValue(1);
        QTest::newRow("already driven as one") << jsonObject(R"({"elements/objects_list/RGB/flags": 536870912})")
                                               << "elements/objects_list/RGB/flags" << QJsonValue(536870912);
    }

    void itemsAndColourElements()
    {
        QFETCH(QJsonObject, changes);
        QFETCH(QString, path);
        QFETCH(QJsonValue, expected);
        QJsonObject document = jsonObject(R"({
            "items": {"objects_list": {
                "T": {"type": "dtp_232", "typeformat": ""},
                "C1": {"type": "dtp_5", "typeformat": "001"}, "C2": {"type": "dtp_5", "typeformat": "001"},
                "C3": {"type": "dtp_5", "typeformat": "001"}}},
            "elements": {"objects_list": {"RGB": {"@class": "psoe_rgb", "flags": 1,
                "function_map": {"color_red": "C1", "color_green": "C2", "color_blue": "C3"}}}}})");
        applyChanges(document, changes);
        database::migration::migration_2_t script;
        int error = -9;
        script.migrate_persistent(type_brand_t::HALDO, document, error);
        QCOMPARE(error, int(migration_base_t::NoError));
        QCOMPARE(at(document, path), expected);
    }

    void seasonTypesLeaveTheFlags_data()
    {
        QTest::addColumn<QJsonObject>("changes");
        QTest::addColumn<QJsonObject>("expected");
        QTest::addColumn<QString>("line");
        QTest::newRow("thermostat element, win-sum bit set")
            << jsonObject(R"({"elements/objects_list/W/flags": 134217728})")
            << jsonObject(R"({"elements/objects_list/W/seasontype": 0})") << "Migrated element wall";
        QTest::newRow("thermostat element, bit clear") << QJsonObject()
                                                       << jsonObject(R"({"elements/objects_list/W/seasontype": 1})")
                                                       << "Migrated element wall";
        QTest::newRow("logic element moves its season to its thermostat")
            << jsonObject(R"({"elements/objects_list/L/flags": 268435456})")
            << jsonObject(R"({"thermo/objects_list/TH/thermo/seasontype": 0,
                              "thermo/objects_list/TH/thermo/idactual": "A",
                              "elements/objects_list/L/flags": 805306368})")
            << "Migrated thermo TH related to element logic";
        QTest::newRow("logic element without its thermostat is marked all the same")
            << jsonObject(R"({"elements/objects_list/L/thermo_id": "TH9"})")
            << jsonObject(R"({"elements/objects_list/L/flags": 536870912,
                              "thermo/objects_list/TH/thermo/seasontype": 2})")
            << "Migrated element logic";
    }

    void seasonTypesLeaveTheFlags()
    {
        QFETCH(QJsonObject, changes);
        QFETCH(QJsonObject, expected);
        QFETCH(QString, line);
        QJsonObject document = jsonObject(R"({
            "thermo": {"objects_list": {"TH": {"thermo": {"idactual": "A", "seasontype": 2}}}},
            "elements": {"objects_list": {
                "W": {"@class": "psoe_thermostat", "name": "wall", "flags": 0},
                "L": {"@class": "psoe_thermo_logic", "name": "logic", "thermo_id": "TH", "flags": 0},
                "P": {"name": "no class", "flags": 134217728}}}})");
        applyChanges(document, changes);
        log_capture_t logs;
        database::migration::migration_4_t script;
        int error = -9;
        script.migrate_persistent(type_brand_t::HALDO, document, error);
        QCOMPARE(error, int(migration_base_t::NoError));
        for (auto it = expected.begin(); it != expected.end(); ++it)
            QCOMPARE(at(document, it.key()), it.value());
        QVERIFY(logs.contains(line, 4));
        QVERIFY(!at(document, "elements/objects_list/P").toObject().contains("seasontype"));
    }

    void olderGenerationLoadsAndSavesCurrent_data()
    {
        QTest::addColumn<int>("major");
        for (int major = 0; major <= 4; ++major)
            QTest::addRow("generation %d", major) << major;
    }

    void olderGenerationLoadsAndSavesCurrent()
    {
        QFETCH(int, major);
        database::persistent::persistent_t* engine = db->getPersistent();
        log_capture_t logs;
        QJsonObject document = generationDocument(major);
        int result = 0;
        QVERIFY(!engine->loadFromJson(document, result).isEmpty());
        QTRY_VERIFY(logs.contains("Consistency check time: "));
        QCoreApplication::processEvents();
        QTemporaryDir dir;
        QString const path = dir.filePath("persistent.json");
        QVERIFY(engine->saveToFile(path, true));
        QJsonObject const saved = engine->readFromFile(path);

        QCOMPARE(at(saved, "versions/database").toString(), QStringLiteral("4.0.0"));
        QCOMPARE(database::migration::migration_t::getInstance()->needMigration(saved),
                 int(database::migration::migration_t::NoMigration));
        QVERIFY(absent(at(saved, "elements/credentials")));
        QCOMPARE(at(saved, "users/objects_list/99/name").toString(), QStringLiteral("admin"));
        QCOMPARE(at(saved, "items/objects_list/TX/typeformat").toString(), QStringLiteral("600"));
        QCOMPARE(at(saved, "elements/objects_list/RGB1/flags").toInt(), 0x4000000);
        QCOMPARE(at(saved, "elements/objects_list/TS1/seasontype").toInt(), 0);
        QCOMPARE(at(saved, "thermo/objects_list/TH1/thermo/seasontype").toInt(), 0);
        QCOMPARE(at(saved, "elements/objects_list/T1/flags").toInt(), 0x30000000);
        // The check after the load has done its part.
        QVERIFY(absent(at(saved, "schedulers/objects_list/SCH9")));
        if (major <= 1) {
            QCOMPARE(at(saved, "users/objects_list/1/name").toString(), QStringLiteral("operator"));
            QCOMPARE(at(saved, "elements/objects_list/E1/auth").toObject(),
                     (QJsonObject{{"1", 1}, {"2", 1}, {"3", 1}}));
            QCOMPARE(at(saved, "elements/objects_list/R1/auth").toObject(), QJsonObject());
        } else {
            QCOMPARE(at(saved, "elements/objects_list/E1/auth").toObject(), (QJsonObject{{"0", 1}}));
        }
        QCOMPARE(logs.matching("Apply migration version ").size(), major < 4 ? 4 - std::max(major, 1) + 1 : 0);

        // What was saved loads as it is.
        logs.clear();
        QJsonObject again = saved;
        QVERIFY(!engine->loadFromJson(again, result).isEmpty());
        QVERIFY(logs.contains("No migration to apply... same version...", 6));
        QTRY_VERIFY(logs.contains("Consistency check time: "));
        QCoreApplication::processEvents();
        QCOMPARE(engine->getJdata(), saved);
    }
};

QTEST_GUILESS_MAIN(tst_migration_scripts)
#include "tst_migration_scripts.moc"
