#ifndef DATABASE_PERSISTENT_DBS_PS_VERSIONS_T_H
#define DATABASE_PERSISTENT_DBS_PS_VERSIONS_T_H

#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace dbs {

/// Versions of the parts of the system that wrote this database.
class DATABASE_EXPORT ps_versions_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QString general READ getGeneral WRITE setGeneral NOTIFY generalChanged)
    Q_PROPERTY(QString server READ getServer WRITE setServer NOTIFY serverChanged)
    Q_PROPERTY(QString database READ getDatabase WRITE setDatabase NOTIFY databaseChanged)
    // Spelled so in every stored database.
    Q_PROPERTY(QString comunication READ getComunication WRITE setComunication NOTIFY comunicationChanged)

public:
    Q_INVOKABLE explicit ps_versions_t(QObject* parent = nullptr);
    ps_versions_t(QString const& general, QString const& server, QString const& database,
                  QString const& comunication, QObject* parent);
    ps_versions_t(ps_versions_t const& other);

    QString getGeneral() const { return general; }
    QString getServer() const { return server; }
    QString getDatabase() const { return database; }
    QString getComunication() const { return comunication; }

    void setGeneral(QString const& value);
    void setServer(QString const& value);
    void setDatabase(QString const& value);
    void setComunication(QString const& value);

    void update(ps_versions_t const* other, bool _notify) { updateValues(other, _notify); }
    /// Same values; the topic doesn't count.
    bool compare(ps_versions_t const* other) const { return sameValues(other); }
    bool operator==(ps_versions_t const& other) const { return sameValues(&other); }

    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }

Q_SIGNALS:
    void generalChanged(QString);
    void serverChanged(QString);
    void databaseChanged(QString);
    void comunicationChanged(QString);

private:
    QString general;
    QString server;
    QString database = QStringLiteral("4.0.0");
    QString comunication;
};

} // namespace dbs
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_PS_VERSIONS_T_H
