#ifndef DATABASE_BASE_TOPIC_TABLE_T_H
#define DATABASE_BASE_TOPIC_TABLE_T_H

#include <QHash>
#include <QMap>
#include <QRegExp>
#include <QString>
#include <QStringList>

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
 * fraction of the trials; and the outcome for a topic seen before is taken
 * from the last time. A match stores its captures in the pattern, so a
 * table must not be used by two threads at once; its owner serialises the calls.
 */
template<class Callback>
class topic_table_t
{
public:
    void insert(QString const& pattern, Callback callback)
    {
        entries.insert(pattern, entry_t{QRegExp(pattern, Qt::CaseSensitive, QRegExp::RegExp),
                                        literalPrefix(pattern), std::move(callback)});
        known.clear();
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
        found_t found;
        for (auto it = entries.begin(); it != entries.end(); ++it) {
            if (topic.startsWith(it->prefix) && it->pattern.exactMatch(topic)) {
                found.entry = &*it;
                found.first = it->pattern.cap(1);
                found.captures = it->pattern.capturedTexts();
                break;
            }
        }
        if (known.size() >= knownLimit)
            known.clear();
        return known.insert(topic, found).value();
    }

    QMap<QString, entry_t> entries;
    QHash<QString, found_t> known;
};

} // namespace base
} // namespace database

#endif // DATABASE_BASE_TOPIC_TABLE_T_H
