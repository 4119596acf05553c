#include "database/persistent/dbs/ps_information_t.h"

#include "database/base/literals.h"
#include "database/persistent/ps_request.h"

namespace database {
namespace persistent {
namespace dbs {

ps_information_t::ps_information_t(QObject* parent)
    : topicbase_t(literals::key_information, parent)
{
}

ps_information_t::ps_information_t(ps_information_t const& other)
    : topicbase_t(other)
{
    copyValues(&other);
}

void ps_information_t::setImage(QString const& value)
{
    assign(image, value, [this] { Q_EMIT imageChanged(image); });
}

void ps_information_t::setCompany(QString const& value)
{
    assign(company, value, [this] { Q_EMIT companyChanged(company); });
}

void ps_information_t::setAddress(QString const& value)
{
    assign(address, value, [this] { Q_EMIT addressChanged(address); });
}

void ps_information_t::setPhone(QString const& value)
{
    assign(phone, value, [this] { Q_EMIT phoneChanged(phone); });
}

void ps_information_t::setEmail(QString const& value)
{
    assign(email, value, [this] { Q_EMIT emailChanged(email); });
}

void ps_information_t::setSupport(QString const& value)
{
    assign(support, value, [this] { Q_EMIT supportChanged(support); });
}

void ps_information_t::setSite(QString const& value)
{
    assign(site, value, [this] { Q_EMIT siteChanged(site); });
}

void ps_information_t::requestSetInformation(QString const& _image, QString const& _company,
                                             QString const& _address, QString const& _phone,
                                             QString const& _email, QString const& _support, QString const& _site)
{
    ps_information_t copy(*this);
    copy.setImage(_image);
    copy.setCompany(_company);
    copy.setAddress(_address);
    copy.setPhone(_phone);
    copy.setEmail(_email);
    copy.setSupport(_support);
    copy.setSite(_site);
    requestAt(this, topic, copy.toJson());
}

} // namespace dbs
} // namespace persistent
} // namespace database
