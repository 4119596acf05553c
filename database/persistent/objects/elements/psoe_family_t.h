#ifndef DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_FAMILY_T_H
#define DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_FAMILY_T_H

#include "database/persistent/objects/elements/ps_object_element_t.h"

namespace database {
namespace persistent {
namespace objects {

/**
 * What every concrete element class has in common: its type number and its
 * comparison. Derived is the class itself; it declares its properties and
 * signals, which moc has to see in the class, and little else.
 */
template<class Derived, int Type>
class psoe_family_t : public ps_object_element_t
{
public:
    using ps_object_element_t::ps_object_element_t;
    using ps_object_element_t::compare;

    psoe_family_t(psoe_family_t const& other)
        : ps_object_element_t(other)
    {
    }

    int getTypeIndex() const override { return Type; }

    /// The base properties without the id, then the class's own; the topic and
    /// the properties that are not stored don't count.
    bool compare(Derived const* other, bool compare_runoptions) const
    {
        return compareFamily(other, compare_runoptions);
    }

protected:
    Derived* self() { return static_cast<Derived*>(this); }
};

} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_FAMILY_T_H
