#ifndef HOST_DBHOST_HOST_JSON_T_H
#define HOST_DBHOST_HOST_JSON_T_H

#include <QByteArray>
#include <QByteArrayView>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QStringView>

#include <initializer_list>

/**
 * The compact JSON text of a value, byte for byte what QJsonDocument writes,
 * made without a document: the host writes a text for every change, request
 * and journal entry, and a document per value costs several times the text.
 * Used by the links, the journal and the standard output.
 */
class host_json_t
{
public:
    /// A JSON value as compact text, bare values included ("null", "3", "\"a\"").
    static QByteArray text(QJsonValue const& value);
    /// Appends the compact text of value to out.
    static void append(QByteArray& out, QJsonValue const& value);
    /// The compact text of object with one more member, key, whose value is
    /// valueText (compact JSON already), in the place its key takes among
    /// the others: a text made once goes into several without being read again.
    static QByteArray textWith(QJsonObject const& object, QString const& key, QByteArray const& valueText);
    /// True when text is byte for byte what text() writes for the value it
    /// parses to, and for any value equal to that one: then a text that came
    /// in can stand for the value without writing it again. Only the plain
    /// forms are taken (ASCII strings without escapes but quote and
    /// backslash, integers of up to 15 digits, keys in order); for anything
    /// else false, which costs a writing and nothing more.
    static bool isCompactText(QByteArrayView text);
    /// Appends s as a JSON string, escaped as the JSON documents escape it.
    static void appendString(QByteArray& out, QString const& s);
    /// Appends the string the parts make together, as appendString() would
    /// the whole, without making the whole first.
    static void appendString(QByteArray& out, std::initializer_list<QStringView> parts);
};

#endif // HOST_DBHOST_HOST_JSON_T_H
