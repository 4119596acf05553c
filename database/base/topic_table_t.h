#ifndef DATABASE_BASE_TOPIC_TABLE_T_H
#define DATABASE_BASE_TOPIC_TABLE_T_H

#include <QMap>
#include <QRegExp>
#include <QString>
#include <QStringList>

namespace database {
namespace base {

/**
 * A table of topic patterns, tried in ascending order of the pattern text;
 * the first pattern that matches the whole topic wins.
 *
 * Used by the topic routers. Each pattern is compiled once, when it is
 * inserted: QRegExp's own cache of compiled patterns is far smaller than a
 * router's table. A match stores its captures in the pattern, so a table must
 * not be used by two threads at once; its owner serialises the calls.
 */
template<class Callback>
class topic_table_t
{
public:
    void insert(QString const& pattern, Callback callback)
    {
        entries.insert(pattern, entry_t{QRegExp(pattern, Qt::CaseSensitive, QRegExp::RegExp),
                                        std::move(callback)});
    }

    /// The callback of the first pattern that matches topic, or null.
    /// When capture is given it receives the pattern's first capture.
    Callback const* match(QString const& topic, QString* capture = nullptr)
    {
        entry_t* entry = find(topic);
        if (!entry)
            return nullptr;
        if (capture)
            *capture = entry->pattern.cap(1);
        return &entry->callback;
    }

    /// The same, with every capture of the match, index 0 being the whole topic.
    Callback const* match(QString const& topic, QStringList& captures)
    {
        entry_t* entry = find(topic);
        if (!entry)
            return nullptr;
        captures = entry->pattern.capturedTexts();
        return &entry->callback;
    }

    QStringList patterns() const { return entries.keys(); }
    qsizetype size() const { return entries.size(); }
    void clear() { entries.clear(); }

private:
    struct entry_t {
        QRegExp pattern;
        Callback callback;
    };

    entry_t* find(QString const& topic)
    {
        for (auto it = entries.begin(); it != entries.end(); ++it) {
            if (it->pattern.exactMatch(topic))
                return &*it;
        }
        return nullptr;
    }
    QMap<QString, entry_t> entries;
};

} // namespace base
} // namespace database

#endif // DATABASE_BASE_TOPIC_TABLE_T_H
