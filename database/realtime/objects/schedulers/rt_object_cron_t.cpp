#include "database/realtime/objects/schedulers/rt_object_cron_t.h"

namespace database {
namespace realtime {
namespace objects {

rt_object_cron_t::rt_object_cron_t(QObject* parent)
    : rt_object_schedule_entry_t(QString(), QString(), 0, parent)
{
}

rt_object_cron_t::rt_object_cron_t(QString const& topic, QObject* parent)
    : rt_object_schedule_entry_t(topic, QString(), 0, parent)
{
}

rt_object_cron_t::rt_object_cron_t(QString const& executed, int counter, QObject* parent)
    : rt_object_schedule_entry_t(QString(), executed, counter, parent)
{
}

rt_object_cron_t::rt_object_cron_t(rt_object_cron_t const& other)
    : rt_object_schedule_entry_t(other)
{
}

} // namespace objects
} // namespace realtime
} // namespace database
