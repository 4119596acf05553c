#include "database/persistent/dbs/ps_storage_t.h"

#include <QJsonDocument>

#include "database/base/literals.h"
#include "database/persistent/ps_request.h"
#include "database/utility/utility.h"

namespace database {
namespace persistent {
namespace dbs {

ps_storage_t::ps_storage_t(QObject* parent)
    : topicbase_t(literals::key_storage, parent)
{
}

ps_storage_t::ps_storage_t(ps_storage_t const& other)
    : topicbase_t(other)
    , objects_list(other.objects_list)
{
}

void ps_storage_t::setObjects(QJsonObject const& value)
{
    assign(objects_list, value, [this] { Q_EMIT objects_listChanged(objects_list); });
}

void ps_storage_t::requestSetObjectList(QString const& key, QJsonObject const& object)
{
    requestAt(this, topic + QLatin1Char('/') + listKey + QLatin1Char('/') + key, object);
}

void ps_storage_t::update(QString const& path, QJsonValue const& value, bool _notify)
{
    // The path is relative to the section, so the tree is edited as the section's JSON.
    QJsonDocument document(QJsonObject{{listKey, objects_list}});
    QString operation;
    utility::updateJsonValue(document, path, value, operation);
    setObjects(document.object().value(listKey).toObject());
    if (_notify)
        send_update();
}

} // namespace dbs
} // namespace persistent
} // namespace database
