#include <QMetaMethod>
#include <QSignalSpy>
#include <QtTest>

#include <memory>
#include <vector>

#include "database/presencesimulation/psi_handler_topic_t.h"

using database::presencesimulation::psi_handler_topic_t;

namespace {

QJsonObject packet(QString const& topic)
{
    return QJsonObject{{"topic", topic}, {"payload", QJsonObject()}};
}

/// Spies on every signal the router declares, so that a route shows which
/// signal it raised and with which arguments.
class router_spies_t
{
public:
    explicit router_spies_t(psi_handler_topic_t* router)
    {
        QMetaObject const* meta = router->metaObject();
        for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
            QMetaMethod const method = meta->method(i);
            if (method.methodType() == QMetaMethod::Signal)
                spies.emplace_back(QString::fromLatin1(method.name()), std::make_unique<QSignalSpy>(router, method));
        }
    }

    /// "name(arg, ...)" of each signal raised, the packet left out.
    QStringList raised() const
    {
        QStringList list;
        for (auto const& [name, spy] : spies) {
            for (QList<QVariant> const& arguments : *spy) {
                QStringList texts;
                for (qsizetype i = 1; i < arguments.size(); ++i)
                    texts.append(arguments.at(i).toString());
                list.append(name + '(' + texts.join(", ") + ')');
            }
        }
        return list;
    }

private:
    std::vector<std::pair<QString, std::unique_ptr<QSignalSpy>>> spies;
};

} // namespace

class tst_psi_handler_topic : public QObject
{
    Q_OBJECT

private:
    enum form_t { Request, Status, Change };

    static bool routeBy(psi_handler_topic_t& router, int form, QJsonObject const& p, bool emitSignal)
    {
        switch (form) {
        case Request: return router.whoIsRequest(p, emitSignal);
        case Status: return router.whoIsStatus(p, emitSignal);
        default: return router.whoIsChange(p, emitSignal, false);
        }
    }

private Q_SLOTS:
    void everyShapeInEveryForm_data()
    {
        QTest::addColumn<int>("form");
        QTest::addColumn<QString>("topic");
        QTest::addColumn<QString>("raised");

        struct shape_t {
            char const* tail;
            char const* signal;
            char const* arguments;
        };
        static shape_t const shapes[] = {
            {"week/days/1/hours/0/minutes/0/actions/lamp_1", "Action", "1, 0, 0, lamp_1"},
            {"week/days/7/hours/23/minutes/59/actions", "Actions", "7, 23, 59"},
            {"week/days/3/hours/09/minutes/07", "Minute", "3, 9, 7"},
            {"week/days/3/hours/19/minutes", "Minutes", "3, 19"},
            {"week/days/5/hours/20", "Hour", "5, 20"},
            {"week/days/5/hours", "Hours", "5"},
            {"week/days/6", "Day", "6"},
            {"week/days", "Days", ""},
            {"week", "Week", ""},
            {"DB", "DB", ""},
        };
        struct form_text_t {
            int form;
            char const* prefix;
            char const* kind;
        };
        static form_text_t const forms[] = {
            {Request, "request/DB/presencesimulation/", "Request"},
            {Status, "status/DB/presencesimulation/", "Status"},
            {Change, "", "Change"},
        };
        for (form_text_t const& form : forms) {
            for (shape_t const& shape : shapes) {
                QString const topic = QString::fromLatin1(form.prefix) + QString::fromLatin1(shape.tail);
                QTest::newRow(qPrintable(topic))
                    << form.form << topic
                    << QStringLiteral("onPresencesimulation%1%2(%3)").arg(form.kind, shape.signal, shape.arguments);
            }
        }
        QTest::newRow("get data is only a request") << int(Request) << "request/DB/presencesimulation/getData"
                                                    << "onPresencesimulationRequestGetData()";
        QTest::newRow("get data has no status") << int(Status) << "status/DB/presencesimulation/getData" << "";
        QTest::newRow("get data has no change") << int(Change) << "getData" << "";
        QTest::newRow("day 8") << int(Change) << "week/days/8" << "";
        QTest::newRow("day 0") << int(Request) << "request/DB/presencesimulation/week/days/0" << "";
        QTest::newRow("hour 24") << int(Change) << "week/days/7/hours/24" << "";
        QTest::newRow("three-digit minute") << int(Change) << "week/days/7/hours/2/minutes/007" << "";
        QTest::newRow("key with a dash") << int(Change) << "week/days/1/hours/0/minutes/0/actions/a-b" << "";
        QTest::newRow("status topic is no request") << int(Request) << "status/DB/presencesimulation/week" << "";
        QTest::newRow("other database") << int(Request) << "request/DB/persistent/week" << "";
        QTest::newRow("absolute topic is no change") << int(Change) << "status/DB/presencesimulation/week" << "";
    }

    void everyShapeInEveryForm()
    {
        QFETCH(int, form);
        QFETCH(QString, topic);
        QFETCH(QString, raised);

        psi_handler_topic_t router;
        router_spies_t spies(&router);
        // Asking first emits nothing and gives the same answer.
        QCOMPARE(routeBy(router, form, packet(topic), false), !raised.isEmpty());
        QVERIFY(spies.raised().isEmpty());
        QCOMPARE(routeBy(router, form, packet(topic), true), !raised.isEmpty());
        QCOMPARE(spies.raised(), raised.isEmpty() ? QStringList() : QStringList{raised});
    }

    void changeRaisesSomethingFirst()
    {
        psi_handler_topic_t router;
        QSignalSpy something(&router, &psi_handler_topic_t::onPresencesimulationUpdatedSomething);
        QSignalSpy week(&router, &psi_handler_topic_t::onPresencesimulationChangeWeek);
        QVERIFY(something.isValid() && week.isValid());
        QCOMPARE(something.count() + week.count(), 0);

        QVERIFY(router.whoIsChange(packet("week"), false, true));
        QCOMPARE(something.count(), 1);
        QCOMPARE(week.count(), 0);
        QVERIFY(router.whoIsChange(packet("week"), true, true));
        QCOMPARE(something.count(), 2);
        QCOMPARE(week.count(), 1);
        QVERIFY(!router.whoIsChange(packet("weeks"), true, true));
        QCOMPARE(something.count(), 2);
    }

    void execRegexGivesTheCapturesOfAWholeMatch()
    {
        QString const minute = R"(^week/days/([1-7])/hours/([0-9]|[0-1][0-9]|2[0-3])/minutes/([0-5]?[0-9])$)";
        QStringList captures{"kept"};
        QVERIFY(!psi_handler_topic_t::execRegex(minute, "week/days/7/hours/9/minutes/07/actions", captures));
        QCOMPARE(captures, QStringList{"kept"});
        QVERIFY(psi_handler_topic_t::execRegex(minute, "week/days/7/hours/9/minutes/07", captures));
        QCOMPARE(captures, (QStringList{"week/days/7/hours/9/minutes/07", "7", "9", "07"}));
    }
};

QTEST_GUILESS_MAIN(tst_psi_handler_topic)
#include "tst_psi_handler_topic.moc"
