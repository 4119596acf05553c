#include "database/persistent/dbs/ps_scenary_t.h"

#include "database/base/literals.h"

namespace database {
namespace persistent {
namespace dbs {

ps_scenary_t::ps_scenary_t(QObject* parent)
    : ps_map_section_t(literals::key_scenary, parent)
{
}

ps_scenary_t::ps_scenary_t(ps_scenary_map const& map, QObject* parent)
    : ps_map_section_t(literals::key_scenary, parent)
{
    objects.adopt(map);
}

ps_scenary_t::ps_scenary_t(ps_scenary_t const& other)
    : ps_map_section_t(other)
{
}

void ps_scenary_t::update_scene(QString const& id, objects::ps_object_scenary_t* object, bool _notify)
{
    // The steps of a removed scenario go at once: whoever still reads the
    // scenario before the event loop frees it finds it empty.
    if (!object && !id.isEmpty()) {
        if (objects::ps_object_scenary_t* removed = objects.get().value(id))
            removed->setObjects(ps_objects_map());
    }
    objects.replace(id, object, _notify);
}

} // namespace dbs
} // namespace persistent
} // namespace database
