// The routers try a pattern only on topics that start with its literal
// prefix, keep the outcome of topics they have seen, and pass the gate
// without its pattern. All must give exactly what
// trying every pattern of a table in order gives: the same winner and the
// same captures, on every topic of the databases' images and on random ones.

#include <QJsonObject>
#include <QRandomGenerator>
#include <QRegExp>
#include <QtTest>

#include "database/base/literals.h"
#include "database/base/topic_routes_t.h"
#include "database/base/topic_table_t.h"
#include "database/command/cmd_handler_topic_t.h"
#include "database/command/command_t.h"
#include "database/database_t.h"
#include "database/definition/service_t.h"
#include "database/definition/type_brand_t.h"
#include "database/persistent/persistent_t.h"
#include "database/presencesimulation/presencesimulation_t.h"
#include "database/realtime/realtime_t.h"
#include "platform/logs/classlogs.h"

using database::base::literalPrefix;
using database::base::topic_routes_t;
using database::base::topic_table_t;

namespace {

/// Every pattern table of every router, as the routers hold them.
QList<QStringList> routerTables(database::database_t& db)
{
    QList<QStringList> tables;
    auto const add = [&tables](topic_routes_t const& routes) {
        tables << routes.patterns() << routes.keyPatterns() << routes.capturePatterns();
    };
    using rt = database::realtime::rt_handler_topic_t;
    for (rt::form_t form : {rt::Change, rt::Status, rt::Request, rt::Offline})
        add(db.getRealtime()->getHandlerTopic()->routes(form));
    using ps = database::persistent::ps_handler_topic_t;
    for (ps::form_t form : {ps::Change, ps::Status, ps::Request})
        add(db.getPersistent()->getHandlerTopic()->routes(form));
    using psi = database::presencesimulation::psi_handler_topic_t;
    for (psi::form_t form : {psi::Change, psi::Status, psi::Request})
        add(db.getPresenceSimulation()->getHandlerTopic()->routes(form));
    using cmd = database::command::cmd_handler_topic_t;
    for (cmd::form_t form : {cmd::Change, cmd::Request})
        add(db.getCommand()->getHandlerTopic()->routes(form));
    return tables;
}

/// Every path of json below prefix, the objects' own included.
void paths(QJsonValue const& json, QString const& prefix, QStringList& out)
{
    out << prefix;
    if (!json.isObject())
        return;
    QJsonObject const object = json.toObject();
    for (auto it = object.begin(); it != object.end(); ++it)
        paths(it.value(), prefix + QLatin1Char('/') + it.key(), out);
}

/// The topics a database may see: every path of the three images under
/// every prefix, the relative ones too, and each with a few mutations.
QStringList topics(database::database_t& db, QRandomGenerator& random)
{
    QStringList relative;
    for (QJsonObject const& image : {db.getPersistent()->getJdata(), db.getRealtime()->getJdata(),
                                     db.getPresenceSimulation()->getJdata()}) {
        for (auto it = image.begin(); it != image.end(); ++it)
            paths(it.value(), it.key(), relative);
    }
    relative << "DB" << "items/objects_list/K/value" << "drivers/knx_mode" << "pairing/x" << "reset/all";
    QStringList out;
    for (QString const& path : std::as_const(relative)) {
        for (QString const& prefix : {QString(), QStringLiteral("status/DB/persistent/"),
                                      QStringLiteral("request/DB/persistent/"), QStringLiteral("status/DB/realtime/"),
                                      QStringLiteral("request/DB/realtime/"),
                                      QStringLiteral("status/DB/presencesimulation/"),
                                      QStringLiteral("request/DB/presencesimulation/"),
                                      QStringLiteral("request/DB/command/")})
            out << prefix + path;
    }
    static QStringList const pieces{"/", "a", "_", "9", " ", "\n", "é", "$", "DB", "items", "objects_list", "value",
                                    "status", "request", "realtime", "persistent", ".", "*"};
    qsizetype const known = out.size();
    for (qsizetype i = 0; i < known; ++i) {
        QString topic = out.at(i);
        switch (random.bounded(4)) {
        case 0: topic.truncate(random.bounded(topic.size() + 1)); break;
        case 1: topic += pieces.at(random.bounded(pieces.size())); break;
        case 2:
            if (!topic.isEmpty())
                topic[random.bounded(topic.size())] = pieces.at(random.bounded(pieces.size())).at(0);
            break;
        default: topic.insert(random.bounded(topic.size() + 1), pieces.at(random.bounded(pieces.size()))); break;
        }
        out << topic;
    }
    for (int i = 0; i < 2000; ++i) {
        QString topic;
        for (int n = random.bounded(8); n > 0; --n)
            topic += pieces.at(random.bounded(pieces.size()));
        out << topic;
    }
    return out;
}

} // namespace

class tst_topic_routes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { ::utility::logs::classlogs::getInstance()->setThreshold(::utility::logs::exception); }

    void prefix_data()
    {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QString>("prefix");
        QTest::newRow("anchored text") << "^status/DB/persistent/general$" << "status/DB/persistent/general";
        QTest::newRow("optional last letter") << "^presencesimulation?/?[\\S ]*$" << "presencesimulatio";
        QTest::newRow("repeated letter") << "ab+c" << "a";
        QTest::newRow("counted letter") << "ab{2}" << "a";
        QTest::newRow("escaped punctuation") << "^a\\/b\\.c" << "a/b.c";
        QTest::newRow("escaped class") << "^items\\w+" << "items";
        QTest::newRow("class") << "^[objects_list]+" << "";
        QTest::newRow("alternative at the top") << "^items|drivers" << "";
        QTest::newRow("alternative in a group") << "^items/(a|b)$" << "items/";
        QTest::newRow("bar in a class") << "^items/[|]x" << "items/";
        QTest::newRow("bracket first in a class, then a bar") << "^a[]|]b|c" << "";
        QTest::newRow("escaped bar") << "^a\\|b" << "a|b";
        QTest::newRow("any character") << "^a.b" << "a";
        QTest::newRow("empty") << "" << "";
    }

    void prefix()
    {
        QFETCH(QString, pattern);
        QFETCH(QString, prefix);
        QCOMPARE(literalPrefix(pattern), prefix);
    }

    /// Every table of every router, with and without the prefix check.
    void tablesAgainstPlainTrial()
    {
        database::database_t db(database::definition::service_t::server, database::definition::type_brand_t::HALDO);
        QRandomGenerator random(11);
        QStringList const all = topics(db, random);
        QList<QStringList> const tables = routerTables(db);
        QVERIFY(tables.size() > 10);
        int matched = 0;
        for (QStringList const& patterns : tables) {
            topic_table_t<int> table;
            QList<QRegExp> plain;
            for (QString const& pattern : patterns) {
                table.insert(pattern, int(plain.size()));
                plain.append(QRegExp(pattern, Qt::CaseSensitive, QRegExp::RegExp));
            }
            // Twice: the second time the table answers from what it kept.
            for (QString const& topic : all + all) {
                qsizetype expected = -1;
                for (qsizetype i = 0; i < plain.size(); ++i) {
                    if (plain[i].exactMatch(topic)) {
                        expected = i;
                        break;
                    }
                }
                QStringList captures;
                int const* found = table.match(topic, captures);
                QCOMPARE(found ? qsizetype(*found) : qsizetype(-1), expected);
                if (found) {
                    QCOMPARE(captures, plain[expected].capturedTexts());
                    ++matched;
                }
            }
        }
        // The topics reach the routes, not only their misses.
        QVERIFY2(matched > 500, qPrintable(QString::number(matched) + " of " + QString::number(all.size())));
    }

    void patternFormsAgainstPlainTrial_data()
    {
        QTest::addColumn<QStringList>("patterns");
        QTest::newRow("literals") << QStringList{"^items$", "items/objects_list$", "^a.b$", "^$"};
        QTest::newRow("captured run, any rest")
            << QStringList{"^items/objects_list/(\\w+)/?.*$", "^items/(\\w+)/?.*", "^(\\w+)/?.*$"};
        QTest::newRow("captured run, then literal")
            << QStringList{"^status/(\\w+)$", "^status/(\\w+)/info$", "^status/(\\w+)/$", "^s/(\\w+)-x/?.*$"};
        QTest::newRow("run then word literal (not a simple form)") << QStringList{"^a/(\\w+)info$", "^a/(\\w+)_$"};
        QTest::newRow("classes and optionals")
            << QStringList{"^items?/?[objects_list]*$", "^notify?/?[objects_list|email_list]*$", "^general/[\\w]+$",
                           "^storage?/?[\\w/]*$", "^a/[0-5]?[0-9]$", "^x[\\S ]*$", "^y[^/]*$"};
        QTest::newRow("lookahead and groups")
            << QStringList{"^installation/?(?!mqtt_devices)[\\w]*/?[\\w]*$", "^(a|bb)/(\\w+)$", "^(?:ab)+$",
                           "^d/([1-7])/([0-9]|[0-1][0-9]|2[0-3])$", "^e\\.f/\\d+$", "^g\\s\\S$"};
    }

    /// Every form of pattern, trusted to its own matcher, its filter of
    /// characters or QRegExp, against trying every pattern in order with QRegExp.
    void patternFormsAgainstPlainTrial()
    {
        QFETCH(QStringList, patterns);
        topic_table_t<int> table;
        QList<QRegExp> plain;
        for (QString const& pattern : std::as_const(patterns)) {
            table.insert(pattern, int(plain.size()));
            plain.append(QRegExp(pattern, Qt::CaseSensitive, QRegExp::RegExp));
        }
        // Ordered as the table orders its patterns.
        QStringList sorted = patterns;
        sorted.sort();
        static QStringList const pieces{"items", "/", "objects_list", "I12", "_", "status", "info", "a", "b", "x",
                                        "\u00e9", "\u0301", "-", ".", " ", "\n", "5", "2", "\U0001F600", "$",
                                        "notify", "email_list", "installation", "mqtt_devices", "general", "s", "e",
                                        "f", "g", "d", "y", "storage", "ab", "\u0663"};
        QRandomGenerator random(23);
        int matched = 0;
        for (int i = 0; i < 20000; ++i) {
            // Half of them start as a pattern does, so that the forms are met, not only missed.
            QString topic = random.bounded(2) ? literalPrefix(patterns.at(random.bounded(patterns.size()))) : QString();
            for (int n = random.bounded(5); n > 0; --n)
                topic += pieces.at(random.bounded(pieces.size()));
            qsizetype expected = -1;
            for (qsizetype k = 0; k < sorted.size(); ++k) {
                if (QRegExp(sorted[k], Qt::CaseSensitive, QRegExp::RegExp).exactMatch(topic)) {
                    expected = patterns.indexOf(sorted[k]);
                    break;
                }
            }
            QStringList captures;
            int const* found = table.match(topic, captures);
            QCOMPARE(found ? qsizetype(*found) : qsizetype(-1), expected);
            if (found) {
                QRegExp winner = plain[expected];
                QVERIFY(winner.exactMatch(topic));
                QCOMPARE(captures, winner.capturedTexts());
                QString first;
                QVERIFY(table.match(topic, &first));
                QCOMPARE(first, winner.cap(1));
                ++matched;
            }
        }
        QVERIFY2(matched > 200, qPrintable(QString::number(matched)));
    }

    void laterPatternsAreTriedUnderStemsAlreadySeen_data()
    {
        QTest::addColumn<QString>("later");
        QTest::addColumn<QString>("topic");
        QTest::addColumn<QStringList>("captures");
        QTest::newRow("ranked before, same stem") << "^items/objects_list/(\\w+)$" << "items/objects_list/I12"
                                                  << QStringList{"items/objects_list/I12", "I12"};
        QTest::newRow("prefix longer than the stem") << "^items/objects_list/I1(\\w+)$" << "items/objects_list/I12"
                                                     << QStringList{"items/objects_list/I12", "2"};
        QTest::newRow("no slash in the prefix") << "^(\\w+)/objects_list/I12$" << "items/objects_list/I12"
                                                << QStringList{"items/objects_list/I12", "items"};
        QTest::newRow("a topic without stem") << "^item(\\w+)$" << "items" << QStringList{"items", "s"};
    }

    /// Topics under one stem share their candidates: a pattern inserted after
    /// they were worked out must still win where it comes first.
    void laterPatternsAreTriedUnderStemsAlreadySeen()
    {
        QFETCH(QString, later);
        QFETCH(QString, topic);
        QFETCH(QStringList, captures);
        topic_table_t<int> table;
        table.insert(QStringLiteral("^z.*$"), 1);
        table.insert(QStringLiteral("^items/objects_list/Z$"), 2);
        // Other topics under the same stem first, then the topic itself: a miss, kept as one.
        QVERIFY(!table.match(QString(topic).replace(QLatin1String("I12"), QLatin1String("I13")) + "x"));
        QVERIFY(!table.match(topic));
        table.insert(later, 3);
        QStringList found;
        int const* winner = table.match(topic, found);
        QVERIFY(winner);
        QCOMPARE(*winner, 3);
        QCOMPARE(found, captures);
        QCOMPARE(found, [&] {
            QRegExp plain(later, Qt::CaseSensitive, QRegExp::RegExp);
            plain.exactMatch(topic);
            return plain.capturedTexts();
        }());
    }

    void gate_data()
    {
        QTest::addColumn<QString>("prefix");
        QTest::newRow("persistent status") << "status/DB/persistent";
        QTest::newRow("realtime request") << "request/DB/realtime";
        QTest::newRow("special characters") << "a.b";
    }

    /// The gate without its pattern lets pass what the pattern does.
    void gate()
    {
        QFETCH(QString, prefix);
        topic_routes_t routes(prefix);
        QRegExp const pattern(QStringLiteral("^") + prefix + QStringLiteral(R"(/((\w+)/?.*)$)"), Qt::CaseSensitive,
                              QRegExp::RegExp);
        QRandomGenerator random(5);
        static QStringList const pieces{"/", "a", "_", "9", " ", "\n", "é", "\u0301", "-", ".", "items", "axb"};
        for (int i = 0; i < 5000; ++i) {
            QString topic = random.bounded(4) ? prefix : prefix.left(random.bounded(prefix.size() + 1));
            for (int n = random.bounded(5); n > 0; --n)
                topic += pieces.at(random.bounded(pieces.size()));
            QCOMPARE(routes.passesGate(topic), QRegExp(pattern).exactMatch(topic));
        }
    }
};

QTEST_GUILESS_MAIN(tst_topic_routes)
#include "tst_topic_routes.moc"
