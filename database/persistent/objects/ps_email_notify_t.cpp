#include "database/persistent/objects/ps_email_notify_t.h"

namespace database {
namespace persistent {
namespace objects {

namespace {

// QRegExp syntax on purpose: there a hyphen after \w in a set is a plain
// character, which is what the expression means.
QRegExp addressPattern()
{
    return QRegExp(QStringLiteral(R"(^[\w-\.]+@([\w-]+\.)+[\w-]{2,4}$)"), Qt::CaseSensitive, QRegExp::RegExp);
}

} // namespace

ps_email_notify_t::ps_email_notify_t(QObject* parent)
    : topicbase_t(parent)
    , validity(addressPattern())
{
}

ps_email_notify_t::ps_email_notify_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
    , validity(addressPattern())
{
}

ps_email_notify_t::ps_email_notify_t(QString const& description, QString const& address, bool def, bool system,
                                     QObject* parent)
    : topicbase_t(parent)
    , description(description)
    , address(address)
    , def(def)
    , system(system)
    , validity(addressPattern())
{
}

ps_email_notify_t::ps_email_notify_t(ps_email_notify_t const& other)
    : topicbase_t(other)
    , validity(addressPattern())
{
    copyValues(&other);
}

ps_email_notify_t& ps_email_notify_t::operator=(ps_email_notify_t const& other)
{
    copyValues(&other);
    return *this;
}

void ps_email_notify_t::setDescription(QString const& value)
{
    assign(description, value, [this] { Q_EMIT descriptionChanged(description); });
}

void ps_email_notify_t::setAddress(QString const& value)
{
    assign(address, value, [this] { Q_EMIT addressChanged(address); });
}

void ps_email_notify_t::setDef(bool value)
{
    assign(def, value, [this] { Q_EMIT defChanged(def); });
}

void ps_email_notify_t::setSystem(bool value)
{
    assign(system, value, [this] { Q_EMIT systemChanged(system); });
}

bool ps_email_notify_t::isValidAddress() const
{
    return validity.exactMatch(address);
}

} // namespace objects
} // namespace persistent
} // namespace database
