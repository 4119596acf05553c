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

    void scriptLiftsItsGeneration_data()
    {
        QTest::addColumn<int>("script");
        QTest::addColumn<type_brand_t>("brand");
        QTest::addColumn<QJsonObject>("document");
        QTest::addColumn<QJsonObject>("expected");
        auto row = [](char const* name, int script, type_brand_t const& brand, char const* document, QString expected) {
            QTest::newRow(name) << script << brand << jsonObject(document)
                                << QJsonDocument::fromJson(expected.replace("FACTORY", factoryPin()).toUtf8()).object();
        };
        // An old role becomes the users who hold it or a higher one.
        row("every role", 1, type_brand_t::HALDO, R"({"elements": {"credentials": {"admin": "a", "manager": "m",
                "user": "u", "operator": "o"}, "objects_list": {"E1": {"auth": " manager"}, "E2": {"auth": {"7": 1}},
                "E3": {"auth": "none"}}}})",
            R"({"users/objects_list": {"99": {"name": "admin", "perm": -1, "pin": "a"},
                "3": {"name": "manager", "perm": 63, "pin": "m"}, "0": {"name": "user", "perm": 1, "pin": ""},
                "1": {"name": "operator", "perm": 3, "pin": "o"}, "2": {"name": "power user", "perm": 63, "pin": "u"}},
                "elements/credentials": null, "elements/objects_list/E1/auth": {"1": 1, "2": 1, "3": 1},
                "elements/objects_list/E2/auth": {"7": 1}, "elements/objects_list/E3/auth": {}})");
        row("no administrator password", 1, type_brand_t::HALDO, R"({"elements": {"credentials": {"operator": "o"},
                "objects_list": {"E1": {"auth": "user"}, "E2": {"auth": "operator"}}}})",
            R"({"users/objects_list": {"99": {"name": "admin", "perm": -1, "pin": "FACTORY"},
                "0": {"name": "user", "perm": 63, "pin": ""}, "1": {"name": "operator", "perm": 63, "pin": "o"}},
                "elements/objects_list/E1/auth": {}, "elements/objects_list/E2/auth": {"1": 1}})");
        row("the manager administers a bus panel", 1, type_brand_t::VESTRA, R"({"elements": {"credentials":
                {"admin": "a", "manager": "m"}, "objects_list": {}}})",
            R"({"users/objects_list": {"99": {"name": "admin", "perm": -1, "pin": "m"},
                "0": {"name": "user", "perm": 63, "pin": ""}}})");
        row("bus panel without manager", 1, type_brand_t::VESTRA,
            R"({"elements": {"credentials": {"manager": " "}, "objects_list": {}}})",
            R"({"users/objects_list/99/pin": "FACTORY"})");
        row("other brands keep no administrator", 1, type_brand_t::TOLVER, R"({"elements": {"credentials":
                {"admin": "a", "user": "u", "operator": "o"}, "objects_list": {}}})",
            R"({"users/objects_list": {"0": {"name": "user", "perm": 1, "pin": ""},
                "1": {"name": "operator", "perm": 3, "pin": "o"},
                "2": {"name": "power user", "perm": 63, "pin": "u"}}})");
        row("long texts get a format", 2, type_brand_t::HALDO, R"({"items": {"objects_list": {
                "T1": {"type": "dtp_232", "typeformat": ""}, "T2": {"type": " dtp_251 "},
                "T3": {"type": "dtp_232", "typeformat": "abc"}, "T4": {"type": "dtp_1", "typeformat": ""}}}})",
            R"({"items/objects_list/T1/typeformat": "600", "items/objects_list/T2/typeformat": "600",
                "items/objects_list/T3/typeformat": "abc", "items/objects_list/T4/typeformat": ""})");
        row("colours on three bytes", 2, type_brand_t::HALDO, R"({"items": {"objects_list": {
                "C1": {"type": "dtp_5", "typeformat": "001"}, "C2": {"type": "dtp_5", "typeformat": "001"},
                "C3": {"type": "dtp_5", "typeformat": "001"}, "C4": {"type": "dtp_6", "typeformat": "001"}}},
                "elements": {"objects_list": {
                "R1": {"@class": "psoe_rgb", "flags": 1,
                       "function_map": {"color_red": "C1", "color_green": "C2", "color_blue": "C3"}},
                "R2": {"@class": "database::persistent::objects::psoe_rgb",
                       "function_map": {"color_red": "C1", "color_green": "C2", "color_blue": "C3"}},
                "R3": {"@class": "psoe_rgb", "flags": 1,
                       "function_map": {"color_red": "C1", "color_green": "C4", "color_blue": "C3"}},
                "R4": {"@class": "psoe_rgb", "flags": 1,
                       "function_map": {"color_red": "C1", "color_green": "C2", "color_blue": "C9"}},
                "R5": {"@class": "psoe_rgb", "flags": 536870912,
                       "function_map": {"color_red": "C1", "color_green": "C2", "color_blue": "C3"}},
                "R6": {"@class": "psoe_dimmer", "flags": 1,
                       "function_map": {"color_red": "C1", "color_green": "C2", "color_blue": "C3"}}}}})",
            R"({"elements/objects_list/R1/flags": 67108865, "elements/objects_list/R2/flags": 67108864,
                "elements/objects_list/R3/flags": 1, "elements/objects_list/R4/flags": 1,
                "elements/objects_list/R5/flags": 536870912, "elements/objects_list/R6/flags": 1})");
        row("season types leave the flags", 4, type_brand_t::HALDO, R"({
                "thermo": {"objects_list": {"TH": {"thermo": {"idactual": "A", "seasontype": 2}}}},
                "elements": {"objects_list": {"W1": {"@class": "psoe_thermostat", "name": "wall", "flags": 134217728},
                "W2": {"@class": "psoe_thermostat", "flags": 0},
                "L1": {"@class": "psoe_thermo_logic", "name": "logic", "thermo_id": "TH", "flags": 268435456},
                "L2": {"@class": "psoe_thermo_logic", "thermo_id": "TH9", "flags": 0},
                "P": {"name": "no class", "flags": 134217728}}}})",
            R"({"elements/objects_list/W1/seasontype": 0, "elements/objects_list/W2/seasontype": 1,
                "thermo/objects_list/TH/thermo": {"idactual": "A", "seasontype": 0},
                "elements/objects_list/L1/flags": 805306368, "elements/objects_list/L2/flags": 536870912,
                "elements/objects_list/P/seasontype": null})");
    }

    void scriptLiftsItsGeneration()
    {
        QFETCH(int, script);
        QFETCH(type_brand_t, brand);
        QFETCH(QJsonObject, document);
        QFETCH(QJsonObject, expected);
        database::migration::migration_1_t first;
        database::migration::migration_2_t second;
        database::migration::migration_4_t fourth;
        QMap<int, migration_base_t*> const scripts{{1, &first}, {2, &second}, {4, &fourth}};
        log_capture_t logs;
        int error = -9;
        scripts.value(script)->migrate_persistent(brand, document, error);
        QCOMPARE(error, int(migration_base_t::NoError));
        QString const difference = firstDifference(document, expected);
        QVERIFY2(difference.isEmpty(), qPrintable(difference));
        QString const frame
            = QStringLiteral("4 [Migration script %1] Migrating persistent database for version %1 ").arg(script);
        QStringList const lines{frame + "...", frame + "done"};
        QVERIFY2(logs.missing(lines).isEmpty(), qPrintable(logs.missing(lines)));
        if (script == 4)
            QVERIFY(logs.contains("Migrated thermo TH related to element logic", 4));
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
        QVERIFY(loadChecked(engine, generationDocument(major), logs));
        QCOMPARE(logs.matching("Apply migration version ").size(), major < 4 ? 4 - std::max(major, 1) + 1 : 0);
        QTemporaryDir dir;
        QVERIFY(engine->saveToFile(dir.filePath("persistent.json"), true));
        QJsonObject const saved = engine->readFromFile(dir.filePath("persistent.json"));
        QJsonObject expected = jsonObject(R"({"versions/database": "4.0.0", "elements/credentials": null,
            "users/objects_list/99/name": "admin", "items/objects_list/TX/typeformat": "600",
            "elements/objects_list/RGB1/flags": 67108864, "elements/objects_list/TS1/seasontype": 0,
            "thermo/objects_list/TH1/thermo/seasontype": 0, "elements/objects_list/T1/flags": 805306368,
            "schedulers/objects_list/SCH9": null, "elements/objects_list/E1/auth": {"0": 1}})");
        QJsonObject const rights = jsonObject(R"({"users/objects_list/1/name": "operator",
            "elements/objects_list/R1/auth": {}, "elements/objects_list/E1/auth": {"1": 1, "2": 1, "3": 1}})");
        for (auto it = rights.begin(); major <= 1 && it != rights.end(); ++it)
            expected.insert(it.key(), it.value());
        QString const difference = firstDifference(saved, expected);
        QVERIFY2(difference.isEmpty(), qPrintable(difference));

        // What was saved is current: it loads as it is, and the check finds nothing more to do.
        logs.clear();
        QVERIFY(loadChecked(engine, saved, logs));
        QVERIFY(logs.contains("No migration to apply... same version...", 6));
        QCOMPARE(engine->getJdata(), saved);
    }
};

QTEST_GUILESS_MAIN(tst_migration_scripts)
#include "tst_migration_scripts.moc"
