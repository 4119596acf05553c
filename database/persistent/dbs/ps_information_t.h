#ifndef DATABASE_PERSISTENT_DBS_PS_INFORMATION_T_H
#define DATABASE_PERSISTENT_DBS_PS_INFORMATION_T_H

#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace dbs {

/// Who supplies and supports the installation, as the panels show it.
class DATABASE_EXPORT ps_information_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QString image READ getImage WRITE setImage NOTIFY imageChanged)
    Q_PROPERTY(QString company READ getCompany WRITE setCompany NOTIFY companyChanged)
    Q_PROPERTY(QString address READ getAddress WRITE setAddress NOTIFY addressChanged)
    Q_PROPERTY(QString phone READ getPhone WRITE setPhone NOTIFY phoneChanged)
    Q_PROPERTY(QString email READ getEmail WRITE setEmail NOTIFY emailChanged)
    Q_PROPERTY(QString support READ getSupport WRITE setSupport NOTIFY supportChanged)
    Q_PROPERTY(QString site READ getSite WRITE setSite NOTIFY siteChanged)

public:
    Q_INVOKABLE explicit ps_information_t(QObject* parent = nullptr);
    ps_information_t(ps_information_t const& other);

    QString getImage() const { return image; }
    QString getCompany() const { return company; }
    QString getAddress() const { return address; }
    QString getPhone() const { return phone; }
    QString getEmail() const { return email; }
    QString getSupport() const { return support; }
    QString getSite() const { return site; }

    void setImage(QString const& value);
    void setCompany(QString const& value);
    void setAddress(QString const& value);
    void setPhone(QString const& value);
    void setEmail(QString const& value);
    void setSupport(QString const& value);
    void setSite(QString const& value);

    /// Asks for the whole record with these values.
    void requestSetInformation(QString const& _image, QString const& _company, QString const& _address,
                               QString const& _phone, QString const& _email, QString const& _support,
                               QString const& _site);

    void update(ps_information_t const* other, bool _notify) { updateValues(other, _notify); }
    /// Same values; the topic doesn't count.
    bool compare(ps_information_t const* other) const { return sameValues(other); }
    bool operator==(ps_information_t const& other) const { return sameValues(&other); }

    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }

Q_SIGNALS:
    void imageChanged(QString);
    void companyChanged(QString);
    void addressChanged(QString);
    void phoneChanged(QString);
    void emailChanged(QString);
    void supportChanged(QString);
    void siteChanged(QString);

private:
    QString image;
    QString company;
    QString address;
    QString phone;
    QString email;
    QString support;
    QString site;
};

} // namespace dbs
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_PS_INFORMATION_T_H
