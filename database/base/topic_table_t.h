#ifndef DATABASE_BASE_TOPIC_TABLE_T_H
#define DATABASE_BASE_TOPIC_TABLE_T_H

#include <QHash>
#include <QMap>
#include <QRegExp>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <algorithm>
#include <vector>

namespace database {
namespace base {

/**
 * The text every match of pattern starts with: its leading literal
 * characters, up to the first one that is special or repeated. Empty when
 * the pattern has an alternative at its top level, which may start otherwise.
 */
inline QString literalPrefix(QString const& pattern)
{
    static QString const special = QStringLiteral(".[]()*+?{}|^$\\");
    static QString const quantifiers = QStringLiteral("*+?{");
    qsizetype depth = 0;
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        QChar const c = pattern.at(i);
        if (c == QLatin1Char('\\')) {
            ++i;
        } else if (c == QLatin1Char('[')) {
            // A class may hold ']' first and '|' anywhere; neither counts there.
            i += pattern.at(qMin(i + 1, pattern.size() - 1)) == QLatin1Char('^') ? 2 : 1;
            if (i < pattern.size() && pattern.at(i) == QLatin1Char(']'))
                ++i;
            while (i < pattern.size() && pattern.at(i) != QLatin1Char(']')) {
                if (pattern.at(i) == QLatin1Char('\\'))
                    ++i;
                ++i;
            }
        } else if (c == QLatin1Char('(')) {
            ++depth;
        } else if (c == QLatin1Char(')')) {
            --depth;
        } else if (c == QLatin1Char('|') && depth <= 0) {
            return QString();
        }
    }
    QString prefix;
    qsizetype i = pattern.startsWith(QLatin1Char('^')) ? 1 : 0;
    while (i < pattern.size()) {
        QChar literal = pattern.at(i);
        qsizetype next = i + 1;
        if (literal == QLatin1Char('\\')) {
            // An escaped letter or digit is a class or a code, not itself.
            if (next >= pattern.size() || pattern.at(next).isLetterOrNumber())
                break;
            literal = pattern.at(next);
            ++next;
        } else if (special.contains(literal)) {
            break;
        }
        if (next < pattern.size() && quantifiers.contains(pattern.at(next)))
            break;
        prefix.append(literal);
        i = next;
    }
    return prefix;
}

/**
 * A table of topic patterns, tried in ascending order of the pattern text;
 * the first pattern that matches the whole topic wins.
 *
 * Used by the topic routers. Each pattern is compiled once, when it is
 * inserted: QRegExp's own cache of compiled patterns is far smaller than a
 * router's table. A pattern is only tried on a topic that starts with its
 * literal prefix, which every match does: the same pattern wins, at a
 * fraction of the trials. The patterns are filed by their prefix up to its
 * last '/', so a topic only looks at those filed under one of its own
 * beginnings that end in '/' (and those whose prefix has no '/'), instead of
 * testing every prefix. The outcome for a topic seen before is taken from the
 * last time. A match stores its captures in the pattern, so a
 * table must not be used by two threads at once; its owner serialises the calls.
 */
template<class Callback>
class topic_table_t
{
public:
    topic_table_t() = default;
    // The filing and the outcomes point into this table's own entries.
    topic_table_t(topic_table_t const&) = delete;
    topic_table_t& operator=(topic_table_t const&) = delete;

    void insert(QString const& pattern, Callback callback)
    {
        entries.insert(pattern, entry_t{QRegExp(pattern, Qt::CaseSensitive, QRegExp::RegExp),
                                        literalPrefix(pattern), std::move(callback)});
        known.clear();
        fileEntries();
    }

    /// The callback of the first pattern that matches topic, or null.
    /// When capture is given it receives the pattern's first capture.
    Callback const* match(QString const& topic, QString* capture = nullptr)
    {
        found_t const& found = find(topic);
        if (!found.entry)
            return nullptr;
        if (capture)
            *capture = found.first;
        return &found.entry->callback;
    }

    /// The same, with every capture of the match, index 0 being the whole topic.
    Callback const* match(QString const& topic, QStringList& captures)
    {
        found_t const& found = find(topic);
        if (!found.entry)
            return nullptr;
        captures = found.captures;
        return &found.entry->callback;
    }

    QStringList patterns() const { return entries.keys(); }
    qsizetype size() const { return entries.size(); }
    void clear()
    {
        entries.clear();
        known.clear();
        fileEntries();
    }

private:
    struct entry_t {
        QRegExp pattern;
        QString prefix;
        Callback callback;
    };

    /// The outcome of the trials for one topic: the winner, null for none, and its captures.
    struct found_t {
        entry_t* entry = nullptr;
        QString first;
        QStringList captures;
    };

    /// Live values come again and again on the same topics: their outcome
    /// is kept, up to a bound that random topics can't pass.
    static constexpr qsizetype knownLimit = 1 << 16;

    found_t const& find(QString const& topic)
    {
        auto const seen = known.constFind(topic);
        if (seen != known.constEnd())
            return seen.value();
        // The candidates, by their rank in pattern order: the same trials as
        // going through every pattern, minus those whose prefix can't match.
        candidates.assign(unfiled.cbegin(), unfiled.cend());
        if (!filed.isEmpty()) {
            QStringView const view(topic);
            for (qsizetype slash = view.indexOf(QLatin1Char('/')); slash >= 0;
                 slash = view.indexOf(QLatin1Char('/'), slash + 1)) {
                auto const stem = filed.constFind(qHash(view.left(slash + 1)));
                if (stem != filed.constEnd())
                    candidates.insert(candidates.end(), stem->cbegin(), stem->cend());
            }
            std::sort(candidates.begin(), candidates.end());
            candidates.erase(std::unique(candidates.begin(), candidates.end()), candidates.end());
        }
        found_t found;
        for (qsizetype const rank : candidates) {
            entry_t* const entry = ranked[size_t(rank)];
            if (topic.startsWith(entry->prefix) && entry->pattern.exactMatch(topic)) {
                found.entry = entry;
                found.first = entry->pattern.cap(1);
                found.captures = entry->pattern.capturedTexts();
                break;
            }
        }
        if (known.size() >= knownLimit)
            known.clear();
        return known.insert(topic, found).value();
    }

    /// Ranks the entries in pattern order and files each under the digest of
    /// its prefix up to the last '/' (a digest shared by two stems only adds
    /// candidates, which the prefix test then turns away).
    void fileEntries()
    {
        ranked.clear();
        filed.clear();
        unfiled.clear();
        for (auto it = entries.begin(); it != entries.end(); ++it) {
            qsizetype const rank = qsizetype(ranked.size());
            ranked.push_back(&*it);
            qsizetype const slash = it->prefix.lastIndexOf(QLatin1Char('/'));
            if (slash < 0)
                unfiled.append(rank);
            else
                filed[qHash(QStringView(it->prefix).left(slash + 1))].append(rank);
        }
    }

    QMap<QString, entry_t> entries;
    std::vector<entry_t*> ranked;
    QHash<size_t, QList<qsizetype>> filed;
    QList<qsizetype> unfiled;
    std::vector<qsizetype> candidates;
    QHash<QString, found_t> known;
};

} // namespace base
} // namespace database

#endif // DATABASE_BASE_TOPIC_TABLE_T_H
