#include "database/consistency/ps_consistency_t.h"

#include <QElapsedTimer>
#include <QMutexLocker>

#include "database/consistency/consistency_t.h"
#include "database/consistency/rt_consistency_t.h"
#include "database/database_t.h"
#include "database/default/persistent/ps_default_t.h"
#include "database/persistent/define/ps_knx_mode_t.h"
#include "database/persistent/objects/elements/psoe_room.h"
#include "database/persistent/objects/elements/psoe_scenario.h"
#include "database/persistent/objects/elements/psoe_thermo_logic.h"
#include "database/persistent/persistent_t.h"
#include "database/utility/utility.h"

namespace database {

using namespace persistent;
using namespace persistent::dbs;
using namespace persistent::objects;
using ::database::definition::service_t;
using ::database::definition::type_object_t;
using ::utility::logs::LogLevel;

namespace {

/// Removes the entries of map whose key (or, with byValue, whose value as a
/// text) fails known; gives the keys removed.
template<class Known>
QStringList dropUnknown(QVariantMap& map, bool byValue, Known known)
{
    QStringList removed;
    for (QString const& key : map.keys()) {
        if (!known(byValue ? map.value(key).toString() : key)) {
            map.remove(key);
            removed.append(key);
        }
    }
    return removed;
}

/// The item ids of a thermostat's loops and window contact, by where they sit.
QStringList thermostatItemIds(ps_object_thermostat_t const* thermostat)
{
    QStringList ids{thermostat->getIdWindowsContact(), thermostat->getThermo()->getIdActual(),
                    thermostat->getHydro()->getIdActual()};
    for (QVariant const& id : thermostat->getThermo()->getIds())
        ids.append(id.toString());
    for (QVariant const& id : thermostat->getHydro()->getIds())
        ids.append(id.toString());
    return ids;
}

/// Clears in thermostat every item reference that gone tells is gone; true if any was.
template<class Gone>
bool clearGoneItems(ps_object_thermostat_t* thermostat, Gone gone)
{
    bool cleared = false;
    auto clearField = [&](QString const& id, auto setter) {
        if (!id.isEmpty() && gone(id)) {
            setter(QString());
            cleared = true;
        }
    };
    auto clearMap = [&](auto* loop) {
        QVariantMap ids = loop->getIds();
        if (!dropUnknown(ids, true, [&](QString const& id) { return id.isEmpty() || !gone(id); }).isEmpty()) {
            loop->setIds(ids);
            cleared = true;
        }
    };
    clearField(thermostat->getIdWindowsContact(), [&](QString const& v) { thermostat->setIdWindowsContact(v); });
    clearField(thermostat->getThermo()->getIdActual(),
               [&](QString const& v) { thermostat->getThermo()->setIdActual(v); });
    clearField(thermostat->getHydro()->getIdActual(),
               [&](QString const& v) { thermostat->getHydro()->setIdActual(v); });
    clearMap(thermostat->getThermo());
    clearMap(thermostat->getHydro());
    return cleared;
}

/// Whether type names one of the kinds of object an action may refer to.
bool isKnownKind(QString const& type)
{
    for (type_object_t const* kind : {&type_object_t::item, &type_object_t::scenary, &type_object_t::rules,
                                      &type_object_t::notify, &type_object_t::thermo}) {
        if (type == kind->ToString())
            return true;
    }
    return false;
}

bool isType(ps_object_element_t const* element, int type)
{
    return element && element->getTypeIndex() == type;
}

} // namespace

ps_consistency_t::ps_consistency_t(database_t* _database, QObject* parent)
    : QObject(parent)
    , database(_database)
{
    log(name() + QStringLiteral("Starting database persistent consistency engine ..."), ::utility::logs::trace,
        "ps_consistency_t");
}

QString ps_consistency_t::name() const
{
    return database ? database->getName() : QString();
}

void ps_consistency_t::check(QStringList _howCheck)
{
    check(_howCheck, false);
}

void ps_consistency_t::check(QStringList _howCheck, bool _realtime)
{
    log(QStringLiteral("Start check consistency for persistent part "), ::utility::logs::trace, "check");
    // Taken at once, so that a direct call and a pool job can't both pass.
    if (inRun.exchange(true))
        return;
    persistent_t* engine = database ? database->getPersistent() : nullptr;
    bool const owner
        = engine && (engine->getService() == service_t::server || engine->getService() == service_t::offline);
    if (!owner) {
        // A client follows its server's repairs and makes none of its own.
        inRun = false;
        return;
    }
    Q_EMIT onPersistentConsistencyInRun(true);
    QElapsedTimer clock;
    clock.start();
    log(name() + QStringLiteral("Start consistency check ") + _howCheck.join(QStringLiteral(" - ")),
        ::utility::logs::trace, "check");
    log(name() + QStringLiteral(" Check consistency ..."), ::utility::logs::trace, "check");
    {
        QMutexLocker locker(engine->getAccessMutex());
        data = engine->getData();
        if (data)
            run();
        data = nullptr;
    }
    log(QStringLiteral("Consistency persistent check time: ") + QString::number(clock.elapsed() / 1000)
            + QStringLiteral(" second"),
        ::utility::logs::info, "check");
    // The realtime check takes both engines' mutexes itself, in their order.
    if (_realtime && database->getConsistency())
        database->getConsistency()->getRealtimeConsistency()->check(false, true);
    inRun = false;
    Q_EMIT onPersistentConsistencyInRun(false);
}

void ps_consistency_t::run()
{
    numberstep = 11;
    step = 0;
    tables_t tables;
    data->getElements()->getElements(tables._rooms, tables._elements);
    report(QStringLiteral("CONSISTENCY"), QStringLiteral("START"), true);
    map_stringlist& itemToElement = tables.tmp_item_to_element;
    struct row_t {
        char const* field;
        char const* message;
        std::function<void()> check;
    };
    // Elements first: they fill the tables. Scenarios before the schedules
    // and rules that may name them, so that a scenario gone here is missing there.
    row_t const rows[] = {
        {"ELEMENTS", "Checked", [&] { check_elements(tables); }},
        {"ITEMS", "Checked", [&] { check_elements_items(itemToElement); }},
        {"SMARTBUTTON", "Checked", [&] { check_elements_smart_button(); }},
        {"PRESENCE SIMULATION", "Checked", [&] { check_elements_presence_simualtion(); }},
        {"SCENARY", "Checked object", [&] { check_scenary_objects(itemToElement, tables._scenary_to_element); }},
        {"THERMO", "Checked object", [&] { check_thermo_objects(tables._thermo_to_element); }},
        {"SCHEDULERS", "Checked", [&] { check_scheduler_objects(itemToElement); }},
        {"RULES", "Checked", [&] { check_rules_objects(itemToElement); }},
        {"USERS", "Checked", [&] { check_users(); }},
        {"CLOCK", "Checked", [&] { check_driver_clock(); }},
        {"NOTIFICATION", "Checked", [&] { check_notification(); }},
    };
    for (row_t const& row : rows) {
        row.check();
        report(QString::fromLatin1(row.field), QString::fromLatin1(row.message), true);
    }
}

void ps_consistency_t::report(QString const& field, QString const& message, bool advance)
{
    Q_EMIT onPersistentConsistencyStep(step, numberstep, field, message);
    if (advance)
        ++step;
}

void ps_consistency_t::check_elements(tables_t& tables)
{
    QString const field = QStringLiteral("ELEMENTS");
    check_elements_page_stack(tables._rooms);
    report(field, QStringLiteral("Checked page stack"), false);
    check_elements_rooms_floor(tables._rooms);
    report(field, QStringLiteral("Checked rooms"), false);
    check_elements_elements_elements_room(tables);
    report(field, QStringLiteral("Checked elements in rooms"), false);
    check_elements_elements_room_elements(tables._rooms);
    report(field, QStringLiteral("Checked rooms in elements"), false);
}

void ps_consistency_t::check_elements_page_stack(map_stringlist& _rooms)
{
    char const* source = "check_elements_page_stack";
    ps_elements_t* elements = data->getElements();
    map_stringlist const stack = elements->getPage_stack();
    map_stringlist copy = stack;
    bool removed = false;
    for (auto floor = stack.begin(); floor != stack.end(); ++floor) {
        for (QString const& room : floor.value()) {
            if (!_rooms.contains(room)) {
                copy[floor.key()].removeAll(room);
                removed = true;
                log(QStringLiteral("Remove to page stack in floor ") + floor.key() + QStringLiteral(" room ") + room,
                    ::utility::logs::warning, source);
                continue;
            }
            ps_object_element_t* element = elements->getObjects().value(room);
            if (element && !element->getRooms().contains(floor.key())) {
                element->setRooms(element->getRooms() << floor.key());
                elements->send_update_element(room);
                log(QStringLiteral("Append to room id ") + room + QStringLiteral(" floor ") + floor.key(),
                    ::utility::logs::warning, source);
            }
        }
    }
    if (removed) {
        elements->update_page_stack(copy);
        log(QStringLiteral("update page stack"), ::utility::logs::warning, source);
    }
}

void ps_consistency_t::check_elements_rooms_floor(map_stringlist& _rooms)
{
    char const* source = "check_elements_rooms_floor";
    ps_elements_t* elements = data->getElements();
    map_stringlist copy = elements->getPage_stack();
    bool added = false;
    for (QString const& room : _rooms.keys()) {
        ps_object_element_t const* element = elements->getObjects().value(room);
        if (!element)
            continue;
        for (QString const& floor : element->getRooms()) {
            if (copy.value(floor).contains(room))
                continue;
            copy[floor].append(room);
            added = true;
            log(QStringLiteral("Added to page stack in floor ") + floor + QStringLiteral(" room ") + room,
                ::utility::logs::warning, source);
        }
    }
    if (added) {
        elements->update_page_stack(copy);
        log(QStringLiteral("update page stack"), ::utility::logs::warning, source);
    }
}

void ps_consistency_t::check_elements_elements_elements_room(tables_t& tables)
{
    char const* source = "check_elements_elements_elements_room";
    ps_elements_t* elements = data->getElements();
    ps_items_map const items = data->getItems()->getObjects();
    ps_scenary_map const scenarios = data->getScenary()->getObjects();
    ps_thermostat_map const thermostats = data->getThermo()->getObjects();
    ps_users_map const users = data->getUsers()->getObjects();
    auto warn = [&](QString const& line) { log(line, ::utility::logs::warning, source); };
    map_stringlist& _rooms = tables._rooms;

    for (QString const& id : std::as_const(tables._elements)) {
        ps_object_element_t* element = elements->getObjects().value(id);
        if (!element)
            continue;
        element->setId(id);
        bool changed = false;

        QStringList rooms = element->getRooms();
        for (QString const& room : element->getRooms()) {
            if (!_rooms.contains(room)) {
                rooms.removeAll(room);
                changed = true;
                warn(QStringLiteral("Remove from element id ") + id + QStringLiteral(" room ") + room);
                continue;
            }
            auto* roomElement = qobject_cast<psoe_room*>(elements->getObjects().value(room));
            if (roomElement && !roomElement->getElement_list().contains(id)) {
                roomElement->setElement_list(roomElement->getElement_list() << id);
                _rooms[room] = roomElement->getElement_list();
                elements->send_update_element(room);
                warn(QStringLiteral("Add to room id ") + room + QStringLiteral(" room ") + id);
            }
        }
        if (rooms != element->getRooms())
            element->setRooms(rooms);

        QVariantMap auth = element->getAuth();
        QStringList const goneUsers
            = dropUnknown(auth, false, [&](QString const& user) { return users.contains(user); });
        for (QString const& user : goneUsers)
            warn(QStringLiteral("Remove auth ") + user + QStringLiteral(" from element ") + id);
        if (!goneUsers.isEmpty()) {
            element->setAuth(auth);
            changed = true;
        }

        // A function on a deleted item goes without a word.
        QVariantMap functions = element->getFunction_map();
        if (!dropUnknown(functions, true, [&](QString const& item) { return items.contains(item); }).isEmpty()) {
            element->setFunction_map(functions);
            changed = true;
        }
        for (QVariant const& value : std::as_const(functions)) {
            QString const item = value.toString();
            tables.tmp_elemet_to_item[id].append(item);
            tables.tmp_item_to_element[item].append(id);
        }

        if (auto* logic = qobject_cast<psoe_thermo_logic*>(element)) {
            QString const thermostat = logic->getThermo_id();
            if (thermostats.contains(thermostat)) {
                tables._thermo_to_element[thermostat].append(id);
            } else {
                elements->update_remove_element_from_list(id);
                warn(QStringLiteral("Remove thermo element ") + id + QStringLiteral("because thermo not exist"));
            }
        } else if (auto* scenario = qobject_cast<psoe_scenario*>(element)) {
            QString const scene = scenario->getScenario_id();
            // A KNX scenario runs on the bus: it counts as linked with no scenario of ours.
            if (!scenario->getFlag(int(psoe_scenario::SCENARIO_FLAG_KNX_SCENARIO)) && !scenarios.contains(scene)) {
                elements->update_remove_element_from_list(id);
                warn(QStringLiteral("Remove scenary element ") + id + QStringLiteral("because scenary not exist"));
            } else {
                tables._scenary_to_element[scene].append(id);
            }
        }
        if (changed)
            elements->send_update_element(id);
    }
}

void ps_consistency_t::check_elements_elements_room_elements(map_stringlist& _rooms)
{
    char const* source = "check_elements_elements_room_elements";
    ps_elements_t* elements = data->getElements();
    ps_users_map const users = data->getUsers()->getObjects();
    for (QString const& id : _rooms.keys()) {
        auto* room = qobject_cast<psoe_room*>(elements->getObjects().value(id));
        if (!room)
            continue;
        QStringList list = room->getElement_list();
        for (QString const& element : room->getElement_list()) {
            if (elements->getObjects().contains(element))
                continue;
            list.removeAll(element);
            // The element's own topic, not the room's: other processes expect it so.
            elements->send_update_element(element);
            log(QStringLiteral("Remove from room  ") + id + QStringLiteral(" element ") + element,
                ::utility::logs::warning, source);
        }
        if (list != room->getElement_list()) {
            room->setElement_list(list);
            _rooms[id] = list;
        }
        QVariantMap auth = room->getAuth();
        QStringList const goneUsers
            = dropUnknown(auth, false, [&](QString const& user) { return users.contains(user); });
        for (QString const& user : goneUsers)
            log(QStringLiteral("Remove auth ") + user + QStringLiteral(" from room ") + id, ::utility::logs::warning,
                source);
        if (!goneUsers.isEmpty()) {
            room->setAuth(auth);
            elements->send_update_element(id);
        }
    }
}

void ps_consistency_t::check_elements_items(map_stringlist& tmp_item_to_element)
{
    char const* source = "check_elements_items";
    int const presenceFlags = ps_object_item_t::ITEM_FLAG_RECORDING_PRESENCE_SIMULATION
        | ps_object_item_t::ITEM_FLAG_PLAY_PRESENCE_SIMULATION;
    QStringList const drivers = data->getDrivers()->getDriverId();
    ps_items_t* items = data->getItems();
    ps_items_map const map = items->getObjects();
    for (auto it = map.begin(); it != map.end(); ++it) {
        ps_object_item_t* item = it.value();
        if (!item)
            continue;
        bool changed = false;
        QString const driver = item->getIdDriver().trimmed();
        if (!driver.isEmpty() && !drivers.contains(driver)) {
            item->setIdDriver(QString());
            changed = true;
            log(QStringLiteral("Reset driver to item ") + it.key() + QStringLiteral(" because driver ") + driver
                    + QStringLiteral(" not exist"),
                ::utility::logs::warning, source);
        }
        // Presence simulation records and plays what elements command.
        if (tmp_item_to_element.value(it.key()).isEmpty() && item->getFlag(presenceFlags)) {
            item->setFlags(item->getFlags() & ~presenceFlags);
            changed = true;
            log(QStringLiteral("Reset presence simulation flags of item ") + it.key()
                    + QStringLiteral(" because it has no associated elements"),
                ::utility::logs::warning, source);
        }
        if (changed)
            items->send_update_item(it.key());
    }
}

bool ps_consistency_t::danglingItem(QString const& id) const
{
    return !id.isEmpty() && !data->getItems()->getObjects().contains(id);
}

void ps_consistency_t::check_elements_smart_button()
{
    char const* source = "check_elements_smart_button";
    ps_smartbutton_t* button = data->getSmartButton();
    bool reset = false;
    QString const rgb = button->getIdItemRgb().trimmed();
    if (danglingItem(rgb)) {
        button->update_id_item_rgb(QString(), false);
        reset = true;
        log(QStringLiteral("Reset smart button because id rgm ") + rgb + QStringLiteral(" not exist"),
            ::utility::logs::warning, source);
    }
    QString const listen = button->getIdItemListenIndex();
    if (danglingItem(listen)) {
        button->update_id_item_listen_index(QString(), false);
        reset = true;
        log(QStringLiteral("Reset smart button because id listen ") + listen + QStringLiteral(" not exist"),
            ::utility::logs::warning, source);
    }
    if (reset)
        button->send_update();
}

void ps_consistency_t::check_elements_presence_simualtion()
{
    ps_presencesimulation_t* presence = data->getPresenceSimulation();
    QString const item = presence->getIdItem();
    if (!danglingItem(item))
        return;
    presence->update_id_item(QString(), true);
    log(QStringLiteral("Reset presence simulation because id item ") + item + QStringLiteral(" not exist"),
        ::utility::logs::warning, "check_elements_presence_simualtion");
}

QStringList ps_consistency_t::faultyActions(ps_objects_map const& actions, QString const& prefix, judge_t const& judge,
                                            char const* source) const
{
    QStringList faulty;
    for (auto it = actions.begin(); it != actions.end(); ++it) {
        if (!it.value())
            continue;
        verdict_t const verdict = judge(it.value());
        if (verdict.ending.isEmpty())
            continue;
        log(prefix + QStringLiteral(" object ") + it.key() + verdict.ending, verdict.level, source);
        faulty.append(it.key());
    }
    return faulty;
}

void ps_consistency_t::check_scenary_objects(map_stringlist& tmp_item_to_element, map_stringlist& _scenary_to_element)
{
    ps_scenary_t* scenary = data->getScenary();
    ps_items_map const items = data->getItems()->getObjects();
    ps_rules_map const rules = data->getRules()->getObjects();
    ps_notify_map const notifications = data->getNotify()->getObjects();
    ps_thermostat_map const thermostats = data->getThermo()->getObjects();
    QString const orphan = QStringLiteral(" is scenary orphan");

    for (QString const& id : scenary->getObjects().keys()) {
        // A scenario lives as long as an element shows it.
        if (!_scenary_to_element.contains(id)) {
            scenary->update_scene(id, nullptr, true);
            continue;
        }
        ps_object_scenary_t* scenario = scenary->getObjects().value(id);
        if (!scenario)
            continue;
        auto judge = [&](ps_object_t const* action) -> verdict_t {
            QString const type = action->getType();
            QString const ref = action->getId();
            if (type == type_object_t::item.ToString()) {
                if (!items.contains(ref))
                    return {QStringLiteral(" is item orphan"), ::utility::logs::warning};
                if (!tmp_item_to_element.contains(ref))
                    return {QStringLiteral(" is element orphan no element linked"), ::utility::logs::warning};
                return {};
            }
            bool known = true;
            if (type == type_object_t::scenary.ToString())
                known = scenary->getObjects().contains(ref);
            else if (type == type_object_t::rules.ToString())
                known = rules.contains(ref);
            else if (type == type_object_t::notify.ToString())
                known = notifications.contains(ref);
            else if (type == type_object_t::thermo.ToString())
                known = thermostats.contains(ref);
            else
                return {QStringLiteral(" not valid object type"), ::utility::logs::info};
            return known ? verdict_t{} : verdict_t{orphan, ::utility::logs::info};
        };
        QStringList const faulty = faultyActions(scenario->getObjects(), name() + QStringLiteral("In scenary ") + id,
                                                 judge, "check_scenary_objects");
        // An action of an unknown kind can't be judged later either: it goes at once.
        ps_objects_map const actions = scenario->getObjects();
        for (QString const& key : faulty) {
            if (!isKnownKind(actions.value(key)->getType()))
                scenario->update_object(key, nullptr, false);
        }
        if (!faulty.isEmpty())
            scenario->update_remove_objects(faulty, true);
    }
}

void ps_consistency_t::check_thermo_objects(map_stringlist& _thermo_to_element)
{
    ps_thermo_t* thermo = data->getThermo();
    ps_items_t* items = data->getItems();
    auto gone = [&](QString const& id) { return !items->getObjects().contains(id); };
    bool const baos = data->getDrivers()->getKnxMode() == persistent::definition::ps_knx_mode_t::baos.ToString();
    for (QString const& id : thermo->getObjects().keys()) {
        ps_object_thermostat_t* thermostat = thermo->getObjects().value(id);
        if (!thermostat)
            continue;
        if (!_thermo_to_element.contains(id)) {
            // Under baos the items of a thermostat are its own: they go with it.
            if (baos) {
                for (QString const& item : thermostatItemIds(thermostat)) {
                    if (!item.isEmpty() && !gone(item))
                        items->update_items(item, nullptr, true);
                }
            }
            thermo->update_thermos(id, nullptr, true);
            continue;
        }
        ps_object_thermostat_t copy(*thermostat);
        if (clearGoneItems(&copy, gone))
            thermo->update_thermos(id, &copy, true);
    }
}

ps_consistency_t::judge_t ps_consistency_t::schedulerJudge(map_stringlist const& tmp_item_to_element,
                                                           QString const& elementId) const
{
    ps_object_element_t const* element = data->getElements()->getObjects().value(elementId);
    bool const scenarioElement = isType(element, ps_object_element_t::ELEMENT_TYPE_SCENARIO);
    ps_items_map const items = data->getItems()->getObjects();
    ps_scenary_map const scenarios = data->getScenary()->getObjects();
    ps_rules_map const rules = data->getRules()->getObjects();
    ps_notify_map const notifications = data->getNotify()->getObjects();
    ps_thermostat_map const thermostats = data->getThermo()->getObjects();
    return [=](ps_object_t const* action) -> verdict_t {
        QString const type = action->getType().trimmed();
        QString const ref = action->getId();
        auto orphanIf = [](bool missing, QString const& ending) {
            return missing ? verdict_t{ending, ::utility::logs::info} : verdict_t{};
        };
        if (type == type_object_t::item.ToString()) {
            if (!items.contains(ref))
                return {QStringLiteral(" is item orphan"), ::utility::logs::info};
            return orphanIf(!tmp_item_to_element.contains(ref),
                            QStringLiteral(" is item not in function map of element ") + elementId);
        }
        if (type == type_object_t::scenary.ToString()) {
            if (!scenarioElement)
                return {QStringLiteral(" is scenary element is not a scenary"), ::utility::logs::info};
            return orphanIf(!scenarios.contains(ref), QStringLiteral(" is scenary orphan"));
        }
        if (type == type_object_t::rules.ToString())
            return orphanIf(!rules.contains(ref), QStringLiteral(" is rule orphan"));
        if (type == type_object_t::notify.ToString())
            return orphanIf(!notifications.contains(ref), QStringLiteral(" is notify orphan"));
        if (type == type_object_t::thermo.ToString())
            return orphanIf(!thermostats.contains(ref), QStringLiteral(" is thermo orphan"));
        return {QStringLiteral(" wrong type: ") + type, ::utility::logs::info};
    };
}

void ps_consistency_t::check_scheduler_objects(map_stringlist& tmp_item_to_element)
{
    char const* source = "check_scheduler_objects";
    ps_scheduler_t* schedulers = data->getSchedulers();
    bool const astroEnabled = data->getGeneral()->getEnableAstro();
    for (QString const& id : schedulers->keys()) {
        ps_object_scheduler_t* scheduler = schedulers->getObjects().value(id);
        if (!scheduler)
            continue;
        QString const elementId = scheduler->getElementId();
        if (!data->getElements()->getObjects().contains(elementId)) {
            log(QStringLiteral("Delete schedulers ") + id + QStringLiteral(" because not found element ") + elementId,
                ::utility::logs::warning, source);
            schedulers->update_scheduler(id, nullptr, true);
            continue;
        }
        judge_t const judge = schedulerJudge(tmp_item_to_element, elementId);
        QString const prefix = name() + QStringLiteral("In schedulers ") + id;
        // Entries go quietly and the whole schedule goes out once: other processes
        // take a schedule's status only as a whole.
        bool entriesChanged = false;
        ps_cron_map const crons = scheduler->getCrons();
        for (auto cron = crons.begin(); cron != crons.end(); ++cron) {
            QStringList const faulty = faultyActions(cron.value()->getObjects(),
                                                     prefix + QStringLiteral(" in cron ") + cron.key(), judge, source);
            if (!faulty.isEmpty()) {
                cron.value()->update_remove_objects(faulty, false);
                entriesChanged = true;
            }
        }
        ps_astro_map const astros = scheduler->getAstros();
        for (auto astro = astros.begin(); astro != astros.end(); ++astro) {
            if (!astroEnabled) {
                log(QStringLiteral("In schedulers ") + id + QStringLiteral(" delete astro ") + astro.key()
                        + QStringLiteral(" because astronomical watch is disabled!"),
                    ::utility::logs::warning, source);
                scheduler->update_astro(astro.key(), nullptr, true);
                continue;
            }
            QStringList const faulty = faultyActions(
                astro.value()->getObjects(), prefix + QStringLiteral(" in astro ") + astro.key(), judge, source);
            if (!faulty.isEmpty()) {
                astro.value()->update_remove_objects(faulty, false);
                entriesChanged = true;
            }
        }
        if (entriesChanged)
            scheduler->send_update();
    }
}

void ps_consistency_t::check_rules_objects(map_stringlist& tmp_item_to_element)
{
    QString const field = QStringLiteral("RULES");
    check_rules_object(type_object_t::item, tmp_item_to_element);
    report(field, QStringLiteral("Checked items in rules"), false);
    check_rules_object(type_object_t::scenary, tmp_item_to_element);
    report(field, QStringLiteral("Checked scenarios in rules"), false);
    check_rules_object(type_object_t::rules, tmp_item_to_element);
    report(field, QStringLiteral("Checked rules in rules"), false);
    check_rules_object(type_object_t::notify, tmp_item_to_element);
    report(field, QStringLiteral("Checked notify in rules"), false);
}

void ps_consistency_t::check_rules_object(type_object_t const& type, map_stringlist& tmp_item_to_element)
{
    QString const pattern = type.ToString() + QStringLiteral("\\[([\\da-zA-Z]+)\\]");
    ps_rules_t* rules = data->getRules();
    bool const ofItems = type == type_object_t::item;
    // Looked up live: a rule deleted in this pass orphans the rules that name it.
    auto exists = [&](QString const& id) {
        if (ofItems)
            return data->getItems()->getObjects().contains(id) && !tmp_item_to_element.value(id).isEmpty();
        if (type == type_object_t::scenary)
            return data->getScenary()->getObjects().contains(id);
        if (type == type_object_t::rules)
            return rules->getObjects().contains(id);
        return data->getNotify()->getObjects().contains(id);
    };
    for (QString const& id : rules->getObjects().keys()) {
        ps_object_rules_t const* rule = rules->getObjects().value(id);
        if (!rule)
            continue;
        QStringList const refs = utility::getMatchRegex(rule->getWhen(), pattern)
            + utility::getMatchRegex(rule->getElse(), pattern) + utility::getMatchRegex(rule->getThen(), pattern);
        if (std::all_of(refs.begin(), refs.end(), exists))
            continue;
        log(QStringLiteral("Delete rules ") + id + QStringLiteral(" because is orphan"), ::utility::logs::warning,
            "check_rules_object");
        rules->update_rule(id, nullptr, true);
    }
}

void ps_consistency_t::check_users()
{
    ps_users_t* users = data->getUsers();
    if (!users->getObjects().contains(QStringLiteral("0"))) {
        ps_object_user_t user(QStringLiteral("user"), 95, QString(), nullptr);
        users->update_user(QStringLiteral("0"), &user, true);
    }
    ps_default_t* defaults = ps_default_t::getInstance();
    QString const pin = defaults->getAdminPin(defaults->getBrand());
    // The administrator can never be lost, nor be left without a PIN.
    if (ps_object_user_t* admin = users->getObjects().value(QStringLiteral("99"))) {
        if (admin->getPin().isEmpty())
            admin->update_pin(pin, true);
    } else {
        ps_object_user_t created(QStringLiteral("admin"), -1, pin, nullptr);
        users->update_user(QStringLiteral("99"), &created, true);
    }
}

void ps_consistency_t::check_driver_clock()
{
    using driver_t = objects::drivers::ps_drivers_clock_t;
    driver_t* clock = data->getDrivers()->getClock();
    bool cleared = false;
    auto clear = [&](QString const& id, void (driver_t::*update)(QString const&, bool)) {
        if (danglingItem(id.trimmed())) {
            (clock->*update)(QString(), false);
            cleared = true;
        }
    };
    clear(clock->getIdItemDate(), &driver_t::update_item_date);
    clear(clock->getIdItemTime(), &driver_t::update_item_time);
    clear(clock->getIdItemDatetime(), &driver_t::update_item_datetime);
    if (cleared)
        clock->send_update();
}

void ps_consistency_t::check_notification()
{
    ps_notify_email_map const emails = data->getNotify()->getEmails();
    ps_notify_map const notifications = data->getNotify()->getObjects();
    for (ps_object_notify_t* notification : notifications) {
        if (!notification)
            continue;
        QStringList destinations = notification->getEmailDst();
        if (destinations.removeIf([&](QString const& id) { return !emails.contains(id); }) > 0)
            notification->update_email_dest(destinations, true);
    }
}

void ps_consistency_t::log(QString const& message, LogLevel level, char const* source) const
{
    CLASSLOGS_LOG(message, level, QString::fromLatin1(source));
}

} // namespace database
