#ifndef DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PS_OBJECT_PRESET_T_H
#define DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PS_OBJECT_PRESET_T_H

#include <QMap>
#include <QObject>
#include <QString>
#include <QVariantMap>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/// A stored setting of a colour element: the value of each of its functions, and its place in the list.
class DATABASE_EXPORT ps_object_preset_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QVariantMap function_map READ getFunction_map WRITE setFunction_map NOTIFY function_mapChanged)
    Q_PROPERTY(int order READ getOrder WRITE setOrder NOTIFY orderChanged)

public:
    Q_INVOKABLE explicit ps_object_preset_t(QObject* parent = nullptr);
    ps_object_preset_t(QString const& topic, QObject* parent);
    ps_object_preset_t(QVariantMap const& function_map, int order, QObject* parent);
    ps_object_preset_t(ps_object_preset_t const& other);

    QVariantMap getFunction_map() const { return function_map; }
    int getOrder() const { return order; }
    void setFunction_map(QVariantMap const& value);
    void setOrder(int value);

    /// Same function map and order; the topic doesn't count.
    bool compare(ps_object_preset_t const* other) const;
    /// Takes the content of preset, which its element holds under key; the topic stays.
    void update_preset(QString const& key, ps_object_preset_t const* preset);
    void update_order(int value);

Q_SIGNALS:
    void function_mapChanged(QVariantMap);
    void orderChanged(int);

private:
    QVariantMap function_map;
    int order = 0;
};

} // namespace objects

typedef QMap<QString, objects::ps_object_preset_t*> ps_preset_map;

} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PS_OBJECT_PRESET_T_H
