#include "host_json_t.h"

#include <QCborValue>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>

#include <charconv>
#ifdef __SSE2__
#include <emmintrin.h>
#endif
#include <utility>

namespace {

/// Qt's own writer, for what the short path below does not write itself.
QByteArray documentText(QJsonValue const& value)
{
    if (value.isObject())
        return QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact);
    if (value.isArray())
        return QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact);
    // A document holds no bare value: write it in an array and drop the brackets.
    QByteArray const text = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return text.mid(1, text.size() - 2);
}

/// Whether u stands for itself between the quotes of a JSON string:
/// printable ASCII but quote and backslash.
constexpr bool plainChar(char16_t u)
{
    return u >= 0x20 && u < 0x7f && u != u'"' && u != u'\\';
}

/// Appends s as it stands when every character stands for itself in JSON
/// (printable ASCII but quote and backslash); false, with out unchanged, otherwise.
/// Every text the host writes passes here: it checks and narrows eight
/// characters at a time, in one pass.
bool appendPlainChars(QByteArray& out, QStringView s)
{
    qsizetype const at = out.size();
    out.resize(at + s.size());
    char* cursor = out.data() + at;
    char16_t const* in = s.utf16();
    char16_t const* const end = in + s.size();
#ifdef __SSE2__
    // Signed 16-bit compares: characters from 0x8000 up read as negative,
    // below 0x20, and fail with the control characters.
    __m128i const below = _mm_set1_epi16(0x20);
    __m128i const above = _mm_set1_epi16(0x7e);
    __m128i const quote = _mm_set1_epi16('"');
    __m128i const backslash = _mm_set1_epi16('\\');
    for (; end - in >= 8; in += 8, cursor += 8) {
        __m128i const chars = _mm_loadu_si128(reinterpret_cast<__m128i const*>(in));
        __m128i const bad = _mm_or_si128(_mm_or_si128(_mm_cmplt_epi16(chars, below), _mm_cmpgt_epi16(chars, above)),
                                         _mm_or_si128(_mm_cmpeq_epi16(chars, quote), _mm_cmpeq_epi16(chars, backslash)));
        if (_mm_movemask_epi8(bad) != 0) {
            out.truncate(at);
            return false;
        }
        _mm_storel_epi64(reinterpret_cast<__m128i*>(cursor), _mm_packus_epi16(chars, chars));
    }
#endif
    for (; in != end; ++in, ++cursor) {
        if (!plainChar(*in)) {
            out.truncate(at);
            return false;
        }
        *cursor = char(*in);
    }
    return true;
}

/// Reads one value of compact text as isCompactText() takes it, moving at
/// past it; false for anything else.
class compact_reader_t
{
public:
    explicit compact_reader_t(QByteArrayView _text)
        : text(_text)
    {
    }

    bool whole() { return value(0) && at == text.size(); }

private:
    static constexpr int maxDepth = 64;
    static constexpr int maxDigits = 15;

    bool take(char c)
    {
        if (at >= text.size() || text[at] != c)
            return false;
        ++at;
        return true;
    }

    bool word(QByteArrayView w)
    {
        if (text.sliced(at).startsWith(w)) {
            at += w.size();
            return true;
        }
        return false;
    }

    /// A string of printable ASCII, with quote and backslash escaped as
    /// Qt's writer escapes them; its bytes between the quotes in out.
    bool string(QByteArrayView& out)
    {
        if (!take('"'))
            return false;
        qsizetype const start = at;
        while (at < text.size()) {
            char const c = text[at];
            if (c == '"') {
                out = text.sliced(start, at - start);
                ++at;
                return true;
            }
            if (c == '\\') {
                if (at + 1 >= text.size() || (text[at + 1] != '"' && text[at + 1] != '\\'))
                    return false;
                at += 2;
                continue;
            }
            if (c < 0x20 || c > 0x7e)
                return false;
            ++at;
        }
        return false;
    }

    /// An integer as Qt writes it, short enough that a double of the same
    /// value is written the same.
    bool number()
    {
        qsizetype const start = at;
        take('-');
        qsizetype const digits = at;
        while (at < text.size() && text[at] >= '0' && text[at] <= '9')
            ++at;
        qsizetype const count = at - digits;
        if (count == 0 || count > maxDigits || (count > 1 && text[digits] == '0'))
            return false;
        // "-0" is read as 0 and written so.
        if (digits > start && count == 1 && text[digits] == '0')
            return false;
        return at == text.size() || (text[at] != '.' && text[at] != 'e' && text[at] != 'E');
    }

    bool value(int depth)
    {
        if (at >= text.size() || depth > maxDepth)
            return false;
        switch (text[at]) {
        case '{': {
            ++at;
            if (take('}'))
                return true;
            QByteArrayView previous;
            for (bool first = true;; first = false) {
                QByteArrayView key;
                // Keys strictly in order, the order Qt keeps them in, no key
                // twice; an escape would order the text otherwise than the key.
                if (!string(key) || key.contains('\\') || (!first && !(previous < key)) || !take(':')
                    || !value(depth + 1))
                    return false;
                previous = key;
                if (take('}'))
                    return true;
                if (!take(','))
                    return false;
            }
        }
        case '[': {
            ++at;
            if (take(']'))
                return true;
            for (;;) {
                if (!value(depth + 1))
                    return false;
                if (take(']'))
                    return true;
                if (!take(','))
                    return false;
            }
        }
        case '"': {
            QByteArrayView ignored;
            return string(ignored);
        }
        case 't':
            return word("true");
        case 'f':
            return word("false");
        case 'n':
            return word("null");
        default:
            return number();
        }
    }

    QByteArrayView text;
    qsizetype at = 0;
};

} // namespace

bool host_json_t::isCompactText(QByteArrayView text)
{
    return compact_reader_t(text).whole();
}

void host_json_t::appendString(QByteArray& out, QString const& s)
{
    appendString(out, {QStringView(s)});
}

void host_json_t::appendString(QByteArray& out, std::initializer_list<QStringView> parts)
{
    qsizetype const at = out.size();
    out += '"';
    bool plain = true;
    for (QStringView const part : parts) {
        if (!(plain = appendPlainChars(out, part)))
            break;
    }
    if (plain) {
        out += '"';
        return;
    }
    out.truncate(at);
    QString whole;
    for (QStringView const part : parts)
        whole += part;
    out += documentText(whole);
}

// Escaped strings by Qt's writer, which decides their exact form; the rest
// here, as that writer puts it.
void host_json_t::append(QByteArray& out, QJsonValue const& value)
{
    switch (value.type()) {
    case QJsonValue::Null:
        out += "null";
        return;
    case QJsonValue::Bool:
        out += value.toBool() ? "true" : "false";
        return;
    case QJsonValue::String:
        appendString(out, value.toString());
        return;
    case QJsonValue::Double: {
        // As Qt's writer puts them: an integer as it stands, a double in its
        // shortest form, what is not finite as null.
        QCborValue const number = QCborValue::fromJsonValue(value);
        if (number.isInteger()) {
            char digits[24];
            auto const end = std::to_chars(digits, digits + sizeof digits, number.toInteger()).ptr;
            out.append(digits, end - digits);
        } else if (double const d = number.toDouble(); qIsFinite(d)) {
            out += QByteArray::number(d, 'g', QLocale::FloatingPointShortest);
        } else {
            out += "null";
        }
        return;
    }
    case QJsonValue::Object: {
        QJsonObject const object = value.toObject();
        out += '{';
        bool first = true;
        for (auto it = object.constBegin(); it != object.constEnd(); ++it) {
            if (!std::exchange(first, false))
                out += ',';
            appendString(out, it.key());
            out += ':';
            append(out, it.value());
        }
        out += '}';
        return;
    }
    case QJsonValue::Array: {
        QJsonArray const array = value.toArray();
        out += '[';
        bool first = true;
        for (QJsonValue const& element : array) {
            if (!std::exchange(first, false))
                out += ',';
            append(out, element);
        }
        out += ']';
        return;
    }
    default:
        out += documentText(value);
        return;
    }
}

QByteArray host_json_t::textWith(QJsonObject const& object, QString const& key, QByteArray const& valueText)
{
    QByteArray out;
    out.reserve(valueText.size() + 64);
    out += '{';
    bool first = true;
    bool placed = false;
    auto const separate = [&] {
        if (!std::exchange(first, false))
            out += ',';
    };
    auto const place = [&] {
        separate();
        appendString(out, key);
        out += ':';
        out += valueText;
        placed = true;
    };
    // An object writes its keys in order; a member of the same key gives way.
    for (auto it = object.constBegin(); it != object.constEnd(); ++it) {
        int const order = QString::compare(it.key(), key);
        if (order == 0)
            continue;
        if (order > 0 && !placed)
            place();
        separate();
        appendString(out, it.key());
        out += ':';
        append(out, it.value());
    }
    if (!placed)
        place();
    out += '}';
    return out;
}

QByteArray host_json_t::text(QJsonValue const& value)
{
    QByteArray out;
    out.reserve(64);
    append(out, value);
    return out;
}
