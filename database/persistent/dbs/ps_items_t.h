#ifndef DATABASE_PERSISTENT_DBS_PS_ITEMS_T_H
#define DATABASE_PERSISTENT_DBS_PS_ITEMS_T_H

#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"
#include "database/persistent/dbs/ps_object_map_t.h"
#include "database/persistent/objects/ps_object_item_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace dbs {

/// The section of the items: the data points of the installation by id.
class DATABASE_EXPORT ps_items_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(ps_items_map objects_list READ getObjects WRITE setObjects NOTIFY objects_listChanged)
    Q_PROPERTY(bool enabled READ getEnabled WRITE setEnabled NOTIFY enabledChanged)

public:
    Q_INVOKABLE explicit ps_items_t(QObject* parent = nullptr);
    /// Takes the map's pointers as they are.
    ps_items_t(ps_items_map const& objects, QObject* parent);
    /// Deep: every item copied, no parent, no receiver.
    ps_items_t(ps_items_t const& other);

    ps_items_map getObjects() const { return objects.get(); }
    void setObjects(ps_items_map const& map);
    bool getEnabled() const { return enabled; }
    void setEnabled(bool value);

    /// Never null; see ps_object_map_t::list.
    objects::ps_object_item_t* list(QString const& id) { return objects.list(id); }

    void requestSetItem(QString const& id, objects::ps_object_item_t* object) { objects.requestSet(id, object); }
    void requestSetItems(ps_items_map const& map) { objects.requestSetAll(map); }

    void update_items(QString const& id, objects::ps_object_item_t* object, bool _notify)
    {
        objects.update(id, object, _notify);
    }
    /// The same, for an object that came as json: where the item ends up
    /// with exactly that JSON, it is published and imaged without being
    /// serialized again.
    void update_items(QString const& id, objects::ps_object_item_t* object, bool _notify, QJsonObject const& json)
    {
        objects.offerJson(json);
        objects.update(id, object, _notify);
        objects.withdrawJson();
    }
    void update_items(ps_items_map const& map, bool _notify);

    void send_update() { objects.sendUpdate(); }
    void send_update_item(QString const& id) { objects.sendUpdateObject(id); }

    void initRequestSignals(QObject* receiver, bool connect) { objects.initRequestSignals(receiver, connect); }

    /// Same object pointers and the same enabled: a deep comparison goes through compare().
    bool operator==(ps_items_t const& other) const;

    /// Items are flat records whose values all pass through assign(): the image keeps them by item.
    base::json_cached_map_t* jsonCache(QString const& property) override
    {
        return property == objects.key() ? &objects : nullptr;
    }

Q_SIGNALS:
    void objects_listChanged(ps_items_map);
    void updatedChanged(QString);
    void enabledChanged(bool);

private:
    ps_object_map_t<objects::ps_object_item_t> objects{this, QStringLiteral("objects_list")};
    bool enabled = true;
};

} // namespace dbs
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_PS_ITEMS_T_H
