#include <QJsonArray>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

#include <functional>

#include "database/database_t.h"
#include "database/definition/service_t.h"
#include "database/definition/type_brand_t.h"
#include "database/persistent/persistent_t.h"
#include "database/realtime/objects/rt_object_thermostat_t.h"
#include "database/presencesimulation/presencesimulation_t.h"
#include "database/realtime/realtime_t.h"
#include "database/utility/utility.h"
#include "support/log_capture.h"
#include "support/model_test.h"

using database::database_t;
using database::definition::service_t;
using database::definition::type_brand_t;

namespace {

/// Random packets for one database's routes, from a fixed seed: topics made
/// from the router's own patterns, payloads of every JSON type, and real
/// objects of the database with some members given the wrong type.
class packet_maker_t
{
public:
    packet_maker_t(quint32 seed, QStringList patterns, QJsonObject const& image)
        : random(seed)
        , patterns(std::move(patterns))
    {
        harvest(image);
        keys.append({QStringLiteral("K1"), QStringLiteral("_"), QStringLiteral("9"), QString(200, QLatin1Char('k'))});
    }

    /// A concrete relative topic for the pattern: each wildcard part replaced by
    /// something it takes. Empty when the pattern has a part this doesn't know.
    QString topicFor(QString pattern)
    {
        static QList<QPair<QString, QStringList>> const parts{
            {QStringLiteral(R"(?/?[objects_list|email_list]*)"), {"", "/objects_list", "/email_list"}},
            {QStringLiteral(R"(?/?[objects_list]*)"), {"", "/objects_list"}},
            {QStringLiteral(R"(?/[user_list]*)"), {"/", "/user_list"}},
            {QStringLiteral(R"(?/[sys_list]*)"), {"/", "/sys_list"}},
            {QStringLiteral(R"(?/?[\S ]*)"), {"", "/@w", "/@w/@w"}},
            {QStringLiteral(R"(?/?[\w/]*)"), {"", "/@w", "/@w/@w"}},
            {QStringLiteral(R"(?/?[\w]+)"), {"/@w"}},
            {QStringLiteral(R"(/?[\w]*/?[\w]*)"), {"", "/@w", "/@w/@w"}},
            {QStringLiteral(R"(/?(?!mqtt_devices))"), {""}},
            {QStringLiteral(R"([\w]*/?[\w]*)"), {"", "/@w", "/@w/@w"}},
            {QStringLiteral(R"(/[\w]+)"), {"/@w"}},
            {QStringLiteral(R"(?/?.*)"), {"", "/@w"}},
            {QStringLiteral(R"(/?.*)"), {"", "/@w", "/@w/@w", "/"}},
            {QStringLiteral(R"((\w+))"), {"@k"}},
            {QStringLiteral(R"(([\w]+))"), {"@k"}},
            {QStringLiteral(R"(([1-7]))"), {"1", "7"}},
            {QStringLiteral(R"(([0-9]|[0-1][0-9]|2[0-3]))"), {"0", "9", "23"}},
            {QStringLiteral(R"(([0-5]?[0-9]))"), {"0", "30", "59"}},
        };
        pattern.remove(0, pattern.startsWith(QLatin1Char('^')) ? 1 : 0);
        pattern.chop(pattern.endsWith(QLatin1Char('$')) ? 1 : 0);
        for (auto const& part : parts) {
            while (pattern.contains(part.first))
                pattern.replace(pattern.indexOf(part.first), part.first.size(), pick(part.second));
        }
        static QRegularExpression const leftover(QStringLiteral(R"([\\\[\]()?*+$^|])"));
        if (pattern.contains(leftover))
            return QString();
        pattern.replace(QStringLiteral("@k"), pick(keys));
        while (pattern.contains(QStringLiteral("@w")))
            pattern.replace(pattern.indexOf(QStringLiteral("@w")), 2, pick(words()));
        return pattern;
    }

    QJsonObject packet(QString const& requestPrefix, QString const& statusPrefix)
    {
        QString const prefix = random.bounded(2) ? requestPrefix : statusPrefix;
        QString const topic = topicFor(pick(patterns));
        return QJsonObject{{QStringLiteral("topic"), prefix + QLatin1Char('/') + topic},
                           {QStringLiteral("payload"), payload(3)}};
    }

    QStringList const& routes() const { return patterns; }

private:
    QStringList const& words() const
    {
        static QStringList const list{"value", "feedback", "enabled", "info", "x", "objects_list", "thermo",
                                      "setpoint", "read", "0", "mode"};
        return list;
    }

    QString pick(QStringList const& list) { return list.at(int(random.bounded(qsizetype(list.size())))); }

    void harvest(QJsonValue const& value)
    {
        if (value.isObject()) {
            QJsonObject const object = value.toObject();
            samples.append(object);
            for (auto it = object.begin(); it != object.end(); ++it) {
                keys.append(it.key());
                harvest(it.value());
            }
        } else if (value.isArray()) {
            for (QJsonValue const& element : value.toArray())
                harvest(element);
        }
    }

    QJsonValue scalar()
    {
        switch (random.bounded(9)) {
        case 0: return QJsonValue();
        case 1: return bool(random.bounded(2));
        case 2: return int(random.bounded(-5, 5));
        case 3: return 1e308;
        case 4: return -1e308;
        case 5: return 9007199254740993.0;
        case 6: return QString();
        case 7: return QStringLiteral("0 19 * * *");
        default: return QString::fromUtf8("\xc3\xbc\xe2\x82\xac/\\\"");
        }
    }

    QJsonValue payload(int depth)
    {
        int const kind = int(random.bounded(depth > 0 ? 6 : 2));
        switch (kind) {
        case 0:
        case 1: return scalar();
        case 2: {
            QJsonArray array;
            for (int n = int(random.bounded(4)); n > 0; --n)
                array.append(payload(depth - 1));
            return array;
        }
        case 3: {
            QJsonObject object;
            for (int n = int(random.bounded(4)); n > 0; --n)
                object.insert(random.bounded(5) ? pick(keys) : QString(), payload(depth - 1));
            return object;
        }
        default: {
            // A real object of the database with some members of the wrong type.
            QJsonObject object = samples.at(int(random.bounded(qsizetype(samples.size()))));
            QStringList const members = object.keys();
            for (int n = int(random.bounded(1, 4)); n > 0 && !members.isEmpty(); --n)
                object.insert(pick(members), payload(depth - 1));
            return object;
        }
        }
    }

    QRandomGenerator random;
    QStringList patterns;
    QStringList keys;
    QList<QJsonObject> samples;
};

QJsonObject packet(QString const& topic, QJsonValue const& payload)
{
    return QJsonObject{{"topic", topic}, {"payload", payload}};
}

void drainAll()
{
    for (int round = 0; round < 4; ++round)
        drainEvents();
}

/// One database of a façade, as the random test drives it.
struct road_t {
    QStringList patterns;
    int routedShare = 8; // tenths of the packets that must find a route
    std::function<bool(QJsonObject const&)> update;
    std::function<QJsonObject()> image;
    std::function<bool(QString const&)> save;
    std::function<QJsonObject(QString const&)> load;
};

road_t roadOf(database_t& db, QString const& name)
{
    road_t road;
    if (name == QLatin1String("realtime")) {
        auto* engine = db.getRealtime();
        auto const& routes = engine->getHandlerTopic()->routes(database::realtime::rt_handler_topic_t::Change);
        road.patterns = routes.patterns() + routes.keyPatterns();
        road.routedShare = 4;
        // Live objects to take wrong-typed copies of.
        database::realtime::objects::rt_object_thermostat_t thermostat(nullptr);
        engine->update(packet("status/DB/realtime/items/objects_list/I1", QJsonObject{{"feedback", "1/1/1"}, {"value", "1"}}));
        engine->update(packet("status/DB/realtime/thermo/objects_list/T1", thermostat.toJson()));
        drainAll();
        road.update = [engine](QJsonObject const& p) { return engine->update(p); };
        road.image = [engine] { return engine->serialize(true); };
        road.save = [engine](QString const& path) { return engine->saveToFile(path, true); };
        road.load = [engine](QString const& path) {
            int result = 0;
            return engine->loadFromFile(path, 4, result).isEmpty() || result < 0 ? QJsonObject() : engine->getJdata();
        };
        return road;
    }
    if (name == QLatin1String("presencesimulation")) {
        auto* engine = db.getPresenceSimulation();
        auto const& routes = engine->getHandlerTopic()->routes(database::presencesimulation::psi_handler_topic_t::Change);
        road.patterns = routes.patterns() + routes.keyPatterns() + routes.capturePatterns();
        road.routedShare = 4;
        road.update = [engine](QJsonObject const& p) { return engine->update(p); };
        road.image = [engine] { return engine->serialize(true); };
        road.save = [engine](QString const& path) { return engine->saveToFile(path, true); };
        road.load = [engine](QString const& path) {
            int result = 0;
            return engine->loadFromFile(path, 4, result).isEmpty() || result < 0 ? QJsonObject() : engine->getJdata();
        };
        return road;
    }
    auto* engine = db.getPersistent();
    road.patterns = engine->getHandlerTopic()->routePatterns();
    road.update = [engine](QJsonObject const& p) { return engine->update(p); };
    road.image = [engine] { return engine->serialize(true); };
    road.save = [engine](QString const& path) { return engine->saveToFile(path, true); };
    road.load = [engine](QString const& path) {
        int result = 0;
        return engine->loadFromFile(path, result).isEmpty() || result < 0 ? QJsonObject() : engine->getJdata();
    };
    return road;
}

} // namespace
class tst_bad_packets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(database::utility::getInstance());
        // Thousands of refusals are expected; only the ones asked for are looked at.
        ::utility::logs::classlogs::getInstance()->setThreshold(::utility::logs::exception);
        QLoggingCategory::setFilterRules(QStringLiteral("default.info=false"));
    }

    void pageStackOfWrongTypeIsRefused_data()
    {
        QTest::addColumn<QString>("role");
        QTest::addColumn<QString>("prefix");
        for (QString const role : {"server", "client", "offline"}) {
            for (QString const prefix : {"status/DB/persistent", "request/DB/persistent"})
                QTest::newRow(qPrintable(role + ", " + prefix)) << role << prefix;
        }
    }

    void pageStackOfWrongTypeIsRefused()
    {
        QFETCH(QString, role);
        QFETCH(QString, prefix);
        database_t db{service_t(role), type_brand_t::HALDO};
        QJsonValue const before = db.getPersistent()->getJsonValue(QStringLiteral("elements/page_stack"));
        log_capture_t logs;
        QVERIFY(db.getPersistent()->update(packet(prefix + "/elements/page_stack",
                                                  QJsonObject{{"mode", "0 19 * * *"}, {"flags", ""}})));
        drainAll();
        QVERIFY(logs.contains(QStringLiteral("Payload not valid for ") + prefix + "/elements/page_stack",
                              ::utility::logs::error));
        QCOMPARE(db.getPersistent()->getJsonValue(QStringLiteral("elements/page_stack")), before);
    }

    void everyPatternGivesARoutableTopic_data()
    {
        QTest::addColumn<QString>("database");
        QTest::newRow("persistent") << "persistent";
        QTest::newRow("realtime") << "realtime";
        QTest::newRow("presence simulation") << "presencesimulation";
    }

    void everyPatternGivesARoutableTopic()
    {
        QFETCH(QString, database);
        database_t db{service_t::server, type_brand_t::HALDO};
        road_t road = roadOf(db, database);
        packet_maker_t maker(1, road.patterns, road.image());
        QVERIFY(!maker.routes().isEmpty());
        for (QString const& pattern : maker.routes()) {
            QString const topic = maker.topicFor(pattern);
            QVERIFY2(!topic.isEmpty(), qPrintable("no topic made for " + pattern));
            QJsonObject const status = packet("status/DB/" + database + "/" + topic, QJsonValue());
            bool const routed = database == QLatin1String("realtime")
                                    ? db.getRealtime()->getHandlerTopic()->whoIsStatus(status, false)
                                : database == QLatin1String("presencesimulation")
                                    ? db.getPresenceSimulation()->getHandlerTopic()->whoIsStatus(status, false)
                                    : db.getPersistent()->getHandlerTopic()->whoIsStatus(status, false);
            QVERIFY2(routed, qPrintable(topic));
        }
    }

    void randomPacketsLeaveAWorkingDatabase_data()
    {
        QTest::addColumn<QString>("database");
        QTest::addColumn<QString>("role");
        QTest::addColumn<quint32>("seed");
        QTest::newRow("persistent, server") << "persistent" << "server" << 20261123u;
        QTest::newRow("persistent, client") << "persistent" << "client" << 4711u;
        QTest::newRow("persistent, offline") << "persistent" << "offline" << 1234567u;
        QTest::newRow("realtime, server") << "realtime" << "server" << 99u;
        QTest::newRow("realtime, client") << "realtime" << "client" << 31337u;
        QTest::newRow("realtime, offline") << "realtime" << "offline" << 2718u;
        QTest::newRow("presence simulation, server") << "presencesimulation" << "server" << 5u;
        QTest::newRow("presence simulation, client") << "presencesimulation" << "client" << 55u;
        QTest::newRow("presence simulation, offline") << "presencesimulation" << "offline" << 555u;
    }

    void randomPacketsLeaveAWorkingDatabase()
    {
        QFETCH(QString, database);
        QFETCH(QString, role);
        QFETCH(quint32, seed);
        database_t db{service_t(role), type_brand_t::HALDO};
        road_t road = roadOf(db, database);
        packet_maker_t maker(seed, road.patterns, road.image());

        int routed = 0;
        int count = 0;
        {
            // Exceptions that are not about the payload's shape are faults to look at.
            QStringList exceptions;
            ::utility::logs::classlogs::getInstance()->setCapture([&](::utility::logs::logrecord const& record) {
                if (record.level == ::utility::logs::exception)
                    exceptions.append(record.source + ": " + record.message);
            });
            // BAD_PACKETS_COUNT makes a longer run by hand.
            count = qEnvironmentVariableIntValue("BAD_PACKETS_COUNT") > 0
                        ? qEnvironmentVariableIntValue("BAD_PACKETS_COUNT")
                        : 3000;
            for (int n = 0; n < count; ++n) {
                routed += road.update(maker.packet("request/DB/" + database, "status/DB/" + database)) ? 1 : 0;
                if (n % 25 == 0)
                    drainAll();
            }
            drainAll();
            ::utility::logs::classlogs::getInstance()->setCapture(nullptr);
            exceptions.removeDuplicates();
            QVERIFY2(exceptions.isEmpty(), qPrintable(exceptions.join('\n')));
        }
        // The realtime engine takes status packets only: about half of them.
        QVERIFY(routed > count * road.routedShare / 10);

        // What is left must still serialize, save and load as it is.
        QJsonObject const image = road.image();
        QVERIFY(!image.isEmpty());
        QTemporaryDir dir;
        QString const path = dir.filePath(database + ".json");
        QVERIFY(road.save(path));
        database_t reloaded{service_t::offline, type_brand_t::HALDO};
        QCOMPARE(roadOf(reloaded, database).load(path), image);
    }
};

QTEST_GUILESS_MAIN(tst_bad_packets)
#include "tst_bad_packets.moc"
