#ifndef DATABASE_RR_DEFINITION_RR_PACKET_SERVICE_T_H
#define DATABASE_RR_DEFINITION_RR_PACKET_SERVICE_T_H

#include <QJsonObject>
#include <QString>

#include "database/definition/string_type_t.h"
#include "database/database_export.h"

namespace database {
namespace rr {
namespace definition {

/**
 * A word of an outside service's vocabulary: its text, used in topics, and the
 * template of the packet that goes with it. Words of the template that begin
 * with "@" are places to fill; "@topic" stands for the topic.
 */
class DATABASE_EXPORT rr_packet_service_t : public ::database::definition::string_type_t<rr_packet_service_t>
{
public:
    rr_packet_service_t() = default;
    rr_packet_service_t(QString const& text, QJsonObject const& packet = QJsonObject());

    /// The text.
    QString Topic() const;
    /// The text, "/", then sub.
    QString Topic(QString const& sub) const;
    /// The construction number; it follows the order of the statics for them alone.
    int Index() const;
    /// {"state": the text, "message": message}; without "message" when it is blank.
    QJsonObject Payload(QString const& message) const;
    /// The packet template.
    QJsonObject Template() const;

    static const rr_packet_service_t state_of_service;
    static const rr_packet_service_t command_of_sercice;
    static const rr_packet_service_t start;
    static const rr_packet_service_t abort;

private:
    QJsonObject packet;
};

} // namespace definition
} // namespace rr
} // namespace database

DATABASE_STRING_TYPE_DECLARE(database::rr::definition::rr_packet_service_t);

#endif // DATABASE_RR_DEFINITION_RR_PACKET_SERVICE_T_H
