#ifndef DATABASE_BASE_TOPIC_TABLE_T_H
#define DATABASE_BASE_TOPIC_TABLE_T_H

#include <QHash>
#include <QMap>
#include <QSet>
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
 * What a topic table knows of a pattern besides its QRegExp, so that most
 * trials need no regular expression: the characters that any match can hold
 * (a topic with another one can't match), and for the forms most patterns
 * take, the match itself. Those forms are a literal, then at most one
 * captured run of word characters "(\w+)" followed by a literal that starts
 * with anything but a word character, then "$" or "/?.*$".
 */
class topic_pattern_t
{
public:
    explicit topic_pattern_t(QString const& pattern)
    {
        noteCharacters(pattern);
        readForm(pattern);
    }

    /// False when no topic of these characters can match; true when one may.
    bool mayMatch(QStringView topic) const
    {
        if (anyCharacter)
            return true;
        for (QChar const c : topic) {
            char16_t const u = c.unicode();
            if ((u < 128 ? ascii[u] : others.contains(u)) || (word && isWord(c)) || (digit && c.isDigit())
                || (space && c.isSpace()))
                continue;
            return false;
        }
        return true;
    }

    /// True when match() answers for the pattern.
    bool simple() const { return form; }

    /// For a simple pattern: whether topic matches it as a whole, with the
    /// captures QRegExp gives (the whole topic, then the run when captured).
    bool match(QString const& topic, QStringList& captures) const
    {
        // Tested only when not empty: a null topic doesn't start with an empty text.
        if (!head.isEmpty() && !topic.startsWith(head))
            return false;
        qsizetype at = head.size();
        qsizetype run = 0;
        if (captured) {
            while (at + run < topic.size() && isWord(topic.at(at + run)))
                ++run;
            if (run == 0)
                return false;
            at += run;
        }
        if (!tail.isEmpty() && !QStringView(topic).mid(at).startsWith(tail))
            return false;
        at += tail.size();
        if (!anyRest && at != topic.size())
            return false;
        captures = QStringList{topic};
        if (captured)
            captures.append(topic.mid(head.size(), run));
        return true;
    }

    /// QRegExp's word character.
    static bool isWord(QChar c) { return c.isLetterOrNumber() || c.isMark() || c == QLatin1Char('_'); }

private:
    static bool isSpecial(QChar c) { return QStringView(u".[]()*+?{}|^$\\").contains(c); }

    void addCharacter(char16_t u)
    {
        if (u < 128)
            ascii[u] = true;
        else
            others.insert(u);
    }

    /// An escaped character: a class sets its flag, an assertion adds
    /// nothing, anything else that isn't a plain character may be anything.
    void addEscape(QChar e)
    {
        if (!e.isLetterOrNumber()) {
            addCharacter(e.unicode());
            return;
        }
        switch (e.unicode()) {
        case u'w':
            word = true;
            return;
        case u'd':
            digit = true;
            return;
        case u's':
            space = true;
            return;
        case u'b':
        case u'B':
            return;
        default:
            anyCharacter = true;
        }
    }

    /// The characters every atom of the pattern may consume; lookaheads
    /// consume nothing and are skipped.
    void noteCharacters(QString const& p)
    {
        qsizetype const n = p.size();
        qsizetype i = 0;
        while (i < n && !anyCharacter) {
            QChar const c = p.at(i);
            if (c == QLatin1Char('\\')) {
                if (i + 1 >= n) {
                    anyCharacter = true;
                    return;
                }
                addEscape(p.at(i + 1));
                i += 2;
            } else if (c == QLatin1Char('[')) {
                i = noteClass(p, i + 1);
            } else if (c == QLatin1Char('.')) {
                anyCharacter = true;
            } else if (c == QLatin1Char('(')) {
                if (p.mid(i, 3) == QLatin1String("(?!") || p.mid(i, 3) == QLatin1String("(?="))
                    i = skipGroup(p, i);
                else
                    i += p.mid(i, 3) == QLatin1String("(?:") ? 3 : 1;
            } else if (c == QLatin1Char('{')) {
                qsizetype const close = p.indexOf(QLatin1Char('}'), i);
                i = close < 0 ? n : close + 1;
            } else if (QStringView(u")|?*+^$").contains(c)) {
                ++i;
            } else {
                addCharacter(c.unicode());
                ++i;
            }
        }
    }

    /// A class from just after its '['; returns the index after its ']'.
    qsizetype noteClass(QString const& p, qsizetype i)
    {
        qsizetype const n = p.size();
        if (i < n && p.at(i) == QLatin1Char('^')) {
            anyCharacter = true;
            return n;
        }
        bool first = true;
        while (i < n && (first || p.at(i) != QLatin1Char(']'))) {
            first = false;
            QChar c = p.at(i);
            if (c == QLatin1Char('\\')) {
                if (i + 1 >= n)
                    break;
                addEscape(p.at(i + 1));
                i += 2;
                continue;
            }
            if (i + 2 < n && p.at(i + 1) == QLatin1Char('-') && p.at(i + 2) != QLatin1Char(']')
                && p.at(i + 2) != QLatin1Char('\\')) {
                char16_t const from = c.unicode();
                char16_t const to = p.at(i + 2).unicode();
                if (to >= from && to - from > 1024) {
                    anyCharacter = true;
                    return n;
                }
                for (char32_t u = from; u <= to; ++u)
                    addCharacter(char16_t(u));
                i += 3;
                continue;
            }
            addCharacter(c.unicode());
            ++i;
        }
        if (i >= n)
            anyCharacter = true; // not closed: QRegExp decides
        return i + 1;
    }

    /// The index after the group that opens at i.
    static qsizetype skipGroup(QString const& p, qsizetype i)
    {
        int depth = 0;
        for (; i < p.size(); ++i) {
            QChar const c = p.at(i);
            if (c == QLatin1Char('\\')) {
                ++i;
            } else if (c == QLatin1Char('[')) {
                qsizetype const close = p.indexOf(QLatin1Char(']'), i + 2);
                if (close < 0)
                    return p.size();
                i = close;
            } else if (c == QLatin1Char('(')) {
                ++depth;
            } else if (c == QLatin1Char(')') && --depth == 0) {
                return i + 1;
            }
        }
        return p.size();
    }

    static bool isLiteral(QStringView s)
    {
        for (QChar const c : s) {
            if (isSpecial(c))
                return false;
        }
        return true;
    }

    void readForm(QString const& pattern)
    {
        QStringView p(pattern);
        if (p.startsWith(QLatin1Char('^')))
            p = p.mid(1);
        if (p.endsWith(QLatin1String("/?.*$"))) {
            anyRest = true;
            p.chop(5);
        } else if (p.endsWith(QLatin1String("/?.*"))) {
            anyRest = true;
            p.chop(4);
        } else if (p.endsWith(QLatin1Char('$'))) {
            p.chop(1);
        }
        static QString const run = QStringLiteral("(\\w+)");
        qsizetype const group = p.indexOf(run);
        QStringView const before = group < 0 ? p : p.left(group);
        QStringView const after = group < 0 ? QStringView() : p.mid(group + run.size());
        if (!isLiteral(before) || !isLiteral(after))
            return;
        // A literal after the run that starts with a word character would
        // take part of the run back: QRegExp decides those.
        if (group >= 0 && !after.isEmpty() && isWord(after.front()))
            return;
        head = before.toString();
        tail = after.toString();
        captured = group >= 0;
        form = true;
    }

    bool ascii[128] = {};
    QSet<char16_t> others;
    bool word = false;
    bool digit = false;
    bool space = false;
    bool anyCharacter = false;
    bool form = false;
    bool captured = false;
    bool anyRest = false;
    QString head;
    QString tail;
};

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
 * testing every prefix; those candidates are worked out once for all topics
 * under one stem (the text up to the last '/'), where objects' topics differ
 * only after it. The outcome for a topic seen before is taken from the
 * last time. A pattern that cannot hold every character of the topic is not
 * tried, and the common forms of pattern are matched without their QRegExp
 * (see topic_pattern_t). A match stores its captures in the pattern, so a
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
                                        literalPrefix(pattern), topic_pattern_t(pattern), std::move(callback)});
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
        topic_pattern_t shape;
        Callback callback;
    };

    /// The outcome of the trials for one topic: the winner, null for none, and its captures.
    struct found_t {
        entry_t* entry = nullptr;
        QString first;
        QStringList captures;
        bool tried = false;
    };

    /// The candidates of every topic under one stem, in rank order: those
    /// filed under the stem's beginnings and the unfiled ones, less those
    /// whose prefix or characters the stem already rules out.
    struct stem_t {
        QString text;
        std::vector<qsizetype> ranks;
    };

    /// Live values come again and again on the same topics: their outcome
    /// is kept, up to a bound that random topics can't pass.
    static constexpr qsizetype knownLimit = 1 << 16;

    found_t const& find(QString const& topic)
    {
        if (known.size() >= knownLimit)
            known.clear();
        // One lookup for a topic seen before and for a new one alike.
        found_t& found = known[topic];
        if (found.tried)
            return found;
        found.tried = true;
        QStringView const view(topic);
        qsizetype const stemSize = view.lastIndexOf(QLatin1Char('/')) + 1;
        QStringView const leaf = view.mid(stemSize);
        for (qsizetype const rank : candidatesUnder(view.left(stemSize))) {
            entry_t* const entry = ranked[size_t(rank)];
            // A prefix within the stem was tested with it.
            if ((entry->prefix.size() > stemSize && !topic.startsWith(entry->prefix))
                || !entry->shape.mayMatch(leaf))
                continue;
            if (entry->shape.simple()) {
                if (!entry->shape.match(topic, found.captures))
                    continue;
                found.entry = entry;
                found.first = found.captures.value(1);
                break;
            }
            if (entry->pattern.exactMatch(topic)) {
                found.entry = entry;
                found.first = entry->pattern.cap(1);
                found.captures = entry->pattern.capturedTexts();
                break;
            }
        }
        return found;
    }

    /// The candidates for the topics under stem (empty or ending in '/'):
    /// the same trials as going through every pattern, minus those whose
    /// prefix can't match.
    std::vector<qsizetype> const& candidatesUnder(QStringView stem)
    {
        size_t const digest = qHash(stem);
        auto const kept = stems.constFind(digest);
        if (kept != stems.constEnd() && kept->text == stem)
            return kept->ranks;
        candidates.assign(unfiled.cbegin(), unfiled.cend());
        if (!filed.isEmpty()) {
            for (qsizetype slash = stem.indexOf(QLatin1Char('/')); slash >= 0;
                 slash = stem.indexOf(QLatin1Char('/'), slash + 1)) {
                auto const found = filed.constFind(qHash(stem.left(slash + 1)));
                if (found != filed.constEnd())
                    candidates.insert(candidates.end(), found->cbegin(), found->cend());
            }
            std::sort(candidates.begin(), candidates.end());
            candidates.erase(std::unique(candidates.begin(), candidates.end()), candidates.end());
        }
        candidates.erase(std::remove_if(candidates.begin(), candidates.end(),
                                        [&](qsizetype rank) {
                                            entry_t const* entry = ranked[size_t(rank)];
                                            QStringView const prefix(entry->prefix);
                                            return (prefix.size() <= stem.size() && !stem.startsWith(prefix))
                                                || !entry->shape.mayMatch(stem);
                                        }),
                         candidates.end());
        // A digest two stems share keeps the first one's; the other's are worked out each time.
        if (kept != stems.constEnd())
            return candidates;
        if (stems.size() >= knownLimit)
            stems.clear();
        return stems.insert(digest, stem_t{stem.toString(), candidates})->ranks;
    }

    /// Ranks the entries in pattern order and files each under the digest of
    /// its prefix up to the last '/' (a digest shared by two stems only adds
    /// candidates, which the prefix test then turns away).
    void fileEntries()
    {
        ranked.clear();
        filed.clear();
        unfiled.clear();
        stems.clear();
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
    QHash<size_t, stem_t> stems;
    std::vector<qsizetype> candidates;
    QHash<QString, found_t> known;
};

} // namespace base
} // namespace database

#endif // DATABASE_BASE_TOPIC_TABLE_T_H
