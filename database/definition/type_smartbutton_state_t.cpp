#include "database/definition/type_smartbutton_state_t.h"

DATABASE_STRING_TYPE_DEFINE(database::definition::type_smartbutton_state_t);

namespace database {
namespace definition {

namespace {
// Taken from a literal rather than from stop, which a default construction in
// another file's static initialisation could see before it is built.
QString stopText()
{
    return QStringLiteral("stop");
}
} // namespace

const type_smartbutton_state_t type_smartbutton_state_t::recindex(QStringLiteral("recindex"));
const type_smartbutton_state_t type_smartbutton_state_t::stop(stopText());

type_smartbutton_state_t::type_smartbutton_state_t()
    : string_type_t(stopText())
{
}

} // namespace definition
} // namespace database
