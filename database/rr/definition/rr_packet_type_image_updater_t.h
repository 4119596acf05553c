#ifndef DATABASE_RR_DEFINITION_RR_PACKET_TYPE_IMAGE_UPDATER_T_H
#define DATABASE_RR_DEFINITION_RR_PACKET_TYPE_IMAGE_UPDATER_T_H

#include <QString>

#include "database/definition/string_type_t.h"
#include "database/database_export.h"

namespace database {
namespace rr {
namespace definition {

/**
 * The states that the image update service reports. Only the names live here:
 * which state follows which is the service's business.
 */
class DATABASE_EXPORT rr_packet_type_image_updater_t
    : public ::database::definition::string_type_t<rr_packet_type_image_updater_t>
{
public:
    /// In the order of the statics; the underlying number is Index().
    enum class state_e {
        Unknown,
        ready_to_check,
        download_check_version,
        check_version,
        error_download_version,
        new_version_aviable,
        download_image,
        error_download_image,
        check_sha,
        correct_sha,
        check_sig,
        correct_sig,
        copy_image,
        error_sha,
        error_installation,
        error_sig,
        no_new_version_aviable,
        abort,
        disable,
        installation,
        backup,
    };

    rr_packet_type_image_updater_t() = default;
    /// Keeps any string; one that names no state counts as Unknown for Index and ToEnum.
    rr_packet_type_image_updater_t(QString const& value);
    explicit rr_packet_type_image_updater_t(state_e state);

    state_e ToEnum() const;
    int Index() const;
    /// The static with this string, Unknown for any other.
    static rr_packet_type_image_updater_t GetFromString(QString const& value);

    static const rr_packet_type_image_updater_t Unknown;
    static const rr_packet_type_image_updater_t ready_to_check;
    static const rr_packet_type_image_updater_t download_check_version;
    static const rr_packet_type_image_updater_t check_version;
    static const rr_packet_type_image_updater_t error_download_version;
    static const rr_packet_type_image_updater_t new_version_aviable;
    static const rr_packet_type_image_updater_t download_image;
    static const rr_packet_type_image_updater_t error_download_image;
    static const rr_packet_type_image_updater_t check_sha;
    static const rr_packet_type_image_updater_t correct_sha;
    static const rr_packet_type_image_updater_t check_sig;
    static const rr_packet_type_image_updater_t correct_sig;
    static const rr_packet_type_image_updater_t copy_image;
    static const rr_packet_type_image_updater_t error_sha;
    static const rr_packet_type_image_updater_t error_installation;
    static const rr_packet_type_image_updater_t error_sig;
    static const rr_packet_type_image_updater_t no_new_version_aviable;
    static const rr_packet_type_image_updater_t abort;
    static const rr_packet_type_image_updater_t disable;
    static const rr_packet_type_image_updater_t installation;
    static const rr_packet_type_image_updater_t backup;

private:
    state_e state = state_e::Unknown;
};

} // namespace definition
} // namespace rr
} // namespace database

DATABASE_STRING_TYPE_DECLARE(database::rr::definition::rr_packet_type_image_updater_t);

#endif // DATABASE_RR_DEFINITION_RR_PACKET_TYPE_IMAGE_UPDATER_T_H
