#include "host_json_t.h"

#include <QCborValue>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>

#include <charconv>
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

/// Appends s as it stands when every character stands for itself in JSON
/// (printable ASCII but quote and backslash); false, with out unchanged, otherwise.
bool appendPlainChars(QByteArray& out, QStringView s)
{
    for (QChar const c : s) {
        char16_t const u = c.unicode();
        if (u < 0x20 || u >= 0x7f || u == u'"' || u == u'\\')
            return false;
    }
    qsizetype const at = out.size();
    out.resize(at + s.size());
    char* cursor = out.data() + at;
    for (QChar const c : s)
        *cursor++ = char(c.unicode());
    return true;
}

} // namespace

void host_json_t::appendString(QByteArray& out, QString const& s)
{
    qsizetype const at = out.size();
    out += '"';
    if (appendPlainChars(out, s)) {
        out += '"';
        return;
    }
    out.truncate(at);
    out += documentText(s);
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
