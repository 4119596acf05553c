#ifndef TESTS_SUPPORT_PS_DOCUMENT_H
#define TESTS_SUPPORT_PS_DOCUMENT_H

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QTest>

#include "database/default/persistent/ps_default_t.h"
#include "database/persistent/persistent_t.h"
#include "database/utility/utility.h"
#include "support/log_capture.h"

/// Writes each value of changes at its path ("section/key/..."); a null value
/// removes what the path names.
inline void applyChanges(QJsonObject& document, QJsonObject const& changes)
{
    QJsonDocument json(document);
    for (auto it = changes.begin(); it != changes.end(); ++it) {
        QString operation;
        database::utility::updateJsonValue(json, it.key(), it.value(), operation);
    }
    document = json.object();
}

inline QJsonObject jsonObject(char const* text)
{
    return QJsonDocument::fromJson(QByteArray(text)).object();
}

/// What a path names when it names nothing.
inline bool absent(QJsonValue const& value)
{
    return value.isUndefined() || value.isNull();
}

/// The first path of expected whose value in document differs (null: the path
/// names nothing); empty when all agree.
inline QString firstDifference(QJsonObject const& document, QJsonObject const& expected)
{
    for (auto it = expected.begin(); it != expected.end(); ++it) {
        QJsonValue const actual = database::utility::getJsonValue(QJsonDocument(document), it.key());
        if (it.value().isNull() ? !absent(actual) : actual != it.value())
            return it.key() + QStringLiteral(" is ")
                + QString::fromUtf8(QJsonDocument(QJsonObject{{"v", actual}}).toJson(QJsonDocument::Compact));
    }
    return QString();
}

/// Waits until logs hold one more end of a consistency check than before,
/// and the repairs it made have reached the engines.
template<class Start>
bool checkedAfter(log_capture_t const& logs, Start start)
{
    QString const end = QStringLiteral("Consistency check time: ");
    qsizetype const before = logs.matching(end).size();
    if (!start())
        return false;
    bool const ended = QTest::qWaitFor([&] { return logs.matching(end).size() > before; }, 20000);
    QCoreApplication::processEvents();
    return ended;
}

/// Loads document into engine and waits for the check that the load asks for.
inline bool loadChecked(database::persistent::persistent_t* engine, QJsonObject document, log_capture_t const& logs)
{
    int result = 0;
    return checkedAfter(logs, [&] { return !engine->loadFromJson(document, result).isEmpty(); });
}

/// The factory document with one object of each kind, every reference among
/// them leading somewhere: a room on floor "1" holds a light (E1, item L1), a
/// blind (E2, item L3), a scenario button (SC1, scenario S1), a bus scenario
/// button (SC2, no scenario of ours) and a thermostat (T1, thermostat TH1 on
/// item L2). Schedules run on E1, T1 and SC1; two rules, a notification with
/// its address, the smart button, the presence simulation and the clock
/// driver name items. L4 is used by nothing. Needs the factory defaults.
inline QJsonObject consistentDocument()
{
    QJsonObject document = database::persistent::ps_default_t::getInstance()->getJData();
    applyChanges(document, jsonObject(R"({
        "items/objects_list/L1": {"name": "hall", "type": "dtp_1", "feedback": "1/1/1",
                                  "id_driver": "drivers/driver_knx/1"},
        "items/objects_list/L2": {"name": "temperature", "type": "dtp_9", "feedback": "1/1/2"},
        "items/objects_list/L3": {"name": "blind", "type": "dtp_1", "feedback": "1/1/3"},
        "items/objects_list/L4": {"name": "spare", "type": "dtp_1", "feedback": "1/1/4"},
        "elements/page_stack": {"1": ["R1"]},
        "elements/objects_list/R1": {"@class": "psoe_room", "name": "hall", "rooms": ["1"], "auth": {"0": 1},
                                     "element_list": ["E1", "E2", "SC1", "SC2", "T1"]},
        "elements/objects_list/E1": {"@class": "psoe_onoff", "name": "light", "rooms": ["R1"],
                                     "function_map": {"onoff": "L1"}, "auth": {"0": 1}},
        "elements/objects_list/E2": {"@class": "psoe_onoff", "name": "blind", "rooms": ["R1"],
                                     "function_map": {"onoff": "L3"}},
        "elements/objects_list/SC1": {"@class": "psoe_scenario", "name": "evening", "rooms": ["R1"],
                                      "scenario_id": "S1"},
        "elements/objects_list/SC2": {"@class": "psoe_scenario", "name": "bus scene", "rooms": ["R1"],
                                      "scenario_id": "", "flags": -2147483648},
        "elements/objects_list/T1": {"@class": "psoe_thermo_logic", "name": "heating", "rooms": ["R1"],
                                     "thermo_id": "TH1"},
        "scenary/objects_list/S1": {"name": "evening",
                                    "objects_list": {"a": {"type": "@item", "id": "L1", "value": "1"}}},
        "thermo/objects_list/TH1": {"name": "heating", "id_win": "L2",
                                    "thermo": {"@class": "ps_object_thermo_isteresi_t", "idactual": "L2",
                                               "items": {"idsetpoint": "L2"}}},
        "schedulers/objects_list/SCH1": {"name": "light", "element_id": "E1",
            "cron_list": {"c1": {"objects_list": {"a": {"type": "@item", "id": "L1", "value": "1"}}}},
            "astro_list": {"a1": {"objects_list": {"a": {"type": "@item", "id": "L1", "value": "0"}}}}},
        "schedulers/objects_list/SCH2": {"name": "heating", "element_id": "T1",
            "cron_list": {"c1": {"objects_list": {"a": {"type": "@thermo", "id": "TH1", "value": "1"}}}}},
        "schedulers/objects_list/SCH3": {"name": "evening", "element_id": "SC1",
            "cron_list": {"c1": {"objects_list": {"a": {"type": "@scenary", "id": "S1"}}}}},
        "rules/objects_list/RU1": {"name": "r1", "when_": "@item[L1] == 1", "then_": "@scenary[S1]",
                                   "else_": "@notify[N1]"},
        "rules/objects_list/RU2": {"name": "r2", "when_": "@item[L3] == 0", "then_": "@rules[RU1]", "else_": ""},
        "notify/objects_list/N1": {"name": "alarm", "emaildst": ["M1"]},
        "notify/email_list/M1": {"address": "desk@example.com"},
        "general/enable_astro": true,
        "smartbutton/id_item_rgb": "L1",
        "smartbutton/id_item_listen_index": "L1",
        "presencesimulation/idItem": "L1",
        "drivers/driver_clock/id_item_date": "L2"
    })"));
    return document;
}

#endif // TESTS_SUPPORT_PS_DOCUMENT_H
