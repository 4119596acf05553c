#include "database/persistent/objects/ps_object_item_t.h"

#include "database/persistent/ps_request.h"

namespace database {
namespace persistent {
namespace objects {

namespace {

// The bool properties announce their change as text, as their signals always have.
QString boolText(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

} // namespace

ps_object_item_t::ps_object_item_t(QObject* parent)
    : topicbase_t(parent)
{
}

ps_object_item_t::ps_object_item_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
}

ps_object_item_t::ps_object_item_t(QString const& id_driver, QString const& name, QString const& description,
                                   bool enabled, QString const& status, QString const& command,
                                   QString const& feedback, QString const& type, QString const& typeformat,
                                   QString const& interpreter, bool tracking, QVariantMap const& id_element,
                                   int flags, QObject* parent)
    : topicbase_t(parent)
    , id_driver(id_driver)
    , name(name)
    , description(description)
    , enabled(enabled)
    , status(status)
    , command(command)
    , feedback(feedback)
    , type(type)
    , typeformat(typeformat)
    , interpreter(interpreter)
    , tracking(tracking)
    , flags(flags)
    , id_element(id_element)
{
}

ps_object_item_t::ps_object_item_t(ps_object_item_t const& other)
    : topicbase_t(other)
    , id_driver(other.id_driver)
    , name(other.name)
    , description(other.description)
    , enabled(other.enabled)
    , status(other.status)
    , command(other.command)
    , feedback(other.feedback)
    , type(other.type)
    , typeformat(other.typeformat)
    , interpreter(other.interpreter)
    , tracking(other.tracking)
    , flags(other.flags)
    , id_element(other.id_element)
{
}

void ps_object_item_t::setIdDriver(QString const& value)
{
    assign(id_driver, value, [this] { Q_EMIT id_driverChanged(id_driver); });
}

void ps_object_item_t::setName(QString const& value)
{
    assign(name, value, [this] { Q_EMIT nameChanged(name); });
}

void ps_object_item_t::setDescription(QString const& value)
{
    assign(description, value, [this] { Q_EMIT descriptionChanged(description); });
}

void ps_object_item_t::setEnabled(bool value)
{
    assign(enabled, value, [this] { Q_EMIT enabledChanged(boolText(enabled)); });
}

void ps_object_item_t::setStatus(QString const& value)
{
    assign(status, value, [this] { Q_EMIT statusChanged(status); });
}

void ps_object_item_t::setCommand(QString const& value)
{
    assign(command, value, [this] { Q_EMIT commandChanged(command); });
}

void ps_object_item_t::setFeedback(QString const& value)
{
    assign(feedback, value, [this] { Q_EMIT feedbackChanged(feedback); });
}

void ps_object_item_t::setType(QString const& value)
{
    assign(type, value, [this] { Q_EMIT typeChanged(type); });
}

void ps_object_item_t::setTypeFormat(QString const& value)
{
    assign(typeformat, value, [this] { Q_EMIT typeformatChanged(typeformat); });
}

void ps_object_item_t::setInterpreter(QString const& value)
{
    assign(interpreter, value, [this] { Q_EMIT interpreterChanged(interpreter); });
}

void ps_object_item_t::setTracking(bool value)
{
    assign(tracking, value, [this] { Q_EMIT trackingChanged(boolText(tracking)); });
}

void ps_object_item_t::setFlags(int value)
{
    assign(flags, value, [this] { Q_EMIT flagsChanged(flags); });
}

void ps_object_item_t::setIdElement(QVariantMap const& value)
{
    assign(id_element, value, [this] { Q_EMIT id_elementChanged(id_element); });
}

bool ps_object_item_t::getFlag(int _itemFlag) const
{
    return int(_itemFlag & flags) > 0;
}

void ps_object_item_t::update_status(QString const& value, bool _notify)
{
    setStatus(value);
    if (_notify)
        send_update();
}

void ps_object_item_t::update_command(QString const& value, bool _notify)
{
    setCommand(value);
    if (_notify)
        send_update();
}

void ps_object_item_t::update_feedback(QString const& value, bool _notify)
{
    setFeedback(value);
    if (_notify)
        send_update();
}

void ps_object_item_t::update(ps_object_item_t const* other, bool _notify)
{
    if (!other) {
        refuseNull();
        return;
    }
    setIdDriver(other->id_driver);
    setName(other->name);
    setDescription(other->description);
    setEnabled(other->enabled);
    setStatus(other->status);
    setCommand(other->command);
    setFeedback(other->feedback);
    setType(other->type);
    setTypeFormat(other->typeformat);
    setInterpreter(other->interpreter);
    setTracking(other->tracking);
    setIdElement(other->id_element);
    setFlags(other->flags);
    if (_notify)
        send_update();
}

bool ps_object_item_t::compare(ps_object_item_t const* other) const
{
    return other && id_driver == other->id_driver && name == other->name && description == other->description
        && enabled == other->enabled && status == other->status && command == other->command
        && feedback == other->feedback && type == other->type && typeformat == other->typeformat
        && interpreter == other->interpreter && tracking == other->tracking && id_element == other->id_element
        && flags == other->flags;
}

void ps_object_item_t::requestSetValue(QString const& value)
{
    requestField(this, QStringLiteral("value"), value);
}

void ps_object_item_t::send_update()
{
    publishSelf();
}

void ps_object_item_t::initRequestSignals(QObject* receiver, bool connect)
{
    connectRequestSignals(receiver, connect);
}

} // namespace objects
} // namespace persistent
} // namespace database
