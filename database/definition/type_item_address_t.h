#ifndef DATABASE_DEFINITION_TYPE_ITEM_ADDRESS_T_H
#define DATABASE_DEFINITION_TYPE_ITEM_ADDRESS_T_H

#include <QString>

#include "database/definition/string_type_t.h"
#include "database/database_export.h"

namespace database {
namespace definition {

/**
 * Which address of an item is meant: the one it is commanded on, its status or
 * its feedback, each with a number.
 */
class DATABASE_EXPORT type_item_address_t : public string_type_t<type_item_address_t>
{
public:
    type_item_address_t() = default;
    /// The number is that of the static with this string, 0 for an unknown one.
    type_item_address_t(QString const& value);
    type_item_address_t(QString const& value, int number);

    int ToInt() const;
    /// status for 1, feedback for 2, command for anything else.
    static type_item_address_t getByInt(int number);

    static const type_item_address_t command;
    static const type_item_address_t status;
    static const type_item_address_t feedback;

private:
    int number = 0;
};

} // namespace definition
} // namespace database

DATABASE_STRING_TYPE_DECLARE(database::definition::type_item_address_t);

#endif // DATABASE_DEFINITION_TYPE_ITEM_ADDRESS_T_H
