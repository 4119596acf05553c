#ifndef DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_ELEMENT_TYPE_T_H
#define DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_ELEMENT_TYPE_T_H

#include "database/persistent/objects/elements/psoe_family_t.h"
#include "database/persistent/ps_request.h"

namespace database {
namespace persistent {
namespace objects {

/**
 * The element classes whose only own property is element_type, the kind of
 * thing they switch or move (a light, a door, a window...), which the panels
 * use to choose icons. Derived declares the property and element_typeChanged.
 */
template <class Derived, int Type> class psoe_element_type_t : public psoe_family_t<Derived, Type> {
public:
    using psoe_family_t<Derived, Type>::psoe_family_t;

    int getElement_type() const { return element_type; }
    void setElement_type(int value)
    {
        this->assign(element_type, value, [this] { Q_EMIT this->self()->element_typeChanged(element_type); });
    }

    void requestSetElement_type(int value) { requestField(this, QStringLiteral("element_type"), value); }

private:
    int element_type = 0;
};

} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_ELEMENT_TYPE_T_H
