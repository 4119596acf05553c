// A JSON document handed to the serializer's deserialize() for a polymorphic
// tree (FUZZ_TREE 0: the elements section and one element; 1: the thermostat
// section and one thermostat), whose classes come from the document's "@class"
// keys. Faults: a memory error or undefined behaviour, an exception other than
// the serializer's own, and a tree whose JSON doesn't read back as the same.

#include <QException>
#include <QJsonDocument>
#include <QJsonObject>

#include <exception>
#include <memory>

#include "database/persistent/dbs/ps_elements_t.h"
#include "database/persistent/dbs/ps_thermo_t.h"
#include "database/persistent/objects/elements/ps_object_element_t.h"
#include "database/persistent/objects/thermo/ps_object_thermostat_t.h"
#include "database/utility/utility.h"
#include "fuzz_support.h"
#include "platform/qjsonserializer/qjsondeserializationexception.h"
#include "platform/qjsonserializer/qjsonserializer.h"

namespace {

/// Reads the document as a T; when that gives a tree, its JSON must read back as itself.
template<class T>
void readBack(QJsonObject const& document)
{
    QJsonSerializer* serializer = database::utility::getInstance()->serializer();
    std::unique_ptr<T> tree;
    try {
        tree.reset(serializer->deserialize<T*>(document, nullptr));
    } catch (QJsonDeserializationException const&) {
        return; // the serializer's refusal of a document of the wrong shape
    }
    fuzz::drain();
    if (!tree)
        return;
    QJsonObject const json = tree->toJson();
    std::unique_ptr<T> again;
    try {
        again.reset(serializer->deserialize<T*>(json, nullptr));
    } catch (QJsonDeserializationException const& e) {
        fuzz::fail("the JSON of a tree does not read back", QString::fromUtf8(e.what()) + QLatin1Char('\n')
                                                                + QString::fromUtf8(QJsonDocument(json).toJson()));
    }
    if (!again || again->toJson() != json)
        fuzz::fail("the JSON of a tree reads back as another", QString::fromUtf8(QJsonDocument(json).toJson()));
    fuzz::drain();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    QJsonObject document;
    if (!fuzz::parseObject(data, size, document))
        return -1;
#if FUZZ_TREE == 0
    readBack<database::persistent::dbs::ps_elements_t>(document);
    readBack<database::persistent::objects::ps_object_element_t>(document);
#else
    readBack<database::persistent::dbs::ps_thermo_t>(document);
    readBack<database::persistent::objects::ps_object_thermostat_t>(document);
#endif
    return 0;
}
