#include <QJsonDocument>
#include <QtTest>

#include "database/definition/type_brand_t.h"
#include "database/migration/migration_t.h"
#include "database/utility/utility.h"
#include "support/log_capture.h"

using database::definition::type_brand_t;
using database::migration::migration_base_t;
using database::migration::migration_t;

namespace {

QJsonObject documentOfVersion(QJsonValue const& version)
{
    return QJsonObject{{"versions", QJsonObject{{"database", version}, {"general", "1.2.3"}}},
                       {"items", QJsonObject{{"objects_list", QJsonObject()}}}};
}

QString storedVersion(QJsonObject const& document)
{
    return document.value("versions").toObject().value("database").toString();
}

/// The numbers of the scripts whose application was announced, in order.
QList<int> appliedScripts(log_capture_t const& logs)
{
    QList<int> applied;
    for (auto const& record : logs.matching("Apply migration version "))
        applied.append(record.message.section(QLatin1Char(' '), -1).toInt());
    return applied;
}

} // namespace

class tst_migration : public QObject
{
    Q_OBJECT

private:
    migration_t* driver = nullptr;

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(database::utility::getInstance());
        driver = migration_t::createInstance(type_brand_t::HALDO);
        QVERIFY(driver);
        QCOMPARE(migration_t::createInstance(type_brand_t::VESTRA), driver);
        QCOMPARE(migration_t::getInstance(), driver);
    }

    void persistentDocumentReachesCurrentVersion_data()
    {
        QTest::addColumn<QJsonObject>("document");
        QTest::addColumn<QList<int>>("scripts");
        QTest::addColumn<QString>("line");
        QTest::addColumn<int>("level");
        QTest::newRow("generation 3 runs scripts 3 and 4")
            << documentOfVersion("3.9.1") << QList<int>{3, 4} << "Migrate database HALDO from version 3 to 4 (4.0.0)"
            << 4;
        QTest::newRow("generation 0 runs scripts 1 to 4")
            << documentOfVersion("0.1.0") << QList<int>{1, 2, 3, 4} << "from version 0 to 4" << 4;
        QTest::newRow("same generation runs nothing")
            << documentOfVersion("4.2.0") << QList<int>{} << "No migration to apply... same version..." << 6;
        QTest::newRow("too high runs nothing")
            << documentOfVersion("5.0.0") << QList<int>{}
            << " The database version is too high compared to the current one 5 > 4 (4.0.0)" << 2;
        QTest::newRow("no versions section")
            << QJsonObject{{"items", QJsonObject()}} << QList<int>{}
            << " Unable to read database version from persistent part {}" << 2;
        QTest::newRow("version not a number")
            << documentOfVersion("x.1.0") << QList<int>{}
            << " Unable to read database version from persistent part" << 2;
    }

    void persistentDocumentReachesCurrentVersion()
    {
        QFETCH(QJsonObject, document);
        QFETCH(QList<int>, scripts);
        QFETCH(QString, line);
        QFETCH(int, level);
        log_capture_t logs;
        int error = 77;
        driver->migrate_persistent(document, error);
        QCOMPARE(appliedScripts(logs), scripts);
        QVERIFY2(logs.contains(line, level), qPrintable(logs.messages().join('\n')));
        // Stamped on every path, also where nothing ran.
        QCOMPARE(storedVersion(document), QStringLiteral("4.0.0"));
        if (scripts.isEmpty())
            QCOMPARE(error, 77); // only scripts write the outcome
        QCOMPARE(logs.matching("Save new version version ").size(), scripts.size());
    }

    void scriptsReportNothingToDo()
    {
        log_capture_t logs;
        QJsonObject document = documentOfVersion("2.0.0");
        int error = 0;
        driver->migrate_persistent(document, error);
        // Script 3 has nothing to do; script 4, the last, works and says so.
        QCOMPARE(error, int(migration_base_t::NoError));
        QVERIFY(logs.contains("[Migration script 3] No migration required for persistent database for version 3",
                              4));
        QVERIFY(logs.contains("-------------------------------------------------------", 6));
    }

    void realtimeAndPresenceFollowTheStoredMajor()
    {
        log_capture_t logs;
        QJsonObject realtime{{"items", QJsonObject()}};
        QJsonObject const before = realtime;
        int error = 0;
        driver->migrate_realtime(3, realtime, error);
        QCOMPARE(appliedScripts(logs), (QList<int>{3, 4}));
        QCOMPARE(realtime, before); // no version is written into it
        QVERIFY(logs.contains("No migration required for realtime database for version 4"));

        logs.clear();
        QJsonObject presence;
        driver->migrate_presencesimulation(4, presence, error);
        QVERIFY(appliedScripts(logs).isEmpty());
        QVERIFY(logs.contains("No migration to apply... same version...", 6));
        QVERIFY(presence.isEmpty());
    }

    void needMigration_data()
    {
        QTest::addColumn<QJsonObject>("document");
        QTest::addColumn<int>("expected");
        QTest::newRow("older") << documentOfVersion("3.0.0") << int(migration_t::MigrationRequired);
        QTest::newRow("same") << documentOfVersion("4.9.9") << int(migration_t::NoMigration);
        QTest::newRow("newer") << documentOfVersion("5.0.0") << int(migration_t::VersionTooHigh);
        QTest::newRow("unreadable") << documentOfVersion("four") << int(migration_t::GenericError);
        QTest::newRow("missing") << QJsonObject() << int(migration_t::GenericError);
    }

    void needMigration()
    {
        QFETCH(QJsonObject, document);
        QFETCH(int, expected);
        QCOMPARE(driver->needMigration(document), expected);
    }

    void checkVersionFillsNumbersInItsOwnOrder()
    {
        log_capture_t logs;
        QCOMPARE(driver->checkVersion(5), -1);
        QVERIFY(logs.contains("database major version \"4\" higher than supported version \"5\", plase update "
                              "application",
                              3));
        QCOMPARE(driver->checkVersion(4), 0);
        QCOMPARE(driver->checkVersion(QStringLiteral("99.0.0")), 0);
        QCOMPARE(driver->checkVersion(QStringLiteral("not a version")), 0);
    }

    void findStartObjectPicksFirstScriptAtOrAbove()
    {
        QCOMPARE(driver->findStartObject(0).key(), 1);
        QCOMPARE(driver->findStartObject(3).key(), 3);
        QCOMPARE(driver->findStartObject(5).key(), 5);
        QVERIFY(driver->findStartObject(6) == driver->endObject());
    }

    void wholeSetMigrationHasNoSameVersionTest_data()
    {
        QTest::addColumn<QJsonObject>("document");
        QTest::addColumn<QList<int>>("scripts");
        QTest::addColumn<int>("persistentError");
        QTest::addColumn<int>("errors");
        QTest::newRow("current runs script 4 again") << documentOfVersion("4.0.0") << QList<int>{4} << 0 << 1;
        QTest::newRow("older runs up to 4") << documentOfVersion("2.1.0") << QList<int>{2, 3, 4} << 0 << 1;
        QTest::newRow("too high") << documentOfVersion("7.0.0") << QList<int>{} << -1 << -1;
        QTest::newRow("unreadable") << documentOfVersion("") << QList<int>{} << -2 << -2;
    }

    void wholeSetMigrationHasNoSameVersionTest()
    {
        QFETCH(QJsonObject, document);
        QFETCH(QList<int>, scripts);
        QFETCH(int, persistentError);
        QFETCH(int, errors);
        log_capture_t logs;
        QJsonObject realtime;
        QJsonObject presence;
        int e1 = 9, e2 = 9, e3 = 9;
        driver->migrate(document, realtime, presence, e1, e2, e3);
        QCOMPARE(appliedScripts(logs), scripts);
        QCOMPARE(e1, persistentError);
        QCOMPARE(e2, errors);
        QCOMPARE(e3, errors);
        if (errors > 0)
            QCOMPARE(storedVersion(document), QStringLiteral("4.0.0"));
    }

    void placeholderScriptAsksForImplementation()
    {
        log_capture_t logs;
        database::migration::migration_5_t script;
        QJsonObject document = documentOfVersion("5.0.0");
        QJsonObject const before = document;
        int e1 = 0, e2 = 0, e3 = 0;
        QJsonObject realtime, presence;
        script.migrate(type_brand_t::HALDO, document, realtime, presence, e1, e2, e3);
        QCOMPARE(logs.matching("You must implement migration script for version 5").size(), 3);
        // The placeholder reports no error, so the base stamps its own generation.
        QCOMPARE(storedVersion(document), QStringLiteral("5.0.0"));
        QCOMPARE(document.value("items"), before.value("items"));
    }

    void scriptStampsItsOwnGeneration()
    {
        database::migration::migration_2_t script;
        QJsonObject document = documentOfVersion("1.0.0");
        script.updateVersion(document);
        QCOMPARE(storedVersion(document), QStringLiteral("2.0.0"));
        QCOMPARE(document.value("versions").toObject().value("general").toString(), QStringLiteral("1.2.3"));
    }
};

QTEST_GUILESS_MAIN(tst_migration)
#include "tst_migration.moc"
