#ifndef DATABASE_BASE_DATA_ROOT_T_H
#define DATABASE_BASE_DATA_ROOT_T_H

#include <QObject>
#include <QString>

#include <tuple>
#include <type_traits>
#include <utility>

#include "database/base/topicbase_t.h"

namespace database {
namespace base {

/**
 * What the roots of the databases share: a fixed set of sections, owned as
 * children, that are built, copied, compared, wired and replaced together.
 *
 * Derived declares its sections as pointer members and lists them, in their
 * JSON order, in a private sections() const and non-const that return
 * std::tie of them; it befriends this class. Members are only ready once the
 * base is built, so Derived's constructors call buildSections() or
 * copySections() and its destructor deleteSections().
 */
template<class Derived>
class data_root_t : public topicbase_t
{
public:
    /// True only when both roots share the very same sections: content is
    /// compared through the JSON.
    bool operator==(Derived const& other) const
    {
        bool same = true;
        const_cast<data_root_t*>(this)->forEachPair(
            other, [&](auto const& mine, auto const& theirs) { same = same && mine == theirs; });
        return same;
    }

    /// Wires the root and, through them, every section and object to the
    /// engine, in the sections' order. A null target does nothing.
    void initRequestSignals(QObject* target, bool connect)
    {
        if (!target)
            return;
        connectRequestSignals(target, connect);
        forEach([&](auto& section) { section->initRequestSignals(target, connect); });
    }

protected:
    data_root_t(QString const& topic, QObject* parent)
        : topicbase_t(topic, parent)
    {
    }

    data_root_t(data_root_t const& other)
        : topicbase_t(other)
    {
    }

    /// Each section by its default constructor, with this root as parent.
    void buildSections()
    {
        forEach([this](auto& section) { section = new std::remove_pointer_t<std::decay_t<decltype(section)>>(this); });
    }

    /// Each section a deep copy of other's, with this root as parent.
    void copySections(Derived const& other)
    {
        forEachPair(other, [this](auto& mine, auto const& theirs) {
            mine = new std::remove_pointer_t<std::decay_t<decltype(mine)>>(*theirs);
            mine->setParent(this);
        });
    }

    void deleteSections()
    {
        forEach([](auto& section) {
            delete section;
            section = nullptr;
        });
    }

    /// Puts incoming in member's place and deletes the section it replaces;
    /// null puts a default section there, since users walk the sections
    /// without checks. changed is raised with the new section when notify.
    template<class Section>
    void adoptSection(Section*& member, Section* incoming, void (Derived::*changed)(Section*), bool notify = true)
    {
        if (member == incoming)
            return;
        if (!incoming)
            incoming = new Section(this);
        delete member;
        member = incoming;
        member->setParent(this);
        if (notify)
            Q_EMIT(self()->*changed)(member);
    }

private:
    Derived* self() { return static_cast<Derived*>(this); }

    template<class F>
    void forEach(F f)
    {
        std::apply([&](auto&... section) { (f(section), ...); }, self()->sections());
    }

    /// f(mine, theirs) for each section, pairing this root's with other's.
    template<class F>
    void forEachPair(Derived const& other, F f)
    {
        pair(other, f, std::make_index_sequence<std::tuple_size_v<decltype(self()->sections())>>());
    }
    template<class F, std::size_t... I>
    void pair(Derived const& other, F& f, std::index_sequence<I...>)
    {
        auto mine = self()->sections();
        auto theirs = other.sections();
        (f(std::get<I>(mine), std::get<I>(theirs)), ...);
    }
};

} // namespace base
} // namespace database

#endif // DATABASE_BASE_DATA_ROOT_T_H
