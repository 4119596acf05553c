#include "database/definition/type_item_address_t.h"

DATABASE_STRING_TYPE_DEFINE(database::definition::type_item_address_t);

namespace database {
namespace definition {

const type_item_address_t type_item_address_t::command(QStringLiteral("command"), 0);
const type_item_address_t type_item_address_t::status(QStringLiteral("status"), 1);
const type_item_address_t type_item_address_t::feedback(QStringLiteral("feedback"), 2);

namespace {
type_item_address_t const* const known[] = {
    &type_item_address_t::command, &type_item_address_t::status, &type_item_address_t::feedback};
} // namespace

type_item_address_t::type_item_address_t(QString const& _value)
    : string_type_t(_value)
{
    // An address read back from a file keeps its number.
    for (type_item_address_t const* address : known) {
        if (address->value == _value)
            number = address->number;
    }
}

type_item_address_t::type_item_address_t(QString const& _value, int _number)
    : string_type_t(_value)
    , number(_number)
{
}

int type_item_address_t::ToInt() const
{
    return number;
}

type_item_address_t type_item_address_t::getByInt(int _number)
{
    switch (_number) {
    case 1:
        return status;
    case 2:
        return feedback;
    default:
        return command;
    }
}

} // namespace definition
} // namespace database
