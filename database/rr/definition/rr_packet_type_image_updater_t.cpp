#include "database/rr/definition/rr_packet_type_image_updater_t.h"

#include <iterator>

DATABASE_STRING_TYPE_DEFINE(database::rr::definition::rr_packet_type_image_updater_t);

namespace database {
namespace rr {
namespace definition {

namespace {

using state_e = rr_packet_type_image_updater_t::state_e;

// Indexed by state_e. A constant table rather than the statics, which may not
// be built yet when another file's static initialisation asks.
constexpr char const* names[] = {
    "Unknown",
    "ready_to_check",
    "download_check_version",
    "check_version",
    "error_download_version",
    "new_version_aviable",
    "download_image",
    "error_download_image",
    "check_sha",
    "correct_sha",
    "check_sig",
    "correct_sig",
    "copy_image",
    "error_sha",
    "error_installation",
    "error_sig",
    "no_new_version_aviable",
    "abort",
    "disable",
    "installation",
    "backup",
};

static_assert(std::size(names) == static_cast<std::size_t>(state_e::backup) + 1, "one name per state");

state_e stateOf(QString const& value)
{
    for (std::size_t i = 0; i < std::size(names); ++i) {
        if (value == QLatin1String(names[i]))
            return static_cast<state_e>(i);
    }
    return state_e::Unknown;
}

} // namespace

const rr_packet_type_image_updater_t rr_packet_type_image_updater_t::Unknown(state_e::Unknown);
const rr_packet_type_image_updater_t rr_packet_type_image_updater_t::ready_to_check(state_e::ready_to_check);
const rr_packet_type_image_updater_t rr_packet_type_image_updater_t::download_check_version(state_e::download_check_version);
const rr_packet_type_image_updater_t rr_packet_type_image_updater_t::check_version(state_e::check_version);
const rr_packet_type_image_updater_t rr_packet_type_image_updater_t::error_download_version(state_e::error_download_version);
const rr_packet_type_image_updater_t rr_packet_type_image_updater_t::new_version_aviable(state_e::new_version_aviable);
const rr_packet_type_image_updater_t rr_packet_type_image_updater_t::download_image(state_e::download_image);
const rr_packet_type_image_updater_t rr_packet_type_image_updater_t::error_download_image(state_e::error_download_image);
const rr_packet_type_image_updater_t rr_packet_type_image_updater_t::check_sha(state_e::check_sha);
const rr_packet_type_image_updater_t rr_packet_type_image_updater_t::correct_sha(state_e::correct_sha);
const rr_packet_type_image_updater_t rr_packet_type_image_updater_t::check_sig(state_e::check_sig);
const rr_packet_type_image_updater_t rr_packet_type_image_updater_t::correct_sig(state_e::correct_sig);
const rr_packet_type_image_updater_t rr_packet_type_image_updater_t::copy_image(state_e::copy_image);
const rr_packet_type_image_updater_t rr_packet_type_image_updater_t::error_sha(state_e::error_sha);
const rr_packet_type_image_updater_t rr_packet_type_image_updater_t::error_installation(state_e::error_installation);
const rr_packet_type_image_updater_t rr_packet_type_image_updater_t::error_sig(state_e::error_sig);
const rr_packet_type_image_updater_t rr_packet_type_image_updater_t::no_new_version_aviable(state_e::no_new_version_aviable);
const rr_packet_type_image_updater_t rr_packet_type_image_updater_t::abort(state_e::abort);
const rr_packet_type_image_updater_t rr_packet_type_image_updater_t::disable(state_e::disable);
const rr_packet_type_image_updater_t rr_packet_type_image_updater_t::installation(state_e::installation);
const rr_packet_type_image_updater_t rr_packet_type_image_updater_t::backup(state_e::backup);

rr_packet_type_image_updater_t::rr_packet_type_image_updater_t(QString const& _value)
    : string_type_t(_value)
    , state(stateOf(_value))
{
}

rr_packet_type_image_updater_t::rr_packet_type_image_updater_t(state_e _state)
    : string_type_t(QLatin1String(names[static_cast<int>(_state)]))
    , state(_state)
{
}

rr_packet_type_image_updater_t::state_e rr_packet_type_image_updater_t::ToEnum() const
{
    return state;
}

int rr_packet_type_image_updater_t::Index() const
{
    return static_cast<int>(state);
}

rr_packet_type_image_updater_t rr_packet_type_image_updater_t::GetFromString(QString const& _value)
{
    return rr_packet_type_image_updater_t(stateOf(_value));
}

} // namespace definition
} // namespace rr
} // namespace database
