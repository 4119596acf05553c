#include "database/realtime/dbs/rt_storage_t.h"

#include "database/base/literals.h"

namespace database {
namespace realtime {
namespace dbs {

rt_storage_t::rt_storage_t(QObject* parent)
    : topicbase_t(literals::key_storage, parent)
{
}

rt_storage_t::rt_storage_t(rt_storage_t const* other)
    : topicbase_t(literals::key_storage, nullptr)
{
    if (other) {
        topic = other->topic;
        copyValues(other);
    }
}

rt_storage_t::rt_storage_t(rt_storage_t const& other)
    : rt_storage_t(&other)
{
}

void rt_storage_t::update(rt_storage_t const* other, bool _notify)
{
    if (!other) {
        refuseNull();
        return;
    }
    updateField("objects_list", other->objects_list, _notify);
}

} // namespace dbs
} // namespace realtime
} // namespace database
