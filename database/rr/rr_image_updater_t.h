#ifndef DATABASE_RR_RR_IMAGE_UPDATER_T_H
#define DATABASE_RR_RR_IMAGE_UPDATER_T_H

#include <QJsonObject>
#include <QObject>
#include <QString>

#include "database/rr/definition/rr_packet_type_image_updater_t.h"
#include "database/rr/rr_base_t.h"
#include "database/database_export.h"

namespace database {
namespace rr {

/**
 * The peer of the image update service, which checks for, fetches and
 * installs new system images.
 */
class DATABASE_EXPORT rr_image_updater_t : public rr_base_t
{
    Q_OBJECT

public:
    explicit rr_image_updater_t(QObject* parent = nullptr);

    using rr_base_t::compare;
    bool compare(rr_image_updater_t const* other) const;

    /// "image_update_service"; also the key of the peer in the façade.
    static QString getNameOfService();
    /// {"state": state's string, "message": message}.
    static QJsonObject get_packet_response(definition::rr_packet_type_image_updater_t const& state,
                                           QJsonObject const& message);
};

} // namespace rr
} // namespace database

#endif // DATABASE_RR_RR_IMAGE_UPDATER_T_H
