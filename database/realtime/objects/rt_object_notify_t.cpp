#include "database/realtime/objects/rt_object_notify_t.h"

#include "database/realtime/rt_request.h"

namespace database {
namespace realtime {
namespace objects {

rt_object_notify_t::rt_object_notify_t(QObject* parent)
    : topicbase_t(parent)
{
}

rt_object_notify_t::rt_object_notify_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
}

rt_object_notify_t::rt_object_notify_t(QDateTime const& datetime, int params, QString const& name,
                                       QString const& verbosity, QString const& message, QStringList const& args,
                                       QObject* parent)
    : topicbase_t(parent)
    , name(name)
    , verbosity(verbosity)
    , message(message)
    , datetime(datetime.toString(Qt::ISODate))
    , params(params)
    , args(args)
{
}

rt_object_notify_t::rt_object_notify_t(rt_object_notify_t const& other)
    : topicbase_t(other)
{
    copyValues(&other);
}

void rt_object_notify_t::update_read(bool value, bool _notify)
{
    updateField("read", value, _notify);
}

void rt_object_notify_t::requestSetRead(bool value)
{
    requestField(this, QStringLiteral("read"), value);
}

} // namespace objects
} // namespace realtime
} // namespace database
