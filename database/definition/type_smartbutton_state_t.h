#ifndef DATABASE_DEFINITION_TYPE_SMARTBUTTON_STATE_T_H
#define DATABASE_DEFINITION_TYPE_SMARTBUTTON_STATE_T_H

#include <QString>

#include "database/definition/string_type_t.h"
#include "database/database_export.h"

namespace database {
namespace definition {

/**
 * State of the smart button's recording; a new one starts stopped.
 */
class DATABASE_EXPORT type_smartbutton_state_t : public string_type_t<type_smartbutton_state_t>
{
public:
    using string_type_t::string_type_t;
    /// Equals stop.
    type_smartbutton_state_t();

    static const type_smartbutton_state_t recindex;
    static const type_smartbutton_state_t stop;
};

} // namespace definition
} // namespace database

DATABASE_STRING_TYPE_DECLARE(database::definition::type_smartbutton_state_t);

#endif // DATABASE_DEFINITION_TYPE_SMARTBUTTON_STATE_T_H
