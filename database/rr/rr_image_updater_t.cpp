#include "database/rr/rr_image_updater_t.h"

namespace database {
namespace rr {

rr_image_updater_t::rr_image_updater_t(QObject* parent)
    : rr_base_t(getNameOfService(), parent)
{
}

bool rr_image_updater_t::compare(rr_image_updater_t const* other) const
{
    return rr_base_t::compare(other);
}

QString rr_image_updater_t::getNameOfService()
{
    return QStringLiteral("image_update_service");
}

QJsonObject rr_image_updater_t::get_packet_response(definition::rr_packet_type_image_updater_t const& state,
                                                     QJsonObject const& message)
{
    return QJsonObject{{QStringLiteral("state"), state.ToString()}, {QStringLiteral("message"), message}};
}

} // namespace rr
} // namespace database
