#ifndef DATABASE_PRESENCESIMULATION_PSI_NODE_MAP_T_H
#define DATABASE_PRESENCESIMULATION_PSI_NODE_MAP_T_H

#include <QMap>
#include <QString>

#include "database/base/topicbase_t.h"

namespace database {
namespace presencesimulation {

/**
 * The children of one node of the week (the days of the week, the hours of a
 * day, the minutes of an hour), by their number as decimal text. The week,
 * the day and the hour each hold one and forward their named operations here.
 *
 * Child has a deep copy constructor, retopic(QString) and either clean()
 * (what remains of it after cleaning) or getActions(). The node owns its
 * children as their QObject parent.
 */
template<class Child>
class psi_node_map_t
{
public:
    using map_t = QMap<QString, Child*>;
    using validator_t = bool (*)(int);

    psi_node_map_t(base::topicbase_t* owner, QString listKey, validator_t valid)
        : owner(owner)
        , listKey(std::move(listKey))
        , valid(valid)
    {
    }

    psi_node_map_t(psi_node_map_t const&) = delete;
    psi_node_map_t& operator=(psi_node_map_t const&) = delete;

    map_t const& get() const { return children; }
    Child* get(int number) const { return children.value(QString::number(number)); }

    /// Deep copy of other's children into this still empty map.
    void copyFrom(psi_node_map_t const& other)
    {
        for (auto it = other.children.begin(); it != other.children.end(); ++it) {
            if (it.value())
                take(it.key(), new Child(*it.value()));
        }
    }

    /// Takes the children as they are (the serializer hands them over this way);
    /// the old ones that are not among them are deleted.
    void adopt(map_t const& map)
    {
        for (Child* old : std::as_const(children)) {
            if (!map.values().contains(old))
                delete old;
        }
        children.clear();
        for (auto it = map.begin(); it != map.end(); ++it) {
            if (it.value())
                take(it.key(), it.value());
        }
    }

    /// 0 for a number the node refuses, else 1: child takes the place of
    /// whatever the number held.
    int add(int number, Child* child)
    {
        if (!valid(number) || !child)
            return 0;
        QString const key = QString::number(number);
        if (children.value(key) != child)
            remove(number);
        take(key, child);
        return 1;
    }

    int remove(int number)
    {
        Child* child = children.take(QString::number(number));
        if (!child)
            return 0;
        delete child;
        return 1;
    }

    /// Drops the children that are empty once cleaned themselves; what remains.
    int clean()
    {
        for (auto it = children.begin(); it != children.end();) {
            if (remaining(it.value()) == 0) {
                delete it.value();
                it = children.erase(it);
            } else {
                ++it;
            }
        }
        return int(children.size());
    }

    /// Gives every child its topic below the owner's.
    void retopic()
    {
        for (auto it = children.begin(); it != children.end(); ++it)
            it.value()->retopic(childTopic(it.key()));
    }

    /// Same numbers, and children equal by their own operator==.
    bool operator==(psi_node_map_t const& other) const
    {
        if (children.keys() != other.children.keys())
            return false;
        for (auto it = children.begin(); it != children.end(); ++it) {
            if (!(*it.value() == *other.children.value(it.key())))
                return false;
        }
        return true;
    }

private:
    void take(QString const& key, Child* child)
    {
        child->setParent(owner);
        child->retopic(childTopic(key));
        children.insert(key, child);
    }

    QString childTopic(QString const& key) const
    {
        return owner->getTopic() + QLatin1Char('/') + listKey + QLatin1Char('/') + key;
    }

    template<class Node>
    static auto remaining(Node* child) -> decltype(child->clean())
    {
        return child->clean();
    }
    template<class Node>
    static auto remaining(Node* child) -> decltype(int(child->getActions().size()))
    {
        return int(child->getActions().size());
    }

    base::topicbase_t* owner;
    QString listKey;
    validator_t valid;
    map_t children;
};

} // namespace presencesimulation
} // namespace database

#endif // DATABASE_PRESENCESIMULATION_PSI_NODE_MAP_T_H
