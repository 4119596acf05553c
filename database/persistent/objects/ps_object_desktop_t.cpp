#include "database/persistent/objects/ps_object_desktop_t.h"

#include "database/persistent/ps_request.h"

namespace database {
namespace persistent {
namespace objects {

ps_object_desktop_t::ps_object_desktop_t(QObject* parent)
    : topicbase_t(parent)
{
}

ps_object_desktop_t::ps_object_desktop_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
}

ps_object_desktop_t::ps_object_desktop_t(QString const& id, QString const& name, QString const& type, bool enabled,
                                         QObject* parent)
    : topicbase_t(parent)
    , id(id)
    , name(name)
    , type(type)
    , enabled(enabled)
{
}

ps_object_desktop_t::ps_object_desktop_t(ps_object_desktop_t const& other)
    : topicbase_t(other)
{
    copyValues(&other);
}

void ps_object_desktop_t::setId(QString const& value)
{
    assign(id, value, [this] { Q_EMIT idChanged(id); });
}

void ps_object_desktop_t::setName(QString const& value)
{
    assign(name, value, [this] { Q_EMIT nameChanged(name); });
}

void ps_object_desktop_t::setType(QString const& value)
{
    assign(type, value, [this] { Q_EMIT typeChanged(type); });
}

void ps_object_desktop_t::setEnabled(bool value)
{
    assign(enabled, value, [this] { Q_EMIT enabledChanged(enabled); });
}

void ps_object_desktop_t::requestSetName(QString const& value)
{
    requestField(this, QStringLiteral("name"), value);
}

void ps_object_desktop_t::requestSetId(QString const& value)
{
    requestAt(this, topic, value);
}

void ps_object_desktop_t::requestSetEnabled(bool value)
{
    requestField(this, QStringLiteral("enabled"), value);
}

void ps_object_desktop_t::requestSetType(QString const& value)
{
    requestField(this, QStringLiteral("type"), value);
}

bool ps_object_desktop_t::operator==(ps_object_desktop_t const& other) const
{
    return sameValues(&other);
}

} // namespace objects
} // namespace persistent
} // namespace database
