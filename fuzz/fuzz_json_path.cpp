// The JSON toolkit's slash paths. The input is three parts: the path on the
// first line, the new value on the second (any JSON value), and the document
// (object or array) in the rest. Faults: a memory error, undefined behaviour,
// a hang or a stack that runs out, on any path and any document.

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "database/utility/utility.h"
#include "fuzz_support.h"

using database::utility;

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    QByteArray const input(reinterpret_cast<char const*>(data), qsizetype(size));
    QList<QByteArray> const parts = input.split('\n');
    if (parts.size() < 3)
        return -1;
    QString const path = QString::fromUtf8(parts.at(0));
    // A bare scalar is no JSON document: read the value as the element of an array.
    QJsonValue const newValue = QJsonDocument::fromJson("[" + parts.at(1) + "]").array().at(0);
    QJsonDocument document = QJsonDocument::fromJson(input.mid(parts.at(0).size() + parts.at(1).size() + 2));
    if (document.isNull())
        return -1;

    utility::getJsonValue(document, path);
    QJsonDocument updated = document;
    QString operation;
    if (utility::updateJsonValue(updated, path, newValue, operation))
        utility::getJsonValue(updated, path);
    QJsonValue value = document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object());
    utility::getJsonSubValue(value, path);
    if (document.isObject()) {
        QJsonObject object = document.object();
        utility::modifyJsonValue(object, path, newValue);
    }
    return 0;
}
