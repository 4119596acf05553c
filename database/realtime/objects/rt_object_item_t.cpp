#include "database/realtime/objects/rt_object_item_t.h"

namespace database {
namespace realtime {
namespace objects {

rt_object_item_t::rt_object_item_t(QObject* parent)
    : topicbase_t(parent)
{
}

rt_object_item_t::rt_object_item_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
}

rt_object_item_t::rt_object_item_t(QString const& feedback, QString const& value, QObject* parent)
    : topicbase_t(parent)
    , feedback(feedback)
    , value(value)
{
}

void rt_object_item_t::setFeedback(QString const& _value)
{
    assign(feedback, _value, [this] { Q_EMIT feedbackChanged(feedback); });
}

void rt_object_item_t::setValue(QString const& _value)
{
    assign(value, _value, [this] { Q_EMIT valueChanged(value); });
}

void rt_object_item_t::update_value(QString const& _value, bool _notify)
{
    setValue(_value);
    publishSelfIf(_notify);
}

void rt_object_item_t::update_feedback(QString const& _value, bool _notify)
{
    setFeedback(_value);
    publishSelfIf(_notify);
}

} // namespace objects
} // namespace realtime
} // namespace database
