#include "database/persistent/dbs/ps_versions_t.h"

#include "database/base/literals.h"

namespace database {
namespace persistent {
namespace dbs {

ps_versions_t::ps_versions_t(QObject* parent)
    : topicbase_t(literals::key_versions, parent)
{
}

ps_versions_t::ps_versions_t(QString const& general, QString const& server, QString const& database,
                             QString const& comunication, QObject* parent)
    : topicbase_t(literals::key_versions, parent)
    , general(general)
    , server(server)
    , database(database)
    , comunication(comunication)
{
}

ps_versions_t::ps_versions_t(ps_versions_t const& other)
    : topicbase_t(other)
{
    copyValues(&other);
}

void ps_versions_t::setGeneral(QString const& value)
{
    assign(general, value, [this] { Q_EMIT generalChanged(general); });
}

void ps_versions_t::setServer(QString const& value)
{
    assign(server, value, [this] { Q_EMIT serverChanged(server); });
}

void ps_versions_t::setDatabase(QString const& value)
{
    assign(database, value, [this] { Q_EMIT databaseChanged(database); });
}

void ps_versions_t::setComunication(QString const& value)
{
    assign(comunication, value, [this] { Q_EMIT comunicationChanged(comunication); });
}

} // namespace dbs
} // namespace persistent
} // namespace database
