#include <QSignalSpy>
#include <QtTest>

#include <map>
#include <memory>

#include "database/rr/definition/rr_packet_service_t.h"
#include "database/rr/definition/rr_packet_type_image_updater_t.h"
#include "database/rr/rr_image_updater_t.h"

using database::rr::rr_base_t;
using database::rr::rr_image_updater_t;
using database::rr::definition::rr_packet_service_t;
using database::rr::definition::rr_packet_type_image_updater_t;

namespace {

QString const service = QStringLiteral("image_update_service");
QString const startKey = QStringLiteral("^(image_update_service/start)$");

/// One spy on each routed signal of a peer, checked valid and empty.
class route_spies_t
{
public:
    explicit route_spies_t(rr_base_t* peer)
    {
        for (char const* name : {"on_update_base", "on_update_stop", "on_update_abort", "on_update_start",
                                 "on_update_error", "on_update_state_of_service", "on_update_unknon"}) {
            QByteArray const signature =
                QByteArray("2") + name + "(QString,QJsonObject,QString,QString)"; // as SIGNAL() spells it
            auto spy = std::make_unique<QSignalSpy>(peer, signature.constData());
            QVERIFY2(spy->isValid(), name);
            QCOMPARE(spy->count(), 0);
            spies[name] = std::move(spy);
        }
    }

    /// Names of the signals raised so far.
    QStringList raised() const
    {
        QStringList names;
        for (auto const& [name, spy] : spies) {
            if (spy->count() > 0)
                names.append(name);
        }
        return names;
    }

    QSignalSpy& operator[](QString const& name) { return *spies.at(name); }

private:
    std::map<QString, std::unique_ptr<QSignalSpy>> spies;
};

} // namespace

class tst_rr : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whoisRoutesByTopic_data()
    {
        QTest::addColumn<QString>("topic");
        QTest::addColumn<QString>("signal");
        QTest::addColumn<QString>("lastPart");

        QTest::newRow("service alone") << service << "on_update_base" << service;
        QTest::newRow("start") << service + "/start" << "on_update_start" << service + "/start";
        QTest::newRow("abort") << service + "/abort" << "on_update_abort" << service + "/abort";
        QTest::newRow("state of service") << service + "/state_of_service" << "on_update_state_of_service"
                                          << service + "/state_of_service";
        QTest::newRow("host prefix before the name")
            << "host/0042/" + service + "/start" << "on_update_start" << service + "/start";
        // Without a match there is no capture: the last part is empty.
        QTest::newRow("deeper than a route")
            << "host/" + service + "/state_of_service/x" << "on_update_unknon" << "";
        QTest::newRow("stop has no route") << service + "/stop" << "on_update_unknon" << "";
        QTest::newRow("case differs") << service + "/Start" << "on_update_unknon" << "";
        QTest::newRow("other service") << "other_service/start" << "on_update_unknon" << "";
    }

    void whoisRoutesByTopic()
    {
        QFETCH(QString, topic);
        QFETCH(QString, signal);
        QFETCH(QString, lastPart);
        rr_image_updater_t peer;
        route_spies_t spies(&peer);
        QJsonObject const packet{{"payload", QJsonObject{{"state", "check_sha"}}}};

        peer.whois(service, topic, packet);

        QCOMPARE(spies.raised(), QStringList{signal});
        QList<QVariant> const arguments = spies[signal].takeFirst();
        QCOMPARE(arguments.at(0).toString(), topic);
        QCOMPARE(arguments.at(1).toJsonObject(), packet);
        QCOMPARE(arguments.at(2).toString(), lastPart);
        QCOMPARE(arguments.at(3).toString(), service);
    }

    void addedRoutesReplaceAndGoFirstInKeyOrder()
    {
        rr_image_updater_t peer;
        route_spies_t spies(&peer);
        QStringList calls;
        auto record = [&calls](QString tag) {
            return [&calls, tag](QString const&, QJsonObject const&, QString const& last, QString const& name) {
                calls.append(tag + ':' + last + ':' + name);
            };
        };

        peer.add_function(startKey, record("own start"));
        peer.whois(service, service + "/start", {});
        QCOMPARE(calls, QStringList{"own start:" + service + "/start:" + service});
        QCOMPARE(spies.raised(), QStringList());

        // Capture 1 is the last part; "^(" sorts before "^i", so the wider route wins.
        calls.clear();
        peer.add_function(R"(^image_update_service/(\w+)$)", record("word"));
        peer.whois(service, service + "/error", {});
        peer.add_function("^(image_update_service/.*)$", record("any"));
        peer.whois(service, service + "/error", {});
        QCOMPARE(calls, (QStringList{"word:error:" + service, "any:" + service + "/error:" + service}));

        peer.remove_function(startKey);
        peer.remove_function("^(image_update_service/.*)$");
        peer.remove_function(R"(^image_update_service/(\w+)$)");
        peer.whois(service, service + "/start", {});
        QCOMPARE(spies.raised(), QStringList{"on_update_unknon"});
        QList<QVariant> const unknown = spies["on_update_unknon"].takeFirst();
        QCOMPARE(unknown.at(0).toString(), service + "/start");
        QCOMPARE(unknown.at(2).toString(), QString());
    }

    void routeMayRemoveItself()
    {
        rr_image_updater_t peer;
        int calls = 0;
        peer.add_function(startKey, [&](QString const&, QJsonObject const&, QString const&, QString const&) {
            ++calls;
            peer.remove_function(startKey);
        });
        peer.whois(service, service + "/start", {});
        peer.whois(service, service + "/start", {});
        QCOMPARE(calls, 1);
    }

    void copyEmitsItsOwnSignalsAndKeepsAddedRoutes()
    {
        rr_image_updater_t origin;
        int added = 0;
        origin.add_function("^(image_update_service/stop)$",
                            [&added](QString const&, QJsonObject const&, QString const&, QString const&) { ++added; });
        rr_base_t copy(origin);
        route_spies_t originSpies(&origin);
        route_spies_t copySpies(&copy);

        copy.whois(service, service + "/abort", {});
        copy.whois(service, service + "/stop", {});

        QCOMPARE(originSpies.raised(), QStringList());
        QCOMPARE(copySpies.raised(), QStringList{"on_update_abort"});
        QCOMPARE(copySpies["on_update_abort"].takeFirst().at(3).toString(), service);
        QCOMPARE(added, 1);
        QVERIFY(copy.parent() == nullptr);
        QVERIFY(copy.compare(&origin));
    }

    void responseCarriesTheAnswer()
    {
        rr_image_updater_t peer;
        QSignalSpy spy(&peer, &rr_base_t::on_response);
        QVERIFY(spy.isValid());
        QCOMPARE(spy.count(), 0);
        QJsonObject const answer = rr_image_updater_t::get_packet_response(rr_packet_type_image_updater_t::check_sig,
                                                                           QJsonObject{{"detail", "v2"}});
        QCOMPARE(answer, (QJsonObject{{"state", "check_sig"}, {"message", QJsonObject{{"detail", "v2"}}}}));

        peer.response("updater", service + "/command_of_sercice", answer);

        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.takeFirst(), (QList<QVariant>{"updater", service + "/command_of_sercice", answer}));
    }

    void peersCompareByServiceName()
    {
        rr_image_updater_t one;
        rr_image_updater_t two;
        rr_base_t sameName(service);
        rr_base_t other(QStringLiteral("other_service"));
        QVERIFY(one.compare(&two));
        QVERIFY(one.compare(&sameName));
        QVERIFY(!one.compare(&other));
        QVERIFY(!one.compare(static_cast<rr_image_updater_t const*>(nullptr)));
        QCOMPARE(rr_image_updater_t::getNameOfService(), service);
    }

    void packetWordsBuildTopicsAndPayloads()
    {
        rr_packet_service_t const& state = rr_packet_service_t::state_of_service;
        QCOMPARE(state.Topic(), QStringLiteral("state_of_service"));
        QCOMPARE(state.Topic("x"), QStringLiteral("state_of_service/x"));
        QCOMPARE(rr_packet_service_t::command_of_sercice.ToString(), QStringLiteral("command_of_sercice"));
        QCOMPARE(rr_packet_service_t::start.Topic(), QStringLiteral("start"));
        QCOMPARE(rr_packet_service_t::abort.Topic(), QStringLiteral("abort"));
        // Templates are whole packets, with the topic to fill as well.
        QCOMPARE(state.Template(),
                 (QJsonObject{{"topic", "@topic"},
                              {"payload", QJsonObject{{"state", "@state"}, {"message", "@message"}}}}));
        QCOMPARE(rr_packet_service_t::command_of_sercice.Template(),
                 (QJsonObject{{"topic", "@topic"}, {"payload", QJsonObject{{"command", "@command"}}}}));
        QVERIFY(rr_packet_service_t::state_of_service.Index() < rr_packet_service_t::abort.Index());

        QCOMPARE(state.Payload("disk full"), (QJsonObject{{"state", "state_of_service"}, {"message", "disk full"}}));
        QCOMPARE(state.Payload(" \t"), (QJsonObject{{"state", "state_of_service"}}));
    }

    void imageUpdaterStatesRoundTripInOrder()
    {
        using state_e = rr_packet_type_image_updater_t::state_e;
        QStringList const expected{
            "Unknown", "ready_to_check", "download_check_version", "check_version", "error_download_version",
            "new_version_aviable", "download_image", "error_download_image", "check_sha", "correct_sha",
            "check_sig", "correct_sig", "copy_image", "error_sha", "error_installation", "error_sig",
            "no_new_version_aviable", "abort", "disable", "installation", "backup"};
        for (int i = 0; i < expected.size(); ++i) {
            rr_packet_type_image_updater_t const byIndex(static_cast<state_e>(i));
            rr_packet_type_image_updater_t const byString = rr_packet_type_image_updater_t::GetFromString(expected[i]);
            QCOMPARE(byIndex.ToString(), expected[i]);
            QCOMPARE(byString.Index(), i);
            QVERIFY(byString.ToEnum() == static_cast<state_e>(i));
            QVERIFY(byString == byIndex);
        }
        QVERIFY(rr_packet_type_image_updater_t::backup == rr_packet_type_image_updater_t(QStringLiteral("backup")));
        QCOMPARE(rr_packet_type_image_updater_t::backup.Index(), 20);

        // A state this library doesn't know is kept as it came, but counts as Unknown.
        rr_packet_type_image_updater_t const later(QStringLiteral("rebooting"));
        QCOMPARE(later.ToString(), QStringLiteral("rebooting"));
        QCOMPARE(later.Index(), 0);
        QVERIFY(later != rr_packet_type_image_updater_t::Unknown);
        QVERIFY(rr_packet_type_image_updater_t::GetFromString("rebooting") == rr_packet_type_image_updater_t::Unknown);
        QVERIFY(rr_packet_type_image_updater_t::GetFromString("Backup") == rr_packet_type_image_updater_t::Unknown);

        rr_packet_type_image_updater_t assigned;
        assigned = rr_packet_type_image_updater_t::check_sha;
        QCOMPARE(assigned.Index(), 8);
    }
};

QTEST_GUILESS_MAIN(tst_rr)
#include "tst_rr.moc"
