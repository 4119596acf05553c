#ifndef DATABASE_BASE_LITERALS_H
#define DATABASE_BASE_LITERALS_H

#include <QString>

/// Literals shared by every subsystem to build topics and address sections.
/// Other processes meet these strings, so their values are part of the protocol.
namespace database {
namespace literals {

// Image-update parameter of the general section.
inline const QString enable_img_upd = QStringLiteral("enable_img_upd");

// Topic of the local bridge; declared for hosts, the library never reads it.
inline const QString forward_bridge_local = QStringLiteral("forward-bridge/local");

// Top-level keys of the databases.
inline const QString key_command = QStringLiteral("command");
inline const QString key_notification = QStringLiteral("notification");
inline const QString key_general = QStringLiteral("general");
inline const QString key_astronomical = QStringLiteral("astronomical");
inline const QString key_system = QStringLiteral("system");
inline const QString key_items = QStringLiteral("items");
inline const QString key_thermo = QStringLiteral("thermo");
inline const QString key_elements = QStringLiteral("elements");
inline const QString key_versions = QStringLiteral("versions");
inline const QString key_information = QStringLiteral("information");
inline const QString key_smartbutton = QStringLiteral("smartbutton");
inline const QString key_storage = QStringLiteral("storage");
inline const QString key_notify = QStringLiteral("notify");
inline const QString key_schedulers = QStringLiteral("schedulers");
inline const QString key_scenary = QStringLiteral("scenary");
inline const QString key_rules = QStringLiteral("rules");
inline const QString key_drivers = QStringLiteral("drivers");
inline const QString key_installation = QStringLiteral("installation");
inline const QString key_connections = QStringLiteral("connections");
inline const QString key_urls = QStringLiteral("urls");
inline const QString key_users = QStringLiteral("users");
inline const QString key_presencesimulation = QStringLiteral("presencesimulation");

// Driver topics.
inline const QString topic_driver_internal = key_drivers + QStringLiteral("/driver_internal");
inline const QString topic_driver_knx = key_drivers + QStringLiteral("/driver_knx");
inline const QString topic_driver_baos = key_drivers + QStringLiteral("/driver_baos");
inline const QString topic_driver_clock = key_drivers + QStringLiteral("/driver_clock");

// Base topics of the databases.
inline const QString base_persistent = QStringLiteral("DB/persistent");
inline const QString base_realtime = QStringLiteral("DB/realtime");
inline const QString base_presencesimulation = QStringLiteral("DB/presencesimulation");
inline const QString base_command = QStringLiteral("DB/command");

// Absolute prefixes: "request/" or "status/" followed by a base topic.
inline const QString request_persistent = QStringLiteral("request/") + base_persistent;
inline const QString status_persistent = QStringLiteral("status/") + base_persistent;
inline const QString request_realtime = QStringLiteral("request/") + base_realtime;
inline const QString status_realtime = QStringLiteral("status/") + base_realtime;
inline const QString request_presencesimulation = QStringLiteral("request/") + base_presencesimulation;
inline const QString status_presencesimulation = QStringLiteral("status/") + base_presencesimulation;
inline const QString request_command = QStringLiteral("request/") + base_command;
inline const QString status_command = QStringLiteral("status/") + base_command;

// The database as a whole, as a relative topic.
inline const QString topic_database = QStringLiteral("DB");

} // namespace literals
} // namespace database

#endif // DATABASE_BASE_LITERALS_H
